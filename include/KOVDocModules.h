// Bring-up and take-down of the modules of the document layer.
//
// Each module has a counter. The call that takes it from 0 to 1 adds one to `count`, the caller's
// own count of modules that came up for it; the call that takes it from 1 to 0 subtracts one. All
// other calls leave `count` alone. There is no guard against a finalize too many: the counter goes
// below 0 and has to be raised past that point again. For one thread at a time.
#pragma once

#include "KOVExport.h"

KOV_EXPORT void KOVDocObjects_initialize(int& count);
KOV_EXPORT void KOVDocObjects_finalize(int& count);
KOV_EXPORT void KOVDocMarkup_initialize(int& count);
KOV_EXPORT void KOVDocMarkup_finalize(int& count);
KOV_EXPORT void KOVDocInterface_initialize(int& count);
KOV_EXPORT void KOVDocInterface_finalize(int& count);
KOV_EXPORT void KOVDocContainers_initialize(int& count);
KOV_EXPORT void KOVDocContainers_finalize(int& count);
KOV_EXPORT void KOVRootShared_initialize(int& count);
KOV_EXPORT void KOVRootShared_finalize(int& count);
KOV_EXPORT void KOVRootUtilities_initialize(int& count);
KOV_EXPORT void KOVRootUtilities_finalize(int& count);
KOV_EXPORT void KOVRootGenerics_initialize(int& count);
KOV_EXPORT void KOVRootGenerics_finalize(int& count);
KOV_EXPORT void KOVRootAlloc_initialize(int& count);
KOV_EXPORT void KOVRootAlloc_finalize(int& count);
