// LayupKeys: what the legend of a picture of layers has to explain, and the words of its lines.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Layup.h"
#include "LayupShape.h"

namespace kov::tool {

/// A direction of plies, or a span of them where the angle differs between elements.
struct PlyDirection {
    Extent angle;
    std::string label;
    int layers = 0;
};

struct LayupKeys {
    explicit LayupKeys(Layup const& layup);

    /// Number of a material, by which it is coloured; -1 for none.
    int Material(std::string const& name) const;

    std::vector<std::string> materials;         ///< from the bottom up, each once
    std::map<std::string, int> materialLayers;  ///< how many layers of each
    std::vector<PlyDirection> directions;       ///< the flattest first, spans at the end
    int withoutAngle = 0;                       ///< layers

  private:
    std::map<std::string, int> m_materialIndex;
};

/// Size of the lines below the title.
inline constexpr double kHeadSize = 13;

/// "0.125", "0.1 ... 0.2", "by element", or a dash.
std::string NumberText(LayerNumber const& number, char const* unit = "");

/// All about a layer in full digits, on one line.
std::string LayerText(Layup const& layup, std::size_t index);

/// What stands below the title: kind, size, place; then orientation, integration, reference.
/// Names are shortened to `room` pixels.
std::vector<std::string> HeadLines(Layup const& layup, double room);

}  // namespace kov::tool
