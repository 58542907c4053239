// TableField: a table field in a document, numbers by element or node and column, written and read
// in blocks of rows.
//
// One drawer that grows over the elements holds all values; what it does not hold is the default,
// in the field's function table. The drawer is there from the beginning, also where no element has
// a value of its own, as a table field is read through its first drawer. Everything but reading
// needs an open transaction.
#pragma once

#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "KOVSimPosition.h"
#include "KOVSimTypedIDs.h"

namespace kov::tool {

struct TableField {
    KOVSimPosition field;         ///< record of the table field
    KOVSimDistributionID values;  ///< elements by columns
    KOVSimDrawerID drawer;        ///< its one drawer
};

/// The most columns that a table field of a document can have.
int MostFieldColumns(KOVObjDocument const& document);

/// A field of that many columns, without values and defaults.
TableField MakeTableField(KOVObjDocument const& document, int columns);
/// The same over another collection than the elements: the nodes.
TableField MakeTableField(KOVObjDocument const& document, int columns,
                          KOVSimCollectionID const& rows);

/// What the numbers mean, a word for each or for several of them, and what holds for elements
/// without a value: one number a column. Once for each field.
void SetDefaults(TableField const& field, std::string const& words, bool hasDefault,
                 std::vector<double> const& defaults);

/// True if a table field has a value for elements without one of their own. A record that does not
/// say so has one where there is a table.
bool HasDefaults(KOVSimPosition const& field);

/// The words of a table, each as often as it has numbers.
std::vector<std::string> ColumnWords(std::string const& words);

/// Rows that pass through memory at once: about 100,000 numbers.
int RowsInBlock(int columns);

/// Writes values: `rows` holds `columns` numbers for each of `elements`, in their order.
void WriteRows(TableField const& field, KOVSimCSet const& elements, int columns,
               double const* rows);

/// Reads the first column: `out` holds a number for each of `elements`, which stays where the
/// element has no value of its own.
void ReadRows(TableField const& field, KOVSimCSet const& elements, double* out);
/// The same for the first `columns` columns, row by row.
void ReadRows(TableField const& field, KOVSimCSet const& elements, int columns, double* out);

}  // namespace kov::tool
