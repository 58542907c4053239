#include "SetMapping.h"

#include "AscendingSets.h"
#include "DocumentReader.h"
#include "Failure.h"
#include "KOVObjMesh.h"
#include "KOVSimCSetIterator.h"
#include "KOVSrvLabelMapper.h"
#include "MeshLabels.h"

namespace kov::tool {
namespace {

KOVSimCollectionID MeshCollection(KOVObjDocument const& document, KOVObjLabelerType type) {
    KOVObjMesh const mesh(document.GetMesh());
    return (type == KOVObjLabelerNodes ? mesh.GetNodeCollection() : mesh.GetElementCollection())
        .GetCollection();
}

// In one document each member that has a label is its own counterpart. The mapper is for two.
MappedSet MapWithin(KOVObjDocument const& document, KOVObjLabelerType type, KOVSimCSet const& set,
                    bool ordered) {
    MeshLabels const labels(document, type);
    KOVSimCSet labelled(set.CollectionID());
    for (int i = 0; i < static_cast<int>(labels.Names().size()); ++i) {
        labelled = labelled.Union(labels.Ordinals(i));
    }
    MappedSet mapped{Ascending(set).Intersection(labelled), Ascending(set) - labelled};
    if (ordered && !set.IsAscending()) {
        std::vector<int> members;
        KOVSimCSetIterator at(set);
        for (at.First(); !at.IsDone(); at.Next()) {
            if (labelled.Contains(at.CurrentValue())) members.push_back(at.CurrentValue());
        }
        mapped.inB =
            KOVSimCollection(set.CollectionID())
                .CreateVolatileOrderedCSet(members.data(), static_cast<int>(members.size()));
    }
    return mapped;
}

}  // namespace

MappedSet MapSet(KOVObjDocument const& a, KOVObjDocument const& b, KOVObjLabelerType type,
                 KOVSimCSetID const& id, bool ordered) {
    bool const nodes = type == KOVObjLabelerNodes;
    KOVSimCSet const set(id);
    KOVSimCollectionID const from = MeshCollection(a, type);
    KOVSimCollectionID const to = MeshCollection(b, type);
    if (from.IsNull() || set.CollectionID() != from) {
        throw DocumentFault(std::string("the set is not one of the ") +
                            (nodes ? "nodes" : "elements") + " of the mesh");
    }
    if (a.ContextID() == b.ContextID()) return MapWithin(a, type, set, ordered);
    if (to.IsNull()) {
        throw DocumentFault(std::string("the document into which the set is mapped has no ") +
                            (nodes ? "nodes" : "elements"));
    }
    KOVSrvLabelMapper mapper(a.Focus(), b.Focus());
    MappedSet mapped;
    mapped.inB = nodes ? mapper.GetSecondaryNodeSet(id, !ordered)
                       : mapper.GetSecondaryElementSet(id, !ordered);
    mapped.missing = Ascending(set) - (nodes ? mapper.GetCommonPrimaryNodeSet()
                                             : mapper.GetCommonPrimaryElementSet());
    return mapped;
}

}  // namespace kov::tool
