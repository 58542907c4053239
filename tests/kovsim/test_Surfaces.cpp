// Surfaces and orientations of decks, as they stand in documents.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ElementClasses.h"
#include "Faces.h"
#include "InMemory.h"
#include "KOVObjElementClass.h"
#include "KOVObjElementClassification.h"
#include "KOVSimCtation.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSet.h"
#include "KOVSrvGetCSetIDFromScopedName.h"

namespace kov::test {
namespace {

using Ints = std::vector<int>;
using ByFace = std::map<std::string, Ints>;

std::string const kMixed =
    "*NODE\n1, 0, 0, 0\n2, 1, 0, 0\n3, 1, 1, 0\n4, 0, 1, 0\n5, 0, 0, 1\n"
    "*ELEMENT, TYPE=S4R, ELSET=Shells\n10, 1, 2, 3, 4\n11, 1, 2, 3, 4\n"
    "*ELEMENT, TYPE=C3D4, ELSET=Solids\n20, 1, 2, 3, 5\n21, 1, 3, 4, 5\n22, 1, 2, 4, 5\n";

Ints MembersOf(KOVSimCSet const& set) {
    Ints members(static_cast<std::size_t>(set.Size()));
    set.Members(members.data());
    return members;
}

KOVSimPosition Region(InMemory const& deck, char const* key) {
    return deck.document.GetModel().GetMap(schema::Model_regions()).Find(key);
}

// Elements by the name of the face, of one relation of a region.
ByFace Faces(InMemory const& deck, KOVSimPosition const& region, int member) {
    ByFace faces;
    KOVSimPosition const relation = region.GetPosition(member);
    if (relation.IsNull()) return faces;
    KOVSimDSet const dset(relation);
    for (KOVSimCompartment const& compartment : dset.GetCtation().Compartments()) {
        KOVSimCSet const& face = compartment.CSet(1);
        EXPECT_EQ(face.Size(), 1);
        KOVSimPosition const symbol(deck.document.GetRecord(face.CollectionID(), face[0]));
        EXPECT_EQ(symbol.GetSymbolPosition(), face[0]);
        Ints& elements = faces[tool::Plain(symbol.GetSymbolName())];
        EXPECT_TRUE(elements.empty());
        elements = MembersOf(compartment.CSet(0));
    }
    return faces;
}
ByFace ElementFaces(InMemory const& deck, char const* key) {
    return Faces(deck, Region(deck, key), schema::Region_elementsFacesCluster());
}
ByFace ElementEdges(InMemory const& deck, char const* key) {
    return Faces(deck, Region(deck, key), schema::Region_elementsEdgesCluster());
}

TEST(Surfaces, HaveOneCompartmentForEachFace) {
    InMemory deck(kMixed + "*SURFACE, NAME=Skin\n20, S2\nShells, spos\n21, S1\n22, s2\n10, E3\n");
    deck.Translate();
    EXPECT_EQ(deck.summary.surfaces, 1U);
    EXPECT_EQ(ElementFaces(deck, "Skin"), (ByFace{{"S1", {3}}, {"S2", {2, 4}}, {"SPOS", {0, 1}}}));
    EXPECT_EQ(ElementEdges(deck, "Skin"), (ByFace{{"E3", {0}}}));
    KOVSimPosition const region = Region(deck, "Skin");
    EXPECT_TRUE(region.IsA(schema::Surface()));
    EXPECT_TRUE(region.IsA(schema::Region()));
    EXPECT_TRUE(region.Name(-1) == "Skin");
    EXPECT_TRUE(region.GetPosition(schema::Region_elementsCluster()).IsNull());
    EXPECT_TRUE(region.GetPosition(schema::Region_nodesCluster()).IsNull());
    KOVSimDSet const faces(region.GetPosition(schema::Region_elementsFacesCluster()));
    EXPECT_TRUE(KOVSimPosition(faces.ID()).IsA(schema::ElementFaces()));
}

TEST(Surfaces, FacesAreSymbolsOfTheDocument) {
    InMemory deck(kMixed + "*SURFACE, NAME=A\n20, S1\n10, E1\n");
    deck.Translate();
    KOVSimPosition const focus = deck.document.Focus();
    KOVSimCollection const faces(focus.GetPosition(schema::Focus_faces()).GetCollection());
    KOVSimCollection const edges(focus.GetPosition(schema::Focus_edges()).GetCollection());
    EXPECT_EQ(faces.Space(), 8);
    EXPECT_EQ(edges.Space(), 4);
    for (int i = 0; i < 8; ++i) {
        KOVSimPosition const symbol(deck.document.GetRecord(faces.ID(), i));
        EXPECT_TRUE(symbol.GetSymbolName() == tool::FaceName(i));
    }
    KOVSimPosition const edge(deck.document.GetRecord(edges.ID(), 3));
    EXPECT_TRUE(edge.GetSymbolName() == "E4");
}

TEST(Surfaces, WholeElementsAndNodesAreSets) {
    InMemory deck(kMixed +
                  "*NSET, NSET=N\n4, 5\n*SURFACE, NAME=Whole\nSolids\n10,\n"
                  "*SURFACE, NAME=Points, TYPE=NODE\nN\n1, 0.5\n");
    deck.Translate();
    KOVSimPosition const whole = Region(deck, "Whole");
    EXPECT_EQ(MembersOf(whole.GetPosition(schema::Region_elementsCluster()).CSet()),
              (Ints{0, 2, 3, 4}));
    EXPECT_TRUE(whole.GetPosition(schema::Region_elementsFacesCluster()).IsNull());
    EXPECT_EQ(MembersOf(Region(deck, "Points").GetPosition(schema::Region_nodesCluster()).CSet()),
              (Ints{0, 3, 4}));
    EXPECT_EQ(deck.summary.notes["areas of nodes of surfaces, which were not kept"], 1);
}

TEST(Surfaces, MayNameWhatComesLater) {
    InMemory deck("*SURFACE, NAME=A\nLater, S1\n20, S3\n" + kMixed +
                  "*ELSET, ELSET=Later\n21\nMore\n"
                  "*ELSET, ELSET=More\n22\n");
    deck.Translate();
    EXPECT_EQ(ElementFaces(deck, "A"), (ByFace{{"S1", {3, 4}}, {"S3", {2}}}));
}

TEST(Surfaces, OfInstancesStandUnderTheirKeys) {
    InMemory deck("*PART, NAME=P\n" + kMixed + "*SURFACE, NAME=Top\nShells, SNEG\n*END PART\n" +
                  "*ASSEMBLY\n*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n"
                  "*INSTANCE, NAME=J, PART=P\n*SURFACE, NAME=More\n20, S4\n*END INSTANCE\n"
                  "*SURFACE, NAME=Both\nI.Shells, SPOS\nj.10, SPOS\nJ.Solids, S1\n*END ASSEMBLY\n");
    deck.Translate();
    EXPECT_EQ(ElementFaces(deck, "I_Top"), (ByFace{{"SNEG", {0, 1}}}));
    EXPECT_EQ(ElementFaces(deck, "J_Top"), (ByFace{{"SNEG", {5, 6}}}));
    EXPECT_EQ(ElementFaces(deck, "J_More"), (ByFace{{"S4", {7}}}));
    EXPECT_EQ(ElementFaces(deck, "Both"), (ByFace{{"SPOS", {0, 1, 5}}, {"S1", {7, 8, 9}}}));
    EXPECT_FALSE(
        KOVSrvGetSurfaceIDFromScopedName(deck.document.Focus(), "I.Top", ".", "").IsNull());
    EXPECT_FALSE(KOVSrvGetSurfaceIDFromScopedName(deck.document.Focus(), "Top", ".", "J").IsNull());
}

TEST(Surfaces, AFaceOnASetIsCheckedForEachOfItsElements) {
    std::string const names = "deck.inp:15: surface 'A': ";
    EXPECT_EQ(InMemory(kMixed + "*SURFACE, NAME=A\nSolids, S5\n").Error(),
              names + "element 20 of type C3D4 has no S5; expected S1, S2, S3 or S4");
    EXPECT_EQ(InMemory(kMixed + "*SURFACE, NAME=A\n11, E4\n").Error(), "");
    EXPECT_EQ(InMemory(kMixed + "*SURFACE, NAME=A\n22, SNEG\n").Error(),
              names + "element 22 of type C3D4 has no SNEG; expected S1, S2, S3 or S4");
}

TEST(Surfaces, AFaceOnAStridedSetIsCheckedForItsElementsOnly) {
    std::string deck = "*NODE\n1\n2, 1\n3, 2, 1\n4, 1, 3, 1\n";
    for (int i = 1; i <= 40; ++i) {
        deck += i % 2 == 0 ? "*ELEMENT, TYPE=C3D4\n" + std::to_string(i) + ", 1, 2, 3, 4\n"
                           : "*ELEMENT, TYPE=S3\n" + std::to_string(i) + ", 1, 2, 3\n";
    }
    std::string const even = "*ELSET, ELSET=E, GENERATE\n2, 40, 2\n*SURFACE, NAME=A\nE, S1\n";
    std::string const third = "*ELSET, ELSET=E, GENERATE\n2, 40, 3\n*SURFACE, NAME=A\nE, S1\n";
    EXPECT_EQ(InMemory(deck + even).Error(), "");
    EXPECT_EQ(InMemory(deck + third).Error(),
              "deck.inp:89: surface 'A': element 5 of type S3 has no S1; expected SPOS, SNEG, E1, "
              "E2 or E3");
}

std::vector<double> Numbers(KOVSimPosition const& record, int field, int count) {
    std::vector<double> numbers(static_cast<std::size_t>(count), -99);
    record.GetDataRecord().GetDouble(field, numbers.data(), count);
    return numbers;
}
KOVSimPosition Orientation(InMemory const& deck, char const* key) {
    return deck.document.GetModel().GetMap(schema::Model_orientationsByName()).Find(key);
}

TEST(Orientations, KeepSystemPointsAndRotation) {
    InMemory deck(
        "*ORIENTATION, NAME=A\n1, 0, 0, 0, 1, 0\n"
        "*ORIENTATION, NAME=B, SYSTEM=z rectangular\n1, 0, 0, 0, 1, 0, 0, 0, 5\n2, -30.\n");
    deck.Translate();
    EXPECT_EQ(deck.summary.orientations, 2U);
    int system = -1;
    Orientation(deck, "A").GetDataRecord().GetInt(0, system);
    EXPECT_EQ(system, 0);
    EXPECT_EQ(Numbers(Orientation(deck, "A"), 1, 11),
              (std::vector<double>{1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0}));
    KOVSimPosition const b = Orientation(deck, "B");
    b.GetDataRecord().GetInt(0, system);
    EXPECT_EQ(system, 3);
    EXPECT_EQ(Numbers(b, 1, 11), (std::vector<double>{1, 0, 0, 0, 1, 0, 0, 0, 5, 2, -30}));
    EXPECT_TRUE(b.IsA(schema::Orientation()));
    EXPECT_TRUE(b.Name(-1) == "B");
    EXPECT_TRUE(b.GetPosition(schema::Orientation_axisPointA()).IsNull());
}

TEST(Orientations, OfAxesHaveAxisPoints) {
    InMemory deck(
        "*ORIENTATION, NAME=C, SYSTEM=CYLINDRICAL\n1, 2, 3, 4, 5, 6\n"
        "*ORIENTATION, NAME=S, SYSTEM=SPHERICAL\n1, 2, 3, 4, 5, 6\n");
    deck.Translate();
    for (char const* const key : {"C", "S"}) {
        KOVSimPosition const found = Orientation(deck, key);
        KOVSimPosition const b = found.GetPosition(schema::Orientation_axisPointB());
        EXPECT_TRUE(b.IsA(schema::AxisPoint()));
        EXPECT_EQ(Numbers(b, 0, 3), (std::vector<double>{4, 5, 6}));
        EXPECT_EQ(Numbers(found.GetPosition(schema::Orientation_axisPointA()), 0, 3),
                  (std::vector<double>{1, 2, 3}));
    }
}

TEST(Orientations, StandWhereTheirInstanceStands) {
    InMemory deck(
        "*PART, NAME=P\n*ORIENTATION, NAME=O\n1, 0, 0, 0, 1, 0\n*END PART\n*ASSEMBLY\n"
        "*INSTANCE, NAME=I, PART=P\n10, 0, 0\n0, 0, 0, 0, 0, 1, 90\n*END INSTANCE\n"
        "*ORIENTATION, NAME=O\n1, 0, 0, 0, 1, 0\n*END ASSEMBLY\n");
    deck.Translate();
    EXPECT_EQ(Numbers(Orientation(deck, "I_O"), 1, 9),
              (std::vector<double>{0, 11, 0, -1, 10, 0, 0, 10, 0}));
    EXPECT_EQ(Numbers(Orientation(deck, "O"), 1, 9),
              (std::vector<double>{1, 0, 0, 0, 1, 0, 0, 0, 0}));
}

TEST(Orientations, MayBeDefinedByNodesThatComeLater) {
    InMemory deck(
        "*PART, NAME=P\n*ORIENTATION, NAME=O, DEFINITION=NODES\n1, 2\n3, 15\n"
        "*NODE\n1, 1, 0, 0\n2, 0, 1, 0\n*END PART\n*ASSEMBLY\n"
        "*INSTANCE, NAME=I, PART=P\n0, 0, 7\n*END INSTANCE\n"
        "*NODE\n1, 5, 5, 5\n*ORIENTATION, NAME=N, DEFINITION=NODES\nI.1, I.2, 1\n"
        "*END ASSEMBLY\n");
    deck.Translate();
    EXPECT_EQ(Numbers(Orientation(deck, "I_O"), 1, 11),
              (std::vector<double>{1, 0, 7, 0, 1, 7, 0, 0, 7, 3, 15}));
    EXPECT_EQ(Numbers(Orientation(deck, "N"), 1, 9),
              (std::vector<double>{1, 0, 7, 0, 1, 7, 5, 5, 5}));
}

TEST(Orientations, NearlyCollinearPointsAreRefused) {
    EXPECT_EQ(InMemory("*ORIENTATION, NAME=O\n0.1, 0.2, 0.3, 0.2, 0.4, 0.6000000000001\n").Error(),
              "deck.inp:2: orientation 'O': its points a, b and c lie on one line; expected three "
              "that span a plane");
    EXPECT_EQ(InMemory("*ORIENTATION, NAME=O\n1, 0, 0, 1, 1e-6, 0\n").Error(), "");
}

TEST(ElementClasses, GroupElementsByShape) {
    InMemory deck(kMixed + "*ELEMENT, TYPE=S4\n30, 1, 2, 3, 4\n");
    deck.Translate();
    EXPECT_EQ(tool::ClassifyElements(deck.document), 2);
    EXPECT_EQ(tool::CountElementClasses(deck.document), 2);
    KOVSimSet const classes = deck.Mesh().GetElementClassification().GetSet(
        schema::ElementClassification_elementClasses());
    std::vector<Ints> members;
    for (KOVSimSetiterator at = classes.Begin(); at.NotDone(); ++at) {
        members.push_back(MembersOf(KOVSimCSet(KOVObjElementClass(*at).GetElementCSet())));
    }
    EXPECT_EQ(members, (std::vector<Ints>{{0, 1, 5}, {2, 3, 4}}));
}

TEST(ElementClasses, ADocumentWithoutElementsHasNone) {
    InMemory deck("*NODE\n1\n");
    deck.Translate();
    EXPECT_EQ(tool::ClassifyElements(deck.document), 0);
    EXPECT_EQ(tool::CountElementClasses(deck.document), 0);
}

}  // namespace
}  // namespace kov::test
