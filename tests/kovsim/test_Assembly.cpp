// Parts and instances: labels and names by instance over one flat mesh, and where instances stand.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "InMemory.h"
#include "KOVObjLabeler.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"

namespace kov::test {
namespace {

using Ints = std::vector<int>;
using Sets = std::map<std::string, Ints>;

std::string const kParts =
    "*PART, NAME=Plate\n*NODE, NSET=All\n1, 0, 0, 0\n2, 1, 0, 0\n3, 1, 1, 0\n4, 0, 1, 0\n"
    "*ELEMENT, TYPE=S4R, ELSET=Skin\n7, 1, 2, 3, 4\n*END PART\n"
    "*PART, NAME=\"My Bar-1\"\n*ELEMENT, TYPE=T3D2, ELSET=\"Top Set\"\n5, 10, 20\n"
    "*NODE\n10, 0, 0, 0\n20, 0.1, 0.2, 0.3\n*END PART\n";

long Lines(std::string const& text) { return std::count(text.begin(), text.end(), '\n'); }

std::string Instance(std::string const& name, std::string const& part, std::string const& lines) {
    return "*INSTANCE, NAME=" + name + ", PART=" + part + "\n" + lines + "*END INSTANCE\n";
}
std::string Assembly(std::string const& body) {
    return kParts + "*ASSEMBLY, NAME=A\n" + body + "*END ASSEMBLY\n";
}

TEST(Assembly, InstancesHaveLabelsOfTheirOwn) {
    InMemory deck(Assembly(Instance("P1", "plate", "") + Instance("P2", "PLATE", "") +
                           Instance("Bar", "\"My Bar-1\"", "")));
    deck.Translate();
    EXPECT_EQ(deck.summary.parts, 2U);
    EXPECT_EQ(deck.summary.instances, 3U);
    EXPECT_EQ(deck.NodeLabels(), (Ints{1, 2, 3, 4, 1, 2, 3, 4, 10, 20}));
    EXPECT_EQ(deck.ElementLabels(), (Ints{7, 7, 5}));
    EXPECT_EQ(deck.NodesOf(1, 4), (Ints{4, 5, 6, 7}));
    EXPECT_EQ(deck.NodesOf(2, 2), (Ints{8, 9}));
    KOVObjLabeler labeler(deck.document, KOVObjLabelerNodes);
    labeler.Read();
    ASSERT_EQ(labeler.Occurrences().Size(), 3);
    EXPECT_EQ(labeler.GetInstanceLabel("P2", 6), 3);
    EXPECT_EQ(labeler.GetInstanceLabel("P2", 2), -1);
}

TEST(Assembly, CoordinatesOfTranslatedInstancesAreExactSums) {
    InMemory deck(Assembly(Instance("A", "Plate", "0.1, -2.5, 1e10\n") +
                           Instance("B", "\"My Bar-1\"", "") +
                           Instance("C", "\"My Bar-1\"", "0.3, 0.7, -0.3\n")));
    deck.Translate();
    std::vector<double> const xyz = deck.Coordinates();
    double const expected[] = {0.1,  -2.5, 1e10, 1.1,  -2.5, 1e10,      1.1,       -1.5,
                               1e10, 0.1,  -1.5, 1e10, 0,    0,         0,         0.1,
                               0.2,  0.3,  0.3,  0.7,  -0.3, 0.1 + 0.3, 0.2 + 0.7, 0.3 - 0.3};
    ASSERT_EQ(xyz.size(), std::size(expected));
    for (std::size_t i = 0; i < xyz.size(); ++i) EXPECT_EQ(xyz[i], expected[i]) << i;
}

TEST(Assembly, SetsOfInstancesStandUnderTheirKeys) {
    InMemory deck(Assembly(Instance("P1", "Plate", "") + Instance("P2", "Plate", "") +
                           Instance("Bar", "\"My Bar-1\"", "")));
    deck.Translate();
    EXPECT_EQ(deck.NodeSets(), (Sets{{"P1_All", {0, 1, 2, 3}}, {"P2_All", {4, 5, 6, 7}}}));
    EXPECT_EQ(deck.ElementSets(), (Sets{{"P1_Skin", {0}}, {"P2_Skin", {1}}, {"Bar_Top Set", {2}}}));
}

TEST(Assembly, RecordsTellPartPlacingAndMembers) {
    InMemory deck(
        Assembly(Instance("P1", "Plate", "") + Instance("b 2", "\"my bar-1\"", "1, 2, 3\n")));
    deck.Translate();
    KOVSimMap const instances = deck.document.GetModel().GetMap(schema::Model_instances());
    EXPECT_EQ(instances.Size(), 2);
    KOVSimPosition const bar = instances.Find("b2");
    ASSERT_FALSE(bar.IsNull());
    EXPECT_TRUE(bar.IsA(schema::Instance()));
    EXPECT_TRUE(bar.Name(-1) == "b2");
    EXPECT_TRUE(bar.GetDataRecord().ReturnString(0) == "My Bar-1");
    double matrix[12] = {};
    bar.GetDataRecord().GetDouble(1, matrix, 12);
    double const expected[12] = {1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3};
    for (int i = 0; i < 12; ++i) EXPECT_EQ(matrix[i], expected[i]) << i;
    KOVSimCSet const nodes = bar.GetPosition(schema::Instance_nodes()).CSet();
    EXPECT_EQ(nodes.Size(), 2);
    EXPECT_TRUE(nodes.Contains(4) && nodes.Contains(5));
    EXPECT_TRUE(bar.GetPosition(schema::Instance_elements()).CSet().Contains(1));
}

// Rodrigues' formula: what stands along the axis stays, what stands across it turns.
void Rodrigues(double const* t, double const* a, double const* b, double degrees, double* p) {
    double k[3];
    double v[3];
    double const length = std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
    for (int i = 0; i < 3; ++i) {
        k[i] = (b[i] - a[i]) / length;
        v[i] = p[i] + t[i] - a[i];
    }
    double const angle = degrees * std::numbers::pi / 180;
    double const along = k[0] * v[0] + k[1] * v[1] + k[2] * v[2];
    double const across[3] = {k[1] * v[2] - k[2] * v[1], k[2] * v[0] - k[0] * v[2],
                              k[0] * v[1] - k[1] * v[0]};
    for (int i = 0; i < 3; ++i) {
        p[i] = v[i] * std::cos(angle) + across[i] * std::sin(angle) +
               k[i] * along * (1 - std::cos(angle)) + a[i];
    }
}

TEST(Assembly, RotatedInstancesStandWhereTheFormulaSays) {
    InMemory deck(Assembly(Instance("A", "Plate", "1, 2, 3\n0.5, 1, -2, 3, -1, 4, 37.5\n") +
                           Instance("B", "Plate", "0, , 0\n5, 5, 0, 5, 5, 1, -120\n")));
    deck.Translate();
    std::vector<double> const xyz = deck.Coordinates();
    ASSERT_EQ(xyz.size(), 24U);
    double const plate[4][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    for (std::size_t i = 0; i < 4; ++i) {
        double const t[3] = {1, 2, 3};
        double const zero[3] = {0, 0, 0};
        double const axis[2][3] = {{0.5, 1, -2}, {3, -1, 4}};
        double const upright[2][3] = {{5, 5, 0}, {5, 5, 1}};
        double p[3] = {plate[i][0], plate[i][1], plate[i][2]};
        double q[3] = {plate[i][0], plate[i][1], plate[i][2]};
        Rodrigues(t, axis[0], axis[1], 37.5, p);
        Rodrigues(zero, upright[0], upright[1], -120, q);
        for (std::size_t k = 0; k < 3; ++k) {
            EXPECT_NEAR(xyz[3 * i + k], p[k], 1e-12 * 10);
            EXPECT_NEAR(xyz[12 + 3 * i + k], q[k], 1e-12 * 10);
        }
    }
}

TEST(Assembly, NodesOfOtherSystemsArePlacedToo) {
    InMemory deck("*PART, NAME=P\n*NODE, SYSTEM=C\n1, 2, 90, 5\n*END PART\n*ASSEMBLY\n" +
                  Instance("I", "P", "10, 0, 0\n") + "*END ASSEMBLY\n");
    deck.Translate();
    std::vector<double> const xyz = deck.Coordinates();
    EXPECT_NEAR(xyz[0], 10, 1e-15);
    EXPECT_EQ(xyz[1], 2);
    EXPECT_EQ(xyz[2], 5);
}

TEST(Assembly, ARepeatedNodeIsComparedWhereItStands) {
    std::string const deck =
        "*PART, NAME=P\n*NODE\n1, 0.1, 0.2, 0.3\n*NODE\n1, 0.1, 0.2, 0.3\n*END PART\n*ASSEMBLY\n" +
        Instance("I", "P", "1, 2, 3\n0, 0, 0, 1, 1, 1, 20\n") + "*END ASSEMBLY\n";
    InMemory same(deck);
    same.Translate();
    EXPECT_EQ(same.summary.repeatedNodes, 1);
    std::string other = deck;
    other.replace(other.rfind("0.3\n*END PART"), 3, "0.4");
    EXPECT_EQ(InMemory(other).Error(),
              "deck.inp:5: node 1 is defined a second time with other coordinates; expected each "
              "label once");
}

TEST(Assembly, InstancesMayHoldMoreThanTheirPart) {
    InMemory deck(
        Assembly(Instance("I", "Plate",
                          "1, 0, 0\n*NODE, NSET=More\n9, 5, 5, 5\n*ELEMENT, TYPE=T3D2\n8, 1, 9\n") +
                 Instance("J", "Plate", "")));
    deck.Translate();
    EXPECT_EQ(deck.NodeLabels(), (Ints{1, 2, 3, 4, 9, 1, 2, 3, 4}));
    EXPECT_EQ(deck.Coordinates()[12], 6);
    EXPECT_EQ(deck.NodesOf(1, 2), (Ints{0, 4}));
    EXPECT_EQ(deck.NodeSets()["I_More"], (Ints{4}));
    tool::DocumentInstance const first = tool::DocumentInstances(deck.document)[0];
    EXPECT_EQ(first.nodes.Size(), 5);
    EXPECT_EQ(first.elements.Size(), 2);
}

TEST(Assembly, TheAssemblyHasNodesAndElementsOfItsOwn) {
    InMemory deck(Assembly(Instance("I", "Plate", "") +
                           "*NODE, NSET=Ref\n1, 9, 9, 9\n*ELEMENT, TYPE=SPRING2, ELSET=Tie\n"
                           "7, 1, I.3\n*ELEMENT, TYPE=SPRING2\n8, \"I\".4, i.1\n"));
    deck.Translate();
    EXPECT_EQ(deck.NodeLabels(), (Ints{1, 2, 3, 4, 1}));
    EXPECT_EQ(deck.NodesOf(1, 2), (Ints{4, 2}));
    EXPECT_EQ(deck.NodesOf(2, 2), (Ints{3, 0}));
    EXPECT_EQ(deck.NodeSets()["Ref"], (Ints{4}));
    EXPECT_EQ(deck.ElementSets()["Tie"], (Ints{1}));
    EXPECT_EQ(deck.ElementLabels(), (Ints{7, 7, 8}));
}

TEST(Assembly, AnElementMayNameAnInstanceThatComesLater) {
    InMemory deck(Assembly("*NODE\n1\n" + Instance("I", "Plate", "") +
                           "*ELEMENT, TYPE=SPRING2\n1, 1, J.3\n2, 1, J.4\n" +
                           Instance("J", "Plate", "")));
    deck.Translate();
    EXPECT_EQ(deck.NodesOf(1, 2), (Ints{0, 7}));
    EXPECT_EQ(deck.NodesOf(2, 2), (Ints{0, 8}));
}

TEST(Assembly, SetsOfTheAssemblyTakeMembersOfInstances) {
    InMemory deck(
        Assembly(Instance("I", "Plate", "") + Instance("J", "Plate", "") +
                 "*NSET, NSET=A\nI.1, j.ALL, I.3\n*NSET, NSET=B, INSTANCE=J, GENERATE\n1, 3, 2\n"
                 "*NSET, NSET=B, INSTANCE=i\n2, All\n*ELSET, ELSET=C\nI.Skin, J.7\n"));
    deck.Translate();
    EXPECT_EQ(deck.NodeSets()["A"], (Ints{0, 2, 4, 5, 6, 7}));
    EXPECT_EQ(deck.NodeSets()["B"], (Ints{0, 1, 2, 3, 4, 6}));
    EXPECT_EQ(deck.ElementSets()["C"], (Ints{0, 1}));
}

TEST(Assembly, QuotedNamesMayHoldDotsBlanksAndCommas) {
    InMemory deck("*PART, NAME=P\n*NODE, NSET=\"Top, .Left 1\"\n5\n6\n*END PART\n*ASSEMBLY\n" +
                  Instance("\"My Part.1\"", "P", "") +
                  "*NSET, NSET=\"All of it.x\"\n\"My Part.1\".\"Top, .Left 1\"\n*NSET, NSET=B\n"
                  "\"My Part.1\".5, \"All of it.x\"\n*NSET, NSET=C, INSTANCE=\"my part.1\"\n\"Top, "
                  ".Left 1\"\n"
                  "*END ASSEMBLY\n");
    deck.Translate();
    EXPECT_EQ(deck.NodeSets(), (Sets{{"My Part.1_Top, .Left 1", {0, 1}},
                                     {"All of it.x", {0, 1}},
                                     {"B", {0, 1}},
                                     {"C", {0, 1}}}));
}

TEST(Assembly, ANameThatFitsASetAndAMemberOfAnInstanceAsksForQuotes) {
    auto const with = [](char const* name) {
        return InMemory(Assembly(Instance("I", "Plate", "") +
                                 "*NSET, NSET=I.1\nI.4\n*NSET, NSET=A\n2\n" + name +
                                 "\n*NODE\n2\n"));
    };
    EXPECT_EQ(with("I.2, i.1").Error(),
              "deck.inp:" + std::to_string(Lines(kParts) + 8) +
                  ": 'i.1' is node set 'I.1' and node 1 of instance 'I'; expected quotes, as in "
                  "\"i.1\" or \"I\".1");
    EXPECT_EQ(with("\"I.1\"").Translate().NodeSets()["A"], (Ints{3, 4}));
    EXPECT_EQ(with("\"I\".1").Translate().NodeSets()["A"], (Ints{0, 4}));
}

TEST(Assembly, ANameWithTwoDotsThatFitsTwoInstancesAsksForQuotes) {
    std::string const parts =
        "*PART, NAME=P\n*NODE\n1\n2\n*ELEMENT, TYPE=B31\n1, 1, 2\n*NSET, NSET=x\n1\n"
        "*NSET, NSET=b.x\n2\n*ELSET, ELSET=x\n1\n*ELSET, ELSET=b.x\n1\n*END PART\n*ASSEMBLY\n" +
        Instance("a", "P", "") + Instance("a.b", "P", "");
    auto const with = [&](std::string const& more) {
        return InMemory(parts + more + "*END ASSEMBLY\n");
    };
    std::string const at = "deck.inp:" + std::to_string(Lines(parts) + 2) + ": ";
    EXPECT_EQ(with("*NSET, NSET=A\na.b.x\n").Error(),
              at + "'a.b.x' is node set 'b.x' of instance 'a' and node set 'x' of instance 'a.b'; "
                   "expected quotes, as in \"a\".\"b.x\" or \"a.b\".\"x\"");
    EXPECT_EQ(with("*SURFACE, NAME=A, TYPE=NODE\na.b.x\n").Error().substr(0, at.size() + 7),
              at + "'a.b.x'");
    EXPECT_NE(with("*NSET, NSET=A, ELSET=a.b.x\n").Error().find("as in \"a\".\"b.x\" or"),
              std::string::npos);
    EXPECT_EQ(with("*NSET, NSET=A\na.\"b.x\"\n").Translate().NodeSets()["A"], (Ints{1}));
    EXPECT_EQ(with("*NSET, NSET=A\n\"a.b\".x\n").Translate().NodeSets()["A"], (Ints{2}));
    EXPECT_EQ(with("*NSET, NSET=A, ELSET=\"a.b\".x\n").Translate().NodeSets()["A"], (Ints{2, 3}));
    EXPECT_EQ(with("*NSET, NSET=A\na.b.2\n").Translate().NodeSets()["A"], (Ints{3}));
}

TEST(Assembly, ANameOfVeryManyDotsIsReadAtOnce) {
    std::string const dots(400000, '.');
    InMemory deck(Assembly(Instance("I", "Plate", "") + "*NSET, NSET=A\nI" + dots + "\n"));
    auto const start = std::chrono::steady_clock::now();
    EXPECT_EQ(deck.Error(), "deck.inp:" + std::to_string(Lines(kParts) + 5) +
                                ": instance 'I' has no node set '" + std::string(60, '.') +
                                "...'; expected a set of the instance");
    // Anything that grows with the square of the dots takes minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(Assembly, SetsMayNameWhatComesLaterAcrossScopes) {
    InMemory deck(
        "*PART, NAME=P\n*NSET, NSET=S\nT, 2\n*NSET, NSET=T\n1\n*NODE\n1\n2\n3\n"
        "*END PART\n*ASSEMBLY\n*NSET, NSET=A\nB, J.S\n" +
        Instance("I", "P", "") + "*NSET, NSET=B\nI.S\n" + Instance("J", "P", "") +
        "*END ASSEMBLY\n");
    deck.Translate();
    EXPECT_EQ(deck.NodeSets()["A"], (Ints{0, 1, 3, 4}));
}

TEST(Assembly, InternalSetsStandInTheOtherMaps) {
    InMemory deck(Assembly(Instance("I", "Plate", "*ELSET, ELSET=_P, INTERNAL\n7\n") +
                           "*NSET, NSET=_Q, INTERNAL\nI.1\n*NSET, NSET=_Q, INTERNAL\nI.2\n"
                           "*NSET, NSET=R, INTERNAL\nI.1\n*NSET, NSET=R\nI.2\n"));
    deck.Translate();
    EXPECT_EQ(deck.Sets(schema::Model_otherNodeSets()), (Sets{{"_Q", {0, 1}}}));
    EXPECT_EQ(deck.Sets(schema::Model_otherElementSets()), (Sets{{"I__P", {0}}}));
    EXPECT_EQ(deck.NodeSets()["R"], (Ints{0, 1}));
    EXPECT_EQ(deck.summary.nodeSets, 3U);
}

TEST(Assembly, ASetMayBeTheNodesOfElements) {
    InMemory deck(
        "*NSET, NSET=A, ELSET=E\n*NSET, NSET=B\nA, 5\n*ELEMENT, TYPE=S4\n1, 1, 2, 3, 4\n"
        "*ELEMENT, TYPE=T3D2\n2, 4, 6\n*ELSET, ELSET=E\n1, 2\n*NODE\n1\n2\n3\n4\n5\n6\n7\n");
    deck.Translate();
    EXPECT_EQ(deck.NodeSets(), (Sets{{"A", {0, 1, 2, 3, 5}}, {"B", {0, 1, 2, 3, 4, 5}}}));
    InMemory assembly(Assembly(
        Instance("I", "Plate", "*NSET, NSET=N, ELSET=Skin\n") + Instance("J", "Plate", "") +
        "*NSET, NSET=M, ELSET=J.Skin\n*NSET, NSET=O, ELSET=Skin, INSTANCE=I\n"));
    assembly.Translate();
    EXPECT_EQ(assembly.NodeSets()["I_N"], (Ints{0, 1, 2, 3}));
    EXPECT_EQ(assembly.NodeSets()["M"], (Ints{4, 5, 6, 7}));
    EXPECT_EQ(assembly.NodeSets()["O"], (Ints{0, 1, 2, 3}));
}

TEST(Assembly, NumbersLeftOutOfATranslationAreZero) {
    auto const place = [](char const* line) {
        InMemory deck(
            Assembly("*INSTANCE, NAME=I, PART=Plate\n" + std::string(line) + "\n*END INSTANCE\n"));
        deck.Translate();
        std::vector<double> const all = deck.Coordinates();
        return std::vector<double>(all.begin(), all.begin() + 3);
    };
    EXPECT_EQ(place(" , ,"), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(place("1.5"), (std::vector<double>{1.5, 0, 0}));
    EXPECT_EQ(place("1.5,,"), (std::vector<double>{1.5, 0, 0}));
    EXPECT_EQ(place(", 2"), (std::vector<double>{0, 2, 0}));
    EXPECT_EQ(place(", , 3,"), (std::vector<double>{0, 0, 3}));
}

TEST(Assembly, AnElementMayStandBeforeTheFirstInstance) {
    InMemory deck(Assembly("*ELEMENT, TYPE=B31\n1, I.1, I.3\n" + Instance("I", "Plate", "")));
    deck.Translate();
    EXPECT_EQ(deck.NodesOf(0, 2), (Ints{0, 2}));
}

TEST(Assembly, APartWithoutAnInstanceIsNotLookedIntoEvenWithStrict) {
    InMemory deck("*PART, NAME=P\n*NODE\n1, x\n*BLA\n*END PART\n*ASSEMBLY\n*END ASSEMBLY\n");
    tool::TranslationOptions options;
    options.strict = true;
    EXPECT_EQ(deck.Error(options), "");
    EXPECT_EQ(deck.summary.parts, 1U);
}

TEST(Assembly, APartWithoutAnInstanceGivesNothingButANote) {
    InMemory deck(kParts + "*ASSEMBLY\n" + Instance("I", "Plate", "") + "*END ASSEMBLY\n");
    deck.Translate();
    EXPECT_EQ(deck.summary.nodes, 4);
    EXPECT_EQ(deck.summary.notes,
              (std::map<std::string, long>{{"parts without an instance, which gave nothing", 1}}));
}

TEST(Assembly, WhatAPartHoldsThatIsNotKnownCountsOnce) {
    InMemory deck(
        "*PART, NAME=P\n*SURFACE SECTION\n1\n*NODE\n1, 0, 0, 0, 0, 0, 1\n*END PART\n*ASSEMBLY\n" +
        Instance("I", "P", "") + Instance("J", "P", "") + "*END ASSEMBLY\n");
    deck.Translate();
    EXPECT_EQ(deck.summary.unknownKeywords, (std::map<std::string, long>{{"*SURFACE SECTION", 1}}));
    EXPECT_EQ(deck.summary.notes["nodes with a normal, which was not kept"], 1);
}

TEST(Assembly, PartsMayStandInIncludedFiles) {
    InMemory deck(
        "*INCLUDE, INPUT=parts/p.inp\n*ASSEMBLY\n*INCLUDE, INPUT=parts/i.inp\n*END ASSEMBLY\n");
    deck.File("parts/p.inp", "*PART, NAME=P\n*INCLUDE, INPUT=n.inp\n*END PART\n")
        .File("parts/n.inp", "*NODE\n1\n2\n")
        .File("parts/i.inp", Instance("I", "P", "") + Instance("J", "P", ""));
    deck.Translate();
    EXPECT_EQ(deck.summary.nodes, 4);
    EXPECT_EQ(deck.summary.files, 4);
}

TEST(Assembly, AnErrorInAPartNamesItsFileAndLine) {
    InMemory deck("*INCLUDE, INPUT=parts/p.inp\n*ASSEMBLY\n" + Instance("I", "P", "") +
                  "*END ASSEMBLY\n");
    deck.File("parts/p.inp", "** c\n*PART, NAME=P\n*NODE\n1, x\n*END PART\n");
    EXPECT_EQ(deck.Error(), "parts/p.inp:4: 'x' is no number; expected a coordinate");
    deck.File("parts/p.inp", "*PART, NAME=P\n*INCLUDE, INPUT=p.inp\n*END PART\n");
    EXPECT_EQ(deck.Error(),
              "parts/p.inp:2: included file 'p.inp' includes itself; expected no cycle");
}

TEST(Assembly, ManyInstancesOfOnePart) {
    std::string body;
    for (int i = 0; i < 500; ++i) {
        body += Instance("I" + std::to_string(i), "Plate", std::to_string(i) + ", 0, 0\n");
    }
    InMemory deck(Assembly(body));
    deck.Translate();
    EXPECT_EQ(deck.summary.nodes, 2000);
    std::vector<double> const xyz = deck.Coordinates();
    for (std::size_t i = 0; i < 500; ++i) EXPECT_EQ(xyz[12 * i + 3], static_cast<double>(i) + 1);
    EXPECT_EQ(deck.NodeSets().size(), 500U);
}

TEST(Assembly, AFlatDeckHasNoInstances) {
    InMemory deck("*NODE\n1\n");
    deck.Translate();
    EXPECT_EQ(deck.document.GetModel().GetMap(schema::Model_instances()).Size(), 0);
    EXPECT_EQ(deck.summary.instances, 0U);
}

}  // namespace
}  // namespace kov::test
