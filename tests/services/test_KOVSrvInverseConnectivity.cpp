#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "KOVSrvElementConnectivity.h"
#include "KOVSrvInverseConnectivity.h"
#include "mem.h"
#include "services/MeshFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr char const* kSource = "KOVSrvInverseConnectivity";

using Entries = std::vector<std::pair<int, int>>;

Entries EntriesOf(KOVSrvInverseConnectivity const& inverse, int node) {
    Entries entries;
    for (int at = inverse.Offsets()[node]; at < inverse.Offsets()[node + 1]; ++at) {
        entries.emplace_back(inverse.Element(at), inverse.Position(at));
    }
    return entries;
}

void ExpectNothing(KOVSrvInverseConnectivity const& inverse) {
    EXPECT_EQ(inverse.Total(), 0);
    ASSERT_NE(inverse.Offsets(), nullptr);
    for (int i = 0; i <= inverse.NumberNodes(); ++i) ASSERT_EQ(inverse.Offsets()[i], 0) << i;
}

class InverseConnectivity : public OnEachMedium {
  protected:
    // Appends elements under a key made from the number of their nodes.
    void Append(std::vector<int> const& elements, int np, std::vector<int> const& data) {
        auto const transaction = mesh.Write();
        m_service.Append(*transaction, mesh.document.GetRecord(mesh.elements.ID(), np),
                         mesh.Elements(elements), mesh.Positions(np), data.data());
        transaction->Commit();
    }
    KOVSimPosition MeshPosition() const { return mesh.document.GetMesh(); }

  private:
    KOVSrvElementConnectivity m_service{mesh.Connectivity(), 100};
};
INSTANTIATE_TEST_SUITE_P(Media, InverseConnectivity, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(InverseConnectivity, NewObjectIsEmpty) {
    KOVSrvInverseConnectivity const inverse(MeshPosition());
    EXPECT_EQ(inverse.Offsets(), nullptr);
    EXPECT_EQ(inverse.Total(), 0);
    EXPECT_EQ(inverse.NumberNodes(), 1000);
}

TEST_P(InverseConnectivity, EntriesStandInOrderOfDrawerElementPosition) {
    Append({5, 6}, 3, {1, 2, 3, 3, 2, 4});
    Append({1}, 2, {2, 3});
    mesh.Reopen(KOVObjDocument::ReadOnly);
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    EXPECT_EQ(inverse.Total(), 8);
    EXPECT_THAT(EntriesOf(inverse, 1), ElementsAre(Pair(5, 0)));
    EXPECT_THAT(EntriesOf(inverse, 2), ElementsAre(Pair(5, 1), Pair(6, 1), Pair(1, 0)));
    EXPECT_THAT(EntriesOf(inverse, 3), ElementsAre(Pair(5, 2), Pair(6, 0), Pair(1, 1)));
    EXPECT_THAT(EntriesOf(inverse, 4), ElementsAre(Pair(6, 2)));
    EXPECT_EQ(inverse.Offsets()[1000], 8);
}

TEST_P(InverseConnectivity, NodeWithoutElementsHasEqualOffsets) {
    Append({0}, 2, {1, 3});
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    EXPECT_EQ(inverse.Offsets()[2], inverse.Offsets()[3]);
    EXPECT_THAT(EntriesOf(inverse, 2), IsEmpty());
    EXPECT_THAT(EntriesOf(inverse, 999), IsEmpty());
}

TEST_P(InverseConnectivity, NodeNamedTwiceByAnElementHasTwoEntries) {
    Append({4}, 3, {7, 8, 7});
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    EXPECT_THAT(EntriesOf(inverse, 7), ElementsAre(Pair(4, 0), Pair(4, 2)));
}

TEST_P(InverseConnectivity, LastPositionAndLastNodeAreKept) {
    std::vector<int> data(128, 5);
    data[127] = 999;
    Append({3}, 128, data);
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    EXPECT_THAT(EntriesOf(inverse, 999), ElementsAre(Pair(3, 127)));
    EXPECT_EQ(EntriesOf(inverse, 5).size(), 127u);
}

TEST_P(InverseConnectivity, ElementsOfADrawerNeedNotFollowEachOther) {
    Append({2, 3, 5, 9}, 2, {0, 1, 1, 2, 2, 3, 3, 0});
    mesh.Reopen();
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    EXPECT_THAT(EntriesOf(inverse, 0), ElementsAre(Pair(2, 0), Pair(9, 1)));
    EXPECT_THAT(EntriesOf(inverse, 3), ElementsAre(Pair(5, 1), Pair(9, 0)));
}

TEST_P(InverseConnectivity, EmptyDatasetGivesZeroOffsets) {
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    ExpectNothing(inverse);
    inverse.Invert(mesh.Elements({1, 2}));
    ExpectNothing(inverse);
}

// The table of an earlier inversion is gone, and nothing of it is met again.
TEST_P(InverseConnectivity, DatasetThatBecameEmptyGivesZeroOffsets) {
    Append({0}, 2, {1, 2});
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    EXPECT_EQ(inverse.Total(), 2);
    auto const transaction = mesh.Write();
    KOVSimDistributionID const relation = mesh.NewDistribution(
        mesh.elements, mesh.positions, KOVSimRangeType(KOVSimTypeKeyMember, mesh.nodes.ID()));
    mesh.Mesh().SetConnectivity(KOVSimContext(mesh.document.ContextID()).CreateDSet(relation, -1));
    inverse.Invert();
    ExpectNothing(inverse);
    inverse.Invert();
    ExpectNothing(inverse);
}

TEST_P(InverseConnectivity, DrawersWithoutEntriesGiveNoEntries) {
    Append({}, 2, {});
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    ExpectNothing(inverse);
    Append({1, 2}, 0, {});
    inverse.Invert();
    ExpectNothing(inverse);
    inverse.Invert(mesh.Elements({1, 2}));
    ExpectNothing(inverse);
}

TEST_P(InverseConnectivity, InvertAgainStartsFromTheBeginning) {
    Append({0, 1}, 2, {1, 2, 2, 3});
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    inverse.Invert(mesh.Elements({1}));
    EXPECT_EQ(inverse.Total(), 2);
    EXPECT_THAT(EntriesOf(inverse, 2), ElementsAre(Pair(1, 0)));
    Append({2}, 2, {2, 9});
    inverse.Invert();
    EXPECT_EQ(inverse.Total(), 6);
    EXPECT_THAT(EntriesOf(inverse, 2), ElementsAre(Pair(0, 1), Pair(1, 0), Pair(2, 0)));
}

// The second drawer is too large to be read at once; what the first one gave goes too.
TEST(InverseConnectivityLimits, InversionThatIsRefusedHoldsNothing) {
    constexpr int kMost = 268'435'455;
    MeshDocument mesh(Medium::Memory, 10, kMost + 10);
    KOVSrvElementConnectivity service(mesh.Connectivity(), 100);
    auto const transaction = mesh.Write();
    int const data[] = {1, 2};
    service.Append(*transaction, mesh.document.GetMesh().ID(), mesh.Elements({0}),
                   mesh.Positions(2), data);
    KOVSrvInverseConnectivity inverse(mesh.document.GetMesh());
    inverse.Invert();
    EXPECT_EQ(inverse.Total(), 2);

    KOVSimDistribution const distribution = mesh.ConnectivityDistribution();
    Ints chunks(2, 0);
    chunks.Get(0) = 100;
    chunks.Get(1) = 2;
    KOVSimTransfer make(distribution);
    make.SetMakeNewDrawerChunked(chunks).SetBufferPadding(false).SetExtendableDim(0);
    make.SetDim(0, mesh.elements.CreateTempCSetStrided(1, kMost, 1, 1));
    make.SetDim(1, mesh.Positions(2)).CheckView().ExecMake();
    KOVSimTransfer extend(distribution);
    extend.SetWrite().SetAutoExtend().SetBufferPadding(false).SetDrawer(make.DrawerID());
    extend.SetDim(0, mesh.Elements({kMost + 1})).SetDim(1, mesh.Positions(2)).CheckView();
    extend.SetBuffer(0, data, sizeof data).ExecWrite().RelinquishBuffers();

    for (KOVSimCSetID const& all :
         {KOVSimCSetID(), mesh.elements.CreateTempCSetStrided(0, kMost + 2, 1, 1)}) {
        EXPECT_THROW(all.IsNull() ? inverse.Invert() : inverse.Invert(all), KOVSimException);
        EXPECT_EQ(inverse.Total(), 0);
        EXPECT_EQ(inverse.Offsets(), nullptr);
    }
    inverse.Invert(mesh.Elements({0, kMost + 1}));
    EXPECT_THAT(EntriesOf(inverse, 1), ElementsAre(Pair(0, 0), Pair((kMost + 1) & 0x1ffffff, 0)));
}

TEST_P(InverseConnectivity, NullMeshAndClosedDocumentAreRefused) {
    KOVSrvInverseConnectivity none{KOVSimPosition()};
    EXPECT_THROW(none.Invert(), KOVSimException);
    Append({0}, 2, {1, 2});
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    mesh.document.Close();
    EXPECT_THROW(inverse.Invert(), KOVSimException);
    EXPECT_EQ(inverse.Total(), 0);
}

TEST_P(InverseConnectivity, SetOfAnotherCollectionIsRefused) {
    Append({0}, 2, {1, 2});
    KOVSrvInverseConnectivity inverse(MeshPosition());
    EXPECT_THROW(inverse.Invert(mesh.Nodes({0})), KOVSimException);
    EXPECT_EQ(inverse.Offsets(), nullptr);
}

TEST_P(InverseConnectivity, OnlyTheGivenElementsAreInverted) {
    Append({0, 1, 2}, 2, {1, 2, 2, 3, 3, 4});
    Append({10, 11}, 3, {2, 3, 4, 1, 2, 3});
    mesh.Reopen(KOVObjDocument::ReadOnly);
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert(mesh.Elements({1, 2, 11, 700}));
    EXPECT_EQ(inverse.Total(), 7);
    EXPECT_THAT(EntriesOf(inverse, 1), ElementsAre(Pair(11, 0)));
    EXPECT_THAT(EntriesOf(inverse, 2), ElementsAre(Pair(1, 0), Pair(11, 1)));
    EXPECT_THAT(EntriesOf(inverse, 3), ElementsAre(Pair(1, 1), Pair(2, 0), Pair(11, 2)));
    EXPECT_THAT(EntriesOf(inverse, 4), ElementsAre(Pair(2, 1)));
}

TEST_P(InverseConnectivity, ElementsThatMissAllDrawersGiveNoEntries) {
    Append({0, 1}, 2, {1, 2, 2, 3});
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert(mesh.Elements({500, 501}));
    ExpectNothing(inverse);
}

TEST_P(InverseConnectivity, EmptySetOfAnyKindIsAccepted) {
    Append({0, 1}, 2, {1, 2, 2, 3});
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert(mesh.elements.EmptyCSetID());
    ExpectNothing(inverse);
    inverse.Invert(MeshDocument::Ordered(mesh.elements, {}));
    ExpectNothing(inverse);
    inverse.Invert(KOVSimCSetID());
    ExpectNothing(inverse);
}

TEST_P(InverseConnectivity, ShareOfADrawerWithoutATwinBecomesATemporarySet) {
    Append({0, 1, 2, 3, 4, 5}, 2, {1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7});
    KOVSimCSetID const chosen = mesh.Elements({1, 3, 4, 800});
    int const inside[] = {1, 3, 4};
    KOVSimCSet const share = mesh.elements.CreateVolatileCSet(inside, 3, false);
    EXPECT_TRUE(mesh.elements.SeekCSet(share, false).IsNull());
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert(chosen);
    KOVSimCSetID const made = mesh.elements.SeekCSet(share, false);
    ASSERT_FALSE(made.IsNull());
    EXPECT_LE(made.Minor(), -2);
    inverse.Invert(chosen);
    EXPECT_EQ(mesh.elements.SeekCSet(share, false), made) << "the twin is used from then on";
}

TEST_P(InverseConnectivity, RunOfADrawerWithoutATwinBecomesATemporarySet) {
    Append({0, 1, 2, 3}, 2, {1, 2, 2, 3, 3, 4, 4, 5});
    KOVSimCSet const share = mesh.elements.CreateVolatileCSetStrided(2, 2, 1, 1);
    EXPECT_TRUE(mesh.elements.SeekCSet(share, false).IsNull());
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert(mesh.Elements(Range(2, 500)));
    EXPECT_LE(mesh.elements.SeekCSet(share, false).Minor(), -2);
    EXPECT_THAT(EntriesOf(inverse, 4), ElementsAre(Pair(2, 1), Pair(3, 0)));
}

TEST_P(InverseConnectivity, StepsMayBeDrivenByTheCaller) {
    Append({2, 7}, 2, {1, 2, 2, 3});
    KOVSrvInverseConnectivity inverse(MeshPosition());
    inverse.Invert();
    // A second filling with fresh cursors writes the same entries.
    KOVSimDistribution distribution = mesh.ConnectivityDistribution();
    KOVSimCSetID const elements = mesh.Elements({2, 7});
    std::vector<int> cursor(1000, 0);
    int const block[] = {1, 2, 2, 3};
    inverse.ProcessConnectivityBlock(block, elements, mesh.Positions(2), cursor.data());
    EXPECT_THAT(EntriesOf(inverse, 2), ElementsAre(Pair(2, 1), Pair(7, 0)));
    EXPECT_EQ(cursor[2], 2);
    EXPECT_EQ(cursor[3], 1);

    KOVSrvInverseConnectivity counting(MeshPosition());
    counting.Invert(mesh.elements.EmptyCSetID());
    std::unique_ptr<int, void (*)(void*)> const read(
        counting.ReadConnectivityBlockAndCount(distribution, elements, mesh.Positions(2)),
        mem_Free);
    EXPECT_EQ(std::vector<int>(read.get(), read.get() + 4), (std::vector<int>{1, 2, 2, 3}));
    EXPECT_EQ(counting.Total(), 4);
    EXPECT_EQ(counting.Offsets()[2], 2);
    counting.ConvertCountToOffsetArray(1000);
    EXPECT_EQ(counting.Offsets()[1], 0);
    EXPECT_EQ(counting.Offsets()[2], 1);
    EXPECT_EQ(counting.Offsets()[3], 3);
    EXPECT_EQ(counting.Offsets()[1000], 4);
}

TEST(InverseConnectivityLimits, ElementIndexBeyondTheMaskWraps) {
    MeshDocument mesh(Medium::Memory, 10, 33554434);
    KOVSrvElementConnectivity service(mesh.Connectivity(), 100);
    auto const transaction = mesh.Write();
    int const data[] = {1, 2, 3, 4, 5, 6};
    service.Append(*transaction, mesh.document.GetMesh().ID(),
                   mesh.Elements({33554431, 33554432, 33554433}), mesh.Positions(2), data);
    KOVSrvInverseConnectivity inverse(mesh.document.GetMesh());
    inverse.Invert();
    EXPECT_THAT(EntriesOf(inverse, 2), ElementsAre(Pair(33554431, 1)));
    EXPECT_THAT(EntriesOf(inverse, 4), ElementsAre(Pair(0, 1)));
    EXPECT_THAT(EntriesOf(inverse, 5), ElementsAre(Pair(1, 0)));
}

using InverseConnectivityDeath = testing::Test;

TEST(InverseConnectivityDeath, ElementsInAnotherOrderAreRefused) {
    ExpectCheckedAssertion("elset.IsAscending() || elset.Size() == 0", kSource, [] {
        MeshDocument mesh;
        KOVSrvInverseConnectivity inverse(mesh.document.GetMesh());
        inverse.Invert(MeshDocument::Ordered(mesh.elements, {3, 1}));
    });
}

// Entries of another size than an int's.
TEST(InverseConnectivityDeath, BlockOfAnotherSizeIsRefused) {
    ExpectCheckedAssertion("size == ndata*sizeof(int)", kSource, [] {
        MeshDocument mesh;
        auto const transaction = mesh.Write();
        KOVSimDistributionID const id = mesh.NewDistribution(mesh.elements, mesh.positions,
                                                             KOVSimRangeType(KOVSimTypeKeyDouble));
        KOVSimCSetID const elements = mesh.Elements({0});
        KOVSimCSetID const positions = mesh.Positions(2);
        MeshDocument::NewDrawer<double>(id, elements, positions, {1, 2});
        KOVSimDistribution distribution(id);
        KOVSrvInverseConnectivity(mesh.document.GetMesh())
            .ReadConnectivityBlockAndCount(distribution, elements, positions);
    });
}

}  // namespace
}  // namespace kov::test
