// Sets of every form beside a std::set with the same members, and a printed seed to repeat them by.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "document/sets/IndexSet.h"

namespace kov::sets::testing {

/// The seed of this run: KOV_SEED, or a new one.
inline unsigned Seed() {
    char const* given = std::getenv("KOV_SEED");
    static unsigned const seed = given != nullptr
                                     ? static_cast<unsigned>(std::strtoul(given, nullptr, 10))
                                     : std::random_device{}();
    return seed;
}

using Random = std::mt19937;

inline int Pick(Random& random, int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
}

/// A set, what it must hold in stored order, and as a set.
struct Sample {
    IndexSetPtr set;
    std::vector<int> stored;
    std::set<int> model;
};

inline Sample SampleOf(IndexSetPtr set, std::vector<int> stored) {
    std::set<int> model(stored.begin(), stored.end());
    return {std::move(set), std::move(stored), std::move(model)};
}

inline std::vector<int> RandomMembers(Random& random, int count, int low, int high) {
    std::vector<int> members;
    for (int i = 0; i < count; ++i) members.push_back(Pick(random, low, high));
    return members;
}

inline std::vector<int> Unique(std::vector<int> members) {
    std::set<int> const sorted(members.begin(), members.end());
    return {sorted.begin(), sorted.end()};
}

enum class Kind {
    Empty,
    One,
    Range,
    Strided,
    FewRuns,
    Scattered,
    ManyRuns,
    Dense,
    Sparse,
    Ordered
};
constexpr int kKinds = 10;

/// A random set of a kind, with members in [base, base + about 150,000).
inline Sample RandomSample(Random& random, Kind kind, int base) {
    std::vector<int> members;
    int const at = base + Pick(random, 0, 70000);
    switch (kind) {
        case Kind::Empty:
            return SampleOf(IndexSet::Empty(), {});
        case Kind::One:
            return SampleOf(IndexSet::Range(at, 1), {at});
        case Kind::Range: {
            int const count = Pick(random, 1, 80000);
            for (int i = 0; i < count; ++i) members.push_back(at + i);
            return SampleOf(IndexSet::Range(at, count), members);
        }
        case Kind::Strided: {
            int const count = Pick(random, 2, 9000);
            int const stride = Pick(random, 2, 8);
            for (int i = 0; i < count; ++i) members.push_back(at + i * stride);
            return SampleOf(IndexSet::Strided(at, count, stride), members);
        }
        case Kind::FewRuns:
        case Kind::ManyRuns: {
            int const longest = kind == Kind::FewRuns ? 20000 : 300;
            int next = at;
            int const runs = Pick(random, 2, kind == Kind::FewRuns ? 6 : 300);
            for (int r = 0; r < runs; ++r) {
                int const length = Pick(random, 1, longest);
                for (int i = 0; i < length; ++i) members.push_back(next++);
                next += Pick(random, 1, longest / 2);
            }
            break;
        }
        case Kind::Scattered:
            members = RandomMembers(random, Pick(random, 1, 3000), base, base + 150000);
            break;
        case Kind::Dense:
            members = RandomMembers(random, Pick(random, 20000, 60000), at, at + 60000);
            break;
        case Kind::Sparse:
            members = RandomMembers(random, Pick(random, 5000, 9000), base, base + 150000);
            break;
        case Kind::Ordered: {
            members = RandomMembers(random, Pick(random, 2, 6000), base, base + 150000);
            return SampleOf(IndexSet::FromOrdered(members.data(), members.size()), members);
        }
    }
    members = Unique(members);
    IndexSetPtr set = IndexSet::FromMembers(members.data(), members.size());
    return SampleOf(std::move(set), std::move(members));
}

inline std::vector<int> Stored(IndexSet const& set) {
    std::vector<int> out(static_cast<size_t>(set.Size()));
    set.CopyStored(out.data());
    return out;
}

inline std::vector<int> ByRuns(IndexSet const& set) {
    std::vector<int> out;
    int end = -1;
    set.ForEachRun([&](int first, int count) {
        EXPECT_GT(first, end) << "runs touch or do not ascend";
        EXPECT_GT(count, 0);
        for (int i = 0; i < count; ++i) out.push_back(first + i);
        end = first + count;
    });
    return out;
}

/// Holds an ascending set against its model by every way of reading it.
inline void ExpectSet(IndexSetPtr const& set, std::set<int> const& model, std::string const& what) {
    SCOPED_TRACE(what);
    ASSERT_NE(set, nullptr);
    ASSERT_NO_THROW(set->CheckInvariants());
    std::vector<int> const expected(model.begin(), model.end());
    ASSERT_TRUE(set->IsAscending());
    ASSERT_EQ(static_cast<size_t>(set->Size()), expected.size());
    ASSERT_EQ(Stored(*set), expected);
    ASSERT_EQ(ByRuns(*set), expected);
    if (!expected.empty()) {
        EXPECT_EQ(set->Lowest(), expected.front());
        EXPECT_EQ(set->Highest(), expected.back());
    }
}

}  // namespace kov::sets::testing
