// Rows of one drawer against a plain array: appends and overwrites of all sizes, gathered and
// flushed, over transactions that commit or are dropped, read whole and in stretches.
#include "document/bulk/RowBlocks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "KOVSimException.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"
#include "support/TempFolder.h"

using kov::bulk::RowBlocks;
using kov::bulk::RowsRead;
using kov::store::Context;
using kov::store::Statement;

namespace {

constexpr kov::store::BlockOwner Owner{1, 1};

class Rows {
  public:
    Rows(Context& context, std::int64_t rowBytes, int rows)
        : m_blocks(context, Owner, rowBytes, rows),
          m_words(static_cast<std::size_t>(rowBytes / 8)) {}

    RowBlocks& Blocks() { return m_blocks; }
    void Append(std::vector<std::uint64_t> const& values) {
        m_blocks.Append(Bytes(values).data(), static_cast<int>(values.size()));
    }
    void Overwrite(int row, std::vector<std::uint64_t> const& values) {
        m_blocks.Overwrite(row, Bytes(values).data(), static_cast<int>(values.size()));
    }
    /// Each row is filled with one value: that value, or the number of the bad word.
    std::vector<std::uint64_t> Read(std::vector<std::pair<int, int>> const& stretches) {
        std::size_t total = 0;
        for (auto const& stretch : stretches) total += static_cast<std::size_t>(stretch.second);
        std::vector<std::uint64_t> words(total * m_words, 0xdead);
        std::vector<RowsRead> reads;
        std::size_t at = 0;
        for (auto const& [row, rows] : stretches) {
            reads.push_back({row, rows, reinterpret_cast<char*>(words.data() + at * m_words)});
            at += static_cast<std::size_t>(rows);
        }
        m_blocks.Read(reads);
        std::vector<std::uint64_t> values;
        for (std::size_t row = 0; row < total; ++row) {
            std::uint64_t value = words[row * m_words];
            for (std::size_t w = 0; w < m_words; ++w)
                if (words[row * m_words + w] != value + w * 1000003) value = ~std::uint64_t{0} - w;
            values.push_back(value);
        }
        return values;
    }

  private:
    std::vector<char> Bytes(std::vector<std::uint64_t> const& values) const {
        std::vector<std::uint64_t> words;
        for (std::uint64_t value : values)
            for (std::size_t w = 0; w < m_words; ++w) words.push_back(value + w * 1000003);
        std::vector<char> bytes(words.size() * 8);
        if (!bytes.empty()) std::memcpy(bytes.data(), words.data(), bytes.size());
        return bytes;
    }

    RowBlocks m_blocks;
    std::size_t m_words;
};

}  // namespace

TEST(RowBlocks, AgreeWithAPlainArrayOverTransactionsThatCommitOrAreDropped) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    auto upTo = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (std::int64_t const rowBytes : {64, 24 * 1024, 300 * 1024, 1536 * 1024}) {
        SCOPED_TRACE(rowBytes);
        int const perBlock = static_cast<int>(std::max<std::int64_t>(1, (1 << 20) / rowBytes));
        kov::test::TempFolder const folder;
        std::string const path = folder / "model.ksd";
        auto context = Context::Create(path, [](Context&) {});
        std::vector<std::uint64_t> committed;
        std::uint64_t next = 1;
        auto fresh = [&](int rows) {
            std::vector<std::uint64_t> values;
            for (int i = 0; i < rows; ++i) values.push_back(next++);
            return values;
        };
        auto size = [&] {
            return 1 + (upTo(3) == 0 ? upTo(perBlock * 5 / 2 + 1) : upTo(perBlock / 40 + 1));
        };
        for (int round = 0; round < 25; ++round) {
            if (upTo(6) == 0) {
                context->Close();
                context = Context::Open(path, Context::Access::ReadWrite);
            }
            Rows rows(*context, rowBytes, static_cast<int>(committed.size()));
            std::vector<std::uint64_t> model = committed;
            context->Begin();
            for (int step = 0; step < 10; ++step) {
                int const held = static_cast<int>(model.size());
                if (held == 0 || (upTo(2) == 0 && held < std::max(12, perBlock * 12))) {
                    std::vector<std::uint64_t> const values = fresh(size());
                    rows.Append(values);
                    model.insert(model.end(), values.begin(), values.end());
                } else if (upTo(4) != 0) {
                    int const row = upTo(2) == 0 ? upTo(held) : std::max(0, held - 1 - upTo(9));
                    std::vector<std::uint64_t> const values = fresh(std::min(size(), held - row));
                    rows.Overwrite(row, values);
                    std::copy(values.begin(), values.end(), model.begin() + row);
                } else if (upTo(2) == 0) {
                    rows.Blocks().Flush();
                } else {
                    int const row = upTo(held);
                    int const count = std::min(size(), held - row);
                    ASSERT_EQ(rows.Read({{row, count}}),
                              std::vector<std::uint64_t>(model.begin() + row,
                                                         model.begin() + row + count));
                }
            }
            ASSERT_EQ(rows.Blocks().Rows(), static_cast<int>(model.size()));
            ASSERT_EQ(rows.Read({{0, rows.Blocks().Rows()}}), model);
            if (upTo(4) == 0) {
                context->Rollback();
            } else {
                rows.Blocks().Release();
                EXPECT_EQ(rows.Blocks().PendingBytes(), 0U);
                context->Commit();
                committed = model;
            }
            int const held = static_cast<int>(committed.size());
            if (held == 0) continue;
            Rows again(*context, rowBytes, held);
            std::vector<std::pair<int, int>> stretches;
            std::vector<std::uint64_t> expected;
            for (int i = 0; i < 5; ++i) {
                int const row = upTo(held);
                int const count = 1 + upTo(std::min(4, held - row));
                stretches.emplace_back(row, count);
                expected.insert(expected.end(), committed.begin() + row,
                                committed.begin() + row + count);
            }
            ASSERT_EQ(again.Read(stretches), expected) << "in any order";
            ASSERT_EQ(again.Read({{0, held}}), committed);
        }
        std::string faults;
        context->Verify([&](std::string const& fault) {
            if (fault.find("drawer") == std::string::npos) faults += fault + "\n";
        });
        EXPECT_EQ(faults, "") << "apart from the drawer, which is in no table";
        context->Close();
    }
}

TEST(RowBlocks, SmallWritesInFrontOfALargeOneFillABlockOnly) {
    auto const context = Context::CreateInMemory([](Context&) {});
    context->Begin();
    RowBlocks blocks(*context, Owner, 8, 0);
    std::vector<char> const data(std::size_t{40} << 20);
    blocks.Append(data.data(), 1);
    blocks.Append(data.data(), static_cast<int>(data.size() / 8));
    EXPECT_LT(blocks.PendingBytes(), std::size_t{4} << 20);
    EXPECT_EQ(blocks.Rows(), static_cast<int>(data.size() / 8) + 1);
    context->Rollback();
}

// Numbers that no drawer can have, in each column of the list of blocks.
TEST(RowBlocks, ADamagedListOfBlocksIsRefused) {
    struct Damage {
        char const* column;
        char const* value;
    };
    std::vector<Damage> damages;
    for (char const* column : {"first_row", "rows", "skip", "segment", "offset", "bytes"})
        for (char const* value :
             {"-1", "-9223372036854775808", "9223372036854775807", "9223372036854775800",
              "2147483647", "2147483648", "4294967296", "null", "'text'", "0.5"})
            damages.push_back({column, value});
    // The true number, and 2^32 more.
    for (char const* column : {"first_row", "rows", "skip", "segment"})
        damages.push_back({column, "+4294967296"});
    damages.push_back({"sums", "x''"});
    damages.push_back({"sums", "x'00'"});
    damages.push_back({"sums", "sums || x'00'"});
    damages.push_back({"sums", "zeroblob(8)"});
    for (Damage const& damage : damages) {
        SCOPED_TRACE(std::string(damage.column) + " = " + damage.value);
        auto const context = Context::CreateInMemory([](Context&) {});
        context->Begin();
        Rows rows(*context, 64 * 1024, 0);
        std::vector<std::uint64_t> values;
        for (std::uint64_t i = 0; i < 48; ++i) values.push_back(i);
        rows.Append(values);
        rows.Blocks().Flush();
        std::string const text = std::string("UPDATE blocks SET ") + damage.column + " = " +
                                 (damage.value[0] == '+' ? damage.column : "") + damage.value +
                                 " WHERE first_row > 0";
        try {
            context->Cat().Execute(text.c_str());
        } catch (KOVSimException const&) {
            continue;  // the table itself does not take it
        }
        for (bool const narrow : {true, false}) {
            Rows damaged(*context, 64 * 1024, 48);
            try {
                EXPECT_EQ(damaged.Read({narrow ? std::pair{47, 1} : std::pair{0, 48}}),
                          narrow ? std::vector<std::uint64_t>{47} : values);
                ADD_FAILURE() << "was read";
            } catch (KOVSimException const& refused) {
                EXPECT_THAT(refused.what(), testing::AnyOf(testing::HasSubstr("damaged"),
                                                           testing::HasSubstr("segment")));
            }
        }
        context->Rollback();
    }
}
