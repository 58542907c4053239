#include "KOVSrvGlobalLabelMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "KOVSrvGetInstanceInfo.h"
#include "services/LabelFixture.h"

namespace kov::test {
namespace {

using Table = KOVSrvGlobalLabelMap::Table;

class GlobalLabelMap : public OnEachMedium {
  protected:
    GlobalLabelMap() {
        RecordNodes(mesh, "A", {{1, 10}, {2, 11}, {3, 12}});
        RecordNodes(mesh, "B", {{1, 20}, {2, 22}});
        RecordElements(mesh, "E", {{70, 10}, {71, 20}});
    }
    // A distribution of labels over the nodes. In a transaction.
    KOVSimDistributionID NewLabels(KOVSimTypeKey key = KOVSimTypeKeyInt) const {
        KOVSimGrid::CollectionArray grid(1);
        grid.Get(0) = mesh.nodes.ID();
        return mesh.document.CreateDistribution(KOVSimGrid(grid), KOVSimRangeType(key), -1);
    }
    // Adds a drawer to it. In a transaction.
    static void AddDrawer(KOVSimDistributionID const& distribution, KOVSimCSetID const& ordinals,
                          std::vector<int> const& labels) {
        KOVSimTransfer write{KOVSimDistribution(distribution)};
        write.SetWrite().SetBufferPadding(false).SetMakeNewDrawer().SetDim(0, ordinals).CheckView();
        write.SetBuffer(0, static_cast<void const*>(labels.data()), labels.size() * sizeof(int));
        write.ExecWrite().RelinquishBuffers();
    }
    // What a distribution with one drawer is found under after reopening.
    KOVSimPosition Labels(std::vector<int> const& ordinals, std::vector<int> const& labels) {
        auto const transaction = mesh.Write();
        KOVSimDistributionID const made = NewLabels();
        AddDrawer(made, mesh.Nodes(ordinals), labels);
        transaction->Commit();
        return Reopened(made);
    }
    KOVSimPosition Reopened(KOVSimDistributionID const& distribution,
                            KOVObjDocument::Access access = KOVObjDocument::ReadOnly) {
        mesh.Reopen(access);
        KOVSimDynamicID id = distribution.ID();
        id.context = mesh.document.ContextID();
        return id;
    }
    // "A 2" for instance A, label 2; "-" for an unknown label.
    static std::string Look(KOVSrvGlobalLabelMap const& map, int globalLabel) {
        KOVString instance("before");
        int label = -77;
        if (map.GetInstanceLabel(globalLabel, instance, label))
            return instance.TextOrEmpty() + (" " + std::to_string(label));
        EXPECT_EQ(instance, "before");
        EXPECT_EQ(label, -77);
        return "-";
    }
};
INSTANTIATE_TEST_SUITE_P(Media, GlobalLabelMap, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(GlobalLabelMap, AGlobalLabelLeadsToInstanceAndLabel) {
    KOVSimPosition const labels = Labels({10, 11, 12, 20, 22}, {1000, 1001, 1002, 7, 2000000});
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    map.Initialize(labels);
    EXPECT_EQ(Look(map, 1000), "A 1");
    EXPECT_EQ(Look(map, 1002), "A 3");
    EXPECT_EQ(Look(map, 7), "B 1");
    EXPECT_EQ(Look(map, 2000000), "B 2");
    for (int const unknown : {0, 1, 8, 999, 1003, -7, INT_MAX, INT_MIN})
        EXPECT_EQ(Look(map, unknown), "-");
}

TEST_P(GlobalLabelMap, NegativeLabelsAreFoundUnderTheirOwnValue) {
    KOVSimPosition const labels = Labels({10, 11, 12, 20}, {-5, 5, INT_MIN, INT_MAX});
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    map.Initialize(labels);
    EXPECT_EQ(Look(map, -5), "A 1");
    EXPECT_EQ(Look(map, 5), "A 2");
    EXPECT_EQ(Look(map, INT_MIN), "A 3");
    EXPECT_EQ(Look(map, INT_MAX), "B 1");
}

TEST_P(GlobalLabelMap, DistributionWithoutDrawersGivesAnEmptyMap) {
    auto const transaction = mesh.Write();
    KOVSimDistributionID const made = NewLabels();
    transaction->Commit();
    KOVSimPosition const labels = Reopened(made);
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    map.Initialize(labels);
    for (int const unknown : {0, 1, -1, 10}) EXPECT_EQ(Look(map, unknown), "-");
}

TEST_P(GlobalLabelMap, PositionWithoutADistributionGivesAnEmptyMap) {
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    map.Initialize(KOVSimPosition());
    EXPECT_EQ(Look(map, 1), "-");
}

TEST_P(GlobalLabelMap, DrawersBehindTheFirstAreIgnored) {
    auto const transaction = mesh.Write();
    KOVSimDistributionID const made = NewLabels();
    AddDrawer(made, mesh.Nodes({10, 11}), {100, 101});
    AddDrawer(made, mesh.Nodes({11, 20}), {200, 201});
    transaction->Commit();
    KOVSimPosition const labels = Reopened(made);
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    map.Initialize(labels);
    EXPECT_EQ(Look(map, 100), "A 1");
    EXPECT_EQ(Look(map, 101), "A 2") << "though a later drawer holds the node too";
    EXPECT_EQ(Look(map, 200), "-");
    EXPECT_EQ(Look(map, 201), "-");
}

TEST_P(GlobalLabelMap, OfALabelThatStandsTwiceTheFirstOrdinalIsKept) {
    KOVSimPosition const labels = Labels({10, 11, 20}, {6, 6, 7});
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    map.Initialize(labels);
    EXPECT_EQ(Look(map, 6), "A 1");
    EXPECT_EQ(Look(map, 7), "B 1");
}

TEST_P(GlobalLabelMap, OrdinalOfNoInstanceIsUnknown) {
    KOVSimPosition const labels = Labels({10, 21}, {6, 7});
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    map.Initialize(labels);
    EXPECT_EQ(Look(map, 6), "A 1");
    EXPECT_EQ(Look(map, 7), "-");
}

TEST_P(GlobalLabelMap, EveryTypeButZeroMeansElements) {
    KOVSimPosition const labels = Labels({10, 20}, {6, 7});
    for (int const type : {1, 2, -1, 1000}) {
        KOVSrvGlobalLabelMap map(mesh.document.Focus(), static_cast<KOVSrvLabelerType>(type));
        map.Initialize(labels);
        EXPECT_EQ(Look(map, 6), "E 70") << type;
        EXPECT_EQ(Look(map, 7), "E 71") << type;
    }
}

TEST_P(GlobalLabelMap, AGivenTableIsTakenOver) {
    auto* const table = new Table;
    table->Insert(42, 12);
    table->Insert(-42, 22);
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    map.Initialize(*table);
    map.Initialize(*table);
    EXPECT_EQ(Look(map, 42), "A 3");
    EXPECT_EQ(Look(map, -42), "B 2");
    table->Insert(43, 10);
    EXPECT_EQ(Look(map, 43), "A 1") << "no copy was made";
}

TEST_P(GlobalLabelMap, LabelsMayBeLoadedIntoATableOfTheCallers) {
    KOVSimPosition const labels = Labels({10, 11}, {5, -6});
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    Table table;
    table.Insert(1, 99);
    map.LoadGlobalLabels(labels, table);
    ASSERT_NE(table.Find(5), nullptr);
    EXPECT_EQ(*table.Find(5), 10);
    EXPECT_EQ(*table.Find(-6), 11);
    EXPECT_EQ(*table.Find(1), 99);
    EXPECT_EQ(table.Find(6), nullptr);
    EXPECT_EQ(Look(map, 5), "-") << "the map's own table is another";
}

TEST_P(GlobalLabelMap, InitialisingAgainReplaces) {
    KOVSimPosition const labels = Labels({10}, {5});
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    auto* const table = new Table;
    table->Insert(6, 11);
    map.Initialize(*table);
    map.Initialize(labels);
    EXPECT_EQ(Look(map, 5), "A 1");
    EXPECT_EQ(Look(map, 6), "-");
}

TEST_P(GlobalLabelMap, LabelsOfAnotherKindAreRefusedAndChangeNothing) {
    auto const transaction = mesh.Write();
    KOVSimDistributionID const doubles = NewLabels(KOVSimTypeKeyDouble);
    KOVSimTransfer write{KOVSimDistribution(doubles)};
    double const value = 3;
    write.SetWrite().SetBufferPadding(false).SetMakeNewDrawer().SetDim(0, mesh.Nodes({10}));
    write.CheckView().SetBuffer(0, static_cast<void const*>(&value), sizeof value).ExecWrite();
    write.RelinquishBuffers();
    transaction->Commit();
    KOVSimPosition const labels = Reopened(doubles);
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    auto* const table = new Table;
    table->Insert(6, 11);
    map.Initialize(*table);
    EXPECT_THROW(map.Initialize(labels), KOVSimException);
    EXPECT_EQ(Look(map, 6), "A 2");
}

TEST_P(GlobalLabelMap, FocusIsTheOneGiven) {
    KOVSrvGlobalLabelMap const map(mesh.document.Focus(), KOVSrvLabelerNodes);
    EXPECT_EQ(map.Focus().ID(), mesh.document.Focus().ID());
    EXPECT_TRUE(KOVSrvGlobalLabelMap(KOVSimPosition(), KOVSrvLabelerNodes).Focus().IsNull());
}

TEST_P(GlobalLabelMap, ADocumentThatWasClosedIsRefused) {
    KOVSimPosition const labels = Labels({10}, {5});
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    map.Initialize(labels);
    mesh.document.Close();
    KOVString instance;
    int label = 0;
    EXPECT_THROW(map.GetInstanceLabel(5, instance, label), KOVSimException);
    EXPECT_FALSE(map.GetInstanceLabel(6, instance, label)) << "the table alone says so";
    EXPECT_THROW(map.Initialize(labels), KOVSimException);
}

TEST_P(GlobalLabelMap, ManyLabelsAreKept) {
    int const count = 900;
    std::vector<int> labels, ordinals;
    LabelPairs pairs;
    for (int i = 0; i < count; ++i) {
        ordinals.push_back(i);
        labels.push_back((i * 7919 % 1000 - 500) * 3);
        pairs.emplace_back(count - i, i);
    }
    RecordNodes(mesh, "A", pairs);
    RecordNodes(mesh, "B", {});
    KOVSimPosition const position = Labels(ordinals, labels);
    KOVSrvGlobalLabelMap map(mesh.document.Focus(), KOVSrvLabelerNodes);
    map.Initialize(position);
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(Look(map, labels[static_cast<std::size_t>(i)]), "A " + std::to_string(count - i));
        ASSERT_EQ(Look(map, labels[static_cast<std::size_t>(i)] + 1), "-");
    }
}

TEST_P(GlobalLabelMap, InstanceInfoAnswersForNodesAndElements) {
    mesh.Reopen(KOVObjDocument::ReadOnly);
    KOVSimPosition const focus = mesh.document.Focus();
    KOVString instance("before");
    int label = -3;
    EXPECT_FALSE(KOVSrvGetInstanceInfo(focus, KOVSrvLabelerNodes, 13, instance, label));
    EXPECT_FALSE(KOVSrvGetInstanceInfo(focus, KOVSrvLabelerNodes, -1, instance, label));
    EXPECT_FALSE(KOVSrvGetInstanceInfo(focus, KOVSrvLabelerNodes, 100000, instance, label));
    EXPECT_FALSE(KOVSrvGetInstanceInfo(focus, KOVSrvLabelerElements, 11, instance, label));
    EXPECT_FALSE(KOVSrvGetInstanceInfo(KOVSimPosition(), KOVSrvLabelerNodes, 10, instance, label));
    EXPECT_EQ(instance, "before");
    EXPECT_EQ(label, -3);
    EXPECT_TRUE(KOVSrvGetInstanceInfo(focus, KOVSrvLabelerNodes, 12, instance, label));
    EXPECT_EQ(instance, "A");
    EXPECT_EQ(label, 3);
    EXPECT_TRUE(
        KOVSrvGetInstanceInfo(mesh.document.GetMesh(), KOVSrvLabelerElements, 20, instance, label));
    EXPECT_EQ(instance, "E");
    EXPECT_EQ(label, 71);
}

TEST(GlobalLabelMapDeath, NullFocusIsFatal) {
    ExpectFatalAssertion("m_focus.IsNull() == false", "KOVSrvGlobalLabelMap", [] {
        auto* const table = new Table;
        table->Insert(1, 1);
        KOVSrvGlobalLabelMap map(KOVSimPosition(), KOVSrvLabelerNodes);
        map.Initialize(*table);
        KOVString instance;
        int label = 0;
        map.GetInstanceLabel(1, instance, label);
    });
}

}  // namespace
}  // namespace kov::test
