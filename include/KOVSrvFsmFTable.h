// KOVSrvFsmFTable: a handle on a function table of a document, a rectangular table of doubles with
// labelled columns.
//
// Two kinds of independent column have names of their own: "Temperature", and "Field_0", "Field_1",
// ... for the field variables. The class puts them behind the caller's columns when it creates a
// table, and knows them by their labels when it reads one. The handle is the position of the table
// and nothing else: copies are cheap, and every operation opens the table anew, so that many cells
// are better taken at once, with FillPointer. Reading through a null handle finds a table without
// rows and columns.
#pragma once

#include "KOVBasVector.h"
#include "KOVExport.h"
#include "KOVSimPosition.h"
#include "KOVString.h"

class KOV_EXPORT KOVSrvFsmFTable {
  public:
    /// On the null position.
    KOVSrvFsmFTable() = default;
    /// On an existing table. The position is not examined.
    explicit KOVSrvFsmFTable(KOVSimPosition const& table) : m_table(table) {}

    /// Creates a table in the document of `owner` and links it from there under `member`; in a
    /// transaction. Appends "Temperature" to `secondLabels` if `hasTemperature`, then
    /// `fieldVariableCount` labels "Field_0", "Field_1", ...; they stay in the caller's vector.
    /// `values`: (rowCount, columnCount), row-major; copied. `tableType`: schema type of the table.
    ///
    /// `columnCount` tells which labels name columns: as many as `secondLabels` has by then, and
    /// these do, while what `firstLabels` mean is the caller's affair; or as many as both lists
    /// have, and the columns are those of `firstLabels`, then those of `secondLabels`. Any other
    /// count is refused with KOVSimException.
    ///
    /// Without rows, or with a `columnCount` of 0, nothing is created and nothing linked, and the
    /// handle stays as it was. A table is stored whole: one of more than some 120 million values
    /// is refused.
    void CreateTable(KOVSimPosition& owner, int tableType, int rowCount, int columnCount,
                     KOVBasVector<KOVString>& firstLabels, KOVBasVector<KOVString>& secondLabels,
                     int member, double* values, int fieldVariableCount, bool hasTemperature);
    /// The same without labels of the caller's: the columns are the temperature and the field
    /// variables.
    void CreateTable(KOVSimPosition& owner, int tableType, int rowCount, int columnCount,
                     int member, double* values, int fieldVariableCount, bool hasTemperature);

    /// True if a column bears exactly this label, byte for byte.
    bool HasColumn(KOVString const& label) const;
    /// The size of the table; independent columns count as columns.
    int NumOfCols() const;
    int NumOfRows() const;
    /// How many labels begin with "Field_"; what stands behind is not looked at.
    int NumberFieldVariables() const;

    /// One value: row `row`, from 0, of the first column with this label. False, with `value` left
    /// alone, if there is no such row or column.
    bool GetColumnData(int row, KOVString const& label, double& value) const;

    /// The whole table: rows[r][c] for rowCount rows and columnCount columns, in the order of the
    /// table. `hasTemperature` and `fieldVariableCount` tell that such columns are there, not
    /// where. The array of rows and each row become the caller's, to be freed with mem_Free, the
    /// rows first. A table without rows gives an array all the same.
    void FillPointer(double**& rows, int& rowCount, int& columnCount, bool& hasTemperature,
                     int& fieldVariableCount) const;

  private:
    KOVSimPosition m_table;
};
