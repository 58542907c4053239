#include "KOVSrvSectionServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>
#include <vector>

#include "services/SectionFixture.h"

namespace kov::test {
namespace {

using Governed = SectionDocument::Governed;
using Numbers = std::vector<int>;

class SectionServices : public testing::TestWithParam<Medium> {
  protected:
    template <class Work>
    void InTransaction(Work work) {
        auto const transaction = mesh.Write();
        work();
        transaction->Commit();
    }
    // One assignment for each of the lists, in order.
    void Assign(std::vector<Numbers> const& regions) {
        InTransaction([&] {
            for (Numbers const& region : regions) mesh.Assign(region);
        });
        mesh.Reopen();
    }
    Governed Ask(Numbers const& members) { return mesh.Ask(mesh.Elements(members)); }
    int AskWhole(Numbers const& members) { return mesh.AskWhole(mesh.Elements(members)); }
    KOVSimPosition RegionSet(int place) const {
        return mesh.Assignment(place)
            .GetPosition(schema::SectionAssignment_region())
            .GetPosition(schema::Region_elementsCluster());
    }

    SectionDocument mesh{GetParam(), 10, 100};
};
INSTANTIATE_TEST_SUITE_P(Media, SectionServices, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(SectionServices, NullPositionHasNoAssignments) {
    Assign({{0, 1}});
    EXPECT_EQ(KOVSrvSectionServices::GetSectionAssignments(KOVSimPosition()).Size(), 0);
    EXPECT_TRUE(KOVSrvSectionServices::GetSectionAssignment(KOVSimPosition()).IsNull());
}

TEST_P(SectionServices, RegionOfTheSecondAssignmentIsFoundByItself) {
    Assign({{0, 1, 2}, {2, 3, 4}});
    EXPECT_EQ(mesh.AskWhole(RegionSet(1)), 1);
}

TEST_P(SectionServices, RegionInsideAnEarlierOneBelongsToTheEarlierAssignment) {
    Assign({{0, 1, 2, 3, 4}, {2, 3}});
    EXPECT_EQ(mesh.AskWhole(RegionSet(1)), 0);
}

TEST_P(SectionServices, OrderedSetThatIsTheRegionIsFoundByItself) {
    InTransaction([&] {
        mesh.Assign({5});
        Numbers const members = {9, 3, 7};
        KOVSimCSet ordered = mesh.elements.CreateVolatileOrderedCSet(members.data(), 3);
        mesh.Assign(ordered.RegisterWithCollection());
    });
    mesh.Reopen();
    EXPECT_EQ(mesh.AskWhole(RegionSet(1)), 1);
    EXPECT_EQ(AskWhole({3, 7}), 1);
}

TEST_P(SectionServices, RegionThatIsNoSetGovernsNoElement) {
    InTransaction([&] { mesh.Assign(mesh.document.CreateDataRecord(schema::Region()).Pos()); });
    mesh.Reopen();
    EXPECT_EQ(mesh.AskWhole(RegionSet(0)), 0);
    EXPECT_EQ(AskWhole({1}), kNobody);
    EXPECT_EQ(Ask({1}), (Governed{{kNobody, {1}}}));
}

TEST_P(SectionServices, SetInsideOneRegionIsOnePiece) {
    Assign({{0, 1}, {10, 11, 12, 13}});
    EXPECT_EQ(Ask({11, 13}), (Governed{{1, {11, 13}}}));
    EXPECT_EQ(AskWhole({11, 13}), 1);
}

TEST_P(SectionServices, SetSplitOverTwoRegionsIsTwoPieces) {
    Assign({{0, 1, 2}, {3, 4, 5}});
    EXPECT_EQ(Ask({1, 2, 3}), (Governed{{0, {1, 2}}, {1, {3}}}));
    EXPECT_EQ(AskWhole({1, 2, 3}), kNobody);
}

TEST_P(SectionServices, ElementsWithoutAssignmentAreAPieceOfTheirOwn) {
    Assign({{0, 1, 2}, {4, 5}});
    EXPECT_EQ(Ask({2, 3, 4, 50}), (Governed{{0, {2}}, {1, {4}}, {kNobody, {3, 50}}}));
    EXPECT_EQ(AskWhole({2, 3}), kNobody);
}

TEST_P(SectionServices, SetWithoutAnyAssignmentKeepsItsPosition) {
    Assign({{0, 1, 2}});
    KOVSimPosition const asked = mesh.Elements({7, 8});
    auto const pieces = KOVSrvSectionServices::GetSectionAssignments(asked);
    ASSERT_EQ(pieces.Size(), 1);
    EXPECT_EQ(pieces.begin()->first.ID(), asked.ID());
    EXPECT_TRUE(pieces.begin()->second.IsNull());
}

TEST_P(SectionServices, OrderedSetWithoutAnyAssignmentKeepsItsOrder) {
    Assign({{0, 1, 2}});
    KOVSimPosition const asked = MeshDocument::Ordered(mesh.elements, {9, 7, 8});
    EXPECT_EQ(mesh.Ask(asked), (Governed{{kNobody, {9, 7, 8}}}));
    EXPECT_EQ(mesh.Ask(MeshDocument::Ordered(mesh.elements, {9, 2, 8, 0})),
              (Governed{{0, {0, 2}}, {kNobody, {8, 9}}}));
}

TEST_P(SectionServices, WithoutAssignmentsNothingIsGoverned) {
    mesh.Reopen();
    EXPECT_EQ(AskWhole({1, 2}), kNobody);
    EXPECT_EQ(Ask({1, 2}), (Governed{{kNobody, {1, 2}}}));
    KOVSimPosition const empty = mesh.elements.EmptyCSetID();
    EXPECT_EQ(mesh.Ask(empty), Governed());
    EXPECT_EQ(mesh.AskWhole(empty), kNobody);
}

TEST_P(SectionServices, EmptySetHasNoPieceAndLiesInTheFirstRegion) {
    Assign({{0, 1}, {2}});
    KOVSimPosition const empty = mesh.elements.EmptyCSetID();
    EXPECT_EQ(mesh.Ask(empty), Governed());
    EXPECT_EQ(mesh.AskWhole(empty), 0);
}

TEST_P(SectionServices, ElementInTwoRegionsGoesToTheFirstAssignment) {
    Assign({{0, 1, 2}, {1, 2, 3}, {2, 3, 4}});
    EXPECT_EQ(Ask({0, 1, 2, 3, 4}), (Governed{{0, {0, 1, 2}}, {1, {3}}, {2, {4}}}));
    EXPECT_EQ(AskWhole({2}), 0);
    EXPECT_EQ(AskWhole({2, 3}), 1);
    EXPECT_EQ(AskWhole({3, 4}), 2);
}

TEST_P(SectionServices, EmptyRegionGovernsNothing) {
    Assign({{}, {1}});
    EXPECT_EQ(Ask({1}), (Governed{{1, {1}}}));
    EXPECT_EQ(AskWhole({1}), 1);
}

TEST_P(SectionServices, OneAssignmentMayStandTwice) {
    Assign({{1, 2}});
    InTransaction([&] { mesh.Assignments().PushBack(mesh.Assignment(0)); });
    EXPECT_EQ(Ask({1, 2, 3}), (Governed{{0, {1, 2}}, {kNobody, {3}}}));
}

TEST_P(SectionServices, SectionOfAnAssignmentIsNotLookedAt) {
    Assign({{1, 2}});
    EXPECT_TRUE(mesh.Assignment(0).GetPosition(schema::SectionAssignment_section()).IsNull());
    EXPECT_EQ(AskWhole({1}), 0);
    InTransaction([&] {
        mesh.Assignment(0).SetPosition(schema::SectionAssignment_section(),
                                       mesh.document.CreateDataRecord(schema::Section()).Pos());
    });
    mesh.Reopen();
    EXPECT_EQ(AskWhole({1}), 0);
}

TEST_P(SectionServices, PiecesAreTemporarySetsInTheOrderOfTheirIdentities) {
    Assign({{0, 1, 2}, {3, 4}, {5}});
    auto const pieces = KOVSrvSectionServices::GetSectionAssignments(mesh.Elements({0, 3, 5, 9}));
    ASSERT_EQ(pieces.Size(), 4);
    KOVSimPosition before;
    for (auto const& [key, value] : pieces) {
        EXPECT_LT(key.GetCSet().Minor(), -1);
        EXPECT_EQ(key.GetCSet().CollectionID(), mesh.elements.ID());
        EXPECT_TRUE(before.IsNull() || before.ID().Compare(key.ID()) < 0);
        before = key;
    }
}

TEST_P(SectionServices, ReadOnlyDocumentAnswersAndStaysAsItIs) {
    Assign({{0, 1, 2}, {3, 4}});
    mesh.Reopen(KOVObjDocument::ReadOnly);
    auto const sets = mesh.document.Statistics().sets;
    EXPECT_EQ(Ask({1, 4, 5}), (Governed{{0, {1}}, {1, {4}}, {kNobody, {5}}}));
    EXPECT_EQ(AskWhole({3, 4}), 1);
    EXPECT_EQ(mesh.document.Statistics().sets, sets);
}

TEST_P(SectionServices, SetOfAnotherCollectionIsRefused) {
    Assign({{0, 1}});
    EXPECT_THROW(KOVSrvSectionServices::GetSectionAssignments(mesh.Nodes({1})), KOVSimException);
    EXPECT_THROW(KOVSrvSectionServices::GetSectionAssignment(mesh.Nodes({1})), KOVSimException);
}

TEST_P(SectionServices, DefectBehindTheAssignmentThatSettlesTheQuestionIsNotReached) {
    InTransaction([&] {
        mesh.Assign({0, 1, 2});
        mesh.Assign({3});
        mesh.AssignRegion(KOVSimPosition());
    });
    mesh.Reopen();
    EXPECT_EQ(Ask({1, 3}), (Governed{{0, {1}}, {1, {3}}}));
    EXPECT_EQ(AskWhole({3}), 1);
}

// The document is made in the process that ends, below a folder of this one.
class SectionServicesDeath : public testing::TestWithParam<Medium> {
  protected:
    template <class Prepare, class Question>
    void ExpectFatal(char const* condition, Prepare prepare, Question question) {
        TempFolder const folder;
        ExpectFatalAssertion(condition, "KOVSrvSectionServices", [&] {
            ::setenv("KOV_TEST_TMP", folder.Path().c_str(), 1);
            SectionDocument mesh(GetParam(), 10, 100);
            {
                auto const transaction = mesh.Write();
                mesh.Assign({1, 2});
                prepare(mesh);
                transaction->Commit();
            }
            mesh.Reopen();
            question(mesh);
        });
    }
    template <class Prepare>
    void ExpectBothFatal(char const* condition, Prepare prepare) {
        ExpectFatal(condition, prepare, [](SectionDocument& mesh) {
            KOVSrvSectionServices::GetSectionAssignments(mesh.Elements({1, 50}));
        });
        ExpectFatal(condition, prepare, [](SectionDocument& mesh) {
            KOVSrvSectionServices::GetSectionAssignment(mesh.Elements({1, 50}));
        });
    }
};
INSTANTIATE_TEST_SUITE_P(Media, SectionServicesDeath, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(SectionServicesDeath, AssignmentWithoutRegionEndsTheProcess) {
    ExpectBothFatal("!region.IsNull()",
                    [](SectionDocument& mesh) { mesh.AssignRegion(KOVSimPosition()); });
}

TEST_P(SectionServicesDeath, RegionWithoutElementSetEndsTheProcess) {
    ExpectBothFatal("!elsetPos.IsNull()",
                    [](SectionDocument& mesh) { mesh.Assign(KOVSimPosition()); });
}

TEST_P(SectionServicesDeath, EmptySetWalksAllAssignments) {
    ExpectFatal(
        "!region.IsNull()", [](SectionDocument& mesh) { mesh.AssignRegion(KOVSimPosition()); },
        [](SectionDocument& mesh) {
            KOVSrvSectionServices::GetSectionAssignments(mesh.elements.EmptyCSetID());
        });
}

}  // namespace
}  // namespace kov::test
