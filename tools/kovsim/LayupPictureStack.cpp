#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>

#include "LayupPalette.h"
#include "LayupPictureParts.h"
#include "PictureText.h"

namespace kov::tool {
namespace {

constexpr double kAxisGap = 16;
constexpr double kOverhang = 8;  // of the lines of surfaces
constexpr double kTickRoom = 13;
constexpr double kWideFrom = 100;
constexpr int kSpanSteps = 6;
constexpr char kInk[] = "#222222";

std::string HatchName(double angle, bool wide) {
    std::string name = (wide ? "wide" : "hatch") + ShortNumber(DirectionOf(angle));
    std::replace(name.begin(), name.end(), '-', 'm');
    std::replace(name.begin(), name.end(), '.', 'p');
    std::replace(name.begin(), name.end(), '+', '_');
    return name;
}

std::string Points(std::initializer_list<std::pair<double, double>> points) {
    std::string text;
    for (auto const& [x, y] : points) {
        for (double const number : {x, y}) {
            if (!text.empty()) text += ' ';
            text += Pixels(number);
        }
    }
    return text;
}

/// Height of a depth, given in parts of the whole thickness, on an edge of the stack.
double HeightOf(double part, std::vector<double> const& depths, std::vector<double> const& edge) {
    double const whole = edge.back();
    if (part <= 0 || part >= 1 || depths.empty() || !(depths.back() > 0)) return part * whole;
    double const depth = part * depths.back();
    auto const above = std::upper_bound(depths.begin(), depths.end(), depth);
    if (above == depths.begin() || above == depths.end()) return part * whole;
    auto const i = static_cast<std::size_t>(above - depths.begin());
    double const share = (depth - depths[i - 1]) / (depths[i] - depths[i - 1]);
    return edge[i - 1] + share * (edge[i] - edge[i - 1]);
}

struct Surface {
    char const* name;
    double part;  ///< of the whole thickness, from the bottom
    double width;
    char const* dashes;
};

void DrawSurfaces(Svg& svg, std::vector<Surface> const& surfaces, LayupShape const& shape,
                  StackPlace const& place) {
    std::vector<double> wanted;
    for (Surface const& surface : surfaces) {
        double const left = HeightOf(surface.part, shape.depths, shape.left);
        double const right = HeightOf(surface.part, shape.greatestDepths, shape.right);
        // A little longer than the stack, in its own direction.
        double const from = place.left - kOverhang;
        double const to = place.right + kOverhang;
        double const rise = (right - left) / (place.right - place.left) * kOverhang;
        double const y1 = place.bottom - left + rise;
        double const y2 = place.bottom - right - rise;
        svg.Line(from, y1, to, y2, "#ffffff", surface.width + 3);
        svg.Line(from, y1, to, y2, "#000000", surface.width, surface.dashes);
        wanted.push_back(left);
    }
    auto const heights = SpreadOut(wanted, 14, -1e4, shape.height + 1e4);
    for (std::size_t i = 0; i < surfaces.size(); ++i) {
        svg.Label(place.left - 78, place.bottom - heights[i] + 4, surfaces[i].name,
                  {.size = 11, .anchor = "end"});
    }
}

/// Without thicknesses only the surfaces at the top and at the bottom have a place.
std::vector<Surface> SurfacesOf(Layup const& layup, bool measured) {
    Surface const middle{"middle surface", 0.5, 1.1, "9 3 2 3"};
    Surface const reference{"reference surface", 0.5 + layup.offset, 1.8, nullptr};
    if (layup.kind == Layup::Kind::Solid) return {};
    if (!measured) {
        bool const outer = std::abs(layup.offset) == 0.5;
        return outer ? std::vector{reference} : std::vector<Surface>();
    }
    if (!ReferenceIsDrawn(layup)) return {middle};
    if (layup.offset == 0) return {{"reference = middle", 0.5, reference.width, nullptr}};
    return layup.offset > 0 ? std::vector{middle, reference} : std::vector{reference, middle};
}

/// The numbers of the axis: heights, and what is written there.
class Ticks {
  public:
    Ticks(Svg& svg, double x, double bottom) : m_svg(svg), m_x(x), m_bottom(bottom) {}

    void Add(double height, double number, double full) {
        double const y = m_bottom - height;
        auto const next = m_heights.lower_bound(height);
        bool const free = (next == m_heights.end() || *next - height >= kTickRoom) &&
                          (next == m_heights.begin() || height - *std::prev(next) >= kTickRoom);
        m_svg.Line(m_x - (free ? 6 : 3), y, m_x, y, kInk, 0.8);
        if (!free) return;
        m_heights.insert(height);
        // What is left of sums that should come to nothing.
        if (std::abs(number) < 1e-12 * std::abs(full)) number = 0;
        std::string const text = ShortNumber(number);
        std::string const all = FullNumber(number);
        m_svg.Label(m_x - 9, y + 4, text, {.size = 11, .anchor = "end"},
                    all == text ? std::string() : all);
    }

  private:
    Svg& m_svg;
    double m_x;
    double m_bottom;
    std::set<double> m_heights;
};

}  // namespace

bool ReferenceIsDrawn(Layup const& layup) {
    // Three quarters of the thickness at most from the middle surface.
    return layup.kind == Layup::Kind::Shell && std::abs(layup.offset) <= 0.75;
}

void DrawHatches(Svg& svg, LayupKeys const& keys) {
    std::set<std::string> drawn;
    svg.Begin("defs");
    for (PlyDirection const& direction : keys.directions) {
        for (double const angle : SpanSteps(direction.angle)) {
            for (bool const wide : {false, true}) {
                std::string const name = HatchName(angle, wide);
                if (!drawn.insert(name).second) continue;
                double const size = wide ? 24 : 8;
                svg.Begin("pattern").Set("id", name).Set("patternUnits", "userSpaceOnUse");
                svg.Set("width", size).Set("height", size);
                // A line of the hatch goes through the origin.
                svg.Set("patternTransform", "rotate(" + ShortNumber(-DirectionOf(angle)) +
                                                ") translate(0 " + ShortNumber(-size / 2) + ")");
                svg.Begin("rect").Set("y", size / 2 - 1.2).Set("width", size).Set("height", 2.4);
                svg.Set("fill", DirectionColour(angle)).End().End();
            }
        }
    }
    svg.End();
}

std::string HatchOf(double angle, bool wide) { return "url(#" + HatchName(angle, wide) + ")"; }

std::vector<double> SpanSteps(Extent const& angle) {
    if (!angle.Varies()) return {angle.least};
    std::vector<double> steps;
    for (int i = 0; i < kSpanSteps; ++i) {
        double const share = static_cast<double>(i) / (kSpanSteps - 1);
        steps.push_back((1 - share) * angle.least + share * angle.greatest);
    }
    return steps;
}

void DrawBands(Svg& svg, Layup const& layup, LayupKeys const& keys, LayupShape const& shape,
               StackPlace const& place) {
    double const width = place.right - place.left;
    for (std::size_t i = 0; i < layup.layers.size(); ++i) {
        Layer const& layer = layup.layers[i];
        // Hatches start from the middle of the left edge, so that equal bands look the same and
        // the thinnest ones show a line at least.
        double const middle = (shape.left[i] + shape.left[i + 1]) / 2;
        svg.Begin("g").Set("class", "layer");
        svg.Set("transform",
                "translate(" + Pixels(place.left) + " " + Pixels(place.bottom - middle) + ")");
        svg.Tooltip(LayerText(layup, i));
        auto const edge = [&](double part, std::size_t k) {
            return middle - shape.left[k] - part * (shape.right[k] - shape.left[k]);
        };
        auto const corners = [&](double from, double to) {
            return Points({{from * width, edge(from, i)},
                           {to * width, edge(to, i)},
                           {to * width, edge(to, i + 1)},
                           {from * width, edge(from, i + 1)}});
        };
        svg.Begin("polygon").Set("points", corners(0, 1));
        svg.Set("fill", MaterialColour(keys.Material(layer.material))).End();
        if (auto const angle = ExtentOf(layer.angle)) {
            auto const steps = SpanSteps(*angle);
            bool const wide = shape.right[i + 1] - shape.right[i] >= kWideFrom;
            auto const count = static_cast<double>(steps.size());
            for (std::size_t k = 0; k < steps.size(); ++k) {
                auto const step = static_cast<double>(k);
                svg.Begin("polygon").Set("points", corners(step / count, (step + 1) / count));
                svg.Set("fill", HatchOf(steps[k], wide)).End();
            }
        }
        svg.Begin("polygon").Set("points", corners(0, 1)).Set("fill", "none");
        svg.Set("stroke", "#333333").Set("stroke-width", 0.9);
        if (!ThicknessOf(layer)) svg.Set("stroke-dasharray", "5 3");
        svg.End().End();
    }
}

void DrawAxis(Svg& svg, Layup const& layup, LayupShape const& shape, StackPlace const& place) {
    bool const solid = layup.kind == Layup::Kind::Solid;
    std::vector<Surface> const surfaces = SurfacesOf(layup, !shape.depths.empty());
    double const x = place.left - kAxisGap;
    double highest = shape.left.back();
    double lowest = 0;
    for (Surface const& surface : surfaces) {
        double const height = HeightOf(surface.part, shape.depths, shape.left);
        highest = std::max(highest, height);
        lowest = std::min(lowest, height);
    }
    double const tip = place.bottom - highest - 26;
    svg.Line(x, place.bottom - lowest, x, tip + 6, kInk, 1.1);
    svg.Begin("path").Set("d", "M" + Points({{x, tip}}) + "l-3.5 8h7z").Set("fill", kInk).End();
    svg.Label(x - 8, tip + 7, solid ? "part of the whole" : "z",
              {.size = solid ? 11.0 : 13.0, .anchor = "end", .italic = true});
    DrawSurfaces(svg, surfaces, shape, place);

    double const whole = shape.depths.empty() ? 0 : shape.depths.back();
    if (!(whole > 0)) return;
    double const scale = solid ? 1 / whole : 1;
    double const zero = solid ? 0 : (0.5 + layup.offset) * whole;
    if (!std::isfinite(scale) || !std::isfinite(zero)) return;
    Ticks ticks(svg, x, place.bottom);
    auto const add = [&](double height, double depth) {
        ticks.Add(height, (depth - zero) * scale, whole * scale);
    };
    add(0, 0);
    add(shape.left.back(), whole);
    for (Surface const& surface : surfaces)
        add(HeightOf(surface.part, shape.depths, shape.left), surface.part * whole);
    for (std::size_t i = 1; i + 1 < shape.depths.size(); ++i) add(shape.left[i], shape.depths[i]);
}

}  // namespace kov::tool
