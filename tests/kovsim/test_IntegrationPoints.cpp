#include "IntegrationPoints.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "KOVSrvExtrapolation.h"

namespace kov::tool {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::FloatNear;
using Place = IntegrationPoints::Place;
using Field = std::function<double(Place const&)>;

constexpr double kRounding = 2e-6;

IntegrationPoints Of(char const* type, int count) {
    std::optional<IntegrationPoints> const found =
        FindIntegrationPoints(*FindElementType(type), count);
    EXPECT_TRUE(found) << type << ", " << count;
    return found.value_or(IntegrationPoints{});
}

// The largest difference between a field at the nodes and what is carried there from the points.
double Difference(IntegrationPoints const& rule, Field const& field) {
    std::vector<double> source, target(rule.nodes.size());
    for (Place const& point : rule.points) source.push_back(field(point));
    KOVSrvExtrapolation::ExtrapolateDoublePrecision(
        static_cast<int>(rule.points.size()), static_cast<int>(rule.nodes.size()), 1, 1,
        source.data(), target.data(), rule.toNodes.data());
    double largest = 0;
    for (std::size_t n = 0; n < target.size(); ++n) {
        largest = std::max(largest, std::abs(target[n] - field(rule.nodes[n])));
    }
    return largest;
}

double Integral(IntegrationPoints const& rule, Field const& field) {
    double sum = 0;
    for (std::size_t i = 0; i < rule.points.size(); ++i) {
        sum += rule.weights[i] * field(rule.points[i]);
    }
    return sum;
}

Field Monomial(int a, int b, int c) {
    return [=](Place const& at) {
        return std::pow(at[0], a) * std::pow(at[1], b) * std::pow(at[2], c);
    };
}

double Factorial(int n) { return std::tgamma(n + 1); }
// Of x^a y^b over the triangle, and with z^c over the tetrahedron.
double OverTriangle(int a, int b) { return Factorial(a) * Factorial(b) / Factorial(a + b + 2); }
double OverTetra(int a, int b, int c) {
    return Factorial(a) * Factorial(b) * Factorial(c) / Factorial(a + b + c + 3);
}
double OverLine(int a) { return a % 2 ? 0 : 2.0 / (a + 1); }
// The cross-section at z is 1 - z times the base.
double OverPyramid(int a, int b, int c) {
    return OverLine(a) * OverLine(b) * Factorial(c) * Factorial(a + b + 2) /
           Factorial(a + b + c + 3);
}

struct Case {
    char const* type;
    int points;
    // Powers up to which x, y and z are reproduced; with `together` the powers add up.
    int x, y, z;
    bool together;
};

std::vector<Case> AllCases() {
    return {
        {"T2D2", 1, 0, 0, 0, false},  {"T2D2", 2, 1, 0, 0, false},  {"B22", 2, 1, 0, 0, false},
        {"B22", 3, 2, 0, 0, false},   {"CPS3", 1, 0, 0, 0, false},  {"CPS3", 3, 1, 1, 0, true},
        {"CPS6", 3, 1, 1, 0, true},   {"CPS4", 1, 0, 0, 0, false},  {"CPS4", 4, 1, 1, 0, false},
        {"CPS8", 4, 1, 1, 0, false},  {"CPS8", 9, 2, 2, 0, false},  {"S9R5", 9, 2, 2, 0, false},
        {"C3D4", 1, 0, 0, 0, false},  {"C3D4", 4, 1, 1, 1, true},   {"C3D10", 4, 1, 1, 1, true},
        {"C3D5", 1, 0, 0, 0, false},  {"C3D5", 5, 1, 1, 1, true},   {"C3D6", 1, 0, 0, 0, false},
        {"C3D6", 2, 0, 0, 1, false},  {"C3D6", 6, 1, 1, 1, true},   {"C3D15", 2, 0, 0, 1, false},
        {"C3D15", 6, 1, 1, 1, true},  {"C3D15", 9, 1, 1, 1, true},  {"C3D8", 1, 0, 0, 0, false},
        {"C3D8", 8, 1, 1, 1, false},  {"C3D20", 1, 0, 0, 0, false}, {"C3D20", 8, 1, 1, 1, false},
        {"C3D20", 27, 2, 2, 2, false}};
}

TEST(IntegrationPoints, FieldsOfTheRuleAreReproducedAtAllNodes) {
    for (Case const& each : AllCases()) {
        IntegrationPoints const rule = Of(each.type, each.points);
        for (int a = 0; a <= each.x; ++a) {
            for (int b = 0; b <= each.y; ++b) {
                for (int c = 0; c <= each.z; ++c) {
                    if (each.together && a + b + c > 1) continue;
                    EXPECT_LT(Difference(rule, Monomial(a, b, c)), kRounding)
                        << each.type << ", " << each.points << " points: x^" << a << " y^" << b
                        << " z^" << c;
                }
            }
        }
    }
}

TEST(IntegrationPoints, WedgesReproduceProductsOfTheTriangleAndTheAxis) {
    for (auto const& [points, power] : {std::pair{6, 1}, {9, 2}}) {
        IntegrationPoints const rule = Of("C3D15", points);
        for (int c = 0; c <= power; ++c) {
            EXPECT_LT(Difference(rule, Monomial(1, 0, c)), kRounding);
            EXPECT_LT(Difference(rule, Monomial(0, 1, c)), kRounding);
        }
    }
}

TEST(IntegrationPoints, SomePointsCannotTellMore) {
    EXPECT_GT(Difference(Of("C3D8", 1), Monomial(1, 0, 0)), 0.5);
    EXPECT_GT(Difference(Of("C3D8", 8), Monomial(2, 0, 0)), 0.5);
    EXPECT_GT(Difference(Of("C3D6", 2), Monomial(1, 0, 0)), 0.5);
}

TEST(IntegrationPoints, CoefficientsOfEachNodeSumUpToOne) {
    for (Case const& each : AllCases()) {
        IntegrationPoints const rule = Of(each.type, each.points);
        ASSERT_EQ(rule.points.size(), static_cast<std::size_t>(each.points)) << each.type;
        ASSERT_EQ(rule.weights.size(), rule.points.size());
        ASSERT_EQ(rule.nodes.size(), static_cast<std::size_t>(FindElementType(each.type)->nodes));
        ASSERT_EQ(rule.toNodes.size(), rule.nodes.size() * rule.points.size());
        EXPECT_LT(Difference(rule, [](Place const&) { return 1; }), kRounding);
    }
}

TEST(IntegrationPoints, RulesIntegrateWhatTheyShould) {
    auto const expect = [](char const* type, int points, int degree, auto const& exact,
                           bool together) {
        IntegrationPoints const rule = Of(type, points);
        int const dimension = FindElementType(type)->dimension;
        for (int a = 0; a <= degree; ++a) {
            for (int b = 0; b <= (dimension > 1 ? degree : 0); ++b) {
                for (int c = 0; c <= (dimension > 2 ? degree : 0); ++c) {
                    if (together && a + b + c > degree) continue;
                    EXPECT_NEAR(Integral(rule, Monomial(a, b, c)), exact(a, b, c), 1e-13)
                        << type << ", " << points << " points: x^" << a << " y^" << b << " z^" << c;
                }
            }
        }
    };
    auto const box = [](int dimension) {
        return [=](int a, int b, int c) {
            return OverLine(a) * (dimension > 1 ? OverLine(b) : 1) *
                   (dimension > 2 ? OverLine(c) : 1);
        };
    };
    for (int n = 1; n <= 3; ++n) {
        expect("B22", n, 2 * n - 1, box(1), false);
        expect("CPS8", n * n, 2 * n - 1, box(2), false);
        expect("C3D20", n * n * n, 2 * n - 1, box(3), false);
    }
    auto const triangle = [](int a, int b, int) { return OverTriangle(a, b); };
    expect("CPS6", 1, 1, triangle, true);
    expect("CPS6", 3, 2, triangle, true);
    expect("C3D10", 1, 1, OverTetra, true);
    expect("C3D10", 4, 2, OverTetra, true);
    expect("C3D5", 1, 1, OverPyramid, true);
    expect("C3D5", 5, 2, OverPyramid, true);
    auto const wedge = [](int a, int b, int c) { return OverTriangle(a, b) * OverLine(c); };
    expect("C3D15", 1, 1, wedge, true);
    expect("C3D15", 2, 1, wedge, true);
    expect("C3D15", 6, 2, wedge, true);
    expect("C3D15", 9, 2, wedge, true);
}

TEST(IntegrationPoints, CoefficientsAreTheKnownOnes) {
    float const root3 = std::sqrt(3.0F), root5 = std::sqrt(5.0F);
    float const e = 1e-6F;
    // The row of the first node each time.
    auto const first = [](IntegrationPoints const& rule) {
        return std::vector<float>(
            rule.toNodes.begin(),
            rule.toNodes.begin() + static_cast<std::ptrdiff_t>(rule.points.size()));
    };
    EXPECT_THAT(first(Of("T2D2", 2)),
                ElementsAre(FloatNear((1 + root3) / 2, e), FloatNear((1 - root3) / 2, e)));
    EXPECT_THAT(first(Of("CPS4", 4)),
                ElementsAre(FloatNear(1 + root3 / 2, e), FloatNear(-0.5F, e), FloatNear(-0.5F, e),
                            FloatNear(1 - root3 / 2, e)));
    EXPECT_THAT(first(Of("CPS3", 3)), ElementsAre(FloatNear(5.0F / 3, e), FloatNear(-1.0F / 3, e),
                                                  FloatNear(-1.0F / 3, e)));
    std::vector<float> const tetra = first(Of("C3D4", 4));
    EXPECT_NEAR(tetra[0], (1 + 3 * root5) / 4, e);
    for (std::size_t i = 1; i < 4; ++i) EXPECT_NEAR(tetra[i], (1 - root5) / 4, e);
    std::vector<float> const hexahedron = first(Of("C3D8", 8));
    EXPECT_NEAR(hexahedron[0], (5 + 3 * root3) / 4, e);
    EXPECT_NEAR(hexahedron[1], -(1 + root3) / 4, e);
    EXPECT_NEAR(hexahedron[3], (root3 - 1) / 4, e);
    EXPECT_NEAR(hexahedron[7], (5 - 3 * root3) / 4, e);
    EXPECT_THAT(first(Of("C3D8", 1)), ElementsAre(FloatNear(1, e)));
    // The centre of the nine points is that of the element.
    IntegrationPoints const nine = Of("S9R5", 9);
    for (std::size_t i = 0; i < 9; ++i) EXPECT_NEAR(nine.toNodes[8 * 9 + i], i == 4 ? 1 : 0, e);
}

TEST(IntegrationPoints, FirstDirectionRunsFastest) {
    auto const near = [](double x, double y, double z) {
        return ElementsAre(DoubleNear(x, 1e-15), DoubleNear(y, 1e-15), DoubleNear(z, 1e-15));
    };
    double const g = 1 / std::sqrt(3.0), h = std::sqrt(0.6);
    IntegrationPoints const hexahedron = Of("C3D8", 8);
    EXPECT_THAT(hexahedron.points[0], near(-g, -g, -g));
    EXPECT_THAT(hexahedron.points[1], near(g, -g, -g));
    EXPECT_THAT(hexahedron.points[2], near(-g, g, -g));
    EXPECT_THAT(hexahedron.points[4], near(-g, -g, g));
    IntegrationPoints const quad = Of("CPS8", 9);
    EXPECT_THAT(quad.points[1], near(0, -h, 0));
    EXPECT_THAT(quad.points[3], near(-h, 0, 0));
    IntegrationPoints const wedge = Of("C3D15", 9);
    EXPECT_THAT(wedge.points[2], near(1.0 / 6, 2.0 / 3, -h));
    EXPECT_THAT(wedge.points[3], near(1.0 / 6, 1.0 / 6, 0));
}

TEST(IntegrationPoints, PointsOfSimplicesLieNextToTheirCorners) {
    for (auto const& [type, count] : {std::pair{"CPS6", 3}, {"C3D10", 4}, {"C3D5", 5}}) {
        IntegrationPoints const rule = Of(type, count);
        for (std::size_t i = 0; i < rule.points.size(); ++i) {
            auto const distance = [&](std::size_t node) {
                Place const &p = rule.points[i], &q = rule.nodes[node];
                return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
            };
            for (std::size_t other = 0; other < rule.points.size(); ++other) {
                if (other == i) continue;
                EXPECT_LT(distance(i), distance(other)) << type << i << other;
            }
        }
    }
}

TEST(IntegrationPoints, NodesAreThoseOfADeck) {
    EXPECT_THAT(Of("B22", 2).nodes, ElementsAre(Place{-1, 0, 0}, Place{0, 0, 0}, Place{1, 0, 0}));
    EXPECT_EQ(Of("CPS6", 3).nodes[4], (Place{0.5, 0.5, 0}));
    EXPECT_EQ(Of("C3D20", 8).nodes[8], (Place{0, -1, -1}));
    EXPECT_EQ(Of("C3D20", 8).nodes[19], (Place{-1, 1, 0}));
    EXPECT_EQ(Of("S9R5", 9).nodes[8], (Place{0, 0, 0}));
    for (ElementType const& type : AllElementTypes()) {
        std::optional<IntegrationPoints> const rule = FindIntegrationPoints(type, 1);
        if (!rule) continue;
        std::set<Place> const places(rule->nodes.begin(), rule->nodes.end());
        EXPECT_EQ(places.size(), static_cast<std::size_t>(type.nodes)) << type.name;
    }
}

TEST(IntegrationPoints, OtherCountsAndShapesHaveNoRule) {
    for (auto const& [type, count] : {std::pair{"C3D8", 0},
                                      {"C3D8", -1},
                                      {"C3D8", 2},
                                      {"C3D8", 9},
                                      {"C3D8", 64},
                                      {"CPS4", 3},
                                      {"CPS3", 4},
                                      {"C3D4", 5},
                                      {"C3D6", 3},
                                      {"C3D6", 18},
                                      {"C3D5", 8},
                                      {"T2D2", 4},
                                      {"MASS", 1}}) {
        ASSERT_NE(FindElementType(type), nullptr) << type;
        EXPECT_FALSE(FindIntegrationPoints(*FindElementType(type), count)) << type << count;
    }
}

TEST(IntegrationPoints, LinearFieldInADistortedElementIsReproduced) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> shift(-0.3, 0.3);
    IntegrationPoints const rule = Of("C3D8", 8);
    std::vector<Place> corners = rule.nodes;
    for (Place& corner : corners) {
        for (double& x : corner) x += shift(random);
    }
    // Stresses that are linear in space, at the points of the element as it lies there.
    auto const stress = [](Place const& at, int component) {
        return component + at[0] - 2 * at[1] * component + 3 * at[2];
    };
    std::vector<double> source, target(8 * 6);
    for (Place const& point : rule.points) {
        Place at{};
        for (std::size_t n = 0; n < 8; ++n) {
            double share = 1;
            for (std::size_t k = 0; k < 3; ++k) share *= (1 + point[k] * rule.nodes[n][k]) / 2;
            for (std::size_t k = 0; k < 3; ++k) at[k] += share * corners[n][k];
        }
        for (int component = 0; component < 6; ++component) {
            source.push_back(stress(at, component));
        }
    }
    KOVSrvExtrapolation::ExtrapolateDoublePrecision(8, 8, 6, 1, source.data(), target.data(),
                                                    rule.toNodes.data());
    for (std::size_t n = 0; n < 8; ++n) {
        for (int component = 0; component < 6; ++component) {
            EXPECT_NEAR(target[n * 6 + static_cast<std::size_t>(component)],
                        stress(corners[n], component), 1e-5);
        }
    }
}

}  // namespace
}  // namespace kov::tool
