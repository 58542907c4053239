// Set algebra and stored forms of sets, beside plain merges of sorted vectors.
//
//   bench_sets --benchmark_filter=Algebra
//
// The operands have 10 million members each unless the name says otherwise: one range; runs of
// about 100; one in ten at random, which is read both ways: 10 million members among 100 million,
// and 1 million among 10 million.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "document/sets/IndexSet.h"

namespace {

using namespace kov::sets;

enum Shape : int { kRange, kRunsOf100, kOneInTenOf100M, kOneInTenOf10M, kHalfOf20M };

IndexSetPtr Make(int shape, unsigned seed) {
    std::mt19937 random(seed);
    if (shape == kRange) return IndexSet::Range(static_cast<int>(seed) * 1000000, 10000000);
    if (shape == kRunsOf100) {
        std::vector<Run> runs;
        int next = 0;
        int size = 0;
        while (size < 10000000) {
            next += 1 + static_cast<int>(random() % 199);
            int const length = 1 + static_cast<int>(random() % 199);
            runs.push_back({next, next + length});
            next += length;
            size += length;
        }
        return IndexSet::FromRuns(runs.data(), runs.size());
    }
    int const space = shape == kOneInTenOf100M ? 100000000
                      : shape == kHalfOf20M    ? 20000000
                                               : 10000000;
    unsigned const one = shape == kHalfOf20M ? 2 : 10;
    std::vector<int> members;
    for (int i = 0; i < space; ++i) {
        if (random() % one == 0) members.push_back(i);
    }
    return IndexSet::FromMembers(members.data(), members.size());
}

struct Pair {
    IndexSetPtr a;
    IndexSetPtr b;
};

Pair const& Operands(int shape) {
    static Pair pairs[5];
    Pair& pair = pairs[shape];
    if (pair.a == nullptr) pair = {Make(shape, 1), Make(shape, 2)};
    return pair;
}

void Shapes(benchmark::internal::Benchmark* b) {
    b->ArgName("shape")->DenseRange(kRange, kHalfOf20M)->Unit(benchmark::kMicrosecond);
}

template <IndexSetPtr (*Operation)(IndexSetPtr const&, IndexSetPtr const&)>
void Algebra(benchmark::State& state) {
    Pair const& pair = Operands(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(Operation(pair.a, pair.b));
    state.counters["members"] = pair.a->Size();
    state.counters["runs"] = static_cast<double>(pair.a->CountRuns());
}
BENCHMARK_TEMPLATE(Algebra, Union)->Apply(Shapes);
BENCHMARK_TEMPLATE(Algebra, Intersection)->Apply(Shapes);
BENCHMARK_TEMPLATE(Algebra, Difference)->Apply(Shapes);

enum class Plain { Union, Intersection, Difference };

template <Plain operation>
void PlainMerge(benchmark::State& state) {
    Pair const& pair = Operands(static_cast<int>(state.range(0)));
    std::vector<int> a(static_cast<size_t>(pair.a->Size()));
    std::vector<int> b(static_cast<size_t>(pair.b->Size()));
    pair.a->CopyStored(a.data());
    pair.b->CopyStored(b.data());
    for (auto _ : state) {
        std::vector<int> out;
        out.reserve(a.size() + b.size());
        auto const to = std::back_inserter(out);
        if (operation == Plain::Union) {
            std::set_union(a.begin(), a.end(), b.begin(), b.end(), to);
        } else if (operation == Plain::Intersection) {
            std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), to);
        } else {
            std::set_difference(a.begin(), a.end(), b.begin(), b.end(), to);
        }
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK_TEMPLATE(PlainMerge, Plain::Union)->Apply(Shapes);
BENCHMARK_TEMPLATE(PlainMerge, Plain::Intersection)->Apply(Shapes);
BENCHMARK_TEMPLATE(PlainMerge, Plain::Difference)->Apply(Shapes);

void RangeAgainstBitmap(benchmark::State& state) {
    Pair const& pair = Operands(kOneInTenOf10M);
    IndexSetPtr const range = IndexSet::Range(3000000, 2000000);
    for (auto _ : state) {
        benchmark::DoNotOptimize(state.range(0) == 0   ? Union(pair.a, range)
                                 : state.range(0) == 1 ? Intersection(pair.a, range)
                                 : state.range(0) == 2 ? Difference(pair.a, range)
                                                       : Difference(range, pair.a));
    }
}
BENCHMARK(RangeAgainstBitmap)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

std::vector<int> Hundred(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<int> members(100);
    for (int& m : members) m = static_cast<int>(random() % 10000000);
    std::sort(members.begin(), members.end());
    return members;
}

// 100 random members, ascending as a mesher gives them.
void CreateHundred(benchmark::State& state) {
    std::vector<int> const members = Hundred(1);
    for (auto _ : state) benchmark::DoNotOptimize(IndexSet::FromMembers(members.data(), 100));
}
BENCHMARK(CreateHundred);

void CreateHundredUnsorted(benchmark::State& state) {
    std::vector<int> members = Hundred(1);
    std::shuffle(members.begin(), members.end(), std::mt19937(3));
    for (auto _ : state) benchmark::DoNotOptimize(IndexSet::FromMembers(members.data(), 100));
}
BENCHMARK(CreateHundredUnsorted);

void EncodeHundred(benchmark::State& state) {
    std::vector<int> const members = Hundred(1);
    IndexSetPtr const set = IndexSet::FromMembers(members.data(), 100);
    std::string bytes;
    for (auto _ : state) {
        bytes.clear();
        Encode(*set, bytes);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(EncodeHundred);

// As a writer of many named sets does: each set is made, encoded and hashed once.
void CreateEncodeHashHundred(benchmark::State& state) {
    std::vector<std::vector<int>> all;
    for (unsigned i = 0; i < 1000; ++i) all.push_back(Hundred(i));
    std::string bytes;
    size_t i = 0;
    bool const hash = state.range(0) != 0;
    for (auto _ : state) {
        std::vector<int> const& members = all[i++ % all.size()];
        IndexSetPtr const set = IndexSet::FromMembers(members.data(), members.size());
        bytes.clear();
        Encode(*set, bytes);
        benchmark::DoNotOptimize(bytes.data());
        if (hash) benchmark::DoNotOptimize(set->Hash());
    }
}
BENCHMARK(CreateEncodeHashHundred)->ArgName("hash")->Arg(0)->Arg(1);

void DecodeHundred(benchmark::State& state) {
    std::vector<int> const members = Hundred(1);
    std::string bytes;
    Encode(*IndexSet::FromMembers(members.data(), 100), bytes);
    for (auto _ : state) benchmark::DoNotOptimize(Decode(bytes.data(), bytes.size(), nullptr));
}
BENCHMARK(DecodeHundred);

void EncodeLarge(benchmark::State& state) {
    Pair const& pair = Operands(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::string bytes;
        Encode(*pair.a, bytes);
        benchmark::DoNotOptimize(bytes.data());
        state.counters["bytes"] = static_cast<double>(bytes.size());
    }
}
BENCHMARK(EncodeLarge)->Apply(Shapes);

void DecodeLarge(benchmark::State& state) {
    std::string bytes;
    Encode(*Operands(static_cast<int>(state.range(0))).a, bytes);
    for (auto _ : state) benchmark::DoNotOptimize(Decode(bytes.data(), bytes.size(), nullptr));
}
BENCHMARK(DecodeLarge)->Apply(Shapes);

void ReadOut(benchmark::State& state) {
    IndexSetPtr const set = Operands(static_cast<int>(state.range(0))).a;
    std::vector<int> out(static_cast<size_t>(set->Size()));
    for (auto _ : state) {
        set->CopyStored(out.data());
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK(ReadOut)->Apply(Shapes);

void Append(benchmark::State& state) {
    IndexSetPtr set = Make(kOneInTenOf10M, 1);
    int next = 10000001;
    for (auto _ : state) {
        set = UnionInto(std::move(set), IndexSet::Range(next, 3));
        next += 5;
    }
}
BENCHMARK(Append)->Iterations(100000);

}  // namespace

BENCHMARK_MAIN();
