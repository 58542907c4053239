// All public headers of the services.
// Written by scripts/umbrella-headers.py.
#pragma once

// IWYU pragma: begin_exports
#include "KOVSrvBasic.h"
#include "KOVSrvDiagnosticsHandler.h"
#include "KOVSrvElementConnectivity.h"
#include "KOVSrvFsm.h"
#include "KOVSrvInverseConnectivity.h"
#include "KOVSrvKeywordDataReader.h"
#include "KOVSrvKeywordParameterReader.h"
#include "KOVSrvKeywordParser.h"
#include "KOVSrvKwd.h"
#include "KOVSrvNodalCoordinates.h"
#include "KOVSrvSsm.h"
// IWYU pragma: end_exports
