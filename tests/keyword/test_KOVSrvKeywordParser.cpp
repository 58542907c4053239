#include "KOVSrvKeywordParser.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "KeywordText.h"

namespace {

using Parameters = KOVSrvKeywordParser::Parameters;

/// What a run over `text` calls, with the given keywords registered.
std::string Calls(std::string const& text, std::initializer_list<char const*> keywords) {
    KeywordLog log;
    KeywordText source(text, &log);
    for (char const* keyword : keywords) source.parser.Register(keyword, KeywordLog::Take);
    source.parser.RegisterUnknownKeywordCallback(KeywordLog::Unknown);
    source.parser.RegisterAmbiguousKeywordCallback(KeywordLog::Ambiguous);
    source.parser.Parse();
    EXPECT_TRUE(source.parser.IsEndOfFile());
    return log.text;
}

void ReadNothing(KOVString const&, Parameters const&, KOVSrvKeywordParser&, void*) {}

void ReadOneLine(KOVString const&, Parameters const&, KOVSrvKeywordParser& parser, void*) {
    parser.Readline();
}

bool IsKeyword(char const* line) { return KeywordText("").parser.IsKeyword(line); }
bool IsComment(char const* line) { return KeywordText("").parser.IsComment(line); }

/// The parts of a parameter line, and what each call answered.
std::string Parts(std::string const& line) {
    KeywordText source("");
    std::string parts;
    int position = 0;
    for (;;) {
        KOVString value("before");
        bool const exhausted = source.parser.ParseParameter(line.c_str(), position, value);
        parts += "[" + std::string(value.TextOrEmpty()) + "]";
        if (exhausted) return parts + std::to_string(position);
    }
}

}  // namespace

TEST(KOVSrvKeywordParser, AnEmptyStreamEndsAtOnceWithLineNumber1) {
    KeywordLog log;
    KeywordText source("", &log);
    source.parser.Parse();
    EXPECT_EQ(log.text, "");
    EXPECT_EQ(source.parser.LineNumber(), 1);
    EXPECT_TRUE(source.parser.IsEndOfFile());
}

TEST(KOVSrvKeywordParser, AStreamWithoutKeywordsIsPassedOver) {
    EXPECT_EQ(Calls("1, 2\n** note\n\n*\n*1\nend", {"end"}), "");
}

TEST(KOVSrvKeywordParser, BlanksAroundTheStarAndTheKeywordAreDropped) {
    EXPECT_EQ(Calls("  *  heading , a=1\n", {"heading"}), "heading(a=1)");
    EXPECT_EQ(Calls("*NODE FILE, NSET = A B\n", {"nodefile"}), "nodefile(NSET=AB)");
}

TEST(KOVSrvKeywordParser, KeywordLinesAreStarThenLetter) {
    for (char const* line : {"*a", " *a", "* a", "\t*\t\nZ", "*e1"}) EXPECT_TRUE(IsKeyword(line));
    for (char const* line : {"**note", "*1", "*", "* ", "", "a", "1", "*,a", " ", "*_a"}) {
        EXPECT_FALSE(IsKeyword(line)) << line;
    }
}

TEST(KOVSrvKeywordParser, ALetterBeyondAsciiBeginsNoKeyword) {
    EXPECT_FALSE(IsKeyword("*\xC3\xA9"));
    EXPECT_FALSE(IsKeyword("\xA0*a"));
}

TEST(KOVSrvKeywordParser, CommentsBeginWithTwoStars) {
    EXPECT_TRUE(IsComment("**note"));
    EXPECT_TRUE(IsComment("**"));
    for (char const* line : {"*", "*1", "* *", "", " **"}) EXPECT_FALSE(IsComment(line)) << line;
}

TEST(KOVSrvKeywordParser, AnExactMatchWinsAndAPartOfSeveralIsAmbiguous) {
    EXPECT_EQ(Calls("*node\n", {"node", "nodefile"}), "node()");
    EXPECT_EQ(Calls("*ode\n", {"node", "nodefile"}), "ambiguous ode()");
    EXPECT_EQ(Calls("*ODEF\n", {"node", "nodefile"}), "nodefile()");
}

TEST(KOVSrvKeywordParser, APartOfOneKeywordGetsItsRegisteredText) {
    EXPECT_EQ(Calls("*ead\n", {"heading"}), "heading()");
    EXPECT_EQ(Calls("*Step\n", {"heading"}), "unknown step()");
}

TEST(KOVSrvKeywordParser, TheFirstOfTwoRegistrationsStands) {
    KeywordLog log;
    KeywordText source("*k\n", &log);
    source.parser.Register("k", KeywordLog::Take);
    source.parser.Register("k", KeywordLog::Unknown);
    source.parser.Parse();
    EXPECT_EQ(log.text, "k()");
}

TEST(KOVSrvKeywordParser, AKeywordRegisteredWithACapitalOrABlankIsNeverMatchedExactly) {
    EXPECT_EQ(Calls("*Node\n", {"Node"}), "unknown node()");
    EXPECT_EQ(Calls("*node file\n", {"node file"}), "unknown nodefile()");
    EXPECT_EQ(Calls("*ode\n", {"Node"}), "Node()");
}

TEST(KOVSrvKeywordParser, ParametersKeepTheirCase) {
    EXPECT_EQ(Calls("*K, NSet=Abc\n", {"k"}), "k(NSet=Abc)");
}

TEST(KOVSrvKeywordParser, CommasAndBlanksBetweenQuotesBelongToTheParameter) {
    EXPECT_EQ(Calls("*k, a=\"x, y\", b\n", {"k"}), "k(a=\"x, y\"|b)");
    EXPECT_EQ(Calls("*k, a=\" \"x\" , \"\n", {"k"}), "k(a=\" \"x\" , \")");
}

TEST(KOVSrvKeywordParser, AQuoteThatIsNotClosedTakesTheRestOfTheLine) {
    EXPECT_EQ(Calls("*k, \"a, b\n*k\n", {"k"}), "k(\"a, b\n)k()");
}

TEST(KOVSrvKeywordParser, AMalformedKeywordReachesTheUnknownCallback) {
    EXPECT_EQ(Calls("*a\"b c\"d\n", {"k"}), "unknown a\"b c\"d()");
}

TEST(KOVSrvKeywordParser, ACommaAtTheEndContinuesOnTheNextLine) {
    EXPECT_EQ(Calls("*k,\na=1\n", {"k"}), "k(a=1)");
    EXPECT_EQ(Calls("*k, a=1,\nb=2,\nc=3\n*k\n", {"k"}), "k(a=1|b=2|c=3)k()");
}

TEST(KOVSrvKeywordParser, ACommaAtTheEndOfTheStreamGivesOneEmptyParameter) {
    EXPECT_EQ(Calls("*k,", {"k"}), "k()");
    KeywordText source("*k,");
    KOVString keyword;
    Parameters parameters;
    source.parser.ParseKeyword(keyword, parameters);
    EXPECT_EQ(parameters.Size(), 1);
    EXPECT_TRUE(parameters.ConstGet(0).IsEmpty());
    EXPECT_TRUE(source.parser.IsEndOfFile());
}

TEST(KOVSrvKeywordParser, AContinuationLineThatIsEmptyGivesAnEmptyParameter) {
    EXPECT_EQ(Calls("*k, a=1,\n\n*k\n", {"k"}), "k(a=1|)k()");
}

TEST(KOVSrvKeywordParser, AnEmptyParameterInsideALineGivesUpTheRestOfIt) {
    EXPECT_EQ(Calls("*k, , a=1\nb=2\n", {"k"}), "k(b=2)");
}

TEST(KOVSrvKeywordParser, AContinuationLineMayStartWithAnEmptyParameterAndGoOn) {
    EXPECT_EQ(Calls("*k,\n, a=1\n", {"k"}), "k(|a=1)");
}

TEST(KOVSrvKeywordParser, TheContinuationLineIsNotExamined) {
    EXPECT_EQ(Calls("*k,\n** note\n", {"k"}), "k(**note)");
    EXPECT_EQ(Calls("*k,\n*other\n*k\n", {"k"}), "k(*other)k()");
}

TEST(KOVSrvKeywordParser, ParseKeywordAppendsToTheParameters) {
    KeywordText source("*k, a, b\n*k\n");
    KOVString keyword;
    Parameters parameters(1, 0);
    parameters.Get(0) = "before";
    source.parser.ParseKeyword(keyword, parameters);
    EXPECT_EQ(keyword, "*k");
    EXPECT_EQ(parameters.Size(), 3);
    EXPECT_EQ(parameters.ConstGet(0), "before");
    EXPECT_EQ(parameters.ConstGet(2), "b");
    source.parser.ParseKeyword(keyword, parameters);
    EXPECT_EQ(parameters.Size(), 3);
}

TEST(KOVSrvKeywordParser, ParseParameterTellsACommaFromTheEnd) {
    EXPECT_EQ(Parts("a, b"), "[a][b]4");
    EXPECT_EQ(Parts("a,"), "[a][]2");
    EXPECT_EQ(Parts("a,\n"), "[a][]3");
    EXPECT_EQ(Parts(""), "[]0");
    EXPECT_EQ(Parts(" \t\r\n"), "[]4");
}

TEST(KOVSrvKeywordParser, ParseParameterTakes256CharactersAndNoMore) {
    EXPECT_EQ(Parts(std::string(256, 'x')), "[" + std::string(256, 'x') + "]256");
    EXPECT_EQ(Parts(std::string(300, ' ') + "x"), "[x]301");
    EXPECT_EXIT(Parts(std::string(257, 'x')), testing::KilledBySignal(SIGABRT),
                "AssertionFailed:nchar < PARSER_BUFFER");
}

TEST(KOVSrvKeywordParser, ALineNumberIsThatOfTheLineLastTaken) {
    KeywordText source("1\n*k\n2\n");
    EXPECT_EQ(source.parser.LineNumber(), 0);
    source.parser.SkipToNextKeyword();
    EXPECT_EQ(source.parser.LineNumber(), 1);
    EXPECT_STREQ(source.parser.Readline(), "*k\n");
    EXPECT_EQ(source.parser.LineNumber(), 2);
}

TEST(KOVSrvKeywordParser, ALongLineComesInPieces) {
    KeywordText source(std::string(300, 'x') + "\nnext\n");
    EXPECT_EQ(source.parser.Readline(), std::string(255, 'x'));
    EXPECT_EQ(source.parser.Readline(), std::string(45, 'x') + "\n");
    EXPECT_EQ(source.parser.LineNumber(), 2);
    EXPECT_STREQ(source.parser.Readline(), "next\n");
}

TEST(KOVSrvKeywordParser, TheRestOfALongLineMayBeTakenForAKeyword) {
    EXPECT_EQ(Calls(std::string(255, 'x') + "*k\n", {"k"}), "k()");
}

TEST(KOVSrvKeywordParser, ALineOf254CharactersKeepsItsNewline) {
    KeywordText source(std::string(254, 'x') + "\n" + std::string(255, 'y') + "\n");
    EXPECT_EQ(source.parser.Readline(), std::string(254, 'x') + "\n");
    EXPECT_EQ(source.parser.Readline(), std::string(255, 'y'));
    EXPECT_STREQ(source.parser.Readline(), "\n");
}

TEST(KOVSrvKeywordParser, ALastLineOf255CharactersEndsTheStreamAndOneOf256ComesInTwo) {
    for (int length : {255, 256, 257}) {
        KeywordText source(std::string(static_cast<std::size_t>(length), 'x'));
        EXPECT_EQ(source.parser.Readline(), std::string(255, 'x'));
        if (length > 255) {
            EXPECT_EQ(source.parser.Readline(),
                      std::string(static_cast<std::size_t>(length - 255), 'x'));
        }
        EXPECT_FALSE(source.parser.IsEndOfFile());
        EXPECT_STREQ(source.parser.Readline(), "");
        EXPECT_TRUE(source.parser.IsEndOfFile());
    }
}

TEST(KOVSrvKeywordParser, AZeroByteEndsTheTextOfItsLine) {
    KeywordText source(std::string("a \0b\n*k\n", 8) + std::string("\0", 1));
    EXPECT_STREQ(source.parser.Readline(), "a");
    EXPECT_STREQ(source.parser.Readline(), "*k\n");
    EXPECT_FALSE(source.parser.IsEndOfFile());
    EXPECT_STREQ(source.parser.Readline(), "");
    EXPECT_TRUE(source.parser.IsEndOfFile()) << "a last line of a zero byte is no line";
}

TEST(KOVSrvKeywordParser, PiecesOfALongLineLoseTheirTrailingBlanks) {
    KeywordText source(std::string(250, 'x') + std::string(10, ' ') + "y\n");
    EXPECT_EQ(source.parser.Readline(), std::string(250, 'x'));
    EXPECT_STREQ(source.parser.Readline(), "y\n");
}

TEST(KOVSrvKeywordParser, CarriageReturnAndNewlineStayAtTheEnd) {
    KeywordText source("a \t\r\n \t\rb \n");
    EXPECT_STREQ(source.parser.Readline(), "a \t\r\n");
    EXPECT_STREQ(source.parser.Readline(), "b \n");
    EXPECT_EQ(Calls("*k, a=1\r\n*k\r\n", {"k"}), "k(a=1)k()");
}

TEST(KOVSrvKeywordParser, ALastLineWithoutNewlineLosesItsTrailingBlanks) {
    KeywordText source("\t a \t\r ");
    EXPECT_STREQ(source.parser.Readline(), "a");
    EXPECT_FALSE(source.parser.IsEndOfFile());
    EXPECT_STREQ(source.parser.Readline(), "");
    EXPECT_TRUE(source.parser.IsEndOfFile());
}

TEST(KOVSrvKeywordParser, ALastLineOfBlanksIsAnEmptyLine) {
    KeywordText source("  ");
    EXPECT_STREQ(source.parser.Readline(), "");
    EXPECT_FALSE(source.parser.IsEndOfFile());
}

TEST(KOVSrvKeywordParser, AnEmptyLineKeepsItsNewline) {
    KeywordText source("\n \n");
    EXPECT_STREQ(source.parser.Readline(), "\n");
    EXPECT_STREQ(source.parser.Readline(), "\n");
    EXPECT_FALSE(source.parser.IsEndOfFile());
}

TEST(KOVSrvKeywordParser, ALineThatBeginsWithAZeroByteIsEmpty) {
    KeywordText source(std::string("\0abc\nnext\n", 10));
    EXPECT_STREQ(source.parser.Readline(), "");
    EXPECT_FALSE(source.parser.IsEndOfFile());
    EXPECT_STREQ(source.parser.Readline(), "next\n");
}

TEST(KOVSrvKeywordParser, ReadsPastTheEndCountAndStayEmpty) {
    KeywordText source("a\n");
    for (int i = 0; i < 5; ++i) source.parser.Readline();
    EXPECT_EQ(source.parser.LineNumber(), 5);
    EXPECT_STREQ(source.parser.Readline(), "");
    EXPECT_TRUE(source.parser.IsEndOfFile());
}

TEST(KOVSrvKeywordParser, AStreamThatFailsIsAtItsEnd) {
    FILE* const file = std::fopen("/", "r");
    ASSERT_NE(file, nullptr);
    KOVSrvKeywordParser parser(file, nullptr);
    EXPECT_STREQ(parser.Readline(), "");
    EXPECT_TRUE(parser.IsEndOfFile());
    EXPECT_EQ(parser.LineNumber(), 1);
    std::fclose(file);
}

TEST(KOVSrvKeywordParser, ABufferedLineComesBackUnchangedWithItsNumber) {
    KeywordText source("  one\ntwo\n");
    char const* const line = source.parser.Readline();
    EXPECT_EQ(source.parser.LineNumber(), 1);
    source.parser.Buffer(line);
    EXPECT_EQ(source.parser.LineNumber(), 0);
    EXPECT_STREQ(source.parser.Readline(), "one\n");
    EXPECT_EQ(source.parser.LineNumber(), 1);
    EXPECT_STREQ(source.parser.Readline(), "two\n");
}

TEST(KOVSrvKeywordParser, ABufferedLineIsNotTrimmed) {
    KeywordText source("one\n");
    source.parser.Buffer("  x  ");
    EXPECT_STREQ(source.parser.Readline(), "  x  ");
    EXPECT_STREQ(source.parser.Readline(), "one\n");
}

TEST(KOVSrvKeywordParser, ASecondBufferOfTheSameTextLowersTheCountAgainForOneRead) {
    KeywordText source("one\ntwo\n");
    source.parser.Buffer(source.parser.Readline());
    source.parser.Buffer("one\n");
    EXPECT_EQ(source.parser.LineNumber(), -1);
    EXPECT_STREQ(source.parser.Readline(), "one\n");
    EXPECT_EQ(source.parser.LineNumber(), 0);
    EXPECT_STREQ(source.parser.Readline(), "two\n");
}

TEST(KOVSrvKeywordParser, ASecondBufferOfAnotherTextAborts) {
    KeywordText source("one\n");
    source.parser.Buffer("a");
    EXPECT_EXIT(source.parser.Buffer("b"), testing::KilledBySignal(SIGABRT),
                "AssertionFailed:!strcmp\\(stash, m_buffer\\).*"
                "KOVSrvSimServices/KOVSrvKwd.m/src/KOVSrvKeywordParser[^.]");
}

TEST(KOVSrvKeywordParser, ATextThatDoesNotFitTheBufferAborts) {
    KeywordText source("");
    source.parser.Buffer(std::string(256, 'x').c_str());
    EXPECT_STREQ(source.parser.Readline(), std::string(256, 'x').c_str());
    EXPECT_EXIT(source.parser.Buffer(std::string(257, 'x').c_str()),
                testing::KilledBySignal(SIGABRT), "AssertionFailed:length < PARSER_BUFFER");
}

TEST(KOVSrvKeywordParser, BufferingAtTheEndLeavesTheEndFlagUp) {
    KeywordText source("");
    source.parser.Readline();
    source.parser.Buffer("*k");
    EXPECT_STREQ(source.parser.Readline(), "*k");
    EXPECT_TRUE(source.parser.IsEndOfFile());
}

TEST(KOVSrvKeywordParser, TheUnknownDefaultAborts) {
    KeywordText source("*other\n");
    EXPECT_EXIT(source.parser.Parse(), testing::KilledBySignal(SIGABRT),
                "AssertionFailed:\"KOVSrvKeywordParser ERROR: Unknown keyword\" == 0");
}

TEST(KOVSrvKeywordParser, TheAmbiguousDefaultAborts) {
    KeywordText source("*k\n");
    source.parser.Register("k1", ReadNothing);
    source.parser.Register("k2", ReadNothing);
    EXPECT_EXIT(source.parser.Parse(), testing::KilledBySignal(SIGABRT),
                "AssertionFailed:\"KOVSrvKeywordParser ERROR: Ambiguous keyword\" == 0");
}

TEST(KOVSrvKeywordParser, ACallbackThatLeavesADataLineAborts) {
    KeywordText source("*node\n1, 2\n");
    source.parser.Register("node", ReadNothing);
    EXPECT_EXIT(source.parser.Parse(), testing::KilledBySignal(SIGABRT),
                "AssertionFailed:IsKeyword\\(data\\)");
}

TEST(KOVSrvKeywordParser, ACallbackThatStopsAtTheLastLineAborts) {
    KeywordText source("*node\n1, 2\n");
    source.parser.Register("node", ReadOneLine);
    EXPECT_EXIT(source.parser.Parse(), testing::KilledBySignal(SIGABRT),
                "AssertionFailed:IsKeyword\\(data\\)");
}

TEST(KOVSrvKeywordParser, LookupOfATextThatIsInNothingGivesItsFoldedForm) {
    KeywordText source("");
    source.parser.Register("node", KeywordLog::Take);
    source.parser.RegisterUnknownKeywordCallback(KeywordLog::Unknown);
    KOVString keyword("*XyZ");
    EXPECT_EQ(source.parser.Lookup(keyword), KeywordLog::Unknown);
    EXPECT_EQ(keyword, "xyz");
    keyword = "*OD";
    EXPECT_EQ(source.parser.Lookup(keyword), KeywordLog::Take);
    EXPECT_EQ(keyword, "node");
}
