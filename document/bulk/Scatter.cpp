// Scattering brings the caller's rows into ascending order of members, whole, and hands them to the
// drawer in blocks: the caller's buffer itself where it is in that order already.
#include <algorithm>
#include <climits>
#include <cstring>

#include "document/bulk/RowOrder.h"
#include "document/bulk/View.h"

namespace kov::bulk {

using sets::IndexSet;
using sets::IndexSetPtr;

namespace {

constexpr std::int64_t StagedBytes = std::int64_t{8} << 20;

// Member runs of an ordered set in ascending order, each with its place in the stored order.
std::vector<RowRun> SortedRuns(IndexSet const& set) {
    std::vector<RowRun> runs;
    int location = 0;
    set.ForEachStoredRun([&](int first, int count) {
        runs.push_back({first, count, location});
        location += count;
    });
    SortByRow(runs);
    return runs;
}

class Scatterer {
  public:
    Scatterer(View const& view, Drawer& drawer, char const* buffer)
        : m_layout(view, drawer),
          m_drawer(drawer),
          m_buffer(buffer),
          m_rowSet(view.dims[m_layout.rowDim]) {
        m_allColumns = m_layout.width == drawer.Columns()->Size();
    }

    void Run() {
        if (m_rowSet->IsEmpty() || m_layout.width == 0) return;
        if (m_layout.whole && m_rowSet->IsAscending()) {
            m_drawer.Write(m_rowSet, m_buffer);
            return;
        }
        int const most =
            static_cast<int>(std::clamp<std::int64_t>(StagedBytes / m_layout.rowBytes, 1, INT_MAX));
        for (RowRun const& run : SortedRuns(*m_rowSet)) {
            for (int done = 0; done < run.count;) {
                int const count = std::min(run.count - done, most - m_staged);
                m_members.push_back({run.row + done, run.row + done + count});
                Stage(run.location + done, count);
                done += count;
                if (m_staged == most) WriteStaged();
            }
        }
        WriteStaged();
    }

  private:
    void Stage(int location, int count) {
        std::int64_t const rowBytes = m_layout.rowBytes;
        auto const from = static_cast<std::size_t>(m_staged * rowBytes);
        m_rows.resize(from + static_cast<std::size_t>(count * rowBytes));
        m_locations.push_back({m_staged, count, location});
        m_staged += count;
    }

    void WriteStaged() {
        if (m_staged == 0) return;
        std::vector<sets::Run> runs;
        for (sets::Run const& run : m_members) {
            if (!runs.empty() && runs.back().end == run.first)
                runs.back().end = run.end;
            else
                runs.push_back(run);
        }
        IndexSetPtr const members = IndexSet::FromRuns(runs.data(), runs.size());
        if (!m_allColumns) ReadPresent(members);
        for (RowRun const& staged : m_locations) Fill(staged);
        m_drawer.Write(members, m_rows.data());
        m_members.clear();
        m_locations.clear();
        m_rows.clear();
        m_staged = 0;
    }

    // The columns that the view does not name keep what they have.
    void ReadPresent(IndexSetPtr const& members) {
        std::fill(m_rows.begin(), m_rows.end(), char{0});
        View present;
        present.dimensions = m_drawer.Info().dimensions;
        present.entryBytes = m_drawer.Info().entryBytes;
        present.dims[m_layout.rowDim] = members;
        present.dims[1 - m_layout.rowDim] = m_drawer.Columns();
        if (m_layout.rowDim == 0) {
            Gather(present, m_drawer, m_rows.data());
            return;
        }
        // A buffer of the view's kind would run by columns: read it and turn it.
        std::vector<char> turned(m_rows.size());
        Gather(present, m_drawer, turned.data());
        int const columns = m_drawer.Columns()->Size();
        auto const bytes = static_cast<std::size_t>(m_layout.entryBytes);
        for (int i = 0; i < m_staged; ++i)
            for (int j = 0; j < columns; ++j)
                std::memcpy(m_rows.data() +
                                (std::size_t(i) * std::size_t(columns) + std::size_t(j)) * bytes,
                            turned.data() +
                                (std::size_t(j) * std::size_t(m_staged) + std::size_t(i)) * bytes,
                            bytes);
    }

    void Fill(RowRun const& staged) {
        for (int i = 0; i < staged.count; ++i) {
            char* const row = m_rows.data() + (staged.row + i) * m_layout.rowBytes;
            char const* const from = m_buffer + (staged.location + i) * m_layout.rowStep;
            if (m_layout.whole) {
                std::memcpy(row, from, static_cast<std::size_t>(m_layout.rowBytes));
                continue;
            }
            for (int j = 0; j < m_layout.width; ++j)
                std::memcpy(
                    row + m_layout.column[static_cast<std::size_t>(j)] * m_layout.entryBytes,
                    from + j * m_layout.columnStep, static_cast<std::size_t>(m_layout.entryBytes));
        }
    }

    Layout m_layout;
    Drawer& m_drawer;
    char const* m_buffer;
    IndexSetPtr m_rowSet;
    bool m_allColumns;
    std::vector<sets::Run> m_members;
    std::vector<RowRun> m_locations;  // `row`: place among the staged rows
    std::vector<char> m_rows;
    int m_staged = 0;
};

}  // namespace

void Scatter(View const& view, Drawer& drawer, char const* buffer) {
    Scatterer(view, drawer, buffer).Run();
}

}  // namespace kov::bulk
