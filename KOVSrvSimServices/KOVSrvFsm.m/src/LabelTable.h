// The table of a label mapping: its memory, and its order by primary ordinals. For the label
// mapper.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "KOVSrvLabelMapper.h"
#include "mem.h"

namespace kov::fsm {

struct QuadsFreed {
    void operator()(void* pointer) const { mem_Free(pointer); }
};
using Quads = std::unique_ptr<KOVSrvLabelMapperQuad[], QuadsFreed>;

inline Quads AllocateQuads(std::size_t count) {
    return Quads(static_cast<KOVSrvLabelMapperQuad*>(
        mem_OperatorNewTinyThrow(count * sizeof(KOVSrvLabelMapperQuad))));
}

// How many of the primary ordinals of a table are below one of them: a bit for each ordinal, and
// the sum before each word of bits. It takes 12 bytes for 64 ordinals and stays in the cache where
// a table of rows does not.
class OrdinalRanks {
  public:
    /// False if the ordinals are too scattered, or one stands twice.
    bool Build(KOVSrvLabelMapperQuad const* rows, std::size_t count) {
        int lowest = INT32_MAX;
        int highest = INT32_MIN;
        for (std::size_t i = 0; i < count; ++i) {
            lowest = std::min(lowest, rows[i].primaryOrdinal);
            highest = std::max(highest, rows[i].primaryOrdinal);
        }
        m_lowest = lowest;
        if (count == 0 || Place(highest) / 64 >= count) return false;
        m_words.assign(Place(highest) / 64 + 1, 0);
        for (std::size_t i = 0; i < count; ++i) {
            std::size_t const place = Place(rows[i].primaryOrdinal);
            std::uint64_t const bit = std::uint64_t{1} << (place % 64);
            if (m_words[place / 64] & bit) return false;
            m_words[place / 64] |= bit;
        }
        m_before.reserve(m_words.size());
        std::uint32_t sum = 0;
        for (std::uint64_t const word : m_words) {
            m_before.push_back(sum);
            sum += static_cast<std::uint32_t>(std::popcount(word));
        }
        return true;
    }

    std::size_t Of(KOVSrvLabelMapperQuad const& row) const {
        std::size_t const place = Place(row.primaryOrdinal);
        std::uint64_t const below = (std::uint64_t{1} << (place % 64)) - 1;
        return m_before[place / 64] +
               static_cast<std::size_t>(std::popcount(m_words[place / 64] & below));
    }

  private:
    std::size_t Place(int ordinal) const { return static_cast<std::size_t>(ordinal - m_lowest); }

    std::int64_t m_lowest = 0;
    std::vector<std::uint64_t> m_words;
    std::vector<std::uint32_t> m_before;
};

inline bool IsSortedByPrimaryOrdinal(KOVSrvLabelMapperQuad const* rows, std::size_t count) {
    return std::is_sorted(rows, rows + count,
                          [](KOVSrvLabelMapperQuad const& a, KOVSrvLabelMapperQuad const& b) {
                              return a.primaryOrdinal < b.primaryOrdinal;
                          });
}

/// Copies rows to `to`, sorted by their primary ordinals, and gives the end of the copy. Each row
/// goes where its rank says; qsort, which takes several times as long, is left for ordinals that
/// are few in a wide range, or that two instances share. Following the ranks in place would wait
/// for memory at each row.
inline KOVSrvLabelMapperQuad* CopySorted(KOVSrvLabelMapperQuad const* rows, std::size_t count,
                                         KOVSrvLabelMapperQuad* to) {
    if (IsSortedByPrimaryOrdinal(rows, count)) return std::copy_n(rows, count, to);
    OrdinalRanks ranks;
    if (ranks.Build(rows, count)) {
        for (std::size_t i = 0; i < count; ++i) to[ranks.Of(rows[i])] = rows[i];
        return to + count;
    }
    KOVSrvLabelMapperQuad* const end = std::copy_n(rows, count, to);
    std::qsort(to, count, sizeof *to, KOVSrvLabelMapper::IntQuadCompare);
    return end;
}

}  // namespace kov::fsm
