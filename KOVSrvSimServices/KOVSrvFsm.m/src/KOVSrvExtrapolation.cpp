#include "KOVSrvExtrapolation.h"

#include <cstddef>
#include <functional>

#include "ExtrapolationKernels.h"

namespace {

using kov::fsm::ExtrapolationShape;

// From so many components on, lanes along the components are all but filled.
constexpr std::size_t kManyComponents = 32;
// For fewer blocks than this the tables do not pay.
constexpr std::size_t kFewBlocks = 8;

/// The sums as they are defined.
template <class Value>
void ExtrapolatePlainly(ExtrapolationShape const& shape, Value const* source, Value* target,
                        float const* coefficients) {
    for (std::size_t b = 0; b < shape.blocks; ++b) {
        for (std::size_t c = 0; c < shape.components; ++c) {
            for (std::size_t o = 0; o < shape.targetPoints; ++o) {
                Value* const to = target + (b * shape.targetPoints + o) * shape.components + c;
                Value sum = 0;
                *to = sum;
                for (std::size_t i = 0; i < shape.sourcePoints; ++i) {
                    Value const product =
                        static_cast<Value>(coefficients[o * shape.sourcePoints + i]) *
                        source[(b * shape.sourcePoints + i) * shape.components + c];
                    sum += product;
                    *to = sum;
                }
            }
        }
    }
}

template <class Value>
bool ExtrapolateInLanes(ExtrapolationShape const& shape, Value const* source, Value* target,
                        float const* coefficients) {
    if (shape.components >= kManyComponents) {
        kov::fsm::ExtrapolateAlongComponents<Value>(shape, coefficients).Run(source, target);
        return true;
    }
    kov::fsm::ExtrapolateAlongOutputs<Value> outputs(shape, coefficients);
    if (!outputs.IsReady()) return false;
    outputs.Run(source, target);
    return true;
}

template <class Value, class Other>
bool Overlap(Value const* a, std::size_t na, Other const* b, std::size_t nb) {
    std::less<void const*> const before;
    return before(a, b + nb) && before(b, a + na);
}

template <class Value>
void Extrapolate(int sourcePoints, int targetPoints, int components, int blocks,
                 Value const* source, Value* target, float const* coefficients) {
    if (targetPoints <= 0 || components <= 0 || blocks <= 0) return;
    ExtrapolationShape const shape{static_cast<std::size_t>(sourcePoints > 0 ? sourcePoints : 0),
                                   static_cast<std::size_t>(targetPoints),
                                   static_cast<std::size_t>(components),
                                   static_cast<std::size_t>(blocks)};
    std::size_t const values = shape.components * shape.blocks;
    // Where what is written is also read, the order of the plain loop is part of the result.
    bool const overlap =
        Overlap(target, shape.targetPoints * values, source, shape.sourcePoints * values) ||
        Overlap(target, shape.targetPoints * values, coefficients,
                shape.targetPoints * shape.sourcePoints);
    bool const few = shape.blocks < kFewBlocks || shape.sourcePoints == 0;
    if (!overlap && !few && ExtrapolateInLanes(shape, source, target, coefficients)) return;
    ExtrapolatePlainly(shape, source, target, coefficients);
}

}  // namespace

void KOVSrvExtrapolation::ExtrapolateSinglePrecision(int sourcePoints, int targetPoints,
                                                     int components, int blocks,
                                                     float const* source, float* target,
                                                     float const* coefficients) {
    Extrapolate(sourcePoints, targetPoints, components, blocks, source, target, coefficients);
}

void KOVSrvExtrapolation::ExtrapolateDoublePrecision(int sourcePoints, int targetPoints,
                                                     int components, int blocks,
                                                     double const* source, double* target,
                                                     float const* coefficients) {
    Extrapolate(sourcePoints, targetPoints, components, blocks, source, target, coefficients);
}
