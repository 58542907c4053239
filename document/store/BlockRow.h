// BlockRow: a row of the table of blocks with what it needs of its drawer, read and checked. For
// verification and for copies without superseded bytes.
#pragma once

#include <cstdint>
#include <string>

#include "document/store/BlockStore.h"
#include "document/store/Catalogue.h"

namespace kov::store {

struct BlockRow {
    int distribution = 0;
    int drawer = 0;
    std::int64_t rowBytes = 0;
    std::int64_t firstRow = 0;
    std::int64_t rows = 0;
    std::int64_t skip = 0;
    Block block;

    /// All blocks by drawer and row; `Of` reads a row of it.
    static constexpr char Query[] =
        "SELECT ifnull(drawers.distribution, -1), blocks.drawer, ifnull(drawers.row_bytes, 0), "
        "blocks.first_row, "
        "blocks.rows, blocks.skip, blocks.segment, blocks.offset, blocks.bytes, blocks.sums "
        "FROM blocks LEFT JOIN drawers ON drawers.number = blocks.drawer ORDER BY blocks.drawer, "
        "blocks.first_row";
    static BlockRow Of(Statement& row);

    /// What is wrong with the numbers themselves; empty if nothing is.
    std::string Fault() const;
};

}  // namespace kov::store
