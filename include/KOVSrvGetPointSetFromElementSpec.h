// The points of an element specification.
#pragma once

#include "KOVExport.h"
#include "KOVSimCSet.h"
#include "KOVSimPosition.h"

/// The points of the element specification at `elementSpec`: the set that it brings along, if it
/// does; else as many of the first points of the document's point collection as its shape has, as a
/// volatile set. That count is multiplied by n + 1 for a specification whose own name has "AXA" as
/// its second to fourth character and ends in the digit n. Without a shape the empty set of the
/// point collection, which has an ID; a shape with no fixed number of points gives a volatile set
/// without members. Throws KOVSimException if the document has fewer points than are asked for.
KOV_EXPORT KOVSimCSet KOVSrvGetPointSetFromElementSpec(KOVSimPosition const& elementSpec);
