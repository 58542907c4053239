// Layup: the stack of one section, layer by layer, as it is shown to engineers.
//
// Plain values, gathered from the document by one transfer for each kind of datum; the table, the
// JSON text and the picture are made of it without another look at the document.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kov::tool {

/// A number of each layer that may differ between the elements of a section.
struct LayerNumber {
    enum class Variation { None, Constant, ByElement };

    Variation variation = Variation::None;
    /// The number; with `ByElement` only where one element was asked for.
    std::optional<double> value;
    /// Least and greatest over the elements, with `ByElement`.
    std::optional<std::pair<double, double>> range;
    /// By element of `Layup::elements`, with `ByElement` and where values were asked for.
    std::vector<double> values;
};

struct Layer {
    std::string ply;          ///< empty: none
    std::string material;     ///< empty: none
    std::string orientation;  ///< empty: that of the section
    std::optional<int> sectionPoints;
    LayerNumber thickness;  ///< in the model's unit of length; a share of the whole in solids
    LayerNumber angle;      ///< degrees, from axis 1 of the section's orientation
};

struct Layup {
    enum class Kind { Shell, Solid };

    /// One element that was asked for.
    struct Element {
        std::string instance;
        int label;
        std::string type;
    };

    std::string section;
    Kind kind = Kind::Shell;
    bool composite = false;
    bool gauss = false;         ///< integrated by Gauss points; by Simpson's rule otherwise
    std::string name;           ///< of the layup; empty: none
    std::string orientation;    ///< of the section; empty: none
    double offset = 0;          ///< of the reference surface from the middle one, in thicknesses
    int assignments = 0;        ///< how many assignments use the section
    std::vector<int> elements;  ///< ordinals; filled where values were asked for
    long elementCount = 0;
    std::optional<Element> element;
    std::vector<Layer> layers;  ///< the bottom layer first
    /// Least and greatest thickness of the whole stack over the elements, where it varies; nothing
    /// where it is beyond the range of numbers.
    std::optional<std::pair<double, double>> thicknessRange;
    int stackDirection = 0;  ///< 1 to 3, 4 by the orientation; 0 where it is not given

    /// The thickness of the whole stack; nothing where a layer has none or varies by element and
    /// no element was asked for, and where it is beyond the range of numbers.
    std::optional<double> Thickness() const;
};

}  // namespace kov::tool
