#include "document/bulk/RowBlocks.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "KOVSimException.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

namespace kov::bulk {

namespace {
// A reader that wants few rows fetches their pieces alone this often before it loads the whole
// list.
constexpr int NarrowReadsBeforeLoading = 8;
// More pieces than this within the rows of one block are written anew as one.
constexpr std::size_t CrowdedPieces = 64;

// False if the numbers cannot be those of a piece of rows of `rowBytes`.
bool TakePiece(store::Statement const& row, std::int64_t rowBytes, Piece& piece) {
    for (int column = 0; column < 4; ++column)
        if (row.KindOf(column) != store::Statement::Kind::Integer || row.Int(column) < 0 ||
            row.Int(column) > INT_MAX)
            return false;
    piece.firstRow = static_cast<int>(row.Int(0));
    piece.rows = static_cast<int>(row.Int(1));
    piece.skip = static_cast<int>(row.Int(2));
    piece.block.segment = static_cast<int>(row.Int(3));
    piece.block.offset = row.Int(4);
    piece.block.bytes = row.Int(5);
    if (piece.rows == 0 || piece.rows > INT_MAX - piece.firstRow || piece.block.bytes < 0 ||
        std::int64_t{piece.skip} + piece.rows >
            piece.block.bytes / std::max<std::int64_t>(rowBytes, 1))
        return false;
    std::string_view const sums = row.Blob(6);
    std::int64_t const page{store::PageBytes};
    std::int64_t const pages = piece.block.bytes / page + (piece.block.bytes % page != 0);
    if (static_cast<std::int64_t>(sums.size() / 8) != pages || sums.size() % 8 != 0) return false;
    piece.block.sums.resize(sums.size() / 8);
    for (std::size_t i = 0; i < piece.block.sums.size(); ++i) {
        std::uint64_t sum = 0;
        for (std::size_t b = 8; b-- > 0;)
            sum = sum << 8 | static_cast<unsigned char>(sums[i * 8 + b]);
        piece.block.sums[i] = sum;
    }
    return true;
}
}  // namespace

RowBlocks::RowBlocks(store::Context& context, store::BlockOwner owner, std::int64_t rowBytes,
                     int rows)
    : m_context(context),
      m_owner(owner),
      m_rowBytes(rowBytes),
      m_loaded(rows == 0),
      m_pendingFirst(rows) {}

std::vector<Piece> RowBlocks::LoadPieces(int firstRow, int endRow) const {
    std::vector<Piece> pieces;
    store::Statement query(m_context.Cat(),
                           "SELECT first_row, rows, skip, segment, offset, bytes, sums FROM blocks "
                           "WHERE drawer = ?1 AND first_row < ?3 AND "
                           "first_row >= coalesce((SELECT max(first_row) FROM blocks WHERE drawer "
                           "= ?1 AND first_row <= ?2), 0) "
                           "ORDER BY first_row");
    query.Bind(m_owner.drawer).Bind(firstRow).Bind(endRow);
    int expected = -1;
    while (query.Step()) {
        Piece piece;
        bool const sound = TakePiece(query, m_rowBytes, piece) && piece.End() <= m_pendingFirst &&
                           (expected < 0 ? piece.firstRow <= firstRow : piece.firstRow == expected);
        if (!sound) break;
        expected = piece.End();
        pieces.push_back(std::move(piece));
    }
    if (expected < endRow)
        KOVSimException::ThrowText(("drawer " + std::to_string(m_owner.drawer) +
                                    " of distribution " + std::to_string(m_owner.distribution) +
                                    ": the catalogue's list of its blocks is damaged at row " +
                                    std::to_string(std::max(expected, 0)))
                                       .c_str());
    return pieces;
}

void RowBlocks::EnsurePieces() {
    if (m_loaded) return;
    m_pieces = LoadPieces(0, m_pendingFirst);
    m_loaded = true;
}

std::size_t RowBlocks::PieceAt(int row) const {
    auto const at = std::upper_bound(m_pieces.begin(), m_pieces.end(), row,
                                     [](int r, Piece const& piece) { return r < piece.End(); });
    return static_cast<std::size_t>(at - m_pieces.begin());
}

void RowBlocks::InsertPiece(Piece const& piece) const {
    std::string sums;
    sums.reserve(piece.block.sums.size() * 8);
    for (std::uint64_t sum : piece.block.sums)
        for (int b = 0; b < 8; ++b) sums.push_back(static_cast<char>(sum >> (8 * b)));
    store::Statement insert(m_context.Cat(), "INSERT INTO blocks VALUES(?, ?, ?, ?, ?, ?, ?, ?)");
    insert.Bind(m_owner.drawer)
        .Bind(piece.firstRow)
        .Bind(piece.rows)
        .Bind(piece.skip)
        .Bind(piece.block.segment);
    insert.Bind(piece.block.offset).Bind(piece.block.bytes).BindBlob(sums.data(), sums.size());
    insert.Run();
}

void RowBlocks::DropPiece(int firstRow) const {
    store::Statement drop(m_context.Cat(), "DELETE FROM blocks WHERE drawer = ? AND first_row = ?");
    drop.Bind(m_owner.drawer).Bind(firstRow).Run();
}

std::vector<Piece> RowBlocks::Store(char const* data, int firstRow, int rows) {
    std::vector<Piece> pieces;
    auto const bytes = static_cast<std::size_t>(Bytes(rows));
    for (store::Block& block :
         m_context.Blocks().Append(data, bytes, static_cast<std::size_t>(m_rowBytes))) {
        Piece piece;
        piece.firstRow = firstRow;
        piece.rows = static_cast<int>(block.bytes / m_rowBytes);
        piece.block = std::move(block);
        firstRow = piece.End();
        pieces.push_back(std::move(piece));
    }
    return pieces;
}

void RowBlocks::Append(char const* data, int rows) {
    while (rows > 0) {
        if (m_pendingRows == 0 && Bytes(rows) >= std::int64_t{store::BlockBytes}) {
            EnsurePieces();
            for (Piece& piece : Store(data, m_pendingFirst, rows)) {
                InsertPiece(piece);
                m_pieces.push_back(std::move(piece));
            }
            m_pendingFirst += rows;
            return;
        }
        // What is pending is filled up to a block, however much there is to come.
        std::int64_t const room =
            std::int64_t{store::BlockBytes} - static_cast<std::int64_t>(m_pending.size());
        int const count =
            static_cast<int>(std::min<std::int64_t>(rows, (room + m_rowBytes - 1) / m_rowBytes));
        m_pending.insert(m_pending.end(), data, data + Bytes(count));
        m_pendingRows += count;
        data += Bytes(count);
        rows -= count;
        if (m_pending.size() >= store::BlockBytes) Flush();
    }
}

void RowBlocks::Release() {
    Flush();
    std::vector<char>().swap(m_pending);
}

void RowBlocks::Flush() {
    if (m_pendingRows == 0) return;
    EnsurePieces();
    // Join with small blocks in front, each at most as large as what follows it: a row is copied
    // once for each doubling.
    int first = m_pendingFirst;
    std::size_t keep = m_pieces.size();
    while (keep > 0) {
        Piece const& last = m_pieces[keep - 1];
        std::int64_t const behind = Bytes(Rows() - first);
        if (Bytes(last.rows) > behind ||
            Bytes(last.rows) + behind > std::int64_t{store::BlockBytes})
            break;
        first = last.firstRow;
        --keep;
    }
    if (first != m_pendingFirst) {
        std::vector<char> joined(static_cast<std::size_t>(Bytes(Rows() - first)));
        int const rows = m_pendingFirst - first;
        ReadPieces(m_pieces, {{first, rows, joined.data()}});
        std::memcpy(joined.data() + Bytes(rows), m_pending.data(), m_pending.size());
        m_pending.swap(joined);
        m_pendingRows += rows;
        m_pendingFirst = first;
        for (std::size_t i = keep; i < m_pieces.size(); ++i) DropPiece(m_pieces[i].firstRow);
        m_pieces.resize(keep);
    }
    for (Piece& piece : Store(m_pending.data(), m_pendingFirst, m_pendingRows)) {
        InsertPiece(piece);
        m_pieces.push_back(std::move(piece));
    }
    m_pendingFirst += m_pendingRows;
    m_pendingRows = 0;
    m_pending.clear();
}

void RowBlocks::ReplacePieces(int row, int endRow, std::vector<Piece> const& with) {
    std::size_t const from = PieceAt(row);
    std::size_t to = from;
    std::vector<Piece> fresh;
    while (to < m_pieces.size() && m_pieces[to].firstRow < endRow) {
        DropPiece(m_pieces[to].firstRow);
        ++to;
    }
    if (m_pieces[from].firstRow < row) {
        Piece head = m_pieces[from];
        head.rows = row - head.firstRow;
        InsertPiece(head);
        fresh.push_back(std::move(head));
    }
    for (Piece const& piece : with) {
        InsertPiece(piece);
        fresh.push_back(piece);
    }
    if (m_pieces[to - 1].End() > endRow) {
        Piece tail = m_pieces[to - 1];
        tail.skip += endRow - tail.firstRow;
        tail.rows = tail.End() - endRow;
        tail.firstRow = endRow;
        InsertPiece(tail);
        fresh.push_back(std::move(tail));
    }
    auto const at = m_pieces.erase(m_pieces.begin() + static_cast<std::ptrdiff_t>(from),
                                   m_pieces.begin() + static_cast<std::ptrdiff_t>(to));
    m_pieces.insert(at, std::make_move_iterator(fresh.begin()),
                    std::make_move_iterator(fresh.end()));
}

void RowBlocks::Overwrite(int row, char const* data, int rows) {
    int const inPieces = std::max(0, std::min(row + rows, m_pendingFirst) - row);
    if (inPieces > 0) {
        EnsurePieces();
        ReplacePieces(row, row + inPieces, Store(data, row, inPieces));
        if (Bytes(inPieces) < std::int64_t{store::BlockBytes}) Compact(row);
    }
    if (inPieces < rows) {
        int const into = row + inPieces - m_pendingFirst;
        std::memcpy(m_pending.data() + Bytes(into), data + Bytes(inPieces),
                    static_cast<std::size_t>(Bytes(rows - inPieces)));
    }
}

void RowBlocks::Compact(int row) {
    int const window =
        static_cast<int>(std::max<std::int64_t>(1, std::int64_t{store::BlockBytes} / m_rowBytes));
    int const first = row / window * window;
    std::int64_t const end = std::min<std::int64_t>(std::int64_t{first} + window, m_pendingFirst);
    std::size_t const from = PieceAt(first);
    std::size_t const to = PieceAt(static_cast<int>(end) - 1);
    if (to - from < CrowdedPieces) return;
    int const rows = static_cast<int>(end) - first;
    std::vector<char> joined(static_cast<std::size_t>(Bytes(rows)));
    ReadPieces(m_pieces, {{first, rows, joined.data()}});
    ReplacePieces(first, static_cast<int>(end), Store(joined.data(), first, rows));
}

void RowBlocks::ReadPieces(std::vector<Piece> const& pieces,
                           std::vector<RowsRead> const& reads) const {
    std::vector<store::BlockRead> blocks;
    blocks.reserve(reads.size());
    auto piece = pieces.begin();
    for (RowsRead const& read : reads) {
        int row = read.row;
        int left = read.rows;
        char* out = read.out;
        if (piece == pieces.end() || row < piece->firstRow || row >= piece->End())
            piece = std::upper_bound(pieces.begin(), pieces.end(), row,
                                     [](int r, Piece const& p) { return r < p.End(); });
        while (left > 0) {
            int const count = std::min(left, piece->End() - row);
            blocks.push_back(
                {&piece->block, Bytes(piece->skip + (row - piece->firstRow)), Bytes(count), out});
            out += Bytes(count);
            row += count;
            left -= count;
            if (left > 0) ++piece;
        }
    }
    m_context.Blocks().Read(m_owner, blocks);
}

void RowBlocks::Read(std::vector<RowsRead> const& reads) {
    std::vector<RowsRead> stored;
    int first = INT_MAX;
    int end = 0;
    stored.reserve(reads.size());
    for (RowsRead const& read : reads) {
        int const flushed = std::clamp(m_pendingFirst - read.row, 0, read.rows);
        if (flushed > 0) {
            stored.push_back({read.row, flushed, read.out});
            first = std::min(first, read.row);
            end = std::max(end, read.row + flushed);
        }
        if (flushed < read.rows)
            std::memcpy(read.out + Bytes(flushed),
                        m_pending.data() + Bytes(read.row + flushed - m_pendingFirst),
                        static_cast<std::size_t>(Bytes(read.rows - flushed)));
    }
    if (stored.empty()) return;
    if (!m_loaded && (end - first) < m_pendingFirst / 8 &&
        m_narrowReads < NarrowReadsBeforeLoading) {
        ++m_narrowReads;
        ReadPieces(LoadPieces(first, end), stored);
        return;
    }
    EnsurePieces();
    ReadPieces(m_pieces, stored);
}

}  // namespace kov::bulk
