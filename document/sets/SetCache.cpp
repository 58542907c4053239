#include "document/sets/SetCache.h"

namespace kov::sets {

namespace {

/// About what a set takes in memory.
std::size_t SizeOf(IndexSet const& set) {
    std::size_t const base = 256;
    switch (set.GetForm()) {
        case Form::Progression:
            return base;
        case Form::Runs:
            return base + 16 * set.CountRuns();
        default:
            return base + sizeof(int) * static_cast<std::size_t>(set.Size());
    }
}

}  // namespace

SetCache::Entry const* SetCache::Find(int number) {
    auto const place = m_places.find(number);
    if (place == m_places.end()) return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, place->second);
    return &m_entries.front();
}

void SetCache::Put(int number, int collection, IndexSetPtr members) {
    if (Find(number)) return;
    std::size_t const bytes = SizeOf(*members);
    while (m_bytes + bytes > m_limit && m_entries.size() > 1) {
        m_bytes -= m_entries.back().bytes;
        m_places.erase(m_entries.back().number);
        m_entries.pop_back();
    }
    m_entries.push_front({number, collection, std::move(members), bytes});
    m_places[number] = m_entries.begin();
    m_bytes += bytes;
}

void SetCache::Clear() {
    m_places.clear();
    m_entries.clear();
    m_bytes = 0;
}

}  // namespace kov::sets
