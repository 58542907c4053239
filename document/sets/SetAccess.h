// How the makers, the algebra and the codec build sets and see what they are made of. Private to
// the sets.
#pragma once

#include <memory>
#include <vector>

#include "document/sets/Bits.h"
#include "document/sets/IndexSet.h"
#include "document/sets/Run.h"

namespace kov::sets {

/// Runs are kept as runs where they have this many members on average: 8 bytes for a run are then
/// half of a list, and a quarter or less of a bitmap's worst case, and merging runs is as fast as
/// merging words of a bitmap.
inline constexpr size_t kSmallRunLength = 8;
inline constexpr size_t kLargeRunLength = 32;

/// The tightest form for members that are no progression.
inline Form TightForm(size_t size, size_t runs) {
    bool const small = size <= static_cast<size_t>(kListLimit);
    if (runs <= size / (small ? kSmallRunLength : kLargeRunLength)) return Form::Runs;
    return small ? Form::List : Form::Bitmap;
}

class SetAccess {
  public:
    /// @name Builders
    /// Members are within bounds; the tightest form is picked.
    /// @{
    static IndexSetPtr FromAscending(int const* members, size_t n);
    static IndexSetPtr FromAscending(std::vector<int>&& members);
    static IndexSetPtr FromBits(Bits&& bits);
    /// `runs`: (n), ascending and disjoint; they may touch, and are joined in place.
    static IndexSetPtr FromTouchingRuns(Run* runs, size_t n);
    /// A List, without looking for a tighter form.
    static IndexSetPtr Listed(std::vector<int>&& members);
    /// A strided set as a List or a Bitmap, for algebra that knows no strides.
    static IndexSetPtr Unstrided(IndexSet const& set);
    /// @}

    /// @name Parts, of a set of the matching form
    /// @{
    static std::vector<int> const& List(IndexSet const& set) { return set.list_; }
    static std::vector<Stretch> const& Stretches(IndexSet const& set) { return set.stretches_; }
    static Bits const& GetBits(IndexSet const& set) { return *set.bits_; }
    /// @}

    /// @name In place
    /// For a set that nobody else holds; both answer false, and leave the set as it was, where that
    /// cannot be done or the result would need another form.
    /// @{
    static bool AppendToRuns(IndexSet& set, IndexSet const& more);
    static bool AppendToList(IndexSet& set, IndexSet const& more);
    /// @}
    /// Adds members to a bitmap that nobody else holds, and gives the result, which may be a
    /// progression.
    static IndexSetPtr AddToBitmap(std::shared_ptr<IndexSet> set, IndexSet const& more);

  private:
    static std::shared_ptr<IndexSet> New();
    static void Forget(IndexSet& set);
};

}  // namespace kov::sets
