#include "ElasticStability.h"

#include <cmath>
#include <cstddef>
#include <utility>

namespace kov::tool {
namespace {

constexpr std::size_t kMost = 6;

// A symmetric matrix of which the upper triangle is given. Its diagonal is above 0.
struct Matrix {
    std::size_t size;
    double at[kMost][kMost];

    // Each row and column in units of the root of its diagonal entry: the answer is the same, and
    // moduli of any size do not overflow.
    void Scale() {
        double roots[kMost];
        for (std::size_t i = 0; i < size; ++i) roots[i] = std::sqrt(at[i][i]);
        for (std::size_t i = 0; i < size; ++i) {
            for (std::size_t k = i; k < size; ++k) at[i][k] = at[i][k] / roots[i] / roots[k];
        }
    }

    // By Cholesky's elimination, in place.
    bool IsPositiveDefinite() {
        for (std::size_t p = 0; p < size; ++p) {
            if (!(at[p][p] > 0)) return false;
            for (std::size_t i = p + 1; i < size; ++i) {
                double const factor = at[p][i] / at[p][p];
                for (std::size_t k = i; k < size; ++k) at[i][k] -= factor * at[p][k];
            }
        }
        return true;
    }
};

constexpr char kStiffness[] = "the stiffness is not positive definite";

// nu12 times the root of E2/E1: of a stable material it is below 1 in magnitude.
double Coupling(double ratio, double first, double second) {
    return ratio == 0 ? 0 : ratio * (std::sqrt(second) / std::sqrt(first));
}

std::string RatioFinding(char const* axes) {
    std::string const one(axes, 1);
    std::string const other(axes + 1, 1);
    return "nu" + one + other + " is not below the root of E" + one + "/E" + other;
}

}  // namespace

std::string LaminaFinding(double const* values) {
    return std::abs(Coupling(values[2], values[0], values[1])) < 1 ? "" : RatioFinding("12");
}

std::string EngineeringFinding(double const* values) {
    constexpr char const* kAxes[] = {"12", "13", "23"};
    constexpr std::pair<std::size_t, std::size_t> kPlaces[] = {{0, 1}, {0, 2}, {1, 2}};
    Matrix compliance{3, {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    for (std::size_t i = 0; i < 3; ++i) {
        auto const [first, second] = kPlaces[i];
        double const coupling = Coupling(values[3 + i], values[first], values[second]);
        if (!(std::abs(coupling) < 1)) return RatioFinding(kAxes[i]);
        compliance.at[first][second] = -coupling;
    }
    return compliance.IsPositiveDefinite()
               ? ""
               : "nu12, nu13 and nu23 together are too large for a stiffness that is positive "
                 "definite";
}

std::string OrthotropicFinding(double const* values) {
    // The shear moduli stand alone, and are above 0.
    Matrix stiffness{3, {{values[0], values[1], values[3]}, {0, values[2], values[4]}}};
    stiffness.at[2][2] = values[5];
    stiffness.Scale();
    return stiffness.IsPositiveDefinite() ? "" : kStiffness;
}

std::string AnisotropicFinding(double const* values) {
    Matrix stiffness{6, {}};
    for (std::size_t k = 0; k < 6; ++k) {
        for (std::size_t i = 0; i <= k; ++i) stiffness.at[i][k] = *values++;
    }
    stiffness.Scale();
    return stiffness.IsPositiveDefinite() ? "" : kStiffness;
}

}  // namespace kov::tool
