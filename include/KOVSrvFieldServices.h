// KOVSrvFieldServices: questions about result variables and fields.
//
// Six operations search KOVSrvVariableMap by the label of a variable or by the name of a field;
// three read or create fields of a document. The searches are linear scans from the first row, and
// the first row that fits wins: some microseconds each, without anything built beforehand. Labels
// and names are compared byte for byte; labels are upper case in the map. Static operations; only
// the walk over the grids of a label keeps a state.
#pragma once

#include "KOVExport.h"
#include "KOVObjDocument.h"
#include "KOVSimArray.h"
#include "KOVSimCSet.h"
#include "KOVSimPosition.h"
#include "KOVSimSet.h"
#include "KOVString.h"
#include "zdm_ComponentSymbols.h"

class KOV_EXPORT KOVSrvFieldServices {
  public:
    using Strings = KOVSimArray<KOVString, KOVSimArrayClassPolicy<KOVString>>;

    /// The type index of the grid of the next row with this label; -1 if there is none. The search
    /// goes from the first row or, with `resume`, from behind the row where the last search ended:
    /// one call with false and further ones with true give all grids of a label in the order of
    /// its rows, a grid more than once where a label has several rows on it, and then -1 until a
    /// call with false. The whole process has one such place, whatever the label: walks of two
    /// threads, or two walks of one, disturb each other.
    static int GetGridTypeFromVariableLabel(KOVString const& label, bool resume);

    /// The component that the first row of the label names; zdm_Component_NONE for a label of a
    /// whole field and for an unknown one. With `second` that of the row behind, if it has the same
    /// label: the second symbol of an off-diagonal term, such as C_12_21 for S12. All other labels
    /// give the same with and without.
    static zdm_ComponentSymbolsEnm GetComponent(KOVString const& label, bool second);

    /// The name of the field that holds the variable; "UNDEFINED" for an unknown label, an empty
    /// one and "NULL".
    static KOVString GetFieldType(KOVString const& label);

    /// The label of the field as a whole on a grid; with -1 for `gridType` on any grid. Empty if
    /// there is none, and "UNDEFINED" for an empty name and "NULL".
    static KOVString GetVariableLabel(KOVString const& fieldName, int gridType);

    /// The label of one component of a field on a grid; with -1 for `gridType` on any grid. Empty
    /// if there is none.
    static KOVString GetComponentLabel(KOVString const& fieldName,
                                       zdm_ComponentSymbolsEnm component, int gridType);

    /// The labels of all components of the label's field, on the grid of the label's first row, in
    /// the order of the rows: for S also S12 twice, for its two rows, and SP1 to SP3. `label` may
    /// be one of a component itself. Empty for an unknown label.
    static Strings GetComponents(KOVString const& label);

    /// A field of `owner` that may have been replaced. `entries`: field entries, each with the name
    /// of the field in string field 0 of its record, the owner under FieldEntry_owner, and the
    /// field that holds instead under FieldEntry_field. The field of the first entry for this owner
    /// and name, a null position if that entry has none; without such an entry what `owner` itself
    /// has under `member`.
    static KOVSimPosition GetFieldPosition(KOVSimSet const& entries, KOVSimPosition const& owner,
                                           int member, KOVString const& name);

    /// The values of a uniform field: one for Field_UniformScalar, whatever `count`, and `count`
    /// for Field_UniformArray and Field_UniformValues. `values`: the caller's, with room for them;
    /// entries behind the stored ones stay as they were. False, with `values` left alone, for
    /// anything else and for a null position.
    static bool GetUniformFieldValue(KOVSimPosition const& field, double* values, int count);

    /// Creates a table field, of type Field_FTable, in a transaction of its own, which it commits.
    ///
    /// `names`: the labels of the table's columns, at least one and at most as many as the document
    /// has field columns (64 in a new one). `tableValues`: valueCount / names.Size() rows by
    /// names.Size() columns, row-major; the first one serves where the field has no values.
    /// `data`: (elements, names), row-major, in the order of the set. Both are copied. The last
    /// argument has no meaning.
    ///
    /// Throws KOVSimException, with nothing left behind, without names, where `valueCount` is not a
    /// multiple of their number, and where the document layer refuses, as in an open transaction or
    /// for a set of another document.
    static KOVSimPosition CreateFieldFTable(KOVObjDocument const& document, Strings const& names,
                                            double* tableValues, int valueCount,
                                            KOVSimCSet const& elements, double* data,
                                            int ignoredCount);
};
