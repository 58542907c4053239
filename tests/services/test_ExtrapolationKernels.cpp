// The loops of the extrapolation for each kind of machine, whichever of them the service picks:
// the blocks that they say are done equal those of the service, bit by bit.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <limits>
#include <vector>

#include "KOVSrvExtrapolation.h"
#include "KOVSrvSimServices/KOVSrvFsm.m/src/Extrapolation.h"

namespace kov::fsm {
namespace {

template <class Value>
using Loops = std::size_t (*)(ExtrapolationShape const&, Value const*, Value*, float const*);

template <class Value>
struct Kernel {
    char const* name;
    bool present;
    Loops<Value> loops;
};

template <class Value>
std::vector<Kernel<Value>> AllKernels() {
    std::vector<Kernel<Value>> all{{"any machine", true, &ExtrapolateOnAnyMachine}};
#ifdef __x86_64__
    bool const avx2 = __builtin_cpu_supports("avx2");
    bool const avx512 = __builtin_cpu_supports("avx512f");
    all.push_back({"AVX2", avx2, &ExtrapolateWithAvx2});
    all.push_back({"AVX-512", avx512, &ExtrapolateWithAvx512});
#endif
    return all;
}

void ByService(ExtrapolationShape const& s, float const* source, float* target,
               float const* matrix) {
    KOVSrvExtrapolation::ExtrapolateSinglePrecision(
        static_cast<int>(s.sourcePoints), static_cast<int>(s.targetPoints),
        static_cast<int>(s.components), static_cast<int>(s.blocks), source, target, matrix);
}
void ByService(ExtrapolationShape const& s, double const* source, double* target,
               float const* matrix) {
    KOVSrvExtrapolation::ExtrapolateDoublePrecision(
        static_cast<int>(s.sourcePoints), static_cast<int>(s.targetPoints),
        static_cast<int>(s.components), static_cast<int>(s.blocks), source, target, matrix);
}

template <class Value>
void Compare(ExtrapolationShape const& shape) {
    std::vector<Value> source(shape.blocks * shape.sourcePoints * shape.components);
    std::vector<float> matrix(shape.targetPoints * shape.sourcePoints);
    // Zeros of either sign and numbers that are not normal are among them.
    Value const special[] = {-Value{0}, Value{0}, std::numeric_limits<Value>::denorm_min(),
                             -std::numeric_limits<Value>::min() / 3};
    for (std::size_t k = 0; k < source.size(); ++k) {
        source[k] = k % 11 < 4 ? special[k % 11] : static_cast<Value>(k * 37 % 1009) / 7 - 50;
    }
    for (std::size_t k = 0; k < matrix.size(); ++k) {
        matrix[k] = static_cast<float>(k * 53 % 101) / 9 - 4;
        if (k % 13 == 5) matrix[k] = std::numeric_limits<float>::denorm_min();
    }
    std::size_t const block = shape.targetPoints * shape.components;
    std::vector<Value> expected(shape.blocks * block);
    ByService(shape, source.data(), expected.data(), matrix.data());
    for (Kernel<Value> const& kernel : AllKernels<Value>()) {
        if (!kernel.present) continue;
        std::vector<Value> target(shape.blocks * block, Value{-77});
        std::size_t const done = kernel.loops(shape, source.data(), target.data(), matrix.data());
        SCOPED_TRACE(testing::Message() << kernel.name << ", " << shape.sourcePoints << " to "
                                        << shape.targetPoints << " points, " << shape.components
                                        << " components, " << shape.blocks << " blocks");
        // A vector of any of them reaches over 15 values at most.
        ASSERT_GE(done + 15, shape.blocks);
        ASSERT_LE(done, shape.blocks);
        ASSERT_EQ(std::memcmp(target.data(), expected.data(), done * block * sizeof(Value)), 0);
    }
}

template <class Value>
void CompareAll() {
    for (std::size_t components : {1U, 2U, 3U, 4U, 5U, 6U, 8U, 9U, 15U, 16U, 17U, 33U}) {
        for (std::size_t targets : {1U, 3U, 4U, 8U, 10U, 16U, 20U}) {
            for (std::size_t blocks : {1U, 3U, 16U, 41U}) {
                Compare<Value>({1 + targets % 4, targets, components, blocks});
                if (testing::Test::HasFatalFailure()) return;
            }
        }
    }
}

// Says which of them this machine cannot run.
TEST(ExtrapolationKernels, AllRunOnThisMachine) {
    for (Kernel<float> const& kernel : AllKernels<float>()) {
        if (!kernel.present) GTEST_SKIP() << "no " << kernel.name << " here: its loops did not run";
    }
}

TEST(ExtrapolationKernels, GiveOneResultInSinglePrecision) { CompareAll<float>(); }
TEST(ExtrapolationKernels, GiveOneResultInDoublePrecision) { CompareAll<double>(); }

}  // namespace
}  // namespace kov::fsm
