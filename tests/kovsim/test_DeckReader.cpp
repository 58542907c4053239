#include "DeckReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Failure.h"

namespace kov::tool {
namespace {

MemoryFiles With(std::string const& text) {
    MemoryFiles files;
    files.texts["f"] = text;
    return files;
}

std::string Stripped(DeckReader const& reader) {
    std::string line(reader.Line(), reader.LineEnd());
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r' || line.back() == ' '))
        line.pop_back();
    return line;
}

// All data lines as "number:text".
std::vector<std::string> DataLines(std::string const& text) {
    MemoryFiles files = With(text);
    DeckReader reader(files, "f", {}, nullptr);
    std::vector<std::string> lines;
    for (;;) {
        while (reader.NextData())
            lines.push_back(std::to_string(reader.LineNumber()) + ":" + Stripped(reader));
        if (!reader.SkipToKeyword()) return lines;
        KeywordLine keyword;
        reader.TakeKeyword(keyword, nullptr);
        lines.push_back(std::to_string(keyword.line) + "*" + keyword.keyword.TextOrEmpty());
    }
}

using Lines = std::vector<std::string>;

TEST(DeckReader, AnEmptyFileHasNoLines) {
    EXPECT_EQ(DataLines(""), Lines{});
    EXPECT_EQ(DataLines("\n\n"), Lines{});
}

TEST(DeckReader, PassesOverCommentsAndBlankLinesAndCountsThem) {
    EXPECT_EQ(DataLines("** a\n\n 1\n  \t\n** b\n\t2 \r\n\r\n*node\n3"),
              (Lines{"3:1", "6:2", "8*node", "9:3"}));
}

TEST(DeckReader, ALineOnTheBorderOfAPieceIsOneLine) {
    for (int const length : {253, 254, 255, 256, 257, 509, 510, 511, 512, 765, 1000}) {
        std::string const text(static_cast<std::size_t>(length), 'x');
        EXPECT_EQ(DataLines("1\n" + text + "\n2\n"), (Lines{"1:1", "2:" + text, "3:2"})) << length;
        EXPECT_EQ(DataLines("1\n" + text), (Lines{"1:1", "2:" + text})) << length;
        EXPECT_EQ(DataLines(text + "\r\n2"), (Lines{"1:" + text, "2:2"})) << length;
    }
}

// A number is cut by the border in every possible way; blanks around the border part numbers all
// the same.
TEST(DeckReader, NumbersAcrossTheBorderStayWhole) {
    for (std::size_t before = 240; before < 260; ++before) {
        std::string const head = std::string(before, '1') + ",";
        EXPECT_EQ(DataLines(head + "23456,7\n8"), (Lines{"1:" + head + "23456,7", "2:8"}))
            << before;
        std::string const blank = head + "23 456,7";
        EXPECT_EQ(DataLines(blank + "\n8"), (Lines{"1:" + blank, "2:8"})) << before;
    }
}

TEST(DeckReader, LongRunsOfBlanksPartFields) {
    std::string const line = "1" + std::string(600, ' ') + "2";
    Lines const lines = DataLines(line + "\n3\n");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].substr(0, 4), "1:1 ");
    EXPECT_EQ(lines[0].back(), '2');
    EXPECT_EQ(lines[1], "2:3");
}

TEST(DeckReader, TheTailOfALongCommentIsNeitherDataNorKeyword) {
    std::string const filler(253, '-');
    EXPECT_EQ(DataLines("**" + filler + "*node\n1"), Lines{"2:1"});
    EXPECT_EQ(DataLines("**" + filler + "5, 6\n1"), Lines{"2:1"});
}

TEST(DeckReader, TheTailOfALongDataLineIsNoKeyword) {
    std::string const text = std::string(255, '1') + "*node";
    EXPECT_EQ(DataLines(text + "\n2"), (Lines{"1:" + text, "2:2"}));
}

TEST(DeckReader, AVeryLongLineIsRefused) {
    EXPECT_THROW(DataLines(std::string((1 << 20) + 1000, 'x')), DeckError);
}

TEST(DeckReader, BeginsAgainAtAPlace) {
    std::string const text = "** c\n  first\r\n\n" + std::string(300, ' ') + "long" +
                             std::string(300, 'y') + "\n\t last\n*node\n";
    MemoryFiles files = With(text);
    DeckReader reader(files, "f", {}, nullptr);
    std::vector<std::pair<DeckPlace, std::string>> lines;
    while (reader.NextData()) {
        lines.emplace_back(reader.Place(), std::to_string(reader.LineNumber()) + Stripped(reader));
    }
    ASSERT_EQ(lines.size(), 3U);
    for (auto const& [place, line] : lines) {
        DeckReader again(files, "f", place, nullptr);
        ASSERT_TRUE(again.NextData());
        EXPECT_EQ(std::to_string(again.LineNumber()) + Stripped(again), line);
        EXPECT_EQ(again.Place().offset, place.offset);
    }
}

TEST(DeckReader, TheFirstLineMayBeIndented) {
    MemoryFiles files = With("   5\n 6\n");
    DeckReader reader(files, "f", {}, nullptr);
    ASSERT_TRUE(reader.NextData());
    EXPECT_EQ(Stripped(reader), "5");
    ASSERT_TRUE(reader.NextData());
    EXPECT_EQ(reader.Place().offset, 5);
}

KeywordLine TakeFirstKeyword(std::string const& text, std::string* next = nullptr) {
    MemoryFiles files = With(text);
    DeckReader reader(files, "f", {}, nullptr);
    EXPECT_TRUE(reader.SkipToKeyword());
    KeywordLine keyword;
    reader.TakeKeyword(keyword, nullptr);
    if (next != nullptr && reader.NextData()) *next = Stripped(reader);
    return keyword;
}

std::vector<std::string> Parameters(KeywordLine const& keyword) {
    std::vector<std::string> texts;
    for (KOVString const& text : keyword.parameters) texts.emplace_back(text.TextOrEmpty());
    return texts;
}

TEST(DeckReader, TakesAKeywordWithItsParameters) {
    KeywordLine const keyword =
        TakeFirstKeyword("** c\n  * El Ement , TYPE = C3D8 ,elset=\"A, b\"\n");
    EXPECT_STREQ(keyword.keyword.TextOrEmpty(), "element");
    EXPECT_EQ(keyword.line, 2);
    EXPECT_EQ(Parameters(keyword), (Lines{"TYPE=C3D8", "elset=\"A, b\""}));
}

TEST(DeckReader, ACommaContinuesAKeywordLine) {
    std::string next;
    KeywordLine const keyword = TakeFirstKeyword("*k, a=1,\n** comment\n b=2,\nc\n5\n", &next);
    EXPECT_EQ(Parameters(keyword), (Lines{"a=1", "b=2", "c"}));
    EXPECT_EQ(next, "5");
}

TEST(DeckReader, ABlankLineOrAKeywordEndsAContinuation) {
    std::string next;
    EXPECT_EQ(Parameters(TakeFirstKeyword("*k, a=1,\n\n5\n", &next)), Lines{"a=1"});
    EXPECT_EQ(next, "5");
    MemoryFiles files = With("*k, a,\n*l\n");
    DeckReader reader(files, "f", {}, nullptr);
    KeywordLine first;
    reader.TakeKeyword(first, nullptr);
    EXPECT_FALSE(reader.NextData());
    ASSERT_TRUE(reader.SkipToKeyword());
    KeywordLine second;
    reader.TakeKeyword(second, nullptr);
    EXPECT_STREQ(second.keyword.TextOrEmpty(), "l");
    EXPECT_EQ(second.line, 2);
}

TEST(DeckReader, AKeywordLineOfMoreThanAPieceIsRefused) {
    std::string const name(300, 'n');
    EXPECT_THROW(TakeFirstKeyword("*k, a=" + name + "\n"), DeckError);
    EXPECT_THROW(TakeFirstKeyword("*k, a,\n b=" + name + "\n"), DeckError);
}

TEST(DeckReader, AZeroByteIsRefusedWithItsLine) {
    std::string const text("*node\n1, 2\n3\0, 4\n5\n", 18);
    try {
        DataLines(text);
        FAIL() << "accepted";
    } catch (DeckError const& error) {
        EXPECT_STREQ(error.what(), "f:3: a zero byte; expected text");
    }
}

TEST(DeckReader, AMissingFileIsRefused) {
    MemoryFiles files;
    EXPECT_THROW(DeckReader(files, "none", {}, nullptr), Failure);
}

}  // namespace
}  // namespace kov::tool
