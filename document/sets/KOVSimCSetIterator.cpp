#include "KOVSimCSetIterator.h"

#include "document/sets/IndexSet.h"

KOVSimCSetIterator::KOVSimCSetIterator(KOVSimCSet const& set)
    : m_members(set.Storage()), m_size(set.Size()) {
    First();
}

KOVSimCSetIterator::~KOVSimCSetIterator() = default;

void KOVSimCSetIterator::First() {
    m_location = 0;
    if (m_begin != 0 || m_end == 0) Fill();
}

void KOVSimCSetIterator::Fill() {
    int const left = m_size - m_location;
    int const count = left < BufferSize ? left : BufferSize;
    m_members->CopyStored(m_location, count, m_buffer);
    m_begin = m_location;
    m_end = m_location + count;
}
