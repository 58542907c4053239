// What is wrong with a deck is told with its file, its line, and what was expected; nothing of the
// deck is kept.

#include <gtest/gtest.h>

#include <string>

#include "InMemory.h"

namespace kov::test {
namespace {

struct ErrorCase {
    char const* name;
    std::string deck;
    char const* error;
};

void PrintTo(ErrorCase const& c, std::ostream* out) { *out << c.name; }

class DeckErrors : public ::testing::TestWithParam<ErrorCase> {};

std::string const kNodes =
    "*NODE\n1, 0, 0, 0\n2, 1, 0, 0\n3, 1, 1, 0\n4, 0, 1, 0\n";  // lines 1 to 5

ErrorCase const kCases[] = {
    // ---- lines outside keywords ----
    {"DataFirst", "1, 2\n*NODE\n",
     "deck.inp:1: a data line before the first keyword; expected a keyword line, such as *NODE"},
    {"DataFirstBehindComments", "** c\n\n  5\n",
     "deck.inp:3: a data line before the first keyword; expected a keyword line, such as *NODE"},
    {"ZeroByte", std::string("*NODE\n1,0\0,0\n", 13), "deck.inp:2: a zero byte; expected text"},
    {"LongKeywordLine", "*NODE, NSET=" + std::string(300, 'x') + "\n1\n",
     "deck.inp:1: a keyword line of more than 255 characters; break it behind a comma"},
    {"AmbiguousKeyword", "*SET, NSET=A\n1\n",
     "deck.inp:1: keyword *SET fits several; expected one written out"},
    // ---- parameters ----
    {"UnknownParameter", "*NODE, COLOUR=RED\n",
     "deck.inp:1: *NODE has no parameter 'COLOUR'; expected NSET, SYSTEM"},
    {"ParameterTwice", "*NODE, NSET=A, nset=B\n",
     "deck.inp:1: parameter NSET is given twice; expected it once"},
    {"ParameterTwiceShortened", "*ELEMENT, TYPE=S4, TYP=S4\n",
     "deck.inp:1: parameter TYPE is given twice; expected it once"},
    {"ParameterWithoutValue", "*NODE, NSET\n",
     "deck.inp:1: parameter NSET has no value; expected NSET=..."},
    {"ParameterWithEmptyValue", "*NODE, NSET=\n",
     "deck.inp:1: parameter NSET has no value; expected NSET=..."},
    {"OpenQuote", "*NODE, NSET=\"A\n", "deck.inp:1: the quotes of parameter NSET are not closed"},
    {"DataTakenForParameters", "*NODE,\n1, 0, 0\n",
     "deck.inp:1: *NODE has no parameter '1'; expected NSET, SYSTEM"},
    {"NoneAllowed", "*HEADING, A=1\n", "deck.inp:1: *HEADING has no parameter 'A'; expected none"},
    // ---- nodes ----
    {"NodeLabelIsText", "*NODE\nabc, 0\n",
     "deck.inp:2: 'abc' is no whole number; expected a node label"},
    {"NodeLabelIsReal", "*NODE\n1.5, 0\n",
     "deck.inp:2: '1.5' is no whole number; expected a node label"},
    {"NodeLabelIsMissing", "*NODE\n, 1, 2\n",
     "deck.inp:2: a node label is missing; expected LABEL, X, Y, Z"},
    {"NodeLabelIsZero", "*NODE\n0, 1, 2\n",
     "deck.inp:2: '0' is out of range; expected a node label from 1 to 2147483647"},
    {"NodeLabelIsNegative", "*NODE\n-4\n",
     "deck.inp:2: '-4' is out of range; expected a node label from 1 to 2147483647"},
    {"NodeLabelIsTooLarge", "*NODE\n2147483648\n",
     "deck.inp:2: '2147483648' is out of range; expected a node label from 1 to 2147483647"},
    {"CoordinateIsText", "*NODE\n1, 0, x1, 0\n",
     "deck.inp:2: 'x1' is no number; expected a coordinate"},
    {"CoordinateHasABlank", "*NODE\n1, 0, 1 5, 0\n",
     "deck.inp:2: '1 5' is no number; expected a coordinate"},
    {"CoordinateIsNan", "*NODE\n1, nan\n", "deck.inp:2: 'nan' is no number; expected a coordinate"},
    {"CoordinateIsInfinite", "*NODE\n1, -inf\n",
     "deck.inp:2: '-inf' is no number; expected a coordinate"},
    {"CoordinateIsTooLarge", "*NODE\n1, 1e999\n",
     "deck.inp:2: '1e999' is too large a number; expected a coordinate"},
    {"TooManyFields", "*NODE\n1, 1, 2, 3, 0, 0, 1, 9\n",
     "deck.inp:2: '9' is one field too many; expected LABEL, X, Y, Z"},
    {"NormalIsText", "*NODE\n1, 1, 2, 3, x\n",
     "deck.inp:2: 'x' is no number; expected a direction cosine"},
    {"UnknownSystem", "*NODE, SYSTEM=Q\n1\n",
     "deck.inp:1: 'Q' is no coordinate system; expected SYSTEM=R, C or S"},
    {"NodeTwiceWithOtherData", kNodes + "** comment\n3, 1, 1, 0.5\n",
     "deck.inp:7: node 3 is defined a second time with other coordinates; expected each label "
     "once"},
    {"KeywordLikeDataLine", "*NODE\n*1, 0, 0\n",
     "deck.inp:2: '*1' is no whole number; expected a node label"},
    // ---- elements ----
    {"NoType", kNodes + "*ELEMENT, ELSET=A\n1, 1, 2, 3, 4\n",
     "deck.inp:6: *ELEMENT without TYPE; expected *ELEMENT, TYPE=..."},
    {"UnknownType", kNodes + "*ELEMENT, TYPE=C3D9\n1, 1\n",
     "deck.inp:6: element type 'C3D9' is not known; expected a type such as C3D8R, S4R or B31"},
    {"UndefinedNode", kNodes + "*ELEMENT, TYPE=S4\n7, 1, 2, 3, 9\n8, 1, 2, 3, 4\n",
     "deck.inp:7: element 7 names node 9, which is not defined; expected nodes of the deck"},
    {"UndefinedNodeOnAContinuation", kNodes + "*ELEMENT, TYPE=S4\n8, 1, 2, 3, 4\n7, 1, 2,\n 3, 9\n",
     "deck.inp:8: element 7 names node 9, which is not defined; expected nodes of the deck"},
    {"ElementTwice", kNodes + "*ELEMENT, TYPE=S4\n7, 1, 2, 3, 4\n7, 1, 2, 3, 4\n",
     "deck.inp:8: element 7 is defined a second time; expected each label once"},
    {"ElementTwiceInAForwardBlock", "*ELEMENT, TYPE=S3\n7, 1, 2, 3\n7, 1, 2, 3\n" + kNodes,
     "deck.inp:3: element 7 is defined a second time; expected each label once"},
    {"TooFewNodes", kNodes + "*ELEMENT, TYPE=S4\n7, 1, 2, 3\n8, 1, 2, 3, 4\n",
     "deck.inp:7: element 7 has 3 nodes; expected 4 nodes for type S4"},
    {"TooFewNodesAtTheEnd", kNodes + "*ELEMENT, TYPE=S4\n7, 1, 2, 3,\n",
     "deck.inp:7: element 7 has 3 nodes; expected 4 nodes for type S4"},
    {"TooFewNodesBeforeAKeyword", kNodes + "*ELEMENT, TYPE=S4\n7, 1,\n*NSET, NSET=A\n",
     "deck.inp:7: element 7 has 1 node; expected 4 nodes for type S4"},
    {"NoNodes", kNodes + "*ELEMENT, TYPE=MASS\n7\n",
     "deck.inp:7: element 7 has 0 nodes; expected 1 node for type MASS"},
    {"TooManyNodes", kNodes + "*ELEMENT, TYPE=S3\n7, 1, 2, 3, 4\n",
     "deck.inp:7: element 7 has more than 3 nodes; expected 3 nodes for type S3"},
    {"MissingNode", kNodes + "*ELEMENT, TYPE=S3\n7, 1, , 3\n",
     "deck.inp:7: a node label is missing; expected LABEL, NODE, NODE, ..."},
    {"NodeIsText", kNodes + "*ELEMENT, TYPE=S3\n7, 1, b, 3\n",
     "deck.inp:7: 'b' is no whole number; expected a node label"},
    {"ElementLabelIsText", kNodes + "*ELEMENT, TYPE=S3\nx, 1, 2, 3\n",
     "deck.inp:7: 'x' is no whole number; expected an element label"},
    // ---- sets ----
    {"SetWithoutName", kNodes + "*NSET\n1\n",
     "deck.inp:6: *NSET without NSET; expected *NSET, NSET=..."},
    {"SetNamesUndefinedNode", kNodes + "*NSET, NSET=A\n1, 2\n3, 9\n",
     "deck.inp:8: node set 'A' names node 9, which is not defined; expected nodes of the deck"},
    {"SetNamesUndefinedElement", kNodes + "*ELSET, ELSET=A\n1\n",
     "deck.inp:7: element set 'A' names element 1, which is not defined; expected elements of the "
     "deck"},
    {"SetNamesUnknownSet", kNodes + "*NSET, NSET=A\n1, NOWHERE\n",
     "deck.inp:7: 'NOWHERE' is neither a node label nor the name of a set; expected nodes or node "
     "sets of the deck"},
    {"NodeSetNamesElementSet", kNodes + "*ELSET, ELSET=E\n*NSET, NSET=A\nE\n",
     "deck.inp:8: 'E' is neither a node label nor the name of a set; expected nodes or node sets "
     "of the deck"},
    {"SetNamesItselfInARing", kNodes + "*NSET, NSET=A\nB\n*NSET, NSET=B\nA\n",
     "deck.inp:9: set 'A' is defined by itself; expected no cycle"},
    {"RangeNamesUndefinedNode", kNodes + "*NSET, NSET=A, GENERATE\n1, 3, 1\n2, 6, 2\n",
     "deck.inp:8: node set 'A' names node 6, which is not defined; expected nodes of the deck"},
    {"GenerateWithValue", kNodes + "*NSET, NSET=A, GENERATE=NO\n1, 3, 1\n",
     "deck.inp:6: parameter GENERATE has the value 'NO'; expected GENERATE alone"},
    {"InternalWithValue", "*ELSET, ELSET=A, INTERNAL=YES\n",
     "deck.inp:1: parameter INTERNAL has the value 'YES'; expected INTERNAL alone"},
    {"UnsortedWithEmptyValue", kNodes + "*NSET, NSET=A, UNSORTED=\n1\n",
     "deck.inp:6: parameter UNSORTED has the value ''; expected UNSORTED alone"},
    {"InternalSurfaceWithValue", "*SURFACE, NAME=S, INTERNAL=\"a b\"\n",
     "deck.inp:1: parameter INTERNAL has the value 'a b'; expected INTERNAL alone"},
    {"RangeBackwards", kNodes + "*NSET, NSET=A, GENERATE\n3, 1\n",
     "deck.inp:7: the range ends at 1, before it begins at 3; expected FIRST, LAST, INCREMENT"},
    {"RangeWithoutEnd", kNodes + "*NSET, NSET=A, GENERATE\n3\n",
     "deck.inp:7: a node label is missing; expected FIRST, LAST, INCREMENT"},
    {"RangeWithZeroIncrement", kNodes + "*NSET, NSET=A, GENERATE\n1, 3, 0\n",
     "deck.inp:7: '0' is out of range; expected an increment from 1 to 2147483647"},
    {"RangeWithFourFields", kNodes + "*NSET, NSET=A, GENERATE\n1, 3, 1, 1\n",
     "deck.inp:7: more than three fields with GENERATE; expected FIRST, LAST, INCREMENT"},
    {"SetLabelIsNegative", kNodes + "*NSET, NSET=A\n-1\n",
     "deck.inp:7: '-1' is out of range; expected a node label from 1 to 2147483647"},
    {"SetNameWithOpenQuote", kNodes + "*NSET, NSET=A\n\"B\n",
     "deck.inp:7: the quotes of a set's name are not closed"},
    // ---- includes ----
    {"IncludeWithoutInput", "*INCLUDE\n",
     "deck.inp:1: *INCLUDE without INPUT; expected *INCLUDE, INPUT=..."},
    {"MissingInclude", "*HEADING\nx\n*INCLUDE, INPUT=none.inp\n",
     "deck.inp:3: included file 'none.inp' cannot be opened: No such file or directory"},
    {"IncludeOfItself", "*INCLUDE, INPUT=deck.inp\n",
     "deck.inp:1: included file 'deck.inp' includes itself; expected no cycle"},
    {"DataBehindInclude", "*INCLUDE, INPUT=sub/empty.inp\n1, 2\n",
     "deck.inp:2: a data line behind *INCLUDE; expected a keyword"},
    {"IncludeRing", "*INCLUDE, INPUT=sub/ring.inp\n",
     "sub/ring2.inp:2: included file '../deck.inp' includes itself; expected no cycle"},
    {"ErrorInInclude", "*INCLUDE, INPUT=\"sub/bad file.inp\"\n",
     "sub/bad file.inp:2: 'x' is no whole number; expected a node label"},
    {"ForwardErrorInInclude", "*INCLUDE, INPUT=sub/forward.inp\n" + kNodes,
     "sub/forward.inp:3: element 2 names node 8, which is not defined; expected nodes of the deck"},
    {"IncludeOfData", "*NODE\n*INCLUDE, INPUT=sub/data.inp\n",
     "sub/data.inp:1: a data line before the first keyword; expected a keyword line, such as "
     "*NODE"},
};

TEST_P(DeckErrors, NameFileAndLine) {
    InMemory deck(GetParam().deck);
    deck.File("sub/empty.inp", "")
        .File("sub/ring.inp", "*INCLUDE, INPUT=ring2.inp\n")
        .File("sub/ring2.inp", "** c\n*INCLUDE, INPUT=../deck.inp\n")
        .File("sub/bad file.inp", "*NODE\nx, 1\n")
        .File("sub/forward.inp", "*ELEMENT, TYPE=B31\n1, 1, 2\n2, 1, 8\n")
        .File("sub/data.inp", "1, 2, 3\n");
    EXPECT_EQ(deck.Error(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(Cases, DeckErrors, ::testing::ValuesIn(kCases),
                         [](auto const& test) { return std::string(test.param.name); });

TEST(DeckErrorsStrict, AnUnknownKeywordIsAnError) {
    InMemory deck("*NODE\n1\n*STEP, NLGEOM\n5, 6\n");
    EXPECT_EQ(deck.Error({.strict = true, .progress = {}}),
              "deck.inp:3: keyword *STEP is not known; expected known keywords only");
    EXPECT_EQ(deck.Error(), "");
    EXPECT_EQ(deck.summary.unknownKeywords, (std::map<std::string, long>{{"*STEP", 1}}));
}

TEST(DeckErrorsDepth, IncludesNestOnlySoDeep) {
    InMemory deck("*INCLUDE, INPUT=1.inp\n");
    for (int i = 1; i <= 64; ++i) {
        deck.File(std::to_string(i) + ".inp",
                  "*INCLUDE, INPUT=" + std::to_string(i + 1) + ".inp\n");
    }
    deck.File("65.inp", "");
    EXPECT_EQ(deck.Error(),
              "63.inp:1: included file '64.inp' lies more than 64 files deep; expected fewer");
    deck.File("63.inp", "");
    EXPECT_EQ(deck.Error(), "");
}

TEST(DeckErrorsDepth, ForwardSetsChainOnlySoFar) {
    std::string text = "*NODE\n1\n";
    for (int i = 0; i < 200; ++i) {
        text += "*NSET, NSET=S" + std::to_string(i) + "\nS" + std::to_string(i + 1) + "\n";
    }
    text += "*NSET, NSET=S200\n1\n";
    EXPECT_EQ(InMemory(text).Error(),
              "deck.inp:132: set 'S65' is reached through more than 64 sets defined later; "
              "expected fewer");
}

TEST(DeckErrorsMain, AMissingDeckIsNamed) {
    InMemory deck("");
    deck.files.texts.clear();
    EXPECT_EQ(deck.Error(), "deck.inp: cannot be opened: No such file or directory");
}

}  // namespace
}  // namespace kov::test
