// Distributions of decks, as they stand in documents, and the errors that they end with.
#include "Distributions.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "DistributionFixture.h"
#include "InMemory.h"

namespace kov::test {
namespace {

using Numbers = std::vector<double>;

// Elements 0 to 4 have the labels 10 to 50. The next line is the 12th.
std::string const kMesh =
    "*NODE\n1\n2, 1\n*ELEMENT, TYPE=T3D2, ELSET=All\n10, 1, 2\n20, 1, 2\n30, 1, 2\n40, 1, 2\n"
    "50, 1, 2\n*DISTRIBUTION TABLE, NAME=T\nLENGTH\n";
std::string const kHead = "*DISTRIBUTION, NAME=D, LOCATION=ELEMENT, TABLE=T\n";

class Distributions : public DistributionTest {};
KOV_DOCUMENT_TESTS(Distributions);

TEST_P(Distributions, ElementsHaveTheirValuesAndTheDefault) {
    Translate(kMesh + kHead + ", 0.25\n20, 1.5\n40, -2D1\n");
    EXPECT_EQ(Stored(), (StoredField{{{1, {1.5}}, {3, {-20}}}, {0.25}, 1, "LENGTH", {"LENGTH"}}));
    EXPECT_EQ(ReadByElement(), (Numbers{0.25, 1.5, 0.25, -20, 0.25}));
    EXPECT_EQ(summary.distributions, 1U);
    EXPECT_TRUE(summary.notes.empty());
    EXPECT_TRUE(summary.unknownKeywords.empty());
}

TEST_P(Distributions, WithoutDefaultTheTableHoldsZeros) {
    Translate(kMesh + kHead + "10, 1\n");
    EXPECT_EQ(Stored(), (StoredField{{{0, {1}}}, {0}, 0, "LENGTH", {"LENGTH"}}));
}

TEST_P(Distributions, ADefaultAloneIsReadForEveryElement) {
    Translate(kMesh + kHead + ", 3\n");
    EXPECT_EQ(Stored(), (StoredField{{}, {3}, 1, "LENGTH", {"LENGTH"}}));
    EXPECT_EQ(ReadByElement(), Numbers(5, 3.0));
}

TEST_P(Distributions, TheDefaultMayStandAnywhere) {
    Translate(kMesh + kHead + "10, 1\n , 7\n20, 2\n");
    EXPECT_EQ(ReadByElement(), (Numbers{1, 2, 7, 7, 7}));
}

TEST_P(Distributions, ElementsComeInAnyOrder) {
    Translate(kMesh + kHead + "40, 4\n10, 1\n50, 5\n20, 2\n30, 3\n");
    EXPECT_EQ(ReadByElement(), (Numbers{1, 2, 3, 4, 5}));
}

TEST_P(Distributions, SetsGiveTheirValueToAllMembers) {
    Translate(kMesh + "*ELSET, ELSET=\"Odd ones\"\n10, 30, 50\n" + kHead +
              "20, 2\n\"Odd ones\", 1\n40, 4\n");
    EXPECT_EQ(ReadByElement(), (Numbers{1, 2, 1, 4, 1}));
}

TEST_P(Distributions, ASetNamesAnElementTwiceAndGivesItOneValue) {
    Translate(kMesh + "*ELSET, ELSET=E\n10, 10, 20\n*ELSET, ELSET=E, GENERATE\n10, 30, 10\n" +
              kHead + "E, 1\n");
    EXPECT_EQ(Stored().values, (FieldValues{{0, {1}}, {1, {1}}, {2, {1}}}));
}

TEST_P(Distributions, AnEmptySetGivesNothing) {
    Translate(kMesh + "*ELSET, ELSET=E\n" + kHead + "E, 1\n");
    EXPECT_EQ(Stored().values, FieldValues{});
}

TEST_P(Distributions, SetsMayBeDefinedAndGrowFurtherOn) {
    Translate(kMesh + "*ELSET, ELSET=Grows\n10\n" + kHead +
              "Later, 2\nGrows, 1\n, 9\n50, 5\n*ELSET, ELSET=Grows\n20, Far\n"
              "*ELSET, ELSET=Later\n30\n*ELSET, ELSET=Far\n40\n");
    EXPECT_EQ(Stored().values, (FieldValues{{0, {1}}, {1, {1}}, {2, {2}}, {3, {1}}, {4, {5}}}));
    EXPECT_EQ(Stored().defaults, Numbers{9});
}

TEST_P(Distributions, ElementsAndTableMayBeDefinedFurtherOn) {
    Translate(kHead + "20, 2\n10, 1\n*DISTRIBUTION, NAME=Other, LOCATION=ELEMENT, TABLE=T\n, 4\n" +
              kMesh);
    EXPECT_EQ(ReadByElement("D"), (Numbers{1, 2, 0, 0, 0}));
    EXPECT_EQ(ReadByElement("Other"), Numbers(5, 4.0));
    EXPECT_EQ(summary.distributions, 2U);
}

TEST_P(Distributions, ElementsBehindTheDistributionWaitForThem) {
    Translate(kMesh + kHead + ", 3\n10, 1\n60, 6\n20, 2\n*ELEMENT, TYPE=T3D2\n60, 1, 2\n");
    EXPECT_EQ(ReadByElement(), (Numbers{1, 2, 3, 3, 3, 6}));
}

TEST_P(Distributions, TablesSayWhatTheNumbersAre) {
    Translate(
        kMesh +
        "*distribution table, name=Axes\ncoord3d,\n, Angle\n"
        "*distribution, name=D, location=Element, table=aXES\n, 1, 2, 3, 4\n10, 5, 6, 7, 8\n");
    EXPECT_EQ(Stored(), (StoredField{{{0, {5, 6, 7, 8}}},
                                     {1, 2, 3, 4},
                                     1,
                                     "COORD3D ANGLE",
                                     {"COORD3D", "COORD3D", "COORD3D", "ANGLE"}}));
}

TEST_P(Distributions, ATableMayHaveAsManyColumnsAsDocumentsHave) {
    std::string words;
    std::string values;
    for (int i = 0; i < 64; ++i) {
        words += "MODULUS" + std::string(i % 8 == 7 ? "\n" : ",");
        values += ", " + std::to_string(i);
    }
    Translate(kMesh + "*DISTRIBUTION TABLE, NAME=Wide\n" + words +
              "*DISTRIBUTION, NAME=D, LOCATION=ELEMENT, TABLE=Wide\n10" + values + "\n");
    EXPECT_EQ(Stored().values[0].size(), 64U);
    EXPECT_EQ(Stored().values[0][63], 63);
}

TEST_P(Distributions, NodesAreNoLocationForThem) {
    Translate(kMesh + "*DISTRIBUTION, NAME=D, LOCATION=NODE, TABLE=T\n1, 2\n" + kHead + "10, 1\n");
    EXPECT_EQ(summary.notes, (std::map<std::string, long>{
                                 {"distributions at another location than ELEMENT, not kept", 1}}));
    EXPECT_EQ(summary.distributions, 1U);
    EXPECT_EQ(Stored().values.size(), 1U);
}

TEST_P(Distributions, EachInstanceHasThoseOfItsPart) {
    Translate(
        "*DISTRIBUTION TABLE, NAME=Deck\nANGLE\n*PART, NAME=P\n*NODE\n1\n2, 1\n"
        "*ELEMENT, TYPE=T3D2, ELSET=E\n7, 1, 2\n8, 1, 2\n"
        "*DISTRIBUTION, NAME=D, LOCATION=ELEMENT, TABLE=Deck\nE, 45\n"
        "*DISTRIBUTION, NAME=Own, LOCATION=ELEMENT, TABLE=T\n8, 1\n"
        "*DISTRIBUTION TABLE, NAME=T\nLENGTH\n*END PART\n*ASSEMBLY, NAME=A\n"
        "*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n*INSTANCE, NAME=J, PART=P\n*END INSTANCE\n"
        "*END ASSEMBLY\n");
    EXPECT_EQ(Stored("I_D").values, (FieldValues{{0, {45}}, {1, {45}}}));
    EXPECT_EQ(Stored("J_D").values, (FieldValues{{2, {45}}, {3, {45}}}));
    EXPECT_EQ(Stored("I_Own").values, (FieldValues{{1, {1}}}));
    EXPECT_EQ(Stored("J_Own").values, (FieldValues{{3, {1}}}));
    EXPECT_EQ(Stored("I_D").words, "ANGLE");
    EXPECT_EQ(summary.distributions, 4U);
}

std::string const kAssembly =
    "*PART, NAME=P\n*NODE\n1\n2, 1\n*ELEMENT, TYPE=T3D2, ELSET=E\n7, 1, 2\n8, 1, 2\n"
    "*END PART\n*DISTRIBUTION TABLE, NAME=T\nLENGTH\n*ASSEMBLY, NAME=A\n"
    "*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n";

TEST_P(Distributions, OfAnAssemblyNameElementsAndSetsOfInstances) {
    Translate(kAssembly + kHead + "I.8, 1\nK.E, 3\nJ.7, 2\n, 9\n" +
              "*INSTANCE, NAME=J, PART=P\n*END INSTANCE\n*INSTANCE, NAME=K, PART=P\n"
              "*END INSTANCE\n*END ASSEMBLY\n");
    EXPECT_EQ(ReadByElement(), (Numbers{9, 1, 2, 9, 3, 3}));
}

TEST_P(Distributions, OfMoreThanOneBlockKeepAllValues) {
    int const elements = 2 * tool::RowsInBlock(1) + 5000;
    std::string mesh = "*NODE\n1\n2, 1\n*ELEMENT, TYPE=T3D2, ELSET=All\n";
    std::string rising = kHead, falling = kHead, shuffled = kHead;
    rising.replace(rising.find("=D"), 2, "=R");
    falling.replace(falling.find("=D"), 2, "=F");
    Numbers expected;
    auto const row = [](int element) {
        return std::to_string(element + 1) + "," + std::to_string(element) + ".5\n";
    };
    for (int i = 0; i < elements; ++i) {
        mesh += std::to_string(i + 1) + ",1,2\n";
        rising += row(i);
        falling += row(elements - 1 - i);
        shuffled += row(static_cast<int>((7919LL * i) % elements));
        expected.push_back(i + 0.5);
    }
    Translate(mesh + "*DISTRIBUTION TABLE, NAME=T\nLENGTH\n" + rising + falling + shuffled +
              "*DISTRIBUTION, NAME=S, LOCATION=ELEMENT, TABLE=T\nAll, 4\n");
    EXPECT_EQ(ReadByElement("R"), expected);
    EXPECT_EQ(ReadByElement("F"), expected);
    EXPECT_EQ(ReadByElement("D"), expected);
    EXPECT_EQ(ReadByElement("S"), Numbers(expected.size(), 4.0));
    EXPECT_EQ(test::Stored(Field("S")).values.size(), expected.size());
}

// Rows in any order are gathered for longer, so that it takes more of them for several blocks.
TEST_P(Distributions, OfMoreThanOneBlockInAnyOrderKeepAllValues) {
    int const elements = 20 * tool::RowsInBlock(64);
    std::string mesh = "*NODE\n1\n2, 1\n*ELEMENT, TYPE=T3D2\n";
    std::string words, rows = kHead;
    for (int i = 0; i < 64; ++i) words += "MODULUS,\n";
    FieldValues expected;
    for (int i = 0; i < elements; ++i) {
        mesh += std::to_string(i + 1) + ",1,2\n";
        int const element = static_cast<int>((7919LL * i) % elements);
        rows += std::to_string(element + 1);
        for (int j = 0; j < 64; ++j) {
            rows += ',' + std::to_string((element + j) % 10);
            expected[element].push_back((element + j) % 10);
        }
        rows += '\n';
    }
    Translate(mesh + "*DISTRIBUTION TABLE, NAME=T\n" + words + rows);
    EXPECT_TRUE(Stored().values == expected);
}

// ---- what is wrong ----

struct Wrong {
    char const* name;
    std::string deck;
    std::string error;
};
class DistributionErrors : public testing::TestWithParam<Wrong> {};

TEST_P(DistributionErrors, AreToldWithFileAndLine) {
    EXPECT_EQ(InMemory(GetParam().deck).Error(), GetParam().error);
}

std::string const kTwelve = "deck.inp:12: ";
std::string const kThirteen = "deck.inp:13: ";
std::string const kFourteen = "deck.inp:14: ";

INSTANTIATE_TEST_SUITE_P(
    Decks, DistributionErrors,
    testing::Values(
        Wrong{"UnknownTable", kMesh + "*DISTRIBUTION, NAME=D, LOCATION=ELEMENT, TABLE=T1\n10, 1\n",
              kTwelve +
                  "'T1' is no distribution table; expected a *DISTRIBUTION TABLE of the deck; "
                  "did you mean 'T'?"},
        Wrong{"TableOfAPartOnly",
              "*PART, NAME=P\n*NODE\n1\n2, 1\n*ELEMENT, TYPE=T3D2\n7, 1, 2\n" + kHead +
                  "7, 1\n*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n"
                  "*END ASSEMBLY\n",
              "deck.inp:7: 'T' is no distribution table; expected a *DISTRIBUTION TABLE of "
              "instance 'I' or the deck"},
        Wrong{"NoTable", kMesh + "*DISTRIBUTION, NAME=D, LOCATION=ELEMENT\n10, 1\n",
              kTwelve + "*DISTRIBUTION without TABLE; expected *DISTRIBUTION, TABLE=..."},
        Wrong{"NoName", kMesh + "*DISTRIBUTION, LOCATION=ELEMENT, TABLE=T\n10, 1\n",
              kTwelve + "*DISTRIBUTION without NAME; expected *DISTRIBUTION, NAME=..."},
        Wrong{"NoLocation", kMesh + "*DISTRIBUTION, NAME=D, TABLE=T\n10, 1\n",
              kTwelve + "*DISTRIBUTION without LOCATION; expected *DISTRIBUTION, LOCATION=..."},
        Wrong{"NoNameOfATable", kMesh + "*DISTRIBUTION TABLE\nLENGTH\n",
              kTwelve + "*DISTRIBUTION TABLE without NAME; expected *DISTRIBUTION TABLE, NAME=..."},
        Wrong{"NoData", kMesh + kHead,
              kTwelve +
                  "*DISTRIBUTION without a data line; expected ELEMENT OR ELEMENT SET, VALUE, "
                  "..."},
        Wrong{"NoWords", kMesh + "*DISTRIBUTION TABLE, NAME=U\n",
              kTwelve + "*DISTRIBUTION TABLE without a data line; expected words such as LENGTH, "
                        "ANGLE or COORD3D"},
        Wrong{"BlankWords", kMesh + "*DISTRIBUTION TABLE, NAME=U\n,,\n",
              kTwelve + "*DISTRIBUTION TABLE without a data line; expected words such as LENGTH, "
                        "ANGLE or COORD3D"},
        Wrong{"NoWord", kMesh + "*DISTRIBUTION TABLE, NAME=U\nANGLE, 0.5\n",
              kThirteen + "'0.5' is no quantity; expected words such as LENGTH, ANGLE or COORD3D"},
        Wrong{"WordOfAnotherKind", kMesh + "*DISTRIBUTION TABLE, NAME=U\n\"A B\"\n",
              kThirteen +
                  "'\"A B\"' is no quantity; expected words such as LENGTH, ANGLE or COORD3D"},
        Wrong{"TooManyNumbers",
              kMesh + "*DISTRIBUTION TABLE, NAME=U\n" +
                  [] {
                      std::string words;
                      for (int i = 0; i < 22; ++i) words += "COORD3D,";
                      return words;
                  }() +
                  "\n",
              kThirteen + "more than 64 numbers for an element; expected fewer"},
        Wrong{"TableTwice", kMesh + "*DISTRIBUTION TABLE, NAME=t\nANGLE\n",
              kTwelve + "distribution table 't' is defined a second time, first at line 10; "
                        "expected each name once"},
        Wrong{"DistributionTwice",
              kMesh + kHead + "10, 1\n*DISTRIBUTION, NAME=d, LOCATION=ELEMENT, TABLE=T\n10, 1\n",
              kFourteen + "distribution 'd' is defined a second time, first at line 12; expected "
                          "each name once"},
        Wrong{"OneKeyForTwo",
              "*PART, NAME=P\n*NODE\n1\n2, 1\n*ELEMENT, TYPE=T3D2\n7, 1, 2\n"
              "*DISTRIBUTION TABLE, NAME=T\nLENGTH\n" +
                  kHead +
                  "7, 1\n*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n"
                  "*END INSTANCE\n*DISTRIBUTION TABLE, NAME=I_T\nLENGTH\n"
                  "*DISTRIBUTION, NAME=I_D, LOCATION=ELEMENT, TABLE=I_T\nI.7, 1\n*END ASSEMBLY\n",
              "deck.inp:17: distribution 'I_D' and distribution 'D' of instance 'I' both have the "
              "key 'I_D'; expected names that differ"}),
    [](auto const& deck) { return std::string(deck.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Lines, DistributionErrors,
    testing::Values(
        Wrong{"NoValue", kMesh + kHead + "10\n", kThirteen + "0 values; expected 1 for LENGTH"},
        Wrong{"NoDefault", kMesh + kHead + ",\n", kThirteen + "0 values; expected 1 for LENGTH"},
        Wrong{"TooFew",
              kMesh + "*DISTRIBUTION TABLE, NAME=U\nCOORD3D\n"
                      "*DISTRIBUTION, NAME=D, LOCATION=ELEMENT, TABLE=U\n10, 1\n",
              "deck.inp:15: 1 value; expected 3 for COORD3D"},
        Wrong{"TooManyOfOne", kMesh + kHead + "10, 1, 2\n",
              kThirteen + "more than 1 value; expected 1 for LENGTH"},
        Wrong{"TooMany",
              kMesh + "*DISTRIBUTION TABLE, NAME=U\nCOORD3D, ANGLE\n"
                      "*DISTRIBUTION, NAME=D, LOCATION=ELEMENT, TABLE=U\n, 1, 2, 3, 4, 5\n",
              "deck.inp:15: more than 4 values; expected 4 for COORD3D ANGLE"},
        Wrong{"Blank",
              kMesh + "*DISTRIBUTION TABLE, NAME=U\nCOORD3D\n"
                      "*DISTRIBUTION, NAME=D, LOCATION=ELEMENT, TABLE=U\n10, 1, , 3\n",
              "deck.inp:15: value 2 is missing; expected 3 for COORD3D"},
        Wrong{"NoNumber", kMesh + kHead + "10, thick\n",
              kThirteen + "'thick' is no number; expected a value"},
        Wrong{"Infinity", kMesh + kHead + "10, inf\n",
              kThirteen + "'inf' is no number; expected a value"},
        Wrong{"NotANumber", kMesh + kHead + ", NaN\n",
              kThirteen + "'NaN' is no number; expected a value"},
        Wrong{"TooLarge", kMesh + kHead + "10, 1e999\n",
              kThirteen + "'1e999' is too large a number; expected a value"},
        Wrong{"NoLabel", kMesh + kHead + "0, 1\n",
              kThirteen + "'0' is out of range; expected an element label from 1 to 2147483647"},
        Wrong{"LargeLabel", kMesh + kHead + "2147483648, 1\n",
              kThirteen + "'2147483648' is out of range; expected an element label from 1 to "
                          "2147483647"},
        Wrong{"UnknownElement", kMesh + kHead + "10, 1\n11, 1\n",
              kFourteen + "distribution 'D' names element 11, which is not defined; expected "
                          "elements of the deck"},
        Wrong{"UnknownSet", kMesh + kHead + "Al, 1\n",
              kThirteen + "'Al' is neither an element label nor the name of a set; expected "
                          "elements or element sets of the deck; did you mean 'All'?"},
        Wrong{"OpenQuotes", kMesh + kHead + "\"All, 1\n",
              kThirteen + "the quotes of a set's name are not closed"},
        Wrong{"TwoValues", kMesh + kHead + "10, 1\n20, 1\n10, 1\n",
              "deck.inp:15: element 10 has a second value in distribution 'D', first at line 13; "
              "expected one"},
        Wrong{"ThreeValues", kMesh + kHead + "20, 1\n10, 1\n10, 1\n20, 1\n10, 1\n",
              "deck.inp:15: element 10 has a second value in distribution 'D', first at line 14; "
              "expected one"},
        Wrong{"TwoValuesThroughASet", kMesh + kHead + "30, 1\n, 5\nAll, 1\n",
              "deck.inp:15: element 30 has a second value in distribution 'D', first at line 13; "
              "expected one"},
        Wrong{"TwoValuesThroughSets", kMesh + kHead + "All, 1\n, 5\n30, 1\n",
              "deck.inp:15: element 30 has a second value in distribution 'D', first at line 13; "
              "expected one"},
        Wrong{"TwoValuesOfALabelAndOnesBehind",
              kMesh + kHead + "60, 1\n10, 2\n10, 3\n*ELEMENT, TYPE=T3D2\n60, 1, 2\n",
              "deck.inp:15: element 10 has a second value in distribution 'D', first at line 14; "
              "expected one"},
        Wrong{"TwoDefaults", kMesh + kHead + ", 1\n10, 1\n, 1\n",
              "deck.inp:15: distribution 'D' has a second line of default values, first at line "
              "13; expected one"},
        Wrong{"TwoDefaultsAroundASet", kMesh + kHead + ", 1\nAll, 1\n, 1\n",
              "deck.inp:15: distribution 'D' has a second line of default values, first at line "
              "13; expected one"},
        Wrong{"ErrorBehindASet", kMesh + kHead + "All, 1\n60, x\n",
              kFourteen + "distribution 'D' names element 60, which is not defined; expected "
                          "elements of the deck"},
        Wrong{"ElementOfAnInstance", kAssembly + kHead + "I.9, 1\n*END ASSEMBLY\n",
              "deck.inp:15: instance 'I' has no element 9; expected elements of the instance"},
        Wrong{"TwoValuesOfAnInstance", kAssembly + kHead + "I.8, 1\nI.E, 2\n*END ASSEMBLY\n",
              "deck.inp:16: element 8 of instance 'I' has a second value in distribution 'D', "
              "first at line 15; expected one"},
        Wrong{"UnknownInstance", kAssembly + kHead + "J.8, 1\n*END ASSEMBLY\n",
              "deck.inp:15: 'J.8': instance 'J' is not there; expected an instance of the "
              "assembly"}),
    [](auto const& deck) { return std::string(deck.param.name); });

// The first value stands in a block that is written already: its line is found by reading again.
TEST(DistributionBlocks, ASecondValueInALaterBlockIsToldWithBothLines) {
    int const elements = tool::RowsInBlock(1) + 10;
    std::string deck = "*NODE\n1\n2, 1\n*ELEMENT, TYPE=T3D2\n";
    std::string values = "*DISTRIBUTION TABLE, NAME=T\nLENGTH\n" + kHead;
    for (int i = 1; i <= elements; ++i) {
        deck += std::to_string(i) + ",1,2\n";
        values += std::to_string(i) + ",1\n";
    }
    // Four lines of nodes and keyword, the elements, three lines before the values.
    int const before = 4 + elements + 3;
    std::string const at = "deck.inp:" + std::to_string(before + elements + 1);
    EXPECT_EQ(InMemory(deck + values + "77,1\n78,1\n").Error(),
              at + ": element 77 has a second value in distribution 'D', first at line " +
                  std::to_string(before + 77) + "; expected one");
}

TEST(DistributionsOfPipes, HaveLabelsButNoSets) {
    class Pipe : public tool::MemoryFiles {
        class Once : public tool::DeckFile {
          public:
            explicit Once(std::unique_ptr<tool::DeckFile> file) : m_file(std::move(file)) {}
            std::size_t Read(char* to, std::size_t size) override { return m_file->Read(to, size); }
            void Seek(std::int64_t) override { throw tool::Failure("cannot be read again"); }
            std::int64_t Size() const override { return -1; }

          private:
            std::unique_ptr<tool::DeckFile> m_file;
        };

      public:
        std::unique_ptr<tool::DeckFile> Open(std::string const& path) override {
            return std::make_unique<Once>(tool::MemoryFiles::Open(path));
        }
    };
    auto const error = [](std::string const& deck) -> std::string {
        Pipe files;
        files.texts["deck.inp"] = deck;
        KOVObjDocument const document = KOVObjDocument::CreateInMemory();
        KOVSimTransaction transaction(document.ContextID());
        try {
            tool::Translation(files, document, transaction, {}).Run("deck.inp");
        } catch (tool::Failure const& failure) {
            return failure.what();
        }
        return "";
    };
    EXPECT_EQ(error(kMesh + kHead + "10, 1\n"), "");
    EXPECT_EQ(error(kMesh + kHead + "10, 1\n10, 1\n"),
              "deck.inp:14: element 10 has a second value in distribution 'D', first at line 13; "
              "expected one");
    EXPECT_EQ(error(kMesh + kHead + "All, 1\n"),
              "deck.inp:13: distribution 'D' names a set, whose members are known at the end of "
              "the deck; expected "
              "a regular file, which can be read twice");
    EXPECT_EQ(error(kMesh + kHead + "60, 1\n"),
              "deck.inp:13: refers to what is not defined before; expected a regular file, which "
              "can be read twice");
}

}  // namespace
}  // namespace kov::test
