// Renumbering: which members of a collection go into a cut copy of it, and the numbers that they
// get there: 0, 1, ... in the order of the source.
//
// Kept members are a bit each, with the count of those before at every eighth word, so that a
// number is found by one look and a few population counts, and ten million members take about two
// megabytes. A contiguous part needs a shift alone. Without a set of kept members all stay as they
// are.
#pragma once

#include <cstdint>
#include <vector>

#include "KOVSimCSet.h"
#include "KOVSimCollection.h"

namespace kov::tool {

class Renumbering {
  public:
    /// All members stay, under their numbers.
    Renumbering() = default;
    /// The members of `kept` stay.
    explicit Renumbering(KOVSimCSet const& kept);

    bool IsIdentity() const { return m_identity; }
    KOVSimCSet const& Kept() const { return m_kept; }

    /// The number of a member in the copy; -1 if it does not go there.
    int NewIndex(int member) const {
        if (m_identity) return member;
        if (member < m_lowest || member > m_highest) return -1;
        std::int64_t const at = static_cast<std::int64_t>(member) - m_lowest;
        if (m_words.empty()) return static_cast<int>(at);
        return Rank(static_cast<std::size_t>(at));
    }
    /// The part of a set that goes into the copy, under the old numbers, ascending.
    KOVSimCSet Part(KOVSimCSet const& set) const;
    /// The part of a set that goes into the copy, as a volatile set of `target`; an ordered set
    /// keeps its order.
    KOVSimCSet Map(KOVSimCSet const& set, KOVSimCollection const& target) const;

  private:
    static constexpr std::size_t kWordsToCount = 8;

    int Rank(std::size_t at) const;

    bool m_identity = true;
    KOVSimCSet m_kept;
    int m_lowest = 0;
    int m_highest = -1;
    std::vector<std::uint64_t> m_words;  ///< empty for a contiguous part
    std::vector<int> m_before;           ///< kept members before every eighth word
};

}  // namespace kov::tool
