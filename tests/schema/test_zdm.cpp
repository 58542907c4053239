#include "zdm.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <set>

#include "KOVSimSchema.h"
#include "agreed_pairs.h"

namespace {

// Filled before main, as tables of result variables are.
int const taskModesAtLoad = zdm_CoreFragmentTypeIndex(59, 66);
int const fieldMeshedAtLoad = schema::Field_Meshed();

TEST(CoreFragmentTypeIndex, LoadTimeAnswerIsTheLaterAnswer) {
    EXPECT_EQ(taskModesAtLoad, schema::Task_modes());
    EXPECT_EQ(fieldMeshedAtLoad, zdm_CoreFragmentTypeIndex(14, 65));
}

TEST(CoreFragmentTypeIndex, OrderOfCallsDoesNotMatter) {
    int const first = zdm_CoreFragmentTypeIndex(14, 74);
    for (int fragment = 100; fragment >= 0; --fragment) zdm_CoreFragmentTypeIndex(fragment, 74);
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(14, 74), first);
}

TEST(CoreFragmentTypeIndex, StoredNumbersStayAsTheyAre) {
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(0, 0), 4096);
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(2, 0), 12288);
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(59, 67), 245827);
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(4095, 4095), 16781311);
}

TEST(CoreFragmentTypeIndex, EveryPairOfLowFragmentsIsUnique) {
    std::set<int> seen;
    for (int fragment = 0; fragment < 80; ++fragment) {
        for (int member = 0; member < 4096; ++member) {
            int const index = zdm_CoreFragmentTypeIndex(fragment, member);
            ASSERT_GE(index, 4096) << fragment << ", " << member;
            ASSERT_TRUE(seen.insert(index).second) << fragment << ", " << member;
        }
    }
}

TEST(CoreFragmentTypeIndex, EveryIndexGivesItsPairBack) {
    unsigned const seed = 20;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> number(0, 4095);
    for (int i = 0; i < 10000; ++i) {
        kov::schema::Pair const pair{number(random), number(random)};
        int const index = zdm_CoreFragmentTypeIndex(pair.fragment, pair.member);
        ASSERT_EQ(kov::schema::PairOf(index), pair) << pair.fragment << ", " << pair.member;
    }
}

TEST(CoreFragmentTypeIndex, NumbersOutsideTheRangeNameNoPair) {
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(-1, 0), -1);
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(0, -1), -1);
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(4096, 0), -1);
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(0, 4096), -1);
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(INT_MAX, INT_MAX), -1);
    EXPECT_EQ(zdm_CoreFragmentTypeIndex(INT_MIN, INT_MIN), -1);
}

TEST(CoreFragmentTypeIndex, NumbersThatAreNoIndexHaveNoPair) {
    kov::schema::Pair const none{-1, -1};
    EXPECT_EQ(kov::schema::PairOf(-1), none);
    EXPECT_EQ(kov::schema::PairOf(0), none);
    EXPECT_EQ(kov::schema::PairOf(4095), none);
    EXPECT_EQ(kov::schema::PairOf(16781312), none);
    EXPECT_EQ(kov::schema::PairOf(INT_MAX), none);
}

}  // namespace
