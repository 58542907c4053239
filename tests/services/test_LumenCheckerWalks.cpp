// What the checker lets pass of regions, steps, sections and fields, and how it numbers them.
#include "services/LumenFixture.h"
#include "zdm_AlgebraicTypes.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LumenWalks : public LumenEdges {};
INSTANTIATE_TEST_SUITE_P(Documents, LumenWalks, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

// ---- regions ----

TEST_P(LumenWalks, OtherRegionsMayLackEverything) {
    Write([&] {
        for (int type : {schema::Region(), schema::Surface(), schema::Surface_ClusterFree(),
                         schema::Region_ClusterFree(), schema::AnalyticSurface()}) {
            std::string const name = "R" + std::to_string(type);
            d.Model().GetMap(schema::Model_regions()).Insert(name.c_str(), d.Record(type));
        }
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, AnAxisWithoutAnOrientationIsNotLookedAt) {
    Write([&] { d.Unlink("ANA-R", schema::AnalyticSurface_Revolution_orientation()); });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, WithoutSurfaceOutputItsRegionsAreNotLookedAt) {
    Write([&] {
        d.Unlink("SURF", schema::Region_elementsFacesCluster());
        d.At("SURF").SetPosition(schema::Region_elementsCluster(),
                                 d.PersistentSet(d.elements, {1}));
        d.At("surface output")
            .Associate(schema::SurfaceOutputRecord(), schema::SurfaceOutputRecord_regions,
                       KOVSimPosition());
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
    Write([&] {
        d.At("focus").Associate(schema::FocusRecord(), schema::FocusRecord_surfaceOutput,
                                KOVSimPosition());
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

// ---- steps ----

TEST_P(LumenWalks, TheSystemOfAStepWithoutModesIsNotLookedAt) {
    Write([&] {
        d.At("Static").SetPosition(schema::Task_feSystem(), d.Record(schema::FESystem()));
        d.Unlink("Freq", schema::Task_modes());
        d.Unlink("Freq.system", schema::ModalSystem_eigenvalues());
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, ModesOfOtherStepsMayBeEmpty) {
    Write([&] { d.At("Freq").SetPosition(schema::Task_modes(), d.Record(schema::Region())); });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, ArcLengthsOfOtherStepsAreNotLookedAt) {
    Write([&] {
        d.At("Static").SetPosition(schema::Step_Gen_StaticRiks_arcLengths(), d.At("user nodes"));
        d.At("Riks").SetPosition(schema::Step_Gen_StaticRiks_arcLengths(),
                                 d.Record(schema::Region()));
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, DataOverAnotherCollectionCoverNothing) {
    Write([&] {
        KOVSimPosition const data = d.Distribution({d.nodes.ID()});
        d.AddDrawer(data, {d.PersistentSet(d.nodes, {2, 3})});
        d.At("Static.TimeDescription").SetPosition(schema::TimeDescription_data(), data);
    });
    EXPECT_THAT(d.Findings(),
                ElementsAre("TimeDescription data distribution must have all members from times "
                            "CSet for Step \"Static\"."));
}

TEST_P(LumenWalks, AnEmptySetOfTimesIsCovered) {
    Write([&] {
        KOVSimCollection const times(d.At("Static.TimeDescription.collection").GetCollection());
        d.At("Static").SetPosition(schema::Task_times(), d.PersistentSet(times, {}));
        d.At("Static.TimeDescription")
            .SetPosition(schema::TimeDescription_data(), d.Distribution({times.ID()}));
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

// ---- sections ----

TEST_P(LumenWalks, ASingleLayerIsNotWalked) {
    Write([&] {
        d.At("SKIN").GetVector(schema::Section_layers()).Remove(1);
        d.Model().GetMap(schema::Model_plies()).Remove("PLY-1");
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, EachOfTwoLayersIsWalked) {
    Write([&] {
        d.At("layer.1").SetPosition(schema::Layer_ply(), d.At("PLY-1"));
        d.Model().GetMap(schema::Model_plies()).Remove("PLY-1");
    });
    EXPECT_THAT(d.Findings(), ElementsAre("Ply is not linked to Model, \"SKIN\", 0.",
                                          "Ply is not linked to Model, \"SKIN\", 1."));
}

TEST_P(LumenWalks, TheNumberOfLayersIsThatOfTheRecord) {
    Write([&] {
        KOVSimVector const layers = d.At("SKIN").GetVector(schema::Section_layers());
        while (layers.Size() > 0) layers.Remove(0);
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, ShellsOfTheThirdKindNeedNoLayers) {
    Write([&] {
        d.At("SKIN").DataRecord().SetInt(0, 0);
        d.At("SKIN").DataRecord().SetSymb(9, 2);
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, AShellThatDoesNotTellItsKindNeedsNoLayers) {
    Write([&] {
        KOVSimPosition const plain = d.Sections().CreateMember(1, schema::Section_Shell());
        d.At("focus").GetSet(schema::Focus_externalSectionIds()).Insert(plain);
        d.At("assignment.1").SetPosition(schema::SectionAssignment_section(), plain);
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, OtherSectionsNeedNoLayers) {
    Write([&] {
        d.At("BULK").DataRecord().SetInt(0, 0);
        d.At("BULK").DataRecord().SetSymb(9, 1);
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

// ---- fields ----

TEST_P(LumenWalks, AWholeModelOrSurfaceFieldNeedsNoRequest) {
    Write([&] {
        for (int grid : {schema::Grid_WholeModel(), schema::Grid_SurfaceVector(),
                         schema::Grid_SurfaceScalar()}) {
            KOVSimPosition const field =
                d.NewMeshedField("FREE" + std::to_string(grid), zdm_Algebraic_SCALAR, grid);
            d.At("Buckle").GetSet(schema::Task_historyResults()).Insert(field);
        }
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, HistoryFieldsAreNumberedByStep) {
    Write([&] {
        for (char const* step : {"Riks", "Buckle"}) {
            d.At(step)
                .GetSet(schema::Task_historyResults())
                .Insert(d.Record(schema::Field_UniformScalar()));
        }
    });
    EXPECT_THAT(d.Findings(),
                ElementsAre("Step \"Riks\", History field #2 is not a MeshedField.",
                            "Step \"Buckle\", History field #0 is not a MeshedField."));
}

TEST_P(LumenWalks, FieldsOfOtherRequestsAreNotLookedAt) {
    Write([&] {
        for (char const* request : {"request.none", "request.history"}) {
            d.At(request)
                .GetSet(schema::OutputRequest_field())
                .Insert(d.Record(schema::Field_UniformScalar()));
        }
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, AFieldWithoutSerialFieldsIsNotTestedFurther) {
    Write([&] {
        KOVSimPosition const field = d.NewMeshedField("BARE", 77, schema::Grid_Node());
        d.At("request.field").GetSet(schema::OutputRequest_field()).Insert(field);
    });
    EXPECT_THAT(d.Findings(), IsEmpty());
}

TEST_P(LumenWalks, ComponentsOfAllDrawersCount) {
    Write([&] {
        KOVSimPosition const serial = *d.At("ROT").GetSet(schema::Field_serialFields()).Begin();
        KOVSimPosition const other = d.Distribution({d.elements.ID(), d.components.ID()});
        serial.GetSet(schema::SerialField_drawers())
            .Insert(d.AddDrawer(
                other, {d.PersistentSet(d.elements, {0}), d.PersistentSet(d.components, {0})}));
        // What is no drawer holds nothing.
        serial.GetSet(schema::SerialField_drawers()).Insert(d.At("SURF"));
    });
    EXPECT_THAT(
        d.Findings(),
        ElementsAre("OutputRequest #1; Field: #6; FieldType: \"ROT\"; SerFld: #0; id: " +
                    d.IDOf("ROT") + " components are not consistent with algebraicType VECTOR."));
}

TEST_P(LumenWalks, SymbolsCountAndNotTheirPlaces) {
    // A component collection in another order: member 0 stands for the scalar.
    Write([&] {
        KOVSimPosition const other =
            d.Model().CreateTypedCollection(0, schema::ComponentCollection());
        other.AddSymbol("C_SCALAR", 34, schema::ComponentSymbol());
        d.document.SetComponentCollection(other);
        KOVSimCollection const collection(other.GetCollection());
        for (char const* name : {"T", "ROT"}) {
            KOVSimPosition const serial = *d.At(name).GetSet(schema::Field_serialFields()).Begin();
            KOVSimPosition const data = d.Distribution({d.nodes.ID(), collection.ID()});
            serial.GetSet(schema::SerialField_drawers())
                .Insert(d.AddDrawer(
                    data, {d.PersistentSet(d.nodes, {0}), d.PersistentSet(collection, {0})}));
        }
    });
    KOVSrvLumenChecker checker(d.document);
    checker.Check_Field(d.At("T"), "F", "1");
    checker.Check_Field(d.At("ROT"), "F", "2");
    EXPECT_THAT(Texts(checker),
                ElementsAre("F; Field: #2; FieldType: \"ROT\"; SerFld: #0; id: " + d.IDOf("ROT") +
                            " components are not consistent with algebraicType VECTOR."));
}

}  // namespace
}  // namespace kov::test
