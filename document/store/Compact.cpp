// A copy without superseded bytes: the catalogue as this context sees it, through SQLite's backup,
// then each drawer's rows in fresh blocks in segments of the copy's own. Built like a new document,
// under a temporary name.
#include <sqlite3.h>

#include <algorithm>

#include "document/store/BlockRow.h"
#include "document/store/ContextOpened.h"
#include "document/store/Errors.h"

namespace kov::store {

namespace {

/// Rows of one drawer on their way into fresh blocks.
class RowCopier {
  public:
    RowCopier(BlockStore& from, BlockStore& to, Catalogue& catalogue)
        : m_from(from),
          m_to(to),
          m_insert(
              catalogue,
              "INSERT INTO blocks(drawer, first_row, rows, skip, segment, offset, bytes, sums) "
              "VALUES(?, ?, ?, 0, ?, ?, ?, ?)") {}

    void Add(BlockRow const& row) {
        if (row.drawer != m_drawer || row.firstRow != m_nextRow) {
            Flush();
            m_drawer = row.drawer;
            m_rowBytes = row.rowBytes;
            m_firstRow = m_nextRow = row.firstRow;
        }
        std::int64_t done = 0;
        while (done < row.rows) {
            std::int64_t const room =
                static_cast<std::int64_t>(GatheredBytes - std::min(GatheredBytes, m_rows.size()));
            std::int64_t const n =
                std::min(row.rows - done, std::max<std::int64_t>(1, room / m_rowBytes));
            std::size_t const at = m_rows.size();
            m_rows.resize(at + static_cast<std::size_t>(n * m_rowBytes));
            BlockRead const read{&row.block, (row.skip + done) * m_rowBytes, n * m_rowBytes,
                                 m_rows.data() + at};
            m_from.Read({row.distribution, row.drawer}, &read, 1);
            done += n;
            m_nextRow += n;
            if (m_rows.size() >= GatheredBytes) Flush();
        }
    }

    void Flush() {
        if (m_rows.empty()) return;
        for (Block const& block :
             m_to.Append(m_rows.data(), m_rows.size(), static_cast<std::size_t>(m_rowBytes))) {
            std::int64_t const rows = block.bytes / m_rowBytes;
            m_insert.Bind(m_drawer)
                .Bind(m_firstRow)
                .Bind(rows)
                .Bind(block.segment)
                .Bind(block.offset)
                .Bind(block.bytes);
            m_insert.BindBlob(block.sums.data(), block.sums.size() * sizeof(std::uint64_t)).Run();
            m_firstRow += rows;
        }
        m_rows.clear();
    }

  private:
    static constexpr std::size_t GatheredBytes = 8 * BlockBytes;

    BlockStore& m_from;
    BlockStore& m_to;
    Statement m_insert;
    int m_drawer = 0;
    std::int64_t m_rowBytes = 0;
    std::int64_t m_firstRow = 0;
    std::int64_t m_nextRow = -1;
    std::vector<char> m_rows;
};

void CopyCatalogue(Catalogue& from, Catalogue& to) {
    sqlite3_backup* const backup = sqlite3_backup_init(to.Handle(), "main", from.Handle(), "main");
    if (!backup) to.Raise(sqlite3_extended_errcode(to.Handle()), true);
    int const step = sqlite3_backup_step(backup, -1);
    int const finish = sqlite3_backup_finish(backup);
    if (step != SQLITE_DONE) from.Raise(step, false);
    if (finish != SQLITE_OK) to.Raise(finish, true);
}

void CopyBlocks(Catalogue& from, BlockStore& blocks, Catalogue& to, BlockStore& fresh) {
    RowCopier copier(blocks, fresh, to);
    Statement rows(from, BlockRow::Query);
    while (rows.Step()) {
        BlockRow const row = BlockRow::Of(rows);
        if (std::string const wrong = row.Fault(); !wrong.empty()) {
            Fail("cannot copy the block of row " + std::to_string(row.firstRow) + " of drawer " +
                 std::to_string(row.drawer) + ": " + wrong);
        }
        copier.Add(row);
    }
    copier.Flush();
}

bool HasFreePages(Catalogue& catalogue) {
    Statement count(catalogue, "PRAGMA freelist_count");
    return count.Step() && count.Int(0) > 0;
}

}  // namespace

void Context::WriteCompacted(std::string const& path) {
    RequireUsable();
    if (m_inTransaction) Fail("cannot copy " + Name() + ": a transaction is open");
    BuildAt(path, [this](Context& copy) { copy.FillFrom(*this); });
}

/// Fills a document that is being built with what `source` holds.
void Context::FillFrom(Context& source) {
    Catalogue& catalogue = m_opened->catalogue;
    BlockStore& blocks = *m_opened->blocks;
    CopyCatalogue(*source.m_catalogue, catalogue);
    catalogue.Begin();
    catalogue.Execute("DELETE FROM blocks; DELETE FROM segments;");
    CopyBlocks(*source.m_catalogue, *source.m_opened->blocks, catalogue, blocks);
    Statement uuid(catalogue, "UPDATE meta SET value = ? WHERE name = 'uuid'");
    uuid.BindBlob(m_opened->uuid.data(), m_opened->uuid.size()).Run();
    Statement segment(catalogue, "INSERT INTO segments(number, bytes) VALUES(?, ?)");
    for (SegmentLength const& length : blocks.Seal())
        segment.Bind(length.number).Bind(length.bytes).Run();
    catalogue.Commit();
    // What a vacuum sorts would fill the memory; it goes to a file.
    if (HasFreePages(catalogue))
        catalogue.Execute("PRAGMA temp_store=FILE; VACUUM; PRAGMA temp_store=MEMORY;");
}

}  // namespace kov::store
