// The index set: an immutable set of int32 members, shared between everything that names it.
//
// Sets are values. What changes is which set a holder points at, never a set that two holders see,
// so copies are one pointer and need no lock. A set takes the tightest of five forms:
//
//   Progression  first, count, stride: contiguous and strided sets of any size, a few words
//   Runs         sorted runs, where they are long: one pair of ints each
//   List         sorted array, up to kListLimit members
//   Bitmap       Roaring bitmap, for large sets without long runs
//   Ordered      an array in the order that was given, with its ascending form made on demand
//
// A set that is an arithmetic progression always has the form Progression, however it came about.
// Members are 0 to kHighestMember: a collection has at most INT_MAX members, so its last index is
// one less, and neither a size nor the end of a run can wrap.
//
// Used by the collections and sets, the drawers and the catalogue. Any number of threads may use
// one set; what is computed on demand is published atomically. Nobody keeps weak pointers to sets:
// UnionInto relies on the use count.
#pragma once

#include <array>
#include <atomic>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "document/sets/Run.h"

namespace kov::sets {

class Bits;
class IndexSet;
using IndexSetPtr = std::shared_ptr<IndexSet const>;

enum class Form { Progression, List, Bitmap, Ordered, Runs };

inline constexpr int kHighestMember = INT_MAX - 1;
/// A List has at most this many members; larger sets without long runs are Bitmaps.
inline constexpr int kListLimit = 4096;

class IndexSet : public std::enable_shared_from_this<IndexSet> {
    struct Private {};

  public:
    class Cursor;

    /// @name Makers
    /// All throw KOVSimException for a member below 0 or above kHighestMember, or a negative count.
    /// @{
    static IndexSetPtr Empty();
    /// The members first, first + 1, ..., `count` of them.
    static IndexSetPtr Range(int first, int count);
    /// The members first, first + stride, ..., `count` of them; stride >= 1 where count > 1.
    static IndexSetPtr Strided(int first, int count, int stride);
    /// The ascending set of `members`: (n), in any order; duplicates are dropped.
    static IndexSetPtr FromMembers(int const* members, size_t n);
    /// The set of `members`: (n), in the order given. Strictly ascending members give the ascending
    /// form. A member given twice stands twice: Size() counts both, so that a buffer laid out by
    /// the caller's array fits; the ascending form has it once.
    static IndexSetPtr FromOrdered(int const* members, size_t n);
    /// The ascending set of runs: (n), ascending, neither overlapping nor touching; not checked.
    static IndexSetPtr FromRuns(Run const* runs, size_t n);
    /// @}

    /// The number of entries in stored order.
    int Size() const { return size_; }
    bool IsEmpty() const { return size_ == 0; }
    /// Whether stored order is strictly ascending; true for the empty set.
    bool IsAscending() const { return form_ != Form::Ordered; }
    Form GetForm() const { return form_; }
    /// Whether the members are a single run; true for the empty set.
    bool IsRange() const { return form_ == Form::Progression && stride_ == 1; }
    /// The distance of neighbours in a Progression of two or more members, otherwise 1.
    int Stride() const { return stride_; }

    /// The lowest and the highest member; 0 and -1 for the empty set.
    int Lowest() const { return lowest_; }
    int Highest() const { return highest_; }

    /// The member at a location of stored order; throws KOVSimException outside [0, Size()).
    int At(int location) const;
    bool Contains(int member) const;
    /// The first location of a member in stored order, or -1.
    int LocationOf(int member) const;
    /// Whether all of [first, end) are members; true if that is empty.
    bool ContainsRun(int first, int end) const;
    /// Whether any of [first, end) is a member.
    bool IntersectsRun(int first, int end) const;

    /// Writes exactly Size() entries in ascending order (an entry held twice is written twice).
    void CopyAscending(int* out) const;
    /// Writes exactly Size() entries in stored order.
    void CopyStored(int* out) const { CopyStored(0, size_, out); }
    /// Writes the entries at locations [firstLocation, firstLocation + count) of stored order.
    /// Throws KOVSimException where that is not within [0, Size()].
    void CopyStored(int firstLocation, int count, int* out) const;

    /// The same members ascending: the set itself if it is so already, otherwise made once and
    /// kept.
    IndexSetPtr Ascending() const;

    /// Equal as sets, whatever order and form.
    bool SameMembers(IndexSet const& other) const;
    /// Equal for sets with the same members, whatever order and form, and the same in every version
    /// and on every machine, so that it may be stored. Never 0. A few nanoseconds for progressions;
    /// for others a pass over members or runs, once.
    uint64_t Hash() const;

    /// Calls f(int first, int count) for each maximal run of the ascending form, ascending.
    template <class F>
    void ForEachRun(F&& f) const;
    /// Calls f(int first, int count) for each maximal stretch in stored order in which each entry
    /// is one more than the entry before it.
    template <class F>
    void ForEachStoredRun(F&& f) const;
    /// Gives the runs of the ascending form to `sink` in blocks; false if the sink stopped it.
    bool VisitRuns(RunSink sink, void* context) const;
    /// The number of maximal runs of the ascending form.
    size_t CountRuns() const;

    /// Throws std::logic_error naming the first broken rule of the representation; for tests and
    /// debug builds.
    void CheckInvariants() const;

    explicit IndexSet(Private);
    ~IndexSet();
    IndexSet(IndexSet const&) = delete;
    IndexSet& operator=(IndexSet const&) = delete;

  private:
    friend class SetAccess;

    using IntTable = std::vector<int>;

    Form form_ = Form::Progression;
    int size_ = 0;
    int lowest_ = 0;
    int highest_ = -1;
    int stride_ = 1;
    mutable std::atomic<uint64_t> hash_{0};
    std::vector<int> list_;           // List, Ordered
    std::vector<Stretch> stretches_;  // Runs, with its sentinel
    std::unique_ptr<Bits> bits_;      // Bitmap
    // Made on demand. The table has, for a Bitmap, what Bits::Ranks gives; for an Ordered set the
    // first location of each member, by its place in the ascending form.
    mutable std::atomic<IndexSetPtr const*> ascending_{nullptr};
    mutable std::atomic<IntTable const*> table_{nullptr};

    IndexSet const& AscendingForm() const;
    IntTable const& Table() const;
    bool VisitStoredRuns(RunSink sink, void* context) const;
    size_t StretchOf(int member) const;
    size_t StretchAt(int location) const;
    void CopyStretches(int firstLocation, int count, int* out) const;
};

/// @name Algebra
/// Results are ascending and in the tightest form. Costs follow the number of runs, list members
/// and bitmap containers of the operands, never the size of a contiguous one. Null operands are not
/// allowed.
/// @{
IndexSetPtr Union(IndexSetPtr const& a, IndexSetPtr const& b);
IndexSetPtr Intersection(IndexSetPtr const& a, IndexSetPtr const& b);
/// The members of `a` that are not in `b`.
IndexSetPtr Difference(IndexSetPtr const& a, IndexSetPtr const& b);
bool IsSubset(IndexSet const& inner, IndexSet const& outer);
bool Intersects(IndexSet const& a, IndexSet const& b);
/// As Union, but takes `left` over: where the caller held its only reference the result may be made
/// in its storage, so that appending n members to a large set costs O(n). `left` is null
/// afterwards.
IndexSetPtr UnionInto(IndexSetPtr&& left, IndexSetPtr const& right);
/// @}

/// @name Stored form; see IndexSetCodec.cpp for the bytes
/// @{
/// Appends the stored form of `set` to `out`.
void Encode(IndexSet const& set, std::string& out);
/// The set that `bytes`: (n) describe. Damaged bytes give null, and name the first fault in `error`
/// (may be null). Takes time and memory in proportion to n, whatever the bytes are.
IndexSetPtr Decode(void const* bytes, size_t n, std::string* error);
/// @}

/// Goes through a set in stored order. Holds the set, and a small buffer of entries.
class IndexSet::Cursor {
  public:
    Cursor() = default;
    explicit Cursor(IndexSetPtr set);

    bool Done() const { return location_ >= size_; }
    /// The entry at hand. REQUIRES: !Done().
    int Value() const { return buffer_[static_cast<size_t>(location_ - bufferStart_)]; }
    /// Its 0-based place in stored order.
    int Location() const { return location_; }
    /// REQUIRES: !Done().
    void Next() {
        if (++location_ == bufferEnd_) Fill();
    }
    /// Back to the first entry.
    void Restart();

  private:
    static constexpr int kCapacity = 128;

    void Fill();

    IndexSetPtr set_;
    int location_ = 0;
    int size_ = 0;
    int bufferStart_ = 0;
    int bufferEnd_ = 0;
    std::array<int, kCapacity> buffer_;
};

template <class F>
void IndexSet::ForEachRun(F&& f) const {
    using Call = std::remove_reference_t<F>;
    VisitRuns(
        [](void* context, Run const* runs, size_t count) {
            Call& call = *static_cast<Call*>(context);
            for (size_t i = 0; i < count; ++i) call(runs[i].first, runs[i].end - runs[i].first);
            return true;
        },
        const_cast<void*>(static_cast<void const*>(std::addressof(f))));
}

template <class F>
void IndexSet::ForEachStoredRun(F&& f) const {
    using Call = std::remove_reference_t<F>;
    VisitStoredRuns(
        [](void* context, Run const* runs, size_t count) {
            Call& call = *static_cast<Call*>(context);
            for (size_t i = 0; i < count; ++i) call(runs[i].first, runs[i].end - runs[i].first);
            return true;
        },
        const_cast<void*>(static_cast<void const*>(std::addressof(f))));
}

}  // namespace kov::sets
