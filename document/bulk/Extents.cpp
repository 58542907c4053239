#include "document/bulk/Extents.h"

#include <algorithm>
#include <climits>

#include "document/base/Varint.h"

namespace kov::bulk {

namespace {
// A chunk with fewer runs is stored again together with what comes behind it.
constexpr std::size_t MergedChunkRuns = 64;

bool ByMember(Extent const& a, Extent const& b) { return a.first < b.first; }
}  // namespace

void Extents::Append(int first, int count) {
    if (count == 0) return;
    Extent const extent{first, count, m_rows};
    m_rows += count;
    if (!m_arrived.empty() && m_arrived.back().End() == first)
        m_arrived.back().count += count;
    else
        m_arrived.push_back(extent);
    AddSorted(extent);
}

void Extents::AddSorted(Extent const& extent) const {
    if (!m_unsettled.empty()) {
        m_unsettled.push_back(extent);
        return;
    }
    if (m_sorted.empty() || m_sorted.back().End() <= extent.first) {
        if (!m_sorted.empty() && m_sorted.back().End() == extent.first &&
            m_sorted.back().row + m_sorted.back().count == extent.row)
            m_sorted.back().count += extent.count;
        else
            m_sorted.push_back(extent);
        return;
    }
    m_unsettled.push_back(extent);
}

void Extents::Settle() const {
    if (m_unsettled.empty()) return;
    std::sort(m_unsettled.begin(), m_unsettled.end(), ByMember);
    auto const middle = static_cast<std::ptrdiff_t>(m_sorted.size());
    m_sorted.insert(m_sorted.end(), m_unsettled.begin(), m_unsettled.end());
    m_unsettled.clear();
    std::inplace_merge(m_sorted.begin(), m_sorted.begin() + middle, m_sorted.end(), ByMember);
}

std::size_t Extents::LowerBound(int first) const {
    auto const at =
        std::upper_bound(m_sorted.begin(), m_sorted.end(), first,
                         [](int member, Extent const& extent) { return member < extent.End(); });
    return static_cast<std::size_t>(at - m_sorted.begin());
}

Extents::Chunk Extents::Save() {
    Chunk chunk{m_arrived.empty() ? m_rows : m_arrived.front().row, {}};
    int end = 0;
    for (Extent const& extent : m_arrived) {
        base::AppendVarint(chunk.runs, base::Zigzag(std::int64_t{extent.first} - end));
        base::AppendVarint(chunk.runs, static_cast<std::uint64_t>(extent.count));
        end = extent.End();
    }
    m_savedRows = m_rows;
    if (m_arrived.size() >= MergedChunkRuns) m_arrived.clear();
    return chunk;
}

std::string Extents::Load(std::int64_t firstRow, std::string_view runs) {
    if (firstRow != m_rows)
        return "an extent chunk does not begin at the row behind the one before it";
    m_arrived.clear();
    std::int64_t end = 0;
    while (!runs.empty()) {
        std::uint64_t step = 0;
        std::uint64_t count = 0;
        if (!base::TakeVarint(runs, step) || !base::TakeVarint(runs, count))
            return "an extent chunk is cut short";
        std::int64_t const offset = base::Unzigzag(step);
        if (offset < -std::int64_t{INT_MAX} || offset > INT_MAX)
            return "an extent lies outside every collection";
        std::int64_t const first = end + offset;
        if (count == 0 || count > INT_MAX || first < 0 ||
            first + static_cast<std::int64_t>(count) > INT_MAX ||
            static_cast<std::int64_t>(count) > INT_MAX - m_rows)
            return "an extent lies outside every collection";
        Append(static_cast<int>(first), static_cast<int>(count));
        end = first + static_cast<std::int64_t>(count);
    }
    m_savedRows = m_rows;
    if (m_arrived.size() >= MergedChunkRuns) m_arrived.clear();
    return {};
}

bool Extents::Overlap() const {
    std::vector<Extent> const& sorted = Sorted();
    for (std::size_t i = 1; i < sorted.size(); ++i)
        if (sorted[i - 1].End() > sorted[i].first) return true;
    return false;
}

}  // namespace kov::bulk
