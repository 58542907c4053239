// LayupShape: how high the bands of a picture of layers are, and where the lines beside them go.
//
// Heights are pixels above the bottom of the stack, to scale with the thicknesses as long as each
// band stays high enough to be seen. Where thicknesses vary by element, the left edge of the stack
// shows the least ones and the right edge the greatest ones.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Layup.h"

namespace kov::tool {

/// What a number of a layer comes to: two equal numbers where it is one.
struct Extent {
    double least;
    double greatest;

    bool Varies() const { return least != greatest; }
};

/// Nothing where there is no number, or none that can be drawn.
std::optional<Extent> ExtentOf(LayerNumber const& number);

/// The same of a thickness: nothing for a negative one too.
std::optional<Extent> ThicknessOf(Layer const& layer);

/// Heights in proportion to the thicknesses, which sum up to `height`; those below `least` are
/// raised to it at the cost of the others. `least` times their number must not exceed `height`;
/// the thicknesses are finite and not negative.
std::vector<double> BandHeights(std::vector<double> const& thicknesses, double height,
                                double least);

/// Places as near to the wanted ones (ascending) as can be, `pitch` apart at least, within
/// [low, high], which has room for all.
std::vector<double> SpreadOut(std::vector<double> const& wanted, double pitch, double low,
                              double high);

struct LayupShape {
    double height;              ///< of the right edge
    double pitch;               ///< least distance of the lines beside the bands
    std::vector<double> left;   ///< interfaces at the left edge, n + 1, ascending
    std::vector<double> right;  ///< interfaces at the right edge, n + 1, ascending
    std::vector<double> rows;   ///< centres of the lines, n, ascending
    std::vector<bool> toScale;  ///< by layer
    /// Interfaces at the left edge in the model's unit of length, from the bottom; empty where a
    /// layer has no thickness.
    std::vector<double> depths;
    std::vector<double> greatestDepths;  ///< the same of the right edge
    bool varies = false;                 ///< a thickness differs between elements

    bool AllToScale() const;
};

LayupShape ShapeOf(Layup const& layup);

}  // namespace kov::tool
