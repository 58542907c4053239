// The extrapolation against the loops that define it, bit by bit. The seed is printed with a
// failure; KOV_SEED sets it.
#include "KOVSrvExtrapolation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace kov::test {
namespace {

using testing::Each;
using testing::ElementsAre;

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

struct Shape {
    int sources, targets, components, blocks;
};

void Extrapolate(Shape const& s, float const* source, float* target, float const* matrix) {
    KOVSrvExtrapolation::ExtrapolateSinglePrecision(s.sources, s.targets, s.components, s.blocks,
                                                    source, target, matrix);
}
void Extrapolate(Shape const& s, double const* source, double* target, float const* matrix) {
    KOVSrvExtrapolation::ExtrapolateDoublePrecision(s.sources, s.targets, s.components, s.blocks,
                                                    source, target, matrix);
}

// Each product goes through memory, so that no compiler fuses it with the sum.
template <class Value>
void Define(Shape const& s, Value const* source, Value* target, float const* matrix) {
    for (int b = 0; b < s.blocks; ++b) {
        for (int c = 0; c < s.components; ++c) {
            for (int o = 0; o < s.targets; ++o) {
                Value& to = target[b * s.components * s.targets + o * s.components + c];
                Value sum = 0;
                to = 0;
                for (int i = 0; i < s.sources; ++i) {
                    Value const volatile product =
                        static_cast<Value>(matrix[o * s.sources + i]) *
                        source[b * s.components * s.sources + i * s.components + c];
                    sum += product;
                    to = sum;
                }
            }
        }
    }
}

template <class Value>
bool SameBits(Value a, Value b) {
    return std::isnan(a) ? std::isnan(b) : std::memcmp(&a, &b, sizeof a) == 0;
}

template <class Value>
class Extrapolation : public testing::Test {
  protected:
    Value AnyValue() {
        switch (Below(40)) {
            case 0:
                return -Value{0};
            case 1:
                return std::numeric_limits<Value>::denorm_min();
            case 2:
                return special ? std::numeric_limits<Value>::infinity() : Value{1};
            case 3:
                return special ? std::numeric_limits<Value>::quiet_NaN() : Value{2};
            default:
                return std::normal_distribution<Value>(0, 100)(random);
        }
    }
    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }

    // Arrays of just the sizes needed, so that tools see what is read or written beside them.
    void Compare(Shape const& s) {
        auto const count = [](int a, int b, int c) { return static_cast<std::size_t>(a * b * c); };
        std::vector<Value> source(count(s.blocks, s.sources, s.components));
        std::vector<float> matrix(count(s.targets, s.sources, 1));
        std::vector<Value> target(count(s.blocks, s.targets, s.components), Value{-77});
        for (Value& value : source) value = AnyValue();
        for (float& value : matrix) value = static_cast<float>(AnyValue());
        std::vector<Value> expected = target;
        Define(s, source.data(), expected.data(), matrix.data());
        Extrapolate(s, source.data(), target.data(), matrix.data());
        for (std::size_t k = 0; k < target.size(); ++k) {
            ASSERT_TRUE(SameBits(target[k], expected[k]))
                << "entry " << k << ": " << target[k] << " for " << expected[k] << ", " << s.sources
                << " to " << s.targets << " points, " << s.components << " components, " << s.blocks
                << " blocks, KOV_SEED=" << seed;
        }
    }

    unsigned const seed = Seed();
    std::mt19937 random{seed};
    bool special = false;
};
using Precisions = testing::Types<float, double>;
TYPED_TEST_SUITE(Extrapolation, Precisions);

TYPED_TEST(Extrapolation, EqualsTheLoopsThatDefineItForAnyShape) {
    for (int turn = 0; turn < 400; ++turn) {
        this->special = turn % 2 == 1;
        int const components = 1 + this->Below(turn % 4 == 0 ? 70 : 12);
        this->Compare(
            {this->Below(28), 1 + this->Below(28), components, this->Below(turn % 3 ? 40 : 9)});
        if (this->HasFatalFailure()) return;
    }
}

TYPED_TEST(Extrapolation, EqualsTheLoopsForEachNumberOfComponents) {
    for (int components = 1; components <= 40; ++components) {
        for (int blocks : {1, 2, 7, 11}) this->Compare({3, 5, components, blocks});
        if (this->HasFatalFailure()) return;
    }
}

TYPED_TEST(Extrapolation, EqualsTheLoopsForOneComponentAtEachNumberOfTargets) {
    for (int targets = 1; targets <= 40; ++targets) {
        for (int blocks : {1, 2, 7, 11, 30}) this->Compare({1 + targets % 5, targets, 1, blocks});
        if (this->HasFatalFailure()) return;
    }
}

TYPED_TEST(Extrapolation, EqualsTheLoopsForBlocksOfOneValue) {
    for (int components : {1, 2, 3}) {
        for (int blocks = 1; blocks < 40; ++blocks) this->Compare({1, 1, components, blocks});
        if (this->HasFatalFailure()) return;
    }
}

TYPED_TEST(Extrapolation, EqualsTheLoopsForManyBlocks) { this->Compare({8, 8, 6, 20'000}); }

TYPED_TEST(Extrapolation, TakesArraysOfAnyAlignment) {
    Shape const shape{4, 8, 6, 50};
    std::vector<TypeParam> source(4 * 6 * 50 + 3), target(8 * 6 * 50 + 3), expected(8 * 6 * 50);
    std::vector<float> matrix(32 + 1);
    for (TypeParam& value : source) value = this->AnyValue();
    for (float& value : matrix) value = static_cast<float>(this->AnyValue());
    for (std::size_t shift = 0; shift < 4; ++shift) {
        Define(shape, source.data() + shift % 3, expected.data(), matrix.data() + shift % 2);
        Extrapolate(shape, source.data() + shift % 3, target.data() + shift,
                    matrix.data() + shift % 2);
        for (std::size_t k = 0; k < expected.size(); ++k) {
            ASSERT_TRUE(SameBits(target[k + shift], expected[k])) << k;
        }
    }
}

TYPED_TEST(Extrapolation, OnePointWithACoefficientOfOneCopies) {
    std::vector<TypeParam> source;
    for (int k = 0; k < 5 * 30; ++k) source.push_back(static_cast<TypeParam>(k) / 7);
    std::vector<TypeParam> target(source.size());
    float const one = 1;
    Extrapolate(Shape{1, 1, 5, 30}, source.data(), target.data(), &one);
    EXPECT_EQ(target, source);
}

TYPED_TEST(Extrapolation, WithoutBlocksComponentsOrTargetsNothingIsWritten) {
    std::vector<TypeParam> const source(64, 3);
    std::vector<TypeParam> target(64, -77);
    std::vector<float> const matrix(64, 1);
    for (Shape const& shape : {Shape{2, 2, 2, 0}, Shape{2, 2, 2, -1}, Shape{2, 2, 0, 2},
                               Shape{2, 2, -3, 2}, Shape{2, 0, 2, 2}, Shape{0, 0, 2, 20}}) {
        Extrapolate(shape, source.data(), target.data(), matrix.data());
        EXPECT_THAT(target, Each(TypeParam{-77}));
    }
    Extrapolate(Shape{2, 2, 2, 0}, nullptr, static_cast<TypeParam*>(nullptr), nullptr);
}

TYPED_TEST(Extrapolation, WithoutSourcesZerosAreWritten) {
    for (int blocks : {1, 30}) {
        auto const size = static_cast<std::size_t>(3 * 2 * blocks);
        std::vector<TypeParam> target(size + 1, -77);
        Extrapolate(Shape{0, 3, 2, blocks}, nullptr, target.data(), nullptr);
        EXPECT_EQ(target.back(), TypeParam{-77});
        target.pop_back();
        EXPECT_THAT(target, Each(TypeParam{0}));
    }
}

TYPED_TEST(Extrapolation, SumsAscendAndBeginWithZero) {
    // In any other order the large numbers would swallow the small one.
    TypeParam const large = std::numeric_limits<TypeParam>::max() / 4;
    std::vector<TypeParam> source;
    for (int b = 0; b < 10; ++b) source.insert(source.end(), {large, -large, TypeParam{1}});
    std::vector<float> const matrix{1, 1, 1};
    std::vector<TypeParam> target(10);
    Extrapolate(Shape{3, 1, 1, 10}, source.data(), target.data(), matrix.data());
    EXPECT_THAT(target, Each(TypeParam{1}));

    std::vector<TypeParam> const negative(10, -TypeParam{0});
    Extrapolate(Shape{1, 1, 1, 10}, negative.data(), target.data(), matrix.data());
    for (TypeParam const value : target) EXPECT_FALSE(std::signbit(value));
}

TYPED_TEST(Extrapolation, WhatIsWrittenAndReadTakesTheOrderOfTheLoops) {
    for (int shift : {0, 1, 17, -5}) {
        Shape const shape{3, 3, 4, 20};
        std::vector<TypeParam> ours(300);
        for (TypeParam& value : ours) value = this->AnyValue();
        std::vector<TypeParam> expected = ours;
        std::vector<float> matrix(9);
        // What is read again after it was written stays small.
        for (float& value : matrix) value = static_cast<float>(this->Below(5)) / 16;
        Define(shape, expected.data() + 20, expected.data() + 20 + shift, matrix.data());
        Extrapolate(shape, ours.data() + 20, ours.data() + 20 + shift, matrix.data());
        EXPECT_EQ(ours, expected) << shift;
    }
}

TEST(ExtrapolationCoefficients, MayLieWhereTheTargetIs) {
    Shape const shape{2, 2, 1, 10};
    std::vector<float> source(20, 2), ours(20, 3), expected(20, 3);
    Define(shape, source.data(), expected.data(), expected.data());
    Extrapolate(shape, source.data(), ours.data(), ours.data());
    EXPECT_EQ(ours, expected);
}

TEST(ExtrapolationPrecision, SingleRoundsEachProductAndEachSumToFloat) {
    // 1 + 2^-13 squared is 1 + 2^-12 + 2^-26, of which a float keeps 1 + 2^-12.
    float const value = 1 + 0x1p-13F;
    std::vector<float> source;
    for (int b = 0; b < 9; ++b) source.insert(source.end(), {1 + 0x1p-12F, value});
    std::vector<float> const matrix{-1, value};
    std::vector<float> target(9);
    Extrapolate(Shape{2, 1, 1, 9}, source.data(), target.data(), matrix.data());
    EXPECT_THAT(target, Each(0.0F));
}

TEST(ExtrapolationPrecision, DoubleRoundsEachProductAndEachSumToDouble) {
    float const coefficient = 0.1F;
    std::vector<double> const source(9, 3.3);
    std::vector<double> target(9);
    Extrapolate(Shape{1, 1, 1, 9}, source.data(), target.data(), &coefficient);
    EXPECT_THAT(target, Each(static_cast<double>(0.1F) * 3.3));
    EXPECT_NE(target[0], 0.1 * 3.3);

    // The product has 2^-54 besides, of which a double keeps nothing.
    std::vector<double> pairs;
    for (int b = 0; b < 9; ++b) pairs.insert(pairs.end(), {1 + 0x1p-12 + 0x1p-42, 1 + 0x1p-42});
    std::vector<float> const matrix{-1, 1 + 0x1p-12F};
    Extrapolate(Shape{2, 1, 1, 9}, pairs.data(), target.data(), matrix.data());
    EXPECT_THAT(target, Each(0.0));
}

}  // namespace
}  // namespace kov::test
