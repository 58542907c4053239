// The table of a label mapping in order of primary ordinals, made from the tables of the instances.
// For the label mapper.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
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

/// The rows of one instance.
struct LabelRows {
    Quads quads;
    int count;
};

// How many of a set of distinct ordinals are below one of them: a bit for each ordinal, and the sum
// before each word of bits. It takes 12 bytes for 64 ordinals and stays in the cache where a table
// of rows does not, so that rows go to their places at once and need no sorting. Sorting five
// million rows of permuted ordinals with qsort takes ten times as long.
class OrdinalRanks {
  public:
    /// Of the primary ordinals of all rows; false if these are too scattered, or one stands twice.
    bool Build(std::vector<LabelRows> const& parts) {
        std::int64_t rows = 0;
        std::int64_t lowest = INT32_MAX;
        std::int64_t highest = INT32_MIN;
        for (LabelRows const& part : parts) {
            rows += part.count;
            for (int i = 0; i < part.count; ++i) {
                std::int64_t const ordinal = part.quads[At(i)].primaryOrdinal;
                lowest = std::min(lowest, ordinal);
                highest = std::max(highest, ordinal);
            }
        }
        if (rows == 0 || highest - lowest >= 64 * rows) return false;
        m_lowest = lowest;
        m_words.assign(At((highest - lowest) / 64 + 1), 0);
        for (LabelRows const& part : parts) {
            for (int i = 0; i < part.count; ++i) {
                std::size_t const place = Place(part.quads[At(i)].primaryOrdinal);
                std::uint64_t const bit = std::uint64_t{1} << (place % 64);
                if (m_words[place / 64] & bit) return false;
                m_words[place / 64] |= bit;
            }
        }
        m_before.reserve(m_words.size());
        std::uint32_t sum = 0;
        for (std::uint64_t const word : m_words) {
            m_before.push_back(sum);
            sum += static_cast<std::uint32_t>(std::popcount(word));
        }
        return true;
    }

    std::size_t Rank(int ordinal) const {
        std::size_t const place = Place(ordinal);
        std::uint64_t const below = (std::uint64_t{1} << (place % 64)) - 1;
        return m_before[place / 64] +
               static_cast<std::size_t>(std::popcount(m_words[place / 64] & below));
    }

  private:
    template <class Integer>
    static std::size_t At(Integer i) {
        return static_cast<std::size_t>(i);
    }
    std::size_t Place(int ordinal) const { return At(ordinal - m_lowest); }

    std::int64_t m_lowest = 0;
    std::vector<std::uint64_t> m_words;
    std::vector<std::uint32_t> m_before;
};

}  // namespace kov::fsm
