// How table fields become values of layers by element.
#include <vector>

#include "services/ShellFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using Values = std::vector<std::pair<int, double>>;

class BulkFieldData : public ShellTest {
  protected:
    static constexpr double kFill = -7.5;
    KOVSimPosition Field(std::vector<int> const& members, std::vector<double> const& values,
                         int columns = 1) {
        KOVSimPosition field;
        InTransaction([&] { field = mesh.NewField(members, values, kFill, columns); });
        return field;
    }
    KOVSimPosition Set(std::vector<int> const& members) {
        KOVSimPosition set;
        InTransaction([&] { set = mesh.ElementSet(members); });
        return set;
    }
    static Values Read(KOVSimPosition const& set, KOVSimPosition const& field,
                       Values const& present = {}) {
        KOVBasMap<int, double> map;
        for (auto const& [element, value] : present) map.InsertUnique(element, value);
        Bulk().ReadFieldData(set, field, map);
        Values values;
        for (auto const& [element, value] : map) values.emplace_back(element, value);
        return values;
    }
    // The rows of distributed angles after a write.
    Rows Written() {
        WriteAndReopen();
        return mesh.StoredRows(schema::BulkShellLayers_distAngles());
    }
};
INSTANTIATE_TEST_SUITE_P(Media, BulkFieldData, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(BulkFieldData, EachElementOfTheSetGetsItsValueOrTheFirstOfTheTable) {
    KOVSimPosition const field = Field({2, 4, 9}, {20, 40, 90});
    EXPECT_EQ(Read(Set({1, 2, 4}), field), (Values{{1, kFill}, {2, 20}, {4, 40}}));
}

TEST_P(BulkFieldData, ElementsThatHaveAValueKeepIt) {
    KOVSimPosition const field = Field({2, 4}, {20, 40});
    EXPECT_EQ(Read(Set({2, 4}), field, {{2, 1}, {3, 1}}), (Values{{2, 1}, {3, 1}, {4, 40}}));
}

TEST_P(BulkFieldData, AFieldWithoutTableGivesNothing) {
    KOVSimPosition const field = Field({2}, {20});
    InTransaction([&] { field.SetPosition(schema::FieldFTable_table(), KOVSimPosition()); });
    EXPECT_EQ(Read(Set({2}), field), Values{});
}

TEST_P(BulkFieldData, AFieldWithATableButWithoutDistributionGivesNothing) {
    KOVSimPosition field;
    InTransaction([&] { field = mesh.NewTableField(kFill); });
    EXPECT_EQ(Read(Set({2}), field), Values{});
}

TEST_P(BulkFieldData, OnlyTheFirstDrawerIsLookedAt) {
    KOVSimPosition const field = Field({2}, {20});
    InTransaction([&] {
        mesh.AddFieldDrawer(field.GetPosition(schema::FieldFTable_distribution()).GetDistribution(),
                            {2, 3}, {21, 31});
    });
    EXPECT_EQ(Read(Set({2, 3}), field), (Values{{2, 20}, {3, kFill}}));
}

TEST_P(BulkFieldData, WithMoreColumnsTheNumbersAreTakenInTheOrderOfTheBuffer) {
    KOVSimPosition const field = Field({1, 2, 3}, {10, 11, 20, 21, 30, 31}, 2);
    EXPECT_EQ(Read(Set({1, 2, 3}), field), (Values{{1, 10}, {2, 11}, {3, 20}}));
}

TEST_P(BulkFieldData, ADrawerWithoutColumnsGivesTheFirstValueOfTheTable) {
    KOVSimPosition const field = Field({1, 2}, {}, 0);
    EXPECT_EQ(Read(Set({1, 2}), field), (Values{{1, kFill}, {2, kFill}}));
}

TEST_P(BulkFieldData, AnOrderedSetGivesEachElementItsOwnValue) {
    KOVSimPosition const field = Field({1, 2, 3}, {10, 20, 30});
    EXPECT_EQ(Read(mesh.Ordered(mesh.elements, {3, 1, 2}), field),
              (Values{{1, 10}, {2, 20}, {3, 30}}));
    InTransaction([&] {
        KOVSimCSet ordered = mesh.elements.CreateVolatileOrderedCSet(std::vector{3, 1}.data(), 2);
        Bulk().AppendDistAngle(0, KOVSimPosition(ordered.RegisterWithCollection()), field);
    });
    EXPECT_THAT(Written(), ElementsAre(Row{{0}, {1, 3}, {10, 30}}));
}

TEST_P(BulkFieldData, AnEmptySetGivesNothing) {
    EXPECT_EQ(Read(Set({}), Field({1}, {10})), Values{});
}

TEST_P(BulkFieldData, WhatIsReadIsWhatStandsThereAtTheTimeOfWriting) {
    KOVSimPosition const field = Field({2}, {20});
    Bulk().AppendDistAngle(0, Set({2}), field);
    InTransaction([&] {
        KOVSimDistributionID const other = mesh.NewFieldDistribution();
        mesh.AddFieldDrawer(other, {2}, {22});
        field.SetPosition(schema::FieldFTable_distribution(), other);
    });
    EXPECT_THAT(Written(), ElementsAre(Row{{0}, {2}, {22}}));
}

TEST_P(BulkFieldData, ThePairThatWasAppendedFirstWins) {
    KOVSimPosition const one = Field({5, 6}, {50, 60}), two = Field({1, 5}, {11, 55});
    Bulk().AppendDistAngle(0, Set({5, 6}), one);
    Bulk().AppendDistAngle(0, Set({1, 5}), two);
    Bulk().AppendDistAngle(1, Set({1, 5}), two);
    Bulk().AppendDistAngle(1, Set({5, 6}), one);
    // A fill value is a value like any other.
    Bulk().AppendDistAngle(2, Set({1, 5}), one);
    Bulk().AppendDistAngle(2, Set({1, 5}), two);
    EXPECT_THAT(Written(),
                ElementsAre(Row{{0}, {1, 5, 6}, {11, 50, 60}}, Row{{1}, {1, 5, 6}, {11, 55, 60}},
                            Row{{2}, {1, 5}, {kFill, 50}}));
}

TEST_P(BulkFieldData, PairsWithANullPositionArePassedOver) {
    KOVSimPosition const field = Field({5}, {50}), set = Set({5});
    Bulk().AppendDistAngle(0, KOVSimPosition(), field);
    Bulk().AppendDistAngle(0, set, KOVSimPosition());
    Bulk().AppendDistAngle(0, set, field);
    EXPECT_THAT(Written(), ElementsAre(Row{{0}, {5}, {50}}));
}

TEST_P(BulkFieldData, ALayerWithoutAnyValueIsADrawerWithoutElements) {
    KOVSimPosition field;
    InTransaction([&] { field = mesh.NewTableField(kFill); });
    Bulk().AppendDistAngle(1, KOVSimPosition(), field);
    Bulk().AppendDistAngle(3, Set({5}), field);
    EXPECT_THAT(Written(), ElementsAre(Row{{1}, {}, {}}, Row{{3}, {}, {}}));
    auto const drawers =
        MeshDocument::Drawers(KOVSimDistribution(mesh.Store(schema::BulkShellLayers_distAngles())));
    EXPECT_THAT(MeshDocument::ChunkSizes(drawers.ConstGet(0)), ElementsAre(1, 0));
}

TEST_P(BulkFieldData, SectionsOfOneLayerShareItsDrawer) {
    KOVSimPosition const low = Field(Range(0, 10), std::vector<double>(10, 1)),
                         high = Field(Range(50, 10), std::vector<double>(10, 2));
    Bulk().AppendDistAngle(0, Set(Range(50, 10)), high);
    Bulk().AppendDistAngle(0, Set(Range(0, 10)), low);
    std::vector<int> members = Range(0, 10);
    for (int member : Range(50, 10)) members.push_back(member);
    std::vector<double> values(10, 1);
    values.resize(20, 2);
    EXPECT_THAT(Written(), ElementsAre(Row{{0}, members, values}));
}

}  // namespace
}  // namespace kov::test
