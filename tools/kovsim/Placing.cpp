#include "Placing.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kov::tool {
namespace {

// Quarter turns come out exactly.
void SineAndCosine(double degrees, double& sine, double& cosine) {
    double const turn = std::remainder(degrees, 360.0);
    double const quarters = turn / 90.0;
    if (quarters == std::floor(quarters)) {
        int const quarter = static_cast<int>(quarters) + 4;
        constexpr double sines[] = {0, 1, 0, -1};
        sine = sines[quarter % 4];
        cosine = sines[(quarter + 1) % 4];
        return;
    }
    double const angle = turn * (std::numbers::pi / 180.0);
    sine = std::sin(angle);
    cosine = std::cos(angle);
}

}  // namespace

bool WithinRange(double const* a, double const* b) {
    for (int i = 0; i < 3; ++i) {
        if (!std::isfinite(b[i] - a[i])) return false;
    }
    return true;
}

bool Direction(double const* a, double const* b, double* direction) {
    double largest = 0;
    for (int i = 0; i < 3; ++i) {
        direction[i] = b[i] - a[i];
        largest = std::max(largest, std::abs(direction[i]));
    }
    if (largest == 0 || !std::isfinite(largest)) return false;
    // Scaled first: the squares of very large and very small numbers are out of range.
    int exponent = 0;
    static_cast<void>(std::frexp(largest, &exponent));
    for (int i = 0; i < 3; ++i) direction[i] = std::ldexp(direction[i], -exponent);
    double const length = std::hypot(direction[0], direction[1], direction[2]);
    for (int i = 0; i < 3; ++i) direction[i] /= length;
    return true;
}

Placing Placing::Translated(double const* translation) {
    Placing placing;
    for (std::size_t i = 0; i < 3; ++i) {
        if (translation[i] != 0) placing.m_kind = Kind::Translation;
        placing.m_matrix[4 * i + 3] = translation[i];
    }
    return placing;
}

Placing Placing::Rotated(double const* translation, double const* a, double const* b,
                         double degrees) {
    double u[3];
    double sine = 0;
    double cosine = 1;
    SineAndCosine(degrees, sine, cosine);
    if ((sine == 0 && cosine == 1) || !Direction(a, b, u)) return Translated(translation);
    Placing placing;
    placing.m_kind = Kind::Rotation;
    std::array<double, 12>& m = placing.m_matrix;
    double const cross[3][3] = {{0, -u[2], u[1]}, {u[2], 0, -u[0]}, {-u[1], u[0], 0}};
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            m[4 * i + j] =
                (i == j ? cosine : 0.0) + (1 - cosine) * u[i] * u[j] + sine * cross[i][j];
        }
    }
    for (std::size_t i = 0; i < 3; ++i) {
        double moved = a[i];
        for (std::size_t j = 0; j < 3; ++j) moved += m[4 * i + j] * (translation[j] - a[j]);
        m[4 * i + 3] = moved;
    }
    return placing;
}

bool Placing::IsFinite() const {
    return std::all_of(m_matrix.begin(), m_matrix.end(), [](double x) { return std::isfinite(x); });
}

bool Placing::Apply(double* xyz) const {
    std::array<double, 12> const& m = m_matrix;
    if (m_kind == Kind::Translation) {
        for (std::size_t i = 0; i < 3; ++i) xyz[i] += m[4 * i + 3];
    } else if (m_kind == Kind::Rotation) {
        double const x = xyz[0];
        double const y = xyz[1];
        double const z = xyz[2];
        for (std::size_t i = 0; i < 3; ++i) {
            xyz[i] = m[4 * i] * x + m[4 * i + 1] * y + m[4 * i + 2] * z + m[4 * i + 3];
        }
    }
    return std::isfinite(xyz[0]) && std::isfinite(xyz[1]) && std::isfinite(xyz[2]);
}

}  // namespace kov::tool
