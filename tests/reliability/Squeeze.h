// Squeeze: leaves a document's catalogue so little memory that a crowded transaction is written to
// the log before its commit, as one of many gigabytes would be.
#pragma once

#include "KOVObjDocument.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"
#include "reliability/SessionPlan.h"

namespace reliability {

inline void Squeeze(KOVObjDocument const& document, Scale const& scale) {
    if (scale.texts == 0) return;
    kov::store::Context::Of(document.ContextID()).Cat().Execute("PRAGMA cache_size=40");
}

}  // namespace reliability
