#include "NumberInput.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "Failure.h"

namespace kov::tool {
namespace {

// A text as a file to read from.
class TextFile {
  public:
    explicit TextFile(std::string const& text) : m_file(std::tmpfile()) {
        std::fwrite(text.data(), 1, text.size(), m_file);
        std::rewind(m_file);
    }
    ~TextFile() { std::fclose(m_file); }
    TextFile(TextFile const&) = delete;
    TextFile& operator=(TextFile const&) = delete;
    std::FILE* Get() const { return m_file; }

  private:
    std::FILE* m_file;
};

std::vector<int> All(std::vector<std::string> words, std::string const& text = "", int least = 0) {
    TextFile const file(text);
    NumberInput input(std::move(words), "ordinal", least, file.Get());
    std::vector<int> all;
    std::vector<int> block;
    while (input.Next(block)) all.insert(all.end(), block.begin(), block.end());
    return all;
}

std::string Refusal(std::string const& word, int least = 0) {
    try {
        All({word}, "", least);
    } catch (Failure const& failure) {
        return failure.what();
    }
    return "";
}

using Ints = std::vector<int>;

TEST(NumberInput, TakesWords) {
    EXPECT_EQ(All({"3", "0", "2147483647"}), (Ints{3, 0, 2147483647}));
    EXPECT_EQ(All({}), Ints{});
}

TEST(NumberInput, ADashStandsForTheInput) {
    EXPECT_EQ(All({"1", "-", "9"}, "5, 6\n7\t8 ,,\r\n"), (Ints{1, 5, 6, 7, 8, 9}));
    EXPECT_EQ(All({"-"}, "12"), Ints{12});
    EXPECT_EQ(All({"-"}, ""), Ints{});
    EXPECT_EQ(All({"-"}, " \n"), Ints{});
    EXPECT_EQ(All({"-", "-"}, "4"), Ints{4});
}

TEST(NumberInput, RefusesWhatIsNoNumber) {
    for (std::string const word : {"x", "1x", "1.5", "1e3", "0x10", "--1", "+1", "", "1 2"}) {
        EXPECT_EQ(Refusal(word), "'" + word +
                                     "' is no ordinal; expected a whole number from 0 to "
                                     "2147483647");
    }
}

TEST(NumberInput, RefusesNumbersOutOfRange) {
    EXPECT_NE(Refusal("-1"), "");
    EXPECT_NE(Refusal("2147483648"), "");
    EXPECT_NE(Refusal("99999999999999999999999"), "");
    EXPECT_EQ(Refusal("-2147483648", std::numeric_limits<int>::min()), "");
    EXPECT_NE(Refusal("-2147483649", std::numeric_limits<int>::min()), "");
}

TEST(NumberInput, AWordWithoutEndIsCutInTheMessage) {
    EXPECT_THROW(All({"-"}, std::string(1000000, '1')), Failure);
    EXPECT_LT(Refusal(std::string(100000, 'y')).size(), 200U);
}

TEST(NumberInput, ZeroBytesAreNoNumbers) {
    EXPECT_THROW(All({"-"}, std::string("1\0", 2)), Failure);
}

TEST(NumberInput, GivesBlocksAndLosesNothingBetweenThem) {
    std::string text;
    Ints expected;
    for (int i = 0; i < 250000; ++i) {
        text += std::to_string(i * 7919 % 1000003) + (i % 3 == 0 ? "\n" : " ");
        expected.push_back(i * 7919 % 1000003);
    }
    // Products beyond an int wrap nowhere here: 250000 * 7919 is below 2^31.
    TextFile const file(text);
    NumberInput input({"-"}, "label", 0, file.Get());
    Ints all;
    Ints block;
    while (input.Next(block)) {
        EXPECT_LE(block.size(), NumberInput::kBlock);
        all.insert(all.end(), block.begin(), block.end());
    }
    EXPECT_TRUE(all == expected);
}

}  // namespace
}  // namespace kov::tool
