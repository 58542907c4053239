#include "document/bulk/RowOrder.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace kov::bulk {

namespace {
constexpr std::size_t RadixFrom = 4096;
constexpr int Bits = 11;
constexpr std::uint32_t Mask = (1U << Bits) - 1;

bool ByRow(RowRun const& a, RowRun const& b) { return a.row < b.row; }
}  // namespace

void SortByRow(std::vector<RowRun>& runs) {
    if (std::is_sorted(runs.begin(), runs.end(), ByRow)) return;
    if (runs.size() < RadixFrom) {
        std::sort(runs.begin(), runs.end(), ByRow);
        return;
    }
    std::uint32_t highest = 0;
    for (RowRun const& run : runs) highest = std::max(highest, static_cast<std::uint32_t>(run.row));
    std::vector<RowRun> other(runs.size());
    for (int shift = 0; shift < 32 && (highest >> shift) != 0; shift += Bits) {
        std::array<std::size_t, Mask + 1> start{};
        for (RowRun const& run : runs)
            ++start[(static_cast<std::uint32_t>(run.row) >> shift) & Mask];
        std::size_t sum = 0;
        for (std::size_t& each : start) {
            std::size_t const count = each;
            each = sum;
            sum += count;
        }
        for (RowRun const& run : runs)
            other[start[(static_cast<std::uint32_t>(run.row) >> shift) & Mask]++] = run;
        runs.swap(other);
    }
}

}  // namespace kov::bulk
