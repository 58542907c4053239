// KOVSimContext: operations on the whole of one open document, named by its KOVSimContextID. A
// plain value.
#pragma once

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimPosition.h"
#include "KOVSimTypeSchemaSnapshot.h"

class KOV_EXPORT KOVSimContext {
  public:
    KOVSimContext() = default;
    KOVSimContext(KOVSimContextID id) : m_id(id) {}

    KOVSimContextID ID() const { return m_id; }
    /// The schema as this context knows it.
    KOVSimTypeSchemaSnapshot Schema() const;

    /// The identity of member `index` of `collection`. Throws outside 0 to `Space()` - 1.
    KOVSimDynamicID GetRecord(KOVSimCollectionID const& collection, int index) const;
    /// The index of a member in its collection; -1 for an object that is no member.
    int GetCMemberIndex(KOVSimDynamicID const& record) const;
    /// For records of one collection: that collection, and their indices in order. `collection`
    /// comes in null, or names the collection that is expected. Records that are no members, or of
    /// different collections, are refused.
    void GetCMembership(
        KOVSimArray<KOVSimDynamicID, KOVSimArrayCopyClassPolicy<KOVSimDynamicID>> const& records,
        KOVSimCollectionID& collection,
        KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>& indices) const;

    /// A new dataset over a relational distribution: one whose entries are indices of a
    /// collection's members.
    KOVSimDSetID CreateDSet(KOVSimDistributionID const& distribution, KOVSimTypeID type) const;
    /// Brings the dataset's view up to date after new drawers or new data in the distribution,
    /// which backs it from then on.
    void UpdateDSet(KOVSimDSetID const& dset, KOVSimDistributionID const& distribution) const;
    /// A new distribution over `grid`, without drawers. A type of -1 makes one of no particular
    /// type.
    KOVSimDistributionID CreateDistribution(KOVSimGrid const& grid, KOVSimRangeType const& range,
                                            KOVSimTypeID type) const;

  private:
    KOVSimContextID m_id;
};
