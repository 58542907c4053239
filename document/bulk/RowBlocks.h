// RowBlocks: the rows of one drawer as bytes. Rows lie in pieces: a piece is a stretch of rows of
// one stored block, and the pieces of a drawer cover its flushed rows without gap or overlap. Rows
// behind the last piece are pending: gathered in memory until there are enough for a block of their
// own, or the transaction commits.
//
// An overwrite never changes a block: the new rows become blocks of their own, and the pieces that
// they cover are cut or dropped. Where overwrites have cut a neighbourhood into many small pieces
// it is written anew as one.
//
// Invariants (CheckInvariants): pieces ascend, touch, start at row 0 and end where the pending rows
// start; a piece lies within its block.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "document/store/BlockStore.h"

namespace kov::store {
class Catalogue;
class Context;
}  // namespace kov::store

namespace kov::bulk {

struct Piece {
    int firstRow = 0;
    int rows = 0;
    int skip = 0;  // rows of the block in front of firstRow
    store::Block block;
    int End() const { return firstRow + rows; }
};

/// A stretch of rows to read, and where its bytes go.
struct RowsRead {
    int row;
    int rows;
    char* out;
};

class RowBlocks {
  public:
    RowBlocks(store::Context& context, store::BlockOwner owner, std::int64_t rowBytes, int rows);

    int Rows() const { return m_pendingFirst + m_pendingRows; }
    std::int64_t RowBytes() const { return m_rowBytes; }
    /// The memory that pending rows take up, or have left behind for those to come.
    std::size_t PendingBytes() const { return m_pending.capacity(); }

    /// Appends rows. `data`: rows * RowBytes() bytes, the caller's.
    void Append(char const* data, int rows);
    /// Replaces rows that exist. `data` as above.
    void Overwrite(int row, char const* data, int rows);
    /// Reads stretches of rows that exist; ascending rows are read with the fewest calls.
    void Read(std::vector<RowsRead> const& reads);
    /// Writes the pending rows to blocks.
    void Flush();
    /// The same, and gives their memory back.
    void Release();

    /// Loads the list of pieces, which throws if it is damaged. Pages are checked by the store.
    void Check() { EnsurePieces(); }

  private:
    void EnsurePieces();
    std::vector<Piece> LoadPieces(int firstRow, int endRow) const;
    std::size_t PieceAt(int row) const;
    void ReplacePieces(int row, int endRow, std::vector<Piece> const& with);
    std::vector<Piece> Store(char const* data, int firstRow, int rows);
    void Compact(int row);
    void ReadPieces(std::vector<Piece> const& pieces, std::vector<RowsRead> const& reads) const;
    void InsertPiece(Piece const& piece) const;
    void DropPiece(int firstRow) const;
    std::int64_t Bytes(int rows) const { return rows * m_rowBytes; }

    store::Context& m_context;
    store::BlockOwner m_owner;
    std::int64_t m_rowBytes;
    bool m_loaded = false;
    int m_narrowReads = 0;
    std::vector<Piece> m_pieces;
    int m_pendingFirst = 0;
    int m_pendingRows = 0;
    std::vector<char> m_pending;
};

}  // namespace kov::bulk
