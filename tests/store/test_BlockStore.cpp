#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "document/store/PageSums.h"
#include "store/Script.h"
#include "store/Throws.h"
#include "support/TempFolder.h"

namespace kov::test {
namespace {

using store::Block;
using store::BlockRead;
using store::Context;
using testing::HasSubstr;

std::vector<char> Noise(std::size_t bytes, std::uint64_t seed) {
    std::vector<char> noise(bytes);
    std::mt19937_64 random(seed);
    for (char& c : noise) c = static_cast<char>(random());
    return noise;
}

std::int64_t Total(std::vector<Block> const& blocks) {
    std::int64_t total = 0;
    for (Block const& block : blocks) total += block.bytes;
    return total;
}

TEST(BlockStore, BlocksAreAboutAMebibyteAndWholeRows) {
    auto const context = Context::CreateInMemory({});
    context->Begin();
    for (std::size_t const rows : {1u, 2u, 1000u, 43690u, 43691u, 100000u, 1000000u}) {
        std::vector<char> const data(rows * 24);
        auto const blocks = context->Blocks().Append(data.data(), data.size(), 24);
        EXPECT_EQ(Total(blocks), static_cast<std::int64_t>(data.size()));
        for (Block const& block : blocks) {
            EXPECT_EQ(block.bytes % 24, 0);
            EXPECT_LE(block.bytes, 3 << 19);
            if (blocks.size() > 1) {
                EXPECT_GE(block.bytes, 1 << 19);
            }
            EXPECT_EQ(block.sums.size(), static_cast<std::size_t>(block.bytes + 65535) / 65536);
        }
    }
}

TEST(BlockStore, ARowLargerThanABlockIsOneBlock) {
    auto const context = Context::CreateInMemory({});
    context->Begin();
    std::vector<char> const data = Noise(3 * 5000000, 1);
    auto const blocks = context->Blocks().Append(data.data(), data.size(), 5000000);
    ASSERT_EQ(blocks.size(), 3u);
    std::vector<char> out(5000000);
    context->Blocks().Read({1, 1}, {{&blocks[1], 0, 5000000, out.data()}});
    EXPECT_TRUE(std::equal(out.begin(), out.end(), data.begin() + 5000000));
}

TEST(BlockStore, NothingAppendsNothing) {
    auto const context = Context::CreateInMemory({});
    context->Begin();
    EXPECT_TRUE(context->Blocks().Append(nullptr, 0, 8).empty());
    EXPECT_THAT(Thrown([&] { context->Blocks().Append("123456789", 9, 8); }),
                HasSubstr("no whole number of rows"));
}

TEST(BlockStore, SumsAreOfPagesFromTheBlocksStart) {
    auto const context = Context::CreateInMemory({});
    context->Begin();
    std::vector<char> const data = Noise(150000, 2);
    auto const blocks = context->Blocks().Append(data.data(), data.size(), 1);
    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_EQ(blocks[0].sums,
              (std::vector<std::uint64_t>{store::Sum(data.data(), 65536),
                                          store::Sum(data.data() + 65536, 65536),
                                          store::Sum(data.data() + 131072, 150000 - 131072)}));
}

// Random appends, commits, rollbacks and reads against plain arrays.
void CompareWithArrays(std::string const& path, std::uint64_t seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    auto context = path.empty() ? Context::CreateInMemory({}) : Context::Create(path, {});
    struct Kept {
        Block block;
        std::vector<char> data;
    };
    std::vector<Kept> kept;
    context->Blocks().SetSegmentLimit(3000000);
    for (int round = 0; round < 12; ++round) {
        std::size_t const before = kept.size();
        context->Begin();
        for (int append = static_cast<int>(random() % 30); append > 0; --append) {
            std::size_t const bytes = random() % 8 ? random() % 3000 + 1 : random() % 900000 + 1;
            std::vector<char> data = Noise(bytes, random());
            std::size_t at = 0;
            for (Block const& block : context->Blocks().Append(data.data(), data.size(), 1)) {
                auto const from = data.begin() + static_cast<std::ptrdiff_t>(at);
                kept.push_back({block, {from, from + block.bytes}});
                at += static_cast<std::size_t>(block.bytes);
            }
            if (kept.empty() || random() % 3) continue;
            std::vector<BlockRead> reads;
            std::vector<char> out(10000000);
            std::size_t used = 0;
            std::vector<std::pair<Kept const*, BlockRead>> wanted;
            std::size_t const first = random() % kept.size();
            bool const dense = random() % 4 == 0;
            for (std::size_t k = first; k < kept.size() && k < first + 9; ++k) {
                Block const& block = kept[k].block;
                for (int stretch = dense ? 200 : 2; stretch > 0; --stretch) {
                    std::int64_t const from = static_cast<std::int64_t>(
                        random() % static_cast<std::uint64_t>(block.bytes));
                    std::int64_t const length =
                        dense ? std::min<std::int64_t>(8, block.bytes - from)
                              : static_cast<std::int64_t>(
                                    random() % static_cast<std::uint64_t>(block.bytes - from + 1));
                    if (used + static_cast<std::size_t>(length) > out.size()) continue;
                    wanted.push_back({&kept[k], {&block, from, length, out.data() + used}});
                    used += static_cast<std::size_t>(length);
                }
            }
            std::sort(wanted.begin(), wanted.end(), [](auto const& a, auto const& b) {
                return std::tie(a.first, a.second.offset) < std::tie(b.first, b.second.offset);
            });
            for (auto const& w : wanted) reads.push_back(w.second);
            context->Blocks().Read({1, 1}, reads);
            for (auto const& [k, read] : wanted) {
                ASSERT_TRUE(std::equal(static_cast<char*>(read.out),
                                       static_cast<char*>(read.out) + read.bytes,
                                       k->data.begin() + read.offset));
            }
        }
        if (random() % 3) {
            context->Commit();
        } else {
            context->Rollback();
            kept.resize(before);
        }
        if (!path.empty() && random() % 4 == 0) {
            context->Close();
            context = Context::Open(path, Context::Access::ReadWrite);
            context->Blocks().SetSegmentLimit(3000000);
        }
        for (Kept const& k : kept) {
            std::vector<char> out(k.data.size());
            context->Blocks().Read({1, 1}, {{&k.block, 0, k.block.bytes, out.data()}});
            ASSERT_EQ(out, k.data);
            ASSERT_EQ(context->Blocks().Check(k.block), "");
        }
    }
    EXPECT_GT(context->Blocks().Segments(), 0);
}

TEST(BlockStore, ReadsWhatWasAppendedOnDisk) {
    for (std::uint64_t seed = 1; seed <= 6; ++seed) {
        TempFolder folder;
        CompareWithArrays(folder / "a.ksd", seed);
    }
}

TEST(BlockStore, ReadsWhatWasAppendedInMemory) {
    for (std::uint64_t seed = 11; seed <= 16; ++seed) CompareWithArrays("", seed);
}

TEST(BlockStore, SmallAppendsAreWrittenTogether) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto const context = Context::Create(path, {});
    context->Begin();
    std::vector<char> const data = Noise(1000, 3);
    std::vector<Block> blocks;
    for (int i = 0; i < 100; ++i)
        blocks.push_back(context->Blocks().Append(data.data(), data.size(), 8)[0]);
    EXPECT_EQ(std::filesystem::file_size(path + "/bulk/000001.seg"), 64u);
    std::vector<char> out(100000);
    std::vector<BlockRead> reads;
    for (std::size_t i = 0; i < 100; ++i)
        reads.push_back({&blocks[i], 0, 1000, out.data() + i * 1000});
    context->Blocks().Read({1, 1}, reads);
    for (std::size_t i = 0; i < 100; ++i)
        EXPECT_TRUE(std::equal(data.begin(), data.end(),
                               out.begin() + static_cast<std::ptrdiff_t>(i) * 1000));
    context->Commit();
    EXPECT_EQ(std::filesystem::file_size(path + "/bulk/000001.seg"), 100064u);
}

TEST(BlockStore, AStretchOutsideItsBlockIsRefused) {
    auto const context = Context::CreateInMemory({});
    context->Begin();
    Block block = context->Blocks().Append("12345678", 8, 8)[0];
    char out[16];
    EXPECT_THAT(Thrown([&] {
                    context->Blocks().Read({1, 1}, {{&block, 4, 5, out}});
                }),
                HasSubstr("outside the block"));
    EXPECT_THAT(Thrown([&] {
                    context->Blocks().Read({1, 1}, {{&block, -1, 2, out}});
                }),
                HasSubstr("outside the block"));
    Block far = block;
    far.offset = 1000;
    EXPECT_THAT(Thrown([&] {
                    context->Blocks().Read({1, 1}, {{&far, 0, 8, out}});
                }),
                HasSubstr("outside its segment"));
    far = block;
    far.segment = 7;
    EXPECT_THAT(Thrown([&] {
                    context->Blocks().Read({1, 1}, {{&far, 0, 8, out}});
                }),
                HasSubstr("segment 7"));
    far = block;
    far.sums.clear();
    EXPECT_THAT(Thrown([&] {
                    context->Blocks().Read({1, 1}, {{&far, 0, 8, out}});
                }),
                HasSubstr("outside its segment"));
}

TEST(BlockStore, ADroppedOffsetIsCheckedAnewWhenItIsUsedAgain) {
    auto const context = Context::CreateInMemory({});
    std::vector<char> out(100000);
    context->Begin();
    std::vector<char> const first = Noise(100000, 4);
    Block const dropped = context->Blocks().Append(first.data(), first.size(), 1)[0];
    context->Blocks().Read({1, 1}, {{&dropped, 0, dropped.bytes, out.data()}});
    context->Rollback();
    context->Begin();
    std::vector<char> const second = Noise(100000, 5);
    Block const kept = context->Blocks().Append(second.data(), second.size(), 1)[0];
    EXPECT_EQ(kept.offset, dropped.offset);
    EXPECT_THAT(Thrown([&] {
                    context->Blocks().Read({1, 1}, {{&dropped, 0, dropped.bytes, out.data()}});
                }),
                HasSubstr("checksum"));
    context->Blocks().Read({1, 1}, {{&kept, 0, kept.bytes, out.data()}});
    EXPECT_EQ(out, second);
}

}  // namespace
}  // namespace kov::test
