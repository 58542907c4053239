// KOVSrvGetReferenceKey: the key of an object in a map, where it is beyond doubt.
#pragma once

#include "KOVExport.h"
#include "KOVSimPosition.h"
#include "KOVString.h"

/// Sets `key` to the key under which the map `member` holds the object; false, with `key` left
/// alone, if no such map holds it, or if it is held more than once.
KOV_EXPORT bool KOVSrvGetReferenceKey(KOVSimPosition const& position, int member, KOVString& key);
