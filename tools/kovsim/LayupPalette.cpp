#include "LayupPalette.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace kov::tool {
namespace {

using Rgb = std::array<int, 3>;

/// At 0, 45, 90 and 135 degrees.
constexpr Rgb kDirections[] = {{0, 95, 160}, {0, 140, 100}, {205, 85, 0}, {170, 70, 140}};

constexpr Rgb kMaterials[] = {{232, 238, 245}, {255, 240, 200}, {214, 214, 210}, {250, 220, 208},
                              {220, 236, 214}, {228, 218, 238}, {205, 232, 234}, {232, 222, 200},
                              {190, 205, 225}, {255, 225, 150}, {185, 185, 182}, {240, 190, 175}};

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
