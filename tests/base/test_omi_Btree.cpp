#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <string>

#include "BtreeModel.h"
#include "omi_BlkBitVect.h"
#include "omi_Btree.h"
#include "omi_BtreeIterator.h"

namespace {

using Tree = omi_Btree<omi_BlkBitVect, int>;
using Iterator = omi_BtreeIterator<omi_BlkBitVect, int>;

/// The set whose binary number is `number`, so that keys are ordered as their numbers are.
omi_BlkBitVect Key(int number) {
    omi_BlkBitVect key;
    for (int bit = 0; bit < 31; ++bit) {
        if (number >> bit & 1) key.SetBit(bit);
    }
    return key;
}

int Number(omi_BlkBitVect const& key) {
    int number = 0;
    for (int bit = 0; bit < 31; ++bit) number |= key.TestBit(bit) ? 1 << bit : 0;
    return number;
}

std::string Shape(Tree::Node const* node) {
    if (!node) return ".";
    return "(" + Shape(node->Left()) + " " + std::to_string(Number(node->Key())) + ":" +
           std::to_string(node->MaxDepth()) + " " + Shape(node->Right()) + ")";
}

Tree Filled(int from, int to) {
    Tree tree;
    for (int i = from; i < to; ++i) tree.Insert(Key(i), i);
    return tree;
}

}  // namespace

TEST(omi_Btree, InsertOfAnExistingKeyKeepsTheStoredValue) {
    Tree tree;
    EXPECT_TRUE(tree.Insert(Key(5), 1));
    EXPECT_FALSE(tree.Insert(Key(5), 2));
    EXPECT_EQ(tree.Root()->Find(Key(5))->Value(), 1);
    EXPECT_EQ(tree.NumberOfKeys(), 1);
}

TEST(omi_Btree, TheEmptySetIsAKeyLikeAnyOther) {
    Tree tree = Filled(0, 10);
    EXPECT_EQ(tree.Root()->Find(omi_BlkBitVect())->Value(), 0);
    EXPECT_TRUE(tree.Remove(omi_BlkBitVect()));
    EXPECT_EQ(tree.Root()->Find(omi_BlkBitVect()), nullptr);
}

TEST(omi_Btree, RemovingTheOnlyKeyLeavesAnEmptyTree) {
    Tree tree = Filled(1, 2);
    EXPECT_TRUE(tree.Remove(Key(1)));
    EXPECT_EQ(tree.Root(), nullptr);
    EXPECT_EQ(tree.NumberOfKeys(), 0);
}

TEST(omi_Btree, RemovingAnAbsentKeyChangesNothing) {
    Tree tree = Filled(0, 20);
    std::string const before = Shape(tree.Root());
    EXPECT_FALSE(tree.Remove(Key(20)));
    EXPECT_EQ(Shape(tree.Root()), before);
    EXPECT_FALSE(Tree().Remove(Key(1)));
}

TEST(omi_Btree, RemovingALeafBesideNothingRefreshesTheParentsDepth) {
    Tree tree = Filled(1, 3);
    EXPECT_TRUE(tree.Remove(Key(2)));
    EXPECT_EQ(Shape(tree.Root()), "(. 1:0 .)");
}

TEST(omi_Btree, AKeyMayBeRemovedThroughAReferenceToItself) {
    Tree tree = Filled(0, 10);
    EXPECT_TRUE(tree.Remove(tree.Root()->Key()));
    EXPECT_EQ(tree.NumberOfKeys(), 9);
}

TEST(omi_Btree, TheNullValueIsADefaultBuiltOne) { EXPECT_EQ(Tree::GetNullValue(), 0); }

TEST(omi_Btree, CopyGivesANewTreeOfTheSameShape) {
    Tree tree = Filled(0, 50);
    tree.Remove(Key(20));
    std::unique_ptr<Tree> const copy(tree.Copy());
    EXPECT_EQ(Shape(copy->Root()), Shape(tree.Root()));
    EXPECT_NE(copy->Root(), tree.Root());
    EXPECT_EQ(copy->NumberOfKeys(), 49);
}

TEST(omi_Btree, AssignmentReplacesTheContentAndSurvivesItself) {
    Tree tree = Filled(0, 5);
    Tree other = Filled(5, 20);
    other = tree;
    EXPECT_EQ(Shape(other.Root()), Shape(tree.Root()));
    EXPECT_EQ(other.NumberOfKeys(), 5);
    Tree& alias = other;
    other = alias;
    EXPECT_EQ(Shape(other.Root()), Shape(tree.Root()));
    other = Tree();
    EXPECT_EQ(other.Root(), nullptr);
}

TEST(omi_BtreeIterator, IsFinishedOnAnEmptyTreeRightAfterFirst) {
    Tree const tree;
    Iterator at(tree);
    at.First();
    EXPECT_TRUE(at.IsDone());
    EXPECT_THROW(at.CurrentValue(), KOVSimException);
}

TEST(omi_BtreeIterator, GoesUpAndDown) {
    Tree const tree = Filled(0, 33);
    Iterator at(tree);
    int number = 0;
    for (at.First(); !at.IsDone(); at.Next()) EXPECT_EQ(at.CurrentValue(), number++);
    EXPECT_EQ(number, 33);
    for (at.Last(); !at.IsDone(); at.Previous()) EXPECT_EQ(Number(at.CurrentKey()), --number);
    EXPECT_EQ(number, 0);
}

TEST(omi_Btree, KeepsContentAndShapeUnderRandomChanges) {
    unsigned const seed = std::random_device()();
    std::printf("seed %u\n", seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 40; ++round) {
        Tree tree;
        BtreeModel shape(BtreeFamily::RefreshesDepthAtEmptiedLink);
        std::map<int, int> model;
        int const space = 1 << (1 + static_cast<int>(random() % 9));
        for (int step = 0; step < 400; ++step) {
            int const key = static_cast<int>(random()) & (space - 1);
            if (random() % 5 < 3) {
                bool const isNew = model.emplace(key, step).second;
                ASSERT_EQ(tree.Insert(Key(key), step), isNew);
                ASSERT_EQ(shape.Insert(key), isNew);
            } else {
                bool const wasThere = model.erase(key) == 1;
                ASSERT_EQ(tree.Remove(Key(key)), wasThere);
                ASSERT_EQ(shape.Remove(key), wasThere);
            }
            ASSERT_EQ(Shape(tree.Root()), shape.Shape());
            ASSERT_EQ(tree.NumberOfKeys(), static_cast<int>(model.size()));
        }
        Iterator at(tree);
        at.First();
        for (auto const& [key, value] : model) {
            ASSERT_FALSE(at.IsDone());
            ASSERT_EQ(Number(at.CurrentKey()), key);
            ASSERT_EQ(at.CurrentValue(), value);
            at.Next();
        }
        ASSERT_TRUE(at.IsDone());
    }
}
