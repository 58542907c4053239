#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "KOVSrvNodalCoordinates.h"
#include "services/MeshFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;

constexpr char const* kSource = "KOVSrvNodalCoordinates";

class NodalCoordinates : public OnEachMedium {
  protected:
    KOVSrvNodalCoordinates Service(int chunkSize = 100) const {
        return KOVSrvNodalCoordinates(mesh.Coordinates(), chunkSize);
    }
    KOVSimCSetID Axes() const { return mesh.Components({0, 12, 20}); }
    // Appends (n, 3) values that tell node and component: 10 * node + column.
    int AppendNodes(std::vector<int> const& nodes, bool ordered = false) {
        auto const transaction = mesh.Write();
        std::vector<double> data;
        for (int node : nodes) {
            for (int c = 0; c < 3; ++c) data.push_back(10.0 * node + c);
        }
        KOVSrvNodalCoordinates service = Service();
        int const bytes = service.Append(
            *transaction, ordered ? MeshDocument::Ordered(mesh.nodes, nodes) : mesh.Nodes(nodes),
            Axes(), data.data());
        transaction->Commit();
        return bytes;
    }
    std::vector<double> Read(KOVSimCSet const& nodes, KOVSimCSet const& components) const {
        std::vector<double> out(static_cast<std::size_t>(nodes.Size() * components.Size()), -1);
        EXPECT_EQ(Service().Read(nodes, components, out.data()), out.size() * sizeof(double));
        return out;
    }
    int NumberDrawers() const {
        return MeshDocument::Drawers(mesh.CoordinatesDistribution()).Size();
    }
};
INSTANTIATE_TEST_SUITE_P(Media, NodalCoordinates, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(NodalCoordinates, WhatWasAppendedReadsBack) {
    EXPECT_EQ(AppendNodes({0, 1, 2}), 9 * 8);
    EXPECT_EQ(AppendNodes({3, 4}), 6 * 8);
    mesh.Reopen();
    EXPECT_EQ(Members(Service().Nodes()), Range(0, 5));
    EXPECT_EQ(Members(Service().Components()), (std::vector<int>{0, 12, 20}));
    EXPECT_EQ(Service().NumberNodes(), 5);
    EXPECT_EQ(Service().NumberComponents(), 3);
    EXPECT_THAT(Read(mesh.Nodes({1, 3}), Axes()), ElementsAre(10, 11, 12, 30, 31, 32));
    EXPECT_THAT(Read(mesh.Nodes({4}), mesh.Components({12})), ElementsAre(41));
}

TEST_P(NodalCoordinates, FirstAppendMakesOneDrawerWithTheChunksGiven) {
    AppendNodes({5, 6, 7});
    AppendNodes({8, 900});
    mesh.Reopen();
    Descriptions const drawers = MeshDocument::Drawers(mesh.CoordinatesDistribution());
    ASSERT_EQ(drawers.Size(), 1);
    EXPECT_EQ(MeshDocument::ChunkSizes(drawers.ConstGet(0)), (std::vector<int>{100, 3}));
    EXPECT_EQ(drawers.ConstGet(0).extendableDim, 0);
    EXPECT_EQ(Members(Service().Nodes()), (std::vector<int>{5, 6, 7, 8, 900}));
}

TEST_P(NodalCoordinates, AppendHonoursTheOrderOfAnOrderedSet) {
    AppendNodes({9, 2, 5}, true);
    mesh.Reopen();
    EXPECT_EQ(Members(Service().Nodes()), (std::vector<int>{2, 5, 9}));
    EXPECT_THAT(Read(mesh.Nodes({2, 5, 9}), mesh.Components({0})), ElementsAre(20, 50, 90));
}

TEST_P(NodalCoordinates, ReadHonoursTheOrderOfBothSets) {
    AppendNodes(Range(0, 10));
    mesh.Reopen();
    KOVSimCSet const nodes(MeshDocument::Ordered(mesh.nodes, {7, 3, 8}));
    KOVSimCSet const components(MeshDocument::Ordered(mesh.components, {20, 0}));
    EXPECT_THAT(Read(nodes, components), ElementsAre(72, 70, 32, 30, 82, 80));
}

TEST_P(NodalCoordinates, AppendOfPresentNodesOverwrites) {
    AppendNodes(Range(0, 6));
    {
        auto const transaction = mesh.Write();
        double const data[] = {1, 2, 3, 4, 5, 6};
        KOVSrvNodalCoordinates service = Service();
        service.Append(*transaction, mesh.Nodes({1, 4}), Axes(), data);
        transaction->Commit();
    }
    mesh.Reopen();
    EXPECT_EQ(Service().NumberNodes(), 6);
    EXPECT_EQ(NumberDrawers(), 1);
    EXPECT_THAT(Read(mesh.Nodes({0, 1, 3, 4}), Axes()),
                ElementsAre(0, 1, 2, 1, 2, 3, 30, 31, 32, 4, 5, 6));
}

TEST_P(NodalCoordinates, LaterAppendMayNameOneComponent) {
    AppendNodes({0, 1});
    {
        auto const transaction = mesh.Write();
        double const data[] = {-1, -2};
        KOVSrvNodalCoordinates service = Service();
        EXPECT_EQ(service.Append(*transaction, mesh.Nodes({0, 2}), mesh.Components({12}), data),
                  16);
        transaction->Commit();
    }
    mesh.Reopen();
    EXPECT_THAT(Read(mesh.Nodes({0, 1, 2}), Axes()), ElementsAre(0, -1, 2, 10, 11, 12, 0, -2, 0));
}

TEST_P(NodalCoordinates, TwoDrawersReadAsTheirUnion) {
    AppendNodes({0, 1, 2});
    {
        auto const transaction = mesh.Write();
        MeshDocument::NewDrawer<double>(mesh.Coordinates().GetDistribution(), mesh.Nodes({2, 7}),
                                        mesh.Components({12, 20, 21}), {1, 2, 3, 4, 5, 6});
        transaction->Commit();
    }
    mesh.Reopen();
    EXPECT_EQ(Members(Service().Nodes()), (std::vector<int>{0, 1, 2, 7}));
    EXPECT_EQ(Members(Service().Components()), (std::vector<int>{0, 12, 20, 21}));
    // The later drawer serves what both hold.
    EXPECT_THAT(Read(mesh.Nodes({1, 2, 7}), Axes()), ElementsAre(10, 11, 12, 20, 1, 2, 0, 4, 5));
}

TEST_P(NodalCoordinates, ChunkSizeZeroGoesToTheStoreAsItIs) {
    auto const transaction = mesh.Write();
    KOVSrvNodalCoordinates service = Service(0);
    double const data[] = {1, 2, 3};
    EXPECT_EQ(service.Append(*transaction, mesh.Nodes({0}), Axes(), data), 24);
    transaction->Commit();
    mesh.Reopen();
    Descriptions const drawers = MeshDocument::Drawers(mesh.CoordinatesDistribution());
    ASSERT_EQ(drawers.Size(), 1);
    EXPECT_EQ(MeshDocument::ChunkSizes(drawers.ConstGet(0)), (std::vector<int>{0, 3}));
    EXPECT_THAT(Read(mesh.Nodes({0}), Axes()), ElementsAre(1, 2, 3));
}

TEST_P(NodalCoordinates, AppendOfNoNodesMakesTheDrawerAndWritesNothing) {
    EXPECT_EQ(AppendNodes({}), 0);
    EXPECT_EQ(NumberDrawers(), 1);
    EXPECT_EQ(Service().NumberNodes(), 0);
    EXPECT_EQ(Members(Service().Components()), (std::vector<int>{0, 12, 20}));
    AppendNodes({4, 5});
    mesh.Reopen();
    EXPECT_EQ(Members(Service().Nodes()), (std::vector<int>{4, 5}));
    EXPECT_THAT(Read(mesh.Nodes({5}), Axes()), ElementsAre(50, 51, 52));
}

TEST_P(NodalCoordinates, NodeOutsideTheStoreReadsAsZero) {
    AppendNodes({3});
    mesh.Reopen();
    EXPECT_THAT(Read(mesh.Nodes({2, 3, 4}), Axes()), ElementsAre(0, 0, 0, 30, 31, 32, 0, 0, 0));
    EXPECT_THAT(Read(mesh.Nodes({3}), mesh.Components({0, 1})), ElementsAre(30, 0));
}

TEST_P(NodalCoordinates, ReadOfNothingAnswersZeroBytes) {
    AppendNodes({3});
    EXPECT_EQ(Service().Read(mesh.Nodes({}), Axes(), nullptr), 0);
}

TEST_P(NodalCoordinates, WithoutADrawerTheAnswerIsTheArraysRefusal) {
    EXPECT_THROW(Service().Nodes(), KOVSimException);
    EXPECT_THROW(Service().Components(), KOVSimException);
}

TEST_P(NodalCoordinates, DroppedTransactionLeavesNoDrawer) {
    {
        auto const transaction = mesh.Write();
        double const data[] = {1, 2, 3};
        KOVSrvNodalCoordinates service = Service();
        service.Append(*transaction, mesh.Nodes({0}), Axes(), data);
    }
    EXPECT_EQ(NumberDrawers(), 0);
    mesh.Reopen();
    EXPECT_EQ(NumberDrawers(), 0);
    AppendNodes({1});
    EXPECT_THAT(Read(mesh.Nodes({0, 1}), mesh.Components({0})), ElementsAre(0, 10));
}

TEST_P(NodalCoordinates, SetsThatDoNotFitTheGridAreRefusedAndMakeNoDrawer) {
    auto const transaction = mesh.Write();
    KOVSrvNodalCoordinates service = Service();
    double const data[6] = {};
    EXPECT_THROW(service.Append(*transaction, Axes(), mesh.Nodes({0, 1}), data), KOVSimException);
    EXPECT_THROW(service.Append(*transaction, mesh.Elements({0}), Axes(), data), KOVSimException);
    EXPECT_EQ(NumberDrawers(), 0);
    service.Append(*transaction, mesh.Nodes({0}), Axes(), data);
    EXPECT_THROW(service.Append(*transaction, mesh.Nodes({0}), mesh.Components({0, 1}), data),
                 KOVSimException);
    EXPECT_THROW(
        service.Append(*transaction, MeshDocument::Ordered(mesh.nodes, {3, 3}), Axes(), data),
        KOVSimException);
    EXPECT_EQ(Members(service.Nodes()), (std::vector<int>{0}));
}

TEST_P(NodalCoordinates, BlockOf2GiBAndMoreIsRefused) {
    auto const transaction = mesh.Write();
    mesh.nodes.ExtendSpace(INT_MAX);
    KOVSimCSetID const all = mesh.nodes.CreateTempCSetStrided(0, INT_MAX, 1, 1);
    KOVSrvNodalCoordinates service = Service();
    double const data[3] = {1, 2, 3};
    EXPECT_THROW(service.Append(*transaction, all, Axes(), data), KOVSimException);
    EXPECT_EQ(service.Append(*transaction, mesh.Nodes({INT_MAX - 1}), Axes(), data), 24);
    EXPECT_THROW(service.Append(*transaction, all, Axes(), data), KOVSimException);
    double value = 0;
    EXPECT_THROW(service.Read(all, Axes(), &value), KOVSimException);
    EXPECT_EQ(service.Read(mesh.Nodes({INT_MAX - 1}), mesh.Components({20}), &value), 8);
    EXPECT_EQ(value, 3);
}

TEST_P(NodalCoordinates, ClosedDocumentIsTheStoresRefusal) {
    KOVSrvNodalCoordinates const service = Service();
    KOVSimPosition const coordinates = mesh.Coordinates();
    mesh.document.Close();
    EXPECT_THROW(service.Nodes(), KOVSimException);
    EXPECT_THROW(KOVSrvNodalCoordinates(coordinates, 10), KOVSimException);
}

// The dimension of the nodes is looked for; the components are the other one, whatever it is.
TEST_P(NodalCoordinates, ComponentsAreTheDimensionOppositeTheNodes) {
    auto const transaction = mesh.Write();
    KOVSimDistributionID const turned =
        mesh.NewDistribution(mesh.elements, mesh.nodes, KOVSimRangeType(KOVSimTypeKeyDouble));
    MeshDocument::NewDrawer<double>(turned, mesh.Elements({30, 31}), mesh.Nodes({7, 8, 9}),
                                    {1, 2, 3, 4, 5, 6});
    KOVSrvNodalCoordinates const service{KOVSimPosition(turned), 1};
    EXPECT_EQ(Members(service.Nodes()), (std::vector<int>{7, 8, 9}));
    EXPECT_EQ(Members(service.Components()), (std::vector<int>{30, 31}));
}

using NodalCoordinatesDeath = testing::Test;

TEST(NodalCoordinatesDeath, DefaultObjectStopsAtItsFirstAssertion) {
    KOVSrvNodalCoordinates service;
    char const* const condition = "m_distributionID.IsNull() == false";
    ExpectCheckedAssertion(condition, kSource, [&] { service.Nodes(); });
    ExpectCheckedAssertion(condition, kSource, [&] { service.Components(); });
    ExpectCheckedAssertion(condition, kSource, [&] { service.NumberNodes(); });
    ExpectCheckedAssertion(condition, kSource, [&] { service.NumberComponents(); });
    ExpectCheckedAssertion(condition, kSource,
                           [&] { service.Read(KOVSimCSet(), KOVSimCSet(), nullptr); });
    ExpectCheckedAssertion(condition, kSource, [&] {
        MeshDocument mesh;
        auto const transaction = mesh.Write();
        service.Append(*transaction, mesh.Nodes({0}), mesh.Components({0, 12}), nullptr);
    });
}

TEST(NodalCoordinatesDeath, ObjectOfANullPositionStopsAtItsFirstAssertion) {
    ExpectCheckedAssertion("m_distributionID.IsNull() == false", kSource,
                           [&] { KOVSrvNodalCoordinates(KOVSimPosition(), 10).Nodes(); });
}

TEST(NodalCoordinatesDeath, FirstAppendOfOneComponentIsRefused) {
    ExpectCheckedAssertion("chunks[1] > 1", kSource, [&] {
        MeshDocument mesh;
        auto const transaction = mesh.Write();
        double const data[] = {1};
        KOVSrvNodalCoordinates(mesh.Coordinates(), 10)
            .Append(*transaction, mesh.Nodes({0}), mesh.Components({0}), data);
    });
}

TEST(NodalCoordinatesDeath, AppendBesideTwoDrawersIsRefused) {
    ExpectCheckedAssertion("numDrawers < 2", kSource, [&] {
        MeshDocument mesh;
        auto const transaction = mesh.Write();
        KOVSimCSetID const axes = mesh.Components({0, 12});
        for (int node : {0, 1}) {
            MeshDocument::NewDrawer<double>(mesh.Coordinates().GetDistribution(),
                                            mesh.Nodes({node}), axes, {1, 2});
        }
        double const data[] = {1, 2};
        KOVSrvNodalCoordinates(mesh.Coordinates(), 10)
            .Append(*transaction, mesh.Nodes({0}), axes, data);
    });
}

TEST(NodalCoordinatesDeath, DistributionWithoutNodesIsRefused) {
    auto const service = [](MeshDocument& mesh) {
        auto const transaction = mesh.Write();
        KOVSimDistributionID const other = mesh.NewDistribution(
            mesh.elements, mesh.components, KOVSimRangeType(KOVSimTypeKeyDouble));
        MeshDocument::NewDrawer<double>(other, mesh.Elements({0}), mesh.Components({0, 12}),
                                        {1, 2});
        transaction->Commit();
        return KOVSrvNodalCoordinates(KOVSimPosition(other), 10);
    };
    ExpectCheckedAssertion("pos >= 0", kSource, [&] {
        MeshDocument mesh;
        service(mesh).Nodes();
    });
    ExpectCheckedAssertion("pos >= 0", kSource, [&] {
        MeshDocument mesh;
        service(mesh).Components();
    });
}

// Entries of another size than a double's.
TEST(NodalCoordinatesDeath, BufferOfAnotherSizeIsRefused) {
    auto const distribution = [](MeshDocument& mesh) {
        return KOVSimPosition(
            mesh.NewDistribution(mesh.nodes, mesh.components, KOVSimRangeType(KOVSimTypeKeyInt)));
    };
    double data[2] = {};
    ExpectCheckedAssertion("len == n*KOVSimCSet(componentSet).Size()*sizeof(double)", kSource, [&] {
        MeshDocument mesh;
        auto const transaction = mesh.Write();
        KOVSrvNodalCoordinates(distribution(mesh), 10)
            .Append(*transaction, mesh.Nodes({0}), mesh.Components({0, 12}), data);
    });
    ExpectCheckedAssertion("n*sizeof(double) == len", kSource, [&] {
        MeshDocument mesh;
        auto const transaction = mesh.Write();
        KOVSrvNodalCoordinates(distribution(mesh), 10)
            .Read(mesh.Nodes({0}), mesh.Components({0, 12}), data);
    });
}

}  // namespace
}  // namespace kov::test
