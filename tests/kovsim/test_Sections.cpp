// Sections, materials and plies of decks, in documents in memory and opened again.

#include <random>
#include <set>

#include "KOVObjMeshedField.h"
#include "KOVSimTransfer.h"
#include "KOVSrvSectionServices.h"
#include "KOVSrvShellSectionPoints.h"
#include "SectionDeck.h"

namespace kov::test {
namespace {

KOV_DOCUMENT_TESTS(SectionDecks);

std::string const kSteel = "*MATERIAL, NAME=Steel\n*ELASTIC\n210000, 0.3\n";
std::string const kCarbon = "*MATERIAL, NAME=Carbon\n";
std::string const kO1 = "*ORIENTATION, NAME=O1\n1, 0, 0, 0, 1, 0\n";
std::string const kTables =
    "*DISTRIBUTION TABLE, NAME=TL\nLENGTH\n*DISTRIBUTION TABLE, NAME=TA\nANGLE\n";
double const kNone = -1.7976931348623157e308;

TEST_P(SectionDecks, AHomogeneousShellIsASectionOfOneLayer) {
    Translate(kStrip + kSteel +
              "*SHELL SECTION, ELSET=left, MATERIAL=STEEL\n0.25, 7\n*SHELL SECTION, ELSET=RIGHT, "
              "MATERIAL=steel\n2\n");
    EXPECT_EQ(summary.sections, 2U);
    EXPECT_EQ(summary.materials, 1U);
    EXPECT_EQ(summary.plies, 0U);
    EXPECT_EQ(KeysOf(Model().GetMap(schema::Model_sections())), (Texts{"LEFT", "RIGHT"}));
    KOVSimPosition const section = Section();
    EXPECT_EQ(NameOf(section), "LEFT");
    EXPECT_TRUE(section.IsA(schema::Section_Shell()));
    EXPECT_EQ(Document().GetCMemberIndex(section), 0);
    EXPECT_EQ(Document().GetCMemberIndex(Section(1)), 1);
    EXPECT_EQ(IntField(section, 0), 1);
    EXPECT_EQ(SymbolField(section, 9), 0);
    EXPECT_EQ(RealField(section, 1), 0);
    EXPECT_EQ(IntField(section, 2), 0);
    EXPECT_EQ(section.GetDataRecord().Fields().Size(), 4);
    EXPECT_TRUE(section.GetPosition(schema::Section_material()).IsNull());
    EXPECT_EQ(MembersOf(Region().GetPosition(schema::Region_elementsCluster())), (Ints{0, 1}));

    KOVSrvShellSection const layers(Assignment());
    EXPECT_EQ(layers.GetNumLayers(), 1);
    EXPECT_EQ(Names(layers.GetMaterials()), (Texts{"Steel"}));
    EXPECT_EQ(Names(layers.GetOrientations()), (Texts{"-"}));
    EXPECT_EQ(Names(layers.GetPlies()), (Texts{"-"}));
    EXPECT_EQ(Plainly(layers.GetSectionPoints()), (Ints{7}));
    EXPECT_EQ(Plainly(layers.GetConstThicknesses()), (Reals{0.25}));
    EXPECT_EQ(Plainly(layers.GetConstRotationAngles()), (Reals{kNone}));
    KOVSrvShellSection const right(Assignment(1));
    EXPECT_EQ(Plainly(right.GetSectionPoints()), (Ints{5}));
    EXPECT_EQ(Plainly(right.GetConstThicknesses()), (Reals{2}));
}

TEST_P(SectionDecks, TheSectionsStandInTheSetsAndMapsOfTheDocument) {
    Translate(kStrip + kSteel +
              "*SHELL SECTION, ELSET=LEFT, MATERIAL=STEEL\n1\n*MEMBRANE SECTION, ELSET=RIGHT, "
              "MATERIAL=STEEL\n1\n");
    KOVSimSet const external = Document().Focus().GetSet(schema::Focus_externalSectionIds());
    EXPECT_EQ(external.Size(), 2);
    EXPECT_TRUE(Document().Focus().GetSet(schema::Focus_externalPlyIds()).Empty());
    EXPECT_EQ(KeysOf(Model().GetMap(schema::Model_regions())),
              (Texts{"INP2SIM_ELSET_LEFT", "INP2SIM_ELSET_RIGHT"}));
    EXPECT_EQ(NameOf(Region()), "INP2SIM_ELSET_LEFT");
    EXPECT_EQ(Region().TypePosition(), schema::Region());
    EXPECT_EQ(Region().GetPosition(schema::Region_elementsCluster()).ID(),
              Model().GetMap(schema::Model_elementSets()).Find("LEFT").ID());
    EXPECT_EQ(
        KOVSimCollection(Model().GetPosition(schema::Model_bulkSections()).GetCollection()).Space(),
        1);
    EXPECT_EQ(
        KOVSimCollection(Model().GetPosition(schema::Model_bulkPlies()).GetCollection()).Space(),
        0);
}

TEST_P(SectionDecks, ADeckWithoutSectionsHasNoneOfThis) {
    Translate(kStrip);
    EXPECT_TRUE(Assignments().empty());
    EXPECT_TRUE(Model().GetPosition(schema::Model_bulkSections()).IsNull());
    EXPECT_TRUE(Model().GetPosition(schema::Model_bulkShellLayers()).IsNull());
    EXPECT_TRUE(Model().GetPosition(schema::Model_regionCollection()).IsNull());
    EXPECT_EQ(Model().GetMap(schema::Model_sections()).Size(), 0);
}

TEST_P(SectionDecks, AModelOfOtherSectionsHasNoShellLayers) {
    Translate(kStrip + kSteel + "*MEMBRANE SECTION, ELSET=LEFT, MATERIAL=STEEL\n1\n");
    EXPECT_TRUE(Model().GetPosition(schema::Model_bulkShellLayers()).IsNull());
    EXPECT_TRUE(Model().GetPosition(schema::Model_bulkLayerSlots()).IsNull());
}

TEST_P(SectionDecks, ACompositeShellHasALayerForEachLine) {
    Translate(kStrip + kSteel + kCarbon + kO1 +
              "*SHELL SECTION, ELSET=LEFT, COMPOSITE, ORIENTATION=o1, LAYUP=\"Upper skin\", "
              "OFFSET=SPOS, STACK DIRECTION=3\n"
              "0.1, 5, carbon, 45, Ply-1\n"
              "0.2, , STEEL, O1\n"
              "0.3, 1, Carbon,, Ply-3\n"
              "0.4,, Carbon, -30D0\n"
              "0.5,, Carbon\n"
              "*SHELL SECTION, ELSET=RIGHT, COMPOSITE, SECTION INTEGRATION=GAUSS\n"
              "0.7,, Steel, 90, PLY-1\n");
    EXPECT_EQ(IntField(Section(), 0), 5);
    EXPECT_EQ(SymbolField(Section(), 9), 1);
    EXPECT_EQ(RealField(Section(), 1), 0.5);
    EXPECT_EQ(IntField(Section(), 2), 0);
    EXPECT_EQ(TextField(Section(), 3), "Upper skin");
    EXPECT_EQ(IntField(Section(), 7), 3);
    EXPECT_EQ(NameOf(Section().GetPosition(schema::Section_orientation())), "O1");
    KOVSrvShellSection const layers(Assignment());
    EXPECT_EQ(layers.GetNumLayers(), 5);
    EXPECT_EQ(Names(layers.GetMaterials()),
              (Texts{"Carbon", "Steel", "Carbon", "Carbon", "Carbon"}));
    EXPECT_EQ(Names(layers.GetOrientations()), (Texts{"-", "O1", "-", "-", "-"}));
    EXPECT_EQ(Names(layers.GetPlies()), (Texts{"Ply-1", "-", "Ply-3", "-", "-"}));
    EXPECT_EQ(Plainly(layers.GetSectionPoints()), (Ints{5, 3, 1, 3, 3}));
    EXPECT_EQ(Plainly(layers.GetConstThicknesses()), (Reals{0.1, 0.2, 0.3, 0.4, 0.5}));
    EXPECT_EQ(Plainly(layers.GetConstRotationAngles()), (Reals{45, kNone, 0, -30, 0}));

    KOVSrvShellSection const right(Assignment(1));
    EXPECT_EQ(IntField(Section(1), 2), 1);
    EXPECT_EQ(IntField(Section(1), 7), 0);
    EXPECT_EQ(TextField(Section(1), 3), "");
    EXPECT_EQ(right.GetNumLayers(), 1);
    EXPECT_EQ(Names(right.GetPlies()), (Texts{"Ply-1"}));
    EXPECT_EQ(right.GetPlies()[0].ID(), layers.GetPlies()[0].ID());
    EXPECT_EQ(Plainly(right.GetSectionPoints()), (Ints{2}));
    EXPECT_EQ(KeysOf(Model().GetMap(schema::Model_plies())), (Texts{"Ply-1", "Ply-3"}));
    EXPECT_EQ(Document().Focus().GetSet(schema::Focus_externalPlyIds()).Size(), 2);
    EXPECT_EQ(summary.plies, 2U);
    EXPECT_EQ(summary.materials, 2U);
}

TEST_P(SectionDecks, SlotsReachToTheDeepestStack) {
    Translate(kStrip + kSteel +
              "*SHELL SECTION, ELSET=LEFT, COMPOSITE\n1,, Steel\n2,, Steel\n3,, Steel\n"
              "*SHELL SECTION, ELSET=RIGHT, COMPOSITE, SYMMETRIC\n4,, Steel\n5,, Steel\n");
    KOVSimPosition const slots = Model().GetPosition(schema::Model_bulkLayerSlots());
    EXPECT_EQ(KOVSimCollection(slots.GetCollection()).Space(), 4);
    KOVSrvShellSectionPoints const points(Document());
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 2), 3);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 3), 0);
    EXPECT_EQ(points.GetNumSectionPoints(Section(1), 3), 3);
    EXPECT_EQ(points.GetNumSectionPoints(Section(1), 4), 0);
}

TEST_P(SectionDecks, SymmetricMirrorsTheLowerHalf) {
    Translate(kStrip + kSteel + kCarbon + kO1 +
              "*SHELL SECTION, ELSET=LEFT, COMPOSITE, SYMMETRIC\n0.1, 3, Steel, 45, A\n"
              "0.2, 5, Carbon, O1, B\n0.3, 7, Carbon, 10\n");
    KOVSrvShellSection const layers(Assignment());
    EXPECT_EQ(IntField(Section(), 0), 6);
    EXPECT_EQ(Names(layers.GetMaterials()),
              (Texts{"Steel", "Carbon", "Carbon", "Carbon", "Carbon", "Steel"}));
    EXPECT_EQ(Names(layers.GetOrientations()), (Texts{"-", "O1", "-", "-", "O1", "-"}));
    EXPECT_EQ(Names(layers.GetPlies()), (Texts{"A", "B", "-", "-", "B", "A"}));
    EXPECT_EQ(Plainly(layers.GetSectionPoints()), (Ints{3, 5, 7, 7, 5, 3}));
    EXPECT_EQ(Plainly(layers.GetConstThicknesses()), (Reals{0.1, 0.2, 0.3, 0.3, 0.2, 0.1}));
    EXPECT_EQ(Plainly(layers.GetConstRotationAngles()), (Reals{45, kNone, 10, 10, kNone, 45}));
}

TEST_P(SectionDecks, OffsetsAreFractionsOfTheThickness) {
    Translate(kStrip + kSteel +
              "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel, OFFSET=sneg\n1\n"
              "*SHELL SECTION, ELSET=RIGHT, MATERIAL=Steel, OFFSET=-0.125\n1\n"
              "*SHELL SECTION, ELSET=LAST, MATERIAL=Steel, OFFSET=SPOS\n1\n");
    EXPECT_EQ(RealField(Section(0), 1), -0.5);
    EXPECT_EQ(RealField(Section(1), 1), -0.125);
    EXPECT_EQ(RealField(Section(2), 1), 0.5);
}

TEST_P(SectionDecks, GaussPointsHaveDefaultsOfTheirOwn) {
    Translate(kStrip + kSteel +
              "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION INTEGRATION=GAUSS\n1\n"
              "*SHELL SECTION, ELSET=RIGHT, MATERIAL=Steel, SECTION INTEGRATION=simpson\n1,\n");
    EXPECT_EQ(Plainly(KOVSrvShellSection(Assignment(0)).GetSectionPoints()), (Ints{3}));
    EXPECT_EQ(Plainly(KOVSrvShellSection(Assignment(1)).GetSectionPoints()), (Ints{5}));
}

TEST_P(SectionDecks, WhatASectionNamesMayBeDefinedFurtherOn) {
    Translate(
        "*SHELL SECTION, ELSET=RIGHT, COMPOSITE, ORIENTATION=O1\n0.1,, Steel, O1\nT, , Carbon, "
        "A\n" +
        kStrip + kCarbon + kSteel + kO1 + kTables +
        "*DISTRIBUTION, NAME=T, LOCATION=ELEMENT, TABLE=TL\n, 0.5\n13, 0.25\n"
        "*DISTRIBUTION, NAME=A, LOCATION=ELEMENT, TABLE=TA\n, 30\n14, 60\n");
    EXPECT_EQ(
        Names(std::vector<KOVSimPosition>{Section().GetPosition(schema::Section_orientation())}),
        (Texts{"O1"}));
    KOVSrvShellSection const layers(Assignment());
    EXPECT_EQ(Names(layers.GetMaterials()), (Texts{"Steel", "Carbon"}));
    EXPECT_EQ(layers.GetThicknessVariation()[1], KOVSrvShellSection::VariationDistributed);
    EXPECT_EQ(layers.GetRotationAngleVariation()[1], KOVSrvShellSection::VariationDistributed);
    EXPECT_EQ(layers.GetRotationAngleVariation()[0], KOVSrvShellSection::VariationNone);
    // Materials stand in the order in which they came first.
    EXPECT_EQ(Document().GetCMemberIndex(layers.GetMaterials()[0]), 0);
    EXPECT_EQ(KeysOf(Document().GetMaterialCollection().GetMap(schema::MaterialLib_materials())),
              (Texts{"Carbon", "Steel"}));
}

TEST_P(SectionDecks, MaterialsAreKeptAsTheyCameFirst) {
    Translate(kStrip +
              "*SHELL SECTION, ELSET=LEFT, MATERIAL=\"Hard, steel\"\n1\n"
              "*MATERIAL, NAME=\"HARD, STEEL\"\n*MATERIAL, NAME=Unused\n");
    EXPECT_EQ(summary.materials, 2U);
    EXPECT_EQ(Names(KOVSrvShellSection(Assignment()).GetMaterials()), (Texts{"Hard, steel"}));
    EXPECT_EQ(KeysOf(Document().GetMaterialCollection().GetMap(schema::MaterialLib_materials())),
              (Texts{"Hard, steel", "Unused"}));
}

TEST_P(SectionDecks, NamesInQuotesKeepBlanksAndCommas) {
    Translate(kStrip + "*ELSET, ELSET=\"my, set\"\nLEFT\n" + kSteel +
              "*SHELL SECTION, ELSET=\"My, Set\", COMPOSITE\n1,, \"Steel\", 0, \"a, b\"\n");
    EXPECT_EQ(NameOf(Section()), "my, set");
    EXPECT_EQ(Names(KOVSrvShellSection(Assignment()).GetPlies()), (Texts{"a, b"}));
}

TEST_P(SectionDecks, ServicesFindTheAssignmentOfASet) {
    Translate(kStrip + kSteel +
              "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel\n1\n"
              "*SHELL SECTION, ELSET=RIGHT, MATERIAL=Steel\n2\n");
    KOVSimMap const sets = Model().GetMap(schema::Model_elementSets());
    EXPECT_EQ(KOVSrvSectionServices::GetSectionAssignment(sets.Find("RIGHT")).ID(),
              Assignment(1).ID());
    EXPECT_TRUE(KOVSrvSectionServices::GetSectionAssignment(sets.Find("LAST")).IsNull());
}

TEST_P(SectionDecks, ClassesNameTheSectionsOfTheirElements) {
    Translate(kStrip +
              "*ELEMENT, TYPE=S3, ELSET=THREE\n21, 1, 2, 8\n22, 2, 3, 9\n*ELSET, ELSET=MIX\n12, "
              "THREE\n*ELSET, ELSET=ONE\n11\n" +
              kSteel +
              "*SHELL SECTION, ELSET=RIGHT, MATERIAL=Steel\n1\n*SHELL SECTION, ELSET=MIX, "
              "MATERIAL=Steel\n1\n*SHELL SECTION, ELSET=ONE, MATERIAL=Steel\n1\n");
    KOVSimPosition const classification =
        KOVObjMesh(Document().GetMesh()).GetElementClassification();
    std::map<int, Texts> found;
    KOVSimSet const classes = classification.GetSet(schema::ElementClassification_elementClasses());
    for (auto at = classes.Begin(); at.NotDone(); ++at) {
        KOVSimSet const sections = (*at).GetSet(schema::ElementClass_sections());
        Texts& names = found[KOVSimCSet(KOVObjElementClass(*at).GetElementCSet()).Size()];
        for (auto of = sections.Begin(); of.NotDone(); ++of) names.push_back(NameOf(*of));
    }
    EXPECT_EQ(found[5], (Texts{"RIGHT", "MIX", "ONE"}));
    EXPECT_EQ(found[2], (Texts{"MIX"}));
}

// ---- thicknesses and angles by element ----

std::string const kThick =
    kTables + "*DISTRIBUTION, NAME=Thick, LOCATION=ELEMENT, TABLE=TL\n, 2\n11, 4\n12, 8\n13, 1.5\n";

// The value of each element of an assignment's region at a layer, of distributed values.
Reals Distributed(KOVSimPosition const& model, int member, int layer, Ints const& elements) {
    KOVSimPosition const field =
        model.GetPosition(schema::Model_bulkShellLayers()).GetPosition(member);
    KOVSimSet const serial = field.GetSet(schema::Field_serialFields());
    if (serial.Empty()) return {};
    KOVSimSet const drawers = (*serial.Begin()).GetSet(schema::SerialField_drawers());
    if (drawers.Empty()) return {};
    KOVSimDistribution const distribution(
        KOVObjMeshedField(field).GetDistribution().GetDistribution());
    KOVSimCollection const slots(distribution.Grid().Collections().ConstGet(0));
    KOVSimCollection const mesh(distribution.Grid().Collections().ConstGet(1));
    Reals values(elements.size(), -1);
    KOVSimTransfer read(distribution);
    read.SetRead().SetBufferPadding(false);
    read.SetDim(0, slots.CreateVolatileCSetStrided(layer, 1, 1, 1));
    read.SetDim(1,
                mesh.CreateVolatileCSet(elements.data(), static_cast<int>(elements.size()), false))
        .CheckView();
    read.SetBuffer(0, values.data(), values.size() * sizeof(double)).ExecRead();
    read.RelinquishBuffers();
    return values;
}

TEST_P(SectionDecks, AHomogeneousShellMayHaveItsThicknessByElement) {
    Translate(kStrip + kSteel + kThick +
              "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel, SHELL THICKNESS=thick\n"
              "*SHELL SECTION, ELSET=RIGHT, MATERIAL=Steel, SHELL THICKNESS=thick\n, 7\n"
              "*SHELL SECTION, ELSET=LAST, MATERIAL=Steel, SHELL THICKNESS=thick\n0.5\n");
    EXPECT_EQ(NameOf(Section().GetPosition(schema::Section_thicknessField())), "Thick");
    for (int i = 0; i < 3; ++i) {
        KOVSrvShellSection const layers(Assignment(i));
        EXPECT_EQ(layers.GetThicknessVariation()[0], KOVSrvShellSection::VariationDistributed);
        EXPECT_EQ(layers.GetRotationAngleVariation()[0], KOVSrvShellSection::VariationNone);
        EXPECT_EQ(layers.GetSectionPoints()[0], i == 1 ? 7 : 5);
    }
    EXPECT_EQ(Distributed(Model(), schema::BulkShellLayers_distThicknesses(), 0, {0, 1, 2, 3, 4}),
              (Reals{4, 8, 1.5, 2, 2}));
    EXPECT_EQ(summary.notes.at(
                  "thicknesses of *SHELL SECTION beside a distribution, which holds in its place"),
              1);
}

TEST_P(SectionDecks, LayersMayHaveThicknessesAndAnglesByElement) {
    Translate(kStrip + kSteel + kThick +
              "*DISTRIBUTION, NAME=Turn, LOCATION=ELEMENT, TABLE=TA\n, 30\n12, -60\n14, 15\n"
              "*SHELL SECTION, ELSET=LEFT, COMPOSITE\n0.5,, Steel, Turn\nThick,, Steel, 20\n"
              "*SHELL SECTION, ELSET=RIGHT, COMPOSITE, SYMMETRIC\nThick,, Steel, turn\n");
    KOVSrvShellSection const left(Assignment());
    using Enm = KOVSrvShellSection::VariationEnm;
    EXPECT_EQ(Plainly(left.GetThicknessVariation()),
              (std::vector<Enm>{KOVSrvShellSection::VariationConstant,
                                KOVSrvShellSection::VariationDistributed}));
    EXPECT_EQ(Plainly(left.GetRotationAngleVariation()),
              (std::vector<Enm>{KOVSrvShellSection::VariationDistributed,
                                KOVSrvShellSection::VariationConstant}));
    KOVSrvShellSection const right(Assignment(1));
    EXPECT_EQ(Plainly(right.GetThicknessVariation()),
              (std::vector<Enm>(2, KOVSrvShellSection::VariationDistributed)));
    int const thicknesses = schema::BulkShellLayers_distThicknesses();
    EXPECT_EQ(Distributed(Model(), thicknesses, 0, {2, 3}), (Reals{1.5, 2}));
    EXPECT_EQ(Distributed(Model(), thicknesses, 1, {0, 1, 2, 3}), (Reals{4, 8, 1.5, 2}));
    int const angles = schema::BulkShellLayers_distAngles();
    EXPECT_EQ(Distributed(Model(), angles, 0, {0, 1, 2, 3}), (Reals{30, -60, 30, 15}));
    EXPECT_EQ(Distributed(Model(), angles, 1, {2, 3}), (Reals{30, 15}));
}

TEST_P(SectionDecks, LayersTakeSharesOfTheShellThickness) {
    Translate(kStrip + kSteel + kThick +
              "*SHELL SECTION, ELSET=LEFT, COMPOSITE, SHELL THICKNESS=Thick\n1,, Steel\n2,, Steel\n"
              "1,, Steel\n*SHELL SECTION, ELSET=RIGHT, COMPOSITE, SYMMETRIC, SHELL "
              "THICKNESS=Thick\n0.25,, Steel\n0.25,, Steel\n");
    int const member = schema::BulkShellLayers_distThicknesses();
    EXPECT_EQ(Distributed(Model(), member, 0, {0, 1, 2, 3}), (Reals{1, 2, 0.375, 0.5}));
    EXPECT_EQ(Distributed(Model(), member, 1, {0, 1, 2, 3}), (Reals{2, 4, 0.375, 0.5}));
    EXPECT_EQ(Distributed(Model(), member, 2, {0, 1, 2, 3}), (Reals{1, 2, 0.375, 0.5}));
    EXPECT_EQ(Distributed(Model(), member, 3, {2, 3}), (Reals{0.375, 0.5}));
    EXPECT_EQ(NameOf(Section(1).GetPosition(schema::Section_thicknessField())), "Thick");
    // The fields of the shares have no name.
    EXPECT_EQ(KeysOf(Model().GetMap(schema::Model_distributions())), (Texts{"Thick"}));
}

// ---- solids, membranes, beams ----

TEST_P(SectionDecks, ASolidSectionHasAMaterialAndPerhapsAValue) {
    Translate(kStrip + kSteel + kO1 +
              "*SOLID SECTION, ELSET=LEFT, MATERIAL=Steel, ORIENTATION=O1\n*SOLID SECTION, "
              "ELSET=RIGHT, MATERIAL=Steel\n2.5\n*SOLID SECTION, ELSET=LAST, MATERIAL=Steel\n,\n");
    KOVSimPosition const section = Section();
    EXPECT_EQ(section.TypePosition(), schema::Section_Solid());
    EXPECT_EQ(IntField(section, 0), 0);
    EXPECT_EQ(section.GetDataRecord().Fields().Size(), 1);
    EXPECT_EQ(NameOf(section.GetPosition(schema::Section_material())), "Steel");
    EXPECT_EQ(NameOf(section.GetPosition(schema::Section_orientation())), "O1");
    EXPECT_EQ(RealsField(Section(1), 4, 2), (Reals{2.5, -99}));
    EXPECT_EQ(RealField(Section(2), 4), -99);
}

TEST_P(SectionDecks, ACompositeSolidKeepsItsLayersItself) {
    Translate(kStrip + kSteel + kCarbon + kO1 + kThick +
              "*DISTRIBUTION, NAME=Turn, LOCATION=ELEMENT, TABLE=TA\n, 30\n"
              "*SOLID SECTION, ELSET=LEFT, COMPOSITE, STACK DIRECTION=ORIENTATION, LAYUP=core, "
              "ORIENTATION=O1\n0.25,, Steel, 45, P1\n0.5, 3, Carbon, O1\nThick,, Carbon, Turn\n"
              "*SOLID SECTION, ELSET=RIGHT, COMPOSITE, SYMMETRIC\n1,, Steel,, P1\n2,, Carbon\n");
    EXPECT_EQ(IntField(Section(), 0), 3);
    EXPECT_EQ(IntField(Section(), 7), 4);
    EXPECT_EQ(TextField(Section(), 3), "core");
    EXPECT_EQ(NameOf(Section().GetPosition(schema::Section_orientation())), "O1");
    std::vector<KOVSimPosition> layers;
    KOVSimVector const vector = Section().GetVector(schema::Section_layers());
    for (auto at = vector.Begin(); at.NotDone(); ++at) layers.push_back(*at);
    ASSERT_EQ(layers.size(), 3U);
    EXPECT_EQ(layers[0].TypePosition(), schema::Layer());
    EXPECT_EQ(RealField(layers[0], 0), 0.25);
    EXPECT_EQ(IntField(layers[0], 1), 1);
    EXPECT_EQ(RealField(layers[0], 2), 45);
    EXPECT_EQ(NameOf(layers[0].GetPosition(schema::Layer_material())), "Steel");
    EXPECT_EQ(NameOf(layers[0].GetPosition(schema::Layer_ply())), "P1");
    EXPECT_TRUE(layers[0].GetPosition(schema::Layer_orientation()).IsNull());
    EXPECT_EQ(IntField(layers[1], 1), 3);
    EXPECT_EQ(RealField(layers[1], 2), -99);
    EXPECT_EQ(NameOf(layers[1].GetPosition(schema::Layer_orientation())), "O1");
    EXPECT_TRUE(layers[1].GetPosition(schema::Layer_ply()).IsNull());
    EXPECT_EQ(RealField(layers[2], 0), -99);
    EXPECT_EQ(NameOf(layers[2].GetPosition(schema::Layer_thicknessField())), "Thick");
    EXPECT_EQ(NameOf(layers[2].GetPosition(schema::Layer_angleField())), "Turn");
    EXPECT_EQ(RealField(layers[2], 2), -99);
    KOVSimVector const mirrored = Section(1).GetVector(schema::Section_layers());
    Reals shares;
    for (auto at = mirrored.Begin(); at.NotDone(); ++at) shares.push_back(RealField(*at, 0));
    EXPECT_EQ(shares, (Reals{1, 2, 2, 1}));
    EXPECT_TRUE(Model().GetPosition(schema::Model_bulkShellLayers()).IsNull());
}

TEST_P(SectionDecks, AMembraneHasAThicknessOrADistributionOfIt) {
    Translate(kStrip + kSteel + kThick +
              "*MEMBRANE SECTION, ELSET=LEFT, MATERIAL=Steel\n0.125\n*MEMBRANE SECTION, "
              "ELSET=RIGHT, MATERIAL=Steel, MEMBRANE THICKNESS=Thick\n");
    EXPECT_EQ(Section().TypePosition(), schema::Section_Membrane());
    EXPECT_EQ(IntField(Section(), 0), 0);
    EXPECT_EQ(RealsField(Section(), 4, 2), (Reals{0.125, -99}));
    EXPECT_TRUE(Section().GetPosition(schema::Section_thicknessField()).IsNull());
    EXPECT_EQ(RealField(Section(1), 4), -99);
    EXPECT_EQ(NameOf(Section(1).GetPosition(schema::Section_thicknessField())), "Thick");
    EXPECT_EQ(NameOf(Section(1).GetPosition(schema::Section_material())), "Steel");
}

TEST_P(SectionDecks, ABeamHasAProfileWithDimensions) {
    Translate(kStrip + kSteel +
              "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=pipe\n10, 0.5\n0, 0, -1\n3, 8\n"
              "*BEAM SECTION, ELSET=RIGHT, MATERIAL=Steel, SECTION=RECT\n1, 2\n,,\n5\n"
              "*BEAM SECTION, ELSET=LAST, MATERIAL=Steel, SECTION=CIRC\n1\n");
    EXPECT_EQ(Section().TypePosition(), schema::Section_Beam());
    EXPECT_EQ(IntField(Section(), 0), 0);
    EXPECT_EQ(TextField(Section(), 3), "PIPE");
    EXPECT_EQ(RealsField(Section(), 4, 3), (Reals{10, 0.5, -99}));
    EXPECT_EQ(RealsField(Section(), 5, 3), (Reals{0, 0, -1}));
    EXPECT_EQ(RealsField(Section(), 6, 3), (Reals{3, 8, -99}));
    EXPECT_EQ(RealField(Section(1), 5), -99);
    EXPECT_EQ(RealField(Section(1), 6), 5);
    EXPECT_EQ(RealField(Section(2), 4), 1);
    EXPECT_EQ(RealField(Section(2), 6), -99);
    EXPECT_EQ(NameOf(Section().GetPosition(schema::Section_material())), "Steel");
}

TEST_P(SectionDecks, OffsetsOfProfilesMayBeZeroOrNegative) {
    Translate(
        kStrip + kSteel +
        "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=I\n-0.5, 1, 2, 3, .1, .1, .1,,\n"
        "*BEAM SECTION, ELSET=RIGHT, MATERIAL=Steel, SECTION=TRAPEZOID\n1, 2, 3, 0\n"
        "*BEAM SECTION, ELSET=LAST, MATERIAL=Steel, SECTION=ARBITRARY\n1, 0, 0, -1, 0, 0.1\n");
    EXPECT_EQ(RealsField(Section(), 4, 8), (Reals{-0.5, 1, 2, 3, .1, .1, .1, -99}));
    EXPECT_EQ(RealsField(Section(1), 4, 5), (Reals{1, 2, 3, 0, -99}));
    EXPECT_EQ(RealsField(Section(2), 4, 7), (Reals{1, 0, 0, -1, 0, 0.1, -99}));
}

TEST_P(SectionDecks, FieldsWithNothingInThemMayEndALine) {
    Translate(kStrip + kSteel +
              "*SHELL SECTION, ELSET=LEFT, COMPOSITE\n1, 3, Steel, 0, P,, ,\n"
              "*SHELL SECTION, ELSET=RIGHT, MATERIAL=Steel\n2, 3,,\n"
              "*BEAM SECTION, ELSET=LAST, MATERIAL=Steel, SECTION=CIRC\n1, ,\n0, 0, 1,,\n5,,\n");
    EXPECT_EQ(Plainly(KOVSrvShellSection(Assignment()).GetConstThicknesses()), (Reals{1}));
    EXPECT_EQ(Plainly(KOVSrvShellSection(Assignment(1)).GetConstThicknesses()), (Reals{2}));
    EXPECT_EQ(RealsField(Section(2), 4, 2), (Reals{1, -99}));
    EXPECT_EQ(RealsField(Section(2), 6, 2), (Reals{5, -99}));
}

// ---- parts and instances ----

std::string const kPart =
    "*PART, NAME=Skin\n" + kStrip + kO1 + kTables +
    "*DISTRIBUTION, NAME=Thick, LOCATION=ELEMENT, TABLE=TL\n, 2\n11, 4\n"
    "*MATERIAL, NAME=Inner\n"
    "*SHELL SECTION, ELSET=LEFT, COMPOSITE, ORIENTATION=O1\n0.1,, Inner, O1, P\nThick,, Outer\n"
    "*END PART\n";

TEST_P(SectionDecks, APartGivesItsSectionsToEachInstance) {
    Translate(kPart +
              "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=Skin\n*END INSTANCE\n*INSTANCE, NAME=J, "
              "PART=Skin\n*END INSTANCE\n*END ASSEMBLY\n*MATERIAL, NAME=Outer\n");
    EXPECT_EQ(summary.sections, 2U);
    EXPECT_EQ(summary.materials, 2U);
    EXPECT_EQ(summary.plies, 2U);
    EXPECT_EQ(KeysOf(Model().GetMap(schema::Model_sections())), (Texts{"I_LEFT", "J_LEFT"}));
    EXPECT_EQ(KeysOf(Model().GetMap(schema::Model_plies())), (Texts{"I_P", "J_P"}));
    EXPECT_EQ(NameOf(Region(1)), "INP2SIM_ELSET_J_LEFT");
    EXPECT_EQ(MembersOf(Region(1).GetPosition(schema::Region_elementsCluster())), (Ints{5, 6}));
    KOVSrvShellSection const second(Assignment(1));
    EXPECT_EQ(Names(second.GetMaterials()), (Texts{"Inner", "Outer"}));
    EXPECT_EQ(Names(second.GetOrientations()), (Texts{"J_O1", "-"}));
    EXPECT_EQ(Names(second.GetPlies()), (Texts{"J_P", "-"}));
    EXPECT_EQ(NameOf(Section(1).GetPosition(schema::Section_orientation())), "J_O1");
    EXPECT_EQ(Distributed(Model(), schema::BulkShellLayers_distThicknesses(), 1, {0, 1, 5, 6}),
              (Reals{4, 2, 4, 2}));
}

TEST_P(SectionDecks, TheAssemblyMayGiveSectionsToSetsOfInstances) {
    Translate(
        "*PART, NAME=Skin\n" + kStrip + kO1 + kTables +
        "*DISTRIBUTION, NAME=Thick, LOCATION=ELEMENT, TABLE=TL\n, 2\n11, 4\n*END PART\n"
        "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=Skin\n*END INSTANCE\n*INSTANCE, "
        "NAME=\"J J\", PART=Skin\n*END INSTANCE\n*END ASSEMBLY\n" +
        kSteel +
        "*SHELL SECTION, ELSET=I.LEFT, COMPOSITE, ORIENTATION=I.O1\nI.Thick,, Steel, I.O1, P\n"
        "*SHELL SECTION, ELSET=\"J J\".Left, MATERIAL=Steel, SHELL THICKNESS=\"J "
        "J\".Thick\n");
    EXPECT_EQ(KeysOf(Model().GetMap(schema::Model_sections())), (Texts{"I_LEFT", "J J_LEFT"}));
    EXPECT_EQ(KeysOf(Model().GetMap(schema::Model_plies())), (Texts{"P"}));
    EXPECT_EQ(Names(KOVSrvShellSection(Assignment()).GetOrientations()), (Texts{"I_O1"}));
    EXPECT_EQ(MembersOf(Region(1).GetPosition(schema::Region_elementsCluster())), (Ints{5, 6}));
    EXPECT_EQ(Distributed(Model(), schema::BulkShellLayers_distThicknesses(), 0, {0, 1, 5, 6}),
              (Reals{4, 2, 4, 2}));
}

// ---- findings ----

TEST_P(SectionDecks, ElementsInNoSectionAreToldByTheirKeyword) {
    Translate(kStrip +
              "*ELEMENT, TYPE=S3\n21, 1, 2, 8\n22, 2, 3, 9\n*ELEMENT, TYPE=SPRINGA\n31, 1, 2\n"
              "*ELEMENT, TYPE=MASS\n32, 1\n*ELEMENT, TYPE=T3D2, ELSET=BARS\n41, 1, 2\n" +
              kSteel +
              "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel\n1\n*SOLID SECTION, ELSET=BARS, "
              "MATERIAL=Steel\n1\n");
    EXPECT_EQ(summary.sectionlessBlocks, 2);
    EXPECT_EQ(summary.sectionlessElements, 5);
    ASSERT_EQ(summary.sectionless.size(), 2U);
    EXPECT_EQ(summary.sectionless[0].path, "deck.inp");
    EXPECT_EQ(summary.sectionless[0].line, 14);
    EXPECT_EQ(summary.sectionless[0].type, "S4R");
    EXPECT_EQ(summary.sectionless[0].count, 3);
    EXPECT_EQ(summary.sectionless[0].label, 13);
    EXPECT_EQ(summary.sectionless[0].instance, "");
    EXPECT_EQ(summary.sectionless[1].line, 26);
    EXPECT_EQ(summary.sectionless[1].type, "S3");
    EXPECT_EQ(summary.sectionless[1].count, 2);
    EXPECT_EQ(summary.sectionless[1].label, 21);
}

TEST_P(SectionDecks, ElementsInNoSectionAreToldOnceForAPart) {
    Translate(
        kPart +
        "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=Skin\n*END INSTANCE\n*INSTANCE, NAME=J, "
        "PART=Skin\n*END INSTANCE\n*END ASSEMBLY\n*MATERIAL, NAME=Outer\n*SHELL SECTION, "
        "ELSET=I.RIGHT, MATERIAL=Outer\n1\n*SHELL SECTION, ELSET=I.LAST, MATERIAL=Outer\n1\n");
    ASSERT_EQ(summary.sectionless.size(), 1U);
    EXPECT_EQ(summary.sectionless[0].line, 15);
    EXPECT_EQ(summary.sectionless[0].count, 3);
    EXPECT_EQ(summary.sectionless[0].label, 13);
    EXPECT_EQ(summary.sectionless[0].instance, "J");
}

TEST_P(SectionDecks, NoMoreThanTenKeywordsAreNamed) {
    std::string deck = kStrip;
    for (int i = 0; i < 12; ++i) {
        deck += "*ELEMENT, TYPE=S3\n" + std::to_string(100 + i) + ", 1, 2, 8\n";
    }
    Translate(deck);
    EXPECT_EQ(summary.sectionless.size(), 10U);
    EXPECT_EQ(summary.sectionlessBlocks, 13);
    EXPECT_EQ(summary.sectionlessElements, 17);
}

// Elements 21 to 24 of four families, each in a set of its own.
std::string const kFamilies =
    "*ELEMENT, TYPE=C3D8, ELSET=SOLID\n21, 1, 2, 3, 4, 7, 8, 9, 10\n"
    "*ELEMENT, TYPE=M3D4, ELSET=MEM\n22, 1, 2, 8, 7\n*ELEMENT, TYPE=B31, ELSET=BEAM\n23, 1, 2\n"
    "*ELEMENT, TYPE=T3D2, ELSET=BAR\n24, 1, 2\n";  // lines 26 to 33

TEST_P(SectionDecks, SectionsGivenToElementsOfAnotherKindAreTold) {
    Translate(kStrip + kFamilies + "*MATERIAL, NAME=Steel\n" +
              "*ELSET, ELSET=MIX\n13, BAR, 21, 12, 21\n"
              "*SHELL SECTION, ELSET=MIX, MATERIAL=Steel\n1\n"
              "*BEAM SECTION, ELSET=MEM, MATERIAL=Steel, SECTION=CIRC\n1\n"
              "*MEMBRANE SECTION, ELSET=BEAM, MATERIAL=Steel\n1\n"
              "*SOLID SECTION, ELSET=LAST, MATERIAL=Steel\n");
    auto const& misfits = summary.misfits;
    EXPECT_EQ(misfits.sections, 4);
    EXPECT_EQ(misfits.elements, 5);
    ASSERT_EQ(misfits.first.size(), 4U);
    EXPECT_EQ(misfits.first[0].path, "deck.inp");
    EXPECT_EQ(misfits.first[0].line, 37);
    EXPECT_EQ(misfits.first[0].kind, tool::SectionEntry::Kind::Shell);
    EXPECT_EQ(misfits.first[0].set, "MIX");
    EXPECT_EQ(misfits.first[0].count, 2);
    EXPECT_EQ(misfits.first[0].label, 21);
    EXPECT_EQ(misfits.first[0].type, "C3D8");
    EXPECT_EQ(misfits.first[0].instance, "");
    EXPECT_EQ(misfits.first[1].line, 39);
    EXPECT_EQ(misfits.first[1].type, "M3D4");
    EXPECT_EQ(misfits.first[2].line, 41);
    EXPECT_EQ(misfits.first[2].type, "B31");
    EXPECT_EQ(misfits.first[3].line, 43);
    EXPECT_EQ(misfits.first[3].set, "LAST");
    EXPECT_EQ(misfits.first[3].label, 15);
}

TEST_P(SectionDecks, SectionsThatFitAreNotTold) {
    Translate(kStrip + kFamilies +
              "*ELEMENT, TYPE=CPS4, ELSET=PLANE\n31, 1, 2, 8, 7\n*ELEMENT, TYPE=CPE4, "
              "ELSET=PLANE\n32, 1, 2, 8, 7\n*ELEMENT, TYPE=CAX4, ELSET=PLANE\n33, 1, 2, 8, 7\n"
              "*ELSET, ELSET=PLANE\nSOLID, BAR\n" +
              kSteel +
              "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel\n1\n"
              "*BEAM SECTION, ELSET=BEAM, MATERIAL=Steel, SECTION=CIRC\n1\n"
              "*MEMBRANE SECTION, ELSET=MEM, MATERIAL=Steel\n1\n"
              "*SOLID SECTION, ELSET=PLANE, MATERIAL=Steel\n");
    EXPECT_EQ(summary.misfits.sections, 0);
    EXPECT_EQ(summary.misfits.elements, 0);
    EXPECT_TRUE(summary.misfits.first.empty());
}

TEST_P(SectionDecks, ASectionOfAPartThatDoesNotFitIsToldOnce) {
    Translate("*PART, NAME=Skin\n" + kStrip +
              "*SOLID SECTION, ELSET=RIGHT, MATERIAL=Steel\n*END PART\n*ASSEMBLY, NAME=A\n"
              "*INSTANCE, NAME=I, PART=Skin\n*END INSTANCE\n*INSTANCE, NAME=J, PART=Skin\n"
              "*END INSTANCE\n*END ASSEMBLY\n*MATERIAL, NAME=Steel\n");
    EXPECT_EQ(summary.misfits.sections, 1);
    EXPECT_EQ(summary.misfits.elements, 4);
    ASSERT_EQ(summary.misfits.first.size(), 1U);
    EXPECT_EQ(summary.misfits.first[0].line, 27);
    EXPECT_EQ(summary.misfits.first[0].count, 4);
    EXPECT_EQ(summary.misfits.first[0].label, 13);
    EXPECT_EQ(summary.misfits.first[0].instance, "I");
}

TEST_P(SectionDecks, NoMoreThanTenSectionsOfAnotherKindAreNamed) {
    std::string deck = kStrip + "*MATERIAL, NAME=Steel\n";
    for (int i = 0; i < 12; ++i) {
        std::string const label = std::to_string(100 + i);
        deck += "*ELEMENT, TYPE=T3D2, ELSET=E" + label + "\n" + label +
                ", 1, 2\n*SHELL SECTION, ELSET=E" + label + ", MATERIAL=Steel\n1\n";
    }
    Translate(deck);
    EXPECT_EQ(summary.misfits.first.size(), 10U);
    EXPECT_EQ(summary.misfits.sections, 12);
    EXPECT_EQ(summary.misfits.elements, 12);
}

TEST_P(SectionDecks, RandomSectionsOfAnotherKindAreCountedAsElementByElement) {
    unsigned const seed = 20260611;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    auto const below = [&random](int n) { return static_cast<int>(random() % unsigned(n)); };
    std::string const types[] = {"S3", "M3D3", "CPS3", "CAX3"};
    std::string deck = kStrip;
    std::vector<int> families;  // of the labels from 100 on
    for (int block = 0; block < 60; ++block) {
        int const family = below(4);
        deck += "*ELEMENT, TYPE=" + types[family] + "\n";
        for (int i = below(30); i >= 0; --i) {
            deck += std::to_string(100 + families.size()) + ", 1, 2, 8\n";
            families.push_back(family);
        }
    }
    int const n = static_cast<int>(families.size());
    std::vector<bool> used(families.size());
    std::vector<int> counts;
    std::vector<int> firsts;
    for (int section = 0; section < 10; ++section) {
        std::string const name = "E" + std::to_string(section);
        deck += "*ELSET, ELSET=" + name + "\n";
        std::set<int> members;
        int const stride = 1 + below(5);
        for (int i = below(n); i < n && members.size() < 90; i += stride) {
            if (used[static_cast<std::size_t>(i)]) continue;
            used[static_cast<std::size_t>(i)] = true;
            members.insert(i);
            for (int times = 1 + below(2); times > 0; --times) {
                deck += std::to_string(100 + i) + "\n";
            }
        }
        deck += (section % 2 == 0 ? "*SHELL SECTION, ELSET=" : "*SOLID SECTION, ELSET=") + name +
                ", MATERIAL=Steel\n1\n";
        int count = 0;
        int first = -1;
        for (int const member : members) {
            int const family = families[static_cast<std::size_t>(member)];
            if (section % 2 == 0 ? family == 0 : family >= 2) continue;
            if (count++ == 0) first = 100 + member;
        }
        if (count == 0) continue;
        counts.push_back(count);
        firsts.push_back(first);
    }
    Translate(deck + "*MATERIAL, NAME=Steel\n");
    Ints told;
    Ints labels;
    for (auto const& misfit : summary.misfits.first) {
        told.push_back(static_cast<int>(misfit.count));
        labels.push_back(misfit.label);
    }
    EXPECT_FALSE(counts.empty());
    EXPECT_EQ(told, counts);
    EXPECT_EQ(labels, firsts);
}

TEST_P(SectionDecks, WhatIsNotKeptIsNoted) {
    Translate(kStrip + kSteel +
              "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel, POISSON=0.5, NODAL THICKNESS\n1\n"
              "*SHELL SECTION, ELSET=RIGHT, MATERIAL=Steel, POISSON=0.5, STACK DIRECTION=2\n1\n");
    EXPECT_EQ(summary.notes.at("POISSON of *SHELL SECTION, which was not kept"), 2);
    EXPECT_EQ(summary.notes.at("NODAL THICKNESS of *SHELL SECTION, which was not kept"), 1);
    EXPECT_EQ(summary.notes.at("STACK DIRECTION of *SHELL SECTION, which was not kept"), 1);
}

TEST_P(SectionDecks, ASetMayNameAnElementTwice) {
    Translate(kStrip + "*ELSET, ELSET=LEFT\n11, 12, LEFT\n" + kSteel +
              "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel\n1\n");
    EXPECT_EQ(MembersOf(Region().GetPosition(schema::Region_elementsCluster())), (Ints{0, 1}));
}

TEST_P(SectionDecks, ASectionMayHaveAnEmptySet) {
    Translate(kStrip + "*ELSET, ELSET=NONE\n*ELSET, ELSET=NONE2\n" + kSteel +
              "*SHELL SECTION, ELSET=NONE, MATERIAL=Steel\n1\n*SHELL SECTION, ELSET=NONE2, "
              "MATERIAL=Steel\n2\n");
    EXPECT_EQ(summary.sections, 2U);
    EXPECT_EQ(Plainly(KOVSrvShellSection(Assignment(1)).GetConstThicknesses()), (Reals{2}));
}

}  // namespace
}  // namespace kov::test
