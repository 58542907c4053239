#include "LayupText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

#include "Columns.h"
#include "MemberList.h"
#include "Names.h"
#include "ObjectContent.h"

namespace kov::tool {
namespace {

using Variation = LayerNumber::Variation;

constexpr char kNothing[] = "-";

std::string Named(std::string const& name) { return name.empty() ? kNothing : NameText(name); }

// A number that came of others: without what rounding has left behind its ninth digit. `scale`:
// what is small beside it counts as 0.
std::string Rounded(double number, double scale) {
    if (std::abs(number) < 1e-12 * std::abs(scale)) return "0";
    char digits[32];
    auto const result =
        std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, 9);
    return {digits, result.ptr};
}

std::string RangeText(std::optional<std::pair<double, double>> const& range) {
    if (!range) return "by element";
    return NumberText(range->first) + " .. " + NumberText(range->second) + " by element";
}

std::string NumberOf(LayerNumber const& number) {
    if (number.value) return NumberText(*number.value);
    return number.variation == Variation::ByElement ? RangeText(number.range) : kNothing;
}

std::string StackDirectionText(int direction) {
    return direction == 4 ? "by the orientation" : "axis " + std::to_string(direction);
}

std::string OffsetText(double offset) {
    if (offset == 0) return "0, the reference surface is the middle one";
    return NumberText(offset) + " of the thickness, towards the " + (offset > 0 ? "top" : "bottom");
}

std::string ElementsText(Layup const& layup) {
    return std::to_string(layup.elementCount) + ", in " +
           CountText(layup.assignments, "assignment");
}

// The places of the layers in the stack are within the range of numbers.
bool IsPlaced(Layup const& layup) {
    std::optional<double> const thickness = layup.Thickness();
    if (!thickness) return false;
    if (layup.kind == Layup::Kind::Solid) return *thickness == 0 || std::isfinite(1 / *thickness);
    return std::isfinite((std::abs(layup.offset) + 0.5) * *thickness);
}

Columns Header(Layup const& layup) {
    bool const shell = layup.kind == Layup::Kind::Shell;
    Columns header("ll");
    if (!layup.name.empty()) header.Row({"layup", NameText(layup.name)});
    if (layup.element) {
        header.Row(
            {"element",
             NameText(layup.element->instance) + " " + std::to_string(layup.element->label) + ", " +
                 (layup.element->type.empty() ? "without type" : NameText(layup.element->type))});
    }
    header.Row({"elements", ElementsText(layup)});
    header.Row({"orientation", layup.orientation.empty() ? "none" : NameText(layup.orientation)});
    if (layup.stackDirection != 0)
        header.Row({"stacked along", StackDirectionText(layup.stackDirection)});
    if (shell) {
        header.Row({"offset", OffsetText(layup.offset)});
        header.Row({"integration", layup.gauss ? "Gauss points" : "Simpson's rule"});
    }
    std::optional<double> const thickness = layup.Thickness();
    char const* const title = shell ? "thickness" : "sum of shares";
    if (!thickness) {
        header.Row({title, layup.thicknessRange
                               ? Rounded(layup.thicknessRange->first, 1) + " .. " +
                                     Rounded(layup.thicknessRange->second, 1) + " by element"
                               : "not known"});
        return header;
    }
    header.Row({title, Rounded(*thickness, *thickness)});
    if (shell && IsPlaced(layup)) {
        header.Row({"from", Rounded(-(0.5 + layup.offset) * *thickness, *thickness) +
                                " (bottom) to " +
                                Rounded((0.5 - layup.offset) * *thickness, *thickness) +
                                " (top), from the reference surface"});
    }
    return header;
}

}  // namespace

std::string LayupText(Layup const& layup) {
    bool const shell = layup.kind == Layup::Kind::Shell;
    std::string text = "section " + Named(layup.section) + ": " +
                       (layup.composite ? "composite " : "homogeneous ") +
                       (shell ? "shell" : "solid") + " of " +
                       CountText(static_cast<long>(layup.layers.size()), "layer") + "\n";
    text += Header(layup).Text("  ");
    std::optional<double> const thickness = layup.Thickness();
    bool const placed = IsPlaced(layup);
    Columns columns("rlllrrrl");
    columns.Row({"layer", "ply", "material", "orientation", "points", shell ? "thickness" : "share",
                 "angle", placed ? "from .. to" : ""});
    // Of shells from the reference surface, of solids in parts of the whole.
    double const scale = shell || thickness.value_or(0) == 0 ? 1 : 1 / *thickness;
    double const whole = thickness.value_or(0) * scale;
    double const bottom = shell ? -(0.5 + layup.offset) * whole : 0;
    double height = 0;
    int number = 0;
    for (Layer const& layer : layup.layers) {
        std::string place;
        if (placed) {
            place = Rounded(bottom + height, whole);
            height += *layer.thickness.value * scale;
            place += " .. " + Rounded(bottom + height, whole);
        }
        columns.Row({std::to_string(++number), Named(layer.ply), Named(layer.material),
                     Named(layer.orientation),
                     layer.sectionPoints ? std::to_string(*layer.sectionPoints) : kNothing,
                     NumberOf(layer.thickness), NumberOf(layer.angle), place});
    }
    text += columns.Text("  ");
    if (layup.layers.size() > 1) {
        text += "  layer 1 is the bottom one, layer " + std::to_string(layup.layers.size()) +
                " the top one\n";
    }
    return text;
}

void PrintLayupValues(TextOut& out, Layup const& layup, MeshLabels const& labels) {
    std::vector<LayerNumber const*> shown;
    std::vector<std::string> titles = {"element"};
    for (std::size_t i = 0; i < layup.layers.size(); ++i) {
        auto const add = [&](LayerNumber const& number, char const* what) {
            if (number.variation != Variation::ByElement || number.values.empty()) return;
            shown.push_back(&number);
            titles.push_back(what + std::to_string(i + 1));
        };
        add(layup.layers[i].thickness, "thickness ");
        add(layup.layers[i].angle, "angle ");
    }
    if (shown.empty()) return;
    // In pieces, so that the texts of all elements never stand in memory.
    constexpr std::size_t kPiece = 10000;
    for (std::size_t first = 0; first < layup.elements.size(); first += kPiece) {
        std::size_t const last = std::min(first + kPiece, layup.elements.size());
        std::vector<int> const piece(layup.elements.begin() + static_cast<std::ptrdiff_t>(first),
                                     layup.elements.begin() + static_cast<std::ptrdiff_t>(last));
        std::vector<Labelled> const names = labels.Look(piece);
        Columns columns("l" + std::string(shown.size(), 'r'));
        if (first == 0) columns.Row(titles);
        for (std::size_t i = 0; i < piece.size(); ++i) {
            Labelled const& name = names[i];
            std::vector<std::string> row = {
                InstanceText(labels, name.instance) + " " +
                std::to_string(name.instance < 0 ? piece[i] : name.label)};
            for (LayerNumber const* const number : shown)
                row.push_back(std::isnan(number->values[first + i])
                                  ? kNothing
                                  : NumberText(number->values[first + i]));
            columns.Row(std::move(row));
        }
        out << columns.Text("  ");
    }
}

}  // namespace kov::tool
