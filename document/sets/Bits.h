// Bits: a Roaring bitmap of int32 members, for large sets without long runs.
//
// A thin owner of a CRoaring bitmap. Building, reading out, cutting and counting runs go straight
// to the containers, because the library's own calls go member by member there. Everything that
// knows the layout of containers stands in Bits.cpp and BitsContainers.cpp. Copy-on-write is never
// used: its counters are not atomic, and sets are shared between threads.
//
// Members are within [0, INT_MAX); runs are half-open. Private to the sets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "document/sets/BitsKernels.h"
#include "document/sets/Run.h"

struct roaring_bitmap_s;

namespace kov::sets {

class Bits {
  public:
    Bits();
    Bits(Bits&& other) noexcept;
    Bits& operator=(Bits&& other) noexcept;
    ~Bits();

    /// `members`: (n), strictly ascending.
    static Bits FromAscending(int const* members, size_t n);
    /// `runs`: (n), ascending and disjoint.
    static Bits FromRuns(Run const* runs, size_t n);
    static Bits FromStrided(int first, int count, int stride);
    Bits Clone() const;

    int64_t Size() const;
    bool IsEmpty() const;
    int Lowest() const;   ///< REQUIRES: not empty.
    int Highest() const;  ///< REQUIRES: not empty.
    bool Contains(int member) const;
    bool ContainsRun(int first, int end) const;
    bool IntersectsRun(int first, int end) const;
    bool Intersects(Bits const& other) const;
    bool IsSubsetOf(Bits const& other) const;
    bool Equals(Bits const& other) const;

    void CopyTo(int* out) const;
    /// Gives the maximal runs to `sink` in blocks; false if it stopped the visit.
    bool VisitRuns(RunSink sink, void* context) const;
    /// The number of runs, or some number above `limit` as soon as it is known to be larger.
    size_t CountRuns(size_t limit) const;

    /// How many members stand before each container, and the size at the end: what At and
    /// LocationOf search.
    std::vector<int> Ranks() const;
    int At(int location, std::vector<int> const& ranks) const;
    int LocationOf(int member, std::vector<int> const& ranks) const;
    /// Writes the members at locations [first, first + count).
    void CopyRange(int first, int count, int* out, std::vector<int> const& ranks) const;

    /// @name Against one run: containers are copied or left out whole, and only those at its ends
    /// cut
    /// @{
    Bits Slice(int first, int end) const;
    Bits Without(int first, int end) const;
    Bits With(int first, int end) const;
    /// The members of [first, end) that are not here.
    Bits GapsWithin(int first, int end) const;
    /// @}

    static Bits And(Bits const& a, Bits const& b);
    static Bits Or(Bits const& a, Bits const& b);
    static Bits AndNot(Bits const& a, Bits const& b);

    /// @name In place
    /// Adders answer how many members are new.
    /// @{
    int64_t Add(int const* members, size_t n);
    void AddRun(int first, int end);
    void Remove(int const* members, size_t n);
    void Or(Bits const& other);
    /// @}

    /// Gives containers that take less room as runs that form.
    void Optimize();

  private:
    explicit Bits(roaring_bitmap_s* owned);
    static Bits Combined(WordOp op, Bits const& a, Bits const& b);

    roaring_bitmap_s* roaring_;
};

}  // namespace kov::sets
