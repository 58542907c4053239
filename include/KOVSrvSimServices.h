// All public headers of the services.
// Written by scripts/umbrella-headers.py.
#pragma once

#include "KOVSrvDiagnosticsHandler.h"  // IWYU pragma: export
#include "KOVSrvElementConnectivity.h"  // IWYU pragma: export
#include "KOVSrvInverseConnectivity.h"  // IWYU pragma: export
#include "KOVSrvNodalCoordinates.h"  // IWYU pragma: export
