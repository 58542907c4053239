// Bring-up and take-down of the module KOVSrvFsm: mesh, labels, sections, materials, fields,
// diagnostics, checker.
//
// The call that takes the module's counter from 0 to 1 adds one to `count`, the caller's own count
// of modules that came up for it; the call that takes it from 1 to 0 subtracts one, and then ends
// the KOVSrvBulkShellLayers object with all that it has not written. All other calls leave `count`
// alone. For one thread at a time.
#pragma once

#include "KOVExport.h"

KOV_EXPORT void KOVSrvFsm_initialize(int& count);
KOV_EXPORT void KOVSrvFsm_finalize(int& count);
