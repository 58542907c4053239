// KOVSrvGetInstanceInfo: the instance and the user label of one node or element of the flat mesh.
#pragma once

#include "KOVExport.h"
#include "KOVSimPosition.h"
#include "KOVSrvLabelerType.h"
#include "KOVString.h"

/// Sets `instance` and `label` from the ordinal; false, with both left alone, if no instance has
/// it. `focus`: any position in the document. Every call reads anew which instances there are: for
/// many ordinals build one KOVObjLabeler and ask that.
KOV_EXPORT bool KOVSrvGetInstanceInfo(KOVSimPosition const& focus, KOVSrvLabelerType type,
                                      int ordinal, KOVString& instance, int& label);
