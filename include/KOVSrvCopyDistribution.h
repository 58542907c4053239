// Copying the data of one distribution into another, drawer by drawer.
#pragma once

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimTypedIDs.h"
#include "KOVSrvDistributionTransform.h"

/// Copies the data of `read` into `written`, a distribution of as many dimensions and the same type
/// of entries, which may be the same one. In a transaction of the caller's; what is copied before a
/// failure stays until that ends.
///
/// `writtenSets`, `readSets`: one set for each dimension, ascending or ordered; entries i are of
/// equal size and pair the members of dimension i, location by location. Each drawer of `read` goes
/// to the members of `written` that its own members are paired with, and these are registered as
/// persistent sets. `transform` may change each drawer's numbers, and where they go, in between.
///
/// Where the data go:
///
///     drawer of `read`             drawers of `written` at the start
///     growing                      none          a new drawer with the same chunks, growing alike
///     growing                      one           that drawer, which is extended as needed
///     growing                      more          assertion
///     chunked, not growing         any           a new drawer with the same chunks, which can grow
///                                                in dimension 0
///     neither                      any           a new drawer like it
///
/// Only one drawer's data are in memory at a time. A drawer whose data are 2 GiB or more is refused
/// with KOVSimException, as are sets of unequal size. All other preconditions are checked
/// assertions, which end the process.
KOV_EXPORT void KOVSrvCopyDistribution(
    KOVSimDistributionID const& written, KOVSimDistributionID const& read,
    KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> const& writtenSets,
    KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> const& readSets,
    KOVSrvDistributionTransform const& transform);
