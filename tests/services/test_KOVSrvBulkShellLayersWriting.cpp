// What the bulk shell layers write into a document.
#include <functional>
#include <vector>

#include "services/ShellFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;

std::vector<int> const kMembers = {schema::BulkShellLayers_materials(),
                                   schema::BulkShellLayers_orientations(),
                                   schema::BulkShellLayers_plies(),
                                   schema::BulkShellLayers_sectionPoints(),
                                   schema::BulkShellLayers_constThicknesses(),
                                   schema::BulkShellLayers_constAngles(),
                                   schema::BulkShellLayers_distThicknesses(),
                                   schema::BulkShellLayers_distAngles()};

class BulkWriting : public ShellTest {
  protected:
    std::vector<int> MembersSet() const {
        std::vector<int> set;
        for (int member : kMembers) {
            if (!mesh.BulkMember(member).IsNull()) set.push_back(member);
        }
        return set;
    }
    // One datum of each kind.
    void AppendAll() {
        Bulk().AppendMaterial(0, 0, 1);
        Bulk().AppendOrientation(0, 0, 2);
        Bulk().AppendPly(0, 0, 3);
        Bulk().AppendNumSectionPoints(0, 0, 5);
        Bulk().AppendConstThickness(0, 0, 0.5);
        Bulk().AppendConstAngle(0, 0, 45);
        InTransaction([&] {
            KOVSimPosition const set = mesh.ElementSet({4, 6});
            Bulk().AppendDistThickness(1, set, mesh.NewField({4, 6}, {0.25, 0.75}));
            Bulk().AppendDistAngle(1, set, mesh.NewField({4, 6}, {30, 60}));
        });
    }
    KOVObjDocumentStatistics Sizes() const { return mesh.document.Statistics(); }
};
INSTANTIATE_TEST_SUITE_P(Media, BulkWriting, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(BulkWriting, ALayerIsADrawerOfTheSectionsThatHaveIt) {
    for (int section : {3, 0}) {
        for (int layer = 0; layer < (section == 0 ? 2 : 3); ++layer) {
            Bulk().AppendMaterial(layer, section, 1 + layer + section);
            Bulk().AppendConstThickness(layer, section, 0.5 + layer + section);
        }
    }
    WriteAndReopen();
    EXPECT_THAT(
        mesh.StoredRows(schema::BulkShellLayers_materials()),
        ElementsAre(Row{{0}, {0, 3}, {1, 4}}, Row{{1}, {0, 3}, {2, 5}}, Row{{2}, {3}, {6}}));
    EXPECT_THAT(mesh.StoredRows(schema::BulkShellLayers_constThicknesses()),
                ElementsAre(Row{{0}, {0, 3}, {0.5, 3.5}}, Row{{1}, {0, 3}, {1.5, 4.5}},
                            Row{{2}, {3}, {5.5}}));
}

TEST_P(BulkWriting, TheFirstValueOfALayerOfASectionStays) {
    for (int value : {1, 2}) {
        Bulk().AppendMaterial(0, 5, value);
        Bulk().AppendOrientation(0, 5, value);
        Bulk().AppendPly(0, 5, value);
        Bulk().AppendNumSectionPoints(0, 5, value);
        Bulk().AppendConstThickness(0, 5, value);
        Bulk().AppendConstAngle(0, 5, value);
        // Not the last one when it comes again.
        for (int section : {7, 4}) Bulk().AppendPly(1, section, value);
    }
    WriteAndReopen();
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(mesh.StoredRows(kMembers[i]).front(), (Row{{0}, {5}, {1}}));
    }
    EXPECT_EQ(mesh.StoredRows(kMembers[2]).back(), (Row{{1}, {4, 7}, {1, 1}}));
}

TEST_P(BulkWriting, SectionsOfALayerComeAscendingWhateverTheOrderOfCalls) {
    Bulk().AppendConstThickness(1, 3, 0.5);
    Bulk().AppendConstThickness(1, 2, 0.25);
    Bulk().AppendConstThickness(0, 7, 7);
    Bulk().AppendConstThickness(1, 6, 0.75);
    WriteAndReopen();
    EXPECT_THAT(mesh.StoredRows(schema::BulkShellLayers_constThicknesses()),
                ElementsAre(Row{{0}, {7}, {7}}, Row{{1}, {2, 3, 6}, {0.25, 0.5, 0.75}}));
}

TEST_P(BulkWriting, EveryKindIsReachedFromTheBulkRecord) {
    AppendAll();
    WriteAndReopen();
    EXPECT_EQ(MembersSet(), kMembers);
    EXPECT_THAT(mesh.StoredRows(kMembers[0]), ElementsAre(Row{{0}, {0}, {1}}));
    EXPECT_THAT(mesh.StoredRows(kMembers[1]), ElementsAre(Row{{0}, {0}, {2}}));
    EXPECT_THAT(mesh.StoredRows(kMembers[2]), ElementsAre(Row{{0}, {0}, {3}}));
    EXPECT_THAT(mesh.StoredRows(kMembers[3]), ElementsAre(Row{{0}, {0}, {5}}));
    EXPECT_THAT(mesh.StoredRows(kMembers[4]), ElementsAre(Row{{0}, {0}, {0.5}}));
    EXPECT_THAT(mesh.StoredRows(kMembers[5]), ElementsAre(Row{{0}, {0}, {45}}));
    EXPECT_THAT(mesh.StoredRows(kMembers[6]), ElementsAre(Row{{1}, {4, 6}, {0.25, 0.75}}));
    EXPECT_THAT(mesh.StoredRows(kMembers[7]), ElementsAre(Row{{1}, {4, 6}, {30, 60}}));
}

TEST_P(BulkWriting, StoresHaveTheirGridsTypesAndRanges) {
    AppendAll();
    WriteAndReopen();
    KOVSimPosition const ranges[] = {mesh.document.GetMaterialCollection(), mesh.Orientations(),
                                     mesh.Plies()};
    for (std::size_t i = 0; i < kMembers.size(); ++i) {
        SCOPED_TRACE(i);
        KOVSimDistribution const store(mesh.Store(kMembers[i]));
        bool const byElement = i >= 6;
        EXPECT_EQ(store.Grid().Collections().ConstGet(0), mesh.Slots().GetCollection());
        EXPECT_EQ(store.Grid().Collections().ConstGet(1),
                  byElement ? mesh.elements.ID() : mesh.Sections().GetCollection());
        EXPECT_EQ(KOVSimPosition(store.ID()).TypePosition(),
                  byElement ? schema::BulkLayerElementDistribution()
                            : schema::BulkLayerSectionDistribution());
        EXPECT_EQ(store.Range().Key(), i < 3    ? KOVSimTypeKeyMember
                                       : i == 3 ? KOVSimTypeKeyInt
                                                : KOVSimTypeKeyDouble);
        if (i < 3) {
            EXPECT_EQ(store.Range().Collection(), ranges[i].GetCollection());
        }
        EXPECT_EQ(mesh.BulkMember(kMembers[i]).GetDistribution().IsNull(), i >= 4);
    }
}

TEST_P(BulkWriting, NumbersAreReachedThroughAMeshedField) {
    AppendAll();
    Bulk().AppendConstThickness(1, 0, 0.5);
    WriteAndReopen();
    KOVSimMap const types = mesh.document.Focus()
                                .GetPosition(schema::Focus_fieldTypes())
                                .GetMap(schema::zdm_FieldTypeLib_fieldTypes());
    for (std::size_t i = 4; i < 8; ++i) {
        SCOPED_TRACE(i);
        KOVSimPosition const field = mesh.BulkMember(kMembers[i]);
        EXPECT_TRUE(field.IsA(schema::Field_Meshed()));
        EXPECT_EQ(KOVObjMeshedField(field).GetGridType(),
                  i < 6 ? schema::BulkLayerSectionDistribution()
                        : schema::BulkLayerElementDistribution());
        KOVSimPosition const type = types.Find(i % 2 == 0 ? "STH" : "ANGLE");
        EXPECT_FALSE(type.IsNull());
        EXPECT_EQ(field.GetPosition(schema::Field_fieldType()).ID(), type.ID());
        KOVSimSet const serials = field.GetSet(schema::Field_serialFields());
        ASSERT_EQ(serials.Size(), 1);
        KOVSimPosition const serial = *serials.Begin();
        EXPECT_TRUE(serial.IsA(schema::SerialField()));
        KOVSimDistributionID const store = mesh.Store(kMembers[i]);
        std::vector<KOVSimDynamicID> linked, drawers;
        KOVSimSetiterator at = serial.GetSet(schema::SerialField_drawers()).Begin();
        for (; at.NotDone(); ++at) linked.push_back((*at).ID());
        for (auto const& drawer : MeshDocument::Drawers(KOVSimDistribution(store))) {
            drawers.push_back(drawer.drawerID);
        }
        EXPECT_EQ(linked.size(), i == 4 ? 2U : 1U);
        EXPECT_EQ(linked, drawers);
    }
}

TEST_P(BulkWriting, DrawersAreChunkedAsOneRowThatGrowsInTheSecondDimension) {
    AppendAll();
    Bulk().AppendMaterial(0, 4, 1);
    Bulk().AppendMaterial(0, 2, 1);
    WriteAndReopen();
    for (std::size_t i = 0; i < kMembers.size(); ++i) {
        SCOPED_TRACE(i);
        auto const drawers = MeshDocument::Drawers(KOVSimDistribution(mesh.Store(kMembers[i])));
        ASSERT_EQ(drawers.Size(), 1);
        EXPECT_EQ(drawers.ConstGet(0).extendableDim, 1);
        EXPECT_THAT(MeshDocument::ChunkSizes(drawers.ConstGet(0)), ElementsAre(1, i == 0  ? 3
                                                                                  : i < 6 ? 1
                                                                                          : 2));
    }
}

TEST_P(BulkWriting, AWholeWriteLeavesNothingHeldAndTheDocumentBound) {
    AppendAll();
    mesh.WriteBulk();
    EXPECT_EQ(LayersHeld(), kNothingHeld);
    EXPECT_EQ((Bulk().*BulkFields::Document()).ContextID(), mesh.document.ContextID());
    EXPECT_EQ((Bulk().*BulkFields::BulkRecord()).ID(), mesh.BulkRecord().ID());
}

TEST_P(BulkWriting, OnlyWhatWasAppendedIsWritten) {
    Bulk().AppendMaterial(1, 2, 3);
    WriteAndReopen();
    EXPECT_FALSE(mesh.BulkRecord().IsNull());
    EXPECT_THAT(MembersSet(), ElementsAre(schema::BulkShellLayers_materials()));
}

TEST_P(BulkWriting, NothingAppendedStillMakesTheRecord) {
    WriteAndReopen();
    EXPECT_TRUE(mesh.BulkRecord().IsA(schema::BulkShellLayers()));
    EXPECT_TRUE(MembersSet().empty());
}

TEST_P(BulkWriting, AModelWithoutShellSectionIsLeftAlone) {
    ShellDocument other(GetParam(), 10, 10);
    auto const transaction = other.Write();
    KOVSimPosition const solid = other.document.CreateDataRecord(schema::Section_Solid()).Pos();
    other.Assign(solid, {1});
    other.Assign(KOVSimPosition(), {2});
    transaction->Commit();
    AppendAll();
    std::vector<int> const held = LayersHeld();
    KOVObjDocumentStatistics const before = other.document.Statistics();
    other.WriteBulk();
    KOVObjDocumentStatistics const after = other.document.Statistics();
    EXPECT_EQ(after.commits, before.commits);
    EXPECT_EQ(after.records, before.records);
    EXPECT_TRUE(other.BulkRecord().IsNull());
    EXPECT_TRUE(other.Slots().IsNull());
    EXPECT_EQ(LayersHeld(), held);
    // What was kept goes into the next write.
    WriteAndReopen();
    EXPECT_EQ(MembersSet(), kMembers);
}

TEST_P(BulkWriting, AShellSectionBehindOthersIsFoundAndWrittenOnce) {
    ShellDocument other(GetParam(), 10, 10);
    auto transaction = other.Write();
    other.AddCollections();
    other.Assign(other.document.CreateDataRecord(schema::Section_Solid()).Pos(), {1});
    other.Assign(2, 1, {2});
    other.Assign(3, 1, {3});
    transaction->Commit();
    transaction.reset();
    Bulk().AppendMaterial(0, 2, 7);
    auto const before = other.document.Statistics().commits;
    other.WriteBulk();
    EXPECT_EQ(other.document.Statistics().commits, before + 1);
    EXPECT_THAT(other.StoredRows(schema::BulkShellLayers_materials()),
                ElementsAre(Row{{0}, {2}, {7}}));
}

TEST_P(BulkWriting, AnyPositionOfTheDocumentWillDo) {
    Bulk().AppendMaterial(0, 0, 7);
    Bulk().WriteBulkDistributions(mesh.elements.ID());
    EXPECT_THAT(MembersSet(), ElementsAre(schema::BulkShellLayers_materials()));
}

TEST_P(BulkWriting, ASecondWriteSetsTheMembersAnewAndKeepsTheFormerStores) {
    Bulk().AppendMaterial(0, 0, 1);
    Bulk().AppendConstAngle(0, 0, 1);
    WriteAndReopen();
    KOVSimDynamicID const record = mesh.BulkRecord().ID();
    KOVSimDistributionID const former = mesh.Store(schema::BulkShellLayers_materials());
    KOVSimDistributionID const angles = mesh.Store(schema::BulkShellLayers_constAngles());
    Bulk().AppendMaterial(0, 3, 2);
    mesh.WriteBulk();
    EXPECT_EQ(mesh.BulkRecord().ID(), record);
    EXPECT_THAT(mesh.StoredRows(schema::BulkShellLayers_materials()),
                ElementsAre(Row{{0}, {3}, {2}}));
    EXPECT_NE(mesh.Store(schema::BulkShellLayers_materials()), former);
    EXPECT_THAT(RowsOf(former), ElementsAre(Row{{0}, {0}, {1}}));
    EXPECT_EQ(mesh.Store(schema::BulkShellLayers_constAngles()), angles);
}

TEST_P(BulkWriting, AnotherDocumentIsBoundByTheNextWrite) {
    Bulk().AppendMaterial(0, 0, 1);
    mesh.WriteBulk();
    ShellDocument other(GetParam(), 10, 10);
    auto transaction = other.Write();
    other.AddCollections();
    other.Assign(1, 1, {2});
    transaction->Commit();
    transaction.reset();
    Bulk().AppendMaterial(0, 1, 2);
    other.WriteBulk();
    EXPECT_THAT(other.StoredRows(schema::BulkShellLayers_materials()),
                ElementsAre(Row{{0}, {1}, {2}}));
    EXPECT_THAT(mesh.StoredRows(schema::BulkShellLayers_materials()),
                ElementsAre(Row{{0}, {0}, {1}}));
}

TEST_P(BulkWriting, NothingIsWrittenWhenNotEnabled) {
    AppendAll();
    std::vector<int> const held = LayersHeld();
    Bulk().*BulkFields::Enabled() = false;
    mesh.WriteBulk();
    EXPECT_TRUE(mesh.BulkRecord().IsNull());
    EXPECT_TRUE((Bulk().*BulkFields::Document()).IsClosed());
    // Each writer is guarded by itself too.
    Bulk().*BulkFields::Enabled() = true;
    KOVSrvBulkShellLayers& bulk = Bulk();
    bulk.*BulkFields::Document() = mesh.document;
    InTransaction([&] {
        bulk.Initialize();
        bulk.*BulkFields::Enabled() = false;
        bulk.WriteMaterialDistribution();
        bulk.WriteOrientationDistribution();
        bulk.WritePlyDistribution();
        bulk.WriteSectionPointDistribution();
        bulk.WriteConstThicknessDistribution();
        bulk.WriteConstAngleDistribution();
        bulk.WriteDistThicknessDistribution();
        bulk.WriteDistAngleDistribution();
    });
    EXPECT_TRUE(MembersSet().empty());
    EXPECT_EQ(LayersHeld(), held);
}

TEST_P(BulkWriting, AFieldTypeMissingFromTheCatalogueIsLeftNull) {
    InTransaction([&] {
        KOVSimMap const types = mesh.document.Focus()
                                    .GetPosition(schema::Focus_fieldTypes())
                                    .GetMap(schema::zdm_FieldTypeLib_fieldTypes());
        types.Remove("ANGLE");
        types.Remove("STH");
    });
    AppendAll();
    WriteAndReopen();
    for (std::size_t i = 4; i < 8; ++i) {
        KOVSimPosition const field = mesh.BulkMember(kMembers[i]);
        EXPECT_TRUE(field.IsA(schema::Field_Meshed()));
        EXPECT_TRUE(field.GetPosition(schema::Field_fieldType()).IsNull());
        EXPECT_EQ(mesh.StoredRows(kMembers[i]).size(), 1U);
    }
}

// What was written before a refusal is neither in the document nor held any more.
class BulkRefusals : public BulkWriting {
  protected:
    void ExpectRefused(std::vector<int> const& heldThen) {
        KOVObjDocumentStatistics const before = Sizes();
        EXPECT_THROW(mesh.WriteBulk(), KOVSimException);
        mesh.Reopen();
        EXPECT_TRUE(mesh.BulkRecord().IsNull());
        EXPECT_EQ(Sizes().commits, before.commits);
        EXPECT_EQ(Sizes().distributions, before.distributions);
        EXPECT_EQ(LayersHeld(), heldThen);
    }
};
INSTANTIATE_TEST_SUITE_P(Media, BulkRefusals, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(BulkRefusals, OrientationsWithoutTheirCollection) {
    InTransaction(
        [&] { mesh.Model().SetPosition(schema::Model_orientations(), KOVSimPosition()); });
    AppendAll();
    ExpectRefused({0, 1, 1, 1, 1, 1, 1, 1});
}

TEST_P(BulkRefusals, LayersAndSectionsThatDoNotExist) {
    Bulk().AppendMaterial(0, 0, 1);
    Bulk().AppendPly(5, 0, 1);
    ExpectRefused({0, 0, 1, 0, 0, 0, 0, 0});
    EndBulk();
    Bulk().AppendPly(0, 8, 1);
    ExpectRefused({0, 0, 1, 0, 0, 0, 0, 0});
    EndBulk();
    Bulk().AppendConstAngle(-1, 0, 1);
    ExpectRefused({0, 0, 0, 0, 0, 1, 0, 0});
}

TEST_P(BulkRefusals, ATableFieldWithoutDrawers) {
    InTransaction([&] {
        KOVSimPosition const field = mesh.NewTableField(1);
        field.SetPosition(schema::FieldFTable_distribution(), mesh.NewFieldDistribution());
        Bulk().AppendConstAngle(0, 0, 1);
        Bulk().AppendDistAngle(0, mesh.ElementSet({1}), field);
    });
    auto const distributions = Sizes().distributions;
    std::string text;
    try {
        mesh.WriteBulk();
    } catch (KOVSimException const& refusal) {
        text = refusal.what();
    }
    EXPECT_EQ(text, "KOVSimArray: index 0 is outside [0, 0)");
    EXPECT_EQ(Sizes().distributions, distributions);
    EXPECT_EQ(LayersHeld(), (std::vector<int>{0, 0, 0, 0, 0, 0, 0, 1}));
}

}  // namespace
}  // namespace kov::test
