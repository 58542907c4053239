// A document with a material behaviour and the collections of its table, and the rows that go in
// and out.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "KOVSrvFsmMaterialTable.h"
#include "services/MeshFixture.h"

namespace kov::test {

using Row = std::vector<double>;
using Rows = std::vector<Row>;

/// Rows as the services take them.
struct RowPointers {
    explicit RowPointers(Rows const& rows) {
        for (Row const& row : rows) pointers.push_back(row.data());
    }
    double const** Get() { return pointers.data(); }
    int Count() const { return static_cast<int>(pointers.size()); }
    std::vector<double const*> pointers;
};

/// The rows that a service gave away, which end here.
inline Rows TakeRows(double** rows, int rowCount, int columnCount) {
    Rows taken;
    for (int row = 0; row < rowCount; ++row) {
        taken.emplace_back(rows[row], rows[row] + columnCount);
        mem_Free(rows[row]);
    }
    mem_Free(rows);
    return taken;
}

/// What FillPointer told.
struct TableRead {
    Rows rows;
    int rowCount = -5, columnCount = -5;
    bool hasTemperature = false;
    int fieldVariableCount = -5;
};

/// The arrays of a description, which outlive it.
struct Description {
    std::vector<int> types, members, lengths;
    bool hasTemperature = true;
    int fieldVariableType = schema::MaterialTable_fieldVariableData();
    static constexpr int kTemperatureMember = 2, kFieldVariableMember = 3;

    /// Dependents of these lengths, under members 100, 101, ...
    explicit Description(std::vector<int> const& dependentLengths, bool temperature = true)
        : lengths(dependentLengths), hasTemperature(temperature) {
        for (std::size_t d = 0; d < lengths.size(); ++d) {
            types.push_back(schema::MaterialTable_dependentData());
            members.push_back(100 + static_cast<int>(d));
        }
        types.push_back(-1);
    }
    KOVSrvFsmMaterialTable Table() const {
        return {types.data(),
                members.empty() ? &kNothing : members.data(),
                lengths.empty() ? &kNothing : lengths.data(),
                hasTemperature,
                schema::MaterialTable_temperatureData(),
                kTemperatureMember,
                fieldVariableType,
                kFieldVariableMember};
    }
    static constexpr int kNothing = 0;
};

class TableDocument : public MeshDocument {
  public:
    explicit TableDocument(Medium medium = Medium::Memory) : MeshDocument(medium, 1, 1) {
        auto const transaction = Write();
        behaviour = document.CreateDataRecord(schema::MaterialBehavior()).Pos();
        m_rows = behaviour.CreateTypedCollection(0, schema::MaterialTableRowCollection());
        m_columns = behaviour.CreateTypedCollection(0, schema::MaterialTableColumnCollection());
        m_fields = behaviour.CreateTypedCollection(0, schema::MaterialTableColumnCollection());
        transaction->Commit();
    }
    void Reopen(KOVObjDocument::Access access = KOVObjDocument::ReadWrite) {
        MeshDocument::Reopen(access);
        for (KOVSimPosition* position : {&behaviour, &m_rows, &m_columns, &m_fields}) {
            KOVSimDynamicID id = position->ID();
            id.context = document.ContextID();
            *position = id;
        }
    }

    KOVSimCollection RowCollection() const { return KOVSimCollection(m_rows.GetCollection()); }
    KOVSimCollection Columns() const { return KOVSimCollection(m_columns.GetCollection()); }
    KOVSimCollection Fields() const { return KOVSimCollection(m_fields.GetCollection()); }

    /// Each in a transaction of its own, and answering the members of the set.
    std::vector<int> Save(KOVSrvFsmMaterialTable table, Rows const& rows, bool withTemperature,
                          int fieldVariableCount, bool extendable = true) {
        auto const transaction = Write();
        RowPointers pointers(rows);
        KOVSimCSet const set = table.Save(
            *transaction, behaviour, RowCollection().ID(), Columns().ID(), Fields().ID(),
            pointers.Get(), pointers.Count(), withTemperature, fieldVariableCount, extendable);
        transaction->Commit();
        EXPECT_EQ(set.Size() == 0, set.CollectionID().IsNull());
        return Members(set);
    }
    std::vector<int> Append(KOVSrvFsmMaterialTable table, Rows const& rows, bool withTemperature,
                            int fieldVariableCount) {
        auto const transaction = Write();
        RowPointers pointers(rows);
        KOVSimCSet const set =
            table.Append(*transaction, behaviour, RowCollection().ID(), KOVSimCollectionID(),
                         KOVSimCollectionID(), pointers.Get(), pointers.Count(), withTemperature,
                         fieldVariableCount);
        transaction->Commit();
        return Members(set);
    }
    TableRead Read(KOVSrvFsmMaterialTable const& table) const {
        TableRead read;
        double** rows = nullptr;
        table.FillPointer(behaviour, rows, read.rowCount, read.columnCount, read.hasTemperature,
                          read.fieldVariableCount);
        read.rows = TakeRows(rows, read.rowCount, read.columnCount);
        return read;
    }

    KOVSimPosition Dependent(int dependent) const {
        return behaviour.Follow(schema::MaterialTable_dependentData(), 100 + dependent);
    }
    KOVSimPosition Temperature() const {
        return behaviour.Follow(schema::MaterialTable_temperatureData(),
                                Description::kTemperatureMember);
    }
    KOVSimPosition FieldVariables() const {
        return behaviour.Follow(schema::MaterialTable_fieldVariableData(),
                                Description::kFieldVariableMember);
    }
    static KOVSimPersistentDrawerDesc OnlyDrawer(KOVSimPosition const& distribution) {
        Descriptions const drawers = Drawers(KOVSimDistribution(distribution.GetDistribution()));
        EXPECT_EQ(drawers.Size(), 1);
        return drawers.ConstGet(0);
    }

    KOVSimPosition behaviour;

  private:
    KOVSimPosition m_rows, m_columns, m_fields;
};

class MaterialTables : public testing::TestWithParam<Medium> {
  protected:
    TableDocument mesh{GetParam()};
};

}  // namespace kov::test
