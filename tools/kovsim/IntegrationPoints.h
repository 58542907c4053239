// IntegrationPoints: where the integration points of an element lie, and the coefficients that
// carry values from them to its nodes.
//
// Nothing is typed in but the corners of the parent elements: nodes lie at corners and in the
// middle of edges, points are the zeros and formulas named below, and the coefficients follow from
// both. With n points the n simplest functions of the shape are taken (those of the element of
// first or second order that has as many nodes, where there is one); the coefficients make one
// field of them that takes the given values at the points, and read it off at the nodes. Every such
// function is therefore reproduced exactly, up to the rounding of the coefficients to float.
//
// Parent elements: lines, quadrilaterals and hexahedra [-1, 1] in each direction; triangles and
// tetrahedra with the corners 0 and 1 in each direction; wedges a triangle by [-1, 1]; pyramids
// with the base [-1, 1] by [-1, 1] and the apex (0, 0, 1).
//
// Sources: O. C. Zienkiewicz, R. L. Taylor, The Finite Element Method, 5th edition, volume 1
// (2000), chapters 8 and 9 (shape functions, rules); A. H. Stroud, Approximate Calculation of
// Multiple Integrals (1971), formula Tn 2-1 (simplices); C. A. Felippa, A compendium of FEM
// integration formulas for symbolic work, Engineering Computations 21 (2004) 867-890 (pyramid); E.
// Hinton, J. S. Campbell, Local and global smoothing of discontinuous finite element functions
// using a least squares method, Int. J. Numer. Meth. Eng. 8 (1974) 461-480 (carrying values to
// nodes).
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "ElementTypes.h"

namespace kov::tool {

struct IntegrationPoints {
    using Place = std::array<double, 3>;

    /// In the coordinates of the parent element. In lines, quadrilaterals and hexahedra the first
    /// direction runs fastest; point i of a triangle or tetrahedron is the one next to corner i; in
    /// wedges the points of the triangle run faster than the axis; a pyramid has the one next to
    /// its apex last.
    std::vector<Place> points;
    /// They sum up to the measure of the parent element.
    std::vector<double> weights;
    /// The nodes of the element, in the order of a deck.
    std::vector<Place> nodes;
    /// (nodes, points), row-major: the coefficients as KOVSrvExtrapolation takes them.
    std::vector<float> toNodes;
};

/// The rule with so many points for elements of this type; nothing where there is none. There are
/// rules with 1, 2, 3 points for lines; 1, 3 for triangles; 1, 4, 9 for quadrilaterals; 1, 4 for
/// tetrahedra; 1, 5 for pyramids; 1, 2, 6, 9 for wedges; 1, 8, 27 for hexahedra. Computed at each
/// call, which takes some microseconds.
std::optional<IntegrationPoints> FindIntegrationPoints(ElementType const& type, int pointCount);

}  // namespace kov::tool
