// KOVSrvFsmMaterialTable: the table of a material behaviour, written to a document, extended there
// and read back.
//
// A row holds the values of the behaviour's dependent quantities, then, where they are present, the
// temperature at which they hold and the field variables. In the document there are no rows: each
// dependent quantity, the temperature and the field variables have a distribution of their own, and
// the rows are its first dimension. An object is the description of a behaviour, in arrays that
// tell under which associations the distributions hang and how many components each dependent has;
// it holds no data, and one object serves any number of behaviours of its kind. Preconditions are
// checked assertions, which end the process.
#pragma once

#include "KOVExport.h"
#include "KOVSimCSet.h"
#include "KOVSimPosition.h"
#include "KOVSimTransaction.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSrvFsmMaterialTable {
  public:
    /// A description of nothing, with null arrays: what it writes is nothing, and what it reads is
    /// an empty table.
    KOVSrvFsmMaterialTable() = default;
    /// The three arrays have one entry for each dependent: the pair under which its distribution is
    /// associated with the behaviour, and its number of components. `dependentTypes` ends with an
    /// entry of -1 besides and may not be null. They stay the caller's and must outlive the object.
    /// `hasTemperature`: whether the behaviour can depend on temperature at all.
    /// `fieldVariableType`: 0 if it has no field variables.
    KOVSrvFsmMaterialTable(int const* dependentTypes, int const* dependentMembers,
                           int const* dependentLengths, bool hasTemperature, int temperatureType,
                           int temperatureMember, int fieldVariableType, int fieldVariableMember);
    ~KOVSrvFsmMaterialTable();
    KOVSrvFsmMaterialTable(KOVSrvFsmMaterialTable const&) = default;
    KOVSrvFsmMaterialTable& operator=(KOVSrvFsmMaterialTable const&) = default;

    /// What the constructor was given.
    int const* GetDependentTypes() const { return m_dependentTypes; }
    int const* GetDependentMembers() const { return m_dependentMembers; }
    int const* GetDependentLengths() const { return m_dependentLengths; }
    int GetNumberOfDependent() const { return m_numberOfDependent; }
    int GetTemperatureType() const { return m_temperatureType; }
    int GetTemperatureMember() const { return m_temperatureMember; }
    int GetFieldVariableType() const { return m_fieldVariableType; }
    int GetFieldVariableMember() const { return m_fieldVariableMember; }
    bool HasTempDependancy() const { return m_hasTemperature; }

    /// Gives the collection room for at least `size` members; in a transaction. Answers the set of
    /// its first `size` members.
    KOVSimCSet ExtendCollection(KOVSimCollectionID collection, int size);

    /// Whether this behaviour holds temperatures; false wherever the description has none.
    bool IsTemperatureDependent(KOVSimPosition const& behaviour) const;
    /// How many field variables this behaviour holds; 0 wherever the description has none.
    int NumberFieldVariables(KOVSimPosition const& behaviour) const;

    /// Writes a new table, in distributions of its own; one that the behaviour had before is no
    /// longer associated with it. `rows`: `rowCount` rows, each the values of the dependents in
    /// order, then a temperature if the description has one and `withTemperature`, then
    /// `fieldVariableCount` field variables; the caller's. The collections are those over which the
    /// distributions stand (rows; components of a dependent; field variables) and are extended as
    /// needed. `extendable`: Append may add rows later. Answers the set of the rows written: the
    /// first members of `rowCollection`. Without rows, or with a null array in the description,
    /// nothing is written, and the set is empty.
    ///
    /// A write that is refused with KOVSimException leaves the behaviour's associations as they
    /// were if it was that of a dependent.
    KOVSimCSet Save(KOVSimTransaction& transaction, KOVSimPosition& behaviour,
                    KOVSimCollectionID const& rowCollection,
                    KOVSimCollectionID const& dependentColumns,
                    KOVSimCollectionID const& fieldVariableColumns, double const** rows,
                    int rowCount, bool withTemperature, int fieldVariableCount, bool extendable);

    /// Adds rows to a table that was saved as extendable, with the temperature and the field
    /// variables that it was saved with. `rows` as for Save. Answers the set of the new rows, the
    /// members of `rowCollection` that follow those of the table. The other two collections are not
    /// looked at. Throws KOVSimException if the table cannot grow or has other columns.
    KOVSimCSet Append(KOVSimTransaction& transaction, KOVSimPosition& behaviour,
                      KOVSimCollectionID rowCollection, KOVSimCollectionID dependentColumns,
                      KOVSimCollectionID fieldVariableColumns, double const** rows, int rowCount,
                      bool withTemperature, int fieldVariableCount);

    /// Reads the whole table: rows[r][c] for `rowCount` rows and `columnCount` columns, laid out as
    /// for Save, without the columns of dependents that the behaviour does not have. The array of
    /// rows and each row become the caller's, to be freed with mem_Free, the rows first. With a
    /// null array in the description the counts become 0, and `rows` stays as it was.
    void FillPointer(KOVSimPosition const& behaviour, double**& rows, int& rowCount,
                     int& columnCount, bool& hasTemperature, int& fieldVariableCount) const;

  private:
    int m_numberOfDependent = 0;
    int const* m_dependentTypes = nullptr;
    int const* m_dependentMembers = nullptr;
    int const* m_dependentLengths = nullptr;
    int m_temperatureType = 0;
    int m_temperatureMember = 0;
    int m_fieldVariableType = 0;
    int m_fieldVariableMember = 0;
    bool m_hasTemperature = false;

    bool IsConfigured() const;
    KOVSimPosition Dependent(KOVSimPosition const& behaviour, int dependent) const;
};
