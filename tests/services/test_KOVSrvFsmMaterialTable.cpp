#include "KOVSrvFsmMaterialTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "services/TableFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;

INSTANTIATE_TEST_SUITE_P(Media, MaterialTables, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

static_assert(!std::is_polymorphic_v<KOVSrvFsmMaterialTable>);

TEST(MaterialTable, TellsWhatItWasGiven) {
    Description const given({3, 1});
    KOVSrvFsmMaterialTable const table = given.Table();
    EXPECT_EQ(table.GetDependentTypes(), given.types.data());
    EXPECT_EQ(table.GetDependentMembers(), given.members.data());
    EXPECT_EQ(table.GetDependentLengths(), given.lengths.data());
    EXPECT_EQ(table.GetNumberOfDependent(), 2);
    EXPECT_EQ(table.GetTemperatureType(), schema::MaterialTable_temperatureData());
    EXPECT_EQ(table.GetTemperatureMember(), 2);
    EXPECT_EQ(table.GetFieldVariableType(), schema::MaterialTable_fieldVariableData());
    EXPECT_EQ(table.GetFieldVariableMember(), 3);
    EXPECT_TRUE(table.HasTempDependancy());
    EXPECT_EQ(Description({}).Table().GetNumberOfDependent(), 0);
}

TEST(MaterialTable, WithoutDescriptionAllIsZero) {
    KOVSrvFsmMaterialTable const table;
    EXPECT_EQ(table.GetDependentTypes(), nullptr);
    EXPECT_EQ(table.GetDependentMembers(), nullptr);
    EXPECT_EQ(table.GetDependentLengths(), nullptr);
    EXPECT_EQ(table.GetNumberOfDependent(), 0);
    EXPECT_EQ(table.GetTemperatureType(), 0);
    EXPECT_EQ(table.GetTemperatureMember(), 0);
    EXPECT_EQ(table.GetFieldVariableType(), 0);
    EXPECT_EQ(table.GetFieldVariableMember(), 0);
    EXPECT_FALSE(table.HasTempDependancy());
}

TEST_P(MaterialTables, SavedRowsAreReadBack) {
    Description const given({2, 1});
    Rows const rows = {{1, 2, 3, 20, 7, 8}, {4, 5, 6, 30, 9, 10}};
    EXPECT_THAT(mesh.Save(given.Table(), rows, true, 2), ElementsAre(0, 1));
    mesh.Reopen(KOVObjDocument::ReadOnly);
    TableRead const read = mesh.Read(given.Table());
    EXPECT_EQ(read.rows, rows);
    EXPECT_EQ(read.rowCount, 2);
    EXPECT_EQ(read.columnCount, 6);
    EXPECT_TRUE(read.hasTemperature);
    EXPECT_EQ(read.fieldVariableCount, 2);
    EXPECT_TRUE(given.Table().IsTemperatureDependent(mesh.behaviour));
    EXPECT_EQ(given.Table().NumberFieldVariables(mesh.behaviour), 2);
}

TEST_P(MaterialTables, EachQuantityIsADistributionOverTheRows) {
    Description const given({2, 1});
    mesh.Save(given.Table(), {{1, 2, 3, 20, 7, 8, 9}, {4, 5, 6, 30, 10, 11, 12}}, true, 3);
    mesh.Reopen();
    struct Expected {
        KOVSimPosition position;
        int type, columns;
    };
    for (Expected const& expected :
         {Expected{mesh.Dependent(0), schema::MaterialTable_dependentData(), 2},
          Expected{mesh.Dependent(1), schema::MaterialTable_dependentData(), 1},
          Expected{mesh.Temperature(), schema::MaterialTable_temperatureData(), 0},
          Expected{mesh.FieldVariables(), schema::MaterialTable_fieldVariableData(), 3}}) {
        KOVSimDistribution const distribution(expected.position.GetDistribution());
        SCOPED_TRACE(expected.columns);
        EXPECT_EQ(expected.position.TypePosition(), expected.type);
        EXPECT_EQ(distribution.Range().Key(), 4);
        ASSERT_EQ(distribution.NumDimensions(), expected.columns ? 2 : 1);
        EXPECT_EQ(distribution.Grid().Collections().ConstGet(0), mesh.RowCollection().ID());
        KOVSimPersistentDrawerDesc const drawer = TableDocument::OnlyDrawer(expected.position);
        EXPECT_EQ(drawer.extendableDim, 0);
        EXPECT_THAT(Members(drawer.compartment.CSet(0)), ElementsAre(0, 1));
        if (expected.columns == 0) {
            EXPECT_THAT(MeshDocument::ChunkSizes(drawer), ElementsAre(2));
            continue;
        }
        KOVSimCollection const columns = expected.columns == 3 ? mesh.Fields() : mesh.Columns();
        EXPECT_EQ(distribution.Grid().Collections().ConstGet(1), columns.ID());
        EXPECT_EQ(Members(drawer.compartment.CSet(1)), Range(0, expected.columns));
        EXPECT_THAT(MeshDocument::ChunkSizes(drawer), ElementsAre(2, expected.columns));
    }
}

TEST_P(MaterialTables, CollectionsGrowToWhatIsNeeded) {
    mesh.Save(Description({1, 4, 2}).Table(), Rows(5, Row(10)), true, 2);
    mesh.Reopen();
    EXPECT_EQ(mesh.RowCollection().Space(), 5);
    EXPECT_EQ(mesh.Columns().Space(), 4);
    EXPECT_EQ(mesh.Fields().Space(), 2);
}

TEST_P(MaterialTables, CollectionsThatAreLargerStay) {
    {
        auto const transaction = mesh.Write();
        mesh.RowCollection().ExtendSpace(10);
        mesh.Columns().ExtendSpace(7);
        transaction->Commit();
    }
    EXPECT_THAT(mesh.Save(Description({2}, false).Table(), {{1, 2}, {3, 4}}, false, 0),
                ElementsAre(0, 1));
    mesh.Reopen();
    EXPECT_EQ(mesh.RowCollection().Space(), 10);
    EXPECT_EQ(mesh.Columns().Space(), 7);
    EXPECT_EQ(mesh.Read(Description({2}, false).Table()).rows, (Rows{{1, 2}, {3, 4}}));
}

TEST_P(MaterialTables, ExtendCollectionGivesTheFirstMembers) {
    KOVSrvFsmMaterialTable table;
    auto const transaction = mesh.Write();
    KOVSimCSet const set = table.ExtendCollection(mesh.RowCollection().ID(), 4);
    EXPECT_THAT(Members(set), ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(set.CollectionID(), mesh.RowCollection().ID());
    EXPECT_EQ(mesh.RowCollection().Space(), 4);
    EXPECT_THAT(Members(table.ExtendCollection(mesh.RowCollection().ID(), 2)), ElementsAre(0, 1));
    EXPECT_EQ(mesh.RowCollection().Space(), 4);
    EXPECT_THAT(Members(table.ExtendCollection(mesh.RowCollection().ID(), 0)), ElementsAre());
}

TEST_P(MaterialTables, SaveOfNoRowsWritesNothing) {
    KOVObjDocumentStatistics const before = mesh.document.Statistics();
    EXPECT_THAT(mesh.Save(Description({2}).Table(), {}, true, 1), ElementsAre());
    mesh.Reopen();
    EXPECT_EQ(mesh.document.Statistics().distributions, before.distributions);
    EXPECT_EQ(mesh.RowCollection().Space(), 0);
    EXPECT_EQ(mesh.Columns().Space(), 0);
    EXPECT_EQ(mesh.Fields().Space(), 0);
    EXPECT_TRUE(mesh.Dependent(0).IsNull());
    EXPECT_TRUE(mesh.Temperature().IsNull());
    EXPECT_TRUE(mesh.FieldVariables().IsNull());
}

TEST_P(MaterialTables, WithoutTemperatureInTheDescriptionNoColumnIsPassedOver) {
    Description const given({2}, false);
    mesh.Save(given.Table(), {{1, 2, 3, 4, 99}, {5, 6, 7, 8, 99}}, true, 2);
    mesh.Reopen();
    EXPECT_TRUE(mesh.Temperature().IsNull());
    TableRead const read = mesh.Read(given.Table());
    EXPECT_EQ(read.rows, (Rows{{1, 2, 3, 4}, {5, 6, 7, 8}}));
    EXPECT_FALSE(read.hasTemperature);
}

TEST_P(MaterialTables, WithoutTemperatureInTheRowsNoColumnIsPassedOver) {
    Description const given({2});
    mesh.Save(given.Table(), {{1, 2, 3, 4, 99}, {5, 6, 7, 8, 99}}, false, 2);
    mesh.Append(given.Table(), {{-1, -2, -3, -4, 99}}, false, 2);
    mesh.Reopen();
    EXPECT_TRUE(mesh.Temperature().IsNull());
    TableRead const read = mesh.Read(given.Table());
    EXPECT_EQ(read.rows, (Rows{{1, 2, 3, 4}, {5, 6, 7, 8}, {-1, -2, -3, -4}}));
    EXPECT_FALSE(read.hasTemperature);
}

TEST_P(MaterialTables, WithoutFieldVariablesThereIsNoDistributionOfThem) {
    Description const given({1});
    mesh.Save(given.Table(), {{1, 20}, {2, 30}}, true, 0);
    mesh.Reopen();
    EXPECT_TRUE(mesh.FieldVariables().IsNull());
    EXPECT_EQ(mesh.Fields().Space(), 0);
    EXPECT_EQ(given.Table().NumberFieldVariables(mesh.behaviour), 0);
    EXPECT_EQ(mesh.Read(given.Table()).rows, (Rows{{1, 20}, {2, 30}}));
}

TEST_P(MaterialTables, AppendedRowsFollowThoseOfTheTable) {
    Description const given({1, 2});
    mesh.Save(given.Table(), {{1, 2, 3, 20, 7}, {4, 5, 6, 30, 8}, {7, 8, 9, 40, 9}}, true, 1);
    mesh.Reopen();
    EXPECT_THAT(mesh.Append(given.Table(), {{10, 11, 12, 50, 10}, {13, 14, 15, 60, 11}}, true, 1),
                ElementsAre(3, 4));
    mesh.Reopen();
    EXPECT_EQ(mesh.RowCollection().Space(), 5);
    TableRead const read = mesh.Read(given.Table());
    EXPECT_EQ(read.rowCount, 5);
    EXPECT_EQ(read.rows, (Rows{{1, 2, 3, 20, 7},
                               {4, 5, 6, 30, 8},
                               {7, 8, 9, 40, 9},
                               {10, 11, 12, 50, 10},
                               {13, 14, 15, 60, 11}}));
    // The table still has one drawer for each of its parts.
    for (KOVSimPosition const& part : {mesh.Dependent(0), mesh.Temperature()}) {
        EXPECT_THAT(Members(TableDocument::OnlyDrawer(part).compartment.CSet(0)),
                    ElementsAre(0, 1, 2, 3, 4));
    }
}

TEST_P(MaterialTables, AppendOfNoRowsLeavesTheTableAsItWas) {
    Description const given({1});
    mesh.Save(given.Table(), {{1, 20}, {2, 30}}, true, 0);
    EXPECT_THAT(mesh.Append(given.Table(), {}, true, 0), ElementsAre());
    mesh.Reopen();
    EXPECT_EQ(mesh.Read(given.Table()).rows, (Rows{{1, 20}, {2, 30}}));
}

TEST_P(MaterialTables, AppendFindsRowsThatTheCollectionHasAlready) {
    Description const given({1}, false);
    mesh.Save(given.Table(), {{1}, {2}}, false, 0);
    {
        auto const transaction = mesh.Write();
        mesh.RowCollection().ExtendSpace(9);
        transaction->Commit();
    }
    EXPECT_THAT(mesh.Append(given.Table(), {{3}}, false, 0), ElementsAre(2));
    mesh.Reopen();
    EXPECT_EQ(mesh.RowCollection().Space(), 9);
    EXPECT_EQ(mesh.Read(given.Table()).rows, (Rows{{1}, {2}, {3}}));
}

TEST_P(MaterialTables, CountsOfRowsThatCannotBeAreRefused) {
    Description const given({1}, false);
    mesh.Save(given.Table(), {{1}, {2}}, false, 0);
    auto const transaction = mesh.Write();
    KOVSrvFsmMaterialTable table = given.Table();
    double const value = 3;
    double const* row = &value;
    for (int const count : {-1, -2, -3, std::numeric_limits<int>::max()}) {
        EXPECT_THROW(table.Append(*transaction, mesh.behaviour, mesh.RowCollection().ID(),
                                  mesh.Columns().ID(), mesh.Fields().ID(), &row, count, false, 0),
                     KOVSimException)
            << count;
    }
    EXPECT_THROW(table.Save(*transaction, mesh.behaviour, mesh.RowCollection().ID(),
                            mesh.Columns().ID(), mesh.Fields().ID(), &row, -1, false, 0, true),
                 KOVSimException);
    EXPECT_EQ(mesh.RowCollection().Space(), 2);
    transaction->Commit();
    mesh.Reopen();
    EXPECT_EQ(mesh.Read(given.Table()).rows, (Rows{{1}, {2}}));
}

TEST_P(MaterialTables, TableThatIsNotExtendableIsNotChunkedAndCannotGrow) {
    Description const given({2});
    Rows const rows = {{1, 2, 20, 7}, {3, 4, 30, 8}};
    mesh.Save(given.Table(), rows, true, 1, false);
    for (KOVSimPosition const& part :
         {mesh.Dependent(0), mesh.Temperature(), mesh.FieldVariables()}) {
        EXPECT_FALSE(TableDocument::OnlyDrawer(part).IsChunked());
        EXPECT_EQ(TableDocument::OnlyDrawer(part).extendableDim, -1);
    }
    EXPECT_THROW(mesh.Append(given.Table(), {{5, 6, 40, 9}}, true, 1), KOVSimException);
    mesh.Reopen();
    EXPECT_EQ(mesh.Read(given.Table()).rows, rows);
}

template <class Work>
std::string RefusalOf(Work work) {
    try {
        work();
    } catch (KOVSimException const& refusal) {
        return refusal.what();
    }
    return {};
}

TEST_P(MaterialTables, AppendOfColumnsThatTheTableDoesNotHaveIsRefused) {
    Description const given({2});
    mesh.Save(given.Table(), {{1, 2, 7}, {3, 4, 8}}, false, 1);
    EXPECT_EQ(RefusalOf([&] {
                  mesh.Append(given.Table(), {{5, 6, 40, 9}}, true, 1);
              }),
              "KOVSrvFsmMaterialTable: the table has no such columns");
    EXPECT_THROW(mesh.Append(given.Table(), {{5, 6, 9, 10}}, false, 2), KOVSimException);
    EXPECT_THROW(mesh.Append(Description({3}).Table(), {{5, 6, 7, 9}}, false, 1), KOVSimException);
    mesh.Reopen();
    EXPECT_EQ(mesh.RowCollection().Space(), 2);
    EXPECT_EQ(mesh.Read(given.Table()).rows, (Rows{{1, 2, 7}, {3, 4, 8}}));
}

TEST_P(MaterialTables, ColumnsMoveUpWhereADependentIsAbsent) {
    Description const three({2, 3, 1});
    Description two({2, 1});
    two.members = {100, 102};
    mesh.Save(two.Table(), {{1, 2, 3, 20, 7}, {4, 5, 6, 30, 8}}, true, 1);
    mesh.Reopen();
    TableRead const read = mesh.Read(three.Table());
    EXPECT_EQ(read.columnCount, 5);
    EXPECT_EQ(read.rows, (Rows{{1, 2, 3, 20, 7}, {4, 5, 6, 30, 8}}));
}

TEST_P(MaterialTables, TemperatureIsNotSeenWithoutTheFlag) {
    mesh.Save(Description({1}).Table(), {{1, 20}, {2, 30}}, true, 0);
    mesh.Reopen();
    Description const without({1}, false);
    EXPECT_FALSE(mesh.Temperature().IsNull());
    EXPECT_FALSE(without.Table().IsTemperatureDependent(mesh.behaviour));
    TableRead const read = mesh.Read(without.Table());
    EXPECT_EQ(read.rows, (Rows{{1}, {2}}));
    EXPECT_FALSE(read.hasTemperature);
    EXPECT_EQ(read.columnCount, 1);
}

TEST_P(MaterialTables, FieldVariablesAreNotSeenWithoutTheirType) {
    Description given({1});
    mesh.Save(given.Table(), {{1, 20, 7}, {2, 30, 8}}, true, 1);
    mesh.Reopen();
    given.fieldVariableType = 0;
    EXPECT_EQ(given.Table().NumberFieldVariables(mesh.behaviour), 0);
    TableRead const read = mesh.Read(given.Table());
    EXPECT_EQ(read.rows, (Rows{{1, 20}, {2, 30}}));
    EXPECT_EQ(read.fieldVariableCount, 0);
}

TEST_P(MaterialTables, WithoutDependentsTemperatureAndFieldVariablesAreWritten) {
    Description const none({});
    EXPECT_THAT(mesh.Save(none.Table(), {{20, 7, 8}, {30, 9, 10}}, true, 2), ElementsAre(0, 1));
    mesh.Reopen();
    EXPECT_EQ(mesh.Columns().Space(), 0);
    EXPECT_TRUE(none.Table().IsTemperatureDependent(mesh.behaviour));
    EXPECT_EQ(none.Table().NumberFieldVariables(mesh.behaviour), 2);
    // The numbers are those of the first columns.
    {
        auto const transaction = mesh.Write();
        mesh.behaviour.Associate(schema::MaterialTable_dependentData(), 100, mesh.Temperature());
        transaction->Commit();
    }
    EXPECT_EQ(mesh.Read(Description({1}).Table()).rows, (Rows{{20, 20, 7, 8}, {30, 30, 9, 10}}));
}

TEST_P(MaterialTables, NullArraysWriteAndReadNothing) {
    Description const given({1});
    mesh.Save(given.Table(), {{1, 20}, {2, 30}}, true, 0);
    mesh.Reopen();
    int const* const types = given.types.data();
    int const* const numbers = given.lengths.data();
    for (KOVSrvFsmMaterialTable const& table :
         {KOVSrvFsmMaterialTable(),
          KOVSrvFsmMaterialTable(types, nullptr, numbers, true,
                                 schema::MaterialTable_temperatureData(), 2, 0, 0),
          KOVSrvFsmMaterialTable(types, numbers, nullptr, true,
                                 schema::MaterialTable_temperatureData(), 2, 0, 0)}) {
        auto const distributions = mesh.document.Statistics().distributions;
        EXPECT_THAT(mesh.Save(table, {{3, 40}, {4, 50}, {5, 60}}, true, 0), ElementsAre());
        EXPECT_THAT(mesh.Append(table, {{3, 40}}, true, 0), ElementsAre());
        EXPECT_EQ(mesh.RowCollection().Space(), 2);
        EXPECT_EQ(mesh.document.Statistics().distributions, distributions);
        double* mark = nullptr;
        double** rows = &mark;
        int rowCount = 7, columnCount = 7, fieldVariableCount = 7;
        bool hasTemperature = true;
        table.FillPointer(mesh.behaviour, rows, rowCount, columnCount, hasTemperature,
                          fieldVariableCount);
        EXPECT_EQ(rows, &mark);
        EXPECT_EQ(rowCount, 0);
        EXPECT_EQ(columnCount, 0);
        EXPECT_EQ(fieldVariableCount, 0);
        EXPECT_FALSE(hasTemperature);
    }
    EXPECT_EQ(mesh.Read(given.Table()).rows, (Rows{{1, 20}, {2, 30}}));
}

TEST_P(MaterialTables, DependentWithoutComponentsTakesNoColumns) {
    Description const given({0, 2});
    mesh.Save(given.Table(), {{1, 2, 20}, {3, 4, 30}}, true, 0);
    mesh.Append(given.Table(), {{5, 6, 40}}, true, 0);
    mesh.Reopen();
    EXPECT_EQ(mesh.Read(given.Table()).rows, (Rows{{1, 2, 20}, {3, 4, 30}, {5, 6, 40}}));
}

TEST_P(MaterialTables, TableSavedAnewTakesThePlaceOfTheOldOne) {
    Description const given({1});
    mesh.Save(given.Table(), {{1, 20, 7}, {2, 30, 8}, {3, 40, 9}}, true, 1);
    mesh.Save(given.Table(), {{4, 50}, {5, 60}}, true, 0);
    mesh.Reopen();
    // What the new table does not have stays that of the old one.
    EXPECT_EQ(
        KOVSimCSet(TableDocument::OnlyDrawer(mesh.FieldVariables()).compartment.CSet(0)).Size(), 3);
    Description without = given;
    without.fieldVariableType = 0;
    EXPECT_EQ(mesh.Read(without.Table()).rows, (Rows{{4, 50}, {5, 60}}));
    EXPECT_EQ(mesh.RowCollection().Space(), 3);
}

TEST_P(MaterialTables, TablesOfSeveralBehavioursShareTheirRows) {
    Description const given({1}, false);
    mesh.Save(given.Table(), {{1}, {2}, {3}}, false, 0);
    KOVSimPosition const first = mesh.behaviour;
    {
        auto const transaction = mesh.Write();
        mesh.behaviour = mesh.document.CreateDataRecord(schema::MaterialBehavior()).Pos();
        transaction->Commit();
    }
    EXPECT_THAT(mesh.Save(given.Table(), {{4}}, false, 0), ElementsAre(0));
    EXPECT_THAT(mesh.Append(given.Table(), {{5}}, false, 0), ElementsAre(1));
    EXPECT_EQ(mesh.RowCollection().Space(), 3);
    EXPECT_EQ(mesh.Read(given.Table()).rows, (Rows{{4}, {5}}));
    mesh.behaviour = first;
    mesh.Reopen();
    EXPECT_EQ(mesh.Read(given.Table()).rows, (Rows{{1}, {2}, {3}}));
}

TEST_P(MaterialTables, RefusedDependentLeavesNoLink) {
    // More than one transfer can move.
    Description given({1, 300'000'000});
    Rows const rows = {{1, 2}};
    EXPECT_THROW(mesh.Save(given.Table(), rows, false, 0), KOVSimException);
    auto const transaction = mesh.Write();
    RowPointers pointers(rows);
    EXPECT_THROW(given.Table().Save(*transaction, mesh.behaviour, mesh.RowCollection().ID(),
                                    mesh.Columns().ID(), mesh.Fields().ID(), pointers.Get(), 1,
                                    false, 0, true),
                 KOVSimException);
    EXPECT_TRUE(mesh.Dependent(0).IsNull());
    EXPECT_TRUE(mesh.Dependent(1).IsNull());
}

TEST_P(MaterialTables, DroppedTransactionLeavesTheTableAsItWas) {
    Description const given({1}, false);
    mesh.Save(given.Table(), {{1}, {2}}, false, 0);
    {
        auto const transaction = mesh.Write();
        Rows const rows = {{3}};
        RowPointers pointers(rows);
        given.Table().Append(*transaction, mesh.behaviour, mesh.RowCollection().ID(),
                             mesh.Columns().ID(), mesh.Fields().ID(), pointers.Get(), 1, false, 0);
    }
    mesh.Reopen();
    EXPECT_EQ(mesh.Read(given.Table()).rows, (Rows{{1}, {2}}));
    EXPECT_EQ(mesh.RowCollection().Space(), 2);
}

// A dependent over the rows alone, made by other means.
void MakeFlatDependent(TableDocument& mesh, std::vector<double> const& values) {
    auto const transaction = mesh.Write();
    mesh.RowCollection().ExtendSpace(static_cast<int>(values.size()));
    KOVSimGrid::CollectionArray grid(1, 0);
    grid.Get(0) = mesh.RowCollection().ID();
    KOVSimDistributionID const distribution =
        mesh.document.CreateDistribution(KOVSimGrid(grid), KOVSimRangeType(4), -1);
    KOVSimTransfer write{KOVSimDistribution(distribution)};
    write.SetWrite().SetMakeNewDrawer().SetBufferPadding(false);
    write
        .SetDim(0, mesh.RowCollection().CreateCSetStrided(0, static_cast<int>(values.size()), 1, 1))
        .CheckView()
        .SetBuffer(0, values.data(), values.size() * sizeof(double))
        .ExecWrite()
        .RelinquishBuffers();
    mesh.behaviour.Associate(schema::MaterialTable_dependentData(), 100, distribution);
    transaction->Commit();
}

TEST_P(MaterialTables, DependentOverTheRowsAloneIsRead) {
    MakeFlatDependent(mesh, {5, 6, 7});
    mesh.Reopen();
    EXPECT_EQ(mesh.Read(Description({1}).Table()).rows, (Rows{{5}, {6}, {7}}));
}

TEST_P(MaterialTables, AllItsComponentsAreAskedOfADependentOverTheRowsAlone) {
    MakeFlatDependent(mesh, {5, 6, 7});
    mesh.Reopen();
    double** rows = nullptr;
    int rowCount = 0, columnCount = 0, fieldVariableCount = 0;
    bool hasTemperature = false;
    EXPECT_THROW(Description({2}).Table().FillPointer(mesh.behaviour, rows, rowCount, columnCount,
                                                      hasTemperature, fieldVariableCount),
                 KOVSimException);
    EXPECT_EQ(rows, nullptr);
}

TEST_P(MaterialTables, PartsOfUnequalNumbersOfRowsAreRefused) {
    Description const given({1});
    mesh.Save(given.Table(), {{1, 20}, {2, 30}}, true, 0);
    // Rows without the temperature that the table has.
    mesh.Append(given.Table(), {{3}}, false, 0);
    mesh.Reopen();
    double** rows = nullptr;
    int rowCount = 0, columnCount = 0, fieldVariableCount = 0;
    bool hasTemperature = false;
    EXPECT_THROW(given.Table().FillPointer(mesh.behaviour, rows, rowCount, columnCount,
                                           hasTemperature, fieldVariableCount),
                 KOVSimException);
    EXPECT_EQ(rows, nullptr);
    EXPECT_EQ(mesh.Read(Description({1}, false).Table()).rows, (Rows{{1}, {2}, {3}}));
}

TEST_P(MaterialTables, PartWithoutADrawerIsRefused) {
    {
        auto const transaction = mesh.Write();
        KOVSimGrid::CollectionArray grid(2, 0);
        grid.Get(0) = mesh.RowCollection().ID();
        grid.Get(1) = mesh.Columns().ID();
        KOVSimDistributionID const empty =
            mesh.document.CreateDistribution(KOVSimGrid(grid), KOVSimRangeType(4), -1);
        mesh.behaviour.Associate(schema::MaterialTable_dependentData(), 100, empty);
        mesh.behaviour.Associate(schema::MaterialTable_fieldVariableData(), 3, empty);
        transaction->Commit();
    }
    mesh.Reopen();
    Description const given({1});
    KOVSrvFsmMaterialTable const table = given.Table();
    std::string const text = "KOVSrvFsmMaterialTable: a part of the table has no drawer";
    EXPECT_EQ(RefusalOf([&] { mesh.Read(table); }), text);
    EXPECT_EQ(RefusalOf([&] { table.NumberFieldVariables(mesh.behaviour); }), text);
}

TEST_P(MaterialTables, NullBehaviourHoldsNothingAndTakesNothing) {
    Description const given({1});
    KOVSrvFsmMaterialTable const table = given.Table();
    EXPECT_FALSE(table.IsTemperatureDependent(KOVSimPosition()));
    EXPECT_EQ(table.NumberFieldVariables(KOVSimPosition()), 0);
    mesh.behaviour = KOVSimPosition();
    EXPECT_THROW(mesh.Save(table, {{1, 20}}, true, 0), KOVSimException);
}

TEST_P(MaterialTables, CollectionsOfAnotherDocumentAreRefused) {
    TableDocument other;
    Description const given({1}, false);
    mesh.Save(given.Table(), {{1}}, false, 0);
    auto const transaction = mesh.Write();
    Rows const rows = {{2}};
    RowPointers pointers(rows);
    KOVSrvFsmMaterialTable table = given.Table();
    EXPECT_THROW(
        table.Save(*transaction, mesh.behaviour, other.RowCollection().ID(), mesh.Columns().ID(),
                   mesh.Fields().ID(), pointers.Get(), 1, false, 0, true),
        KOVSimException);
    EXPECT_THROW(table.Append(*transaction, mesh.behaviour, other.RowCollection().ID(),
                              mesh.Columns().ID(), mesh.Fields().ID(), pointers.Get(), 1, false, 0),
                 KOVSimException);
    EXPECT_EQ(other.RowCollection().Space(), 0);
    transaction->Commit();
    mesh.Reopen();
    EXPECT_EQ(mesh.Read(table).rows, (Rows{{1}}));
}

TEST_P(MaterialTables, ClosedDocumentIsRefused) {
    Description const given({1});
    mesh.Save(given.Table(), {{1, 20, 7}}, true, 1);
    mesh.document.Close();
    EXPECT_THROW(given.Table().IsTemperatureDependent(mesh.behaviour), KOVSimException);
    EXPECT_THROW(given.Table().NumberFieldVariables(mesh.behaviour), KOVSimException);
    EXPECT_THROW(mesh.Read(given.Table()), KOVSimException);
}

TEST_P(MaterialTables, ValuesKeepEveryBit) {
    Description const given({3});
    double const nan = std::numeric_limits<double>::quiet_NaN();
    double const infinity = std::numeric_limits<double>::infinity();
    Rows const rows = {{nan, -0.0, 5e-324, -infinity, 1e308}};
    mesh.Save(given.Table(), rows, true, 1);
    mesh.Append(given.Table(), rows, true, 1);
    mesh.Reopen();
    for (Row const& row : mesh.Read(given.Table()).rows) {
        EXPECT_EQ(std::memcmp(row.data(), rows[0].data(), rows[0].size() * sizeof(double)), 0);
    }
}

TEST_P(MaterialTables, RowsAppendedOneByOneAreReadBack) {
    Description const given({2});
    Rows rows = {{0, 0.5, 0.25}};
    mesh.Save(given.Table(), rows, true, 0);
    auto const transaction = mesh.Write();
    KOVSrvFsmMaterialTable table = given.Table();
    for (int r = 1; r < 700; ++r) {
        rows.push_back({1.0 * r, r + 0.5, r + 0.25});
        double const* row = rows.back().data();
        KOVSimCSet const added =
            table.Append(*transaction, mesh.behaviour, mesh.RowCollection().ID(),
                         mesh.Columns().ID(), mesh.Fields().ID(), &row, 1, true, 0);
        ASSERT_EQ(added.Size(), 1);
    }
    transaction->Commit();
    mesh.Reopen();
    EXPECT_EQ(mesh.Read(table).rows, rows);
}

TEST_P(MaterialTables, ManyRowsAreReadBack) {
    Description const given({3, 6});
    Rows rows;
    for (int r = 0; r < 5000; ++r) {
        Row row;
        for (int c = 0; c < 12; ++c) row.push_back(1000.0 * c + r);
        rows.push_back(row);
    }
    mesh.Save(given.Table(), Rows(rows.begin(), rows.begin() + 100), true, 2);
    for (int r = 100; r < 5000; r += 700) {
        mesh.Append(given.Table(), Rows(rows.begin() + r, rows.begin() + r + 700), true, 2);
    }
    mesh.Reopen();
    EXPECT_EQ(mesh.Read(given.Table()).rows, rows);
}

}  // namespace
}  // namespace kov::test
