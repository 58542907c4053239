#include "document/facades/LabelCheck.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace kov::facades {

namespace {

// Values of one pass over them: 4 MiB of bits. Labels seldom reach beyond a few times their number,
// so that one or two passes do; the whole range of an int takes 128.
constexpr std::int64_t Window = std::int64_t{1} << 25;

}  // namespace

bool IsStrictlyAscending(KOVBasVector<int> const& values) {
    return std::adjacent_find(values.begin(), values.end(), [](int a, int b) { return a >= b; }) ==
           values.end();
}

std::optional<int> FindDuplicate(KOVBasVector<int> const& values) {
    if (IsStrictlyAscending(values)) return std::nullopt;
    auto const [lowest, highest] = std::minmax_element(values.begin(), values.end());
    std::int64_t const end = std::int64_t{*highest} + 1;
    std::vector<std::uint64_t> seen;
    for (std::int64_t first = *lowest; first < end; first += Window) {
        std::int64_t const width = std::min(Window, end - first);
        seen.assign(static_cast<std::size_t>(width + 63) / 64, 0);
        for (int const value : values) {
            std::int64_t const place = value - first;
            if (place < 0 || place >= width) continue;
            std::uint64_t& word = seen[static_cast<std::size_t>(place) / 64];
            std::uint64_t const bit = std::uint64_t{1} << (place % 64);
            if (word & bit) return value;
            word |= bit;
        }
    }
    return std::nullopt;
}

}  // namespace kov::facades
