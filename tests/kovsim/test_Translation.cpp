#include "Translation.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "InMemory.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"

namespace kov::test {
namespace {

using Ints = std::vector<int>;
using Sets = std::map<std::string, Ints>;

std::string const kSquare = "*NODE\n10, 0, 0, 0\n20, 1, 0, 0\n30, 1, 1, 0\n40, 0, 1, 0\n";

TEST(Translation, AnEmptyDeckGivesAnEmptyModel) {
    InMemory deck("");
    deck.Translate();
    EXPECT_EQ(deck.summary.nodes, 0);
    EXPECT_EQ(deck.Nodes().Space(), 0);
    EXPECT_EQ(deck.Elements().Space(), 0);
    EXPECT_TRUE(deck.NodeSets().empty());
}

TEST(Translation, KeepsCoordinatesAndLabels) {
    InMemory deck("*NODE\n7, 1.5, -2D0, +3e-1\n3,,5\n  12 ,1.\r\n");
    deck.Translate();
    EXPECT_EQ(deck.Coordinates(), (std::vector<double>{1.5, -2, 0.3, 0, 5, 0, 1, 0, 0}));
    EXPECT_EQ(deck.NodeLabels(), (Ints{7, 3, 12}));
}

TEST(Translation, TurnsCoordinatesOfOtherSystems) {
    InMemory deck("*NODE, SYSTEM=C\n1, 2, 90, 5\n*NODE, SYSTEM=S\n2, 2, 90, 30\n");
    deck.Translate();
    std::vector<double> const xyz = deck.Coordinates();
    std::vector<double> const expected = {0, 2, 5, 0, 2 * 0.8660254037844387, 1};
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(xyz[i], expected[i], 1e-15) << i;
}

TEST(Translation, KeepsConnectivityAsOrdinals) {
    InMemory deck(kSquare +
                  "*ELEMENT, TYPE=S3\n5, 10, 20, 30\n*ELEMENT, TYPE=S4R\n4, 40, 30, 20, 10\n"
                  "*ELEMENT, TYPE=s3\n6, 30, 40, 10\n");
    deck.Translate();
    EXPECT_EQ(deck.NodesOf(0, 3), (Ints{0, 1, 2}));
    EXPECT_EQ(deck.NodesOf(1, 4), (Ints{3, 2, 1, 0}));
    EXPECT_EQ(deck.NodesOf(2, 3), (Ints{2, 3, 0}));
    EXPECT_EQ(deck.ElementLabels(), (Ints{5, 4, 6}));
    ASSERT_EQ(deck.summary.types.size(), 2U);
    EXPECT_EQ(deck.summary.types[0].name, "S3");
    EXPECT_EQ(deck.summary.types[0].count, 2);
    EXPECT_EQ(deck.summary.types[1].count, 1);
}

TEST(Translation, AssignsElementSpecifications) {
    InMemory deck(kSquare +
                  "*ELEMENT, TYPE=S3\n5, 10, 20, 30\n*ELEMENT, TYPE=S4R\n4, 40, 30, 20, 10\n"
                  "*ELEMENT, TYPE=S3\n6, 30, 40, 10\n");
    deck.Translate();
    auto const groups = tool::ElementGroups(deck.document);
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].name, "S3");
    EXPECT_EQ(groups[0].elements.Size(), 2);
    EXPECT_TRUE(groups[0].elements.Contains(0) && groups[0].elements.Contains(2));
    EXPECT_EQ(groups[0].shape, groups[0].type->shape);
    EXPECT_EQ(groups[1].name, "S4R");
    KOVSimPosition const found = deck.document.GetElementSpecCollection()
                                     .GetMap(schema::ElementSpecLib_elementSpecs())
                                     .Find("S4R");
    ASSERT_FALSE(found.IsNull());
    EXPECT_TRUE(found.Name(-1) == "S4R");
    EXPECT_EQ(deck.document.GetCMemberIndex(found), 1);
}

TEST(Translation, ElementsContinueOverLines) {
    std::string nodes = "*NODE\n";
    for (int i = 1; i <= 20; ++i) nodes += std::to_string(i) + "\n";
    std::string const full = "1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15";
    Ints expected(20);
    for (int i = 0; i < 20; ++i) expected[static_cast<std::size_t>(i)] = i;
    for (std::string const& element :
         {full + ",\n16, 17, 18, 19, 20", full + "\n 16, 17, 18, 19, 20,",
          full + ", \r\n** comment\n\n16,\n17, 18, 19, 20\r", full + ", 16, 17, 18, 19, 20"}) {
        InMemory deck(nodes + "*ELEMENT, TYPE=C3D20R\n" + element + "\n");
        EXPECT_EQ(deck.Error(), "");
        EXPECT_EQ(deck.NodesOf(0, 20), expected);
    }
}

TEST(Translation, SetsAreBuiltByListsRangesAndNames) {
    InMemory deck(
        kSquare +
        "*NSET, NSET=Left\n40, 10\n*NSET, NSET=right, GENERATE\n20, 30, 10\n"
        "*NSET, NSET=all\nLEFT, Right,\n*NSET, NSET=LEFT\n 20\n*NSET, NSET=\"two words\"\n"
        "\"LEFT\"\n*NSET, NSET=none\n");
    deck.Translate();
    EXPECT_EQ(deck.NodeSets(), (Sets{{"Left", {0, 1, 3}},
                                     {"right", {1, 2}},
                                     {"all", {0, 1, 2, 3}},
                                     {"two words", {0, 1, 3}},
                                     {"none", {}}}));
    EXPECT_EQ(deck.summary.nodeSets, 5U);
}

TEST(Translation, AReferenceGivesTheMembersThatASetHasAtThatPoint) {
    InMemory deck(kSquare + "*NSET, NSET=A\n10\n*NSET, NSET=B\nA\n*NSET, NSET=A\n20\n");
    deck.Translate();
    EXPECT_EQ(deck.NodeSets(), (Sets{{"A", {0, 1}}, {"B", {0}}}));
}

TEST(Translation, SetsOfNodeAndElementBlocksJoin) {
    InMemory deck(
        "*NODE, NSET=N\n1\n2\n*NODE\n3\n*NODE, NSET=n\n4\n2\n*ELEMENT, TYPE=T3D2, ELSET=\"My E\"\n"
        "8, 1, 2\n*ELEMENT, TYPE=B31, ELSET=my e\n9, 3, 4\n*ELEMENT, TYPE=B31, ELSET=\"MY e\"\n7, "
        "1, 3\n");
    deck.Translate();
    EXPECT_EQ(deck.NodeSets(), (Sets{{"N", {0, 1, 3}}}));
    EXPECT_EQ(deck.ElementSets(), (Sets{{"My E", {0, 2}}, {"mye", {1}}}));
}

TEST(Translation, ForwardReferencesAreReadInASecondPass) {
    InMemory deck(
        "*NSET, NSET=A\nB, 10\n*ELSET, ELSET=E\nF\n1, 2\n*NSET, NSET=B\n20\nC\n*NSET, NSET=C, "
        "GENERATE\n30, 40, 10\n"
        "*ELEMENT, TYPE=S3, ELSET=F\n2, 10, 20, 30\n1, 20, 30, 40\n" +
        kSquare + "*ELEMENT, TYPE=S3\n3, 10, 30, 40\n*NSET, NSET=D\nA\n");
    deck.Translate();
    EXPECT_EQ(deck.NodeSets(),
              (Sets{{"A", {0, 1, 2, 3}}, {"B", {1, 2, 3}}, {"C", {2, 3}}, {"D", {0, 1, 2, 3}}}));
    EXPECT_EQ(deck.ElementSets(), (Sets{{"E", {0, 1}}, {"F", {0, 1}}}));
    EXPECT_EQ(deck.ElementLabels(), (Ints{2, 1, 3}));
    EXPECT_EQ(deck.NodesOf(0, 3), (Ints{0, 1, 2}));
    EXPECT_EQ(deck.NodesOf(1, 3), (Ints{1, 2, 3}));
    EXPECT_EQ(deck.NodesOf(2, 3), (Ints{0, 2, 3}));
}

TEST(Translation, ABlockIsDeferredFromItsFirstForwardElementOn) {
    InMemory deck("*NODE\n1\n2\n*ELEMENT, TYPE=T3D2\n5, 1, 2\n6, 2,\n3\n7, 1, 2\n*NODE\n3\n");
    deck.Translate();
    EXPECT_EQ(deck.ElementLabels(), (Ints{5, 6, 7}));
    EXPECT_EQ(deck.NodesOf(1, 2), (Ints{1, 2}));
    EXPECT_EQ(deck.NodesOf(2, 2), (Ints{0, 1}));
}

TEST(Translation, IncludesAreRelativeToTheIncludingFile) {
    InMemory deck(
        "*HEADING\none\n*INCLUDE, INPUT=\"sub dir/a.inp\"\n*INCLUDE, INPUT=c.inp\n*NSET, "
        "NSET=S\n1, 2\n");
    deck.File("sub dir/a.inp", "*NODE\n1, 1\n*include, input=b.inp\n")
        .File("sub dir/b.inp", "*NODE\n2, 2\n*HEADING\n two\n")
        .File("c.inp", "** nothing\n");
    deck.Translate();
    EXPECT_EQ(deck.Coordinates(), (std::vector<double>{1, 0, 0, 2, 0, 0}));
    EXPECT_EQ(deck.summary.files, 4);
    KOVString heading;
    deck.document.GetModel().GetDataRecord().GetString(1, heading);
    EXPECT_STREQ(heading.TextOrEmpty(), "one\ntwo");
}

TEST(Translation, AFileMayBeIncludedTwiceSideBySide) {
    InMemory deck("*INCLUDE, INPUT=a.inp\n*INCLUDE, INPUT=a.inp\n");
    deck.File("a.inp", "*NODE\n1, 1, 2, 3\n2\n");
    EXPECT_EQ(deck.Error(), "");
    EXPECT_EQ(deck.summary.nodes, 2);
    EXPECT_EQ(deck.summary.repeatedNodes, 2);
}

TEST(Translation, UnknownKeywordsAreCountedAndPassedOver) {
    InMemory deck("*CREEP, NAME=\"Steel, hard\"\n*Viscous\n210000, 0.3\n" + kSquare +
                  "*Viscous\n*END STEP, " + std::string(300, 'x') + "*NODE\n 5\n");
    deck.Translate();
    EXPECT_EQ(deck.summary.unknownKeywords,
              (std::map<std::string, long>{{"*CREEP", 1}, {"*END STEP", 1}, {"*VISCOUS", 2}}));
    EXPECT_EQ(deck.summary.nodes, 4);
}

TEST(Translation, UnknownKeywordsAreShownAsTheyWereTypedFirst) {
    InMemory deck("* Rigid \t Body , X=1\n*RIGIDBODY\n*Rigid body\n*NODE\n1\n");
    deck.Translate();
    EXPECT_EQ(deck.summary.unknownKeywords, (std::map<std::string, long>{{"*RIGID BODY", 3}}));
    tool::TranslationOptions strict;
    strict.strict = true;
    EXPECT_EQ(deck.Error(strict),
              "deck.inp:1: keyword *RIGID BODY is not known; expected known keywords only");
}

TEST(Translation, AByteOrderMarkIsPassedOver) {
    std::string const mark = "\xef\xbb\xbf";
    // The set is read a second time, from the place where it stands.
    InMemory deck(mark + "*NSET, NSET=A\n2, B\n*NSET, NSET=B\n1\n*INCLUDE, INPUT=n.inp\n");
    deck.File("n.inp", mark + "*NODE\n1\n2\n").Translate();
    EXPECT_EQ(deck.NodeSets()["A"], (std::vector<int>{0, 1}));
    EXPECT_EQ(InMemory(mark).Error(), InMemory("").Error());
    EXPECT_EQ(InMemory(mark + "1, 2\n").Error().substr(0, 24), "deck.inp:1: a data line ");
    for (char const* start : {"\xef", "\xef\xbb", "\xef\xbb*NODE\n1\n", "\xef*NODE\n"}) {
        EXPECT_EQ(InMemory(start).Error().substr(0, 24), "deck.inp:1: a data line ");
    }
}

TEST(Translation, CarriageReturnsAloneAreRefused) {
    std::string const text =
        ":1: a carriage return alone ends a line; expected lines that end with a line feed";
    EXPECT_EQ(InMemory("*NODE\r1, 0\r*NSET, NSET=A\r1\r").Error(), "deck.inp" + text);
    EXPECT_EQ(InMemory("** c\r*NODE\r1, 0\r").Error(), "deck.inp" + text);
    EXPECT_EQ(InMemory("** c \r\r\n*NODE\r\n1, 0\r\n").Error(), "");
}

TEST(Translation, ControlCharactersInNamesAreRefused) {
    for (char const* name : {"a\x01"
                             "b",
                             "\"a\tb\"", "a\x7f"}) {
        EXPECT_EQ(InMemory(std::string("*NSET, NSET=") + name + "\n").Error(),
                  "deck.inp:1: a control character in parameter NSET; expected text without them");
    }
}

TEST(Translation, NormalsAreNotedAndLeftOut) {
    InMemory deck("*NODE\n1, 1, 2, 3, 0, 0, 1\n2, 1, 2, 3, 0,\n");
    deck.Translate();
    EXPECT_EQ(deck.summary.notes.size(), 1U);
    EXPECT_EQ(deck.summary.notes.begin()->second, 2);
}

TEST(Translation, LongLinesGiveTheSameAsShortOnes) {
    std::string nodes = "*NODE\n";
    std::string list;
    Ints expected;
    for (int i = 1; i <= 400; ++i) {
        nodes += std::to_string(1000 + i) + "\n";
        list += (i == 1 ? "" : ", ") + std::to_string(1000 + i);
        expected.push_back(i - 1);
    }
    InMemory deck(nodes + "*NSET, NSET=LONG\n" + list + "\n");
    deck.Translate();
    EXPECT_EQ(deck.NodeSets(), (Sets{{"LONG", expected}}));
}

TEST(Translation, WindowsLineEndsAndAMissingLastOneDoNotMatter) {
    InMemory deck(
        "*NODE, NSET=A\r\n1, 1, 2, 3\r\n\r\n2, 4, 5, 6\r\n*ELEMENT, TYPE=B31\r\n1, 1,\r\n2");
    deck.Translate();
    EXPECT_EQ(deck.Coordinates(), (std::vector<double>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(deck.NodesOf(0, 2), (Ints{0, 1}));
}

TEST(Translation, RepeatedNodesJoinTheSetOfTheirBlock) {
    InMemory deck(kSquare + "*NODE, NSET=AGAIN\n30, 1, 1, 0\n50, 9\n30, 1, 1\n");
    deck.Translate();
    EXPECT_EQ(deck.NodeSets(), (Sets{{"AGAIN", {2, 4}}}));
    EXPECT_EQ(deck.summary.repeatedNodes, 2);
    EXPECT_EQ(deck.summary.nodes, 5);
}

// More than one block of everything, labels in random order, elements before their nodes or behind
// them: against plain arrays.
class ManyBlocks : public ::testing::TestWithParam<bool> {};

TEST_P(ManyBlocks, ArriveWhole) {
    unsigned const seed = 4711;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    int const count = 230000;
    Ints labels(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) labels[static_cast<std::size_t>(i)] = 3 * i + 1;
    std::shuffle(labels.begin(), labels.end(), random);
    std::string nodes = "*NODE, NSET=ALL\n";
    for (int i = 0; i < count; ++i) {
        nodes += std::to_string(labels[static_cast<std::size_t>(i)]) + "," + std::to_string(i) +
                 ".5,1\n";
    }
    std::vector<Ints> connectivity;
    std::string elements;
    for (int e = 0; e < 2 * count; ++e) {
        bool const triangle = e % 7 < 3;
        if (e % 1000 == 0 || e % 7 == 0 || e % 7 == 3) {
            elements += triangle ? "*ELEMENT, TYPE=S3\n" : "*ELEMENT, TYPE=B31, ELSET=BEAMS\n";
        }
        Ints row;
        elements += std::to_string(2 * count - e);
        for (int k = 0; k < (triangle ? 3 : 2); ++k) {
            row.push_back(static_cast<int>(random() % static_cast<unsigned>(count)));
            elements += "," + std::to_string(labels[static_cast<std::size_t>(row.back())]);
        }
        elements += "\n";
        connectivity.push_back(row);
    }
    InMemory deck(GetParam() ? elements + nodes : nodes + elements);
    deck.Translate();
    EXPECT_EQ(deck.NodeLabels(), labels);
    std::vector<double> const xyz = deck.Coordinates();
    for (int i = 0; i < count; i += 97) EXPECT_EQ(xyz[3 * static_cast<std::size_t>(i)], i + 0.5);
    for (int e = 0; e < 2 * count; e += 1013) {
        Ints const& row = connectivity[static_cast<std::size_t>(e)];
        EXPECT_EQ(deck.NodesOf(e, static_cast<int>(row.size())), row) << e;
    }
    EXPECT_EQ(deck.ElementSets()["BEAMS"].size(), static_cast<std::size_t>(2 * count / 7 * 4));
    EXPECT_EQ(deck.NodeSets()["ALL"].size(), labels.size());
}
INSTANTIATE_TEST_SUITE_P(Order, ManyBlocks, ::testing::Bool(), [](auto const& test) {
    return test.param ? "ElementsFirst" : "NodesFirst";
});

TEST(Translation, ARepeatedMeshIsComparedInBatches) {
    std::string nodes;
    for (int i = 1; i <= 120000; ++i)
        nodes += std::to_string(i) + "," + std::to_string(i * 0.25) + "\n";
    InMemory same("*NODE\n" + nodes + "*NODE\n" + nodes);
    EXPECT_EQ(same.Error(), "");
    EXPECT_EQ(same.summary.repeatedNodes, 120000);
    InMemory other("*NODE\n" + nodes + "*NODE\n" + nodes + "119999, 1\n");
    EXPECT_EQ(other.Error(),
              "deck.inp:240003: node 119999 is defined a second time with other coordinates; "
              "expected each label once");
}

TEST(Translation, ManySmallSetsAreKeptApart) {
    std::string text = "*NODE\n";
    for (int i = 1; i <= 1000; ++i) text += std::to_string(i) + "\n";
    for (int s = 0; s < 3000; ++s) {
        text += "*NSET, NSET=S" + std::to_string(s) + "\n";
        for (int k = 0; k < 5; ++k) text += std::to_string(1 + (s * 7 + k * 211) % 1000) + ", ";
        text += "\n";
    }
    InMemory deck(text);
    deck.Translate();
    auto const sets = deck.NodeSets();
    ASSERT_EQ(sets.size(), 3000U);
    EXPECT_EQ(sets.at("S10"), (Ints{70, 281, 492, 703, 914}));
}

}  // namespace
}  // namespace kov::test
