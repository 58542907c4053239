#include "ExodusLabels.h"

#include <algorithm>
#include <limits>

namespace kov::tool {

namespace {

constexpr std::size_t kPiece = 100'000;
constexpr int kMost = std::numeric_limits<int>::max();

}  // namespace

ExodusLabels::ExodusLabels(NetcdfFile const& file, std::string const& map, std::size_t count)
    : m_count(count), m_map(file.Find(map)) {
    if (count > static_cast<std::size_t>(kMost)) {
        file.Refuse("has " + std::to_string(count) + " items for " + map + ", and labels end at " +
                    std::to_string(kMost));
    }
    if (!m_map) return;
    if (!m_map->IsInteger() || m_map->shape != std::vector<std::size_t>{count}) {
        file.Refuse(*m_map, "is not a list of " + std::to_string(count) + " whole numbers");
    }
    // Ascending labels do not repeat; others are sorted to see.
    std::vector<int> piece;
    bool ascending = true;
    int last = 0;
    for (std::size_t first = 0; first < count; first += kPiece) {
        Read(file, first, std::min(kPiece, count - first), piece);
        for (int const label : piece) {
            ascending = ascending && label > last;
            last = label;
        }
    }
    if (ascending) return;
    std::vector<int> all;
    all.reserve(count);
    for (std::size_t first = 0; first < count; first += kPiece) {
        Read(file, first, std::min(kPiece, count - first), piece);
        all.insert(all.end(), piece.begin(), piece.end());
    }
    std::sort(all.begin(), all.end());
    auto const twice = std::adjacent_find(all.begin(), all.end());
    if (twice != all.end()) {
        file.Refuse(*m_map, "has the label " + std::to_string(*twice) + " twice");
    }
}

void ExodusLabels::Read(NetcdfFile const& file, std::size_t first, std::size_t count,
                        std::vector<int>& labels) const {
    labels.resize(count);
    if (!m_map) {
        for (std::size_t i = 0; i < count; ++i) labels[i] = static_cast<int>(first + i) + 1;
        return;
    }
    std::vector<long long> numbers(count);
    file.Read(*m_map, {first}, {count}, numbers.data());
    for (std::size_t i = 0; i < count; ++i) {
        if (numbers[i] < 1 || numbers[i] > kMost) {
            file.Refuse(*m_map, "has the label " + std::to_string(numbers[i]) +
                                    ", and labels go from 1 to " + std::to_string(kMost));
        }
        labels[i] = static_cast<int>(numbers[i]);
    }
}

}  // namespace kov::tool
