// LabelOrder: labels and their ordinals in order of labels, and the way from a label to its
// ordinal. Mostly labels fill a range that is not much larger than their number, and then a table
// over that range does both, at the speed of memory. Of a label that stands twice all ordinals are
// kept in order, and the lowest is found. For the labeler.
#pragma once

#include <cstdint>
#include <vector>

#include "KOVBasVector.h"

namespace kov::facades {

/// A label and its ordinal in one word, which orders by label.
constexpr std::uint64_t PairOf(int label, int ordinal) {
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(label) ^ 0x80000000u) << 32 |
           static_cast<std::uint32_t>(ordinal);
}
constexpr int LabelOf(std::uint64_t pair) {
    return static_cast<int>(static_cast<std::uint32_t>(pair >> 32) ^ 0x80000000u);
}
constexpr int OrdinalOf(std::uint64_t pair) {
    return static_cast<int>(static_cast<std::uint32_t>(pair));
}

/// Brings both into ascending order of labels, in at most 16 further bytes for each. Both have the
/// same size; the ordinals are ascending, or no label stands twice.
void SortByLabel(KOVBasVector<int>& labels, KOVBasVector<int>& ordinals);

/// From a label to its ordinal, in at most 8 bytes for each label, and in none where labels and
/// ordinals run side by side.
class LabelIndex {
  public:
    /// `labels` and `ordinals` are of one size, in any order; no ordinal stands twice.
    LabelIndex(KOVBasVector<int> const& labels, KOVBasVector<int> const& ordinals);
    /// -1 if there is no such label.
    int Find(int label) const;

  private:
    std::int64_t m_lowest = 0;
    std::int64_t m_range = 0;  // labels [m_lowest, m_lowest + m_range)
    int m_first = -1;          // ordinal of the lowest label, where all run side by side
    std::vector<int> m_table;  // by label - m_lowest
    std::vector<std::uint64_t> m_pairs;
};

}  // namespace kov::facades
