#include "document/store/BlockRow.h"

#include <climits>
#include <cstring>

namespace kov::store {

BlockRow BlockRow::Of(Statement& row) {
    auto const narrow = [&](int column) {
        std::int64_t const value = row.Int(column);
        return value < INT_MIN || value > INT_MAX ? -1 : static_cast<int>(value);
    };
    BlockRow r;
    r.distribution = narrow(0);
    r.drawer = narrow(1);
    r.rowBytes = row.Int(2);
    r.firstRow = row.Int(3);
    r.rows = row.Int(4);
    r.skip = row.Int(5);
    r.block.segment = narrow(6);
    r.block.offset = row.Int(7);
    r.block.bytes = row.Int(8);
    std::string_view const sums = row.Blob(9);
    r.block.sums.resize(sums.size() / sizeof(std::uint64_t));
    if (!r.block.sums.empty())
        std::memcpy(r.block.sums.data(), sums.data(), r.block.sums.size() * sizeof(std::uint64_t));
    return r;
}

std::string BlockRow::Fault() const {
    if (distribution < 0) return "there is no such drawer";
    if (rowBytes <= 0) return "the drawer's rows have " + std::to_string(rowBytes) + " bytes";
    if (firstRow < 0 || rows <= 0 || skip < 0 || firstRow > INT_MAX - rows ||
        skip > INT_MAX - rows) {
        return "its row numbers are out of range";
    }
    if (block.bytes <= 0 || (skip + rows) > block.bytes / rowBytes)
        return "its rows reach outside the stored block";
    return {};
}

}  // namespace kov::store
