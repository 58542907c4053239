#include "document/sets/IndexSet.h"

#include <climits>

#include "KOVSimException.h"
#include "tests/sets/SetSamples.h"

namespace kov::sets::testing {
namespace {

IndexSetPtr Members(std::vector<int> const& m) { return IndexSet::FromMembers(m.data(), m.size()); }
IndexSetPtr Ordered(std::vector<int> const& m) { return IndexSet::FromOrdered(m.data(), m.size()); }

TEST(IndexSet, EmptySetHasNoMembersAndIsAscending) {
    IndexSetPtr const set = IndexSet::Empty();
    EXPECT_EQ(set->Size(), 0);
    EXPECT_TRUE(set->IsEmpty());
    EXPECT_TRUE(set->IsAscending());
    EXPECT_FALSE(set->Contains(0));
    EXPECT_EQ(set->LocationOf(0), -1);
    EXPECT_THROW(set->At(0), KOVSimException);
    EXPECT_TRUE(IndexSet::Cursor(set).Done());
}

TEST(IndexSet, UnsortedDuplicatesBecomeAscending) {
    IndexSetPtr const set = Members({7, 3, 7, 1, 3});
    EXPECT_EQ(Stored(*set), (std::vector<int>{1, 3, 7}));
    EXPECT_EQ(set->GetForm(), Form::List);
}

TEST(IndexSet, ContiguousMembersBecomeARange) {
    IndexSetPtr const set = Members({6, 4, 5});
    EXPECT_TRUE(set->IsRange());
    EXPECT_EQ(set->Lowest(), 4);
    EXPECT_EQ(set->Highest(), 6);
}

TEST(IndexSet, EvenlySpacedMembersBecomeAProgression) {
    IndexSetPtr const set = Members({2, 9, 16, 23});
    EXPECT_EQ(set->GetForm(), Form::Progression);
    EXPECT_EQ(set->Stride(), 7);
    EXPECT_EQ(set->LocationOf(16), 2);
    EXPECT_EQ(set->LocationOf(17), -1);
}

TEST(IndexSet, NegativeMembersAreRefused) {
    EXPECT_THROW(Members({3, -1}), KOVSimException);
    EXPECT_THROW(Members({-1, 3, 9}), KOVSimException);
    EXPECT_THROW(Members({INT_MIN, INT_MAX}), KOVSimException);
    EXPECT_THROW(Ordered({3, -1}), KOVSimException);
    EXPECT_THROW(IndexSet::Range(-1, 2), KOVSimException);
}

TEST(IndexSet, HighestMemberStandsOneBelowIntMax) {
    EXPECT_EQ(IndexSet::Range(INT_MAX - 1, 1)->Highest(), INT_MAX - 1);
    EXPECT_EQ(IndexSet::Range(0, INT_MAX)->Size(), INT_MAX);
    EXPECT_THROW(IndexSet::Range(INT_MAX, 1), KOVSimException);
    EXPECT_THROW(IndexSet::Range(1, INT_MAX), KOVSimException);
    EXPECT_THROW(Members({1, 5, INT_MAX}), KOVSimException);
    EXPECT_THROW(Ordered({INT_MAX, 1}), KOVSimException);
}

TEST(IndexSet, RunsReachTheHighestMember) {
    std::vector<int> members =
        RandomMembers(*std::make_unique<Random>(5), 9000, INT_MAX - 60000, INT_MAX - 1);
    members.push_back(INT_MAX - 1);
    members.push_back(3);
    members = Unique(members);
    IndexSetPtr const set = Members(members);
    ASSERT_EQ(set->GetForm(), Form::Bitmap);
    EXPECT_EQ(ByRuns(*set), members);
    IndexSetPtr const whole = IndexSet::Range(0, INT_MAX);
    EXPECT_EQ(Difference(whole, Difference(whole, set))->Size(), set->Size());
    EXPECT_TRUE(Union(whole, set)->IsRange());
    EXPECT_TRUE(Difference(whole, Difference(whole, set))->SameMembers(*set));
    std::string bytes;
    Encode(*set, bytes);
    IndexSetPtr const back = Decode(bytes.data(), bytes.size(), nullptr);
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(back->SameMembers(*set));
}

TEST(IndexSet, StridedOverflowIsRefused) {
    EXPECT_EQ(IndexSet::Strided(0, 2, INT_MAX - 1)->Highest(), INT_MAX - 1);
    EXPECT_THROW(IndexSet::Strided(0, 2, INT_MAX), KOVSimException);
    EXPECT_THROW(IndexSet::Strided(1, 1 << 20, 1 << 20), KOVSimException);
    EXPECT_THROW(IndexSet::Strided(0, 2, 0), KOVSimException);
    EXPECT_THROW(IndexSet::Strided(0, 2, -3), KOVSimException);
    EXPECT_THROW(IndexSet::Strided(0, -1, 1), KOVSimException);
}

TEST(IndexSet, OrderedKeepsTheOrderOfTheArray) {
    IndexSetPtr const set = Ordered({9, 2, 5});
    EXPECT_FALSE(set->IsAscending());
    EXPECT_EQ(set->GetForm(), Form::Ordered);
    EXPECT_EQ(Stored(*set), (std::vector<int>{9, 2, 5}));
    EXPECT_EQ(set->At(1), 2);
    EXPECT_EQ(set->LocationOf(5), 2);
    EXPECT_EQ(set->LocationOf(4), -1);
    EXPECT_EQ(set->Lowest(), 2);
    EXPECT_EQ(set->Highest(), 9);
    std::vector<int> ascending(3);
    set->CopyAscending(ascending.data());
    EXPECT_EQ(ascending, (std::vector<int>{2, 5, 9}));
    EXPECT_EQ(set->Ascending(), set->Ascending());
    EXPECT_TRUE(set->SameMembers(*Members({2, 5, 9})));
    EXPECT_EQ(set->Hash(), Members({2, 5, 9})->Hash());
}

TEST(IndexSet, OrderedOfAscendingMembersIsAscending) {
    EXPECT_TRUE(Ordered({8})->IsAscending());
    EXPECT_TRUE(Ordered({2, 5, 9})->IsAscending());
    EXPECT_FALSE(Ordered({2, 2, 9})->IsAscending());
}

TEST(IndexSet, OrderedKeepsDuplicatesAsGiven) {
    IndexSetPtr const set = Ordered({4, 1, 4});
    EXPECT_EQ(set->Size(), 3);
    EXPECT_EQ(set->LocationOf(4), 0);
    EXPECT_EQ(set->Ascending()->Size(), 2);
    std::vector<int> ascending(3, -1);
    set->CopyAscending(ascending.data());
    EXPECT_EQ(ascending, (std::vector<int>{1, 4, 4}));
    EXPECT_TRUE(set->SameMembers(*Members({1, 4})));
}

TEST(IndexSet, StoredRunsFollowTheStoredOrder) {
    IndexSetPtr const set = Ordered({7, 8, 9, 3, 4, 4, 5});
    std::vector<std::pair<int, int>> runs;
    set->ForEachStoredRun([&](int first, int count) { runs.emplace_back(first, count); });
    EXPECT_EQ(runs, (std::vector<std::pair<int, int>>{{7, 3}, {3, 2}, {4, 2}}));
}

TEST(IndexSet, ReadingOutsideTheLocationsIsRefused) {
    IndexSetPtr const set = Members({1, 5, 7, 20});
    int out[8];
    EXPECT_THROW(set->At(-1), KOVSimException);
    EXPECT_THROW(set->At(4), KOVSimException);
    EXPECT_THROW(set->CopyStored(2, 3, out), KOVSimException);
    EXPECT_THROW(set->CopyStored(-1, 1, out), KOVSimException);
    EXPECT_THROW(set->CopyStored(0, -1, out), KOVSimException);
    EXPECT_THROW(set->CopyStored(INT_MAX, INT_MAX, out), KOVSimException);
    EXPECT_NO_THROW(set->CopyStored(4, 0, out));
}

TEST(IndexSet, HashesAreFixedForever) {
    // Stored in documents: these numbers never change.
    EXPECT_EQ(IndexSet::Empty()->Hash(), 7292473078451756058U);
    EXPECT_EQ(IndexSet::Range(10, 1000000)->Hash(), 16960458091858673112U);
    EXPECT_EQ(Members({1, 2, 9})->Hash(), 12242242986913925174U);
    std::vector<sets::Run> runs;
    for (int i = 0; i < 3000; ++i) runs.push_back({i * 100, i * 100 + 50 + i % 2});
    EXPECT_EQ(IndexSet::FromRuns(runs.data(), runs.size())->Hash(), 9925952655965102361U);
}

class EveryKind : public ::testing::TestWithParam<int> {};

TEST_P(EveryKind, AllWaysOfReadingAgreeWithTheModel) {
    RecordProperty("seed", static_cast<int>(Seed()));
    Random random(Seed() + static_cast<unsigned>(GetParam()));
    for (int round = 0; round < 4; ++round) {
        SCOPED_TRACE("KOV_SEED=" + std::to_string(Seed()) + " round " + std::to_string(round));
        int const base = round == 3 ? INT_MAX - 300000 : Pick(random, 0, 1 << 20);
        Sample const sample = RandomSample(random, static_cast<Kind>(GetParam()), base);
        IndexSet const& set = *sample.set;
        ASSERT_NO_THROW(set.CheckInvariants());
        ASSERT_EQ(Stored(set), sample.stored);
        ExpectSet(set.Ascending(), sample.model, "ascending form");

        std::vector<int> ascending(sample.stored);
        std::sort(ascending.begin(), ascending.end());
        std::vector<int> read(sample.stored.size());
        set.CopyAscending(read.data());
        EXPECT_EQ(read, ascending);

        for (int probe = 0; probe < 2000; ++probe) {
            int const member = Pick(random, base > 20 ? base - 20 : 0, base + 160000);
            bool const held = sample.model.count(member) != 0;
            ASSERT_EQ(set.Contains(member), held) << member;
            auto const at = std::find(sample.stored.begin(), sample.stored.end(), member);
            ASSERT_EQ(set.LocationOf(member),
                      held ? static_cast<int>(at - sample.stored.begin()) : -1)
                << member;
            int const end = member + Pick(random, 0, 40);
            int inside = 0;
            for (auto it = sample.model.lower_bound(member); it != sample.model.end() && *it < end;
                 ++it) {
                ++inside;
            }
            ASSERT_EQ(set.ContainsRun(member, end), inside == end - member);
            ASSERT_EQ(set.IntersectsRun(member, end), inside > 0);
        }
        for (int probe = 0; probe < 300 && set.Size() > 0; ++probe) {
            int const first = Pick(random, 0, set.Size() - 1);
            int const count = Pick(random, 0, std::min(set.Size() - first, 5000));
            std::vector<int> part(static_cast<size_t>(count));
            set.CopyStored(first, count, part.data());
            ASSERT_TRUE(std::equal(part.begin(), part.end(), sample.stored.begin() + first));
            ASSERT_EQ(set.At(first), sample.stored[static_cast<size_t>(first)]);
        }
        size_t location = 0;
        for (IndexSet::Cursor cursor(sample.set); !cursor.Done(); cursor.Next(), ++location) {
            ASSERT_EQ(cursor.Location(), static_cast<int>(location));
            ASSERT_EQ(cursor.Value(), sample.stored[location]);
        }
        EXPECT_EQ(location, sample.stored.size());
        EXPECT_EQ(ByRuns(set), std::vector<int>(sample.model.begin(), sample.model.end()));
        std::vector<int> stored;
        set.ForEachStoredRun([&](int first, int count) {
            for (int i = 0; i < count; ++i) stored.push_back(first + i);
        });
        EXPECT_EQ(stored, sample.stored);
        size_t runs = 0;
        set.ForEachRun([&](int, int) { ++runs; });
        EXPECT_EQ(set.CountRuns(), runs);
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, EveryKind, ::testing::Range(0, kKinds));

TEST(IndexSet, AVisitStopsWhenTheSinkSaysSo) {
    Random random(Seed());
    for (int kind = static_cast<int>(Kind::Range); kind < kKinds; ++kind) {
        Sample const sample = RandomSample(random, static_cast<Kind>(kind), 0);
        int calls = 0;
        EXPECT_FALSE(sample.set->VisitRuns(
            [](void* context, sets::Run const*, size_t) {
                ++*static_cast<int*>(context);
                return false;
            },
            &calls));
        EXPECT_EQ(calls, 1);
    }
}

TEST(IndexSet, ACursorRestarts) {
    IndexSetPtr const set = IndexSet::Strided(3, 1000, 3);
    IndexSet::Cursor cursor(set);
    for (int i = 0; i < 700; ++i) cursor.Next();
    EXPECT_EQ(cursor.Value(), 3 + 700 * 3);
    cursor.Restart();
    EXPECT_EQ(cursor.Value(), 3);
    EXPECT_EQ(cursor.Location(), 0);
}

}  // namespace
}  // namespace kov::sets::testing
