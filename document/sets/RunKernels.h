// The merging of runs: pure functions over two readers of ascending, disjoint runs.
//
// The loops choose by arithmetic instead of by branches, because which operand comes next is as
// good as random in merged meshes: uniting 100,000 runs with 100,000 takes 0.55 ms so, 1.15 with
// branches. A reader has Count(), First(i) and End(i), and its runs may touch, or be empty where
// told. Outputs hold a.Count() + b.Count() runs. Private to the sets.
#pragma once

#include <cstddef>
#include <limits>

#include "document/sets/Run.h"

namespace kov::sets {

struct RangeReader {
    int first;
    int end;
    static size_t Count() { return 1; }
    int First(size_t) const { return first; }
    int End(size_t) const { return end; }
};

struct ListReader {
    int const* members;
    size_t count;
    size_t Count() const { return count; }
    int First(size_t i) const { return members[i]; }
    int End(size_t i) const { return members[i] + 1; }
};

struct StretchReader {
    Stretch const* stretches;  // one more than count
    size_t count;
    size_t Count() const { return count; }
    int First(size_t i) const { return stretches[i].first; }
    int End(size_t i) const {
        return stretches[i].first + (stretches[i + 1].location - stretches[i].location);
    }
};

/// What lies between the runs of another reader, from 0 to INT_MAX; gaps may be empty.
template <class Reader>
struct GapReader {
    Reader inner;
    size_t Count() const { return inner.Count() + 1; }
    int First(size_t i) const { return i == 0 ? 0 : inner.End(i - 1); }
    int End(size_t i) const {
        return i == inner.Count() ? std::numeric_limits<int>::max() : inner.First(i);
    }
};

/// `a` or `b`, without a branch, which compilers otherwise tend to make of a conditional
/// expression.
inline int Choose(bool first, int a, int b) { return b ^ ((a ^ b) & -static_cast<int>(first)); }

/// Writes the maximal runs of the union; answers how many. REQUIRES: no empty runs.
template <class A, class B>
size_t UniteRuns(A const a, B const b, Run* out) {
    size_t const na = a.Count();
    size_t const nb = b.Count();
    size_t i = 0;
    size_t j = 0;
    size_t k = 0;
    // No run is open before the first one; what is stored for it is overwritten.
    int openFirst = 0;
    int openEnd = -1;
    auto const take = [&](int first, int end) {
        bool const fresh = first > openEnd;
        out[k] = {openFirst, openEnd};
        k += fresh && openEnd >= 0 ? 1U : 0U;
        openFirst = Choose(fresh, first, openFirst);
        openEnd = Choose(end > openEnd, end, openEnd);
    };
    while (i < na && j < nb) {
        int const fa = a.First(i);
        int const fb = b.First(j);
        bool const left = fa <= fb;
        int const ea = a.End(i);
        int const eb = b.End(j);
        take(Choose(left, fa, fb), Choose(left, ea, eb));
        i += left ? 1U : 0U;
        j += left ? 0U : 1U;
    }
    for (; i < na; ++i) take(a.First(i), a.End(i));
    for (; j < nb; ++j) take(b.First(j), b.End(j));
    if (openEnd >= 0) out[k++] = {openFirst, openEnd};
    return k;
}

/// Writes the runs of the intersection, which may touch where those of a reader do; answers how
/// many.
template <class A, class B>
size_t IntersectRuns(A const a, B const b, Run* out) {
    size_t const na = a.Count();
    size_t const nb = b.Count();
    size_t i = 0;
    size_t j = 0;
    size_t k = 0;
    while (i < na && j < nb) {
        int const ea = a.End(i);
        int const eb = b.End(j);
        int const fa = a.First(i);
        int const fb = b.First(j);
        Run const both{Choose(fa > fb, fa, fb), Choose(ea < eb, ea, eb)};
        out[k] = both;
        k += both.first < both.end ? 1U : 0U;
        i += ea <= eb ? 1U : 0U;
        j += eb <= ea ? 1U : 0U;
    }
    return k;
}

}  // namespace kov::sets
