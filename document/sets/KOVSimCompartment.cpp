#include "KOVSimCompartment.h"

#include "KOVSimException.h"

KOVSimCompartment::KOVSimCompartment(
    KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> const& sets) {
    m_sets.Reserve(sets.Size());
    for (KOVSimCSetID const& id : sets) m_sets.PushBack(KOVSimCSet(id));
}

KOVSimCSet const& KOVSimCompartment::CSet(int i) const {
    if (i < 0 || i >= m_sets.Size())
        KOVSimException::ThrowIndex("KOVSimCompartment::CSet", i, m_sets.Size());
    return m_sets[i];
}

int KOVSimCompartment::Position(KOVSimCollectionID const& collection) const {
    if (collection.IsNull()) return -1;
    for (int i = 0; i < m_sets.Size(); ++i) {
        if (m_sets[i].CollectionID() == collection) return i;
    }
    return -1;
}

void KOVSimCompartment::CSetIDs(
    KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>& ids) const {
    KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> filled(m_sets.Size());
    for (int i = 0; i < m_sets.Size(); ++i) filled.Get(i) = m_sets[i].ID();
    ids.Swap(filled);
}
