#include "LabelRanges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace kov::tool {
namespace {

std::vector<LabelRange> Folded(std::vector<int> const& labels) {
    std::vector<LabelRange> ranges;
    auto const keep = [&ranges](LabelRange const& range) { ranges.push_back(range); };
    RangeFolder folder(keep);
    for (int const label : labels) folder.Add(label);
    folder.Finish();
    return ranges;
}

std::string Text(std::vector<int> const& labels) {
    std::string text;
    for (LabelRange const& range : Folded(labels)) {
        text += (text.empty() ? "" : ", ") + ToText(range);
    }
    return text;
}

TEST(LabelRanges, NothingIsNoRange) { EXPECT_EQ(Text({}), ""); }

TEST(LabelRanges, NeighboursAreARangeFromTwoOn) {
    EXPECT_EQ(Text({7}), "7");
    EXPECT_EQ(Text({7, 8}), "7-8");
    EXPECT_EQ(Text({1, 2, 3, 9, 11, 12}), "1-3, 9, 11-12");
}

TEST(LabelRanges, EqualGapsAreARangeFromFourOn) {
    EXPECT_EQ(Text({30, 32, 34}), "30, 32, 34");
    EXPECT_EQ(Text({30, 32, 34, 36}), "30-36 step 2");
    EXPECT_EQ(Text({1, 101, 201, 301, 302}), "1-301 step 100, 302");
}

TEST(LabelRanges, AShortRunGivesItsLastLabelsToTheNextRange) {
    EXPECT_EQ(Text({1, 3, 5, 6, 7, 8}), "1, 3, 5-8");
    EXPECT_EQ(Text({1, 5, 7, 9, 11}), "1, 5-11 step 2");
    EXPECT_EQ(Text({1, 3, 5, 8, 11, 14}), "1, 3, 5-14 step 3");
}

TEST(LabelRanges, GapsMayReachOverTheWholeRangeOfLabels) {
    int const lowest = std::numeric_limits<int>::min();
    int const highest = std::numeric_limits<int>::max();
    EXPECT_EQ(Text({lowest, highest}), "-2147483648, 2147483647");
    EXPECT_EQ(Text({lowest, -1000000000, 0, highest}), "-2147483648, -1000000000, 0, 2147483647");
    EXPECT_EQ(Text({-2, -1, 0, 1}), "-2-1");
}

TEST(LabelRanges, HoldTheSameLabelsWhateverTheyAre) {
    unsigned const seed = std::random_device{}();
    std::mt19937 random(seed);
    for (int round = 0; round < 2000; ++round) {
        std::vector<int> labels;
        int label = static_cast<int>(random() % 100) - 50;
        int const widest = 1 + static_cast<int>(random() % 4);
        for (auto n = random() % 60; n > 0; --n) {
            label += 1 + static_cast<int>(random() % static_cast<unsigned>(widest));
            labels.push_back(label);
        }
        std::vector<int> unfolded;
        std::vector<LabelRange> const ranges = Folded(labels);
        for (LabelRange const& range : ranges) {
            ASSERT_GE(range.step, 1);
            ASSERT_TRUE(range.step == 1 || range.last - range.first >= 3 * range.step);
            for (long long at = range.first; at <= range.last; at += range.step) {
                unfolded.push_back(static_cast<int>(at));
            }
            ASSERT_EQ(unfolded.back(), range.last);
        }
        ASSERT_EQ(unfolded, labels) << "seed " << seed << ", round " << round;
    }
}

}  // namespace
}  // namespace kov::tool
