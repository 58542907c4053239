// How the checker is run, and what it lets pass and counts in a mesh.
#include "services/LumenFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

INSTANTIATE_TEST_SUITE_P(Documents, LumenEdges, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

// ---- frame ----

TEST(LumenFrame, ADocumentWithoutAModelHasNoMeshAndNoSteps) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory(KOVObjDocument::Bare);
    EXPECT_THAT(FindingsOf(document),
                ElementsAre("Mesh is not present in this Model.", "Model has no Steps."));
    document.Close();
}

TEST(LumenFrame, ANewDocumentLacksWhatTheSkeletonDoesNotHave) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    EXPECT_THAT(FindingsOf(document),
                ElementsAre("There is no data in coordinates distribution.",
                            "Mesh has no elementSpecAssignment.", "userNodes is not present",
                            "elementClassCollection is not present",
                            "shapeFormulationLogicalSectionClassification is not present",
                            "Model has no Steps."));
    document.Close();
}

TEST(LumenFrame, AMissingMeshIsOneFindingOfTheMeshCheck) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory(KOVObjDocument::Bare);
    KOVSrvLumenChecker checker(document);
    checker.Check_Mesh();
    EXPECT_THAT(Texts(checker), ElementsAre("Mesh is not present in this Model."));
    document.Close();
}

TEST(LumenFrame, ConstructionFindsNothing) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    EXPECT_THAT(Texts(KOVSrvLumenChecker(document)), IsEmpty());
    document.Close();
}

TEST(LumenFrame, ChecksCalledAloneSeeNoModel) {
    LumenDocument const d;
    KOVSrvLumenChecker checker(d.document);
    checker.Check_Regions();
    checker.Check_Ply();
    checker.Check_History();
    checker.Check_FocusResults();
    checker.Check_sectionAssignments();
    EXPECT_THAT(Texts(checker), IsEmpty());
    checker.Check_Steps();
    EXPECT_THAT(Texts(checker), ElementsAre("Model has no Steps."));
}

TEST(LumenFrame, ChecksMayBeRepeatedAloneOnceTheModelIsKnown) {
    LumenDocument const d;
    KOVSrvLumenChecker checker(d.document);
    checker.Check_Lumen();
    EXPECT_THAT(Texts(checker), IsEmpty());
    auto const transaction = d.Write();
    d.Unlink("Riks", schema::Step_Gen_timeIncrementation());
    d.Model().GetMap(schema::Model_plies()).Remove("PLY-1");
    std::string const riks =
        "TimeIncrementation record does not exist for Step_Gen_StaticRiks \"Riks\" "
        "(Step_Gen_timeIncrementation).";
    std::string const ply = "Ply is not linked to Model, \"SKIN\", 0.";
    checker.Check_sectionAssignments();
    checker.Check_Steps();
    EXPECT_THAT(Texts(checker), ElementsAre(ply, riks));
    checker.Check_Lumen();
    EXPECT_THAT(Texts(checker), ElementsAre(ply, riks, riks, ply));
}

TEST(LumenFrame, AClosedDocumentIsRefusedByTheDocumentLayer) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    KOVSrvLumenChecker checker(document);
    document.Close();
    EXPECT_THROW(checker.Check_Lumen(), KOVSimException);
}

TEST_P(LumenEdges, NamesAreTakenAsTheyAre) {
    Write([&] {
        d.At("Riks").SetName("{}\"%d {}");
        d.Unlink("Riks", schema::Step_Gen_timeIncrementation());
    });
    EXPECT_THAT(d.Findings(), ElementsAre("TimeIncrementation record does not exist for "
                                          "Step_Gen_StaticRiks \"{}\"%d {}\" "
                                          "(Step_Gen_timeIncrementation)."));
}

TEST_P(LumenEdges, FindingsBeforeARefusalStay) {
    Write([&] {
        d.Unlink("Riks", schema::Step_Gen_timeIncrementation());
        KOVSimPosition const loose = d.Record(schema::Section_Shell(), "LOOSE");
        loose.DataRecord().SetInt(0, 1);
        d.At("assignment.1").SetPosition(schema::SectionAssignment_section(), loose);
    });
    KOVSrvLumenChecker checker(d.document);
    // Bulk layers are kept by the members of a collection, of which this section is none.
    EXPECT_THROW(checker.Check_Lumen(), KOVSimException);
    EXPECT_THAT(Texts(checker),
                ElementsAre("TimeIncrementation record does not exist for Step_Gen_StaticRiks "
                            "\"Riks\" (Step_Gen_timeIncrementation).",
                            "Section \"LOOSE\" is not linked to Focus "
                            "(Focus_externalSectionIds)."));
}

TEST_P(LumenEdges, WithoutBulkLayersNoShellIsRead) {
    Write([&] {
        d.Unlink("model", schema::Model_bulkShellLayers());
        KOVSimPosition const loose = d.Record(schema::Section_Shell(), "LOOSE");
        loose.DataRecord().SetInt(0, 1);
        d.At("focus").GetSet(schema::Focus_externalSectionIds()).Insert(loose);
        d.At("assignment.1").SetPosition(schema::SectionAssignment_section(), loose);
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

// ---- mesh ----

TEST_P(LumenEdges, CoordinatesMayLieInSeveralDrawers) {
    Write([&] {
        KOVSimPosition const coordinates = d.Distribution({d.nodes.ID(), d.components.ID()});
        for (int first : {0, 10}) {
            d.AddDrawer(coordinates, {d.PersistentSet(d.nodes, Range(first, 10)),
                                      d.PersistentSet(d.components, {0, 12, 20})});
        }
        d.Mesh().SetCoordinates(coordinates);
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenEdges, CoordinatesOfOtherThingsHoldNoNode) {
    Write([&] {
        KOVSimPosition const coordinates = d.Distribution({d.elements.ID()});
        d.AddDrawer(coordinates, {d.PersistentSet(d.elements, {0, 1})});
        d.Mesh().SetCoordinates(coordinates);
    });
    EXPECT_THAT(
        d.Findings(),
        ElementsAre("Some nodes from user node set are not present in coordinates distribution"));
}

TEST_P(LumenEdges, UserNodesOfAnotherCollectionHaveNoCoordinates) {
    Write([&] { d.Mesh().SetUserNodes(d.PersistentSet(d.elements, {1})); });
    EXPECT_THAT(
        d.Findings(),
        ElementsAre("Some nodes from user node set are not present in coordinates distribution"));
}

TEST_P(LumenEdges, AClassOfOtherElementsIsPassedOver) {
    Write([&] {
        KOVSimSet const sections = d.At("class.shell").GetSet(schema::ElementClass_sections());
        sections.Remove(*sections.Begin());
        KOVObjElementClass(d.At("class.shell")).SetElementCSet(d.At("user nodes"));
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenEdges, ConnectivityOfOtherThingsCountsForNoElement) {
    Write([&] {
        KOVSimSet const sections = d.At("class.shell").GetSet(schema::ElementClass_sections());
        sections.Remove(*sections.Begin());
        KOVSimDistributionID const other =
            d.NewDistribution(d.nodes, d.positions, KOVSimRangeType(7, d.nodes.ID()));
        d.AddDrawer(other, {d.PersistentSet(d.nodes, {0}), d.PersistentSet(d.positions, {0})});
        d.Mesh().SetConnectivity(KOVSimContext(d.document.ContextID()).CreateDSet(other, -1));
    });
    EXPECT_THAT(d.Findings(), ElementsAre(testing::EndsWith("elements in connectivity: NO")));
}

TEST_P(LumenEdges, TheNodesAreLookedAtBehindTheAssignment) {
    Write([&] {
        d.Mesh().SetCoordinates(d.Distribution({d.nodes.ID(), d.components.ID()}));
        d.Unlink("mesh", schema::Mesh_elementSpecAssignment());
    });
    EXPECT_THAT(
        d.Findings(),
        ElementsAre("There is no data in coordinates distribution.",
                    "Mesh has no elementSpecAssignment.",
                    "Some nodes from user node set are not present in coordinates distribution"));
}

TEST_P(LumenEdges, ANodeMayHaveCoordinatesThatNoUserMade) {
    Write([&] { d.Mesh().SetUserNodes(d.PersistentSet(d.nodes, {3})); });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenEdges, ClassesThatArePassedOverAreNotCounted) {
    // Behind two classes with sections, one of masses and one without specifications.
    Write([&] {
        KOVSimPosition const added =
            d.Mesh().GetElementClassCollection().AppendMember(schema::ElementClass());
        KOVObjElementClass(added).SetElementCSet(d.PersistentSet(d.elements, {30, 31}));
        d.At("classification").GetSet(schema::ElementClassification_elementClasses()).Insert(added);
        d.AssignSpecs({{0, Range(0, 10)}, {2, Range(20, 5)}, {3, {30}}});
    });
    EXPECT_THAT(d.Findings(),
                ElementsAre(" Element Class :#2; has no reference to Section; #elements:2; "
                            "elClass->elSpec: -MISSING-; elSpecAssign->elSpec: \"S4\"; elements in "
                            "elementSpecAssign: PARTIAL; elements in connectivity: YES"));
}

TEST_P(LumenEdges, ReportedClassesAreCounted) {
    Write([&] {
        for (char const* name : {"class.shell", "class.solid"}) {
            KOVSimSet const sections = d.At(name).GetSet(schema::ElementClass_sections());
            sections.Remove(*sections.Begin());
        }
    });
    std::vector<std::string> const findings = d.Findings();
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_THAT(findings[0], testing::StartsWith(" Element Class :#0; has no reference"));
    EXPECT_THAT(findings[1], testing::StartsWith(" Element Class :#1; has no reference"));
}

TEST_P(LumenEdges, WithoutAnAssignmentNoClassIsWalked) {
    Write([&] {
        KOVSimSet const sections = d.At("class.shell").GetSet(schema::ElementClass_sections());
        sections.Remove(*sections.Begin());
        d.Mesh().SetElementSpecAssignment(d.At("user nodes"));
    });
    EXPECT_THAT(d.Findings(), ElementsAre("Mesh->elementSpecAssignment link points to an object of "
                                          "category 5 instead of a DSet."));
}

// The element type of the class of 5 masses is another.
bool IsExempt(char const* type) {
    LumenDocument const d;
    auto const transaction = d.Write();
    KOVSimMap const specs =
        d.document.GetElementSpecCollection().GetMap(schema::ElementSpecLib_elementSpecs());
    specs.Remove("MASS");
    specs.Insert(type, d.At("spec.MASS"));
    std::vector<std::string> const findings = d.Findings();
    EXPECT_LE(findings.size(), 1U);
    return findings.empty();
}

TEST(LumenExemptTypes, BeginSo) {
    for (char const* type :
         {"DCOUP", "DGAP", "DRAG", "F2D", "F3D", "FLINK", "GAP", "IDCOUP", "ITS", "JOINT", "PSI",
          "U", "Z", "X", "CONN", "RAX", "HEATCAP", "MASS", "ROTARYI"}) {
        EXPECT_TRUE(IsExempt(type)) << type;
        EXPECT_TRUE(IsExempt((std::string(type) + "7").c_str())) << type << "7";
        EXPECT_FALSE(IsExempt((std::string("B") + type).c_str())) << "B" << type;
    }
}

TEST(LumenExemptTypes, OrAreCalledSo) {
    for (char const* type : {"R2D2", "R3D3", "R3D4", "RB2D2", "RB3D2"}) {
        EXPECT_TRUE(IsExempt(type)) << type;
        EXPECT_FALSE(IsExempt((std::string(type) + "R").c_str())) << type << "R";
    }
}

TEST(LumenExemptTypes, AreNoOthers) {
    for (char const* type : {"S4R", "mass", "R3D", "C3D8", "HEATCA", "T3D2"}) {
        EXPECT_FALSE(IsExempt(type)) << type;
    }
}

TEST_P(LumenEdges, DimensionsAreThoseOfTheFirstDrawer) {
    auto const has = [&](KOVSimPosition const& field) {
        return KOVSrvLumenChecker(d.document).HasNodeOrElementDim(field);
    };
    EXPECT_TRUE(has(d.At("U")));
    EXPECT_TRUE(has(d.At("S")));
    EXPECT_FALSE(has(d.At("ENERGY")));
    EXPECT_FALSE(has(d.At("WORK")));
    EXPECT_FALSE(has(d.At("SURF")));
    EXPECT_FALSE(has(KOVSimPosition()));
    KOVSimPosition bare, loose;
    Write([&] {
        KOVSimCollection const times(d.At("Static.TimeDescription.collection").GetCollection());
        d.AddSerialField(d.At("WORK"), d.nodes, {0, 1}, {34});
        d.AddSerialField(d.At("U"), times, {0, 1}, {34});
        bare = d.Know("bare", d.NewMeshedField("BARE", 1, -1));
        loose = d.Know("loose", d.NewMeshedField("LOOSE", 1, -1));
        loose.GetSet(schema::Field_serialFields()).Insert(d.Record(schema::SerialField()));
    });
    EXPECT_FALSE(has(d.At("WORK")));
    EXPECT_TRUE(has(d.At("U")));
    EXPECT_FALSE(has(d.At("bare")));
    EXPECT_FALSE(has(d.At("loose")));
}

}  // namespace
}  // namespace kov::test
