#include "KOVSrvKeywordDataReader.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "KeywordText.h"

namespace {

/// A reader on the first line of a text.
struct Line {
    explicit Line(std::string const& text) : source(text), reader(source.parser) { reader.First(); }
    int Flaw(int line = 1) const {
        int const* const field = reader.FlawedFields().Find(line);
        return field ? *field : -1;
    }
    KeywordText source;
    KOVSrvKeywordDataReader reader;
};

}  // namespace

TEST(KOVSrvKeywordDataReader, AnEmptyFieldGivesTheDefaultAndTheNewlineFlagsTheLast) {
    Line line("1, ,3\n");
    EXPECT_EQ(line.reader.ReadInt(7), 1);
    EXPECT_EQ(line.reader.ReadInt(7), 7);
    EXPECT_EQ(line.reader.ReadInt(7), 3);
    EXPECT_EQ(line.Flaw(), 2);
    EXPECT_EQ(line.reader.FieldNumber(), 3);
}

TEST(KOVSrvKeywordDataReader, PastTheEndOfTheLineIsTheDefault) {
    Line line("1,2");
    EXPECT_EQ(line.reader.ReadInt(7), 1);
    EXPECT_EQ(line.reader.ReadInt(7), 2);
    EXPECT_EQ(line.reader.ReadInt(7), 7);
    EXPECT_EQ(line.Flaw(), -1);
    EXPECT_EQ(line.reader.FieldNumber(), 3);
}

TEST(KOVSrvKeywordDataReader, ATextThatIsNoNumberIsZeroAndNotTheDefault) {
    EXPECT_EQ(Line("abc").reader.ReadInt(7), 0);
    EXPECT_EQ(Line("abc").reader.ReadDouble(7), 0.0);
    EXPECT_EQ(Line("-").reader.ReadInt(7), 0);
    EXPECT_EQ(Line("-.e1").reader.ReadDouble(7), 0.0);
}

TEST(KOVSrvKeywordDataReader, ATailWithoutWhiteSpaceIsPassedOverInSilence) {
    Line line("1e3,12abc,4");
    EXPECT_EQ(line.reader.ReadInt(7), 1);
    EXPECT_EQ(line.reader.ReadInt(7), 12);
    EXPECT_EQ(line.reader.ReadInt(7), 4);
    EXPECT_EQ(line.Flaw(), -1);
    EXPECT_EQ(Line("1e3,").reader.ReadDouble(7), 1000.0);
}

TEST(KOVSrvKeywordDataReader, WhiteSpaceInTheTailIsRecorded) {
    Line line("1,12 abc,4");
    line.reader.ReadInt(7);
    EXPECT_EQ(line.reader.ReadInt(7), 12);
    EXPECT_EQ(line.Flaw(), 1);
    Line other("12 ,");
    EXPECT_EQ(other.reader.ReadDouble(7), 12.0);
    EXPECT_EQ(other.Flaw(), 0);
}

TEST(KOVSrvKeywordDataReader, ACommaBehindTheLastNumberKeepsTheNewlineFromIt) {
    Line line("1,2,\n");
    line.reader.ReadInt(0);
    line.reader.ReadInt(0);
    EXPECT_EQ(line.reader.ReadInt(9), 9);
    EXPECT_EQ(line.Flaw(), -1);
}

TEST(KOVSrvKeywordDataReader, TheFirstFlawOfALineStands) {
    Line line("1 ,2 ,3");
    line.reader.ReadInt(0);
    line.reader.ReadInt(0);
    EXPECT_EQ(line.Flaw(), 0);
}

TEST(KOVSrvKeywordDataReader, ACarriageReturnCountsAsWhiteSpace) {
    Line line("5\r\n");
    EXPECT_EQ(line.reader.ReadInt(0), 5);
    EXPECT_EQ(line.Flaw(), 0);
}

TEST(KOVSrvKeywordDataReader, AnIntIsCutFromALong) {
    EXPECT_EQ(Line("4294967297").reader.ReadInt(0), 1);
    EXPECT_EQ(Line("2147483648").reader.ReadInt(0), INT_MIN);
    EXPECT_EQ(Line("-2147483648").reader.ReadInt(0), INT_MIN);
    EXPECT_EQ(Line("99999999999999999999").reader.ReadInt(0), -1);
    EXPECT_EQ(Line("+17").reader.ReadInt(0), 17);
    EXPECT_EQ(Line("000000000012").reader.ReadInt(0), 12);
    EXPECT_EQ(Line("0x10").reader.ReadInt(3), 0);
}

TEST(KOVSrvKeywordDataReader, IntsAreReadAsStrtolReadsThem) {
    std::mt19937 random(1);
    for (int i = 0; i < 100000; ++i) {
        std::string text;
        int const length = static_cast<int>(random() % 22);
        for (int k = 0; k < length; ++k) text += "0123456789999--+ ."[random() % 18];
        KeywordText source(text);
        KOVSrvKeywordDataReader reader(source.parser);
        reader.First();
        if (source.parser.IsEndOfFile()) continue;
        std::size_t const first = text.find_first_not_of(' ');
        int const expected = first == std::string::npos
                                 ? -7
                                 : static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
        ASSERT_EQ(reader.ReadInt(-7), expected) << "'" << text << "'";
    }
}

TEST(KOVSrvKeywordDataReader, DoublesAreReadAsStrtodReadsThem) {
    unsigned const seed = std::random_device()();
    std::printf("seed %u\n", seed);
    std::mt19937_64 random(seed);
    std::vector<std::string> texts = {
        "1.5",      "-0",       "+1.",    ".5",
        "-.5e-3",   "1e400",    "-1e400", "1e-400",
        "4.9e-324", "2.3e-308", "inf",    "-nan",
        "infinity", "0x1.8p3",  "0X10",   "1e",
        "1e+",      "1.e5",     "+-1",    "--1",
        "1.2.3",    "00012.50", "5e-324", "1e5e5",
        "1d3",      "NAN(12)",  "1E+05",  "123456789012345678901234567890"};
    for (int i = 0; i < 100000; ++i) {
        std::uint64_t const bits = random();
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        char text[64];
        std::snprintf(text, sizeof text, i % 2 ? "%.17g" : "%.7E", number);
        texts.push_back(text);
    }
    for (int i = 0; i < 100000; ++i) {
        // Short numbers in all spellings, and texts that are close to one.
        std::string text;
        int const length = 1 + static_cast<int>(random() % 24);
        for (int k = 0; k < length; ++k) text += "0123456789012345678900..eE+-"[random() % 28];
        texts.push_back(text);
    }
    for (std::string const& text : texts) {
        Line line(text + ",5");
        double const read = line.reader.ReadDouble(7);
        double const expected = std::strtod(text.c_str(), nullptr);
        if (std::isnan(expected)) {
            ASSERT_TRUE(std::isnan(read)) << text;
        } else {
            ASSERT_EQ(read, expected) << text;
            ASSERT_EQ(std::signbit(read), std::signbit(expected)) << text;
        }
        ASSERT_EQ(line.reader.ReadInt(0), 5) << text;
        ASSERT_EQ(line.Flaw(), -1) << text;
    }
}

// Needs a locale of that kind on the machine.
TEST(KOVSrvKeywordDataReader, DoublesDoNotDependOnTheLocale) {
    bool found = false;
    for (char const* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"}) {
        found = found || std::setlocale(LC_ALL, name);
    }
    if (!found) GTEST_SKIP() << "no locale with a comma as decimal point";
    EXPECT_EQ(std::strtod("0,5", nullptr), 0.5);
    for (char const* text : {"1.5", "1.5e400", "1.5e-400", "0x1.8p3", "1.234567890123456789e-20"}) {
        Line line(std::string(text) + ",5");
        double const read = line.reader.ReadDouble(7);
        EXPECT_EQ(line.reader.ReadInt(0), 5) << text;
        std::setlocale(LC_ALL, "C");
        EXPECT_EQ(read, std::strtod(text, nullptr)) << text;
        for (char const* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"}) {
            if (std::setlocale(LC_ALL, name)) break;
        }
    }
    std::setlocale(LC_ALL, "C");
}

TEST(KOVSrvKeywordDataReader, AQuotedCommaBelongsToTheText) {
    Line line("\"a,b\", c\n");
    EXPECT_EQ(line.reader.ReadString(), "\"a,b\"");
    EXPECT_EQ(line.reader.ReadString(), " c\n");
    EXPECT_EQ(line.Flaw(), -1);
    EXPECT_EQ(line.reader.FieldNumber(), 2);
}

TEST(KOVSrvKeywordDataReader, AQuoteThatIsNotClosedTakesTheRestAndIsRecorded) {
    Line line("x,\"a,b");
    line.reader.ReadString();
    EXPECT_EQ(line.reader.ReadString(), "\"a,b");
    EXPECT_EQ(line.Flaw(), 1);
}

TEST(KOVSrvKeywordDataReader, AnEmptyTextFieldIsEmpty) {
    Line line(",a");
    EXPECT_TRUE(line.reader.ReadString().IsEmpty());
    EXPECT_EQ(line.reader.ReadString(), "a");
    EXPECT_TRUE(line.reader.ReadString().IsEmpty());
    EXPECT_EQ(line.reader.FieldNumber(), 3);
}

TEST(KOVSrvKeywordDataReader, BeyondAsciiTheCutCountsBytesAsCharacters) {
    Line line("\xC3\xA9,b,c");
    EXPECT_EQ(line.reader.ReadString(), "\xC3\xA9,");
    EXPECT_EQ(line.reader.ReadString(), "b");
}

TEST(KOVSrvKeywordDataReader, FieldsOfAllKindsFollowEachOther) {
    Line line("1, name,2.5, 3");
    EXPECT_EQ(line.reader.ReadInt(0), 1);
    EXPECT_EQ(line.reader.ReadString(), " name");
    EXPECT_EQ(line.reader.ReadDouble(0), 2.5);
    EXPECT_EQ(line.reader.ReadInt(0), 3);
}

TEST(KOVSrvKeywordDataReader, ALineWithANewlineOnlyIsADataLine) {
    Line line("\n*k\n");
    EXPECT_FALSE(line.reader.IsDone());
    EXPECT_EQ(line.reader.ReadInt(4), 4);
    EXPECT_EQ(line.reader.ReadDouble(5), 5.0);
    line.reader.Next();
    EXPECT_TRUE(line.reader.IsDone());
}

TEST(KOVSrvKeywordDataReader, CommentsAreInvisibleButCounted) {
    KeywordText source("*k\n1\n** a\n  ** b\n2\n");
    source.parser.Readline();
    KOVSrvKeywordDataReader reader(source.parser);
    EXPECT_EQ(reader.LineNumber(), 1);
    EXPECT_EQ(reader.FieldNumber(), 0);
    reader.First();
    EXPECT_EQ(reader.LineNumber(), 2);
    EXPECT_EQ(reader.ReadInt(0), 1);
    reader.Next();
    EXPECT_EQ(reader.LineNumber(), 5);
    EXPECT_EQ(reader.FieldNumber(), 0);
    EXPECT_EQ(reader.ReadInt(0), 2);
    EXPECT_EQ(*reader.FlawedFields().Find(5), 0);
}

TEST(KOVSrvKeywordDataReader, AKeywordLineIsPutBack) {
    KeywordText source("1\n*k\n");
    KOVSrvKeywordDataReader reader(source.parser);
    reader.First();
    EXPECT_FALSE(reader.IsDone());
    reader.Next();
    EXPECT_TRUE(reader.IsDone());
    EXPECT_EQ(source.parser.LineNumber(), 1);
    EXPECT_STREQ(source.parser.Readline(), "*k\n");
}

TEST(KOVSrvKeywordDataReader, AnIndentedKeywordLineShowsItsTailFirst) {
    KeywordText source("1\n  *k12, 34\n");
    KOVSrvKeywordDataReader reader(source.parser);
    reader.First();
    reader.Next();
    EXPECT_FALSE(reader.IsDone());
    EXPECT_EQ(reader.ReadInt(0), 12);
    EXPECT_EQ(reader.ReadInt(0), 34);
    reader.Next();
    EXPECT_TRUE(reader.IsDone());
    EXPECT_EQ(source.parser.LineNumber(), 1);
    EXPECT_EQ(reader.LineNumber(), 3);
    EXPECT_STREQ(source.parser.Readline(), "*k12, 34\n");
}

TEST(KOVSrvKeywordDataReader, AnIndentedKeywordLineThatIsShorterThanItsIndentIsReadPastItsEnd) {
    KeywordText source("1\n     *k\n");
    KOVSrvKeywordDataReader reader(source.parser);
    reader.First();
    reader.Next();
    reader.Next();
    EXPECT_TRUE(reader.IsDone());
    EXPECT_STREQ(source.parser.Readline(), "*k\n");
}

TEST(KOVSrvKeywordDataReader, IsDoneAsksForTheTextFromTheNextFieldOn) {
    Line line("1, *k\n");
    EXPECT_FALSE(line.reader.IsDone());
    EXPECT_EQ(line.reader.ReadInt(0), 1);
    EXPECT_TRUE(line.reader.IsDone());
    EXPECT_EQ(line.reader.ReadString(), " *k\n");
    EXPECT_FALSE(line.reader.IsDone());
}

TEST(KOVSrvKeywordDataReader, IsDoneAtTheEndOfTheStream) {
    KeywordText source("");
    KOVSrvKeywordDataReader reader(source.parser);
    reader.First();
    EXPECT_TRUE(reader.IsDone());
    EXPECT_EQ(reader.LineNumber(), 1);
}

TEST(KOVSrvKeywordDataReader, ReadingBeforeFirstAborts) {
    KeywordText source("1\n");
    KOVSrvKeywordDataReader reader(source.parser);
    EXPECT_EXIT(reader.ReadInt(0), testing::KilledBySignal(SIGABRT),
                "AssertionFailed:m_buffer != 0.*"
                "KOVSrvSimServices/KOVSrvKwd.m/src/KOVSrvKeywordDataReader[^.]");
    EXPECT_EXIT(reader.ReadDouble(0), testing::KilledBySignal(SIGABRT),
                "AssertionFailed:m_buffer != 0");
    EXPECT_EXIT(reader.ReadString(), testing::KilledBySignal(SIGABRT),
                "AssertionFailed:m_buffer != 0");
    EXPECT_EXIT(reader.IsDone(), testing::KilledBySignal(SIGABRT), "AssertionFailed:m_buffer != 0");
}

TEST(KOVSrvKeywordDataReader, SteppingUntilDoneLeavesTheParserForParse) {
    KeywordLog log;
    KeywordText source("*k\n1,2\n**\n3,4\n*k, a\n5\n", &log);
    source.parser.Register("k",
                           [](KOVString const&, KOVSrvKeywordParser::Parameters const& parameters,
                              KOVSrvKeywordParser& parser, void* userData) {
                               std::string& text = static_cast<KeywordLog*>(userData)->text;
                               text += "k" + std::to_string(parameters.Size()) + ":";
                               KOVSrvKeywordDataReader reader(parser);
                               for (reader.First(); !reader.IsDone(); reader.Next()) {
                                   text += std::to_string(reader.ReadInt(0)) + ",";
                               }
                           });
    source.parser.Parse();
    EXPECT_EQ(log.text, "k0:1,3,k1:5,");
}
