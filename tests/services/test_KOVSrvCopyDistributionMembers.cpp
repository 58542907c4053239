// Where the members go, what a transform may do, and what the store refuses.
#include <algorithm>
#include <climits>
#include <vector>

#include "services/CopyFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Kind const kPlain{};

using CopyMembers = CopyTest;
INSTANTIATE_TEST_SUITE_P(Media, CopyMembers, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(CopyMembers, WithoutDrawersNothingIsWrittenAndNothingMade) {
    auto const before = mesh.document.Statistics();
    CopyAll();
    EXPECT_EQ(mesh.document.Statistics().sets, before.sets);
    EXPECT_EQ(mesh.document.Statistics().drawers, before.drawers);
    // Not even the pairing of the members.
    InTransaction([&] {
        Copy(written, read, {mesh.Nodes({1}), mesh.Components({0})},
             {mesh.Nodes({1, 2}), mesh.Components({0})});
    });
    // And it needs no transaction.
    Copy(written, read, {mesh.Nodes({1}), mesh.Components({0})},
         {mesh.Nodes({1}), mesh.Components({0})});
    Reopen();
    EXPECT_THAT(KindsOf(written), IsEmpty());
}

// Keeps what it is shown.
class Watcher : public KOVSrvDistributionTransform {
  public:
    void Update(void* buffer, SetIDs& targetSets) const override {
        ++calls;
        first.push_back(*static_cast<double*>(buffer));
        sets.clear();
        persistent = true;
        for (KOVSimCSetID const& id : targetSets) {
            sets.push_back(Members(KOVSimCSet(id)));
            persistent = persistent && id.Minor() > 0;
        }
    }
    mutable int calls = 0;
    mutable std::vector<double> first;
    mutable std::vector<std::vector<int>> sets;
    mutable bool persistent = false;
};

TEST_P(CopyMembers, EqualSetsArePlainCopies) {
    Add(read, {{7, 2}, 0}, {3, 4, 9}, {0, 12});
    Watcher const watcher;
    CopyAll(0, watcher);
    EXPECT_EQ(watcher.calls, 1);
    EXPECT_TRUE(watcher.persistent);
    EXPECT_THAT(watcher.sets, ElementsAre(std::vector<int>{3, 4, 9}, std::vector<int>{0, 12}));
    Reopen();
    EXPECT_EQ(SetsOf(written, 0), SetsOf(read, 0));
    EXPECT_EQ(ContentOf(written), ContentOf(read));
}

TEST_P(CopyMembers, EqualOrderedSetsArePlainCopiesToo) {
    Add(read, {{7, 2}, 0}, {3, 4, 9}, {0, 12});
    InTransaction([&] {
        KOVSimCSetID const nodes = MeshDocument::Ordered(mesh.nodes, {9, 3, 100, 4, 1});
        KOVSimCSetID const components = MeshDocument::Ordered(mesh.components, {12, 0});
        Copy(written, read, {nodes, components}, {nodes, components});
    });
    Reopen();
    EXPECT_EQ(ContentOf(written), ContentOf(read));
}

TEST_P(CopyMembers, MembersGoWhereTheyArePaired) {
    Add(read, kPlain, {1, 2, 3}, {0, 12});
    InTransaction([&] {
        Copy(written, read,
             {MeshDocument::Ordered(mesh.nodes, {30, 10, 20, 5}),
              MeshDocument::Ordered(mesh.components, {0, 7})},
             {MeshDocument::Ordered(mesh.nodes, {3, 1, 2, 900}),
              MeshDocument::Ordered(mesh.components, {12, 0})});
    });
    Reopen();
    EXPECT_EQ(ContentOf(written), (Entries{{{10, 7}, 100},
                                           {{10, 0}, 112},
                                           {{20, 7}, 200},
                                           {{20, 0}, 212},
                                           {{30, 7}, 300},
                                           {{30, 0}, 312}}));
}

TEST_P(CopyMembers, OfAMemberThatIsPairedTwiceTheFirstPairCounts) {
    Add(read, kPlain, {1, 2, 3}, {0});
    InTransaction([&] {
        KOVSimCSetID const component = mesh.Components({0});
        Copy(written, read,
             {MeshDocument::Ordered(mesh.nodes, {30, 31, 10, 32, 20, 11}), component},
             {MeshDocument::Ordered(mesh.nodes, {3, 3, 1, 3, 2, 1}), component});
    });
    Reopen();
    EXPECT_EQ(ContentOf(written), (Entries{{{10, 0}, 100}, {{20, 0}, 200}, {{30, 0}, 300}}));
}

// Only where both of its pairs are met would it be written twice.
TEST_P(CopyMembers, TargetThatTwoMembersShareIsRefusedWhereBothAreRead) {
    Add(read, kPlain, {1, 2}, {0});
    InTransaction([&] {
        KOVSimCSetID const component = mesh.Components({0});
        KOVSimCSetID const targets = MeshDocument::Ordered(mesh.nodes, {7, 9, 7});
        for (KOVSimCSetID const& from :
             {mesh.Nodes({1, 2, 3}), MeshDocument::Ordered(mesh.nodes, {3, 1, 2})}) {
            Copy(written, read, {targets, component}, {from, component});
        }
    });
    EXPECT_EQ(ContentOf(written, 0), (Entries{{{7, 0}, 100}, {{9, 0}, 200}}));
    EXPECT_EQ(ContentOf(written, 1), (Entries{{{9, 0}, 100}, {{7, 0}, 200}}));
    Add(read, kPlain, {2, 3}, {0});
    for (auto const& from : {std::vector<int>{1, 4, 2}, std::vector<int>{2, 4, 1}}) {
        auto const transaction = mesh.Write();
        KOVSimCSetID const component = mesh.Components({0});
        EXPECT_THROW(Copy(written, read, {MeshDocument::Ordered(mesh.nodes, {7, 9, 7}), component},
                          {MeshDocument::Ordered(mesh.nodes, from), component}),
                     KOVSimException);
    }
}

// Adds one to each of the numbers and sends them to other nodes.
class Redirect : public KOVSrvDistributionTransform {
  public:
    Redirect(KOVSimCSetID const& nodes, int entries) : m_nodes(nodes), m_entries(entries) {}
    void Update(void* buffer, SetIDs& targetSets) const override {
        auto* const values = static_cast<double*>(buffer);
        std::for_each(values, values + m_entries, [](double& value) { ++value; });
        targetSets.Get(0) = m_nodes;
    }

  private:
    KOVSimCSetID m_nodes;
    int m_entries;
};

TEST_P(CopyMembers, TransformChangesNumbersAndTargets) {
    Add(read, kPlain, {1, 2, 3}, {0, 12});
    CopyAll(500, Redirect(MeshDocument::Ordered(mesh.nodes, {900, 800, 700}), 6));
    Reopen();
    EXPECT_EQ(ContentOf(written), (Entries{{{900, 0}, 101},
                                           {{900, 12}, 113},
                                           {{800, 0}, 201},
                                           {{800, 12}, 213},
                                           {{700, 0}, 301},
                                           {{700, 12}, 313}}));
    EXPECT_EQ(ContentOf(read).at({1, 0}), 100);
}

TEST_P(CopyMembers, TransformSeesEachDrawerOnce) {
    Add(read, kPlain, {1}, {0});
    Add(read, {{1, 1}, 0}, {2}, {0});
    Add(read, {{1, 1}, -1}, {3}, {0});
    Watcher const watcher;
    CopyAll(0, watcher);
    EXPECT_THAT(watcher.first, ElementsAre(100, 200, 300));
    EXPECT_THAT(watcher.sets, ElementsAre(std::vector<int>{3}, std::vector<int>{0}));
}

class Throwing : public KOVSrvDistributionTransform {
  public:
    void Update(void*, SetIDs&) const override { KOVSimException::ThrowText("not these numbers"); }
};

TEST_P(CopyMembers, WhatTheTransformThrowsReachesTheCaller) {
    Add(read, kPlain, {1, 2, 3}, {0, 12});
    EXPECT_THROW(CopyAll(500, Throwing()), KOVSimException);
    Reopen();
    EXPECT_THAT(KindsOf(written), IsEmpty());
}

TEST_P(CopyMembers, OneDimensionIsCopiedAlike) {
    InTransaction([&] {
        read = NewDistribution(mesh.document, {mesh.nodes});
        written = NewDistribution(mesh.document, {mesh.elements});
        AddDrawer<double>(read, {{4}, 0}, {mesh.Nodes({2, 3, 5})}, {20, 30, 50});
        Copy(written, read, {MeshDocument::Ordered(mesh.elements, {9, 8, 7})},
             {MeshDocument::Ordered(mesh.nodes, {5, 2, 3})});
    });
    Reopen();
    EXPECT_THAT(KindsOf(written), ElementsAre(Kind{{4}, 0}));
    EXPECT_EQ(ContentOf(written), (Entries{{{9, 0}, 50}, {{8, 0}, 20}, {{7, 0}, 30}}));
}

TEST_P(CopyMembers, EntriesOfOneSizeAreCopiedAsBytes) {
    InTransaction([&] {
        read = NewDistribution(mesh.document, {mesh.nodes}, KOVSimRangeType(KOVSimTypeKeyInt));
        written = NewDistribution(mesh.document, {mesh.nodes},
                                  KOVSimRangeType(KOVSimTypeKeyMember, mesh.elements.ID()));
        AddDrawer<int>(read, kPlain, {mesh.Nodes({2, 3})}, {-7, 8});
        Copy(written, read, {mesh.Nodes({0, 1})}, {mesh.Nodes({2, 3})});
    });
    Reopen();
    KOVSimTransfer transfer{KOVSimDistribution(written)};
    int data[2] = {};
    transfer.SetRead().SetBufferPadding(false).SetDim(0, mesh.Nodes({0, 1})).CheckView();
    transfer.SetBuffer(0, data, sizeof data).ExecRead();
    EXPECT_THAT(data, ElementsAre(-7, 8));
}

TEST_P(CopyMembers, ADistributionIsCopiedIntoItself) {
    Add(read, {{7, 2}, 0}, {3, 4, 9}, {0, 12});
    Entries expected = ContentOf(read);
    expected.merge(Shifted(expected, 500));
    written = read;
    CopyAll();
    Reopen();
    EXPECT_EQ(KindsOf(read).size(), 1U);
    EXPECT_EQ(ContentOf(read), expected);
}

TEST_P(CopyMembers, AnotherDocumentIsCopiedFrom) {
    MeshDocument const other(Medium::Memory, 50, 50);
    KOVSimDistributionID from;
    {
        auto const transaction = other.Write();
        from = NewDistribution(other.document, {other.nodes});
        AddDrawer<double>(from, {{4}, 0}, {other.Nodes({2, 3})}, {20, 30});
        transaction->Commit();
    }
    InTransaction([&] {
        written = NewDistribution(mesh.document, {mesh.nodes});
        Copy(written, from, {mesh.Nodes({800, 900})}, {other.Nodes({2, 3})});
    });
    Reopen();
    EXPECT_EQ(ContentOf(written), (Entries{{{800, 0}, 20}, {{900, 0}, 30}}));
}

TEST_P(CopyMembers, GrowingDrawerWithoutMembersIsCopiedAsSuch) {
    Add(read, {{7, 2}, 0}, {}, {0, 12});
    CopyAll();
    Reopen();
    EXPECT_THAT(KindsOf(written), ElementsAre(Kind{{7, 2}, 0}));
    EXPECT_THAT(SetsOf(written, 0), ElementsAre(std::vector<int>{}, std::vector<int>{0, 12}));
}

// ---- refusals of the store ----

TEST_P(CopyMembers, PairsOfUnequalSizeAreRefused) {
    Add(read, kPlain, {1, 2}, {0});
    for (auto const& nodes : {mesh.Nodes({1}), MeshDocument::Ordered(mesh.nodes, {3, 2, 1})}) {
        for (auto const& others : {mesh.Nodes({1, 2}), MeshDocument::Ordered(mesh.nodes, {2, 1})}) {
            auto const transaction = mesh.Write();
            KOVSimCSetID const components = mesh.Components({0});
            EXPECT_THROW(Copy(written, read, {nodes, components}, {others, components}),
                         KOVSimException);
            EXPECT_THROW(Copy(written, read, {others, components}, {nodes, components}),
                         KOVSimException);
        }
    }
}

TEST_P(CopyMembers, WithoutATransactionItIsRefused) {
    Add(read, kPlain, {1, 2}, {0});
    EXPECT_THROW(Copy(written, read, {mesh.Nodes({1, 2}), mesh.Components({0})},
                      {mesh.Nodes({1, 2}), mesh.Components({0})}),
                 KOVSimException);
    EXPECT_THAT(KindsOf(written), IsEmpty());
}

TEST_P(CopyMembers, DroppedTransactionLeavesNothing) {
    Add(read, kPlain, {1, 2}, {0});
    auto const before = mesh.document.Statistics();
    {
        auto const transaction = mesh.Write();
        Copy(written, read, {mesh.Nodes({1, 2}), mesh.Components({0})},
             {mesh.Nodes({1, 2}), mesh.Components({0})});
        EXPECT_EQ(KindsOf(written).size(), 1U);
    }
    Reopen();
    EXPECT_THAT(KindsOf(written), IsEmpty());
    EXPECT_EQ(mesh.document.Statistics().sets, before.sets);
}

// What was copied before stays until the caller's transaction ends.
TEST_P(CopyMembers, DrawerOf2GiBIsRefusedBehindThoseBeforeIt) {
    auto transaction = mesh.Write();
    mesh.nodes.ExtendSpace(INT_MAX);
    int const rows = INT_MAX / 8 + 1;
    KOVSimCSetID const component = mesh.Components({0});
    AddDrawer<double>(read, kPlain, {mesh.Nodes({0}), component}, {1});
    AddDrawer<double>(read, {{9, 1}, 0}, {mesh.Nodes({0}), component}, {2});
    // Rows alone, which read as zero.
    KOVSimTransfer grow{KOVSimDistribution(read)};
    grow.SetWrite().SetAutoExtend();
    grow.SetDrawer(MeshDocument::Drawers(KOVSimDistribution(read)).ConstGet(1).drawerID);
    grow.SetDim(0, mesh.nodes.CreateTempCSetStrided(0, rows, 1, 1));
    grow.SetDim(1, mesh.Components({})).CheckView().ExecWrite();
    KOVSimCSetID const all = mesh.nodes.CreateTempCSetStrided(0, INT_MAX, 1, 1);
    std::string refusal;
    try {
        Copy(written, read, {all, component}, {all, component});
    } catch (KOVSimException const& exception) {
        refusal = exception.what();
    }
    EXPECT_THAT(refusal, testing::HasSubstr("268435456 entries of 8 bytes"));
    EXPECT_THAT(refusal, testing::HasSubstr("one transfer moves less than 2 GiB"));
    EXPECT_EQ(ContentOf(written), (Entries{{{0, 0}, 2}}));
    transaction.reset();
    EXPECT_THAT(KindsOf(written), IsEmpty());
}

}  // namespace
}  // namespace kov::test
