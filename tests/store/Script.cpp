#include "store/Script.h"

#include <cstring>
#include <stdexcept>

namespace kov::test {

using store::Block;
using store::BlockRead;
using store::Context;
using store::Statement;

namespace {

// Enough to make a commit of several pages, most of them new.
constexpr int LinksOf = 30;

[[noreturn]] void Wrong(std::string const& text) { throw std::runtime_error(text); }

std::int64_t One(Context& context, char const* sql) {
    Statement query(context.Cat(), sql);
    return query.Step() ? query.Int(0) : -1;
}

std::string NameOf(int i) { return "TRANSACTION-" + std::to_string(i); }

}  // namespace

std::int64_t Script::RowsOf(int i) {
    // Gathered, gathered over a page, written at once, and in several blocks.
    static constexpr std::int64_t Rows[] = {100, 9000, 40000, 1, 200000};
    return Rows[i % 5];
}

void Script::Fill(Context& context) {
    auto& catalogue = context.Cat();
    Statement object(catalogue, "INSERT INTO objects(number, category, type) VALUES(?, ?, -1)");
    int const focus = context.NewNumber();
    int const collection = context.NewNumber();
    int const distribution = context.NewNumber();
    int const set = context.NewNumber();
    int const drawer = context.NewNumber();
    if (distribution != Distribution || drawer != Drawer) Wrong("numbers do not begin at 1");
    object.Bind(focus).Bind(1).Run();
    object.Bind(collection).Bind(4).Run();
    object.Bind(distribution).Bind(2).Run();
    context.SetFocus(focus);
    Statement(catalogue, "INSERT INTO collections VALUES(?, 1000000)").Bind(collection).Run();
    Statement(catalogue, "INSERT INTO distributions VALUES(?, 4, NULL, ?, NULL)")
        .Bind(distribution)
        .Bind(collection)
        .Run();
    Statement(catalogue, "INSERT INTO sets VALUES(?, ?, -1, 0, x'', NULL)")
        .Bind(set)
        .Bind(collection)
        .Run();
    Statement(catalogue,
              "INSERT INTO drawers(number, distribution, growing, chunk0, set0, row_bytes, rows, "
              "unwritten) "
              "VALUES(?, ?, 0, 1024, ?, 8, 0, x'')")
        .Bind(drawer)
        .Bind(distribution)
        .Bind(set)
        .Run();
}

void Script::Write(Context& context, int i) {
    auto& catalogue = context.Cat();
    std::string const name = NameOf(i);
    int const number = context.NewNumber();
    Statement(catalogue, "INSERT INTO objects VALUES(?, 1, ?, ?)")
        .Bind(number)
        .Bind(i)
        .BindText(name)
        .Run();
    Statement link(catalogue, "INSERT INTO links VALUES(?, ?, ?, ?, -1)");
    for (int k = 0; k < LinksOf; ++k) {
        std::string const key =
            name + std::string(static_cast<std::size_t>(100 + k * 7), 'k') + std::to_string(k);
        link.Bind(1 << 3 | 1).Bind(k).BindText(key).Bind(std::int64_t{number} << 3 | 1).Run();
    }
    std::vector<std::int64_t> rows(static_cast<std::size_t>(RowsOf(i)));
    for (std::size_t k = 0; k < rows.size(); ++k) rows[k] = Row(i, static_cast<std::int64_t>(k));
    std::int64_t first = One(context, "SELECT rows FROM drawers WHERE number = 5");
    Statement insert(catalogue, "INSERT INTO blocks VALUES(?, ?, ?, 0, ?, ?, ?, ?)");
    for (Block const& block : context.Blocks().Append(rows.data(), rows.size() * 8, 8)) {
        insert.Bind(Drawer)
            .Bind(first)
            .Bind(block.bytes / 8)
            .Bind(block.segment)
            .Bind(block.offset)
            .Bind(block.bytes);
        insert.BindBlob(block.sums.data(), block.sums.size() * 8).Run();
        first += block.bytes / 8;
    }
    Statement(catalogue, "UPDATE drawers SET rows = ? WHERE number = 5").Bind(first).Run();
}

void Script::Commit(Context& context, int i) {
    context.Begin();
    try {
        Write(context, i);
        context.Commit();
    } catch (...) {
        context.Rollback();
        throw;
    }
}

std::vector<Block> BlocksOf(Context& context) {
    std::vector<Block> blocks;
    Statement rows(context.Cat(),
                   "SELECT segment, offset, bytes, sums FROM blocks ORDER BY drawer, first_row");
    while (rows.Step()) {
        Block block{static_cast<int>(rows.Int(0)), rows.Int(1), rows.Int(2), {}};
        block.sums.resize(rows.Blob(3).size() / 8);
        std::memcpy(block.sums.data(), rows.Blob(3).data(), rows.Blob(3).size());
        blocks.push_back(std::move(block));
    }
    return blocks;
}

int Script::Check(Context& context) {
    auto& catalogue = context.Cat();
    int count = 0;
    {
        Statement objects(catalogue,
                          "SELECT type, name FROM objects WHERE type >= 0 ORDER BY number");
        while (objects.Step()) {
            ++count;
            if (objects.Int(0) != count || objects.Text(1) != NameOf(count))
                Wrong("object " + std::to_string(count) + " is not as written");
        }
    }
    if (One(context, "SELECT count(*) FROM links") != count * LinksOf)
        Wrong("links are missing or too many");
    std::int64_t rows = 0;
    for (int i = 1; i <= count; ++i) rows += RowsOf(i);
    if (One(context, "SELECT rows FROM drawers WHERE number = 5") != rows)
        Wrong("the drawer's number of rows is wrong");
    if (One(context, "SELECT ifnull(sum(rows), 0) FROM blocks") != rows)
        Wrong("rows of blocks are missing or too many");
    std::vector<std::int64_t> stored(static_cast<std::size_t>(rows));
    std::vector<BlockRead> reads;
    auto* out = reinterpret_cast<char*>(stored.data());
    std::vector<Block> const blocks = BlocksOf(context);
    for (Block const& block : blocks) {
        reads.push_back({&block, 0, block.bytes, out});
        out += block.bytes;
    }
    context.Blocks().Read({Distribution, Drawer}, reads);
    std::size_t at = 0;
    for (int i = 1; i <= count; ++i) {
        for (std::int64_t k = 0; k < RowsOf(i); ++k, ++at) {
            if (stored[at] != Row(i, k)) Wrong("row " + std::to_string(at) + " is wrong");
        }
    }
    return count;
}

std::string Script::Findings(Context& context) {
    std::string findings;
    context.Verify([&](std::string const& finding) { findings += finding + "\n"; });
    return findings;
}

}  // namespace kov::test
