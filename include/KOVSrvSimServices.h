// All public headers of the services.
// Written by scripts/umbrella-headers.py.
#pragma once

#include "KOVSrvBasic.h"  // IWYU pragma: export
#include "KOVSrvDiagnosticsHandler.h"  // IWYU pragma: export
#include "KOVSrvElementConnectivity.h"  // IWYU pragma: export
#include "KOVSrvFsm.h"  // IWYU pragma: export
#include "KOVSrvInverseConnectivity.h"  // IWYU pragma: export
#include "KOVSrvKeywordDataReader.h"  // IWYU pragma: export
#include "KOVSrvKeywordParameterReader.h"  // IWYU pragma: export
#include "KOVSrvKeywordParser.h"  // IWYU pragma: export
#include "KOVSrvKwd.h"  // IWYU pragma: export
#include "KOVSrvNodalCoordinates.h"  // IWYU pragma: export
#include "KOVSrvSsm.h"  // IWYU pragma: export
