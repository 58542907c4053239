// What must not cost time in proportion to the size of a contiguous set. The sizes are such that
// doing it member by member, or even container by container, would take minutes.

#include <climits>
#include <ctime>

#include "document/sets/IndexSet.h"
#include "tests/sets/SetSamples.h"

namespace kov::sets::testing {
namespace {

// Processor time: a machine that is busy with other things does not count.
template <class F>
double Seconds(F&& f) {
    std::clock_t const start = std::clock();
    f();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

TEST(IndexSetCosts, WholeRangesAreWorkedOutByArithmetic) {
    IndexSetPtr const all = IndexSet::Range(0, INT_MAX);
    IndexSetPtr const half = IndexSet::Range(1000000000, 1000000000);
    int64_t sizes = 0;
    double const seconds = Seconds([&] {
        for (int i = 0; i < 100000; ++i) {
            sizes += Union(all, half)->Size();
            sizes += Intersection(all, half)->Size();
            sizes += Difference(all, half)->Size();
            sizes += Difference(half, IndexSet::Range(i, 1500000000))->Size();
            sizes += static_cast<int64_t>(all->CountRuns());
            sizes += IsSubset(*half, *all) ? 1 : 0;
        }
    });
    EXPECT_GT(sizes, 0);
    EXPECT_LT(seconds, 5.0);
}

TEST(IndexSetCosts, AFewRunsOfAnySizeAreMergedAsRuns) {
    sets::Run const runs[] = {{0, 700000000}, {700000001, 1500000000}, {1600000000, INT_MAX}};
    IndexSetPtr const a = IndexSet::FromRuns(runs, 3);
    int const holes[] = {5, 77, 1000000000};
    IndexSetPtr const b = IndexSet::FromMembers(holes, 3);
    int64_t sizes = 0;
    double const seconds = Seconds([&] {
        for (int i = 0; i < 20000; ++i) {
            sizes += Difference(a, b)->Size();
            sizes += Union(a, b)->Size();
            sizes += Intersection(a, b)->Size();
            std::string bytes;
            Encode(*a, bytes);
            sizes += Decode(bytes.data(), bytes.size(), nullptr)->Size();
        }
    });
    EXPECT_GT(sizes, 0);
    EXPECT_LT(seconds, 5.0);
}

TEST(IndexSetCosts, AppendingToALargeSetFollowsWhatIsAppended) {
    std::vector<int> members;
    Random random(3);
    for (int i = 0; i < 4000000; ++i) members.push_back(i * 4 + Pick(random, 0, 3));
    IndexSetPtr set = IndexSet::FromMembers(members.data(), members.size());
    ASSERT_EQ(set->GetForm(), Form::Bitmap);
    double const seconds = Seconds([&] {
        for (int i = 0; i < 20000; ++i) {
            set = UnionInto(std::move(set), IndexSet::Range(20000000 + i * 3, 1));
            set = UnionInto(std::move(set), IndexSet::Range(20000000 + i * 3 + 1, 1));
        }
    });
    EXPECT_EQ(set->Size(), 4040000);
    EXPECT_LT(seconds, 5.0);
}

TEST(IndexSetCosts, LocationsOfOrderedSetsAreLookedUp) {
    std::vector<int> members;
    for (int i = 0; i < 200000; ++i) members.push_back((i * 7919) % 200003);
    IndexSetPtr const set = IndexSet::FromOrdered(members.data(), members.size());
    ASSERT_FALSE(set->IsAscending());
    double const seconds = Seconds([&] {
        for (int i = 0; i < 200000; ++i) {
            ASSERT_EQ(set->LocationOf(members[static_cast<size_t>(i)]), i);
        }
    });
    EXPECT_LT(seconds, 5.0);
}

}  // namespace
}  // namespace kov::sets::testing
