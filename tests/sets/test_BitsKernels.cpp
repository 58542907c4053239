#include "document/sets/BitsKernels.h"

#include <array>

#include "tests/sets/SetSamples.h"

namespace kov::sets::testing {
namespace {

using Words = std::array<uint64_t, kBitsetWords>;

// From empty to full, through words of none, one or two ones.
Words RandomWords(Random& random, int tenths) {
    Words words{};
    for (uint64_t& word : words) {
        for (int bit = 0; bit < 64; ++bit) {
            if (Pick(random, 1, 100) <= tenths * 10) word |= uint64_t{1} << bit;
        }
    }
    return words;
}

bool Bit(Words const& words, int i) {
    return (words[static_cast<size_t>(i) / 64] >> (i % 64) & 1U) != 0;
}

class EveryDensity : public ::testing::TestWithParam<int> {};

TEST_P(EveryDensity, KernelsAgreeWithBitByBitLoops) {
    RecordProperty("seed", static_cast<int>(Seed()));
    SCOPED_TRACE("KOV_SEED=" + std::to_string(Seed()));
    Random random(Seed() + static_cast<unsigned>(GetParam()));
    Words const a = RandomWords(random, GetParam());
    Words const b = RandomWords(random, Pick(random, 0, 10));
    for (WordOp const op : {WordOp::And, WordOp::Or, WordOp::AndNot}) {
        Words out{};
        int const ones = CombineWords(op, a.data(), b.data(), out.data());
        int expected = 0;
        for (int i = 0; i < 65536; ++i) {
            bool const x = Bit(a, i);
            bool const y = Bit(b, i);
            bool const want = op == WordOp::And ? x && y : op == WordOp::Or ? x || y : x && !y;
            ASSERT_EQ(Bit(out, i), want) << i;
            expected += want ? 1 : 0;
        }
        EXPECT_EQ(ones, expected);
    }

    std::vector<uint16_t> positions;
    int starts = 0;
    for (int i = 0; i < 65536; ++i) {
        if (!Bit(a, i)) continue;
        if (i > 0 && !Bit(a, i - 1)) ++starts;
        positions.push_back(static_cast<uint16_t>(i));
    }
    EXPECT_EQ(CountStarts(a.data(), 0), starts + (Bit(a, 0) ? 1 : 0));
    EXPECT_EQ(CountStarts(a.data(), 1), starts);
    EXPECT_EQ(CountOnes(a.data(), kBitsetWords), static_cast<int>(positions.size()));

    std::vector<uint16_t> listed(positions.size() + kListSlack, 7);
    ListOnes(a.data(), listed.data());
    listed.resize(positions.size());
    EXPECT_EQ(listed, positions);

    for (size_t at = 0; at < positions.size(); at += 1 + positions.size() / 200) {
        int rank = static_cast<int>(at);
        int const word = WordOfRank(a.data(), rank);
        EXPECT_EQ(word, positions[at] / 64);
        EXPECT_EQ(CountOnes(a.data(), word) + rank, static_cast<int>(at));
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, EveryDensity, ::testing::Range(0, 11));

}  // namespace
}  // namespace kov::sets::testing
