// The algebra of index sets.
//
// Operands are brought ascending, then the pair of forms decides: progressions are worked out by
// arithmetic; ranges, runs and lists are merged run by run; a bitmap against a range copies whole
// containers and cuts two; a bitmap against anything else is Roaring's. A strided operand that
// arithmetic cannot finish is written out as a list or bitmap first.

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

#include "document/sets/Bits.h"
#include "document/sets/IndexSet.h"
#include "document/sets/Progressions.h"
#include "document/sets/RunKernels.h"
#include "document/sets/SetAccess.h"

namespace kov::sets {

namespace {

bool IsStrided(IndexSet const& set) { return set.GetForm() == Form::Progression && !set.IsRange(); }
bool IsList(IndexSet const& set) { return set.GetForm() == Form::List; }
bool IsBitmap(IndexSet const& set) { return set.GetForm() == Form::Bitmap; }

// Calls f with a reader of the runs of a range, list or run set; of those that end at or before
// `from` or start at or after `to` as many as possible are left out.
template <class F>
auto WithReader(IndexSet const& set, int from, int to, F&& f) {
    if (set.IsRange()) return f(RangeReader{set.Lowest(), set.Highest() + 1});
    if (set.GetForm() == Form::List) {
        auto const& list = SetAccess::List(set);
        auto const begin = std::lower_bound(list.begin(), list.end(), from);
        auto const end = std::lower_bound(begin, list.end(), to);
        return f(
            ListReader{list.data() + (begin - list.begin()), static_cast<size_t>(end - begin)});
    }
    auto const& all = SetAccess::Stretches(set);
    auto const before = [](Stretch const& s, int m) { return s.first < m; };
    auto begin = std::lower_bound(all.begin(), all.end() - 1, from, before);
    if (begin != all.begin()) --begin;
    auto const end = std::lower_bound(begin, all.end() - 1, to, before);
    return f(StretchReader{&*begin, static_cast<size_t>(end - begin)});
}

constexpr int kAll = kHighestMember + 1;

// Runs `kernel` on the readers of two run-like sets, within [from, to).
template <class Kernel>
IndexSetPtr Merge(IndexSet const& a, IndexSet const& b, int from, int to, Kernel kernel) {
    return WithReader(a, from, to, [&](auto ra) {
        return WithReader(b, from, to, [&](auto rb) {
            size_t const room = ra.Count() + rb.Count() + 1;
            std::unique_ptr<Run[]> const out(new Run[room]);
            size_t const count = kernel(ra, rb, out.get());
            return SetAccess::FromTouchingRuns(out.get(), count);
        });
    });
}

// Whether two run-like sets have a member in common.
bool RunsMeet(IndexSet const& a, IndexSet const& b) {
    int const from = std::max(a.Lowest(), b.Lowest());
    int const to = std::min(a.Highest(), b.Highest()) + 1;
    return WithReader(a, from, to, [&](auto ra) {
        return WithReader(b, from, to, [&](auto rb) {
            for (size_t i = 0, k = 0; i < ra.Count() && k < rb.Count();) {
                if (ra.End(i) <= rb.First(k)) {
                    ++i;
                } else if (rb.End(k) <= ra.First(i)) {
                    ++k;
                } else {
                    return true;
                }
            }
            return false;
        });
    });
}

// The part of a run-like set within [from, to) as a bitmap.
Bits ToBits(IndexSet const& set, int from, int to) {
    return WithReader(set, from, to, [&](auto reader) {
        std::vector<Run> runs;
        runs.reserve(reader.Count());
        for (size_t i = 0; i < reader.Count(); ++i) {
            Run const run{std::max(reader.First(i), from), std::min(reader.End(i), to)};
            if (run.first < run.end) runs.push_back(run);
        }
        return Bits::FromRuns(runs.data(), runs.size());
    });
}

// The members of a list that another set holds, or does not hold.
IndexSetPtr Filter(IndexSet const& list, IndexSet const& other, bool held) {
    std::vector<int> kept;
    kept.reserve(static_cast<size_t>(list.Size()));
    for (int const member : SetAccess::List(list)) {
        if (other.Contains(member) == held) kept.push_back(member);
    }
    return SetAccess::FromAscending(std::move(kept));
}

IndexSetPtr Unstrided(IndexSetPtr const& set) {
    return IsStrided(*set) ? SetAccess::Unstrided(*set) : set;
}

IndexSetPtr RangeOf(int first, int end) {
    return first < end ? IndexSet::Range(first, end - first) : IndexSet::Empty();
}

bool Covers(IndexSet const& range, IndexSet const& set) {
    return range.IsRange() && range.Lowest() <= set.Lowest() && set.Highest() <= range.Highest();
}

bool Apart(IndexSet const& a, IndexSet const& b) {
    return a.IsEmpty() || b.IsEmpty() || a.Highest() < b.Lowest() || b.Highest() < a.Lowest();
}

IndexSetPtr UniteWithBitmap(IndexSet const& bitmap, IndexSet const& other) {
    Bits const& bits = SetAccess::GetBits(bitmap);
    if (other.IsRange()) return SetAccess::FromBits(bits.With(other.Lowest(), other.Highest() + 1));
    if (IsBitmap(other)) return SetAccess::FromBits(Bits::Or(bits, SetAccess::GetBits(other)));
    if (IsList(other)) {
        Bits sum = bits.Clone();
        sum.Add(SetAccess::List(other).data(), SetAccess::List(other).size());
        return SetAccess::FromBits(std::move(sum));
    }
    return SetAccess::FromBits(Bits::Or(bits, ToBits(other, 0, kAll)));
}

IndexSetPtr SubtractFromBitmap(IndexSet const& bitmap, IndexSet const& other) {
    Bits const& bits = SetAccess::GetBits(bitmap);
    if (other.IsRange()) {
        return SetAccess::FromBits(bits.Without(other.Lowest(), other.Highest() + 1));
    }
    if (IsBitmap(other)) return SetAccess::FromBits(Bits::AndNot(bits, SetAccess::GetBits(other)));
    if (IsList(other)) {
        Bits rest = bits.Clone();
        rest.Remove(SetAccess::List(other).data(), SetAccess::List(other).size());
        return SetAccess::FromBits(std::move(rest));
    }
    return SetAccess::FromBits(
        Bits::AndNot(bits, ToBits(other, bitmap.Lowest(), bitmap.Highest() + 1)));
}

}  // namespace

IndexSetPtr Union(IndexSetPtr const& left, IndexSetPtr const& right) {
    if (left->IsEmpty() || left == right) return right->Ascending();
    if (right->IsEmpty()) return left->Ascending();
    IndexSetPtr a = left->Ascending();
    IndexSetPtr b = right->Ascending();
    if (Covers(*a, *b)) return a;
    if (Covers(*b, *a)) return b;
    if (a->IsRange() && b->IsRange()) {
        if (a->Lowest() > b->Lowest()) std::swap(a, b);
        if (b->Lowest() <= a->Highest() + 1) return RangeOf(a->Lowest(), b->Highest() + 1);
        Run const runs[] = {{a->Lowest(), a->Highest() + 1}, {b->Lowest(), b->Highest() + 1}};
        return IndexSet::FromRuns(runs, 2);
    }
    if (a->GetForm() == Form::Progression && b->GetForm() == Form::Progression) {
        if (IndexSetPtr joined = JoinedProgressions(*a, *b)) return joined;
    }
    a = Unstrided(a);
    b = Unstrided(b);
    if (IsBitmap(*a)) return UniteWithBitmap(*a, *b);
    if (IsBitmap(*b)) return UniteWithBitmap(*b, *a);
    if (IsList(*a) && IsList(*b)) {
        auto const& x = SetAccess::List(*a);
        auto const& y = SetAccess::List(*b);
        std::vector<int> sum(x.size() + y.size());
        sum.erase(std::set_union(x.begin(), x.end(), y.begin(), y.end(), sum.begin()), sum.end());
        return SetAccess::FromAscending(std::move(sum));
    }
    return Merge(*a, *b, 0, kAll,
                 [](auto ra, auto rb, Run* out) { return UniteRuns(ra, rb, out); });
}

IndexSetPtr Intersection(IndexSetPtr const& left, IndexSetPtr const& right) {
    if (Apart(*left, *right)) return IndexSet::Empty();
    IndexSetPtr a = left->Ascending();
    IndexSetPtr b = right->Ascending();
    if (a == b || Covers(*b, *a)) return a;
    if (Covers(*a, *b)) return b;
    int const from = std::max(a->Lowest(), b->Lowest());
    int const to = std::min(a->Highest(), b->Highest()) + 1;
    if (a->IsRange() && b->IsRange()) return RangeOf(from, to);
    if (a->GetForm() == Form::Progression && b->GetForm() == Form::Progression) {
        return CommonProgression(*a, *b);
    }
    if (IsStrided(*a)) a = ClippedProgression(*a, from, to);
    if (IsStrided(*b)) b = ClippedProgression(*b, from, to);
    if (a->IsEmpty() || b->IsEmpty()) return IndexSet::Empty();
    bool const runLike = !IsBitmap(*a) && !IsBitmap(*b) && !IsStrided(*a) && !IsStrided(*b);
    if (runLike) {
        return Merge(*a, *b, from, to,
                     [](auto ra, auto rb, Run* out) { return IntersectRuns(ra, rb, out); });
    }
    if (IsList(*a)) return Filter(*a, *b, true);
    if (IsList(*b)) return Filter(*b, *a, true);
    a = Unstrided(a);
    b = Unstrided(b);
    if (IsList(*a)) return Filter(*a, *b, true);
    if (IsList(*b)) return Filter(*b, *a, true);
    if (!IsBitmap(*a)) std::swap(a, b);
    Bits const& bits = SetAccess::GetBits(*a);
    if (b->IsRange()) return SetAccess::FromBits(bits.Slice(b->Lowest(), b->Highest() + 1));
    if (IsBitmap(*b)) return SetAccess::FromBits(Bits::And(bits, SetAccess::GetBits(*b)));
    return SetAccess::FromBits(Bits::And(bits, ToBits(*b, from, to)));
}

IndexSetPtr Difference(IndexSetPtr const& left, IndexSetPtr const& right) {
    if (Apart(*left, *right)) return left->Ascending();
    IndexSetPtr a = left->Ascending();
    IndexSetPtr b = right->Ascending();
    if (a == b || Covers(*b, *a)) return IndexSet::Empty();
    if (b->GetForm() == Form::Progression) {
        b = ClippedProgression(*b, a->Lowest(), a->Highest() + 1);
        if (b->IsEmpty()) return a;
    }
    if (a->GetForm() == Form::Progression && b->IsRange()) {
        IndexSetPtr const below = ClippedProgression(*a, a->Lowest(), b->Lowest());
        IndexSetPtr const above = ClippedProgression(*a, b->Highest() + 1, a->Highest() + 1);
        if (above->IsEmpty()) return below;
        if (below->IsEmpty()) return above;
        if (below->Size() + above->Size() == a->Size()) return a;
        return Union(below, above);
    }
    if (IsList(*a) && !IsList(*b)) return Filter(*a, *b, false);
    a = Unstrided(a);
    b = Unstrided(b);
    if (IsList(*a) && !IsList(*b)) return Filter(*a, *b, false);
    if (IsBitmap(*a)) return SubtractFromBitmap(*a, *b);
    if (IsBitmap(*b)) {
        Bits const& bits = SetAccess::GetBits(*b);
        if (a->IsRange()) {
            return SetAccess::FromBits(bits.GapsWithin(a->Lowest(), a->Highest() + 1));
        }
        return SetAccess::FromBits(Bits::AndNot(ToBits(*a, 0, kAll), bits));
    }
    // The gaps must span all of `a`, so that only `b` may be clipped.
    return WithReader(*a, 0, kAll, [&](auto ra) {
        return WithReader(*b, a->Lowest(), a->Highest() + 1, [&](auto rb) {
            std::unique_ptr<Run[]> const out(new Run[ra.Count() + rb.Count() + 1]);
            size_t const count = IntersectRuns(ra, GapReader<decltype(rb)>{rb}, out.get());
            return SetAccess::FromTouchingRuns(out.get(), count);
        });
    });
}

bool IsSubset(IndexSet const& inner, IndexSet const& outer) {
    if (inner.IsEmpty() || &inner == &outer) return true;
    if (inner.Lowest() < outer.Lowest() || inner.Highest() > outer.Highest()) return false;
    if (outer.IsRange()) return true;
    IndexSetPtr const x = inner.Ascending();
    IndexSetPtr const y = outer.Ascending();
    if (x->Size() > y->Size()) return false;
    if (IsStrided(*x) && IsStrided(*y)) {
        return y->Contains(x->Lowest()) && x->Stride() % y->Stride() == 0;
    }
    if (IsBitmap(*x) && IsBitmap(*y)) {
        return SetAccess::GetBits(*x).IsSubsetOf(SetAccess::GetBits(*y));
    }
    return x->VisitRuns(
        [](void* context, Run const* runs, size_t n) {
            auto const& whole = *static_cast<IndexSet const*>(context);
            return std::all_of(runs, runs + n,
                               [&](Run const& r) { return whole.ContainsRun(r.first, r.end); });
        },
        const_cast<IndexSet*>(y.get()));
}

bool Intersects(IndexSet const& a, IndexSet const& b) {
    if (Apart(a, b)) return false;
    if (a.IsRange()) return b.IntersectsRun(a.Lowest(), a.Highest() + 1);
    if (b.IsRange()) return a.IntersectsRun(b.Lowest(), b.Highest() + 1);
    IndexSetPtr x = a.Ascending();
    IndexSetPtr y = b.Ascending();
    if (IsStrided(*x) && IsStrided(*y)) return !CommonProgression(*x, *y)->IsEmpty();
    if (IsBitmap(*x) && IsBitmap(*y)) {
        return SetAccess::GetBits(*x).Intersects(SetAccess::GetBits(*y));
    }
    auto const bound = [](IndexSet const& set) {
        return set.GetForm() == Form::Runs ? set.CountRuns() : static_cast<size_t>(set.Size());
    };
    if (bound(*x) > bound(*y)) std::swap(x, y);
    bool const runLike = !IsBitmap(*x) && !IsBitmap(*y) && !IsStrided(*x) && !IsStrided(*y);
    // Few runs are faster looked up than merged with many.
    if (runLike && bound(*y) / 8 <= bound(*x)) return RunsMeet(*x, *y);
    return !x->VisitRuns(
        [](void* context, Run const* runs, size_t n) {
            auto const& other = *static_cast<IndexSet const*>(context);
            return std::none_of(runs, runs + n,
                                [&](Run const& r) { return other.IntersectsRun(r.first, r.end); });
        },
        const_cast<IndexSet*>(y.get()));
}

}  // namespace kov::sets
