// Bring-up and take-down of the whole library.
//
// A program calls KOVSrvBasic_initialize before it uses the library and KOVSrvBasic_finalize when
// it has done; the calls may be nested, and only the outermost pair does anything. `count` is the
// caller's own count of modules that came up for it: a first call raises it by the number of
// modules that really came up, the matching last call lowers it by the same number, and it is never
// tested. There is no guard against a finalize too many. For one thread at a time.
#pragma once

#include "KOVExport.h"

/// Brings up the document layer's modules, the service modules and the specific step, once.
KOV_EXPORT void KOVSrvBasic_initialize(int& count);
/// Takes them down in the mirror order, on the last call.
KOV_EXPORT void KOVSrvBasic_finalize(int& count);

/// What the frame itself sets up: nothing beyond its counter.
KOV_EXPORT void KOVSrvBasic_specific_initialize(int& count);
KOV_EXPORT void KOVSrvBasic_specific_finalize(int& count);

extern "C" {
/// The same for callers without C++, on a count that the library keeps. They may be mixed with the
/// forms above.
KOV_EXPORT void KOVSrvBasic_initializeC(void);
KOV_EXPORT void KOVSrvBasic_finalizeC(void);
}
