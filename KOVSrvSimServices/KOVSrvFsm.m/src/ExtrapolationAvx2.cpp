// Compiled for machines with AVX2.
#include "Extrapolation.h"
#include "ExtrapolationKernels.h"

namespace kov::fsm {

std::size_t ExtrapolateWithAvx2(ExtrapolationShape const& shape, float const* source, float* target,
                                float const* coefficients) {
    return Extrapolation<float, 32>(shape, coefficients).Run(source, target);
}

std::size_t ExtrapolateWithAvx2(ExtrapolationShape const& shape, double const* source,
                                double* target, float const* coefficients) {
    return Extrapolation<double, 32>(shape, coefficients).Run(source, target);
}

}  // namespace kov::fsm
