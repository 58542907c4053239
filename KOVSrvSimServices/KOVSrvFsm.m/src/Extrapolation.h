// The loops of the extrapolation (ExtrapolationKernels.h), compiled for vectors of 16, 32 and 64
// bytes. KOVSrvExtrapolation picks among them by what the machine has.
#pragma once

#include <cstddef>

namespace kov::fsm {

/// The sizes of one call. No function may stand here: sources compiled for different machines would
/// share it.
struct ExtrapolationShape {
    std::size_t sourcePoints, targetPoints, components, blocks;
};

/// The sums of KOVSrvExtrapolation for as many blocks as can be done, from the first one on; they
/// answer how many. None of the sizes is 0, and the target overlaps nothing. What was written
/// behind the blocks that are done is without meaning.
std::size_t ExtrapolateOnAnyMachine(ExtrapolationShape const& shape, float const* source,
                                    float* target, float const* coefficients);
std::size_t ExtrapolateOnAnyMachine(ExtrapolationShape const& shape, double const* source,
                                    double* target, float const* coefficients);
#ifdef __x86_64__
std::size_t ExtrapolateWithAvx2(ExtrapolationShape const& shape, float const* source, float* target,
                                float const* coefficients);
std::size_t ExtrapolateWithAvx2(ExtrapolationShape const& shape, double const* source,
                                double* target, float const* coefficients);
std::size_t ExtrapolateWithAvx512(ExtrapolationShape const& shape, float const* source,
                                  float* target, float const* coefficients);
std::size_t ExtrapolateWithAvx512(ExtrapolationShape const& shape, double const* source,
                                  double* target, float const* coefficients);
#endif

}  // namespace kov::fsm
