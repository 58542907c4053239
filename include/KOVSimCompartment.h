// KOVSimCompartment: a tuple of sets, one for each domain of a relation: every member of one set
// relates to every member of the others. A value.
#pragma once

#include "KOVBasVector.h"
#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimCSet.h"

class KOV_EXPORT KOVSimCompartment {
  public:
    /// The empty compartment, without sets.
    KOVSimCompartment() = default;
    /// One registered set for each domain.
    explicit KOVSimCompartment(
        KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> const& sets);

    /// One set for each domain, registered or volatile.
    explicit KOVSimCompartment(KOVBasVector<KOVSimCSet> const& sets) : m_sets(sets) {}

    int Size() const { return static_cast<int>(m_sets.Size()); }
    /// The set of dimension `i`. Throws outside 0 to `Size()` - 1.
    KOVSimCSet const& CSet(int i) const;
    /// The index of the set that belongs to the collection, or -1.
    int Position(KOVSimCollectionID const& collection) const;
    /// Fills the array with the IDs of all sets.
    void CSetIDs(KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>& ids) const;

  private:
    KOVBasVector<KOVSimCSet> m_sets;
};
