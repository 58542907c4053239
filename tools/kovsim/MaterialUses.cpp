#include "MaterialUses.h"

#include <algorithm>
#include <set>

#include "DocumentReader.h"
#include "Interrupt.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "Names.h"
#include "TableField.h"

namespace kov::tool {
namespace {

// A section and one of its materials, each pair once.
using Use = std::function<void(KOVSimPosition const& section, KOVSimPosition const& material)>;

// Sections with a material of their own, and those with layers of their own.
void ForRecords(KOVObjDocument const& document, Use const& use) {
    long done = 0;
    std::set<KOVSimDynamicID, ByIdentity> materials;
    KOVSimMap const sections = document.GetModel().GetMap(schema::Model_sections());
    for (auto at = sections.Begin(); at.NotDone(); ++at) {
        if (++done % 1000 == 0) ThrowIfInterrupted();
        KOVSimPosition const section = at.Value();
        materials.clear();
        materials.insert(section.GetPosition(schema::Section_material()).ID());
        KOVSimVector const layers = section.GetVector(schema::Section_layers());
        for (auto layer = layers.Begin(); layer.NotDone(); ++layer) {
            materials.insert((*layer).GetPosition(schema::Layer_material()).ID());
        }
        for (KOVSimDynamicID const& material : materials) {
            if (!material.IsNull()) use(section, KOVSimPosition(material));
        }
    }
}

// Layers of shells: member indices of materials, by layer and section, below 0 for none.
void ForShells(KOVObjDocument const& document, Use const& use) {
    KOVSimPosition const model = document.GetModel();
    KOVSimCollection const slots = CollectionAt(model.GetPosition(schema::Model_bulkLayerSlots()));
    KOVSimCollection const sections = CollectionAt(model.GetPosition(schema::Model_bulkSections()));
    KOVSimCollection const materials = CollectionAt(document.GetMaterialCollection());
    KOVSimPosition const stored = model.GetPosition(schema::Model_bulkShellLayers())
                                      .GetPosition(schema::BulkShellLayers_materials());
    if (stored.IsNull() || !slots.IsPresent() || !sections.IsPresent() || !materials.IsPresent() ||
        slots.Space() == 0) {
        return;
    }
    int const layers = slots.Space();
    int const space = sections.Space();
    int const most = RowsInBlock(layers);
    std::vector<int> indices;
    std::vector<int> ofSection;
    for (int first = 0; first < space; first += most) {
        ThrowIfInterrupted();
        int const count = std::min(most, space - first);
        indices.assign(static_cast<std::size_t>(layers) * static_cast<std::size_t>(count), -1);
        KOVSimTransfer read{KOVSimDistribution(stored.GetDistribution())};
        read.SetRead().SetBufferPadding(false);
        read.SetDim(0, slots.CreateVolatileCSetStrided(0, layers, 1, 1));
        read.SetDim(1, sections.CreateVolatileCSetStrided(first, count, 1, 1)).CheckView();
        read.SetBuffer(0, indices.data(), indices.size() * sizeof(int));
        read.ExecRead().RelinquishBuffers();
        for (int s = 0; s < count; ++s) {
            ofSection.clear();
            for (std::size_t at = static_cast<std::size_t>(s); at < indices.size();
                 at += static_cast<std::size_t>(count)) {
                if (indices[at] >= 0 && indices[at] < materials.Space())
                    ofSection.push_back(indices[at]);
            }
            std::sort(ofSection.begin(), ofSection.end());
            ofSection.erase(std::unique(ofSection.begin(), ofSection.end()), ofSection.end());
            if (ofSection.empty()) continue;
            KOVSimPosition const section(document.GetRecord(sections.ID(), first + s));
            for (int const material : ofSection) {
                use(section, KOVSimPosition(document.GetRecord(materials.ID(), material)));
            }
        }
    }
}

}  // namespace

std::map<KOVSimDynamicID, int, ByIdentity> CountMaterialUses(KOVObjDocument const& document) {
    std::map<KOVSimDynamicID, int, ByIdentity> counts;
    Use const count = [&counts](KOVSimPosition const&, KOVSimPosition const& material) {
        ++counts[material.ID()];
    };
    ForRecords(document, count);
    ForShells(document, count);
    return counts;
}

std::vector<std::string> SectionsOfMaterial(KOVObjDocument const& document,
                                            KOVSimPosition const& material) {
    std::vector<std::string> names;
    Use const gather = [&](KOVSimPosition const& section, KOVSimPosition const& of) {
        if (of.ID() != material.ID()) return;
        std::string name = Plain(section.Name(-1));
        names.push_back(name.empty() ? Plain(section.Name(schema::Model_sections())) : name);
    };
    ForRecords(document, gather);
    ForShells(document, gather);
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace kov::tool
