// Parts and instances: labels and names by instance over one flat mesh, and where instances stand.
#include <gtest/gtest.h>

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

TEST(Assembly, AFlatDeckHasNoInstances) {
    InMemory deck("*NODE\n1\n");
    deck.Translate();
    EXPECT_EQ(deck.document.GetModel().GetMap(schema::Model_instances()).Size(), 0);
    EXPECT_EQ(deck.summary.instances, 0U);
}

}  // namespace
}  // namespace kov::test
