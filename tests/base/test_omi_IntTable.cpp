#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <map>
#include <random>

#include "KOVBasOmiDefaultAllocator.h"
#include "omi_IntTable.h"

namespace {

using Table = omi_IntTable<int, KOVBasOmiDefaultAllocator>;
using UintTable = omi_UintTable<int, KOVBasOmiDefaultAllocator>;

}  // namespace

TEST(omi_IntTable, ANewOneFindsNothing) {
    Table const table;
    EXPECT_EQ(table.Find(0), nullptr);
    EXPECT_EQ(table.Find(-1), nullptr);
}

TEST(omi_IntTable, AKeyThatExistsKeepsItsValue) {
    Table table;
    EXPECT_TRUE(table.Insert(4, 1));
    EXPECT_FALSE(table.Insert(4, 2));
    EXPECT_EQ(*table.Find(4), 1);
}

TEST(omi_IntTable, AKeyAndItsNegativeAreTwoKeys) {
    Table table;
    EXPECT_TRUE(table.Insert(4, 1));
    EXPECT_TRUE(table.Insert(-4, 2));
    EXPECT_EQ(*table.Find(4), 1);
    EXPECT_EQ(*table.Find(-4), 2);
}

TEST(omi_IntTable, TheOutermostIntsAreKeys) {
    Table table;
    for (int key : {INT_MAX, INT_MIN, -INT_MAX, 0, -1, 1}) EXPECT_TRUE(table.Insert(key, key));
    for (int key : {INT_MAX, INT_MIN, -INT_MAX, 0, -1, 1}) {
        ASSERT_NE(table.Find(key), nullptr);
        EXPECT_EQ(*table.Find(key), key);
    }
    EXPECT_EQ(table.Find(INT_MAX - 1), nullptr);
    EXPECT_EQ(table.Find(INT_MIN + 2), nullptr);
}

TEST(omi_UintTable, TheLargestKeyIsAKeyAmongHashedOnes) {
    UintTable table;
    for (unsigned i = 0; i < 1000; ++i) table.Insert(i * 7919U, 1);
    EXPECT_EQ(table.Find(0xFFFFFFFFU), nullptr);
    EXPECT_TRUE(table.Insert(0xFFFFFFFFU, 5));
    EXPECT_FALSE(table.Insert(0xFFFFFFFFU, 6));
    EXPECT_EQ(*table.Find(0xFFFFFFFFU), 5);
    EXPECT_TRUE(table.Insert(0xFFFFFFFEU, 7));
    EXPECT_EQ(*table.Find(0xFFFFFFFEU), 7);
    EXPECT_EQ(table.Size(), 1002);
}

TEST(omi_UintTable, AKeyHashedEarlierIsNotTakenAgainByARunThatReachesIt) {
    UintTable table;
    for (unsigned i = 0; i < 200; ++i) table.Insert(i * 10, 1);
    unsigned const last = 199 * 10;
    for (unsigned i = 0; i <= last; ++i) EXPECT_EQ(table.Insert(i, 2), i % 10 != 0) << i;
    for (unsigned i = 0; i <= last; ++i) ASSERT_EQ(*table.Find(i), i % 10 == 0 ? 1 : 2) << i;
}

namespace {

/// Counts what is allocated through it.
struct CountingAllocator {
    static inline std::size_t bytes = 0;
    static void* Allocate(std::size_t size) {
        bytes += size;
        return mem_OperatorNewThrow(size);
    }
    static void Free(void* pointer) { mem_Free(pointer); }
};

}  // namespace

TEST(omi_UintTable, AMillionConsecutiveKeysWithOneValueTakeNextToNoMemory) {
    CountingAllocator::bytes = 0;
    omi_UintTable<int, CountingAllocator> table;
    for (unsigned i = 0; i < 1000000; ++i) table.Insert(i + 2, 3);
    EXPECT_LT(CountingAllocator::bytes, 4096U);
    EXPECT_EQ(*table.Find(1000001), 3);
    EXPECT_EQ(table.Find(1000002), nullptr);
    EXPECT_EQ(table.Find(1), nullptr);
}

TEST(omi_UintTable, AnOddValueAmongEqualOnesDoesNotMakeTheRestLarge) {
    CountingAllocator::bytes = 0;
    omi_UintTable<int, CountingAllocator> table;
    for (unsigned i = 0; i < 1000000; ++i) table.Insert(i, i == 1000 || i == 1002 ? 1 : 3);
    EXPECT_LT(CountingAllocator::bytes, 8192U);
    EXPECT_EQ(*table.Find(999), 3);
    EXPECT_EQ(*table.Find(1000), 1);
    EXPECT_EQ(*table.Find(1001), 3);
    EXPECT_EQ(*table.Find(1002), 1);
    EXPECT_EQ(*table.Find(999999), 3);
}

TEST(omi_IntTable, HoldsWhatAMapHoldsUnderRandomInsertions) {
    unsigned const seed = std::random_device()();
    std::printf("seed %u\n", seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 60; ++round) {
        Table table;
        std::map<int, int> model;
        int next = static_cast<int>(random() % 100) - 50;
        unsigned const scatter = random() % 4;
        int const spread = 1 << (3 + random() % 14);
        for (int step = 0; step < 3000; ++step) {
            int key = next++;
            if (scatter != 0 && random() % 40 < scatter * scatter) {
                key = static_cast<int>(random() % static_cast<unsigned>(spread)) - spread / 2;
                if (random() % 3 == 0) next = key + 1;
            }
            int const value = random() % 8 == 0 ? step : 3;
            ASSERT_EQ(table.Insert(key, value), model.emplace(key, value).second);
        }
        for (int key = -spread; key <= spread + 3000; ++key) {
            auto const expected = model.find(key);
            int const* const found = table.Find(key);
            ASSERT_EQ(found != nullptr, expected != model.end()) << key;
            if (found) {
                ASSERT_EQ(*found, expected->second) << key;
            }
        }
    }
}
