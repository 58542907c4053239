// Placing: where an instance stands in the assembly: a translation, and behind it a rotation about
// an axis that is given in the assembly's frame.
//
// It is kept as a matrix of 3 rows of 4, row by row: the rotation, and in the last column what is
// added. A placing without rotation adds and does nothing else, so that such coordinates are
// exactly the sums; one that moves nothing leaves every bit.
#pragma once

#include <array>

namespace kov::tool {

/// True if the distance of two points is a number along each axis.
bool WithinRange(double const* a, double const* b);

class Placing {
  public:
    /// Moves nothing.
    Placing() = default;
    /// Moves by `translation`, 3 numbers.
    static Placing Translated(double const* translation);
    /// Moves by `translation`, then turns by `degrees` about the axis from `a` to `b`,
    /// right-handed; 3 numbers each. The axis has a length.
    static Placing Rotated(double const* translation, double const* a, double const* b,
                           double degrees);

    bool MovesNothing() const { return m_kind == Kind::None; }
    /// True if all 12 numbers are finite.
    bool IsFinite() const;
    /// Takes a point, 3 numbers, from the part's frame to the assembly's. False if the result is
    /// beyond the range of numbers.
    bool Apply(double* xyz) const;
    /// 3 rows of 4, row by row.
    std::array<double, 12> const& Matrix() const { return m_matrix; }

  private:
    enum class Kind { None, Translation, Rotation };

    Kind m_kind = Kind::None;
    std::array<double, 12> m_matrix = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
};

/// The direction from `a` to `b`, 3 numbers each, of length 1. False if there is none: the points
/// stand in one place, or lie further apart than numbers reach.
bool Direction(double const* a, double const* b, double* direction);

}  // namespace kov::tool
