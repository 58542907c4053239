#include "KOVSrvFsmFTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "KOVSimFTable.h"
#include "KOVSimSchema.h"
#include "services/TableFixture.h"
#include "support/DocumentFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using Labels = std::vector<std::string>;

KOVBasVector<KOVString> Texts(Labels const& labels) {
    KOVBasVector<KOVString> texts;
    for (std::string const& label : labels) texts.PushBack(label.c_str());
    return texts;
}

Labels Plain(KOVBasVector<KOVString> const& texts) {
    Labels labels;
    for (KOVString const& text : texts) labels.emplace_back(text.TextOrEmpty());
    return labels;
}

class FTables : public DocumentTest {
  protected:
    static int Member() { return schema::FieldFTable_table(); }

    // A new owner with a table of such columns, looked at from a document opened anew.
    KOVSrvFsmFTable Make(int rowCount, Labels const& columns, std::vector<double> values) {
        Write([&] {
            owner = NewRecord(schema::Field_FTable());
            KOVBasVector<KOVString> first = Texts({"first"}), second = Texts(columns);
            KOVSrvFsmFTable().CreateTable(owner, schema::FTable(), rowCount, second.Size(), first,
                                          second, Member(), values.data(), 0, false);
        });
        Reopen();
        owner = Again(owner);
        return KOVSrvFsmFTable(owner.GetPosition(Member()));
    }
    static Labels ColumnsOf(KOVSimPosition const& table) {
        KOVSimFTable const content(table.GetFTable());
        Labels labels;
        for (int c = 0; c < content.ColumnCount(); ++c) {
            labels.emplace_back(content.ColumnLabel(c).TextOrEmpty());
        }
        return labels;
    }
    KOVSimPosition owner;
};
KOV_DOCUMENT_TESTS(FTables);

TEST_P(FTables, IndependentColumnsFollowThoseOfTheCaller) {
    std::vector<double> values{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    Write([&] {
        owner = NewRecord(schema::Field_FTable());
        KOVBasVector<KOVString> first = Texts({"a", "b"}), second = Texts({"Stress", "Strain"});
        KOVSrvFsmFTable table;
        table.CreateTable(owner, schema::FTable(), 2, 5, first, second, Member(), values.data(), 2,
                          true);
        EXPECT_THAT(Plain(second),
                    ElementsAre("Stress", "Strain", "Temperature", "Field_0", "Field_1"));
        EXPECT_THAT(Plain(first), ElementsAre("a", "b"));
        // The handle is bound to what it made.
        EXPECT_EQ(table.NumOfCols(), 5);
        EXPECT_EQ(table.NumOfRows(), 2);
    });
    Reopen(KOVObjDocument::ReadOnly);
    KOVSimPosition const position = Again(owner).GetPosition(Member());
    EXPECT_EQ(position.TypePosition(), schema::FTable());
    EXPECT_THAT(ColumnsOf(position),
                ElementsAre("Stress", "Strain", "Temperature", "Field_0", "Field_1"));
    EXPECT_EQ(KOVSimFTable(position.GetFTable()).LabelCount(), 2);
    KOVSrvFsmFTable const table(position);
    EXPECT_EQ(table.NumOfCols(), 5);
    EXPECT_EQ(table.NumOfRows(), 2);
    EXPECT_EQ(table.NumberFieldVariables(), 2);
    EXPECT_TRUE(table.HasColumn("Temperature"));
}

TEST_P(FTables, ShortFormHasTheIndependentColumnsAlone) {
    std::vector<double> values{20, 1, 2, 30, 3, 4};
    Write([&] {
        owner = NewRecord(schema::Field_FTable());
        KOVSrvFsmFTable().CreateTable(owner, schema::FTable(), 2, 3, Member(), values.data(), 2,
                                      true);
    });
    Reopen();
    KOVSimPosition const table = Again(owner).GetPosition(Member());
    EXPECT_THAT(ColumnsOf(table), ElementsAre("Temperature", "Field_0", "Field_1"));
    EXPECT_EQ(KOVSimFTable(table.GetFTable()).LabelCount(), 0);
}

TEST_P(FTables, FieldVariablesAreNumberedWithoutLeadingZeros) {
    std::vector<double> values(12);
    Write([&] {
        owner = NewRecord(schema::Field_FTable());
        KOVSrvFsmFTable().CreateTable(owner, schema::FTable(), 1, 12, Member(), values.data(), 12,
                                      false);
    });
    Reopen();
    Labels const labels = ColumnsOf(Again(owner).GetPosition(Member()));
    ASSERT_EQ(labels.size(), 12U);
    EXPECT_EQ(labels[9], "Field_9");
    EXPECT_EQ(labels[11], "Field_11");
}

TEST_P(FTables, WithoutRowsOrColumnsNothingIsCreatedButLabelsAre) {
    for (auto const& [rowCount, columnCount] : {std::pair{0, 4}, {3, 0}, {0, 0}}) {
        Write([&, rows = rowCount, columns = columnCount] {
            owner = NewRecord(schema::Field_FTable());
            KOVBasVector<KOVString> first, second = Texts({"Stress"});
            double value = 1;
            KOVSrvFsmFTable table;
            table.CreateTable(owner, schema::FTable(), rows, columns, first, second, Member(),
                              &value, 2, true);
            EXPECT_THAT(Plain(second), ElementsAre("Stress", "Temperature", "Field_0", "Field_1"));
            EXPECT_EQ(table.NumOfCols(), 0);
        });
        Reopen();
        EXPECT_TRUE(Again(owner).GetPosition(Member()).IsNull());
    }
}

TEST_P(FTables, HandleKeepsItsTableWhereNothingIsCreated) {
    KOVSrvFsmFTable table = Make(1, {"a", "b"}, {1, 2});
    Write([&] { table.CreateTable(owner, schema::FTable(), 0, 3, Member(), nullptr, 3, false); });
    EXPECT_EQ(table.NumOfCols(), 2);
    EXPECT_EQ(owner.GetPosition(Member()).IsNull(), false);
}

TEST_P(FTables, ColumnCountThatIsNotThatOfTheLabelsIsRefused) {
    std::vector<double> values(6);
    Write([&] {
        owner = NewRecord(schema::Field_FTable());
        KOVBasVector<KOVString> first, second = Texts({"a", "b"});
        KOVSrvFsmFTable table;
        EXPECT_THROW(table.CreateTable(owner, schema::FTable(), 2, 3, first, second, Member(),
                                       values.data(), 0, false),
                     KOVSimException);
        EXPECT_THROW(table.CreateTable(owner, schema::FTable(), -2, -1, first, second, Member(),
                                       values.data(), 0, false),
                     KOVSimException);
        // The number of values would not fit an int, and its low bits would be right.
        EXPECT_THROW(table.CreateTable(owner, schema::FTable(), 1 << 17, 1 << 16, first, second,
                                       Member(), values.data(), 0, false),
                     KOVSimException);
        EXPECT_EQ(table.NumOfRows(), 0);
        EXPECT_TRUE(owner.GetPosition(Member()).IsNull());
    });
}

TEST_P(FTables, ColumnCountTellsWhetherTheFirstLabelsNameColumnsToo) {
    std::vector<double> values{1, 2, 3, 4, 5, 6, 7, 8};
    Write([&] {
        owner = NewRecord(schema::Field_FTable());
        KOVBasVector<KOVString> first = Texts({"Stress"}), second = Texts({"Strain"});
        KOVSrvFsmFTable table;
        table.CreateTable(owner, schema::FTable(), 2, 4, first, second, Member(), values.data(), 1,
                          true);
    });
    Reopen();
    KOVSimPosition const position = Again(owner).GetPosition(Member());
    EXPECT_THAT(ColumnsOf(position), ElementsAre("Stress", "Strain", "Temperature", "Field_0"));
    double value = -1;
    EXPECT_TRUE(KOVSrvFsmFTable(position).GetColumnData(1, "Temperature", value));
    EXPECT_EQ(value, 7);
}

TEST_P(FTables, NegativeNumberOfFieldVariablesAppendsNone) {
    double value = 5;
    Write([&] {
        owner = NewRecord(schema::Field_FTable());
        KOVSrvFsmFTable().CreateTable(owner, schema::FTable(), 1, 1, Member(), &value, -3, true);
    });
    Reopen();
    EXPECT_THAT(ColumnsOf(Again(owner).GetPosition(Member())), ElementsAre("Temperature"));
}

TEST_P(FTables, NullOwnersAndValuesAreRefused) {
    double value = 5;
    Write([&] {
        KOVSimPosition none;
        KOVSrvFsmFTable table;
        EXPECT_THROW(table.CreateTable(none, schema::FTable(), 1, 1, Member(), &value, 0, true),
                     KOVSimException);
        owner = NewRecord(schema::Field_FTable());
        EXPECT_THROW(table.CreateTable(owner, schema::FTable(), 1, 1, Member(), nullptr, 0, true),
                     KOVSimException);
        EXPECT_EQ(table.NumOfRows(), 0);
        EXPECT_TRUE(owner.GetPosition(Member()).IsNull());
    });
}

TEST_P(FTables, LabelsOfAnyBytesAreTold) {
    KOVString zero;
    zero.BuildFromUTF8("x\0y", 3);
    double value = 5;
    Write([&] {
        owner = NewRecord(schema::Field_FTable());
        KOVBasVector<KOVString> first, second;
        second.PushBack(zero);
        KOVSrvFsmFTable().CreateTable(owner, schema::FTable(), 1, 1, first, second, Member(),
                                      &value, 0, false);
    });
    Reopen();
    KOVSrvFsmFTable const table(Again(owner).GetPosition(Member()));
    EXPECT_TRUE(table.HasColumn(zero));
    EXPECT_FALSE(table.HasColumn("x"));
}

TEST_P(FTables, ReadingOfAClosedDocumentIsRefused) {
    KOVSrvFsmFTable const table = Make(1, {"a"}, {5});
    KOVObjDocument document = Document();
    document.Close();
    EXPECT_THROW(table.NumOfRows(), KOVSimException);
    EXPECT_THROW(table.HasColumn("a"), KOVSimException);
}

TEST_P(FTables, PositionOfAnotherKindHasAnEmptyTable) {
    Write([&] { owner = NewRecord(schema::Field_FTable()); });
    KOVSrvFsmFTable const table(owner);
    EXPECT_EQ(table.NumOfRows(), 0);
    EXPECT_EQ(table.NumberFieldVariables(), 0);
}

TEST_P(FTables, CellsAreFoundByRowAndLabel) {
    KOVSrvFsmFTable const table = Make(2, {"x", "Temperature", "y"}, {1, 2, 3, 4, 5, 6});
    double value = -1;
    EXPECT_TRUE(table.GetColumnData(0, "x", value));
    EXPECT_EQ(value, 1);
    EXPECT_TRUE(table.GetColumnData(1, "Temperature", value));
    EXPECT_EQ(value, 5);
    EXPECT_TRUE(table.GetColumnData(1, "y", value));
    EXPECT_EQ(value, 6);
}

TEST_P(FTables, CellsThatAreNotThereLeaveTheValueAlone) {
    KOVSrvFsmFTable const table = Make(2, {"x", "y"}, {1, 2, 3, 4});
    double value = -1;
    EXPECT_FALSE(table.GetColumnData(2, "x", value));
    EXPECT_FALSE(table.GetColumnData(-1, "x", value));
    EXPECT_FALSE(table.GetColumnData(std::numeric_limits<int>::max(), "x", value));
    EXPECT_FALSE(table.GetColumnData(0, "X", value));
    EXPECT_FALSE(table.GetColumnData(0, "x ", value));
    EXPECT_FALSE(table.GetColumnData(0, "", value));
    EXPECT_EQ(value, -1);
}

TEST_P(FTables, TableWithoutColumnsHasNoCells) {
    Write([&] {
        owner = NewRecord(schema::Field_FTable());
        owner.SetPosition(Member(), owner.CreateFTable(schema::FTable(), 3, {}, {}, nullptr, 0));
    });
    Reopen();
    KOVSrvFsmFTable const table(Again(owner).GetPosition(Member()));
    EXPECT_EQ(table.NumOfRows(), 3);
    double value = -1;
    for (char const* label : {"", "x", "Temperature"}) {
        EXPECT_FALSE(table.GetColumnData(0, label, value));
        EXPECT_FALSE(table.HasColumn(label));
    }
    EXPECT_EQ(value, -1);
}

TEST_P(FTables, OfColumnsWithOneLabelTheFirstIsTaken) {
    KOVSrvFsmFTable const table = Make(1, {"a", "b", "b"}, {1, 2, 3});
    double value = -1;
    EXPECT_TRUE(table.GetColumnData(0, "b", value));
    EXPECT_EQ(value, 2);
}

TEST_P(FTables, EmptyLabelIsThatOfAColumnWithoutText) {
    KOVSrvFsmFTable const table = Make(1, {"a", "", "c"}, {1, 2, 3});
    EXPECT_TRUE(table.HasColumn(KOVString()));
    EXPECT_TRUE(table.HasColumn(""));
    double value = -1;
    EXPECT_TRUE(table.GetColumnData(0, KOVString(), value));
    EXPECT_EQ(value, 2);
    EXPECT_FALSE(Make(1, {"a", "c"}, {1, 2}).HasColumn(KOVString()));
}

TEST_P(FTables, FieldVariablesAreThoseWithTheWholePrefix) {
    EXPECT_EQ(Make(1, {"Temperature", "Field_0", "Field"}, {1, 2, 3}).NumberFieldVariables(), 1);
    EXPECT_EQ(
        Make(1, {"Field_", "Field_x", "field_0", " Field_0", "Field-0", "F"}, {1, 2, 3, 4, 5, 6})
            .NumberFieldVariables(),
        2);
}

TEST_P(FTables, TemperatureIsKnownByItsWholeLabel) {
    EXPECT_FALSE(
        Make(1, {"temperature", "Temperature_0", "Temp"}, {1, 2, 3}).HasColumn("Temperature"));
}

struct Filled {
    Rows rows;
    int rowCount = -5, columnCount = -5;
    bool hasTemperature = false;
    int fieldVariableCount = -5;
    bool hadArray = false;
};

Filled Fill(KOVSrvFsmFTable const& table) {
    Filled filled;
    double** rows = nullptr;
    table.FillPointer(rows, filled.rowCount, filled.columnCount, filled.hasTemperature,
                      filled.fieldVariableCount);
    filled.hadArray = rows != nullptr;
    filled.rows = TakeRows(rows, filled.rowCount, filled.columnCount);
    return filled;
}

TEST_P(FTables, AllRowsAreGivenInTheOrderOfTheTable) {
    Filled const filled =
        Fill(Make(2, {"Field_0", "x", "Temperature", "Field_1"}, {1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(filled.rows, (Rows{{1, 2, 3, 4}, {5, 6, 7, 8}}));
    EXPECT_EQ(filled.rowCount, 2);
    EXPECT_EQ(filled.columnCount, 4);
    EXPECT_TRUE(filled.hasTemperature);
    EXPECT_EQ(filled.fieldVariableCount, 2);
}

TEST_P(FTables, TableWithoutRowsGivesAnArrayAllTheSame) {
    Write([&] {
        owner = NewRecord(schema::Field_FTable());
        owner.SetPosition(
            Member(), owner.CreateFTable(schema::FTable(), 0, {}, Texts({"a", "b"}), nullptr, 0));
    });
    Reopen();
    Filled const filled = Fill(KOVSrvFsmFTable(Again(owner).GetPosition(Member())));
    EXPECT_TRUE(filled.hadArray);
    EXPECT_EQ(filled.rowCount, 0);
    EXPECT_EQ(filled.columnCount, 2);
    EXPECT_FALSE(filled.hasTemperature);
    EXPECT_EQ(filled.fieldVariableCount, 0);
}

TEST_P(FTables, CopiesAreOfTheHandle) {
    KOVSrvFsmFTable const table = Make(1, {"a"}, {5});
    KOVSrvFsmFTable copy;
    copy = table;
    EXPECT_EQ(Fill(copy).rows, (Rows{{5}}));
}

TEST_P(FTables, LargeTableIsReadBack) {
    std::vector<double> values;
    for (int i = 0; i < 20'000 * 3; ++i) values.push_back(0.5 * i);
    Filled const filled = Fill(Make(20'000, {"a", "b", "c"}, values));
    ASSERT_EQ(filled.rowCount, 20'000);
    std::vector<double> flat;
    for (Row const& row : filled.rows) flat.insert(flat.end(), row.begin(), row.end());
    EXPECT_EQ(flat, values);
}

TEST_P(FTables, CreatingNeedsATransaction) {
    Write([&] { owner = NewRecord(schema::Field_FTable()); });
    double value = 1;
    EXPECT_THROW(
        KOVSrvFsmFTable().CreateTable(owner, schema::FTable(), 1, 1, Member(), &value, 0, true),
        KOVSimException);
    EXPECT_TRUE(owner.GetPosition(Member()).IsNull());
}

TEST(FTable, NullHandleFindsAnEmptyTable) {
    KOVSrvFsmFTable const table;
    EXPECT_EQ(table.NumOfRows(), 0);
    EXPECT_EQ(table.NumOfCols(), 0);
    EXPECT_FALSE(table.HasColumn(""));
    EXPECT_EQ(table.NumberFieldVariables(), 0);
    double value = -1;
    EXPECT_FALSE(table.GetColumnData(0, "", value));
    EXPECT_EQ(value, -1);
    Filled const filled = Fill(table);
    EXPECT_TRUE(filled.hadArray);
    EXPECT_EQ(filled.rowCount, 0);
    EXPECT_EQ(filled.columnCount, 0);
}

}  // namespace
}  // namespace kov::test
