// KOVSrvVariableMap: the dictionary of result variables. It tells for each variable label that
// users speak of (S11, U2, ALLKE) which field of a document holds it, as which component, and on
// which kind of grid.
//
// One static table of 5,472 rows, the last of which has no label and closes it. It is neither
// sorted nor unique: a label has a row for each grid on which its field lives, and an off-diagonal
// term of a tensor two, one for each of its two component symbols. The order is part of the
// interface: whoever searches goes from row 0 to the closing row, and the first row that fits wins;
// KOVSrvFieldServices has the searches. Fixed data that may be read from any thread once the
// library is loaded; a static initialiser that runs before that finds grids that are not filled.
#pragma once

#include "KOVExport.h"
#include "zdm_ComponentSymbols.h"

/// One row. All texts are static.
struct KOVSrvVariableMapEntry {
    char const* label;                  ///< the variable label; null in the closing row only
    zdm_ComponentSymbolsEnm component;  ///< of the field; zdm_Component_NONE: the field as a whole
    char const* fieldName;              ///< name of the field; "UNDEFINED" in the closing row
    int gridType;                       ///< type index of the grid; 0 in the closing row
};

class KOV_EXPORT KOVSrvVariableMap {
  public:
    /// Row `index`, in [0, 5472). The index is not checked. The rows stand side by side.
    static KOVSrvVariableMapEntry const* GetEntry(int index);
};
