#include "KOVSrvShellSectionPoints.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "services/ShellFixture.h"

namespace kov::test {
namespace {

class ShellSectionPoints : public ShellTest {
  protected:
    KOVSimPosition Section(int index) const {
        return mesh.document.GetRecord(mesh.Sections().GetCollection(), index);
    }
    // What a fresh object answers.
    int Points(int section, int layer) const {
        return KOVSrvShellSectionPoints(mesh.document).GetNumSectionPoints(Section(section), layer);
    }
    // Sections 0 with 5 and 7 points in its two layers, and 3 with 2 points in its one layer.
    void WriteTwoSections() {
        InTransaction([&] { mesh.Assign(3, 1, {10, 11}); });
        Bulk().AppendNumSectionPoints(0, 0, 5);
        Bulk().AppendNumSectionPoints(1, 0, 7);
        Bulk().AppendNumSectionPoints(0, 3, 2);
        WriteAndReopen();
    }
    // In a transaction, as the two that follow.
    void MakeBulkRecord() {
        mesh.Model().SetPosition(schema::Model_bulkShellLayers(),
                                 mesh.document.CreateDataRecord(schema::BulkShellLayers()).Pos());
    }
    KOVSimDistributionID MakeStore() {
        if (mesh.BulkRecord().IsNull()) MakeBulkRecord();
        KOVSimDistributionID const store = mesh.NewDistribution(
            KOVSimCollection(mesh.Slots().GetCollection()),
            KOVSimCollection(mesh.Sections().GetCollection()), KOVSimRangeType(KOVSimTypeKeyInt));
        mesh.BulkRecord().SetPosition(schema::BulkShellLayers_sectionPoints(), store);
        return store;
    }
    void AddDrawer(KOVSimDistributionID const& store, std::vector<int> const& layers,
                   std::vector<int> const& sections, std::vector<int> const& counts) {
        MeshDocument::NewDrawer(
            store, MeshDocument::Set(KOVSimCollection(mesh.Slots().GetCollection()), layers),
            MeshDocument::Set(KOVSimCollection(mesh.Sections().GetCollection()), sections), counts);
    }
};
INSTANTIATE_TEST_SUITE_P(Media, ShellSectionPoints, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(ShellSectionPoints, EachSectionHasItsOwnCountForALayer) {
    WriteTwoSections();
    EXPECT_EQ(Points(0, 0), 5);
    EXPECT_EQ(Points(0, 1), 7);
    EXPECT_EQ(Points(3, 0), 2);
}

TEST_P(ShellSectionPoints, UnknownLayersAndSectionsHaveNone) {
    WriteTwoSections();
    EXPECT_EQ(Points(0, 2), 0);
    EXPECT_EQ(Points(0, -1), 0);
    EXPECT_EQ(Points(3, 1), 0);
    EXPECT_EQ(Points(1, 0), 0);
    KOVSrvShellSectionPoints const points(mesh.document);
    EXPECT_EQ(points.GetNumSectionPoints(KOVSimPosition(), 0), 0);
}

TEST_P(ShellSectionPoints, PositionOtherThanTheSectionsOwnHasNone) {
    WriteTwoSections();
    KOVSrvShellSectionPoints const points(mesh.document);
    EXPECT_EQ(points.GetNumSectionPoints(mesh.Assignment(0), 0), 0);
    EXPECT_EQ(points.GetNumSectionPoints(mesh.Sections(), 0), 0);
    KOVSimPosition const section =
        mesh.Assignment(0).GetPosition(schema::SectionAssignment_section());
    EXPECT_EQ(points.GetNumSectionPoints(section, 0), 5);
}

TEST_P(ShellSectionPoints, DocumentWithoutBulkRecordIsReadForGood) {
    mesh.Reopen();
    KOVSrvShellSectionPoints points(mesh.document);
    points.UpdateMap();
    InTransaction([&] { AddDrawer(MakeStore(), {0}, {0}, {5}); });
    points.UpdateMap();
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 0), 0);
    EXPECT_EQ(Points(0, 0), 5);
}

TEST_P(ShellSectionPoints, BulkRecordWithoutStoreLeavesTheMatterOpen) {
    InTransaction([&] { MakeBulkRecord(); });
    mesh.Reopen();
    KOVSrvShellSectionPoints points(mesh.document);
    points.UpdateMap();
    InTransaction([&] { AddDrawer(MakeStore(), {0}, {0}, {5}); });
    points.UpdateMap();
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 0), 5);
}

TEST_P(ShellSectionPoints, StoreWithoutDrawersLeavesTheMatterOpen) {
    KOVSimDynamicID store;
    InTransaction([&] { store = MakeStore(); });
    mesh.Reopen();
    store.context = mesh.document.ContextID();
    KOVSrvShellSectionPoints points(mesh.document);
    points.UpdateMap();
    InTransaction([&] { AddDrawer(KOVSimDistributionID(store), {0}, {0}, {5}); });
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 0), 5);
}

TEST_P(ShellSectionPoints, FirstQuerySettlesTheMatterInAnyCase) {
    KOVSimDynamicID store;
    InTransaction([&] { store = MakeStore(); });
    mesh.Reopen();
    store.context = mesh.document.ContextID();
    KOVSrvShellSectionPoints points(mesh.document);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 0), 0);
    InTransaction([&] { AddDrawer(KOVSimDistributionID(store), {0}, {0}, {5}); });
    points.UpdateMap();
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 0), 0);
    EXPECT_EQ(Points(0, 0), 5);
}

TEST_P(ShellSectionPoints, LaterChangesOfTheDocumentAreNotSeen) {
    WriteTwoSections();
    KOVSrvShellSectionPoints const points(mesh.document);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 0), 5);
    Bulk().AppendNumSectionPoints(0, 0, 9);
    mesh.WriteBulk();
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 0), 5);
    EXPECT_EQ(points.GetNumSectionPoints(Section(3), 0), 2);
    mesh.Reopen();
    EXPECT_EQ(Points(0, 0), 9);
    EXPECT_EQ(Points(3, 0), 0);
}

TEST_P(ShellSectionPoints, CountAddedBeforeTheDocumentIsReadWins) {
    WriteTwoSections();
    KOVSrvShellSectionPoints points(mesh.document);
    points.AddPoints(Section(0), 0, 7);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 0), 7);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 1), 7);
    EXPECT_EQ(points.GetNumSectionPoints(Section(3), 0), 2);
}

TEST_P(ShellSectionPoints, CountAddedAfterTheDocumentIsReadLoses) {
    WriteTwoSections();
    KOVSrvShellSectionPoints points(mesh.document);
    points.UpdateMap();
    points.AddPoints(Section(0), 0, 70);
    points.AddPoints(Section(0), 2, 71);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 0), 5);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 2), 71);
}

TEST_P(ShellSectionPoints, OfTwoCountsAddedTheFirstStays) {
    KOVSrvShellSectionPoints points(mesh.document);
    points.AddPoints(Section(1), 4, 3);
    points.AddPoints(Section(1), 4, 9);
    points.AddPoints(Section(1), 5, 9);
    points.AddPoints(Section(2), 4, 8);
    EXPECT_EQ(points.GetNumSectionPoints(Section(1), 4), 3);
    EXPECT_EQ(points.GetNumSectionPoints(Section(1), 5), 9);
    EXPECT_EQ(points.GetNumSectionPoints(Section(2), 4), 8);
}

TEST_P(ShellSectionPoints, OfTwoDrawersForOneSectionAndLayerTheFirstCounts) {
    InTransaction([&] {
        KOVSimDistributionID const store = MakeStore();
        AddDrawer(store, {0}, {0, 1}, {1, 4});
        AddDrawer(store, {0}, {0, 2}, {2, 6});
    });
    mesh.Reopen();
    // A read of the store as a whole would give 2 for section 0.
    EXPECT_EQ(Points(0, 0), 1);
    EXPECT_EQ(Points(1, 0), 4);
    EXPECT_EQ(Points(2, 0), 6);
}

TEST_P(ShellSectionPoints, EntryThatWasNeverWrittenIsACountOfZero) {
    InTransaction([&] {
        KOVSimTransfer make{KOVSimDistribution(MakeStore())};
        make.SetMakeNewDrawer().SetBufferPadding(false);
        make.SetDim(0, MeshDocument::Set(KOVSimCollection(mesh.Slots().GetCollection()), {1}));
        make.SetDim(1, MeshDocument::Set(KOVSimCollection(mesh.Sections().GetCollection()), {0}));
        make.CheckView().ExecMake();
    });
    mesh.Reopen();
    KOVSrvShellSectionPoints points(mesh.document);
    points.UpdateMap();
    points.AddPoints(Section(0), 1, 5);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 1), 0);
}

TEST_P(ShellSectionPoints, DrawerWithoutSectionsHasNothingToSay) {
    InTransaction([&] {
        KOVSimDistributionID const store = MakeStore();
        AddDrawer(store, {0}, {}, {});
        AddDrawer(store, {1}, {0}, {6});
    });
    mesh.Reopen();
    EXPECT_EQ(Points(0, 0), 0);
    EXPECT_EQ(Points(0, 1), 6);
}

TEST_P(ShellSectionPoints, DrawerOfTwoLayersIsRefusedAndLeavesTheMatterOpen) {
    InTransaction([&] {
        KOVSimDistributionID const store = MakeStore();
        AddDrawer(store, {0}, {0}, {5});
        AddDrawer(store, {1, 2}, {0}, {6, 7});
        AddDrawer(store, {3}, {0}, {8});
    });
    mesh.Reopen();
    KOVSrvShellSectionPoints points(mesh.document);
    for (int again = 0; again < 2; ++again) {
        ExpectThrownAssertion("layer.Size() == 1", "KOVSrvShellSectionPoints",
                              [&] { points.UpdateMap(); });
        ExpectThrownAssertion("layer.Size() == 1", "KOVSrvShellSectionPoints",
                              [&] { points.GetNumSectionPoints(Section(0), 0); });
    }
    // Without that store the query settles: what was read before the drawer has stayed.
    InTransaction([&] {
        mesh.BulkRecord().SetPosition(schema::BulkShellLayers_sectionPoints(), KOVSimPosition());
    });
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 0), 5);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 1), 0);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 3), 0);
}

TEST_P(ShellSectionPoints, DrawerWithoutLayerIsRefused) {
    InTransaction([&] { AddDrawer(MakeStore(), {}, {0}, {}); });
    mesh.Reopen();
    KOVSrvShellSectionPoints const points(mesh.document);
    ExpectThrownAssertion("layer.Size() == 1", "KOVSrvShellSectionPoints",
                          [&] { points.GetNumSectionPoints(Section(0), 0); });
}

TEST_P(ShellSectionPoints, FailureReportsNothingAndEndsNothing) {
    InTransaction([&] { AddDrawer(MakeStore(), {0, 1}, {0}, {5, 6}); });
    mesh.Reopen();
    KOVSrvShellSectionPoints points(mesh.document);
    testing::internal::CaptureStderr();
    EXPECT_THROW(points.UpdateMap(), KOVBasAssertException);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_P(ShellSectionPoints, CopyGoesItsOwnWay) {
    WriteTwoSections();
    KOVSrvShellSectionPoints points(mesh.document);
    points.AddPoints(Section(0), 4, 3);
    KOVSrvShellSectionPoints copy(points);
    copy.AddPoints(Section(0), 3, 1);
    points.AddPoints(Section(0), 3, 2);
    EXPECT_EQ(copy.GetNumSectionPoints(Section(0), 3), 1);
    EXPECT_EQ(copy.GetNumSectionPoints(Section(0), 4), 3);
    EXPECT_EQ(copy.GetNumSectionPoints(Section(0), 1), 7);
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 3), 2);
    points = copy;
    EXPECT_EQ(points.GetNumSectionPoints(Section(0), 3), 1);
}

TEST_P(ShellSectionPoints, ReadOnlyDocumentAnswers) {
    WriteTwoSections();
    mesh.Reopen(KOVObjDocument::ReadOnly);
    EXPECT_EQ(Points(0, 1), 7);
}

TEST_P(ShellSectionPoints, AnswersOutliveTheDocumentOnceItWasRead) {
    WriteTwoSections();
    KOVSrvShellSectionPoints const points(mesh.document);
    KOVSimPosition const section = Section(0);
    EXPECT_EQ(points.GetNumSectionPoints(section, 1), 7);
    mesh.document.Close();
    EXPECT_EQ(points.GetNumSectionPoints(section, 1), 7);
}

TEST(ShellSectionPointsShare, ObjectKeepsItsDocumentOpen) {
    KOVObjDocument document = KOVObjDocument::CreateInMemory();
    KOVSimContextID const context = document.ContextID();
    KOVSrvShellSectionPoints points(document);
    document = KOVObjDocument();
    points.UpdateMap();
    EXPECT_NO_THROW(KOVSimTransaction{context});
    points = KOVSrvShellSectionPoints(KOVObjDocument::CreateInMemory());
    EXPECT_THROW(KOVSimTransaction{context}, KOVSimException);
}

}  // namespace
}  // namespace kov::test
