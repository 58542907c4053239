// Union in the storage of the left operand, where nobody else can see it.

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "document/sets/Bits.h"
#include "document/sets/IndexSet.h"
#include "document/sets/SetAccess.h"

namespace kov::sets {

namespace {

// Room for `more` further entries, at least doubling, so that a row of appends stays linear.
template <class T>
void Grow(std::vector<T>& values, size_t more) {
    size_t const need = values.size() + more;
    if (need > values.capacity()) values.reserve(std::max(need, 2 * values.capacity()));
}

// What other holders did before they let go of the set is seen from here on.
void SeeFormerHolders([[maybe_unused]] IndexSetPtr const& set) {
#if defined(__SANITIZE_THREAD__)
    // This sanitizer knows no fences; copying goes through the counter that they released.
    IndexSetPtr const copy = set;
#else
    std::atomic_thread_fence(std::memory_order_acquire);
#endif
}

}  // namespace

void SetAccess::Forget(IndexSet& set) {
    set.hash_.store(0, std::memory_order_relaxed);
    delete set.table_.exchange(nullptr, std::memory_order_relaxed);
}

bool SetAccess::AppendToRuns(IndexSet& set, IndexSet const& more) {
    std::vector<Stretch>& all = set.stretches_;
    if (more.Lowest() < all[all.size() - 2].first) return false;
    // Joined runs make this too careful by a little, never wrong.
    size_t const runs = more.CountRuns();
    size_t const size = static_cast<size_t>(set.size_) + static_cast<size_t>(more.Size());
    if (TightForm(size, all.size() - 1 + runs) != Form::Runs) return false;
    Grow(all, runs);
    Forget(set);
    more.ForEachRun([&](int first, int count) {
        Stretch const last = all[all.size() - 2];
        int const end = last.first + (set.size_ - last.location);
        if (first <= end) {
            set.size_ = last.location + std::max(end, first + count) - last.first;
        } else {
            all.back() = {first, set.size_};
            all.push_back({std::numeric_limits<int>::max(), 0});
            set.size_ += count;
        }
        all.back().location = set.size_;
    });
    set.highest_ = std::max(set.highest_, more.Highest());
    return true;
}

bool SetAccess::AppendToList(IndexSet& set, IndexSet const& more) {
    bool const listLike =
        more.GetForm() == Form::List || more.Size() < static_cast<int>(kSmallRunLength);
    if (!listLike || more.Lowest() <= set.highest_) return false;
    if (more.Size() > kListLimit - set.size_) return false;
    Grow(set.list_, static_cast<size_t>(more.Size()));
    Forget(set);
    set.list_.resize(set.list_.size() + static_cast<size_t>(more.Size()));
    more.CopyStored(set.list_.data() + set.size_);
    set.size_ += more.Size();
    set.highest_ = more.Highest();
    return true;
}

IndexSetPtr SetAccess::AddToBitmap(std::shared_ptr<IndexSet> set, IndexSet const& more) {
    Forget(*set);
    Bits& bits = *set->bits_;
    int64_t size = int64_t{set->size_} + more.Size();
    bool const beyond = more.Lowest() > set->highest_;
    bool counted = beyond;
    if (more.IsRange()) {
        bits.AddRun(more.Lowest(), more.Highest() + 1);
    } else if (more.GetForm() == Form::List) {
        size = set->size_ + bits.Add(more.list_.data(), more.list_.size());
        counted = true;
    } else if (more.GetForm() == Form::Bitmap) {
        bits.Or(*more.bits_);
    } else {
        std::vector<Run> runs;
        more.ForEachRun([&](int first, int count) { runs.push_back({first, first + count}); });
        bits.Or(Bits::FromRuns(runs.data(), runs.size()));
    }
    set->size_ = static_cast<int>(counted ? size : bits.Size());
    set->lowest_ = std::min(set->lowest_, more.Lowest());
    set->highest_ = std::max(set->highest_, more.Highest());
    // Gaps that were filled may have made it a progression.
    if ((set->highest_ - set->lowest_) % (set->size_ - 1) == 0) return FromBits(std::move(bits));
    return set;
}

IndexSetPtr UnionInto(IndexSetPtr&& left, IndexSetPtr const& right) {
    IndexSetPtr taken = std::move(left);
    left = nullptr;
    // Progressions are joined in a few words anyway, and ordered sets give another set.
    bool const storage = taken->IsAscending() && taken->GetForm() != Form::Progression;
    if (!storage || right->IsEmpty() || taken.use_count() != 1) return Union(taken, right);
    SeeFormerHolders(taken);
    IndexSetPtr const more = right->Ascending();
    bool const strided = more->GetForm() == Form::Progression && !more->IsRange();
    // All sets are made as non-const objects.
    auto set = std::const_pointer_cast<IndexSet>(taken);
    switch (set->GetForm()) {
        case Form::Bitmap:
            taken = nullptr;
            return SetAccess::AddToBitmap(std::move(set),
                                          strided ? *SetAccess::Unstrided(*more) : *more);
        case Form::Runs:
            if (more->GetForm() != Form::Bitmap && SetAccess::AppendToRuns(*set, *more)) return set;
            break;
        default:
            if (SetAccess::AppendToList(*set, *more)) return set;
            break;
    }
    return Union(taken, more);
}

}  // namespace kov::sets
