#include "KOVSrvExtrapolation.h"

#include <cstddef>
#include <functional>

#include "Extrapolation.h"

namespace {

using kov::fsm::ExtrapolationShape;

/// The sums as they are defined, for the blocks from `first` on.
template <class Value>
void ExtrapolatePlainly(ExtrapolationShape const& shape, std::size_t first, Value const* source,
                        Value* target, float const* coefficients) {
    for (std::size_t b = first; b < shape.blocks; ++b) {
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

/// Answers how many blocks are done.
template <class Value>
std::size_t ExtrapolateInVectors(ExtrapolationShape const& shape, Value const* source,
                                 Value* target, float const* coefficients) {
#ifdef __x86_64__
    static bool const avx512 = __builtin_cpu_supports("avx512f");
    static bool const avx2 = __builtin_cpu_supports("avx2");
    // The widest vectors pay where more than half of one is filled.
    std::size_t const filled = shape.components == 1 ? shape.targetPoints : shape.components;
    if (avx512 && filled > 32 / sizeof(Value)) {
        return kov::fsm::ExtrapolateWithAvx512(shape, source, target, coefficients);
    }
    if (avx2) return kov::fsm::ExtrapolateWithAvx2(shape, source, target, coefficients);
#endif
    return kov::fsm::ExtrapolateOnAnyMachine(shape, source, target, coefficients);
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
    bool const plain =
        shape.sourcePoints == 0 ||
        Overlap(target, shape.targetPoints * values, source, shape.sourcePoints * values) ||
        Overlap(target, shape.targetPoints * values, coefficients,
                shape.targetPoints * shape.sourcePoints);
    std::size_t const done = plain ? 0 : ExtrapolateInVectors(shape, source, target, coefficients);
    ExtrapolatePlainly(shape, done, source, target, coefficients);
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
