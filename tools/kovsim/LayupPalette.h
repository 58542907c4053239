// LayupPalette: the colours of a picture of layers.
//
// Directions have strong colours, for hatch lines; materials have pale ones, for what lies below
// the hatch. The colours of 0, 45, 90 and -45 degrees are far apart for colour-blind readers too,
// and the same in all pictures; other directions lie in between. In grey, hatches still tell
// directions.
#pragma once

#include <string>

namespace kov::tool {

/// The same direction in (-90, 90] degrees; `angle` must be finite.
double DirectionOf(double angle);

/// Colour of a direction, `#rrggbb`; `angle` in degrees, finite.
std::string DirectionColour(double angle);

/// Colour of the material number `index`, `#rrggbb`; negative: of no material. They recur after
/// the last one.
std::string MaterialColour(int index);

}  // namespace kov::tool
