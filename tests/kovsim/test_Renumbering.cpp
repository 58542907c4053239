#include "Renumbering.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "DocumentReader.h"
#include "KOVObjMesh.h"
#include "KOVSimTransaction.h"

namespace kov::test {
namespace {

using Ints = std::vector<int>;

class RenumberingTest : public ::testing::Test {
  protected:
    RenumberingTest() {
        KOVSimTransaction transaction(document.ContextID());
        nodes = tool::CollectionAt(KOVObjMesh(document.GetMesh()).GetNodeCollection());
        elements = tool::CollectionAt(KOVObjMesh(document.GetMesh()).GetElementCollection());
        nodes.ExtendSpace(10'000);
        elements.ExtendSpace(10'000);
        transaction.Commit();
    }
    KOVSimCSet Set(Ints const& members) const {
        return nodes.CreateVolatileCSet(members.data(), static_cast<int>(members.size()), false);
    }
    KOVSimCSet Ordered(Ints const& members) const {
        return nodes.CreateVolatileOrderedCSet(members.data(), static_cast<int>(members.size()));
    }
    static Ints MembersOf(KOVSimCSet const& set) {
        Ints members(static_cast<std::size_t>(set.Size()));
        set.OrderedMembers(members.data());
        return members;
    }

    KOVObjDocument document = KOVObjDocument::CreateInMemory();
    KOVSimCollection nodes;
    KOVSimCollection elements;
};

TEST_F(RenumberingTest, WithoutASetAllMembersStay) {
    tool::Renumbering const all;
    EXPECT_TRUE(all.IsIdentity());
    EXPECT_EQ(all.NewIndex(77), 77);
    EXPECT_EQ(MembersOf(all.Map(Set({3, 9}), elements)), (Ints{3, 9}));
    EXPECT_EQ(all.Map(Set({3, 9}), elements).CollectionID(), elements.ID());
}

TEST_F(RenumberingTest, NothingKeptGivesNothing) {
    tool::Renumbering const none(Set({}));
    EXPECT_FALSE(none.IsIdentity());
    EXPECT_EQ(none.NewIndex(0), -1);
    EXPECT_EQ(none.NewIndex(-1), -1);
    EXPECT_TRUE(none.Map(Set({0, 1}), elements).IsEmpty());
}

TEST_F(RenumberingTest, AContiguousPartIsShifted) {
    tool::Renumbering const part(Set({5, 6, 7}));
    EXPECT_EQ(part.NewIndex(4), -1);
    EXPECT_EQ(part.NewIndex(5), 0);
    EXPECT_EQ(part.NewIndex(7), 2);
    EXPECT_EQ(part.NewIndex(8), -1);
    EXPECT_EQ(MembersOf(part.Part(Set({1, 6, 7, 9}))), (Ints{6, 7}));
    EXPECT_EQ(MembersOf(part.Map(Set({1, 6, 7, 9}), elements)), (Ints{1, 2}));
}

TEST_F(RenumberingTest, AnOrderedSetKeepsItsOrder) {
    tool::Renumbering const part(Set({2, 4, 8, 16}));
    EXPECT_EQ(MembersOf(part.Map(Ordered({16, 3, 2, 8}), elements)), (Ints{3, 0, 2}));
}

TEST_F(RenumberingTest, AgreesWithASortedListForRandomSets) {
    std::mt19937 random(20'261'121);
    for (int round = 0; round < 60; ++round) {
        auto const one = 1 + random() % (round % 3 == 0 ? 2 : 200);
        Ints kept;
        Ints asked;
        for (int i = 0; i < 10'000; ++i) {
            if (random() % one == 0) kept.push_back(i);
            if (random() % 7 == 0) asked.push_back(i);
        }
        tool::Renumbering const part(Set(kept));
        Ints expected;
        for (int i = -1; i <= 10'000; ++i) {
            auto const at = std::lower_bound(kept.begin(), kept.end(), i);
            bool const held = at != kept.end() && *at == i;
            int const index = held ? static_cast<int>(at - kept.begin()) : -1;
            ASSERT_EQ(part.NewIndex(i), index) << "round " << round << ", member " << i;
            if (held && std::binary_search(asked.begin(), asked.end(), i)) {
                expected.push_back(index);
            }
        }
        EXPECT_EQ(MembersOf(part.Map(Set(asked), elements)), expected) << "round " << round;
        std::shuffle(asked.begin(), asked.end(), random);
        Ints ordered;
        for (int const member : asked) {
            if (part.NewIndex(member) >= 0) ordered.push_back(part.NewIndex(member));
        }
        EXPECT_EQ(MembersOf(part.Map(Ordered(asked), elements)), ordered) << "round " << round;
    }
}

}  // namespace
}  // namespace kov::test
