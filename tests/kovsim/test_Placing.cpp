#include "Placing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

namespace kov::test {
namespace {

using tool::Placing;

// The definition by quaternions, in extended precision: q (p + t - a) q* + a.
struct Quaternion {
    long double w, x, y, z;
};
Quaternion operator*(Quaternion const& p, Quaternion const& q) {
    return {p.w * q.w - p.x * q.x - p.y * q.y - p.z * q.z,
            p.w * q.x + p.x * q.w + p.y * q.z - p.z * q.y,
            p.w * q.y - p.x * q.z + p.y * q.w + p.z * q.x,
            p.w * q.z + p.x * q.y - p.y * q.x + p.z * q.w};
}
void ByQuaternion(double const* t, double const* a, double const* b, double degrees,
                  double const* p, double* out) {
    long double const d[3] = {static_cast<long double>(b[0]) - a[0],
                              static_cast<long double>(b[1]) - a[1],
                              static_cast<long double>(b[2]) - a[2]};
    long double const length = std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
    long double const half =
        static_cast<long double>(degrees) * std::numbers::pi_v<long double> / 360.0L;
    long double const s = std::sin(half) / length;
    Quaternion const q{std::cos(half), s * d[0], s * d[1], s * d[2]};
    Quaternion const conjugate{q.w, -q.x, -q.y, -q.z};
    long double const moved[3] = {static_cast<long double>(p[0]) + t[0] - a[0],
                                  static_cast<long double>(p[1]) + t[1] - a[1],
                                  static_cast<long double>(p[2]) + t[2] - a[2]};
    Quaternion const turned = q * Quaternion{0, moved[0], moved[1], moved[2]} * conjugate;
    out[0] = static_cast<double>(turned.x + a[0]);
    out[1] = static_cast<double>(turned.y + a[1]);
    out[2] = static_cast<double>(turned.z + a[2]);
}

TEST(Placing, MovesNothingAtFirst) {
    Placing const placing;
    double xyz[3] = {-0.0, 0.1, std::numeric_limits<double>::denorm_min()};
    EXPECT_TRUE(placing.Apply(xyz));
    EXPECT_TRUE(std::signbit(xyz[0]));
    EXPECT_EQ(xyz[1], 0.1);
    EXPECT_EQ(xyz[2], std::numeric_limits<double>::denorm_min());
    EXPECT_TRUE(placing.MovesNothing());
}

TEST(Placing, ATranslationOfNothingMovesNothing) {
    double const zero[3] = {0, 0, 0};
    EXPECT_TRUE(Placing::Translated(zero).MovesNothing());
    double const axis[3] = {0, 0, 1};
    EXPECT_TRUE(Placing::Rotated(zero, zero, axis, 720).MovesNothing());
}

TEST(Placing, ATranslationAddsAndDoesNothingElse) {
    double const t[3] = {0.1, -7e20, 3};
    double xyz[3] = {0.2, 1, 1e-30};
    EXPECT_TRUE(Placing::Translated(t).Apply(xyz));
    EXPECT_EQ(xyz[0], 0.1 + 0.2);
    EXPECT_EQ(xyz[1], -7e20 + 1);
    EXPECT_EQ(xyz[2], 3 + 1e-30);
}

TEST(Placing, TurnsRightHandedFromTheFirstPointToTheSecond) {
    double const zero[3] = {0, 0, 0};
    double const up[3] = {0, 0, 2};
    double xyz[3] = {1, 0, 5};
    EXPECT_TRUE(Placing::Rotated(zero, zero, up, 90).Apply(xyz));
    EXPECT_EQ(xyz[0], 0);
    EXPECT_EQ(xyz[1], 1);
    EXPECT_EQ(xyz[2], 5);
    double back[3] = {1, 0, 5};
    EXPECT_TRUE(Placing::Rotated(zero, up, zero, 90).Apply(back));
    EXPECT_EQ(back[1], -1);
}

TEST(Placing, TranslatesFirst) {
    double const t[3] = {1, 0, 0};
    double const a[3] = {0, 0, 0};
    double const b[3] = {0, 0, 1};
    double xyz[3] = {1, 0, 0};
    EXPECT_TRUE(Placing::Rotated(t, a, b, 90).Apply(xyz));
    EXPECT_EQ(xyz[0], 0);
    EXPECT_EQ(xyz[1], 2);
}

TEST(Placing, QuarterTurnsAreExact) {
    double const zero[3] = {0, 0, 0};
    double const axis[3] = {0, 0, 1};
    double const expected[4][2] = {{0.3, 0.7}, {-0.7, 0.3}, {-0.3, -0.7}, {0.7, -0.3}};
    for (int quarter = -8; quarter <= 8; ++quarter) {
        double xyz[3] = {0.3, 0.7, 0};
        EXPECT_TRUE(Placing::Rotated(zero, zero, axis, 90.0 * quarter).Apply(xyz));
        EXPECT_EQ(xyz[0], expected[(quarter + 8) % 4][0]) << quarter;
        EXPECT_EQ(xyz[1], expected[(quarter + 8) % 4][1]) << quarter;
    }
}

TEST(Placing, AgreesWithQuaternions) {
    unsigned const seed = 77;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> number(-10, 10);
    std::uniform_real_distribution<double> angle(-1000, 1000);
    std::uniform_int_distribution<int> scale(-3, 3);
    for (int round = 0; round < 5000; ++round) {
        double const size = std::pow(10.0, scale(random));
        double v[12];
        for (double& x : v) x = number(random) * size;
        double const degrees = angle(random);
        double expected[3];
        ByQuaternion(v, v + 3, v + 6, degrees, v + 9, expected);
        double xyz[3] = {v[9], v[10], v[11]};
        ASSERT_TRUE(Placing::Rotated(v, v + 3, v + 6, degrees).Apply(xyz));
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(xyz[i], expected[i], 1e-12 * 40 * size) << round;
    }
}

TEST(Placing, TheMatrixIsWhatIsApplied) {
    double const t[3] = {1, 2, 3};
    double const a[3] = {4, -1, 0.5};
    double const b[3] = {0, 1, 2};
    Placing const placing = Placing::Rotated(t, a, b, 33);
    double xyz[3] = {7, 8, 9};
    ASSERT_TRUE(placing.Apply(xyz));
    for (std::size_t i = 0; i < 3; ++i) {
        double const* const row = placing.Matrix().data() + 4 * i;
        EXPECT_EQ(xyz[i], row[0] * 7 + row[1] * 8 + row[2] * 9 + row[3]);
    }
}

TEST(Placing, AResultBeyondAllNumbersIsToldOf) {
    double const t[3] = {1.7e308, 0, 0};
    double xyz[3] = {1.7e308, 0, 0};
    EXPECT_FALSE(Placing::Translated(t).Apply(xyz));
}

TEST(Placing, DirectionsAreFoundAtAllScales) {
    double u[3];
    double const zero[3] = {0, 0, 0};
    for (double const scale : {1e-300, 1e-160, 1.0, 1e160, 1e300}) {
        double const point[3] = {3 * scale, 0, 4 * scale};
        ASSERT_TRUE(tool::Direction(zero, point, u)) << scale;
        EXPECT_NEAR(u[0], 0.6, 1e-15);
        EXPECT_EQ(u[1], 0);
        EXPECT_NEAR(u[2], 0.8, 1e-15);
    }
    EXPECT_FALSE(tool::Direction(zero, zero, u));
    double const far[3] = {-1.7e308, 0, 0};
    double const other[3] = {1.7e308, 0, 0};
    EXPECT_FALSE(tool::Direction(far, other, u));
}

}  // namespace
}  // namespace kov::test
