#include <gtest/gtest.h>

#include <map>
#include <random>

#include "document/bulk/Extents.h"

using kov::bulk::Extent;
using kov::bulk::Extents;

namespace {

std::map<int, int> RowsOf(Extents const& extents, int members) {
    std::map<int, int> rows;
    extents.ForEach(0, members, [&](int first, int count, int row) {
        for (int i = 0; i < count; ++i)
            if (row >= 0) rows[first + i] = row + i;
    });
    return rows;
}

}  // namespace

TEST(Extents, ConsecutiveAppendsStayOneExtent) {
    Extents extents;
    for (int i = 0; i < 1000; ++i) extents.Append(i * 10, 10);
    EXPECT_EQ(extents.Sorted().size(), 1U);
    EXPECT_EQ(extents.Rows(), 10000);
}

TEST(Extents, MembersWithoutARowAreToldInTheirPlaces) {
    Extents extents;
    extents.Append(5, 3);
    extents.Append(10, 2);
    std::vector<Extent> seen;
    extents.ForEach(4, 9, [&](int first, int count, int row) {
        seen.push_back({first, count, row});
    });
    ASSERT_EQ(seen.size(), 5U);
    int const expected[5][3] = {{4, 1, -1}, {5, 3, 0}, {8, 2, -1}, {10, 2, 3}, {12, 1, -1}};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(seen[i].first, expected[i][0]);
        EXPECT_EQ(seen[i].count, expected[i][1]);
        EXPECT_EQ(seen[i].row, expected[i][2]);
    }
}

TEST(Extents, ManySmallSavesKeepFewChunks) {
    Extents extents;
    std::map<int, std::string> stored;
    for (int i = 0; i < 1000; ++i) {
        extents.Append(i, 1);
        Extents::Chunk const chunk = extents.Save();
        stored[chunk.firstRow] = chunk.runs;
    }
    EXPECT_EQ(stored.size(), 1U);
}

TEST(Extents, AgreeWithAMapInAnyOrderOfArrivalAndAfterLoading) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 50; ++round) {
        constexpr int kMembers = 700;
        Extents extents;
        std::map<int, int> model;
        std::map<int, std::string> stored;
        int rows = 0;
        for (int step = 0; step < 60; ++step) {
            int first = static_cast<int>(random() % kMembers);
            int const wanted = 1 + static_cast<int>(random() % 20);
            int count = 0;
            while (count < wanted && first + count < kMembers && !model.count(first + count))
                ++count;
            for (int i = 0; i < count; ++i) model[first + i] = rows++;
            extents.Append(first, count);
            if (random() % 4 == 0) {
                EXPECT_EQ(RowsOf(extents, kMembers), model);
            }
            if (random() % 3 == 0 && extents.HasUnsaved()) {
                Extents::Chunk const chunk = extents.Save();
                stored[chunk.firstRow] = chunk.runs;
            }
        }
        if (extents.HasUnsaved()) {
            Extents::Chunk const chunk = extents.Save();
            stored[chunk.firstRow] = chunk.runs;
        }
        EXPECT_EQ(RowsOf(extents, kMembers), model);
        Extents loaded;
        for (auto const& [row, runs] : stored) ASSERT_EQ(loaded.Load(row, runs), "");
        EXPECT_EQ(RowsOf(loaded, kMembers), model);
        EXPECT_EQ(loaded.Rows(), rows);
    }
}

TEST(Extents, DamagedChunksAreRefusedWithTheirFault) {
    Extents extents;
    extents.Append(100, 50);
    extents.Append(10, 5);
    std::string const runs = extents.Save().runs;
    EXPECT_EQ(Extents().Load(0, runs), "");
    EXPECT_EQ(Extents().Load(0, runs.substr(0, runs.size() - 1)), "an extent chunk is cut short");
    EXPECT_EQ(Extents().Load(7, runs),
              "an extent chunk does not begin at the row behind the one before it");
    EXPECT_EQ(Extents().Load(std::int64_t{1} << 32, runs),
              "an extent chunk does not begin at the row behind the one before it");
    Extents twice;
    EXPECT_EQ(twice.Load(0, runs), "");
    EXPECT_FALSE(twice.Overlap());
    EXPECT_EQ(twice.Load(55, runs), "");
    EXPECT_TRUE(twice.Overlap());
}
