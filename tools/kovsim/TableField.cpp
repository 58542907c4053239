#include "TableField.h"

#include <algorithm>
#include <cstddef>

#include "KOVObjMesh.h"
#include "KOVSimCollection.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimFTable.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr int kDefaultField = 0;
constexpr int kWordsField = 1;
constexpr int kNumbersInBlock = 100'000;

KOVSimCollection FieldColumns(KOVObjDocument const& document) {
    return KOVSimCollection(document.GetModel()
                                .Focus()
                                .GetPosition(schema::Focus_sharedCollections())
                                .GetPosition(schema::SharedCollections_fieldColumns())
                                .GetCollection());
}

KOVSimCSet FirstColumns(KOVSimDistribution const& values, int columns) {
    KOVSimCollection const collection(values.Grid().Collections().ConstGet(1));
    return collection.CreateVolatileCSetStrided(0, columns, 1, 1);
}

unsigned long Bytes(KOVSimCSet const& elements, int columns) {
    return static_cast<unsigned long>(elements.Size()) * static_cast<unsigned long>(columns) *
           sizeof(double);
}

}  // namespace

int MostFieldColumns(KOVObjDocument const& document) { return FieldColumns(document).Space(); }

int RowsInBlock(int columns) { return std::max(1, kNumbersInBlock / columns); }

TableField MakeTableField(KOVObjDocument const& document, int columns) {
    return MakeTableField(document, columns,
                          KOVObjMesh(document.GetMesh()).GetElementCollection().GetCollection());
}

TableField MakeTableField(KOVObjDocument const& document, int columns,
                          KOVSimCollectionID const& rows) {
    KOVSimCollection const elements(rows);
    KOVSimGrid::CollectionArray grid(2);
    grid.Get(0) = elements.ID();
    grid.Get(1) = FieldColumns(document).ID();

    TableField made;
    made.field = document.GetModel().CreateDataRecord(schema::Field_FTable()).Pos();
    made.values = made.field.CreateTypedDistribution(
        KOVSimGrid(grid), schema::TableFieldDistribution(), KOVSimRangeType(KOVSimTypeKeyDouble));
    made.field.SetPosition(schema::FieldFTable_distribution(), KOVSimPosition(made.values));

    KOVSimDistribution const values(made.values);
    KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(2, 0);
    chunks.Get(0) = RowsInBlock(columns);
    chunks.Get(1) = columns;
    KOVSimTransfer make(values);
    make.SetMakeNewDrawerChunked(chunks).SetBufferPadding(false).SetExtendableDim(0);
    make.SetDim(0, elements.EmptyCSetID()).SetDim(1, FirstColumns(values, columns));
    make.CheckView().ExecMake();
    made.drawer = make.DrawerID();
    return made;
}

std::vector<std::string> ColumnWords(std::string const& words) {
    std::vector<std::string> columns;
    for (std::size_t at = 0; at < words.size();) {
        std::size_t const end = std::min(words.find(' ', at), words.size());
        std::string const word = words.substr(at, end - at);
        columns.insert(columns.end(), word == "COORD3D" ? 3U : 1U, word);
        at = end + 1;
    }
    return columns;
}

void SetDefaults(TableField const& field, std::string const& words, bool hasDefault,
                 std::vector<double> const& defaults) {
    KOVSimDataRecord const record = field.field.GetDataRecord();
    record.SetInt(kDefaultField, hasDefault ? 1 : 0);
    record.SetString(kWordsField, ToKOVString(words));
    KOVBasVector<KOVString> const rowLabels(0);
    KOVBasVector<KOVString> labels(static_cast<int>(defaults.size()));
    int column = 0;
    for (std::string const& word : ColumnWords(words)) labels[column++] = ToKOVString(word);
    KOVSimFTableID const table = field.field.CreateFTable(
        schema::FTable(), 1, rowLabels, labels, defaults.data(), static_cast<int>(defaults.size()));
    field.field.SetPosition(schema::FieldFTable_table(), KOVSimPosition(table));
}

bool HasDefaults(KOVSimPosition const& field) {
    int hasDefault = 1;
    field.GetDataRecord().GetInt(kDefaultField, hasDefault);
    KOVSimFTableID const id = field.GetPosition(schema::FieldFTable_table()).GetFTable();
    if (hasDefault == 0 || id.IsNull()) return false;
    KOVSimFTable const table(id);
    return table.RowCount() > 0 && table.ColumnCount() > 0;
}

void WriteRows(TableField const& field, KOVSimCSet const& elements, int columns,
               double const* rows) {
    KOVSimDistribution const values(field.values);
    KOVSimTransfer write(values);
    write.SetWrite().SetBufferPadding(false).SetAutoExtend().SetDrawer(field.drawer);
    write.SetDim(0, elements).SetDim(1, FirstColumns(values, columns)).CheckView();
    write.SetBuffer(0, rows, Bytes(elements, columns)).ExecWrite().RelinquishBuffers();
}

void ReadRows(TableField const& field, KOVSimCSet const& elements, double* out) {
    ReadRows(field, elements, 1, out);
}

void ReadRows(TableField const& field, KOVSimCSet const& elements, int columns, double* out) {
    KOVSimDistribution const values(field.values);
    KOVSimTransfer read(values);
    read.SetRead().SetBufferPadding(false).SetDrawer(field.drawer);
    read.SetDim(0, elements).SetDim(1, FirstColumns(values, columns)).CheckView();
    read.SetBuffer(0, out, Bytes(elements, columns)).ExecRead().RelinquishBuffers();
}

}  // namespace kov::tool
