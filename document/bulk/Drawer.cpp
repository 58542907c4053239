#include "document/bulk/Drawer.h"

#include <algorithm>
#include <cstring>
#include <exception>

#include "KOVSimException.h"
#include "document/base/Invariant.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

namespace kov::bulk {

using sets::IndexSet;
using sets::IndexSetPtr;

namespace {
// An overwrite that touches more runs than this within the rows of one block rewrites these rows as
// a whole.
constexpr std::size_t ScatteredRuns = 8;

std::string NameOf(DrawerInfo const& info) {
    return "drawer " + std::to_string(info.number) + " of distribution " +
           std::to_string(info.distribution);
}
}  // namespace

Drawer::Drawer(store::Context& context, DrawerInfo const& info, IndexSetPtr rowMembers,
               IndexSetPtr columns)
    : m_context(context),
      m_info(info),
      m_columns(std::move(columns)),
      m_fixedRows(info.growing < 0 ? rowMembers : nullptr),
      m_unwritten(info.growing < 0 ? IndexSet::Empty() : rowMembers),
      m_rowMembers(info.growing < 0 ? nullptr : std::move(rowMembers)),
      m_extentsLoaded(true),
      m_storedRows(0),
      m_blocks(context, {info.distribution, info.number},
               std::int64_t{info.entryBytes} * m_columns->Size(), 0),
      m_changed(true) {}

Drawer::Drawer(store::Context& context, DrawerInfo const& info, IndexSetPtr rowMembers,
               IndexSetPtr columns, int rows, std::int64_t rowBytes, IndexSetPtr unwritten)
    : m_context(context),
      m_info(info),
      m_columns(std::move(columns)),
      m_fixedRows(std::move(rowMembers)),
      m_unwritten(std::move(unwritten)),
      m_extentsLoaded(false),
      m_storedRows(rows),
      m_blocks(context, {info.distribution, info.number}, rowBytes, rows) {
    if (rowBytes != std::int64_t{info.entryBytes} * m_columns->Size())
        KOVSimException::ThrowText(
            (NameOf(info) + ": the catalogue's size of a row does not agree with its columns")
                .c_str());
}

class Drawer::Change {
  public:
    explicit Change(Drawer& drawer) : m_drawer(drawer), m_flying(std::uncaught_exceptions()) {
        drawer.RequireWhole();
    }
    ~Change() {
        if (std::uncaught_exceptions() > m_flying) m_drawer.m_torn = true;
    }
    Change(Change const&) = delete;
    Change& operator=(Change const&) = delete;

  private:
    Drawer& m_drawer;
    int m_flying;
};

void Drawer::RequireWhole() const {
    if (m_torn)
        KOVSimException::ThrowText((NameOf(m_info) +
                                    ": a write to it has failed half-way, and the transaction can "
                                    "only be dropped")
                                       .c_str());
}

RowBlocks& Drawer::Blocks() {
    RequireWhole();
    return m_blocks;
}

void Drawer::LoadExtents() {
    if (m_extentsLoaded) return;
    Extents extents;
    store::Statement query(
        m_context.Cat(), "SELECT first_row, runs FROM extents WHERE drawer = ? ORDER BY first_row");
    query.Bind(m_info.number);
    while (query.Step()) {
        std::string const fault = extents.Load(query.Int(0), query.Blob(1));
        if (!fault.empty()) KOVSimException::ThrowText((NameOf(m_info) + ": " + fault).c_str());
    }
    if (extents.Overlap())
        KOVSimException::ThrowText(
            (NameOf(m_info) + ": two of its extents hold the same member").c_str());
    if (extents.Rows() != m_storedRows)
        KOVSimException::ThrowText((NameOf(m_info) + ": its extents hold " +
                                    std::to_string(extents.Rows()) + " rows of " +
                                    std::to_string(m_storedRows))
                                       .c_str());
    m_extents = std::move(extents);
    m_extentsLoaded = true;
}

Extents const& Drawer::Rows() {
    RequireWhole();
    LoadExtents();
    return m_extents;
}

IndexSetPtr const& Drawer::RowMembers() {
    if (m_info.growing < 0) return m_fixedRows;
    RequireWhole();
    if (!m_rowMembers) {
        LoadExtents();
        std::vector<sets::Run> runs;
        for (Extent const& extent : m_extents.Sorted()) {
            if (!runs.empty() && runs.back().end == extent.first)
                runs.back().end = extent.End();
            else
                runs.push_back({extent.first, extent.End()});
        }
        m_rowMembers = sets::Union(IndexSet::FromRuns(runs.data(), runs.size()), m_unwritten);
    }
    return m_rowMembers;
}

IndexSetPtr Drawer::Unwritten() {
    if (m_info.growing >= 0) return m_unwritten;
    LoadExtents();
    if (m_extents.Rows() == m_fixedRows->Size()) return IndexSet::Empty();
    std::vector<sets::Run> runs;
    m_fixedRows->ForEachRun([&](int first, int count) {
        m_extents.ForEach(first, count, [&](int from, int n, int row) {
            if (row < 0) runs.push_back({from, from + n});
        });
    });
    return IndexSet::FromRuns(runs.data(), runs.size());
}

void Drawer::Extend(IndexSetPtr const& members) {
    IndexSetPtr const fresh = sets::Difference(members, RowMembers());
    if (fresh->IsEmpty()) return;
    Change const change(*this);
    m_unwritten = sets::Union(m_unwritten, fresh);
    m_rowMembers = sets::UnionInto(std::move(m_rowMembers), fresh);
    m_changed = true;
}

void Drawer::Write(IndexSetPtr const& members, char const* data) {
    if (members->IsEmpty()) return;
    LoadExtents();
    Change const change(*this);
    m_changed = true;
    if (m_info.growing >= 0) {
        RowMembers();
        m_rowMembers = sets::UnionInto(std::move(m_rowMembers), members);
        if (!m_unwritten->IsEmpty()) m_unwritten = sets::Difference(m_unwritten, members);
    }
    // Stretches of new members are neighbours in the caller's buffer unless members that have rows
    // lie between.
    std::vector<RowsRead> overwritten;
    std::vector<Extent> fresh;  // `row`: place in the buffer
    int at = 0;
    members->ForEachRun([&](int first, int count) {
        m_extents.ForEach(first, count, [&](int from, int n, int row) {
            if (row < 0)
                fresh.push_back({from, n, at});
            else
                overwritten.push_back({row, n, const_cast<char*>(data) + at * RowBytes()});
            at += n;
        });
    });
    for (std::size_t i = 0; i < fresh.size();) {
        std::size_t end = i;
        int rows = 0;
        while (end < fresh.size() && fresh[end].row == fresh[i].row + rows) {
            rows += fresh[end].count;
            m_extents.Append(fresh[end].first, fresh[end].count);
            ++end;
        }
        m_blocks.Append(data + fresh[i].row * RowBytes(), rows);
        i = end;
    }
    std::sort(overwritten.begin(), overwritten.end(),
              [](RowsRead const& a, RowsRead const& b) { return a.row < b.row; });
    int const window =
        static_cast<int>(std::max<std::int64_t>(1, std::int64_t{store::BlockBytes} / RowBytes()));
    for (std::size_t i = 0; i < overwritten.size();) {
        std::size_t end = i + 1;
        // A run as long as a block is written by itself: patching gains nothing there.
        while (overwritten[i].rows < window && end < overwritten.size() &&
               overwritten[end].rows < window &&
               overwritten[end].row / window == overwritten[i].row / window)
            ++end;
        if (end - i > ScatteredRuns) {
            OverwriteWindow({overwritten.begin() + static_cast<std::ptrdiff_t>(i),
                             overwritten.begin() + static_cast<std::ptrdiff_t>(end)});
        } else {
            for (std::size_t k = i; k < end; ++k)
                m_blocks.Overwrite(overwritten[k].row, overwritten[k].out, overwritten[k].rows);
        }
        i = end;
    }
}

// Rewrites from the first to the last row that the runs touch: read, patched, written as one.
void Drawer::OverwriteWindow(std::vector<RowsRead> const& runs) {
    int const first = runs.front().row;
    int const rows = runs.back().row + runs.back().rows - first;
    std::vector<char> patched(static_cast<std::size_t>(rows * RowBytes()));
    m_blocks.Read({{first, rows, patched.data()}});
    for (RowsRead const& run : runs)
        std::memcpy(patched.data() + (run.row - first) * RowBytes(), run.out,
                    static_cast<std::size_t>(run.rows * RowBytes()));
    m_blocks.Overwrite(first, patched.data(), rows);
}

void Drawer::Save() {
    Change const change(*this);
    if (!m_changed) return;
    m_blocks.Release();
    if (m_extents.HasUnsaved()) {
        Extents::Chunk const chunk = m_extents.Save();
        store::Statement insert(m_context.Cat(), "INSERT OR REPLACE INTO extents VALUES(?, ?, ?)");
        insert.Bind(m_info.number)
            .Bind(chunk.firstRow)
            .BindBlob(chunk.runs.data(), chunk.runs.size())
            .Run();
    }
    std::string unwritten;
    if (m_info.growing >= 0 && !m_unwritten->IsEmpty()) sets::Encode(*m_unwritten, unwritten);
    store::Statement update(m_context.Cat(),
                            "UPDATE drawers SET rows = ?, unwritten = ? WHERE number = ?");
    update.Bind(m_extents.Rows())
        .BindBlob(unwritten.data(), unwritten.size())
        .Bind(m_info.number)
        .Run();
    m_storedRows = m_extents.Rows();
    m_changed = false;
}

void Drawer::Flush() {
    Change const change(*this);
    m_blocks.Release();
}

void Drawer::Check(std::function<void(std::string const&)> const& finding) {
    LoadExtents();
    if (m_info.growing < 0) {
        for (Extent const& extent : m_extents.Sorted())
            if (!m_fixedRows->ContainsRun(extent.first, extent.End())) {
                finding(NameOf(m_info) +
                        ": a row belongs to a member that the drawer does not hold");
                break;
            }
    }
    if (RowBytes() > 0) m_blocks.Check();
}

}  // namespace kov::bulk
