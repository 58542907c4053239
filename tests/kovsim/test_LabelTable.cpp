#include "LabelTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <vector>

namespace kov::tool {
namespace {

// A table beside a map that does the same.
class CheckedTable {
  public:
    void Insert(int label, int ordinal) {
        bool const isNew = m_model.emplace(label, ordinal).second;
        ASSERT_EQ(m_table.Insert(label, ordinal), isNew) << "label " << label;
    }
    void Check() {
        ASSERT_EQ(m_table.Size(), static_cast<int>(m_model.size()));
        for (auto const& [label, ordinal] : m_model) {
            ASSERT_EQ(m_table.Find(label), ordinal) << "label " << label;
            for (long long const beside : {label - 1LL, label + 1LL}) {
                if (beside > 2147483647LL || m_model.contains(static_cast<int>(beside))) continue;
                ASSERT_EQ(m_table.Find(static_cast<int>(beside)), LabelTable::None);
            }
        }
    }
    void CheckMoved() {
        KOVBasVector<int> labels;
        KOVBasVector<int> ordinals;
        m_table.MoveTo(labels, ordinals);
        ASSERT_EQ(labels.Size(), static_cast<int>(m_model.size()));
        ASSERT_EQ(ordinals.Size(), labels.Size());
        int i = 0;
        for (auto const& [label, ordinal] : m_model) {
            ASSERT_EQ(labels[i], label);
            ASSERT_EQ(ordinals[i], ordinal);
            ++i;
        }
        EXPECT_EQ(m_table.Size(), 0);
        EXPECT_EQ(m_table.Find(1), LabelTable::None);
    }
    LabelTable const& Table() const { return m_table; }
    std::map<int, int> const& Model() const { return m_model; }

  private:
    LabelTable m_table;
    std::map<int, int> m_model;
};

TEST(LabelTable, HasNothingAtFirst) {
    LabelTable const table;
    EXPECT_EQ(table.Size(), 0);
    for (int const label : {-2147483647 - 1, -1, 0, 1, 4096, 2147483647}) {
        EXPECT_EQ(table.Find(label), LabelTable::None);
    }
}

TEST(LabelTable, FindsTheLabelOfAnOrdinal) {
    LabelTable table;
    for (int label = 1; label <= 5000; ++label) ASSERT_TRUE(table.Insert(label, label + 99));
    ASSERT_TRUE(table.Insert(2'000'000'007, 17));
    ASSERT_TRUE(table.Insert(2'000'000'003, 16));
    for (int i = 0; i < 4000; ++i) ASSERT_TRUE(table.Insert(9'000'000 + i, 100'000 - i));
    EXPECT_EQ(table.LabelOf(100), 1);
    EXPECT_EQ(table.LabelOf(5099), 5000);
    EXPECT_EQ(table.LabelOf(17), 2'000'000'007);
    EXPECT_EQ(table.LabelOf(16), 2'000'000'003);
    EXPECT_EQ(table.LabelOf(100'000 - 3999), 9'003'999);
    EXPECT_EQ(table.LabelOf(3), 0);
}

TEST(LabelTable, RefusesALabelThatIsThere) {
    CheckedTable table;
    for (int const label : {5, 6, 7, 5, 7, 100, 100, 2147483647, 2147483647}) {
        table.Insert(label, label % 1000);
    }
    table.Check();
}

TEST(LabelTable, KeepsDenseLabelsAcrossPages) {
    CheckedTable table;
    for (int i = 0; i < 20000; ++i) table.Insert(i + 4000, i);
    table.Check();
    table.CheckMoved();
}

TEST(LabelTable, KeepsDescendingLabels) {
    CheckedTable table;
    for (int i = 0; i < 10000; ++i) table.Insert(10000 - i, i);
    table.Check();
    table.CheckMoved();
}

TEST(LabelTable, GrowsARunDownwards) {
    CheckedTable table;
    for (int i = 0; i < 100; ++i) table.Insert(200 - i, 1000 - i);
    table.Check();
}

TEST(LabelTable, AFullPageTakesNoSecondLabel) {
    CheckedTable table;
    for (int i = 0; i < 4096; ++i) table.Insert(4096 + i, i);
    for (int i = 0; i < 4096; i += 37) table.Insert(4096 + i, i);
    table.Insert(4095, 9000);
    table.Insert(8192, 9001);
    table.Check();
}

class Strided : public ::testing::TestWithParam<int> {};

TEST_P(Strided, LabelsWithHolesAreKept) {
    CheckedTable table;
    int const stride = GetParam();
    for (int i = 0; i < 12000; ++i) table.Insert(1 + i * stride, i);
    table.Check();
    table.CheckMoved();
}
INSTANTIATE_TEST_SUITE_P(Strides, Strided, ::testing::Values(1, 2, 3, 10, 1000, 170000));

class RandomLabels : public ::testing::TestWithParam<int> {};

TEST_P(RandomLabels, AgreeWithAMap) {
    unsigned const seed = 7u + static_cast<unsigned>(GetParam());
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    int const range = GetParam();
    CheckedTable table;
    int ordinal = 0;
    for (int round = 0; round < 300; ++round) {
        int label = 1 + static_cast<int>(random() % static_cast<unsigned>(range));
        int const run = static_cast<int>(random() % 200);
        for (int i = 0; i < run && label <= 2147483647 - i; ++i) {
            table.Insert(label + i, ordinal++);
        }
    }
    table.Check();
    table.CheckMoved();
}
INSTANTIATE_TEST_SUITE_P(Ranges, RandomLabels,
                         ::testing::Values(300, 5000, 100000, 10000000, 2147483600));

// What ForRange gives, written out, against asking for each label.
void ExpectRange(CheckedTable const& table, int first, int last, int stride) {
    std::vector<int> expected;
    int unknown = 0;
    for (long long label = first; label <= last && unknown == 0; label += stride) {
        auto const found = table.Model().find(static_cast<int>(label));
        if (found == table.Model().end()) {
            unknown = static_cast<int>(label);
        } else {
            expected.push_back(found->second);
        }
    }
    std::vector<int> given;
    int const answer = table.Table().ForRange(first, last, stride, [&](int from, int count) {
        for (int i = 0; i < count; ++i) given.push_back(from + i * stride);
    });
    EXPECT_EQ(answer, unknown) << first << " " << last << " " << stride;
    EXPECT_EQ(given, expected) << first << " " << last << " " << stride;
}

TEST(LabelTable, GivesRangesOfLabels) {
    CheckedTable table;
    int ordinal = 0;
    for (int label = 1; label <= 9000; ++label) table.Insert(label, ordinal++);
    for (int label = 10000; label <= 12000; label += 3) table.Insert(label, ordinal++);
    for (int label = 20000; label > 13000; --label) table.Insert(label, ordinal++);
    table.Insert(2147483647, ordinal++);
    for (int const stride : {1, 2, 3, 7, 5000}) {
        ExpectRange(table, 1, 9000, stride);
        ExpectRange(table, 4095, 4097, stride);
        ExpectRange(table, 8000, 9001, stride);
        ExpectRange(table, 10000, 12000, stride);
        ExpectRange(table, 13001, 20000, stride);
        ExpectRange(table, 2147483647, 2147483647, stride);
        ExpectRange(table, 2147483640, 2147483647, stride);
        ExpectRange(table, 5, 4, stride);
    }
}

TEST(LabelTable, ADenseRangeIsGivenInAFewStretches) {
    LabelTable table;
    for (int i = 0; i < 1000000; ++i) table.Insert(i + 1, i);
    int stretches = 0;
    EXPECT_EQ(table.ForRange(1, 1000000, 1, [&](int, int) { ++stretches; }), 0);
    EXPECT_LT(stretches, 300);
}

}  // namespace
}  // namespace kov::tool
