// Layups for tests of what is made of them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Layup.h"

namespace kov::test {

inline tool::LayerNumber Constant(double value) {
    return {tool::LayerNumber::Variation::Constant, value, {}, {}};
}
inline tool::LayerNumber Spread(double least, double greatest) {
    return {tool::LayerNumber::Variation::ByElement, {}, std::pair(least, greatest), {}};
}
/// Of the one element that was asked for.
inline tool::LayerNumber OfElement(double value) {
    return {tool::LayerNumber::Variation::ByElement, value, {}, {}};
}

inline tool::Layer Ply(std::string ply, std::string material, tool::LayerNumber thickness,
                       tool::LayerNumber angle) {
    tool::Layer layer;
    layer.ply = std::move(ply);
    layer.material = std::move(material);
    layer.thickness = std::move(thickness);
    layer.angle = std::move(angle);
    layer.sectionPoints = 3;
    return layer;
}

/// A composite shell section named SKIN.
inline tool::Layup Composite(std::vector<tool::Layer> layers = {}) {
    tool::Layup layup;
    layup.section = "SKIN";
    layup.composite = true;
    layup.orientation = "FIBRE";
    layup.assignments = 1;
    layup.elementCount = 12;
    layup.layers = std::move(layers);
    return layup;
}

/// Plies P1, P2, ... of one material with these angles, 0.125 thick, from the bottom up.
inline tool::Layup OfAngles(std::vector<double> const& angles) {
    tool::Layup layup = Composite();
    for (double const angle : angles) {
        layup.layers.push_back(Ply("P" + std::to_string(layup.layers.size() + 1), "CARBON",
                                   Constant(0.125), Constant(angle)));
    }
    return layup;
}

}  // namespace kov::test
