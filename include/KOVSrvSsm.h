// Bring-up and take-down of the module KOVSrvSsm: scoped names, symbol collections, distribution
// copying.
//
// The call that takes the module's counter from 0 to 1 adds one to `count`, the caller's own count
// of modules that came up for it; the call that takes it from 1 to 0 subtracts one. All other calls
// leave `count` alone. For one thread at a time.
#pragma once

#include "KOVExport.h"

KOV_EXPORT void KOVSrvSsm_initialize(int& count);
KOV_EXPORT void KOVSrvSsm_finalize(int& count);
