#include "document/sets/IndexSet.h"

#include <xxhash.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <stdexcept>
#include <utility>

#include "KOVSimException.h"
#include "document/sets/Bits.h"
#include "document/sets/RunBlock.h"
#include "document/sets/SetAccess.h"

namespace kov::sets {

namespace {

// Publishes what a thread made on demand; the first one wins.
template <class T>
T const& Publish(std::atomic<T const*>& slot, std::unique_ptr<T const> made) {
    T const* seen = nullptr;
    if (slot.compare_exchange_strong(seen, made.get(), std::memory_order_acq_rel)) {
        return *made.release();
    }
    return *seen;
}

// Hashes are stored, so that their bytes are fixed: int32, little-endian, of the three numbers of a
// progression, of the members up to kListLimit of them, otherwise of first and end of each run.
enum HashSeed : uint64_t { kProgressionSeed = 1, kMembersSeed = 2, kRunsSeed = 3 };

uint64_t HashInts(int const* values, size_t n, HashSeed seed) {
    if constexpr (std::endian::native == std::endian::little) {
        return XXH3_64bits_withSeed(values, n * sizeof(int), seed);
    }
    std::vector<unsigned char> bytes;
    bytes.reserve(n * 4);
    for (size_t i = 0; i < n; ++i) {
        auto const v = static_cast<uint32_t>(values[i]);
        for (unsigned shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<unsigned char>(v >> shift));
        }
    }
    return XXH3_64bits_withSeed(bytes.data(), bytes.size(), seed);
}

// Blocks are chained: each is hashed with the hash before it as its seed. RunBlock's block size is
// therefore not part of the result; runs are gathered into blocks of this many here.
constexpr size_t kHashBlock = 1024;

}  // namespace

IndexSet::IndexSet(Private) {}

IndexSet::~IndexSet() {
    delete ascending_.load(std::memory_order_relaxed);
    delete table_.load(std::memory_order_relaxed);
}

IndexSetPtr IndexSet::Ascending() const {
    if (IsAscending()) return shared_from_this();
    if (IndexSetPtr const* known = ascending_.load(std::memory_order_acquire)) return *known;
    auto made = std::make_unique<IndexSetPtr const>(FromMembers(list_.data(), list_.size()));
    return Publish(ascending_, std::move(made));
}

IndexSet const& IndexSet::AscendingForm() const {
    // The pointer stays with this set: what is returned lives as long as it does.
    return IsAscending() ? *this : *Ascending();
}

IndexSet::IntTable const& IndexSet::Table() const {
    if (IntTable const* known = table_.load(std::memory_order_acquire)) return *known;
    if (form_ == Form::Bitmap) {
        return Publish(table_, std::make_unique<IntTable const>(bits_->Ranks()));
    }
    IndexSet const& ascending = AscendingForm();
    auto firsts = std::make_unique<IntTable>(static_cast<size_t>(ascending.size_));
    // Backwards, so that of equal entries the first one stays.
    for (size_t i = list_.size(); i-- > 0;) {
        (*firsts)[static_cast<size_t>(ascending.LocationOf(list_[i]))] = static_cast<int>(i);
    }
    return Publish<IntTable>(table_, std::move(firsts));
}

// The last stretch that starts at or before `member`; REQUIRES: member >= Lowest().
size_t IndexSet::StretchOf(int member) const {
    auto const after = std::upper_bound(stretches_.begin(), stretches_.end() - 1, member,
                                        [](int m, Stretch const& s) { return m < s.first; });
    return static_cast<size_t>(after - stretches_.begin()) - 1;
}

size_t IndexSet::StretchAt(int location) const {
    auto const after = std::upper_bound(stretches_.begin(), stretches_.end() - 1, location,
                                        [](int l, Stretch const& s) { return l < s.location; });
    return static_cast<size_t>(after - stretches_.begin()) - 1;
}

int IndexSet::At(int location) const {
    if (location < 0 || location >= size_) {
        KOVSimException::ThrowIndex("location in an index set", location, size_);
    }
    switch (form_) {
        case Form::Progression:
            return lowest_ + location * stride_;
        case Form::Bitmap:
            return bits_->At(location, Table());
        case Form::Runs: {
            Stretch const& stretch = stretches_[StretchAt(location)];
            return stretch.first + (location - stretch.location);
        }
        default:
            return list_[static_cast<size_t>(location)];
    }
}

bool IndexSet::Contains(int member) const {
    if (member < lowest_ || member > highest_) return false;
    switch (form_) {
        case Form::Progression:
            return (member - lowest_) % stride_ == 0;
        case Form::List:
            return std::binary_search(list_.begin(), list_.end(), member);
        case Form::Bitmap:
            return bits_->Contains(member);
        case Form::Runs: {
            size_t const i = StretchOf(member);
            return member - stretches_[i].first <
                   stretches_[i + 1].location - stretches_[i].location;
        }
        default:
            return AscendingForm().Contains(member);
    }
}

int IndexSet::LocationOf(int member) const {
    if (member < lowest_ || member > highest_) return -1;
    switch (form_) {
        case Form::Progression:
            return (member - lowest_) % stride_ == 0 ? (member - lowest_) / stride_ : -1;
        case Form::List: {
            auto const at = std::lower_bound(list_.begin(), list_.end(), member);
            return *at == member ? static_cast<int>(at - list_.begin()) : -1;
        }
        case Form::Bitmap:
            return bits_->LocationOf(member, Table());
        case Form::Runs: {
            Stretch const* stretch = &stretches_[StretchOf(member)];
            int const within = member - stretch[0].first;
            bool const inside = within < stretch[1].location - stretch[0].location;
            return inside ? stretch[0].location + within : -1;
        }
        default:
            break;
    }
    int const rank = AscendingForm().LocationOf(member);
    return rank < 0 ? -1 : Table()[static_cast<size_t>(rank)];
}

bool IndexSet::ContainsRun(int first, int end) const {
    if (first >= end) return true;
    if (first < lowest_ || end - 1 > highest_) return false;
    switch (form_) {
        case Form::Progression:
            return stride_ == 1 || (end - first == 1 && (first - lowest_) % stride_ == 0);
        case Form::List: {
            auto const at = std::lower_bound(list_.begin(), list_.end(), first);
            auto const last =
                static_cast<size_t>(at - list_.begin()) + static_cast<size_t>(end - first) - 1;
            return *at == first && last < list_.size() && list_[last] == end - 1;
        }
        case Form::Bitmap:
            return bits_->ContainsRun(first, end);
        case Form::Runs: {
            size_t const i = StretchOf(first);
            return end - stretches_[i].first <= stretches_[i + 1].location - stretches_[i].location;
        }
        default:
            return AscendingForm().ContainsRun(first, end);
    }
}

bool IndexSet::IntersectsRun(int first, int end) const {
    first = std::max(first, lowest_);
    if (first >= end || first > highest_) return false;
    switch (form_) {
        case Form::Progression: {
            int64_t const steps = (int64_t{first} - lowest_ + stride_ - 1) / stride_;
            return lowest_ + steps * stride_ < end;
        }
        case Form::List:
            return *std::lower_bound(list_.begin(), list_.end(), first) < end;
        case Form::Bitmap:
            return bits_->IntersectsRun(first, end);
        case Form::Runs: {
            size_t const i = StretchOf(first);
            int const length = stretches_[i + 1].location - stretches_[i].location;
            return first - stretches_[i].first < length || stretches_[i + 1].first < end;
        }
        default:
            return AscendingForm().IntersectsRun(first, end);
    }
}

void IndexSet::CopyStretches(int firstLocation, int count, int* out) const {
    for (size_t i = StretchAt(firstLocation); count > 0; ++i) {
        int const skip = firstLocation - stretches_[i].location;
        int const take = std::min(count, stretches_[i + 1].location - firstLocation);
        int const value = stretches_[i].first + skip;
        for (int k = 0; k < take; ++k) out[k] = value + k;
        out += take;
        count -= take;
        firstLocation += take;
    }
}

void IndexSet::CopyStored(int firstLocation, int count, int* out) const {
    if (firstLocation < 0 || count < 0 || firstLocation > size_ - count) {
        KOVSimException::ThrowIndex(
            "location in an index set",
            firstLocation < 0 ? firstLocation : int64_t{firstLocation} + count, size_);
    }
    if (count == 0) return;
    switch (form_) {
        case Form::Progression:
            for (int k = 0; k < count; ++k) out[k] = lowest_ + (firstLocation + k) * stride_;
            return;
        case Form::Runs:
            CopyStretches(firstLocation, count, out);
            return;
        case Form::Bitmap:
            if (count == size_) {
                bits_->CopyTo(out);
            } else {
                bits_->CopyRange(firstLocation, count, out, Table());
            }
            return;
        default:
            std::copy_n(list_.data() + firstLocation, count, out);
            return;
    }
}

void IndexSet::CopyAscending(int* out) const {
    IndexSet const& ascending = AscendingForm();
    if (ascending.size_ == size_) {
        ascending.CopyStored(out);
        return;
    }
    std::copy(list_.begin(), list_.end(), out);
    std::sort(out, out + size_);
}

bool IndexSet::VisitRuns(RunSink sink, void* context) const {
    RunBlock block(sink, context);
    switch (form_) {
        case Form::Bitmap:
            return bits_->VisitRuns(sink, context);
        case Form::Ordered:
            return AscendingForm().VisitRuns(sink, context);
        case Form::Progression:
            if (size_ > 0 && stride_ == 1) {
                if (!block.Add(lowest_, highest_ + 1)) return false;
                break;
            }
            for (int k = 0; k < size_; ++k) {
                int const member = lowest_ + k * stride_;
                if (!block.Add(member, member + 1)) return false;
            }
            break;
        case Form::List:
            for (int const member : list_) {
                if (!block.Add(member, member + 1)) return false;
            }
            break;
        case Form::Runs:
            for (size_t i = 0; i + 1 < stretches_.size(); ++i) {
                int const length = stretches_[i + 1].location - stretches_[i].location;
                if (!block.Add(stretches_[i].first, stretches_[i].first + length)) return false;
            }
            break;
    }
    return block.Finish();
}

bool IndexSet::VisitStoredRuns(RunSink sink, void* context) const {
    if (IsAscending()) return VisitRuns(sink, context);
    RunBlock block(sink, context);
    for (int const member : list_) {
        if (!block.Add(member, member + 1)) return false;
    }
    return block.Finish();
}

size_t IndexSet::CountRuns() const {
    switch (form_) {
        case Form::Progression:
            return stride_ > 1 ? static_cast<size_t>(size_) : (size_ > 0 ? 1U : 0U);
        case Form::Runs:
            return stretches_.size() - 1;
        case Form::Bitmap:
            return bits_->CountRuns(std::numeric_limits<size_t>::max());
        case Form::Ordered:
            return AscendingForm().CountRuns();
        case Form::List:
            break;
    }
    size_t runs = 1;
    for (size_t i = 1; i < list_.size(); ++i) runs += list_[i] != list_[i - 1] + 1 ? 1U : 0U;
    return runs;
}

bool IndexSet::SameMembers(IndexSet const& other) const {
    if (this == &other) return true;
    IndexSet const& a = AscendingForm();
    IndexSet const& b = other.AscendingForm();
    if (a.size_ != b.size_ || a.lowest_ != b.lowest_ || a.highest_ != b.highest_) return false;
    if (a.form_ == Form::Progression || b.form_ == Form::Progression) return a.form_ == b.form_;
    if (a.form_ == b.form_ && a.form_ == Form::List) return a.list_ == b.list_;
    if (a.form_ == b.form_ && a.form_ == Form::Bitmap) return a.bits_->Equals(*b.bits_);
    // Of equal size, what contains the other is the other.
    return a.form_ == Form::Runs ? IsSubset(a, b) : IsSubset(b, a);
}

uint64_t IndexSet::Hash() const {
    if (!IsAscending()) return AscendingForm().Hash();
    if (uint64_t const known = hash_.load(std::memory_order_relaxed)) return known;
    uint64_t hash;
    if (form_ == Form::Progression) {
        int const numbers[] = {size_ > 0 ? lowest_ : 0, size_, stride_};
        hash = HashInts(numbers, 3, kProgressionSeed);
    } else if (form_ == Form::List) {
        hash = HashInts(list_.data(), list_.size(), kMembersSeed);
    } else if (size_ <= kListLimit) {
        std::vector<int> members(static_cast<size_t>(size_));
        CopyStored(members.data());
        hash = HashInts(members.data(), members.size(), kMembersSeed);
    } else {
        std::vector<int> ends;
        ends.reserve(2 * kHashBlock);
        hash = kRunsSeed;
        auto const flush = [&] {
            hash = HashInts(ends.data(), ends.size(), static_cast<HashSeed>(hash));
            ends.clear();
        };
        ForEachRun([&](int first, int count) {
            ends.push_back(first);
            ends.push_back(first + count);
            if (ends.size() == 2 * kHashBlock) flush();
        });
        if (!ends.empty()) flush();
    }
    if (hash == 0) hash = 1;
    hash_.store(hash, std::memory_order_relaxed);
    return hash;
}

IndexSet::Cursor::Cursor(IndexSetPtr set) : set_(std::move(set)), size_(set_->Size()) { Restart(); }

void IndexSet::Cursor::Restart() {
    location_ = 0;
    Fill();
}

void IndexSet::Cursor::Fill() {
    bufferStart_ = location_;
    bufferEnd_ = location_ + std::min(kCapacity, size_ - location_);
    if (bufferEnd_ > bufferStart_) {
        set_->CopyStored(bufferStart_, bufferEnd_ - bufferStart_, buffer_.data());
    }
}

}  // namespace kov::sets
