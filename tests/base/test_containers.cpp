// KOVSimArray, KOVBasVector, KOVBasMap and KOVBasPair.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <random>
#include <stdexcept>
#include <utility>

#include "KOVBasMap.h"
#include "KOVBasPair.h"
#include "KOVBasVector.h"
#include "KOVSimArray.h"
#include "KOVSimPosition.h"
#include "KOVString.h"

namespace {

using Ints = KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>;
using Texts = KOVSimArray<KOVString, KOVSimArrayClassPolicy<KOVString>>;

/// Counts the live objects, and throws from a copy on demand.
struct Counted {
    static inline int live = 0;
    static inline int throwAtCopy = -1;
    int value = 0;
    Counted() { ++live; }
    explicit Counted(int v) : value(v) { ++live; }
    Counted(Counted const& other) : value(other.value) {
        if (throwAtCopy >= 0 && throwAtCopy-- == 0) throw std::runtime_error("copy");
        ++live;
    }
    Counted& operator=(Counted const&) = default;
    ~Counted() { --live; }
};
using Counteds = KOVSimArray<Counted, KOVSimArrayCopyClassPolicy<Counted>>;

struct ByTens {
    int value;
};

}  // namespace

template <>
struct KOVBasStandardComparitor<ByTens> {
    static int Compare(ByTens const& a, ByTens const& b) { return a.value / 10 - b.value / 10; }
};

TEST(KOVSimArray, NewElementsOfPlainNumbersAreZero) {
    Ints array(3, 0);
    EXPECT_EQ(array.Size(), 3);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(array.ConstGet(i), 0);
}

TEST(KOVSimArray, ANewOneIsEmpty) {
    EXPECT_EQ(Ints().Size(), 0);
    EXPECT_EQ(Ints(0, 0).Size(), 0);
}

TEST(KOVSimArray, SetSizeKeepsTheElementsThatStay) {
    Texts array(2, 0);
    array.Get(0) = "a";
    array.Get(1) = "b";
    array.SetSize(5);
    EXPECT_STREQ(array.ConstGet(1).Text(), "b");
    EXPECT_TRUE(array.ConstGet(4).IsEmpty());
    array.SetSize(1);
    array.SetSize(2);
    EXPECT_STREQ(array.ConstGet(0).Text(), "a");
    EXPECT_TRUE(array.ConstGet(1).IsEmpty());
}

TEST(KOVSimArray, ElementsStandSideBySide) {
    Ints array(4, 0);
    for (int i = 0; i < 4; ++i) array.Get(i) = i * i;
    int const* const data = array.Ptr();
    EXPECT_EQ(data[3], 9);
    EXPECT_EQ(array.end() - array.begin(), 4);
}

TEST(KOVSimArray, CopiesAreDeep) {
    Ints a(2, 0);
    a.Get(0) = 1;
    Ints b(a);
    b.Get(0) = 2;
    EXPECT_EQ(a.ConstGet(0), 1);
    a = b;
    EXPECT_EQ(a.ConstGet(0), 2);
    Ints& alias = a;
    a = alias;
    EXPECT_EQ(a.Size(), 2);
}

TEST(KOVSimArray, AnIndexOutsideThrows) {
    Ints array(2, 0);
    EXPECT_THROW(array.Get(2), KOVSimException);
    EXPECT_THROW(array.Get(-1), KOVSimException);
    EXPECT_THROW(std::as_const(array).ConstGet(2), KOVSimException);
}

TEST(KOVSimArray, ANegativeSizeThrowsAndChangesNothing) {
    Ints array(2, 0);
    EXPECT_THROW(array.SetSize(-1), KOVSimException);
    EXPECT_EQ(array.Size(), 2);
    EXPECT_THROW(Ints(-1, 0), KOVSimException);
}

TEST(KOVSimArray, NoElementIsLostOrLeftWhenACopyThrows) {
    {
        Counteds array(4, 0);
        for (int at = 0; at < 4; ++at) {
            Counted::throwAtCopy = at;
            EXPECT_THROW(Counteds copy(array), std::runtime_error);
            Counted::throwAtCopy = at;
            EXPECT_THROW(array.SetSize(40), std::runtime_error);
            EXPECT_EQ(array.Size(), 4);
            EXPECT_EQ(Counted::live, 4);
        }
        Counted::throwAtCopy = -1;
    }
    EXPECT_EQ(Counted::live, 0);
}

TEST(KOVBasVector, PushesResizesAndKeepsValues) {
    KOVBasVector<int> vector;
    EXPECT_EQ(vector.Size(), 0);
    for (int i = 0; i < 1000; ++i) vector.PushBack(i);
    EXPECT_EQ(vector.Size(), 1000);
    EXPECT_EQ(vector[999], 999);
    vector.Resize(2000);
    EXPECT_EQ(vector[999], 999);
    EXPECT_EQ(vector[1999], 0);
    vector.Resize(1);
    EXPECT_EQ(vector.end() - vector.begin(), 1);
    EXPECT_EQ(vector.Data(), &vector[0]);
}

TEST(KOVBasVector, AnElementOfItsOwnMayBePushed) {
    KOVBasVector<KOVString> vector;
    vector.PushBack("text");
    for (int i = 0; i < 100; ++i) vector.PushBack(vector[0]);
    EXPECT_STREQ(vector[100].Text(), "text");
}

TEST(KOVBasVector, SwapExchangesTheStorage) {
    KOVBasVector<int> a(3);
    KOVBasVector<int> b;
    int const* const data = a.Data();
    a.swap(b);
    EXPECT_EQ(b.Data(), data);
    EXPECT_EQ(a.Size(), 0);
    swap(a, b);
    EXPECT_EQ(a.Size(), 3);
}

TEST(KOVBasVector, CopiesAreDeep) {
    KOVBasVector<KOVString> a;
    a.PushBack("a");
    KOVBasVector<KOVString> b(a);
    b[0] = "b";
    EXPECT_STREQ(a[0].Text(), "a");
    a = b;
    EXPECT_STREQ(a[0].Text(), "b");
}

TEST(KOVBasVector, ReserveMovesOnceOnly) {
    KOVBasVector<int> vector;
    vector.Reserve(100);
    EXPECT_EQ(vector.Size(), 0);
    int const* const data = vector.Data();
    for (int i = 0; i < 100; ++i) vector.PushBack(i);
    EXPECT_EQ(vector.Data(), data);
    vector.Reserve(5);
    EXPECT_EQ(vector.Size(), 100);
}

TEST(KOVBasVector, ANegativeSizeThrows) {
    KOVBasVector<int> vector;
    EXPECT_THROW(vector.Resize(-1), KOVSimException);
}

TEST(KOVBasVector, NoElementIsLostOrLeftWhenACopyThrows) {
    {
        KOVBasVector<Counted> vector;
        for (int i = 0; i < 4; ++i) vector.PushBack(Counted(i));
        for (int at = 0; at < 4; ++at) {
            Counted::throwAtCopy = at;
            EXPECT_THROW(KOVBasVector<Counted> copy(vector), std::runtime_error);
            Counted::throwAtCopy = at;
            EXPECT_THROW(vector.Resize(40), std::runtime_error);
            EXPECT_EQ(vector.Size(), 4);
            EXPECT_EQ(Counted::live, 4);
        }
        Counted::throwAtCopy = -1;
    }
    EXPECT_EQ(Counted::live, 0);
}

TEST(KOVBasVector, TheCopyFunctionsBuildInRawMemory) {
    int const from[3] = {1, 2, 3};
    int to[3] = {};
    KOVBasPODCopy(to, from, 3);
    EXPECT_EQ(to[2], 3);
    alignas(KOVString) unsigned char raw[sizeof(KOVString)];
    KOVString const text("text");
    KOVString* const copy = reinterpret_cast<KOVString*>(raw);
    KOVBasStandardCopy(copy, &text, 1);
    EXPECT_STREQ(copy->Text(), "text");
    KOVBasStandardDestroy(copy, 1);
}

TEST(KOVBasMap, InsertUniqueKeepsTheFirstValue) {
    KOVBasMap<int, int> map;
    EXPECT_TRUE(map.InsertUnique(1, 10));
    EXPECT_FALSE(map.InsertUnique(1, 11));
    EXPECT_EQ(*map.Find(1), 10);
    EXPECT_EQ(map.Size(), 1);
}

TEST(KOVBasMap, FindGivesNullOrAWritableValue) {
    KOVBasMap<int, KOVBasMap<int, double>> map;
    EXPECT_EQ(map.Find(1), nullptr);
    map.InsertUnique(1, KOVBasMap<int, double>());
    map.Find(1)->InsertUnique(2, 0.5);
    EXPECT_EQ(*std::as_const(map).Find(1)->Find(2), 0.5);
}

TEST(KOVBasMap, IterationGoesByAscendingKey) {
    KOVBasMap<int, int> map;
    for (int key : {5, -3, 9, 0}) map.InsertUnique(key, key * 2);
    int last = -100;
    for (KOVBasPair<int, int> const& pair : std::as_const(map)) {
        EXPECT_GT(pair.first, last);
        EXPECT_EQ(pair.second, pair.first * 2);
        last = pair.first;
    }
    for (auto& pair : map) pair.second = 1;
    EXPECT_EQ(*map.Find(9), 1);
}

TEST(KOVBasMap, TheOrderIsThatOfTheComparitor) {
    KOVBasMap<ByTens, int> map;
    EXPECT_TRUE(map.InsertUnique(ByTens{12}, 1));
    EXPECT_FALSE(map.InsertUnique(ByTens{19}, 2));
    EXPECT_EQ(*map.Find(ByTens{10}), 1);
    EXPECT_EQ(map.Find(ByTens{20}), nullptr);
}

TEST(KOVBasMap, PositionsAreOrderedByTheirIdentities) {
    KOVSimDynamicID low;
    low.category = 1;
    low.data.minor = 3;
    KOVSimDynamicID high(low);
    high.data.minor = 4;
    ASSERT_LT(low.Compare(high), 0);
    KOVBasMap<KOVSimPosition, int> map;
    EXPECT_TRUE(map.InsertUnique(KOVSimPosition(high), 2));
    EXPECT_TRUE(map.InsertUnique(KOVSimPosition(low), 1));
    EXPECT_FALSE(map.InsertUnique(KOVSimPosition(high), 3));
    EXPECT_EQ(map.begin()->second, 1);
    EXPECT_EQ(*map.Find(KOVSimPosition(high)), 2);
}

TEST(KOVBasMap, ClearAndCopy) {
    KOVBasMap<KOVString, int> map;
    map.InsertUnique("a", 1);
    KOVBasMap<KOVString, int> const copy(map);
    map.Clear();
    EXPECT_EQ(map.Size(), 0);
    EXPECT_TRUE(map.begin() == map.end());
    EXPECT_EQ(*copy.Find("a"), 1);
}

TEST(KOVBasMap, HoldsWhatAMapHoldsUnderRandomInsertions) {
    unsigned const seed = std::random_device()();
    std::printf("seed %u\n", seed);
    std::mt19937 random(seed);
    KOVBasMap<int, int> map;
    std::map<int, int> model;
    for (int step = 0; step < 5000; ++step) {
        int const key = static_cast<int>(random() % 2000);
        ASSERT_EQ(map.InsertUnique(key, step), model.emplace(key, step).second);
    }
    auto at = model.begin();
    for (auto const& pair : map) {
        ASSERT_EQ(pair.first, at->first);
        ASSERT_EQ(pair.second, at->second);
        ++at;
    }
    EXPECT_TRUE(at == model.end());
}

TEST(KOVBasPair, ComparesBothValues) {
    EXPECT_TRUE((KOVBasPair<int, int>(1, 2)) == (KOVBasPair<int, int>(1, 2)));
    EXPECT_TRUE((KOVBasPair<int, int>(1, 2)) != (KOVBasPair<int, int>(1, 3)));
    EXPECT_EQ((KOVBasPair<int, double>().first), 0);
}
