// Gathering resolves the view's rows to stretches of stored rows, sorts them by row, and reads
// neighbourhoods at once: stretches of some size go straight to the caller's buffer; where single
// rows are wanted all over a block, the block is read to a buffer that stays in the processor's
// cache, and the rows are copied from there. On 10 million nodes that is 20 times as fast as a call
// for each row.
#include <algorithm>
#include <climits>
#include <cstring>

#include "document/bulk/RowOrder.h"
#include "document/bulk/View.h"

namespace kov::bulk {

using sets::IndexSet;

Layout::Layout(View const& view, Drawer& drawer) {
    rowDim = drawer.Info().RowDim();
    rows = view.dims[rowDim].get();
    entryBytes = view.entryBytes;
    rowBytes = drawer.RowBytes();
    IndexSet const& columns = *view.dims[1 - rowDim];
    width = columns.Size();
    rowStep = rowDim == 0 ? width * entryBytes : entryBytes;
    columnStep = rowDim == 0 ? entryBytes : rows->Size() * entryBytes;
    column.reserve(static_cast<std::size_t>(width));
    anyColumn = false;
    whole = (rowDim == 0 || width == 1) && width == drawer.Columns()->Size();
    for (IndexSet::Cursor at(view.dims[1 - rowDim]); !at.Done(); at.Next()) {
        column.push_back(drawer.Columns()->LocationOf(at.Value()));
        anyColumn = anyColumn || column.back() >= 0;
        whole = whole && column.back() == at.Location();
    }
}

namespace {

// A stretch at least this long is read into the caller's buffer directly.
constexpr std::int64_t DirectBytes = 8192;
// Wanted rows with less than this between them are read together.
constexpr std::int64_t JoinedGapBytes = 8192;
// What is read at once for rows that are copied from there: it stays in the second cache.
constexpr std::int64_t WindowBytes = std::int64_t{256} << 10;
// Stretches resolved before they are sorted and read; bounds the memory of a transfer.
constexpr std::size_t BatchRuns = std::size_t{1} << 20;
// The same where they come sorted, so that a larger batch would bring nothing: they stay in cache.
constexpr std::size_t SortedBatchRuns = std::size_t{1} << 14;

class Gatherer {
  public:
    Gatherer(View const& view, Drawer& drawer, char* buffer)
        : m_layout(view, drawer), m_drawer(drawer), m_buffer(buffer) {
        m_most = static_cast<int>(std::clamp<std::int64_t>(
            WindowBytes / std::max<std::int64_t>(m_layout.rowBytes, 1), 1, INT_MAX));
    }

    void Run() {
        if (!m_layout.anyColumn || m_layout.rowBytes == 0) return;
        m_unwritten = m_drawer.Unwritten();
        Extents const& extents = m_drawer.Rows();
        int location = 0;
        m_layout.rows->ForEachStoredRun([&](int first, int count) {
            extents.ForEach(first, count, [&](int from, int n, int row) {
                int const at = location + (from - first);
                if (row >= 0)
                    Want(row, n, at);
                else if (!m_unwritten->IsEmpty())
                    Clear(from, n, at);
            });
            location += count;
            if (m_runs.size() >= (m_sorted ? SortedBatchRuns : BatchRuns)) ReadBatch();
        });
        ReadBatch();
    }

  private:
    // Rows that are to be copied from a window are cut to what fits one.
    void Want(int row, int count, int location) {
        int const most = m_layout.whole ? INT_MAX : m_most;
        if (!m_runs.empty() && row < m_runs.back().row) m_sorted = false;
        for (int done = 0; done < count;) {
            int const n = std::min(count - done, most);
            m_runs.push_back({row + done, n, location + done});
            done += n;
        }
    }

    char* At(int location) const { return m_buffer + location * m_layout.rowStep; }

    void Clear(int first, int count, int location) {
        for (int i = 0; i < count; ++i) {
            if (!m_unwritten->Contains(first + i)) continue;
            for (int j = 0; j < m_layout.width; ++j)
                if (m_layout.column[static_cast<std::size_t>(j)] >= 0)
                    std::memset(At(location + i) + j * m_layout.columnStep, 0,
                                static_cast<std::size_t>(m_layout.entryBytes));
        }
    }

    void ReadBatch() {
        SortByRow(m_runs);
        for (std::size_t i = 0; i < m_runs.size();) {
            RowRun const& run = m_runs[i];
            if (m_layout.whole && run.count * m_layout.rowBytes >= DirectBytes) {
                m_reads.push_back({run.row, run.count, At(run.location)});
                ++i;
                continue;
            }
            i = ReadWindow(i);
        }
        m_drawer.Blocks().Read(m_reads);
        m_reads.clear();
        m_runs.clear();
    }

    // Reads one window from the run at `begin` on, copies what is wanted of it, and gives the run
    // behind the last one done.
    std::size_t ReadWindow(std::size_t begin) {
        std::int64_t const rowBytes = m_layout.rowBytes;
        int const first = m_runs[begin].row;
        std::int64_t end = std::int64_t{first} + m_runs[begin].count;
        std::size_t last = begin + 1;
        while (last < m_runs.size()) {
            RowRun const& next = m_runs[last];
            if ((next.row - end) * rowBytes > JoinedGapBytes ||
                std::int64_t{next.row} + next.count - first > m_most)
                break;
            if (m_layout.whole && next.count * rowBytes >= DirectBytes) break;
            end = std::max(end, std::int64_t{next.row} + next.count);
            ++last;
        }
        int const rows = static_cast<int>(end - first);
        m_window.resize(static_cast<std::size_t>(rows * rowBytes));
        m_drawer.Blocks().Read({{first, rows, m_window.data()}});
        for (std::size_t i = begin; i < last; ++i) {
            RowRun const& run = m_runs[i];
            Copy(m_window.data() + (run.row - first) * rowBytes, run.location, run.count);
        }
        return last;
    }

    void Copy(char const* from, int location, int count) const {
        if (m_layout.whole) {
            CopyWhole(from, At(location), count);
            return;
        }
        for (int i = 0; i < count; ++i) {
            char const* const row = from + i * m_layout.rowBytes;
            char* const to = At(location + i);
            for (int j = 0; j < m_layout.width; ++j) {
                int const column = m_layout.column[static_cast<std::size_t>(j)];
                if (column >= 0)
                    CopyEntry(to + j * m_layout.columnStep, row + column * m_layout.entryBytes);
            }
        }
    }

    // The sizes of a coordinate triple and of single entries are worth a copy of fixed length.
    void CopyWhole(char const* from, char* to, int count) const {
        auto const bytes = static_cast<std::size_t>(m_layout.rowBytes);
        if (count == 1 && bytes == 24)
            std::memcpy(to, from, 24);
        else if (count == 1 && bytes == 8)
            std::memcpy(to, from, 8);
        else
            std::memcpy(to, from, static_cast<std::size_t>(count) * bytes);
    }

    void CopyEntry(char* to, char const* from) const {
        if (m_layout.entryBytes == 8)
            std::memcpy(to, from, 8);
        else
            std::memcpy(to, from, 4);
    }

    Layout m_layout;
    Drawer& m_drawer;
    char* m_buffer;
    sets::IndexSetPtr m_unwritten;
    int m_most;  // rows of a window
    std::vector<RowRun> m_runs;
    bool m_sorted = true;  // all that was wanted so far came by ascending row
    std::vector<RowsRead> m_reads;
    std::vector<char> m_window;
};

}  // namespace

void Gather(View const& view, Drawer& drawer, char* buffer) {
    Gatherer(view, drawer, buffer).Run();
}

}  // namespace kov::bulk
