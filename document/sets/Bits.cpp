#include "document/sets/Bits.h"

#include <roaring/roaring.h>

#include <algorithm>
#include <new>
#include <utility>

#include "document/sets/BitsContainers.h"

namespace kov::sets {

namespace {

roaring_bitmap_t* Checked(roaring_bitmap_t* made) {
    if (made == nullptr) throw std::bad_alloc();
    return made;
}

// The index of the first container whose key is not below `key`.
int32_t LowerContainer(roaring_array_t const& array, int key) {
    return static_cast<int32_t>(std::lower_bound(array.keys, array.keys + array.size, key) -
                                array.keys);
}

void AppendCopies(roaring_bitmap_t* to, roaring_bitmap_t const* from, int32_t begin, int32_t end) {
    if (begin < end) {
        ra_append_copy_range(&to->high_low_container, &from->high_low_container, begin, end, false);
    }
}

uint32_t U(int value) { return static_cast<uint32_t>(value); }

}  // namespace

Bits::Bits() : roaring_(Checked(roaring_bitmap_create())) {}
Bits::Bits(roaring_bitmap_s* owned) : roaring_(Checked(owned)) {}
Bits::Bits(Bits&& other) noexcept : roaring_(std::exchange(other.roaring_, nullptr)) {}
Bits& Bits::operator=(Bits&& other) noexcept {
    std::swap(roaring_, other.roaring_);
    return *this;
}
Bits::~Bits() {
    if (roaring_ != nullptr) roaring_bitmap_free(roaring_);
}

Bits Bits::FromAscending(int const* members, size_t n) {
    Bits bits;
    for (size_t i = 0; i < n;) {
        int const key = members[i] >> 16;
        int const* const begin = members + i;
        int const* const window = begin + std::min<size_t>(n - i, 0x10000);
        int const* const end = std::upper_bound(begin, window, key << 16 | 0xffff);
        AppendMembers(bits.roaring_->high_low_container, key, begin,
                      static_cast<size_t>(end - begin));
        i += static_cast<size_t>(end - begin);
    }
    return bits;
}

Bits Bits::FromRuns(Run const* runs, size_t n) {
    Bits bits;
    std::vector<Run> pieces;
    int key = -1;
    auto const flush = [&] {
        if (!pieces.empty()) AppendRuns(bits.roaring_->high_low_container, key, pieces);
        pieces.clear();
    };
    for (size_t i = 0; i < n; ++i) {
        int first = runs[i].first;
        while (first < runs[i].end) {
            if (first >> 16 != key) {
                flush();
                key = first >> 16;
            }
            int const last = std::min(runs[i].end - 1, first | 0xffff);
            pieces.push_back({first & 0xffff, (last & 0xffff) + 1});
            first = last + 1;
        }
    }
    flush();
    return bits;
}

Bits Bits::FromStrided(int first, int count, int stride) {
    Bits bits;
    std::vector<int> members;
    int64_t const end = first + int64_t{count} * stride;
    for (int64_t at = first; at < end;) {
        int const key = static_cast<int>(at >> 16);
        members.clear();
        for (; at < end && at >> 16 == key; at += stride) members.push_back(static_cast<int>(at));
        AppendMembers(bits.roaring_->high_low_container, key, members.data(), members.size());
    }
    return bits;
}

Bits Bits::Clone() const { return Bits(roaring_bitmap_copy(roaring_)); }

int64_t Bits::Size() const {
    return static_cast<int64_t>(roaring_bitmap_get_cardinality(roaring_));
}
bool Bits::IsEmpty() const { return roaring_bitmap_is_empty(roaring_); }
int Bits::Lowest() const { return static_cast<int>(roaring_bitmap_minimum(roaring_)); }
int Bits::Highest() const { return static_cast<int>(roaring_bitmap_maximum(roaring_)); }
bool Bits::Contains(int member) const {
    return member >= 0 && roaring_bitmap_contains(roaring_, U(member));
}
bool Bits::ContainsRun(int first, int end) const {
    return roaring_bitmap_contains_range(roaring_, U(first), U(end));
}
bool Bits::IntersectsRun(int first, int end) const {
    roaring_uint32_iterator_t next;
    roaring_init_iterator(roaring_, &next);
    return roaring_move_uint32_iterator_equalorlarger(&next, U(first)) &&
           next.current_value < U(end);
}
bool Bits::Intersects(Bits const& other) const {
    return roaring_bitmap_intersect(roaring_, other.roaring_);
}
bool Bits::IsSubsetOf(Bits const& other) const {
    return roaring_bitmap_is_subset(roaring_, other.roaring_);
}
bool Bits::Equals(Bits const& other) const {
    return roaring_bitmap_equals(roaring_, other.roaring_);
}

void Bits::CopyTo(int* out) const {
    auto const& array = roaring_->high_low_container;
    for (int32_t i = 0; i < array.size; ++i) {
        int const count = ContainerSize(array, i);
        CopyContainer(array, i, 0, count, out);
        out += count;
    }
}

bool Bits::VisitRuns(RunSink sink, void* context) const {
    auto const& array = roaring_->high_low_container;
    RunBlock block(sink, context);
    for (int32_t i = 0; i < array.size; ++i) {
        if (!VisitContainerRuns(array, i, block)) return false;
    }
    return block.Finish();
}

size_t Bits::CountRuns(size_t limit) const {
    auto const& array = roaring_->high_low_container;
    size_t runs = 0;
    int previousEnd = -1;
    for (int32_t i = 0; i < array.size && runs <= limit; ++i) {
        runs += ContainerRuns(array, i, previousEnd);
    }
    return runs;
}

std::vector<int> Bits::Ranks() const {
    auto const& array = roaring_->high_low_container;
    std::vector<int> ranks;
    ranks.reserve(static_cast<size_t>(array.size) + 1);
    int rank = 0;
    for (int32_t i = 0; i < array.size; ++i) {
        ranks.push_back(rank);
        rank += ContainerSize(array, i);
    }
    ranks.push_back(rank);
    return ranks;
}

int Bits::At(int location, std::vector<int> const& ranks) const {
    int member = 0;
    CopyRange(location, 1, &member, ranks);
    return member;
}

int Bits::LocationOf(int member, std::vector<int> const& ranks) const {
    auto const& array = roaring_->high_low_container;
    int32_t const i = LowerContainer(array, member >> 16);
    if (member < 0 || i == array.size || array.keys[i] != member >> 16) return -1;
    int const within = RankInContainer(array, i, member & 0xffff);
    return within < 0 ? -1 : ranks[static_cast<size_t>(i)] + within;
}

void Bits::CopyRange(int first, int count, int* out, std::vector<int> const& ranks) const {
    auto const& array = roaring_->high_low_container;
    auto i = static_cast<int32_t>(std::upper_bound(ranks.begin(), ranks.end(), first) -
                                  ranks.begin() - 1);
    while (count > 0) {
        int const start = ranks[static_cast<size_t>(i)];
        int const take = std::min(count, ranks[static_cast<size_t>(i) + 1] - first);
        CopyContainer(array, i, first - start, take, out);
        out += take;
        first += take;
        count -= take;
        ++i;
    }
}

Bits Bits::Slice(int first, int end) const {
    auto const& array = roaring_->high_low_container;
    int const firstKey = first >> 16;
    int const lastKey = (end - 1) >> 16;
    Bits slice;
    AppendCopies(slice.roaring_, roaring_, LowerContainer(array, firstKey),
                 LowerContainer(array, lastKey + 1));
    if (slice.IsEmpty()) return slice;
    int const below = firstKey << 16;
    if (below < first) roaring_bitmap_remove_range_closed(slice.roaring_, U(below), U(first - 1));
    uint32_t const above = (U(lastKey) << 16) | 0xffffU;
    if (U(end) <= above) roaring_bitmap_remove_range_closed(slice.roaring_, U(end), above);
    return slice;
}

Bits Bits::Without(int first, int end) const {
    auto const& array = roaring_->high_low_container;
    Bits rest;
    int32_t const left = LowerContainer(array, (first >> 16) + 1);
    int32_t const right = LowerContainer(array, (end - 1) >> 16);
    AppendCopies(rest.roaring_, roaring_, 0, left);
    AppendCopies(rest.roaring_, roaring_, std::max(left, right), array.size);
    if (!rest.IsEmpty()) roaring_bitmap_remove_range_closed(rest.roaring_, U(first), U(end - 1));
    return rest;
}

Bits Bits::With(int first, int end) const {
    auto const& array = roaring_->high_low_container;
    Bits sum;
    int32_t const left = LowerContainer(array, (first >> 16) + 1);
    int32_t const right = LowerContainer(array, (end - 1) >> 16);
    AppendCopies(sum.roaring_, roaring_, 0, left);
    AppendCopies(sum.roaring_, roaring_, std::max(left, right), array.size);
    roaring_bitmap_add_range_closed(sum.roaring_, U(first), U(end - 1));
    return sum;
}

Bits Bits::GapsWithin(int first, int end) const {
    Bits const slice = Slice(first, end);
    return Bits(roaring_bitmap_flip(slice.roaring_, U(first), U(end)));
}

Bits Bits::Combined(WordOp op, Bits const& a, Bits const& b) {
    Bits result;
    Combine(op, a.roaring_->high_low_container, b.roaring_->high_low_container,
            result.roaring_->high_low_container);
    return result;
}
Bits Bits::And(Bits const& a, Bits const& b) { return Combined(WordOp::And, a, b); }
Bits Bits::Or(Bits const& a, Bits const& b) { return Combined(WordOp::Or, a, b); }
Bits Bits::AndNot(Bits const& a, Bits const& b) { return Combined(WordOp::AndNot, a, b); }

int64_t Bits::Add(int const* members, size_t n) {
    int64_t added = 0;
    for (size_t i = 0; i < n; ++i) {
        added += roaring_bitmap_add_checked(roaring_, U(members[i])) ? 1 : 0;
    }
    return added;
}
void Bits::AddRun(int first, int end) {
    roaring_bitmap_add_range_closed(roaring_, U(first), U(end - 1));
}
void Bits::Remove(int const* members, size_t n) {
    for (size_t i = 0; i < n; ++i) roaring_bitmap_remove(roaring_, U(members[i]));
}
void Bits::Or(Bits const& other) { roaring_bitmap_or_inplace(roaring_, other.roaring_); }

void Bits::Optimize() { roaring_bitmap_run_optimize(roaring_); }

}  // namespace kov::sets
