// KOVSrvExtrapolation: values at one set of points of a block carried over to another set of points
// of the same block, such as from the integration points of elements to their nodes.
//
// One small dense matrix serves all blocks; where its coefficients come from is the caller's
// affair. Plain arrays in, plain arrays out: the class has no state and knows no document. The sums
// are those of the plain loop, rounding for rounding and in the same order, on every machine.
// Callable from any thread.
#pragma once

#include "KOVExport.h"

class KOV_EXPORT KOVSrvExtrapolation {
  public:
    /// target(b, o, c) = sum over i, ascending, of coefficients(o, i) * source(b, i, c).
    ///
    /// `source`: (blocks, sourcePoints, components), row-major; `target`: (blocks, targetPoints,
    /// components), row-major, overwritten; `coefficients`: (targetPoints, sourcePoints),
    /// row-major. All are the caller's, and nothing checks that they are long enough. Without
    /// blocks, components or target points nothing is written; without source points zeros are.
    /// Negative numbers of points are outside the contract.
    ///
    /// Each product and each sum is rounded to float.
    static void ExtrapolateSinglePrecision(int sourcePoints, int targetPoints, int components,
                                           int blocks, float const* source, float* target,
                                           float const* coefficients);
    /// The same for doubles; the coefficients are float here too and are widened exactly. Each
    /// product and each sum is rounded to double.
    static void ExtrapolateDoublePrecision(int sourcePoints, int targetPoints, int components,
                                           int blocks, double const* source, double* target,
                                           float const* coefficients);
};
