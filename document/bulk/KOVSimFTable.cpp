#include "KOVSimFTable.h"

#include <cstring>
#include <string>
#include <vector>

#include "KOVSimException.h"
#include "KOVSimPosition.h"
#include "document/base/Varint.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

using kov::store::Context;
using kov::store::Statement;

struct KOVSimFTable::Content {
    int rows = 0;
    int columns = 0;
    std::vector<std::string> labels;
    std::vector<std::string> columnLabels;
    std::vector<double> data;
};

namespace {

std::string PackTexts(KOVBasVector<KOVString> const& texts) {
    std::string packed;
    for (KOVString const& text : texts) {
        auto const bytes = static_cast<std::size_t>(text.GetLengthInByte());
        kov::base::AppendVarint(packed, bytes);
        packed.append(text.TextOrEmpty(), bytes);
    }
    return packed;
}

KOVString AsText(std::string const& bytes) {
    KOVString text;
    text.BuildFromUTF8(bytes.data(), static_cast<int>(bytes.size()));
    return text;
}

bool UnpackTexts(std::string_view packed, std::vector<std::string>& texts) {
    while (!packed.empty()) {
        std::uint64_t length = 0;
        if (!kov::base::TakeVarint(packed, length) || length > packed.size()) return false;
        texts.emplace_back(packed.substr(0, length));
        packed.remove_prefix(length);
    }
    return true;
}

// Reals are stored lowest byte first, whatever the machine.
std::string PackReals(double const* values, std::size_t n) {
    std::string packed(n * 8, '\0');
    for (std::size_t i = 0; i < n; ++i) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, values + i, 8);
        for (std::size_t b = 0; b < 8; ++b) packed[i * 8 + b] = static_cast<char>(bits >> (8 * b));
    }
    return packed;
}

void UnpackReals(std::string_view packed, std::vector<double>& values) {
    values.resize(packed.size() / 8);
    for (std::size_t i = 0; i < values.size(); ++i) {
        std::uint64_t bits = 0;
        for (std::size_t b = 8; b-- > 0;)
            bits = bits << 8 | static_cast<unsigned char>(packed[i * 8 + b]);
        std::memcpy(&values[i], &bits, 8);
    }
}

[[noreturn]] void Fail(std::string const& text) { KOVSimException::ThrowText(text.c_str()); }

}  // namespace

KOVSimFTable::KOVSimFTable(KOVSimFTableID const& id) {
    auto content = std::make_shared<Content>();
    if (!id.IsNull()) {
        Context& context = Context::Of(id.ContextID());
        context.RequireNumber(id.Minor());
        Statement query(
            context.Cat(),
            "SELECT rows, columns, labels, column_labels, data FROM tables WHERE number = ?");
        query.Bind(id.Minor());
        std::string const name = "function table " + std::to_string(id.Minor());
        if (!query.Step()) Fail("there is no " + name);
        content->rows = static_cast<int>(query.Int(0));
        content->columns = static_cast<int>(query.Int(1));
        UnpackReals(query.Blob(4), content->data);
        if (content->rows < 0 || content->columns < 0 ||
            !UnpackTexts(query.Blob(2), content->labels) ||
            !UnpackTexts(query.Blob(3), content->columnLabels) ||
            content->columnLabels.size() != static_cast<std::size_t>(content->columns) ||
            content->data.size() != static_cast<std::size_t>(content->rows) *
                                        static_cast<std::size_t>(content->columns))
            Fail(name + ": its description is damaged");
    }
    m_content = std::move(content);
}

int KOVSimFTable::RowCount() const { return m_content->rows; }
int KOVSimFTable::ColumnCount() const { return m_content->columns; }
int KOVSimFTable::LabelCount() const { return static_cast<int>(m_content->labels.size()); }

KOVString KOVSimFTable::ColumnLabel(int column) const {
    if (column < 0 || column >= ColumnCount())
        KOVSimException::ThrowIndex("column label of a function table", column, ColumnCount());
    return AsText(m_content->columnLabels[static_cast<std::size_t>(column)]);
}

KOVString KOVSimFTable::Label(int index) const {
    if (index < 0 || index >= LabelCount())
        KOVSimException::ThrowIndex("label of a function table", index, LabelCount());
    return AsText(m_content->labels[static_cast<std::size_t>(index)]);
}

void KOVSimFTable::GetData(double* out, int n) const {
    if (n < 0 || static_cast<std::size_t>(n) > m_content->data.size())
        Fail("cannot read " + std::to_string(n) + " values of a function table of " +
             std::to_string(m_content->data.size()));
    if (n > 0)
        std::memcpy(out, m_content->data.data(), static_cast<std::size_t>(n) * sizeof(double));
}

KOVSimFTableID KOVSimPosition::CreateFTable(int type, int rows,
                                            KOVBasVector<KOVString> const& labels,
                                            KOVBasVector<KOVString> const& columnLabels,
                                            double const* data, int count) const {
    if (IsNull()) Fail("cannot create a function table: the position is null");
    auto const own = static_cast<std::int64_t>(columnLabels.Size());
    auto const both = own + labels.Size();
    bool const labelsAreColumns = rows * own != count && rows * both == count;
    auto const columns = labelsAreColumns ? both : own;
    if (rows < 0 || count < 0 || rows * columns != count)
        Fail("cannot create a function table: " + std::to_string(count) +
             " values were given for " + std::to_string(rows) + " rows of " + std::to_string(own) +
             (labels.Size() > 0 ? " or " + std::to_string(both) : "") + " columns");
    if (!data && count > 0) Fail("cannot create a function table: the data are null");
    kov::store::Context& context = kov::store::Context::Of(m_id.context);
    context.RequireTransaction("create a function table");
    int const number = context.NewNumber();
    Statement object(context.Cat(), "INSERT INTO objects VALUES(?, ?, ?, NULL)");
    object.Bind(number).Bind(KOVSimCategoryFTable).Bind(type).Run();
    std::string const packedLabels = PackTexts(labels);
    std::string const packedColumns =
        (labelsAreColumns ? packedLabels : std::string()) + PackTexts(columnLabels);
    std::string const packedData = PackReals(data, static_cast<std::size_t>(count));
    Statement insert(context.Cat(), "INSERT INTO tables VALUES(?, ?, ?, ?, ?, ?)");
    insert.Bind(number).Bind(rows).Bind(columns).BindBlob(packedLabels.data(), packedLabels.size());
    insert.BindBlob(packedColumns.data(), packedColumns.size())
        .BindBlob(packedData.data(), packedData.size())
        .Run();
    KOVSimDynamicDataID id;
    id.parent = 0;
    id.minor = number;
    return KOVSimFTableID(KOVSimDynamicID(KOVSimCategoryFTable, m_id.context, id, type, 0));
}
