// SetMapping: a set of one document translated into another, by instance and label.
#pragma once

#include "KOVObjDocument.h"
#include "KOVObjLabeler.h"
#include "KOVSimCSet.h"

namespace kov::tool {

struct MappedSet {
    KOVSimCSet inB;      ///< members of the second document's collection
    KOVSimCSet missing;  ///< members of the first one's that the second does not have, ascending
};

/// Translates `set`, a set of nodes or elements of `a`. `ordered`: the result keeps the sequence of
/// the set; otherwise it is ascending. Both may be the same document. Throws DocumentFault if
/// the set is none of `a`'s mesh, or `b` has no nodes, or elements, at all.
MappedSet MapSet(KOVObjDocument const& a, KOVObjDocument const& b, KOVObjLabelerType type,
                 KOVSimCSetID const& set, bool ordered);

}  // namespace kov::tool
