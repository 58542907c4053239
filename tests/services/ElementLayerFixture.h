// A document with section layers and with materials as the values of a property by element and
// layer.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "KOVSrvElementLayerProperty.h"
#include "services/MeshFixture.h"

namespace kov::test {

class ElementLayerDocument : public MeshDocument {
  public:
    explicit ElementLayerDocument(Medium medium, int elementCount = 1000, int layerCount = 12,
                                  int valueCount = 60)
        : MeshDocument(medium, 10, elementCount) {
        auto const transaction = Write();
        Layers().ExtendSpace(layerCount);
        Values().ExtendSpace(valueCount);
        transaction->Commit();
    }

    KOVSimCollection Layers() const {
        return KOVSimCollection(document.Focus()
                                    .GetPosition(schema::Focus_sharedCollections())
                                    .GetPosition(schema::SharedCollections_sectionLayers())
                                    .GetCollection());
    }
    KOVSimCollection Values() const {
        return KOVSimCollection(document.GetMaterialCollection().GetCollection());
    }
    KOVSimCSetID LayerSet(std::vector<int> const& members) const { return Set(Layers(), members); }
    KOVSimDynamicID Value(int index) const { return document.GetRecord(Values().ID(), index); }

    /// The numbers of the property under test; another `link` tells another property.
    static int DSetType() { return schema::ElementSpecAssignment(); }
    static int LinkType() { return schema::Field_ElementLayerProperty(); }
    static constexpr int kLink = 3, kChunk = 64;
    KOVSrvElementLayerProperty Property(int link = kLink) const {
        return {document.Focus(), Values().ID(), DSetType(), LinkType(), link, kChunk};
    }

    /// The DSet and the table that were saved; null before.
    KOVSimPosition Saved(int link = kLink) const {
        return document.GetMesh().Follow(LinkType(), link);
    }
    KOVSimDistribution Table(int link = kLink) const {
        KOVSimPosition const saved = Saved(link);
        if (saved.IsNull()) return KOVSimDistribution();
        return KOVSimDistribution(KOVSimDSet(saved).GetRelationalDistributionID());
    }
    /// The element and layer sets of the table's drawers, in the order of making.
    struct Block {
        std::vector<int> elements, layers;
        bool operator==(Block const& other) const {
            return elements == other.elements && layers == other.layers;
        }
    };
    std::vector<Block> Blocks(int link = kLink) const {
        std::vector<Block> blocks;
        for (KOVSimPersistentDrawerDesc const& drawer : Drawers(Table(link))) {
            blocks.push_back(
                {Members(drawer.compartment.CSet(0)), Members(drawer.compartment.CSet(1))});
        }
        return blocks;
    }

    /// What an entry that was not read keeps.
    static constexpr int kUntouched = -77;
    static std::vector<int> Lookup(KOVSrvElementLayerProperty const& property,
                                   KOVSimCSet const& elementSet, KOVSimCSet const& layerSet) {
        std::vector<int> values(static_cast<std::size_t>(elementSet.Size() * layerSet.Size()),
                                kUntouched);
        EXPECT_EQ(property.Lookup(elementSet, layerSet, values.data()),
                  static_cast<int>(values.size()));
        return values;
    }
};

inline std::ostream& operator<<(std::ostream& out, ElementLayerDocument::Block const& block) {
    return out << "elements " << testing::PrintToString(block.elements) << " layers "
               << testing::PrintToString(block.layers);
}

}  // namespace kov::test
