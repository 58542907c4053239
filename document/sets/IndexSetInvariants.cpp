// The rules that hold for every index set, executable. They are numbered as the texts name them:
//
//   1  Lowest() and Highest() are 0 and -1 for the empty set, otherwise the bounds of the members.
//   2  A progression is a Progression: no other form holds one.
//   3  A List has 3 to kListLimit members, strictly ascending.
//   4  Runs are neither empty nor touching, end in a sentinel, and their locations add up.
//   5  A Bitmap has more than kListLimit members, as many as its size says.
//   6  An Ordered set is not strictly ascending.
//   7  Strides are at least 1, and 1 for less than two members.

#include <algorithm>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>

#include "document/sets/Bits.h"
#include "document/sets/IndexSet.h"

namespace kov::sets {

namespace {

void Require(bool holds, char const* rule) {
    if (!holds) throw std::logic_error(std::string("index set: rule ") + rule);
}

// Whether ascending members, given by their runs, are a progression.
bool IsProgression(IndexSet const& set) {
    int64_t const span = int64_t{set.Highest()} - set.Lowest();
    if (set.Size() < 2 || span % (set.Size() - 1) != 0) return set.Size() < 2;
    int64_t const stride = span / (set.Size() - 1);
    bool even = true;
    int64_t next = set.Lowest();
    set.ForEachRun([&](int first, int count) {
        even = even && first == next && (count == 1 || stride == 1);
        next = int64_t{first} + (count - 1) + stride;
    });
    return even;
}

}  // namespace

void IndexSet::CheckInvariants() const {
    if (size_ == 0) {
        Require(lowest_ == 0 && highest_ == -1 && form_ == Form::Progression, "1: empty");
        Require(stride_ == 1, "7: the stride of the empty set");
        return;
    }
    Require(0 <= lowest_ && lowest_ <= highest_ && highest_ <= kHighestMember, "1: bounds");
    Require(stride_ == 1 || (form_ == Form::Progression && stride_ > 1 && size_ > 1), "7: stride");
    if (form_ == Form::Progression) {
        Require(lowest_ + (int64_t{size_} - 1) * stride_ == highest_, "1: end of a progression");
        return;
    }
    if (form_ == Form::Ordered) {
        Require(list_.size() == static_cast<size_t>(size_), "6: size");
        auto const [low, high] = std::minmax_element(list_.begin(), list_.end());
        Require(*low == lowest_ && *high == highest_, "1: bounds of an ordered set");
        Require(
            std::adjacent_find(list_.begin(), list_.end(), std::greater_equal<>()) != list_.end(),
            "6: the order is ascending");
        return;
    }
    if (form_ == Form::List) {
        Require(list_.size() == static_cast<size_t>(size_), "3: size");
        Require(3 <= size_ && size_ <= kListLimit, "3: limits");
        Require(list_.front() == lowest_ && list_.back() == highest_, "1: bounds of a list");
        Require(
            std::adjacent_find(list_.begin(), list_.end(), std::greater_equal<>()) == list_.end(),
            "3: the members do not ascend");
    } else if (form_ == Form::Runs) {
        Require(stretches_.size() >= 3, "4: fewer than two runs");
        Stretch const& sentinel = stretches_.back();
        Require(sentinel.first == std::numeric_limits<int>::max() && sentinel.location == size_,
                "4: sentinel");
        Require(stretches_[0].first == lowest_ && stretches_[0].location == 0, "4: the first run");
        for (size_t i = 0; i + 1 < stretches_.size(); ++i) {
            int const length = stretches_[i + 1].location - stretches_[i].location;
            Require(length > 0, "4: an empty run");
            bool const last = i + 2 == stretches_.size();
            int const end = stretches_[i].first + length;
            Require(last ? end - 1 == highest_ : end < stretches_[i + 1].first, "4: runs touch");
        }
    } else {
        Require(size_ > kListLimit, "5: limit");
        Require(bits_->Size() == size_, "5: size");
        Require(bits_->Lowest() == lowest_ && bits_->Highest() == highest_,
                "1: bounds of a bitmap");
    }
    Require(!IsProgression(*this), "2: a progression in another form");
}

}  // namespace kov::sets
