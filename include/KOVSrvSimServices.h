// All public headers of the services.
// Written by scripts/umbrella-headers.py.
#pragma once

// IWYU pragma: begin_exports
#include "KOVSrvBasic.h"
#include "KOVSrvCopyDistribution.h"
#include "KOVSrvDiagnosticsHandler.h"
#include "KOVSrvDistributionTransform.h"
#include "KOVSrvElementConnectivity.h"
#include "KOVSrvEltClassBuilderImpl.h"
#include "KOVSrvEltClassBuilderImplShape.h"
#include "KOVSrvEltClassificationBuilder.h"
#include "KOVSrvFsm.h"
#include "KOVSrvGetCSetIDFromScopedName.h"
#include "KOVSrvGetDofNumberFromDofRecord.h"
#include "KOVSrvGetInstanceInfo.h"
#include "KOVSrvGetNameFromID.h"
#include "KOVSrvGetPointSetFromElementSpec.h"
#include "KOVSrvGetReferenceKey.h"
#include "KOVSrvGlobalLabelMap.h"
#include "KOVSrvInverseConnectivity.h"
#include "KOVSrvKeywordDataReader.h"
#include "KOVSrvKeywordParameterReader.h"
#include "KOVSrvKeywordParser.h"
#include "KOVSrvKwd.h"
#include "KOVSrvLabelMapper.h"
#include "KOVSrvLabelerType.h"
#include "KOVSrvNodalCoordinates.h"
#include "KOVSrvSetMapperFactory.h"
#include "KOVSrvSsm.h"
#include "KOVSrvSymbolCollection.h"
// IWYU pragma: end_exports
