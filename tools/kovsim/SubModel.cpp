#include "SubModel.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

#include "AscendingSets.h"
#include "DistributionCopy.h"
#include "DocumentCopy.h"
#include "DocumentReader.h"
#include "Interrupt.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimDSet.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"

namespace kov::tool {
namespace {

// Marks members of a collection, and gives them as a set.
class Marks {
  public:
    explicit Marks(int space) : m_words((static_cast<std::size_t>(space) + 63) / 64, 0) {}

    void Set(int member) {
        auto const at = static_cast<std::size_t>(member);
        m_words[at / 64] |= std::uint64_t{1} << (at % 64);
    }
    KOVSimCSet Of(KOVSimCollection const& collection) const {
        std::size_t count = 0;
        for (std::uint64_t const word : m_words) {
            count += static_cast<std::size_t>(std::popcount(word));
        }
        std::vector<int> members;
        members.reserve(count);
        for (std::size_t w = 0; w < m_words.size(); ++w) {
            for (std::uint64_t word = m_words[w]; word != 0; word &= word - 1) {
                members.push_back(static_cast<int>(64 * w) + std::countr_zero(word));
            }
        }
        return collection.CreateVolatileCSet(members.data(), static_cast<int>(count), false);
    }

  private:
    std::vector<std::uint64_t> m_words;
};

int SetsUnder(KOVObjDocument const& document, int map, int otherMap) {
    KOVSimPosition const model = document.GetModel();
    return model.GetMap(map).Size() + (otherMap < 0 ? 0 : model.GetMap(otherMap).Size());
}

}  // namespace

KOVSimCSet NodesOfElements(KOVObjDocument const& document, KOVSimCSet const& elements, int block) {
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimCollection const nodes = CollectionAt(mesh.GetNodeCollection());
    if (!nodes.IsPresent()) throw DocumentFault("the document has no nodes");
    int const space = nodes.Space();
    Marks marks(space);
    KOVSimDSet const dset(mesh.GetConnectivity());
    if (dset.IsNull() || dset.GetRelationalDistributionID().IsNull()) {
        return KOVSimCSet(nodes.ID());
    }
    KOVSimDistribution const distribution(dset.GetRelationalDistributionID());
    if (distribution.NumDimensions() != 2 ||
        distribution.Grid().Collections().ConstGet(0) != elements.CollectionID() ||
        distribution.Range().Collection() != nodes.ID()) {
        throw DocumentFault(
            "the connectivity of the document does not give nodes by element and place");
    }
    DrawerDescriptions drawers;
    distribution.QueryDrawers(drawers);
    std::vector<int> rows;
    std::vector<int> members;
    for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
        KOVSimCSet const places = drawer.compartment.CSet(1);
        KOVSimCSet const part =
            Ascending(elements).Intersection(Ascending(drawer.compartment.CSet(0)));
        if (part.IsEmpty() || places.IsEmpty()) continue;
        KOVSimCollection const collection(elements.CollectionID());
        int const rowsAtOnce = std::max(1, block / places.Size());
        KOVSimCSetIterator at(part);
        for (at.First(); !at.IsDone();) {
            ThrowIfInterrupted();
            members.clear();
            for (; !at.IsDone() && static_cast<int>(members.size()) < rowsAtOnce; at.Next()) {
                members.push_back(at.CurrentValue());
            }
            int const count = static_cast<int>(members.size());
            rows.assign(members.size() * static_cast<std::size_t>(places.Size()), -1);
            // All drawers are asked, so that of those which overlap the one made last serves.
            KOVSimTransfer read(distribution);
            read.SetRead().SetBufferPadding(false).SetDim(1, places);
            read.SetDim(0, collection.CreateVolatileCSet(members.data(), count, false)).CheckView();
            read.SetBuffer(0, static_cast<void*>(rows.data()), rows.size() * sizeof(int));
            read.ExecRead().RelinquishBuffers();
            for (std::size_t i = 0; i < rows.size(); ++i) {
                int const node = rows[i];
                if (node < 0) continue;
                if (node >= space) {
                    int const element = members[i / static_cast<std::size_t>(places.Size())];
                    throw DocumentFault("element " + std::to_string(element) +
                                        " of the mesh names node " + std::to_string(node) +
                                        ", of " + std::to_string(space) +
                                        " nodes; the document is not sound");
                }
                marks.Set(node);
            }
        }
    }
    return marks.Of(nodes);
}

SubModelSummary WriteSubModel(KOVObjDocument const& source, KOVSimCSet const& elements,
                              KOVObjDocument const& target, SubModelOptions const& options) {
    KOVObjMesh const mesh(source.GetMesh());
    KOVSimCollectionID const nodes = mesh.GetNodeCollection().GetCollection();
    if (nodes == elements.CollectionID()) {
        throw DocumentFault("the document has one collection for both nodes and elements");
    }
    DocumentCopy copy(source, target, options.block);
    copy.SetProgress(options.progress);
    copy.Keep(elements.CollectionID(), elements);
    copy.Keep(nodes, NodesOfElements(source, elements, options.block));
    copy.Run();

    SubModelSummary summary;
    auto const count = [&](Remaining& remaining, auto const& of) {
        remaining.before = of(source);
        remaining.after = of(target);
    };
    auto const maps = [](int map, int otherMap) {
        return [map, otherMap](KOVObjDocument const& document) {
            return SetsUnder(document, map, otherMap);
        };
    };
    count(summary.nodes, [](KOVObjDocument const& document) {
        return SpaceAt(KOVObjMesh(document.GetMesh()).GetNodeCollection());
    });
    count(summary.elements, [](KOVObjDocument const& document) {
        return SpaceAt(KOVObjMesh(document.GetMesh()).GetElementCollection());
    });
    count(summary.nodeSets, maps(schema::Model_nodeSets(), schema::Model_otherNodeSets()));
    count(summary.elementSets, maps(schema::Model_elementSets(), schema::Model_otherElementSets()));
    count(summary.surfaces, CountSurfaces);
    count(summary.orientations, maps(schema::Model_orientationsByName(), -1));
    count(summary.instances, maps(schema::Model_instances(), -1));
    return summary;
}

}  // namespace kov::tool
