// KOVSrvDistributionTransform: what a caller may do to the data between the read and the write of
// KOVSrvCopyDistribution. The class itself leaves everything as it is; derive from it to change the
// numbers or where they go.
#pragma once

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimTypedIDs.h"
#include "mem.h"

class KOV_EXPORT KOVSrvDistributionTransform : public mem_AllocationOperators {
  public:
    KOVSrvDistributionTransform() = default;
    KOVSrvDistributionTransform(KOVSrvDistributionTransform const&) = default;
    KOVSrvDistributionTransform& operator=(KOVSrvDistributionTransform const&) = default;
    virtual ~KOVSrvDistributionTransform();

    /// Called once for each drawer that was read. `buffer`: the drawer's entries, the last
    /// dimension running fastest, in the order of the drawer's own sets; owned by the copier, may
    /// be changed in place. `targetSets`: one set for each dimension, the members that the entries
    /// are written to, location by location; may be replaced by registered sets, as long as the
    /// size of the whole stays the same.
    virtual void Update(
        void* buffer,
        KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>& targetSets) const;
};
