#include "KOVSrvFsmFTable.h"

#include <climits>
#include <cstddef>

#include "KOVSimException.h"
#include "KOVSimFTable.h"
#include "TableRows.h"

namespace {

constexpr char const* kTemperature = "Temperature";
constexpr char const* kFieldVariable = "Field_";

/// The first column of this label, or -1.
int ColumnOf(KOVSimFTable const& table, KOVString const& label) {
    int const columns = table.ColumnCount();
    for (int column = 0; column < columns; ++column) {
        if (table.ColumnLabel(column) == label) return column;
    }
    return -1;
}

int CountFieldVariables(KOVSimFTable const& table) {
    int const columns = table.ColumnCount();
    int count = 0;
    for (int column = 0; column < columns; ++column) {
        if (table.ColumnLabel(column).SubString(0, 6) == kFieldVariable) ++count;
    }
    return count;
}

}  // namespace

void KOVSrvFsmFTable::CreateTable(KOVSimPosition& owner, int tableType, int rowCount,
                                  int columnCount, KOVBasVector<KOVString>& firstLabels,
                                  KOVBasVector<KOVString>& secondLabels, int member, double* values,
                                  int fieldVariableCount, bool hasTemperature) {
    if (hasTemperature) secondLabels.PushBack(kTemperature);
    for (int i = 0; i < fieldVariableCount; ++i) {
        KOVString label(kFieldVariable);
        secondLabels.PushBack(label += i);
    }
    long long const valueCount = static_cast<long long>(rowCount) * columnCount;
    if (valueCount == 0) return;
    if (valueCount < INT_MIN || valueCount > INT_MAX) {
        KOVSimException::ThrowText(
            "KOVSrvFsmFTable::CreateTable: a table holds at most 2147483647 values");
    }
    m_table = owner.CreateFTable(tableType, rowCount, firstLabels, secondLabels, values,
                                 static_cast<int>(valueCount));
    owner.SetPosition(member, m_table);
}

void KOVSrvFsmFTable::CreateTable(KOVSimPosition& owner, int tableType, int rowCount,
                                  int columnCount, int member, double* values,
                                  int fieldVariableCount, bool hasTemperature) {
    KOVBasVector<KOVString> firstLabels;
    KOVBasVector<KOVString> secondLabels;
    CreateTable(owner, tableType, rowCount, columnCount, firstLabels, secondLabels, member, values,
                fieldVariableCount, hasTemperature);
}

bool KOVSrvFsmFTable::HasColumn(KOVString const& label) const {
    return ColumnOf(KOVSimFTable(m_table.GetFTable()), label) >= 0;
}

int KOVSrvFsmFTable::NumOfCols() const { return KOVSimFTable(m_table.GetFTable()).ColumnCount(); }

int KOVSrvFsmFTable::NumOfRows() const { return KOVSimFTable(m_table.GetFTable()).RowCount(); }

int KOVSrvFsmFTable::NumberFieldVariables() const {
    return CountFieldVariables(KOVSimFTable(m_table.GetFTable()));
}

bool KOVSrvFsmFTable::GetColumnData(int row, KOVString const& label, double& value) const {
    KOVSimFTable const table(m_table.GetFTable());
    if (row < 0 || row >= table.RowCount()) return false;
    int const column = ColumnOf(table, label);
    if (column < 0) return false;
    // What stands behind the cell is not asked for. A table has at most 2147483647 values.
    int const last = column + table.ColumnCount() * row;
    kov::fsm::Doubles const values = kov::fsm::NewDoubles(static_cast<std::size_t>(last) + 1);
    table.GetData(values.get(), last + 1);
    value = values[static_cast<std::size_t>(last)];
    return true;
}

void KOVSrvFsmFTable::FillPointer(double**& rows, int& rowCount, int& columnCount,
                                  bool& hasTemperature, int& fieldVariableCount) const {
    KOVSimFTable const table(m_table.GetFTable());
    rowCount = table.RowCount();
    columnCount = table.ColumnCount();
    hasTemperature = ColumnOf(table, kTemperature) >= 0;
    fieldVariableCount = CountFieldVariables(table);
    kov::fsm::TableRows filled(rowCount, columnCount);
    int const count = rowCount * columnCount;
    kov::fsm::Doubles const values = kov::fsm::NewDoubles(static_cast<std::size_t>(count));
    table.GetData(values.get(), count);
    filled.SetColumns(0, columnCount, values.get());
    rows = filled.Release();
}
