#include "LayupPicture.h"

#include <algorithm>
#include <cmath>

#include "LayupPictureParts.h"
#include "PictureText.h"

namespace kov::tool {
namespace {

constexpr double kMargin = 24;
constexpr double kLeftOfStack = 200;  // names of surfaces, numbers, axis
constexpr double kStack = 240;
constexpr double kLeaders = 56;
constexpr double kLegend = 225;
constexpr double kHead = 92;
constexpr double kAboveStack = 44;  // end of the axis, heads of the columns
constexpr double kNoteLine = 17;
constexpr double kNameRoom = 280;  // of each name below the title
constexpr double kEndless = 1e9;

std::string Title(Layup const& layup) {
    std::string const& name = layup.name.empty() ? layup.section : layup.name;
    return name.empty() ? "Section" : name;
}

std::vector<std::string> Notes(Layup const& layup, LayupShape const& shape) {
    std::vector<std::string> notes;
    bool known = true;
    bool raised = false;
    bool turned = false;
    for (std::size_t i = 0; i < layup.layers.size(); ++i) {
        bool const has = ThicknessOf(layup.layers[i]).has_value();
        known = known && has;
        raised = raised || (has && !shape.toScale[i]);
        auto const angle = ExtentOf(layup.layers[i].angle);
        turned = turned || (angle && angle->Varies());
    }
    if (raised) notes.push_back("* drawn thicker than to scale");
    if (!known) notes.push_back("Layers without a thickness have a dashed outline.");
    if (shape.varies) {
        notes.push_back(
            "Thicknesses differ between elements: left edge the least, right edge the greatest of "
            "each layer; z of the left edge.");
    }
    if (turned) {
        notes.push_back(
            "Angles differ between elements: hatched from the least (left) to the greatest "
            "(right).");
    }
    if (layup.kind == Layup::Kind::Shell && std::isfinite(layup.offset) &&
        !ReferenceIsDrawn(layup)) {
        notes.push_back("The reference surface lies outside of the picture, " +
                        ShortNumber(std::abs(layup.offset)) + " thicknesses " +
                        (layup.offset > 0 ? "above" : "below") + " the middle surface.");
    }
    return notes;
}

}  // namespace

std::string LayupPicture(Layup const& layup) {
    LayupKeys const keys(layup);
    LayupShape const shape = ShapeOf(layup);
    LayupTable const table(layup, keys, shape);
    std::vector<std::string> const notes = Notes(layup, shape);
    bool const empty = layup.layers.empty();

    // What of the reference surface is outside of the stack.
    bool const drawn = ReferenceIsDrawn(layup) && !shape.depths.empty();
    double const above = drawn ? std::max(0.0, layup.offset - 0.5) * shape.height : 0;
    double const below = drawn ? std::max(0.0, -layup.offset - 0.5) * shape.height : 0;

    std::vector<std::string> const heads = HeadLines(layup, kNameRoom);
    std::vector<std::string> const whole = HeadLines(layup, kEndless);
    StackPlace place{};
    place.left = kMargin + kLeftOfStack;
    place.right = place.left + kStack;
    place.bottom = kHead + kAboveStack + above + shape.height;
    double const tableLeft = place.right + kLeaders;
    double const legendLeft = tableLeft + table.Width() + 36;
    double width = legendLeft + kLegend + kMargin;
    for (std::string const& line : heads)
        width = std::max(width, TextWidth(line, kHeadSize) + 2 * kMargin);
    double const foot = place.bottom + below + 16;
    LegendSize const legend = SizeOfLegend(keys, foot - kHead);
    double const noted = foot + kNoteLine * static_cast<double>(notes.size());
    double const height = empty ? kHead + 40 : std::max(noted, kHead + legend.height) + kMargin;

    Svg svg(width, height);
    svg.Tooltip("Layup " + Title(layup));
    svg.LabelWithin(kMargin, 38, width - 2 * kMargin, Title(layup), {.size = 20, .bold = true});
    double y = 60;
    for (std::size_t i = 0; i < heads.size(); ++i) {
        svg.Label(kMargin, y, heads[i], {.size = kHeadSize, .fill = "#444444"},
                  whole[i] == heads[i] ? std::string() : whole[i]);
        y += 18;
    }
    if (empty) {
        svg.Label(kMargin, kHead + 20, "no layers", {.size = 13, .italic = true});
        return svg.Take();
    }
    DrawHatches(svg, keys);
    DrawBands(svg, layup, keys, shape, place);
    DrawAxis(svg, layup, shape, place);
    table.Draw(svg, tableLeft, place.bottom, place.right);
    DrawLegend(svg, keys, legend, legendLeft, kHead);
    y = foot;
    for (std::string const& note : notes) {
        svg.Label(kMargin, y += kNoteLine, note, {.size = 11, .fill = "#444444"});
    }
    return svg.Take();
}

}  // namespace kov::tool
