// SubModel: a part of a document's mesh as a document of its own.
//
// The part are some elements and the nodes that these name. Both keep the order that they have in
// the source. The rest follows from DocumentCopy.
#pragma once

#include <functional>
#include <string>

#include "DistributionCopy.h"
#include "KOVObjDocument.h"
#include "KOVSimCSet.h"

namespace kov::tool {

/// How many objects of one sort there are in the source, and in the sub-model.
struct Remaining {
    int before = 0;
    int after = 0;
};

struct SubModelSummary {
    Remaining nodes;
    Remaining elements;
    Remaining nodeSets;
    Remaining elementSets;
    Remaining surfaces;
    Remaining orientations;
    Remaining instances;
};

struct SubModelOptions {
    /// Entries that pass through memory at once.
    int block = DistributionCopy::kBlock;
    /// Called now and then with the bytes of bulk numbers that were read.
    std::function<void(double bytes)> progress = {};
};

/// The nodes that elements name. Reads the connectivity in blocks. Throws DocumentFault if an
/// element names a node that is not there, or the connectivity is not one of nodes by element and
/// place.
KOVSimCSet NodesOfElements(KOVObjDocument const& document, KOVSimCSet const& elements,
                           int block = DistributionCopy::kBlock);

/// Fills `target`, a new document, with the part of `source` that `elements` tell. In a transaction
/// of the caller's. Throws DocumentFault.
SubModelSummary WriteSubModel(KOVObjDocument const& source, KOVSimCSet const& elements,
                              KOVObjDocument const& target, SubModelOptions const& options = {});

}  // namespace kov::tool
