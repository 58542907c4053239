#include "SetTable.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVObjMesh.h"
#include "KOVSimTransaction.h"

namespace kov::tool {
namespace {

class SetTables : public ::testing::Test {
  protected:
    SetTables()
        : document(KOVObjDocument::CreateInMemory()),
          transaction(document.ContextID()),
          collection(KOVObjMesh(document.GetMesh()).GetNodeCollection().GetCollection()) {
        collection.ExtendSpace(20'000'000);
    }

    KOVSimCollection const& Collection() const { return collection; }
    std::vector<int> Stored(SetMembers& members) {
        KOVSimCSet const set(members.Store(collection));
        std::vector<int> out(static_cast<std::size_t>(set.Size()));
        set.Members(out.data());
        return out;
    }

    KOVObjDocument document;
    KOVSimTransaction transaction;
    KOVSimCollection collection;
};

TEST_F(SetTables, NamesCompareWithoutRegardToCase) {
    SetPool pool;
    SetTable table(pool);
    EXPECT_EQ(table.Find("a"), nullptr);
    NamedSet& set = table.FindOrMake("Left Side");
    EXPECT_EQ(&table.FindOrMake("LEFT side"), &set);
    EXPECT_EQ(table.Find("left SIDE"), &set);
    EXPECT_EQ(set.name, "Left Side");
    EXPECT_EQ(table.Size(), 1U);
}

TEST_F(SetTables, NoMembersAreAnEmptySet) {
    SetMembers members;
    EXPECT_TRUE(Stored(members).empty());
    SetMembers folded;
    folded.Fold(collection);
    EXPECT_TRUE(Stored(folded).empty());
}

TEST_F(SetTables, ALargeRangeIsOneRun) {
    SetMembers members;
    for (int page = 0; page < 4000; ++page) members.Add(page * 4096, 4096, 1);
    EXPECT_EQ(members.Runs(), 1U);
    KOVSimCSet const set(members.Store(collection));
    EXPECT_EQ(set.Size(), 4000 * 4096);
}

TEST_F(SetTables, StridedRunsGrowTogether) {
    SetMembers members;
    members.Add(0, 10, 7);
    members.Add(70, 1, 1);
    members.Add(77, 5, 7);
    EXPECT_EQ(members.Runs(), 1U);
    std::vector<int> expected;
    for (int i = 0; i < 16; ++i) expected.push_back(7 * i);
    EXPECT_EQ(Stored(members), expected);
}

// Runs of all kinds in any order, folded now and then, against a std::set.
class RandomMembers : public SetTables, public ::testing::WithParamInterface<int> {};

TEST_P(RandomMembers, AgreeWithASet) {
    unsigned const seed = 11u + static_cast<unsigned>(GetParam());
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    auto const below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    SetMembers members;
    std::set<int> model;
    for (int step = 0; step < GetParam(); ++step) {
        int const first = below(1'000'000);
        int const count = below(10) == 0 ? below(2000) + 1 : 1;
        int const stride = count > 1 && below(2) == 0 ? below(9) + 1 : 1;
        members.Add(first, count, stride);
        for (int i = 0; i < count; ++i) model.insert(first + i * stride);
        if (below(GetParam() / 4 + 1) == 0) members.Fold(collection);
        if (below(GetParam() / 2 + 1) == 0) {
            SetMembers copy;
            copy.Add(members);
            members = std::move(copy);
        }
    }
    EXPECT_EQ(Stored(members), std::vector<int>(model.begin(), model.end()));
}
INSTANTIATE_TEST_SUITE_P(Sizes, RandomMembers, ::testing::Values(1, 5, 100, 3000, 20000));

TEST_F(SetTables, AGreatManyScatteredMembersAreKept) {
    SetMembers members;
    for (int i = 0; i < 300'000; ++i) members.Add(static_cast<int>(3 * ((i * 7919LL) % 300'000)));
    members.Fold(collection);
    members.Add(5);
    members.Add(10'000'000, 100'000, 1);
    members.Add(0, 200'000, 3);
    KOVSimCSet const set(members.Store(collection));
    EXPECT_EQ(set.Size(), 400'001);
    EXPECT_TRUE(set.Contains(5) && set.Contains(3 * 299'999) && !set.Contains(4));
}

TEST_F(SetTables, ManyRunsOverManySetsAreFolded) {
    SetPool pool;
    SetTable table(pool);
    auto const all = [this]() -> KOVSimCollection const& { return collection; };
    for (int i = 0; i < 1'200'000; ++i) {
        table.Add(table.FindOrMake("S" + std::to_string(i % 1000)), 2 * i, 1, 1, all);
    }
    std::size_t runs = 0;
    for (NamedSet const& set : table.Sets()) runs += set.members.Runs();
    EXPECT_LT(runs, 300'000U);
    SetMembers& first = table.Find("s0")->members;
    std::vector<int> const members = Stored(first);
    ASSERT_EQ(members.size(), 1200U);
    for (std::size_t i = 0; i < members.size(); ++i)
        EXPECT_EQ(members[i], static_cast<int>(i) * 2000);
}

}  // namespace
}  // namespace kov::tool
