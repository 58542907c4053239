// KOVSimCollection: a facade on a collection, an array of like members with indices 0 to `Space()`
// - 1, and the maker of its sets. It keeps a weak share of the database.
#pragma once

#include <memory>

#include "KOVExport.h"
#include "KOVSimCSet.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSimCollection {
  public:
    KOVSimCollection() = default;
    explicit KOVSimCollection(KOVSimCollectionID const& id);

    KOVSimCollectionID ID() const { return m_id; }
    /// False for a facade without a share, or whose database has gone or was closed.
    bool IsPresent() const;
    /// The count of members.
    int Space() const;
    /// Raises the count of members to `n`; in a transaction. A count below the present one is
    /// refused.
    void ExtendSpace(int n);

    /// The ID of this collection's empty set, which always exists.
    KOVSimCSetID EmptyCSetID() const;
    /// A persistent set; in a transaction. `members`: n ints in any order, duplicates count once;
    /// copied. Members outside the collection are refused. The flag is always false.
    KOVSimCSetID CreateCSet(int const* members, int n, bool);
    /// A persistent set of `count` members: first, first + stride, ... The last argument is
    /// always 1.
    KOVSimCSetID CreateCSetStrided(int first, int count, int stride, int);
    /// The same, temporary: no transaction is needed, and the set ends with the context.
    KOVSimCSetID CreateTempCSet(int const* members, int n, bool);
    KOVSimCSetID CreateTempCSetStrided(int first, int count, int stride, int);
    /// A temporary set that keeps the order of the array.
    KOVSimCSetID CreateTempOrderedCSet(int const* members, int n);
    /// The same, volatile: values without an ID.
    KOVSimCSet CreateVolatileCSet(int const* members, int n, bool) const;
    KOVSimCSet CreateVolatileCSetStrided(int first, int count, int stride, int) const;
    KOVSimCSet CreateVolatileOrderedCSet(int const* members, int n) const;
    /// The stored ascending set with exactly these members, a persistent one before a temporary
    /// one; null if there is none. The flag is always false.
    KOVSimCSetID SeekCSet(KOVSimCSet const& set, bool) const;

  private:
    KOVSimCollectionID m_id;
    std::weak_ptr<kov::store::Context> m_share;
};
