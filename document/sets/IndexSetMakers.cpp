// The makers of index sets: what the given members are is found out in one pass, and decides the
// form.

#include <algorithm>
#include <bit>
#include <limits>
#include <string>
#include <utility>

#include "KOVSimException.h"
#include "document/sets/IndexSet.h"
#include "document/sets/SetAccess.h"

namespace kov::sets {

namespace {

[[noreturn]] void Refuse(std::string const& text) { KOVSimException::ThrowText(text.c_str()); }

void CheckBounds(int64_t lowest, int64_t highest) {
    if (lowest < 0) {
        Refuse("index set: member " + std::to_string(lowest) + " is below 0");
    }
    if (highest > kHighestMember) {
        Refuse("index set: member " + std::to_string(highest) + " is above " +
               std::to_string(kHighestMember) + ", the highest index that a collection can have");
    }
}

struct Shape {
    bool ascending;    // strictly
    bool progression;  // all differences are alike
    size_t runs;
};

Shape ShapeOf(int const* members, size_t n) {
    unsigned ascending = 1;
    unsigned progression = 1;
    size_t runs = 1;
    int64_t const step = n > 1 ? int64_t{members[1]} - members[0] : 1;
    for (size_t i = 1; i < n; ++i) {
        int64_t const difference = int64_t{members[i]} - members[i - 1];
        ascending &= difference > 0 ? 1U : 0U;
        progression &= difference == step ? 1U : 0U;
        runs += difference != 1 ? 1U : 0U;
    }
    return {ascending != 0, progression != 0, runs};
}

// Sorts and drops duplicates. Where the members lie close, marking them in a bit array is several
// times faster than comparing.
void SortUnique(std::vector<int>& members) {
    auto const [lowest, highest] = std::minmax_element(members.begin(), members.end());
    int const base = *lowest;
    size_t const words = (static_cast<size_t>(*highest - base) >> 6) + 1;
    if (members.size() <= static_cast<size_t>(kListLimit) || words > members.size()) {
        std::sort(members.begin(), members.end());
        members.erase(std::unique(members.begin(), members.end()), members.end());
        return;
    }
    std::vector<uint64_t> marks(words);
    for (int const member : members) {
        auto const bit = static_cast<unsigned>(member - base);
        marks[bit >> 6] |= uint64_t{1} << (bit & 63U);
    }
    auto out = members.begin();
    for (size_t w = 0; w < words; ++w) {
        for (uint64_t word = marks[w]; word != 0; word &= word - 1) {
            *out++ = base + static_cast<int>(w << 6) + std::countr_zero(word);
        }
    }
    members.erase(out, members.end());
}

}  // namespace

std::shared_ptr<IndexSet> SetAccess::New() {
    return std::make_shared<IndexSet>(IndexSet::Private{});
}

IndexSetPtr IndexSet::Empty() {
    static IndexSetPtr const empty = std::make_shared<IndexSet>(Private{});
    return empty;
}

IndexSetPtr IndexSet::Range(int first, int count) { return Strided(first, count, 1); }

IndexSetPtr IndexSet::Strided(int first, int count, int stride) {
    if (count < 0) Refuse("index set: the count " + std::to_string(count) + " is below 0");
    if (count == 0) return Empty();
    if (count > 1 && stride < 1) {
        Refuse("index set: the stride " + std::to_string(stride) + " is below 1");
    }
    int64_t const highest = count == 1 ? first : first + (int64_t{count} - 1) * stride;
    CheckBounds(first, highest);
    auto set = std::make_shared<IndexSet>(Private{});
    set->size_ = count;
    set->lowest_ = first;
    set->highest_ = static_cast<int>(highest);
    set->stride_ = count == 1 ? 1 : stride;
    return set;
}

IndexSetPtr SetAccess::Listed(std::vector<int>&& members) {
    auto set = New();
    set->form_ = Form::List;
    set->size_ = static_cast<int>(members.size());
    set->lowest_ = members.front();
    set->highest_ = members.back();
    set->list_ = std::move(members);
    return set;
}

namespace {

// The form other than List for members of this shape, or null.
IndexSetPtr Unlisted(int const* members, size_t n, Shape const& shape) {
    if (shape.progression) {
        return IndexSet::Strided(members[0], static_cast<int>(n),
                                 n > 1 ? members[1] - members[0] : 1);
    }
    Form const form = TightForm(n, shape.runs);
    if (form == Form::List) return nullptr;
    if (form == Form::Bitmap) {
        Bits bits = Bits::FromAscending(members, n);
        bits.Optimize();
        return SetAccess::FromBits(std::move(bits));
    }
    std::vector<Run> runs;
    runs.reserve(shape.runs);
    for (size_t i = 0; i < n; ++i) {
        if (runs.empty() || runs.back().end != members[i]) runs.push_back({members[i], members[i]});
        ++runs.back().end;
    }
    return IndexSet::FromRuns(runs.data(), runs.size());
}

}  // namespace

IndexSetPtr SetAccess::FromAscending(int const* members, size_t n) {
    if (n == 0) return IndexSet::Empty();
    IndexSetPtr set = Unlisted(members, n, ShapeOf(members, n));
    return set != nullptr ? set : Listed(std::vector<int>(members, members + n));
}

IndexSetPtr SetAccess::FromAscending(std::vector<int>&& members) {
    if (members.empty()) return IndexSet::Empty();
    IndexSetPtr set =
        Unlisted(members.data(), members.size(), ShapeOf(members.data(), members.size()));
    return set != nullptr ? set : Listed(std::move(members));
}

IndexSetPtr IndexSet::FromMembers(int const* members, size_t n) {
    if (n == 0) return Empty();
    Shape const shape = ShapeOf(members, n);
    if (shape.ascending) {
        CheckBounds(members[0], members[n - 1]);
        IndexSetPtr set = Unlisted(members, n, shape);
        return set != nullptr ? set : SetAccess::Listed(std::vector<int>(members, members + n));
    }
    auto const [lowest, highest] = std::minmax_element(members, members + n);
    CheckBounds(*lowest, *highest);
    std::vector<int> sorted(members, members + n);
    SortUnique(sorted);
    return SetAccess::FromAscending(std::move(sorted));
}

IndexSetPtr IndexSet::FromOrdered(int const* members, size_t n) {
    if (n == 0) return Empty();
    if (n > static_cast<size_t>(std::numeric_limits<int>::max())) {
        Refuse("index set: " + std::to_string(n) + " members are more than an int can count");
    }
    Shape const shape = ShapeOf(members, n);
    if (shape.ascending) return FromMembers(members, n);
    auto const [lowest, highest] = std::minmax_element(members, members + n);
    CheckBounds(*lowest, *highest);
    auto set = std::make_shared<IndexSet>(Private{});
    set->form_ = Form::Ordered;
    set->size_ = static_cast<int>(n);
    set->lowest_ = *lowest;
    set->highest_ = *highest;
    set->list_.assign(members, members + n);
    return set;
}

IndexSetPtr IndexSet::FromRuns(Run const* runs, size_t n) {
    if (n == 0) return Empty();
    size_t size = 0;
    for (size_t i = 0; i < n; ++i) size += static_cast<size_t>(runs[i].end - runs[i].first);
    if (n == 1) return Range(runs[0].first, static_cast<int>(size));
    CheckBounds(runs[0].first, int64_t{runs[n - 1].end} - 1);
    if (TightForm(size, n) == Form::Bitmap) return SetAccess::FromBits(Bits::FromRuns(runs, n));
    if (TightForm(size, n) == Form::List) {
        std::vector<int> members;
        members.reserve(size);
        for (size_t i = 0; i < n; ++i) {
            for (int member = runs[i].first; member < runs[i].end; ++member) {
                members.push_back(member);
            }
        }
        return SetAccess::FromAscending(std::move(members));
    }
    auto set = std::make_shared<IndexSet>(Private{});
    set->form_ = Form::Runs;
    set->size_ = static_cast<int>(size);
    set->lowest_ = runs[0].first;
    set->highest_ = runs[n - 1].end - 1;
    set->stretches_.reserve(n + 1);
    int location = 0;
    for (size_t i = 0; i < n; ++i) {
        set->stretches_.push_back({runs[i].first, location});
        location += runs[i].end - runs[i].first;
    }
    set->stretches_.push_back({std::numeric_limits<int>::max(), location});
    return set;
}

IndexSetPtr SetAccess::FromTouchingRuns(Run* runs, size_t n) {
    if (n == 0) return IndexSet::Empty();
    size_t last = 0;
    for (size_t i = 1; i < n; ++i) {
        Run const run = runs[i];
        bool const joined = run.first == runs[last].end;
        last += joined ? 0U : 1U;
        runs[last].first = joined ? runs[last].first : run.first;
        runs[last].end = run.end;
    }
    return IndexSet::FromRuns(runs, last + 1);
}

IndexSetPtr SetAccess::FromBits(Bits&& bits) {
    int64_t const size = bits.Size();
    if (size == 0) return IndexSet::Empty();
    int const lowest = bits.Lowest();
    int const highest = bits.Highest();
    auto const count = static_cast<int>(size);
    if (int64_t{highest} - lowest + 1 == size) return IndexSet::Range(lowest, count);
    if (size <= kListLimit) {
        std::vector<int> members(static_cast<size_t>(size));
        bits.CopyTo(members.data());
        return FromAscending(std::move(members));
    }
    // A progression shows in its ends; only then is it worth looking at each member.
    int const stride = (highest - lowest) / (count - 1);
    if (int64_t{stride} * (count - 1) == highest - lowest) {
        std::pair<int, int> expected(lowest, stride);
        bool const progression = bits.VisitRuns(
            [](void* context, Run const* runs, size_t n) {
                auto& [next, step] = *static_cast<std::pair<int, int>*>(context);
                for (size_t i = 0; i < n; ++i, next += step) {
                    if (runs[i].first != next || runs[i].end - runs[i].first != 1) return false;
                }
                return true;
            },
            &expected);
        if (progression) return IndexSet::Strided(lowest, count, stride);
    }
    size_t const limit = static_cast<size_t>(size) / kLargeRunLength;
    size_t const runCount = bits.CountRuns(limit);
    if (runCount <= limit) {
        std::vector<Run> runs;
        runs.reserve(runCount);
        bits.VisitRuns(
            [](void* context, Run const* block, size_t n) {
                auto& all = *static_cast<std::vector<Run>*>(context);
                all.insert(all.end(), block, block + n);
                return true;
            },
            &runs);
        return IndexSet::FromRuns(runs.data(), runs.size());
    }
    auto set = New();
    set->form_ = Form::Bitmap;
    set->size_ = count;
    set->lowest_ = lowest;
    set->highest_ = highest;
    set->bits_ = std::make_unique<Bits>(std::move(bits));
    return set;
}

IndexSetPtr SetAccess::Unstrided(IndexSet const& set) {
    auto const count = static_cast<size_t>(set.size_);
    if (set.size_ <= kListLimit) {
        std::vector<int> members(count);
        set.CopyStored(members.data());
        return Listed(std::move(members));
    }
    auto bitmap = New();
    bitmap->form_ = Form::Bitmap;
    bitmap->size_ = set.size_;
    bitmap->lowest_ = set.lowest_;
    bitmap->highest_ = set.highest_;
    bitmap->bits_ = std::make_unique<Bits>(Bits::FromStrided(set.lowest_, set.size_, set.stride_));
    return bitmap;
}

}  // namespace kov::sets
