#include "Renumbering.h"

#include <bit>

#include "AscendingSets.h"
#include "KOVSimCSetIterator.h"

namespace kov::tool {

Renumbering::Renumbering(KOVSimCSet const& kept) : m_identity(false), m_kept(Ascending(kept)) {
    if (m_kept.IsEmpty() || IsRange(m_kept, m_lowest, m_highest)) {
        if (m_kept.IsEmpty()) m_highest = m_lowest - 1;
        return;
    }
    std::size_t const span =
        static_cast<std::size_t>(m_highest) - static_cast<std::size_t>(m_lowest) + 1;
    m_words.assign((span + 63) / 64, 0);
    KOVSimCSetIterator at(m_kept);
    for (at.First(); !at.IsDone(); at.Next()) {
        auto const bit = static_cast<std::size_t>(at.CurrentValue() - m_lowest);
        m_words[bit / 64] |= std::uint64_t{1} << (bit % 64);
    }
    int before = 0;
    for (std::size_t word = 0; word < m_words.size(); ++word) {
        if (word % kWordsToCount == 0) m_before.push_back(before);
        before += std::popcount(m_words[word]);
    }
}

int Renumbering::Rank(std::size_t at) const {
    std::size_t const word = at / 64;
    std::uint64_t const bit = std::uint64_t{1} << (at % 64);
    if ((m_words[word] & bit) == 0) return -1;
    int rank = m_before[word / kWordsToCount];
    for (std::size_t w = word - word % kWordsToCount; w < word; ++w) {
        rank += std::popcount(m_words[w]);
    }
    return rank + std::popcount(m_words[word] & (bit - 1));
}

KOVSimCSet Renumbering::Part(KOVSimCSet const& set) const {
    if (m_identity || set.IsEmpty()) return Ascending(set);
    return Ascending(set).Intersection(m_kept);
}

KOVSimCSet Renumbering::Map(KOVSimCSet const& set, KOVSimCollection const& target) const {
    if (!set.IsAscending()) {
        std::vector<int> members;
        members.reserve(static_cast<std::size_t>(set.Size()));
        KOVSimCSetIterator at(set);
        for (at.First(); !at.IsDone(); at.Next()) {
            int const index = NewIndex(at.CurrentValue());
            if (index >= 0) members.push_back(index);
        }
        return target.CreateVolatileOrderedCSet(members.data(), static_cast<int>(members.size()));
    }
    KOVSimCSet const part = Part(set);
    if (part.IsEmpty()) return KOVSimCSet(target.ID());
    // New numbers are as close together as the kept members: the part is one run if its ends say
    // so.
    int first = 0;
    int last = 0;
    IsRange(part, first, last);
    int const newFirst = NewIndex(first);
    if (static_cast<long long>(NewIndex(last)) - newFirst + 1 == part.Size()) {
        return target.CreateVolatileCSetStrided(newFirst, part.Size(), 1, 1);
    }
    std::vector<int> members(static_cast<std::size_t>(part.Size()));
    part.Members(members.data());
    for (int& member : members) member = NewIndex(member);
    return target.CreateVolatileCSet(members.data(), static_cast<int>(members.size()), false);
}

}  // namespace kov::tool
