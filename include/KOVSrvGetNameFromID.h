// The names that a user gave to a set or a surface.
#pragma once

#include "KOVExport.h"
#include "KOVSimDynamicID.h"
#include "KOVSimPosition.h"
#include "KOVSimTypedIDs.h"
#include "KOVString.h"

/// The key of an element set in the model's map of element sets, or else in its second one; empty
/// if neither holds it exactly once. `focus` takes no part.
KOV_EXPORT KOVString KOVSrvGetElementSetNameFromCSetID(KOVSimPosition const& focus,
                                                       KOVSimCSetID const& id);
/// The same of a node set, in the two maps of node sets.
KOV_EXPORT KOVString KOVSrvGetNodeSetNameFromCSetID(KOVSimPosition const& focus,
                                                    KOVSimCSetID const& id);
/// The own name of a surface; empty if it has none. `focus` takes no part.
KOV_EXPORT KOVString KOVSrvGetSurfaceNameFromID(KOVSimPosition const& focus,
                                                KOVSimDynamicID const& id);
