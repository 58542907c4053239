#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <random>
#include <string>

#include "BtreeModel.h"
#include "KOVSimBtree.h"
#include "KOVSimBtreeIterator.h"
#include "KOVSimDynamicID.h"

namespace {

using Tree = KOVSimBtree<KOVString, int>;
using Iterator = KOVSimBtreeIterator<KOVString, int>;

KOVString Key(int number) {
    KOVString key;
    key.BuildFromNum(number, "%06d");
    return key;
}

std::string Shape(Tree::Node const* node) {
    if (!node) return ".";
    return "(" + Shape(node->Left()) + " " + std::to_string(std::atoi(node->Key().Text())) + ":" +
           std::to_string(node->MaxDepth()) + " " + Shape(node->Right()) + ")";
}

std::string Keys(Tree const& tree) {
    std::string text;
    Iterator at(tree);
    for (at.First(); !at.IsDone(); at.Next())
        text += std::string(at.CurrentKey().TextOrEmpty()) + ";";
    return text;
}

Tree Filled(int from, int to) {
    Tree tree;
    for (int i = from; i < to; ++i) tree.Insert(Key(i), i, false);
    return tree;
}

}  // namespace

TEST(KOVSimBtreeCompare, IsPositiveWhenTheSoughtKeyStandsBehind) {
    EXPECT_GT(KOVSimBtreeCompare("a", "b"), 0);
    EXPECT_LT(KOVSimBtreeCompare("b", "a"), 0);
    EXPECT_EQ(KOVSimBtreeCompare("a", "a"), 0);
}

TEST(KOVSimBtreeCompare, AnEmptyTextComparesAsTheEmptyText) {
    EXPECT_EQ(KOVSimBtreeCompare(KOVString(), ""), 0);
    EXPECT_GT(KOVSimBtreeCompare(KOVString(), "a"), 0);
}

TEST(KOVSimBtreeCompare, BytesBeyondAsciiStandBehindAscii) {
    EXPECT_GT(KOVSimBtreeCompare("z", "\xC3\xA9"), 0);
}

TEST(KOVSimBtree, InsertOfAnExistingKeyWithoutOverwriteKeepsTheValue) {
    Tree tree;
    EXPECT_TRUE(tree.Insert("k", 1, false));
    EXPECT_FALSE(tree.Insert("k", 2, false));
    EXPECT_EQ(tree.Get("k"), 1);
    EXPECT_EQ(tree.NumberOfKeys(), 1);
}

TEST(KOVSimBtree, InsertOfAnExistingKeyWithOverwriteReplacesTheValueOnly) {
    Tree tree;
    tree.Insert("k", 1, false);
    EXPECT_FALSE(tree.Insert("k", 2, true));
    EXPECT_EQ(tree.Get("k"), 2);
    EXPECT_EQ(tree.NumberOfKeys(), 1);
}

TEST(KOVSimBtree, AscendingKeysRotateLeftAndStayInOrder) {
    Tree tree = Filled(0, 100);
    EXPECT_LE(tree.Root()->MaxDepth(), 8);
    EXPECT_NE(tree.Root()->Key(), Key(0));
    std::string expected;
    for (int i = 0; i < 100; ++i) expected += std::string(Key(i).Text()) + ";";
    EXPECT_EQ(Keys(tree), expected);
}

TEST(KOVSimBtree, ALeafWeighsAsMuchAsNoChildSoThreeAscendingKeysDoNotRotate) {
    EXPECT_EQ(Shape(Filled(1, 4).Root()), "(. 1:2 (. 2:1 (. 3:0 .)))");
}

TEST(KOVSimBtree, TheFourthAscendingKeyRotatesTheRoot) {
    EXPECT_EQ(Shape(Filled(1, 5).Root()), "((. 1:0 .) 2:2 (. 3:1 (. 4:0 .)))");
}

TEST(KOVSimBtree, RemovingTheOnlyKeyLeavesAnEmptyTree) {
    Tree tree = Filled(1, 2);
    EXPECT_TRUE(tree.Remove(Key(1)));
    EXPECT_EQ(tree.Root(), nullptr);
    EXPECT_EQ(tree.NumberOfKeys(), 0);
}

TEST(KOVSimBtree, RemovingAnAbsentKeyChangesNothing) {
    Tree tree = Filled(0, 20);
    std::string const before = Shape(tree.Root());
    EXPECT_FALSE(tree.Remove(Key(20)));
    EXPECT_EQ(Shape(tree.Root()), before);
    EXPECT_EQ(tree.NumberOfKeys(), 20);
    EXPECT_FALSE(Tree().Remove(Key(1)));
}

TEST(KOVSimBtree, RemovingALeafBesideNothingKeepsTheParentsDepth) {
    Tree tree = Filled(1, 3);
    EXPECT_TRUE(tree.Remove(Key(2)));
    EXPECT_EQ(Shape(tree.Root()), "(. 1:1 .)");
}

TEST(KOVSimBtree, AKeyMayBeRemovedThroughAReferenceToItself) {
    Tree tree = Filled(0, 10);
    EXPECT_TRUE(tree.Remove(tree.Root()->Key()));
    EXPECT_EQ(tree.NumberOfKeys(), 9);
}

TEST(KOVSimBtree, AnEmptyTreeFindsNothing) {
    Tree const tree;
    EXPECT_EQ(tree.Find("a"), nullptr);
    EXPECT_FALSE(tree.IsMember("a"));
    EXPECT_EQ(tree.Root(), nullptr);
}

TEST(KOVSimBtree, GetOfAMissingKeyThrows) {
    Tree tree = Filled(0, 3);
    EXPECT_THROW(tree.Get("x"), KOVSimException);
}

TEST(KOVSimBtree, FindGivesAWritableValue) {
    Tree tree = Filled(0, 3);
    *tree.Find(Key(1)) = 7;
    tree.Get(Key(2)) = 8;
    EXPECT_EQ(tree.Get(Key(1)), 7);
    EXPECT_EQ(*tree.Find(Key(2)), 8);
}

TEST(KOVSimBtree, ACopyHasTheSameShapeAndItsOwnNodes) {
    Tree tree = Filled(0, 50);
    tree.Remove(Key(13));
    Tree const copy(tree);
    EXPECT_EQ(Shape(copy.Root()), Shape(tree.Root()));
    EXPECT_NE(copy.Root(), tree.Root());
    tree.Clear();
    EXPECT_EQ(copy.NumberOfKeys(), 49);
    EXPECT_EQ(*copy.Find(Key(49)), 49);
}

TEST(KOVSimBtree, AssignmentReplacesTheContentAndSurvivesItself) {
    Tree tree = Filled(0, 5);
    Tree other = Filled(5, 7);
    other = tree;
    EXPECT_EQ(Shape(other.Root()), Shape(tree.Root()));
    Tree& alias = other;
    other = alias;
    EXPECT_EQ(other.NumberOfKeys(), 5);
}

TEST(KOVSimBtree, SwapExchangesContentAndCount) {
    Tree a = Filled(0, 3);
    Tree b;
    a.Swap(b);
    EXPECT_EQ(a.NumberOfKeys(), 0);
    EXPECT_EQ(a.Root(), nullptr);
    EXPECT_EQ(b.NumberOfKeys(), 3);
}

TEST(KOVSimBtree, ClearLeavesAnEmptyTreeThatCanBeFilledAgain) {
    Tree tree = Filled(0, 30);
    tree.Clear();
    EXPECT_EQ(tree.NumberOfKeys(), 0);
    EXPECT_EQ(tree.Root(), nullptr);
    EXPECT_TRUE(tree.Insert("a", 1, false));
}

TEST(KOVSimBtree, IdentitiesAreKeysToo) {
    KOVSimDynamicID id;
    id.category = 1;
    KOVSimBtree<KOVSimDynamicID, int> tree;
    for (int i = 9; i >= 0; --i) {
        id.data.minor = i;
        EXPECT_TRUE(tree.Insert(id, i, false));
    }
    EXPECT_FALSE(tree.Insert(id, 7, false));
    KOVSimBtreeIterator<KOVSimDynamicID, int> at(tree);
    int expected = 0;
    for (at.First(); !at.IsDone(); at.Next()) EXPECT_EQ(at.CurrentValue(), expected++);
    EXPECT_EQ(expected, 10);
}

TEST(KOVSimBtreeIterator, IsFinishedOnAnEmptyTreeRightAfterFirstAndLast) {
    Tree const tree;
    Iterator at(tree);
    EXPECT_TRUE(at.IsDone());
    at.First();
    EXPECT_TRUE(at.IsDone());
    at.Last();
    EXPECT_TRUE(at.IsDone());
    at.Next();
    at.Previous();
    EXPECT_TRUE(at.IsDone());
    EXPECT_THROW(at.CurrentKey(), KOVSimException);
}

TEST(KOVSimBtreeIterator, ANewOneStandsNowhere) {
    Tree const tree = Filled(0, 3);
    Iterator const at(tree);
    EXPECT_TRUE(at.IsDone());
}

TEST(KOVSimBtreeIterator, GoesDownwardFromLast) {
    Tree const tree = Filled(0, 40);
    Iterator at(tree);
    int expected = 39;
    for (at.Last(); !at.IsDone(); at.Previous(), --expected) EXPECT_EQ(at.CurrentValue(), expected);
    EXPECT_EQ(expected, -1);
}

TEST(KOVSimBtreeIterator, TurnsAroundInTheMiddle) {
    Tree const tree = Filled(0, 40);
    Iterator at(tree);
    at.First();
    for (int i = 0; i < 20; ++i) at.Next();
    EXPECT_EQ(at.CurrentValue(), 20);
    at.Previous();
    EXPECT_EQ(at.CurrentValue(), 19);
    at.Next();
    EXPECT_EQ(at.CurrentValue(), 20);
}

TEST(KOVSimBtreeIterator, TheStackCanBeDrivenByHand) {
    Tree const tree = Filled(0, 3);
    Iterator at(tree);
    EXPECT_EQ(at.Pop(), nullptr);
    at.Push(tree.Root());
    EXPECT_EQ(at.CurrentKey(), tree.Root()->Key());
    EXPECT_EQ(at.Pop(), tree.Root());
    EXPECT_TRUE(at.IsDone());
    at.Push(tree.Root());
    at.ClearStack();
    EXPECT_TRUE(at.IsDone());
}

TEST(KOVSimBtree, KeepsContentAndShapeUnderRandomChanges) {
    unsigned const seed = std::random_device()();
    std::printf("seed %u\n", seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 40; ++round) {
        Tree tree;
        BtreeModel shape(BtreeFamily::KeepsDepthAtEmptiedLink);
        std::map<std::string, int> model;
        int const space = 1 << (1 + static_cast<int>(random() % 9));
        for (int step = 0; step < 400; ++step) {
            int const key = static_cast<int>(random()) & (space - 1);
            KOVString const text = Key(key);
            if (random() % 5 < 3) {
                bool const overwrite = random() % 2 == 0;
                bool const isNew = model.emplace(text.Text(), step).second;
                if (!isNew && overwrite) model[text.Text()] = step;
                ASSERT_EQ(tree.Insert(text, step, overwrite), isNew);
                ASSERT_EQ(shape.Insert(key), isNew);
            } else {
                bool const wasThere = model.erase(text.Text()) == 1;
                ASSERT_EQ(tree.Remove(text), wasThere);
                ASSERT_EQ(shape.Remove(key), wasThere);
            }
            ASSERT_EQ(Shape(tree.Root()), shape.Shape());
            ASSERT_EQ(tree.NumberOfKeys(), static_cast<int>(model.size()));
        }
        Iterator at(tree);
        at.First();
        for (auto const& [key, value] : model) {
            ASSERT_FALSE(at.IsDone());
            ASSERT_EQ(at.CurrentKey(), key.c_str());
            ASSERT_EQ(at.CurrentValue(), value);
            at.Next();
        }
        ASSERT_TRUE(at.IsDone());
    }
}
