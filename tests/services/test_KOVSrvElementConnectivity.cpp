#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "KOVSrvElementConnectivity.h"
#include "services/MeshFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;

constexpr char const* kSource = "KOVSrvElementConnectivity";

class ElementConnectivity : public OnEachMedium {
  protected:
    using Sizes = KOVSimBtree<KOVSimDynamicID, int>;

    // A key is any identity; members of the element collection are at hand.
    KOVSimDynamicID Key(int i) const {
        return mesh.document.GetRecord(mesh.elements.ID(), 900 + i);
    }
    KOVSrvElementConnectivity Service(int chunkSize = 50) const {
        return KOVSrvElementConnectivity(mesh.Connectivity(), chunkSize);
    }
    int Append(KOVSrvElementConnectivity& service, KOVSimDynamicID const& key,
               KOVSimCSetID const& elements, int np, std::vector<int> const& data) {
        auto const transaction = mesh.Write();
        int const bytes =
            service.Append(*transaction, key, elements, mesh.Positions(np), data.data());
        transaction->Commit();
        return bytes;
    }
    std::vector<int> Read(KOVSimCSet const& elements, int np, int prefill = -1) const {
        std::vector<int> out(static_cast<std::size_t>(elements.Size() * np), prefill);
        EXPECT_EQ(Service().Read(elements, mesh.Positions(np), out.data()),
                  out.size() * sizeof(int));
        return out;
    }
    Descriptions Drawers() const { return MeshDocument::Drawers(mesh.ConnectivityDistribution()); }
    int FirstChunk(int drawer) const {
        return MeshDocument::ChunkSizes(Drawers().ConstGet(drawer))[0];
    }
};
INSTANTIATE_TEST_SUITE_P(Media, ElementConnectivity, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(ElementConnectivity, WhatWasAppendedReadsBack) {
    KOVSrvElementConnectivity service = Service();
    EXPECT_EQ(Append(service, Key(0), mesh.Elements({0, 1}), 3, {1, 2, 3, 4, 5, 6}), 24);
    EXPECT_EQ(Append(service, Key(1), mesh.Elements({2}), 4, {7, 8, 9, 10}), 16);
    mesh.Reopen();
    EXPECT_THAT(Read(mesh.Elements({0, 1}), 3), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(Read(mesh.Elements({2}), 4), ElementsAre(7, 8, 9, 10));
}

TEST_P(ElementConnectivity, SecondAppendUnderAKeyGrowsItsDrawer) {
    KOVSrvElementConnectivity service = Service();
    Append(service, Key(0), mesh.Elements({0}), 2, {1, 2});
    Append(service, Key(1), mesh.Elements({5}), 3, {3, 4, 5});
    Append(service, Key(0), mesh.Elements({1, 7}), 2, {6, 7, 8, 9});
    mesh.Reopen();
    Descriptions const drawers = Drawers();
    ASSERT_EQ(drawers.Size(), 2);
    EXPECT_EQ(Members(drawers.ConstGet(0).compartment.CSet(0)), (std::vector<int>{0, 1, 7}));
    EXPECT_EQ(Members(drawers.ConstGet(1).compartment.CSet(0)), (std::vector<int>{5}));
    EXPECT_EQ(drawers.ConstGet(0).extendableDim, 0);
    EXPECT_THAT(Read(mesh.Elements({0, 1, 7}), 2), ElementsAre(1, 2, 6, 7, 8, 9));
}

TEST_P(ElementConnectivity, AppendOfPresentElementsOverwrites) {
    KOVSrvElementConnectivity service = Service();
    Append(service, Key(0), mesh.Elements({0, 1, 2}), 2, {1, 2, 3, 4, 5, 6});
    Append(service, Key(0), mesh.Elements({1}), 2, {10, 11});
    mesh.Reopen();
    EXPECT_EQ(Drawers().Size(), 1);
    EXPECT_THAT(Read(mesh.Elements({0, 1, 2}), 2), ElementsAre(1, 2, 10, 11, 5, 6));
}

TEST_P(ElementConnectivity, AppendAndReadHonourTheOrderOfOrderedSets) {
    KOVSrvElementConnectivity service = Service();
    Append(service, Key(0), MeshDocument::Ordered(mesh.elements, {8, 3}), 2, {1, 2, 3, 4});
    mesh.Reopen();
    EXPECT_THAT(Read(mesh.Elements({3, 8}), 2), ElementsAre(3, 4, 1, 2));
    EXPECT_THAT(Read(MeshDocument::Ordered(mesh.elements, {8, 3}), 2), ElementsAre(1, 2, 3, 4));
}

TEST_P(ElementConnectivity, DefaultChunkSizeServesEveryKey) {
    KOVSrvElementConnectivity service = Service(17);
    Append(service, Key(0), mesh.Elements({0}), 2, {1, 2});
    Append(service, Key(1), mesh.Elements({1}), 3, {1, 2, 3});
    mesh.Reopen();
    EXPECT_EQ(MeshDocument::ChunkSizes(Drawers().ConstGet(0)), (std::vector<int>{17, 2}));
    EXPECT_EQ(MeshDocument::ChunkSizes(Drawers().ConstGet(1)), (std::vector<int>{17, 3}));
}

TEST_P(ElementConnectivity, ChunkSizesAreTakenByKey) {
    Sizes sizes;
    sizes.Insert(Key(0), 11, false);
    sizes.Insert(Key(1), 22, false);
    KOVSrvElementConnectivity service(mesh.Connectivity(), sizes);
    sizes.Clear();  // the object has a copy
    Append(service, Key(1), mesh.Elements({0}), 2, {1, 2});
    Append(service, Key(0), mesh.Elements({1}), 2, {1, 2});
    mesh.Reopen();
    EXPECT_EQ(FirstChunk(0), 22);
    EXPECT_EQ(FirstChunk(1), 11);
}

TEST_P(ElementConnectivity, MorePositionsUnderTheSameKeyAreRefused) {
    KOVSrvElementConnectivity service = Service();
    Append(service, Key(0), mesh.Elements({0}), 2, {1, 2});
    EXPECT_THROW(Append(service, Key(0), mesh.Elements({1}), 3, {1, 2, 3}), KOVSimException);
    EXPECT_THAT(Read(mesh.Elements({0}), 2), ElementsAre(1, 2));
    EXPECT_EQ(Drawers().Size(), 1);
}

TEST_P(ElementConnectivity, OtherPositionsUnderTheSameKeyAreRefused) {
    KOVSrvElementConnectivity service = Service();
    Append(service, Key(0), mesh.Elements({0}), 2, {1, 2});
    auto const transaction = mesh.Write();
    int const data[] = {3, 4};
    EXPECT_THROW(service.Append(*transaction, Key(0), mesh.Elements({1}),
                                MeshDocument::Set(mesh.positions, {1, 2}), data),
                 KOVSimException);
}

TEST_P(ElementConnectivity, BlockMayNameAPartOfThePositionsOfItsDrawer) {
    KOVSrvElementConnectivity service = Service();
    Append(service, Key(0), mesh.Elements({0}), 3, {1, 2, 3});
    EXPECT_EQ(Append(service, Key(0), mesh.Elements({1}), 2, {4, 5}), 8);
    mesh.Reopen();
    EXPECT_EQ(Drawers().Size(), 1);
    EXPECT_THAT(Read(mesh.Elements({0, 1}), 3, -7), ElementsAre(1, 2, 3, 4, 5, 0));
}

TEST_P(ElementConnectivity, KeyWhoseDrawerWasDroppedIsRefused) {
    KOVSrvElementConnectivity service = Service();
    int const data[] = {1, 2};
    {
        auto const transaction = mesh.Write();
        service.Append(*transaction, Key(0), mesh.Elements({0}), mesh.Positions(2), data);
    }
    EXPECT_THROW(Append(service, Key(0), mesh.Elements({0}), 2, {1, 2}), KOVSimException);
    EXPECT_EQ(Append(service, Key(1), mesh.Elements({0}), 2, {1, 2}), 8);
    EXPECT_EQ(Drawers().Size(), 1);
}

TEST_P(ElementConnectivity, RefusedViewMakesNoDrawerAndLeavesTheKeyFree) {
    KOVSrvElementConnectivity service = Service();
    auto const transaction = mesh.Write();
    int const data[] = {1, 2};
    EXPECT_THROW(service.Append(*transaction, Key(0), mesh.Elements({0}), mesh.Nodes({0}), data),
                 KOVSimException);
    EXPECT_EQ(Drawers().Size(), 0);
    EXPECT_EQ(service.Append(*transaction, Key(0), mesh.Elements({0}), mesh.Positions(2), data), 8);
    EXPECT_EQ(Drawers().Size(), 1);
}

TEST_P(ElementConnectivity, NewObjectStartsWithoutDrawers) {
    KOVSrvElementConnectivity first = Service();
    Append(first, Key(0), mesh.Elements({0, 1}), 2, {1, 2, 3, 4});
    KOVSrvElementConnectivity second = Service();
    Append(second, Key(0), mesh.Elements({1, 2}), 2, {5, 6, 7, 8});
    mesh.Reopen();
    EXPECT_EQ(Drawers().Size(), 2);
    EXPECT_THAT(Read(mesh.Elements({0, 1, 2}), 2), ElementsAre(1, 2, 5, 6, 7, 8));
}

TEST_P(ElementConnectivity, ReadLeavesWhatNoDrawerHolds) {
    KOVSrvElementConnectivity service = Service();
    Append(service, Key(0), mesh.Elements({0}), 2, {1, 2});
    mesh.Reopen();
    EXPECT_THAT(Read(mesh.Elements({0, 1}), 3, -7), ElementsAre(1, 2, -7, -7, -7, -7));
}

TEST_P(ElementConnectivity, ReadIsServedFromAllDrawers) {
    KOVSrvElementConnectivity service = Service();
    Append(service, Key(0), mesh.Elements({0, 2}), 2, {1, 2, 3, 4});
    Append(service, Key(1), mesh.Elements({1}), 3, {5, 6, 7});
    mesh.Reopen();
    EXPECT_THAT(Read(mesh.Elements({0, 1, 2}), 3, -1), ElementsAre(1, 2, -1, 5, 6, 7, 3, 4, -1));
}

TEST_P(ElementConnectivity, DatasetKnowsTheNewElementsAfterEachAppend) {
    KOVSrvElementConnectivity service = Service();
    EXPECT_TRUE(KOVSimDSet(mesh.Connectivity()).IsEmpty());
    Append(service, Key(0), mesh.Elements({4, 5}), 2, {1, 2, 2, 9});
    EXPECT_FALSE(KOVSimDSet(mesh.Connectivity()).IsEmpty());
    Append(service, Key(0), mesh.Elements({8}), 2, {1, 3});
    mesh.Reopen();
    KOVSimDSet const dset(mesh.Connectivity());
    EXPECT_EQ(Members(dset.Collect(mesh.elements.ID())), (std::vector<int>{4, 5, 8}));
    EXPECT_EQ(Members(dset.Collect(mesh.nodes.ID())), (std::vector<int>{1, 2, 3, 9}));
}

TEST_P(ElementConnectivity, DroppedTransactionLeavesNothing) {
    {
        KOVSrvElementConnectivity service = Service();
        auto const transaction = mesh.Write();
        int const data[] = {1, 2};
        service.Append(*transaction, Key(0), mesh.Elements({0}), mesh.Positions(2), data);
    }
    mesh.Reopen();
    EXPECT_EQ(Drawers().Size(), 0);
    EXPECT_TRUE(KOVSimDSet(mesh.Connectivity()).IsEmpty());
}

TEST_P(ElementConnectivity, ReadOfADatasetWithoutADistributionIsTheStoresRefusal) {
    int out[2] = {};
    KOVSrvElementConnectivity const service;
    EXPECT_THROW(service.Read(mesh.Elements({0}), mesh.Positions(2), out), KOVSimException);
}

TEST_P(ElementConnectivity, ClosedDocumentIsTheStoresRefusal) {
    KOVSrvElementConnectivity service = Service();
    auto const transaction = mesh.Write();
    KOVSimCSetID const elements = mesh.Elements({0});
    KOVSimCSetID const positions = mesh.Positions(2);
    mesh.document.Close();
    int data[] = {1, 2};
    EXPECT_THROW(service.Append(*transaction, KOVSimDynamicID(), elements, positions, data),
                 KOVSimException);
    EXPECT_THROW(service.Read(KOVSimCSet(), KOVSimCSet(), data), KOVSimException);
}

using ElementConnectivityDeath = testing::Test;

TEST(ElementConnectivityDeath, NullPositionIsFatalOnAppend) {
    ExpectFatalAssertion("rdistribution.IsNull() == false", kSource, [&] {
        MeshDocument mesh;
        auto const transaction = mesh.Write();
        int const data[] = {1, 2};
        KOVSrvElementConnectivity(KOVSimPosition(), 10)
            .Append(*transaction, KOVSimDynamicID(), mesh.Elements({0}), mesh.Positions(2), data);
    });
}

TEST(ElementConnectivityDeath, KeyOutsideTheTableOfChunkSizesIsFatal) {
    ExpectFatalAssertion("m_chunkSize != 0", kSource, [&] {
        MeshDocument mesh;
        KOVSimBtree<KOVSimDynamicID, int> sizes;
        sizes.Insert(mesh.document.GetRecord(mesh.elements.ID(), 1), 10, false);
        KOVSrvElementConnectivity service(mesh.Connectivity(), sizes);
        auto const transaction = mesh.Write();
        int const data[] = {1, 2};
        service.Append(*transaction, mesh.document.GetRecord(mesh.elements.ID(), 2),
                       mesh.Elements({0}), mesh.Positions(2), data);
    });
}

TEST(ElementConnectivityDeath, DefaultObjectIsFatalOnAppend) {
    ExpectFatalAssertion("rdistribution.IsNull() == false", kSource, [&] {
        MeshDocument mesh;
        KOVSrvElementConnectivity service;
        auto const transaction = mesh.Write();
        int const data[] = {1, 2};
        service.Append(*transaction, KOVSimDynamicID(), mesh.Elements({0}), mesh.Positions(2),
                       data);
    });
}

TEST(ElementConnectivityDeath, DatasetOfCompartmentsIsFatalOnAppend) {
    ExpectFatalAssertion("rdistribution.IsNull() == false", kSource, [&] {
        MeshDocument mesh;
        auto const transaction = mesh.Write();
        KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> sets(2, 0);
        sets.Get(0) = mesh.Elements({0});
        sets.Get(1) = mesh.Positions(2);
        KOVSimCtation::Array compartments(1, 0);
        compartments.Get(0) = KOVSimCompartment(sets);
        KOVSimDSetID const dset = mesh.document.Focus().CreateTypedDSet(
            KOVSimCtation(compartments), mesh.Connectivity().TypePosition());
        KOVSrvElementConnectivity service(KOVSimPosition(dset), 10);
        int const data[] = {1, 2};
        service.Append(*transaction, KOVSimDynamicID(), mesh.Elements({0}), mesh.Positions(2),
                       data);
    });
}

}  // namespace
}  // namespace kov::test
