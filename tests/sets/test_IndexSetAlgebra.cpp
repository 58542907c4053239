#include <algorithm>
#include <climits>
#include <iterator>
#include <thread>

#include "document/sets/IndexSet.h"
#include "tests/sets/SetSamples.h"

namespace kov::sets::testing {
namespace {

std::set<int> ModelUnion(std::set<int> a, std::set<int> const& b) {
    a.insert(b.begin(), b.end());
    return a;
}
std::set<int> ModelIntersection(std::set<int> const& a, std::set<int> const& b) {
    std::set<int> out;
    std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::inserter(out, out.end()));
    return out;
}
std::set<int> ModelDifference(std::set<int> const& a, std::set<int> const& b) {
    std::set<int> out;
    std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::inserter(out, out.end()));
    return out;
}

class EveryPair : public ::testing::TestWithParam<int> {};

TEST_P(EveryPair, AlgebraAgreesWithTheModel) {
    RecordProperty("seed", static_cast<int>(Seed()));
    auto const left = static_cast<Kind>(GetParam() / kKinds);
    auto const right = static_cast<Kind>(GetParam() % kKinds);
    Random random(Seed() + static_cast<unsigned>(GetParam()));
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE("KOV_SEED=" + std::to_string(Seed()) + " pair " + std::to_string(GetParam()) +
                     " round " + std::to_string(round));
        int const base = Pick(random, 0, 1 << 18);
        Sample const a = RandomSample(random, left, base);
        Sample const b = RandomSample(random, right, base + Pick(random, -base / 8, 4000));
        std::set<int> const both = ModelUnion(a.model, b.model);
        std::set<int> const common = ModelIntersection(a.model, b.model);
        std::set<int> const rest = ModelDifference(a.model, b.model);
        ExpectSet(Union(a.set, b.set), both, "union");
        ExpectSet(Intersection(a.set, b.set), common, "intersection");
        ExpectSet(Difference(a.set, b.set), rest, "difference");
        EXPECT_EQ(Intersects(*a.set, *b.set), !common.empty());
        EXPECT_EQ(IsSubset(*a.set, *b.set), rest.empty());
        EXPECT_TRUE(IsSubset(*Intersection(a.set, b.set), *b.set));
        EXPECT_TRUE(IsSubset(*a.set, *Union(a.set, b.set)));
        EXPECT_EQ(a.set->SameMembers(*b.set), a.model == b.model);

        // The same set made in two ways is the same set, with the same hash.
        IndexSetPtr const again = Union(Difference(a.set, b.set), Intersection(a.set, b.set));
        EXPECT_TRUE(again->SameMembers(*a.set));
        EXPECT_TRUE(a.set->SameMembers(*again));
        EXPECT_EQ(again->Hash(), a.set->Hash());

        // In place, of a set that is held once and of one that is held twice.
        IndexSetPtr mine = Difference(a.set, IndexSet::Empty());
        IndexSetPtr const kept = Union(a.set, IndexSet::Empty());
        mine = UnionInto(std::move(mine), b.set);
        ExpectSet(mine, both, "union into a shared set");
        IndexSetPtr copy = IndexSet::FromMembers(a.stored.data(), a.stored.size());
        copy = UnionInto(std::move(copy), b.set);
        ExpectSet(copy, both, "union in place");
        EXPECT_EQ(copy->Hash(), Union(a.set, b.set)->Hash());
        ExpectSet(kept, a.model, "what was shared");
        ASSERT_EQ(Stored(*a.set), a.stored);
        ASSERT_EQ(Stored(*b.set), b.stored);
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, EveryPair, ::testing::Range(0, kKinds* kKinds));

TEST(IndexSetAlgebra, ManyStepsStayWithTheModel) {
    RecordProperty("seed", static_cast<int>(Seed()));
    SCOPED_TRACE("KOV_SEED=" + std::to_string(Seed()));
    Random random(Seed());
    IndexSetPtr set = IndexSet::Empty();
    std::set<int> model;
    for (int step = 0; step < 120; ++step) {
        auto const kind = static_cast<Kind>(Pick(random, 0, kKinds - 1));
        Sample const other = RandomSample(random, kind, Pick(random, 0, 200000));
        switch (Pick(random, 0, 3)) {
            case 0:
                set = Union(set, other.set), model = ModelUnion(model, other.model);
                break;
            case 1:
                set = UnionInto(std::move(set), other.set), model = ModelUnion(model, other.model);
                break;
            case 2:
                set = Difference(set, other.set), model = ModelDifference(model, other.model);
                break;
            default:
                set = Difference(other.set, set), model = ModelDifference(other.model, model);
                break;
        }
        ExpectSet(set, model, "step " + std::to_string(step));
        if (HasFatalFailure()) return;
    }
}

TEST(IndexSetAlgebra, AppendingInPlaceStaysWithTheModel) {
    RecordProperty("seed", static_cast<int>(Seed()));
    SCOPED_TRACE("KOV_SEED=" + std::to_string(Seed()));
    Random random(Seed());
    for (int longest : {1, 3, 20, 400}) {
        IndexSetPtr set = IndexSet::Empty();
        std::vector<int> all;
        int next = 0;
        for (int step = 0; step < 1500; ++step) {
            std::vector<int> more;
            int const pieces = Pick(random, 1, 4);
            for (int p = 0; p < pieces; ++p) {
                int const length = Pick(random, 1, longest);
                for (int i = 0; i < length; ++i) more.push_back(next++);
                next += Pick(random, 0, longest + 1);
            }
            all.insert(all.end(), more.begin(), more.end());
            set = UnionInto(std::move(set), IndexSet::FromMembers(more.data(), more.size()));
            if (step % 250 == 0) {
                ASSERT_NO_THROW(set->CheckInvariants());
                ASSERT_EQ(Stored(*set), all);
                ASSERT_EQ(set->LocationOf(all.back()), static_cast<int>(all.size()) - 1);
                ASSERT_EQ(set->Hash(), IndexSet::FromMembers(all.data(), all.size())->Hash());
            }
        }
        ExpectSet(set, std::set<int>(all.begin(), all.end()), "appended");
    }
}

TEST(IndexSetAlgebra, UnionIntoLeavesSharedSetsAlone) {
    std::vector<int> const members =
        Unique(RandomMembers(*std::make_unique<Random>(1), 9000, 0, 100000));
    IndexSetPtr set = IndexSet::FromMembers(members.data(), members.size());
    IndexSetPtr const other = set;
    IndexSetPtr const sum = UnionInto(std::move(set), IndexSet::Range(200000, 10));
    EXPECT_EQ(set, nullptr);
    EXPECT_EQ(Stored(*other), members);
    EXPECT_EQ(sum->Size(), other->Size() + 10);
}

TEST(IndexSetAlgebra, UnionIntoItselfIsTheSame) {
    IndexSetPtr set = IndexSet::Strided(1, 6000, 3);
    IndexSetPtr const same = set;
    EXPECT_EQ(UnionInto(std::move(set), same)->Size(), 6000);
}

TEST(IndexSetAlgebra, FilledGapsBecomeAProgressionAgain) {
    // Evens with a hole, the hole filled in place; then odds.
    std::vector<int> evens;
    for (int i = 0; i < 20000; i += 2) {
        if (i != 5000) evens.push_back(i);
    }
    IndexSetPtr set = IndexSet::FromMembers(evens.data(), evens.size());
    ASSERT_EQ(set->GetForm(), Form::Bitmap);
    set = UnionInto(std::move(set), IndexSet::Range(5000, 1));
    EXPECT_EQ(set->GetForm(), Form::Progression);
    EXPECT_EQ(set->Stride(), 2);
    set = Union(set, IndexSet::Strided(1, 10000, 2));
    EXPECT_TRUE(set->IsRange());
    EXPECT_EQ(set->Size(), 20000);
}

TEST(IndexSetAlgebra, StridedSetsMeetWhereTheirStridesAgree) {
    for (int s = 1; s < 9; ++s) {
        for (int t = 1; t < 9; ++t) {
            for (int offset = 0; offset < 30; ++offset) {
                IndexSetPtr const a = IndexSet::Strided(17, 40, s);
                IndexSetPtr const b = IndexSet::Strided(3 + offset, 35, t);
                std::vector<int> const x = Stored(*a);
                std::vector<int> const y = Stored(*b);
                std::set<int> const mx(x.begin(), x.end());
                std::set<int> const my(y.begin(), y.end());
                ExpectSet(Intersection(a, b), ModelIntersection(mx, my), "common");
                ExpectSet(Union(a, b), ModelUnion(mx, my), "union");
                ExpectSet(Difference(a, b), ModelDifference(mx, my), "difference");
                ASSERT_EQ(IsSubset(*a, *b), ModelDifference(mx, my).empty());
                ASSERT_EQ(Intersects(*a, *b), !ModelIntersection(mx, my).empty());
            }
        }
    }
}

TEST(IndexSetAlgebra, HugeStridesDoNotWrap) {
    IndexSetPtr const a = IndexSet::Strided(0, 3, 1000000007);
    IndexSetPtr const b = IndexSet::Strided(5, 2, 2000000000);
    EXPECT_TRUE(Intersection(a, b)->IsEmpty());
    EXPECT_EQ(Union(a, b)->Size(), 5);
    EXPECT_EQ(Intersection(a, IndexSet::Strided(0, 2, 2000000014))->Size(), 2);
}

TEST(IndexSetAlgebra, DisjointIntersectionCanStillBeRead) {
    IndexSetPtr const none = Intersection(IndexSet::Range(0, 5), IndexSet::Range(9, 5));
    EXPECT_EQ(none->Size(), 0);
    EXPECT_TRUE(Stored(*none).empty());
}

TEST(IndexSetAlgebra, ResultsTakeTheTightestForm) {
    IndexSetPtr const range = IndexSet::Range(0, 1000000);
    EXPECT_EQ(Difference(range, IndexSet::Range(500, 10))->GetForm(), Form::Runs);
    EXPECT_TRUE(Difference(range, IndexSet::Range(500, 1000000))->IsRange());
    EXPECT_TRUE(Union(IndexSet::Range(0, 5), IndexSet::Range(5, 5))->IsRange());
    std::vector<int> const members =
        Unique(RandomMembers(*std::make_unique<Random>(2), 90000, 0, 900000));
    IndexSetPtr const bitmap = IndexSet::FromMembers(members.data(), members.size());
    ASSERT_EQ(bitmap->GetForm(), Form::Bitmap);
    EXPECT_EQ(Intersection(bitmap, IndexSet::Range(1000, 2000))->GetForm(), Form::List);
    EXPECT_TRUE(Union(bitmap, IndexSet::Range(0, 900001))->IsRange());
    IndexSetPtr const gaps = Difference(IndexSet::Range(0, 900001), bitmap);
    EXPECT_EQ(gaps->GetForm(), Form::Bitmap);
    EXPECT_TRUE(Union(gaps, bitmap)->IsRange());
}

TEST(IndexSetAlgebra, OneSetServesManyThreads) {
    Random random(Seed());
    Sample const ordered = RandomSample(random, Kind::Ordered, 0);
    Sample const dense = RandomSample(random, Kind::Dense, 0);
    std::vector<std::thread> threads;
    std::vector<int> sums(4);
    for (size_t t = 0; t < sums.size(); ++t) {
        threads.emplace_back([&, t] {
            IndexSetPtr const common = Intersection(ordered.set, dense.set);
            int sum = common->Size() + static_cast<int>(ordered.set->Hash() & 0xffU);
            for (int m = 0; m < 5000; ++m) {
                sum += ordered.set->LocationOf(m) + dense.set->LocationOf(m);
            }
            sums[t] = sum;
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (int const sum : sums) EXPECT_EQ(sum, sums[0]);
}

}  // namespace
}  // namespace kov::sets::testing
