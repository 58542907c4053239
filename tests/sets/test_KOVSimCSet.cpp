#include "KOVSimCSet.h"

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "KOVSimCMemberMap.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimCollection.h"
#include "KOVSimSchema.h"
#include "support/DocumentFixture.h"

namespace {

using kov::test::DocumentTest;
using kov::test::RefusalOf;
using Ints = std::vector<int>;

Ints Ascending(KOVSimCSet const& set) {
    Ints members(static_cast<std::size_t>(set.Size()));
    set.Members(members.data());
    return members;
}

Ints Stored(KOVSimCSet const& set) {
    Ints members(static_cast<std::size_t>(set.Size()));
    set.OrderedMembers(members.data());
    return members;
}

class CSets : public DocumentTest {
  protected:
    static constexpr int Space = 1000;

    void SetUp() override {
        DocumentTest::SetUp();
        Write([&] {
            position_ = Document().Focus().CreateTypedCollection(Space, schema::RegionCollection());
        });
    }
    KOVSimCollection Collection() const {
        return KOVSimCollection(Again(position_).GetCollection());
    }
    KOVSimCSetID Create(Ints const& members) const {
        return Collection().CreateCSet(members.data(), static_cast<int>(members.size()), false);
    }
    KOVSimCSetID CreateTemp(Ints const& members) const {
        return Collection().CreateTempCSet(members.data(), static_cast<int>(members.size()), false);
    }
    KOVSimCSet Volatile(Ints const& members) const {
        return Collection().CreateVolatileCSet(members.data(), static_cast<int>(members.size()),
                                               false);
    }
    KOVSimCSet Ordered(Ints const& members) const {
        return Collection().CreateVolatileOrderedCSet(members.data(),
                                                      static_cast<int>(members.size()));
    }
    KOVSimCSetID Again(KOVSimCSetID const& id) const {
        return KOVSimPosition(Again(KOVSimPosition(id))).GetCSet();
    }
    using DocumentTest::Again;

  private:
    KOVSimPosition position_;
};
KOV_DOCUMENT_TESTS(CSets);

TEST(CSet, ADefaultBuiltOneIsEmptyAndTiedToNoCollection) {
    KOVSimCSet const set;
    EXPECT_EQ(0, set.Size());
    EXPECT_TRUE(set.IsEmpty());
    EXPECT_TRUE(set.CollectionID().IsNull());
    EXPECT_TRUE(set.ID().IsNull());
    EXPECT_TRUE(set.Pos().IsNull());
    EXPECT_TRUE(set.AscendingID().IsNull());
    EXPECT_TRUE(set.Union(set).CollectionID().IsNull());
    EXPECT_TRUE(KOVSimCSet(KOVSimCSetID()).IsEmpty());
    EXPECT_TRUE(KOVSimCSet(KOVSimPosition()).IsEmpty());
    EXPECT_TRUE(KOVSimCSet(KOVSimCollectionID()).IsEmpty());
    EXPECT_NE("", RefusalOf([&] { KOVSimCSet(set).RegisterWithTempCollection(); }));
}

TEST_P(CSets, UnsortedMembersWithDuplicatesBecomeAnAscendingSet) {
    KOVSimCSetID id;
    Write([&] { id = Create({9, 3, 3, 500, 9, 0}); });
    Reopen();
    KOVSimCSet const set(Again(id));
    EXPECT_EQ((Ints{0, 3, 9, 500}), Ascending(set));
    EXPECT_EQ((Ints{0, 3, 9, 500}), Stored(set));
    EXPECT_TRUE(set.IsAscending());
    EXPECT_EQ(9, set[2]);
    EXPECT_NE("", RefusalOf([&] { set[4]; }));
    EXPECT_NE("", RefusalOf([&] { set[-1]; }));
    EXPECT_EQ(Collection().ID(), set.CollectionID());
    EXPECT_EQ(Again(id), set.ID());
    EXPECT_EQ(Again(id), set.AscendingID());
}

TEST_P(CSets, ASetCarriesItsCollectionAsParentAndType) {
    Write([&] {
        KOVSimCSetID const id = Create({1});
        EXPECT_EQ(KOVSimCategoryCSet, id.ID().category);
        EXPECT_EQ(Collection().ID().Minor(), id.Parent());
        EXPECT_EQ(Collection().ID().TypeID(), id.TypeID());
        EXPECT_GT(id.Minor(), 0);
        EXPECT_EQ(Collection().ID(),
                  KOVSimCollectionID(id.ContextID(), id.Parent(), id.TypeID(), 0));
    });
}

TEST_P(CSets, StridedSetsOfAnySizeAreAFewBytes) {
    Write([&] {
        Collection().ExtendSpace(2000000000);
        KOVSimCSet const all(Collection().CreateCSetStrided(0, 2000000000, 1, 1));
        EXPECT_EQ(2000000000, all.Size());
        EXPECT_EQ(1999999999, all[1999999999]);
        KOVSimCSet const thirds = Collection().CreateVolatileCSetStrided(1, 3, 3, 1);
        EXPECT_EQ((Ints{1, 4, 7}), Ascending(thirds));
        EXPECT_EQ(3, all.Intersection(thirds).Size());
        EXPECT_EQ(1999999997, (all - thirds).Size());
    });
}

TEST_P(CSets, TheEmptySetOfACollectionAlwaysExists) {
    KOVSimCSetID const id = Collection().EmptyCSetID();
    EXPECT_FALSE(id.IsNull());
    EXPECT_EQ(0, id.Minor());
    EXPECT_EQ(id, Collection().EmptyCSetID());
    KOVSimCSet const empty(id);
    EXPECT_EQ(0, empty.Size());
    EXPECT_EQ(Collection().ID(), empty.CollectionID());
    EXPECT_EQ(id, Collection().SeekCSet(Volatile({}), false));
    EXPECT_EQ(id, KOVSimCSet(Collection().ID()).ID());
}

TEST_P(CSets, TheEmptySetOfACollectionStartsAUnion) {
    KOVSimCSet all(Collection().ID());
    EXPECT_EQ(0, all.Size());
    EXPECT_EQ(Collection().ID(), all.CollectionID());
    all = all.Union(Volatile({5, 2}));
    EXPECT_EQ((Ints{2, 5}), Ascending(all));
    EXPECT_EQ(Collection().ID(), all.CollectionID());
    EXPECT_TRUE(all.ID().IsNull());
}

TEST_P(CSets, ASetTiedToNoCollectionCountsAsEmptyInAlgebra) {
    KOVSimCSet const set = Volatile({1, 2});
    EXPECT_TRUE(KOVSimCSet().Union(set).SameMembers(set));
    EXPECT_EQ(Collection().ID(), KOVSimCSet().Union(set).CollectionID());
    EXPECT_TRUE(set.Union(KOVSimCSet()).SameMembers(set));
    EXPECT_EQ(0, set.Intersection(KOVSimCSet()).Size());
    EXPECT_TRUE((set - KOVSimCSet()).SameMembers(set));
}

TEST_P(CSets, AlgebraAcrossTwoCollectionsIsRefused) {
    Write([&] {
        KOVSimCollection const other(
            Document().Focus().CreateTypedCollection(5, schema::MaterialCollection()));
        KOVSimCSet const a = Volatile({1});
        KOVSimCSet const b = other.CreateVolatileCSetStrided(0, 2, 1, 1);
        std::string const text = RefusalOf([&] { a.Union(b); });
        EXPECT_NE(std::string::npos, text.find("cannot unite two sets")) << text;
        EXPECT_NE(std::string::npos, text.find("MaterialCollection")) << text;
        EXPECT_NE("", RefusalOf([&] { a.Intersection(b); }));
        EXPECT_NE("", RefusalOf([&] { a - b; }));
        EXPECT_TRUE(Collection().SeekCSet(b, false).IsNull());
    });
}

TEST_P(CSets, AnIntersectionOfDisjointSetsCanBeAskedForItsMembers) {
    KOVSimCSet const none = Volatile({1, 3}).Intersection(Volatile({2, 4}));
    EXPECT_EQ(0, none.Size());
    EXPECT_TRUE(Ascending(none).empty());
    EXPECT_TRUE(Stored(none).empty());
    EXPECT_EQ(-1, static_cast<int>(none.Bounds()));
    EXPECT_EQ(Collection().ID(), none.CollectionID());
    KOVSimCSetIterator walk(none);
    walk.First();
    EXPECT_TRUE(walk.IsDone());
}

TEST_P(CSets, AnOrderedSetKeepsTheOrderOfItsArray) {
    Ints const array = {7, 2, 900, 5};
    KOVSimCSet const set(Collection().CreateTempOrderedCSet(array.data(), 4));
    EXPECT_FALSE(set.IsAscending());
    EXPECT_EQ(array, Stored(set));
    EXPECT_EQ((Ints{2, 5, 7, 900}), Ascending(set));
    EXPECT_EQ(900, set[2]);
    EXPECT_EQ(900LL << 32 | 2, set.Bounds());
    KOVSimCSetID const ascending = set.AscendingID();
    EXPECT_NE(set.ID(), ascending);
    EXPECT_TRUE(KOVSimCSet(ascending).IsAscending());
    EXPECT_TRUE(KOVSimCSet(ascending).SameMembers(set));
    EXPECT_EQ(ascending, set.AscendingID());
    EXPECT_TRUE(set.Union(set).IsAscending());
}

TEST_P(CSets, AnOrderedSetOfAnAscendingArrayIsAscending) {
    int const one = 5;
    EXPECT_TRUE(KOVSimCSet(Collection().CreateTempOrderedCSet(&one, 1)).IsAscending());
    EXPECT_TRUE(Ordered({1, 5, 6}).IsAscending());
    EXPECT_FALSE(Ordered({1, 6, 5}).IsAscending());
}

TEST_P(CSets, RegisteringKeepsTheOrder) {
    KOVSimCSet set = Ordered({7, 2, 9});
    KOVSimCSetID id;
    Write([&] {
        id = set.RegisterWithCollection();
        EXPECT_EQ(id, set.ID());
        EXPECT_EQ(id, set.RegisterWithCollection());
        EXPECT_FALSE(set.Pos().IsNull());
    });
    Reopen();
    EXPECT_EQ((Ints{7, 2, 9}), Stored(KOVSimCSet(Again(id))));
    EXPECT_EQ((Ints{7, 2, 9}), Stored(Again(KOVSimPosition(id)).CSet()));
}

TEST_P(CSets, TemporarySetsNeedNoTransactionAndOutliveADroppedOne) {
    KOVSimCSetID const id = CreateTemp({4, 1});
    EXPECT_EQ(-2, id.Minor());
    EXPECT_FALSE(id.IsNull());
    WriteAndDrop([&] { Create({5}); });
    EXPECT_EQ((Ints{1, 4}), Ascending(KOVSimCSet(id)));
    KOVSimCSet set = Volatile({3});
    EXPECT_EQ(-3, set.RegisterWithTempCollection().Minor());
    EXPECT_EQ(set.ID(), set.Pos().GetCSet());
    if (!OnDisk()) return;
    Reopen(KOVObjDocument::ReadOnly);
    EXPECT_NE("", RefusalOf([&] { KOVSimCSet{Again(id)}; }));
    EXPECT_EQ((Ints{1, 4}), Ascending(KOVSimCSet(CreateTemp({1, 4}))));
}

TEST_P(CSets, ATemporarySetMayBecomePersistent) {
    KOVSimCSet set(CreateTemp({4, 1}));
    KOVSimCSetID id;
    Write([&] { id = set.RegisterWithCollection(); });
    EXPECT_GT(id.Minor(), 0);
    Reopen();
    EXPECT_EQ((Ints{1, 4}), Ascending(KOVSimCSet(Again(id))));
}

TEST_P(CSets, ALinkToATemporarySetIsRefused) {
    KOVSimCSet const set(CreateTemp({4, 1}));
    Write([&] {
        std::string const text =
            RefusalOf([&] { Document().GetModel().SetPosition(schema::Model_mesh(), set.Pos()); });
        EXPECT_NE(std::string::npos, text.find("is a temporary set")) << text;
        EXPECT_NE("", RefusalOf([&] { set.Pos().SetName("no"); }));
    });
    EXPECT_TRUE(set.Pos().Name(-1).IsEmpty());
}

TEST_P(CSets, MembersOutsideTheCollectionAreRefused) {
    Write([&] {
        std::string const text = RefusalOf([&] { Create({1, Space}); });
        EXPECT_NE(std::string::npos, text.find("member 1000 is outside collection")) << text;
        std::string const number = std::to_string(Collection().ID().Minor());
        EXPECT_EQ("cannot create a set of collection " + number +
                      " (RegionCollection): index set: member -1 is below 0",
                  RefusalOf([&] { Create({-1}); }));
        EXPECT_EQ("cannot make a volatile set of collection " + number +
                      " (RegionCollection): the members are null",
                  RefusalOf([&] { Collection().CreateVolatileCSet(nullptr, 3, false); }));
        EXPECT_NE("", RefusalOf([&] { CreateTemp({Space}); }));
        EXPECT_NE("", RefusalOf([&] { Volatile({Space}); }));
        EXPECT_NE("", RefusalOf([&] { Ordered({Space, 1}); }));
        EXPECT_NE("", RefusalOf([&] { Collection().CreateCSetStrided(999, 2, 1, 1); }));
        EXPECT_NE("", RefusalOf([&] { Collection().CreateCSetStrided(0, -1, 1, 1); }));
        EXPECT_NE("", RefusalOf([&] { Collection().CreateCSet(nullptr, 1, false); }));
        EXPECT_NE("", RefusalOf([&] { Collection().CreateCSet(nullptr, -1, false); }));
        EXPECT_EQ(0, KOVSimCSet(Collection().CreateCSet(nullptr, 0, false)).Size());
    });
}

TEST_P(CSets, ASetBeyondASpaceThatWasTakenBackIsRefused) {
    KOVSimCSetID id;
    KOVSimCSet set;
    WriteAndDrop([&] {
        Collection().ExtendSpace(Space + 5);
        id = CreateTemp({Space + 1});
        set = Volatile({Space + 2});
        EXPECT_EQ(Space + 1, KOVSimCSet(id)[0]);
    });
    EXPECT_EQ(Space, Collection().Space());
    EXPECT_NE("", RefusalOf([&] { KOVSimCSet{id}; }));
    EXPECT_NE("", RefusalOf([&] { set.RegisterWithTempCollection(); }));
}

TEST_P(CSets, PersistentSetsNeedATransaction) {
    std::string const text = RefusalOf([&] { Create({1}); });
    EXPECT_NE(std::string::npos, text.find("no transaction is open")) << text;
    EXPECT_NE("", RefusalOf([&] { Volatile({1}).RegisterWithCollection(); }));
}

TEST_P(CSets, ASetOfADroppedTransactionIsRefused) {
    KOVSimCSetID id;
    WriteAndDrop([&] { id = Create({1, 2}); });
    EXPECT_NE("", RefusalOf([&] { KOVSimCSet{id}; }));
    EXPECT_TRUE(Collection().SeekCSet(Volatile({1, 2}), false).IsNull());
}

TEST_P(CSets, SetsThatDoNotExistAreRefused) {
    KOVSimDynamicID id = Collection().EmptyCSetID();
    id.data.minor = -50;
    EXPECT_NE("", RefusalOf([&] { KOVSimCSet{KOVSimCSetID(id)}; }));
    id.data.minor = Document().Focus().ID().data.minor;
    EXPECT_NE("", RefusalOf([&] { KOVSimCSet{KOVSimCSetID(id)}; }));
    Write([&] { id = Create({1}); });
    id.data.parent = Document().GetPointCollection().ID().data.minor;
    EXPECT_NE("", RefusalOf([&] { KOVSimCSet{KOVSimCSetID(id)}; }));
}

TEST_P(CSets, SeekFindsThePersistentTwinBeforeATemporaryOne) {
    KOVSimCSetID const temporary = CreateTemp({1, 2, 3});
    EXPECT_EQ(temporary, Collection().SeekCSet(Volatile({3, 2, 1}), false));
    KOVSimCSetID first;
    Write([&] {
        first = Create({1, 2, 3});
        Create({1, 2, 3});
    });
    EXPECT_EQ(first, Collection().SeekCSet(Volatile({1, 2, 3}), false));
    Reopen();
    EXPECT_EQ(Again(first), Collection().SeekCSet(Volatile({1, 2, 3}), false));
    EXPECT_EQ(Again(first), Collection().SeekCSet(Ordered({3, 1, 2}), false));
    EXPECT_TRUE(Collection().SeekCSet(Volatile({1, 2}), false).IsNull());
    EXPECT_TRUE(Collection().SeekCSet(Volatile({1, 2, 4}), false).IsNull());
}

TEST_P(CSets, SeekFindsNoOrderedSet) {
    KOVSimCSet set = Ordered({3, 1});
    Write([&] { set.RegisterWithCollection(); });
    EXPECT_TRUE(Collection().SeekCSet(set, false).IsNull());
    KOVSimCSetID const ascending = CreateTemp({1, 3});
    EXPECT_EQ(ascending, Collection().SeekCSet(set, false));
    EXPECT_EQ(ascending, set.AscendingID());
}

TEST_P(CSets, TwinsAreSoughtInOneCollectionOnly) {
    Write([&] {
        KOVSimCollection other(
            Document().Focus().CreateTypedCollection(Space, schema::RegionCollection()));
        other.CreateCSetStrided(3, 4, 1, 1);
    });
    EXPECT_TRUE(Collection().SeekCSet(Volatile({3, 4, 5, 6}), false).IsNull());
}

TEST_P(CSets, TheSpaceOnlyGrows) {
    Write([&] {
        Collection().ExtendSpace(Space + 10);
        Collection().ExtendSpace(Space + 10);
        std::string const text = RefusalOf([&] { Collection().ExtendSpace(Space); });
        EXPECT_NE(std::string::npos, text.find("1000 members are fewer than the 1010")) << text;
    });
    EXPECT_NE("", RefusalOf([&] { Collection().ExtendSpace(Space + 20); }));
    Reopen();
    EXPECT_EQ(Space + 10, Collection().Space());
    WriteAndDrop([&] { Collection().ExtendSpace(Space + 20); });
    EXPECT_EQ(Space + 10, Collection().Space());
}

TEST_P(CSets, AFacadeOnNothingIsNotPresent) {
    EXPECT_FALSE(KOVSimCollection().IsPresent());
    EXPECT_FALSE(KOVSimCollection(KOVSimCollectionID()).IsPresent());
    EXPECT_NE("", RefusalOf([&] { KOVSimCollection().Space(); }));
    EXPECT_NE("", RefusalOf([&] { KOVSimCollection().CreateTempCSet(nullptr, 0, false); }));
    KOVSimCollection const here = Collection();
    EXPECT_TRUE(here.IsPresent());
    Document().Close();
    EXPECT_FALSE(here.IsPresent());
    EXPECT_NE("", RefusalOf([&] { here.Space(); }));
    EXPECT_FALSE(KOVSimCollection(here.ID()).IsPresent());
}

TEST_P(CSets, AnIteratorWalksInStoredOrder) {
    Ints array;
    for (int i = 0; i < Space; ++i) array.push_back((i * 337) % Space);
    KOVSimCSetIterator walk(Ordered(array));
    for (int round = 0; round < 2; ++round) {
        int location = 0;
        for (walk.First(); !walk.IsDone(); walk.Next(), ++location) {
            ASSERT_EQ(location, walk.CurrentLocation());
            ASSERT_EQ(array[static_cast<std::size_t>(location)], walk.CurrentValue());
        }
        ASSERT_EQ(Space, location);
    }
}

TEST_P(CSets, ABitVectorHasABitForEachMember) {
    omi_BlkBitVect bits;
    bits.SetBit(3);
    Ordered({70, 0, 999}).AsBitVector(bits);
    int count = 0;
    for (int i = 0; i < Space; ++i) count += bits.TestBit(i);
    EXPECT_EQ(3, count);
    EXPECT_TRUE(bits.TestBit(70) && bits.TestBit(0) && bits.TestBit(999));
    omi_BlkBitVect same;
    Volatile({0, 70, 999}).AsBitVector(same);
    EXPECT_EQ(0, bits.Compare(same));
}

TEST_P(CSets, AMemberMapPairsByLocation) {
    KOVSimCMemberMap const map =
        KOVSimCMemberMap::Create(Ordered({30, 10, 20}), Ordered({3, 1, 2}));
    EXPECT_EQ((Ints{10, 20}), Stored(map.Map(Volatile({1, 2}))));
    EXPECT_EQ((Ints{30, 20}), Stored(map.Map(Volatile({2, 3}))));
    EXPECT_FALSE(map.Map(Volatile({2, 3})).IsAscending());
    EXPECT_EQ((Ints{30}), Stored(map.Map(Volatile({3, 77}))));
    EXPECT_TRUE(map.Map(Volatile({77})).IsEmpty());
    EXPECT_NE("", RefusalOf([&] { KOVSimCMemberMap::Create(Volatile({1}), Volatile({1, 2})); }));
    EXPECT_TRUE(KOVSimCMemberMap().Map(Volatile({1})).IsEmpty());
}

TEST_P(CSets, AMemberMapOfRangesShiftsThem) {
    KOVSimCMemberMap const map =
        KOVSimCMemberMap::Create(Collection().CreateVolatileCSetStrided(500, 100, 1, 1),
                                 Collection().CreateVolatileCSetStrided(0, 100, 1, 1));
    EXPECT_EQ((Ints{500, 502, 503, 599}), Stored(map.Map(Volatile({0, 2, 3, 99, 100}))));
}

// ---- against std::set ----

TEST_P(CSets, RandomSetsAgreeWithStdSet) {
    unsigned const seed = std::random_device()();
    std::mt19937 random(seed);
    SCOPED_TRACE("seed " + std::to_string(seed));
    auto const pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
    auto const some = [&] {
        Ints members;
        int member = pick(50);
        for (int n = pick(30); n-- > 0;) {
            for (int run = pick(2) ? 1 : 1 + pick(40); run-- > 0 && member < Space;)
                members.push_back(member++);
            member += 1 + pick(60);
            if (member >= Space) break;
        }
        std::shuffle(members.begin(), members.end(), random);
        return members;
    };
    std::vector<std::pair<KOVSimCSetID, Ints>> stored;
    KOVSimTransaction transaction(Document().ContextID());
    for (int round = 0; round < 300; ++round) {
        Ints const a = some();
        Ints const b = some();
        std::set<int> const setA(a.begin(), a.end());
        std::set<int> const setB(b.begin(), b.end());
        KOVSimCSet const x = pick(2) ? Volatile(a) : Ordered(a);
        KOVSimCSet const y = pick(2) ? Volatile(b) : Ordered(b);
        Ints expected;
        std::set_union(setA.begin(), setA.end(), setB.begin(), setB.end(),
                       std::back_inserter(expected));
        ASSERT_EQ(expected, Stored(x.Union(y)));
        expected.clear();
        std::set_intersection(setA.begin(), setA.end(), setB.begin(), setB.end(),
                              std::back_inserter(expected));
        ASSERT_EQ(expected, Stored(x.Intersection(y)));
        expected.clear();
        std::set_difference(setA.begin(), setA.end(), setB.begin(), setB.end(),
                            std::back_inserter(expected));
        ASSERT_EQ(expected, Stored(x - y));
        ASSERT_EQ(setA == setB, x.SameMembers(y));
        for (int i = 0; i < 20; ++i) {
            int const member = pick(Space);
            ASSERT_EQ(setA.count(member) == 1, x.Contains(member));
        }
        stored.emplace_back(pick(3) ? Create(a) : CreateTemp(a), Ints(setA.begin(), setA.end()));
        auto const& [id, members] =
            stored[static_cast<std::size_t>(pick(static_cast<int>(stored.size())))];
        ASSERT_EQ(members, Ascending(KOVSimCSet(id)));
        KOVSimCSetID const twin = Collection().SeekCSet(Volatile(members), false);
        ASSERT_FALSE(twin.IsNull());
        ASSERT_EQ(members, Ascending(KOVSimCSet(twin)));
    }
    transaction.Commit();
    Reopen();
    for (auto const& [id, members] : stored) {
        if (id.Minor() < 0) continue;
        ASSERT_EQ(members, Ascending(KOVSimCSet(Again(id))));
    }
}

}  // namespace
