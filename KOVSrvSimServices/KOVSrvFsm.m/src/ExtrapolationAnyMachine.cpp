// For vectors that every machine of the architecture has.
#include "Extrapolation.h"
#include "ExtrapolationKernels.h"

namespace kov::fsm {

std::size_t ExtrapolateOnAnyMachine(ExtrapolationShape const& shape, float const* source,
                                    float* target, float const* coefficients) {
    return Extrapolation<float, 16>(shape, coefficients).Run(source, target);
}

std::size_t ExtrapolateOnAnyMachine(ExtrapolationShape const& shape, double const* source,
                                    double* target, float const* coefficients) {
    return Extrapolation<double, 16>(shape, coefficients).Run(source, target);
}

}  // namespace kov::fsm
