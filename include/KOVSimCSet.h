// KOVSimCSet: a set of members of one collection, as a value. Copies share the storage of the
// members. A set that is registered with its collection has an ID: positive numbers are persistent
// sets, numbers from -2 downward temporary ones; a set without one is volatile and dies with its
// last copy. An ordinary set is ascending without duplicates; an ordered set keeps the order of the
// array that it was built from.
#pragma once

#include <memory>

#include "KOVExport.h"
#include "KOVSimPosition.h"
#include "KOVSimTypedIDs.h"
#include "omi_BlkBitVect.h"

namespace kov::sets {
class IndexSet;
}

/// The shared, immutable storage of a set's members.
using KOVSimIndexSetPtr = std::shared_ptr<kov::sets::IndexSet const>;

class KOV_EXPORT KOVSimCSet {
  public:
    /// The empty set tied to no collection.
    KOVSimCSet();
    /// The registered set; a null `id` gives the empty set tied to no collection.
    KOVSimCSet(KOVSimCSetID const& id);
    /// The set at `position`; empty and tied to no collection if the position denotes no set.
    KOVSimCSet(KOVSimPosition const& position);
    /// The empty set of that collection.
    KOVSimCSet(KOVSimCollectionID const& collection);
    /// A volatile set of a collection over given storage.
    KOVSimCSet(KOVSimCollectionID const& collection, KOVSimIndexSetPtr members);

    int Size() const;
    bool IsEmpty() const { return Size() == 0; }
    /// Writes all members ascending. `out`: `Size()` ints, owned by the caller.
    void Members(int* out) const;
    /// Writes all members in stored order. `out`: `Size()` ints, owned by the caller.
    void OrderedMembers(int* out) const;
    /// The member at a location, in stored order, from 0. Throws outside 0 to `Size()` - 1.
    int operator[](int location) const;
    /// Lowest member in the low 32 bits, highest in the high 32 bits; for an empty set -1 in both.
    long long Bounds() const;
    bool IsAscending() const;
    /// The ID of the stored ascending form: this set's own if it is registered and ascending;
    /// otherwise that of a stored twin, or of a temporary set made for it.
    KOVSimCSetID AscendingID() const;

    /// Volatile results on the same collection, ascending. A set tied to no collection counts as
    /// the empty set; sets of two collections are refused.
    KOVSimCSet Union(KOVSimCSet other) const;
    KOVSimCSet Intersection(KOVSimCSet other) const;
    KOVSimCSet operator-(KOVSimCSet other) const;
    /// True if both hold the same members, whatever the order.
    bool SameMembers(KOVSimCSet const& other) const;
    bool Contains(int member) const;
    /// Fills `bits` with bit m set for each member m.
    void AsBitVector(omi_BlkBitVect& bits) const;

    /// The position of a registered set; null for a volatile one.
    KOVSimPosition Pos() const { return KOVSimPosition(m_id); }
    /// The ID of a registered set; null for a volatile one.
    KOVSimCSetID ID() const { return m_id; }
    KOVSimCollectionID CollectionID() const { return m_collection; }
    /// Makes a persistent set of this value, which then has its ID; the order of an ordered set is
    /// kept. In a transaction.
    KOVSimCSetID RegisterWithCollection();
    /// The same, temporary: it needs no transaction and ends with the context.
    KOVSimCSetID RegisterWithTempCollection();

    /// The storage; never null.
    KOVSimIndexSetPtr const& Storage() const { return m_members; }

  private:
    KOVSimCSetID m_id;
    KOVSimCollectionID m_collection;
    KOVSimIndexSetPtr m_members;
};
