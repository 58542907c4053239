// Opening a damaged document. The input is a list of edits to a small sound document: to pages of
// its catalogue and to its segment as they lie on the disk, with and without the checksums made to
// fit again, and to cells and rows of its tables, which reaches what is behind the checksums. Then
// the document is opened, walked, verified, compacted and written to. Whatever it says, it says by
// its own exception.
//
//   byte 0   1: open for writing and write a transaction; 2: write a compacted copy
//   then edits until the input ends: a byte for the kind (modulo 8), and what the kind takes

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "KOVSimTransaction.h"
#include "document/store/Catalogue.h"
#include "document/store/CatalogueVfs.h"
#include "document/store/PageSums.h"
#include "reliability/Session.h"
#include "reliability/Walk.h"
#include "support/FastFolder.h"

namespace {

namespace fs = std::filesystem;
using kov::store::Catalogue;
using kov::store::Statement;
using namespace reliability;

constexpr int Stand = 8;
constexpr std::size_t PageBytes = kov::store::CataloguePageBytes;
constexpr std::size_t SummedBytes = PageBytes - kov::store::CatalogueReservedBytes;
constexpr std::size_t BlockPageBytes = std::size_t{64} << 10;

struct Table {
    char const* name;
    char const* key;
    std::vector<char const*> columns;
};

std::vector<Table> const& Tables() {
    static std::vector<Table> const tables = {
        {"meta", "name", {"name", "value"}},
        {"objects", "number", {"number", "category", "type", "name"}},
        {"collections", "number", {"number", "space"}},
        {"members", "collection, member", {"collection", "member", "type", "symbol", "name"}},
        {"sets", "number", {"number", "collection", "size", "hash", "members", "name"}},
        {"links", "owner, member, key", {"owner", "member", "key", "target", "target_type"}},
        {"fields", "owner, field", {"owner", "field", "kind", "value"}},
        {"datasets", "number", {"number", "distribution"}},
        {"compartments", "dataset, place", {"dataset", "place", "sets"}},
        {"distributions", "number", {"number", "key", "range", "dim0", "dim1"}},
        {"drawers",
         "number",
         {"number", "distribution", "growing", "chunk0", "chunk1", "set0", "set1", "row_bytes",
          "rows", "unwritten"}},
        {"extents", "drawer, first_row", {"drawer", "first_row", "runs"}},
        {"blocks",
         "drawer, first_row",
         {"drawer", "first_row", "rows", "skip", "segment", "offset", "bytes", "sums"}},
        {"segments", "number", {"number", "bytes"}},
        {"tables", "number", {"number", "rows", "columns", "labels", "column_labels", "data"}},
    };
    return tables;
}

/// Statements are kept by the address of their text: each text has one for good.
char const* Keep(std::string const& sql) {
    static std::deque<std::string> kept;
    for (std::string const& known : kept) {
        if (known == sql) return known.c_str();
    }
    kept.push_back(sql);
    return kept.back().c_str();
}

/// The input, read from the front.
class Input {
  public:
    Input(std::uint8_t const* data, std::size_t size) : m_data(data), m_left(size) {}
    bool IsEmpty() const { return m_left == 0; }
    unsigned Byte() {
        if (m_left == 0) return 0;
        --m_left;
        return *m_data++;
    }
    unsigned Word() {
        unsigned const high = Byte();
        return high << 8 | Byte();
    }
    std::int64_t Long() {
        std::uint64_t value = 0;
        for (int i = 0; i < 8; ++i) value = value << 8 | Byte();
        return static_cast<std::int64_t>(value);
    }
    std::string Bytes(std::size_t most) {
        std::size_t const n = std::min(most, m_left);
        std::string bytes(reinterpret_cast<char const*>(m_data), n);
        m_data += n;
        m_left -= n;
        return bytes;
    }

  private:
    std::uint8_t const* m_data;
    std::size_t m_left;
};

std::string ReadFile(fs::path const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
void WriteFile(fs::path const& path, std::string const& content) {
    std::ofstream(path, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
}

/// The sound document, and the place where its damaged copies stand.
class Bench {
  public:
    Bench() {
        KOVObjDocument const document = KOVObjDocument::Create(m_path.c_str());
        Session session(Tiny);
        for (int n = 1; n <= Stand; ++n) session.Write(document, n);
        document.Close();
        m_catalogue = ReadFile(CataloguePath());
        m_segment = ReadFile(SegmentPath());
    }

    void Restore() {
        for (auto const& entry : fs::directory_iterator(m_path)) {
            if (entry.is_regular_file()) fs::remove(entry);
        }
        for (auto const& entry : fs::directory_iterator(m_path + "/bulk")) fs::remove(entry);
        WriteFile(CataloguePath(), m_catalogue);
        WriteFile(SegmentPath(), m_segment);
        WriteFile(m_path + "/lock", "");
    }

    std::string const& Path() const { return m_path; }
    std::string CataloguePath() const { return m_path + "/catalog.sqlite"; }
    std::string SegmentPath() const { return m_path + "/bulk/000001.seg"; }
    std::string CopyPath() const { return m_folder / "copy.ksd"; }

  private:
    kov::test::FastFolder m_folder;
    std::string m_path = m_folder / "model.ksd";
    std::string m_catalogue, m_segment;
};

/// Binds a value that the input describes; for some kinds it is made from the `old` one.
void BindValue(Statement& statement, Input& input, std::string& buffer, std::int64_t old,
               std::string const& oldBytes) {
    switch (input.Byte() % 8) {
        case 0:
            statement.BindNull();
            return;
        case 1:
            statement.Bind(static_cast<std::int8_t>(input.Byte()));
            return;
        case 2:
            statement.Bind(input.Long());
            return;
        case 3:
            statement.Bind(static_cast<std::int64_t>(
                static_cast<std::uint64_t>(old) +
                static_cast<std::uint64_t>(static_cast<std::int8_t>(input.Byte()))));
            return;
        case 4:
            buffer = input.Bytes(input.Byte());
            statement.BindBlob(buffer.data(), buffer.size());
            return;
        case 5:
            buffer = input.Bytes(input.Byte());
            statement.BindText(buffer);
            return;
        case 6: {
            buffer = oldBytes;
            std::size_t const at = input.Word();
            unsigned const change = input.Byte();
            if (!buffer.empty()) {
                char& byte = buffer[at % buffer.size()];
                byte = static_cast<char>(static_cast<unsigned char>(byte) ^ change);
            }
            statement.BindBlob(buffer.data(), buffer.size());
            return;
        }
        default: {
            buffer = oldBytes;
            std::size_t const at = input.Byte();
            buffer.resize(std::min(buffer.size(), at));
            buffer += input.Bytes(input.Byte() % 16);
            statement.BindBlob(buffer.data(), buffer.size());
            return;
        }
    }
}

void EditCell(Catalogue& catalogue, Input& input, bool another) {
    Table const& table = Tables()[input.Byte() % Tables().size()];
    std::size_t const column = input.Byte() % table.columns.size();
    std::int64_t const row = input.Byte();
    std::string const name = table.name, changed = table.columns[column];
    std::string const which = "(SELECT " + std::string(table.key) + " FROM " + name +
                              " LIMIT 1 OFFSET (? % (SELECT count(*) FROM " + name + ")))";
    std::int64_t old = 0;
    std::string oldBytes;
    {
        Statement select(catalogue,
                         Keep("SELECT " + changed + " FROM " + name +
                              " LIMIT 1 OFFSET (? % (SELECT count(*) FROM " + name + "))"));
        select.Bind(row);
        if (!select.Step()) return;
        if (select.KindOf(0) == Statement::Kind::Integer) old = select.Int(0);
        if (select.KindOf(0) == Statement::Kind::Blob || select.KindOf(0) == Statement::Kind::Text)
            oldBytes = std::string(select.Blob(0));
    }
    std::string columns, values;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        columns += (i ? "," : "") + std::string(table.columns[i]);
        values += (i ? "," : "") + std::string(i == column ? "?1" : table.columns[i]);
    }
    std::string const where = " WHERE (" + std::string(table.key) + ") = " + which;
    std::string sql = "UPDATE OR IGNORE " + name + " SET " + changed + " = ?" + where;
    if (another) {
        sql = "INSERT OR IGNORE INTO " + name + "(" + columns + ") SELECT " + values + " FROM " +
              name + where;
    }
    std::string buffer;
    Statement edit(catalogue, Keep(sql));
    BindValue(edit, input, buffer, old, oldBytes);
    edit.Bind(row).Run();
}

void DeleteRow(Catalogue& catalogue, Input& input) {
    Table const& table = Tables()[input.Byte() % Tables().size()];
    std::string const name = table.name;
    Statement edit(catalogue, Keep("DELETE FROM " + name + " WHERE (" + table.key + ") = (SELECT " +
                                   table.key + " FROM " + name +
                                   " LIMIT 1 OFFSET (? % (SELECT count(*) FROM " + name + ")))"));
    edit.Bind(input.Byte()).Run();
}

/// Gives each block the checksums that fit what the segment now holds.
void RepairSums(Catalogue& catalogue, std::string const& segment) {
    struct Row {
        std::int64_t drawer, firstRow, offset, bytes;
    };
    std::vector<Row> rows;
    {
        Statement select(catalogue, "SELECT drawer, first_row, offset, bytes FROM blocks");
        while (select.Step())
            rows.push_back({select.Int(0), select.Int(1), select.Int(2), select.Int(3)});
    }
    Statement update(catalogue, "UPDATE blocks SET sums = ? WHERE drawer = ? AND first_row = ?");
    auto const size = static_cast<std::int64_t>(segment.size());
    for (Row const& row : rows) {
        if (row.offset < 0 || row.offset > size || row.bytes < 0 || row.bytes > size - row.offset)
            continue;
        std::string_view const block(segment.data() + row.offset,
                                     static_cast<std::size_t>(row.bytes));
        std::string sums;
        for (std::size_t at = 0; at < block.size(); at += BlockPageBytes) {
            std::uint64_t const sum =
                kov::store::Sum(block.data() + at, std::min(BlockPageBytes, block.size() - at));
            sums.append(reinterpret_cast<char const*>(&sum), sizeof sum);
        }
        update.BindBlob(sums.data(), sums.size()).Bind(row.drawer).Bind(row.firstRow).Run();
    }
}

void PatchPage(std::string& catalogue, Input& input, bool repair) {
    std::size_t const pages = catalogue.size() / PageBytes;
    if (pages == 0) return;
    std::size_t const page = input.Word() % pages;
    std::size_t const at = input.Word() % SummedBytes;
    std::string const bytes = input.Bytes(std::min<std::size_t>(input.Byte(), SummedBytes - at));
    char* const start = catalogue.data() + page * PageBytes;
    std::memcpy(start + at, bytes.data(), bytes.size());
    if (!repair) return;
    std::uint64_t const sum = kov::store::SeededSum(start, SummedBytes, page + 1);
    std::memcpy(start + SummedBytes, &sum, sizeof sum);
}

void PatchSegment(std::string& segment, Input& input) {
    if (segment.empty()) return;
    std::size_t const at = (std::size_t{input.Word()} << 8 | input.Byte()) % segment.size();
    std::string const bytes =
        input.Bytes(std::min<std::size_t>(input.Byte() % 64, segment.size() - at));
    segment.replace(at, bytes.size(), bytes);
}

void Cut(std::string& content, Input& input) {
    std::size_t const length = std::size_t{input.Word()} * 16;
    if (length < content.size() + 100000) content.resize(length);
}

void Damage(Bench const& bench, Input input) {
    // Edits of tables first, as far as the catalogue can still be opened; then those of bytes.
    enum Kind { Repaired, Raw, Segment, SegmentRepaired, CutFile, Cell, Delete, Another };
    std::string segment = ReadFile(bench.SegmentPath());
    bool fits = false;
    std::vector<std::pair<int, Input>> later;
    {
        Catalogue catalogue(bench.Path());
        catalogue.OpenFile(bench.CataloguePath(), Catalogue::Mode::Write);
        catalogue.Begin();
        for (int edits = 0; !input.IsEmpty() && edits < 40; ++edits) {
            int const kind = static_cast<int>(input.Byte() % 8);
            try {
                if (kind == Cell || kind == Another) EditCell(catalogue, input, kind == Another);
                if (kind == Delete) DeleteRow(catalogue, input);
            } catch (KOVSimException const&) {
                // Not every row can be edited in every way.
            }
            if (kind == Segment || kind == SegmentRepaired) PatchSegment(segment, input);
            fits = fits || kind == SegmentRepaired;
            if (kind == CutFile) {
                later.emplace_back(kind, input);
                input.Bytes(3);
            }
            if (kind <= Raw) {
                later.emplace_back(kind, input);
                input.Bytes(4);
                input.Bytes(input.Byte());
            }
        }
        if (fits) RepairSums(catalogue, segment);
        catalogue.Commit();
        catalogue.Close(false);
    }
    std::string content = ReadFile(bench.CataloguePath());
    for (auto& [kind, from] : later) {
        if (kind == CutFile) {
            Cut(from.Byte() % 2 ? content : segment, from);
        } else {
            PatchPage(content, from, kind == Repaired);
        }
    }
    WriteFile(bench.CataloguePath(), content);
    WriteFile(bench.SegmentPath(), segment);
}

void CheckTold(std::string const& text) {
    if (text != "(an exception without a text)") return;
    std::fprintf(stderr, "fuzz_open: a refusal without a text\n");
    std::abort();
}

void Read(Bench const& bench, unsigned flags) {
    CheckTold(TextThrown([&] {
        KOVObjDocument const document =
            KOVObjDocument::Open(bench.Path().c_str(), KOVObjDocument::ReadOnly);
        Walk(document);
        document.Verify([](char const* finding) { CheckTold(finding); });
        if (flags & 2) {
            CheckTold(TextThrown([&] {
                document.WriteCompacted(bench.CopyPath().c_str());
                KOVObjDocument const copy =
                    KOVObjDocument::Open(bench.CopyPath().c_str(), KOVObjDocument::ReadOnly);
                Walk(copy);
                copy.Close();
            }));
            fs::remove_all(bench.CopyPath());
        }
        document.Close();
    }));
}

void WriteOn(Bench const& bench) {
    CheckTold(TextThrown([&] {
        KOVObjDocument const document =
            KOVObjDocument::Open(bench.Path().c_str(), KOVObjDocument::ReadWrite);
        try {
            Session session(Tiny);
            session.Write(document, Stand + 1);
            Walk(document);
        } catch (Mismatch const&) {
            // What was edited may say something else than was written.
        }
        document.Close();
    }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static Bench bench;
    if (size < 2) return 0;
    Input input(data, size);
    unsigned const flags = input.Byte();
    bench.Restore();
    Damage(bench, input);
    Read(bench, flags);
    if (flags & 1) WriteOn(bench);
    return 0;
}
