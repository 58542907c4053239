#include "LayupPalette.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace kov::tool {
namespace {

using Rgb = std::array<int, 3>;

/// At 0, 45, 90 and 135 degrees.
constexpr Rgb kDirections[] = {{0, 95, 160}, {0, 140, 100}, {205, 85, 0}, {170, 70, 140}};

/// Neighbours differ in lightness too.
constexpr Rgb kMaterials[] = {{232, 240, 248}, {255, 230, 160}, {196, 196, 192}, {255, 226, 216},
                              {190, 222, 180}, {232, 222, 242}, {165, 215, 220}, {240, 232, 212},
                              {170, 190, 220}, {255, 243, 205}, {220, 175, 165}, {225, 225, 225}};

constexpr Rgb kNone = {246, 246, 246};

std::string Text(Rgb const& colour) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", static_cast<unsigned>(colour[0]) & 255U,
                  static_cast<unsigned>(colour[1]) & 255U, static_cast<unsigned>(colour[2]) & 255U);
    return text;
}

}  // namespace

double DirectionOf(double angle) {
    double direction = std::fmod(angle, 180);
    if (direction > 90) direction -= 180;
    if (direction <= -90) direction += 180;
    return direction == 0 ? 0 : direction;
}

std::string DirectionColour(double angle) {
    double const direction = DirectionOf(angle);
    double const place = (direction < 0 ? direction + 180 : direction) / 45;
    int const from = static_cast<int>(place) & 3;
    double const share = place - std::floor(place);
    Rgb colour{};
    for (std::size_t i = 0; i < 3; ++i) {
        double const a = kDirections[from][i];
        double const b = kDirections[(from + 1) & 3][i];
        colour[i] = static_cast<int>(std::lround(a + share * (b - a)));
    }
    return Text(colour);
}

std::string MaterialColour(int index) {
    if (index < 0) return Text(kNone);
    return Text(kMaterials[static_cast<std::size_t>(index) % std::size(kMaterials)]);
}

}  // namespace kov::tool
