#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include "LayupPalette.h"
#include "LayupPictureParts.h"
#include "PictureText.h"

namespace kov::tool {
namespace {

constexpr double kCompass = 172;  // height
constexpr double kRadius = 56;
constexpr double kLine = 20;
constexpr double kGap = 14;
constexpr double kTextRoom = 175;
constexpr double kHead = kGap + 14;
constexpr char kInk[] = "#222222";

std::pair<double, double> On(double angle, double radius) {
    double const radians = angle * std::numbers::pi / 180;
    return {radius * std::cos(radians), -radius * std::sin(radians)};
}

void DrawArrow(Svg& svg, double x, double y, bool up, char const* name) {
    constexpr double length = kRadius + 32;
    if (up) {
        svg.Line(x, y, x, y - length + 6, kInk, 1.1);
        svg.Begin("path").Set("transform",
                              "translate(" + Pixels(x) + " " + Pixels(y - length) + ")");
        svg.Set("d", "M0 0l-3.5 8h7z").Set("fill", kInk).End();
        svg.Label(x - 8, y - length + 8, name, {.size = 13, .anchor = "end", .bold = true});
    } else {
        svg.Line(x, y, x + length - 6, y, kInk, 1.1);
        svg.Begin("path").Set("transform",
                              "translate(" + Pixels(x + length) + " " + Pixels(y) + ")");
        svg.Set("d", "M0 0l-8 -3.5v7z").Set("fill", kInk).End();
        svg.Label(x + length - 2, y + 16, name, {.size = 13, .anchor = "end", .bold = true});
    }
}

/// A sector for a span of angles, to both sides as fibres have no sense of direction.
void DrawSpan(Svg& svg, double x, double y, Extent const& angle) {
    double const middle = (angle.least + angle.greatest) / 2;
    if (angle.greatest - angle.least >= 180) {
        svg.Begin("circle").Set("cx", x).Set("cy", y).Set("r", kRadius);
        svg.Set("fill", "#888888").Set("fill-opacity", 0.2).End();
        return;
    }
    for (double const turn : {0.0, 180.0}) {
        auto const [x1, y1] = On(std::fmod(angle.least + turn, 360), kRadius);
        auto const [x2, y2] = On(std::fmod(angle.greatest + turn, 360), kRadius);
        svg.Begin("polygon");
        std::string points = Pixels(x) + " " + Pixels(y);
        constexpr int steps = 24;
        for (int i = 0; i <= steps; ++i) {
            double const share = static_cast<double>(i) / steps;
            double const at = angle.least + share * (angle.greatest - angle.least);
            auto const [dx, dy] = On(std::fmod(at + turn, 360), kRadius);
            points += " " + Pixels(x + dx) + " " + Pixels(y + dy);
        }
        svg.Set("points", points).Set("fill", DirectionColour(middle)).Set("fill-opacity", 0.25);
        svg.End();
        svg.Line(x, y, x + x1, y + y1, DirectionColour(angle.least), 1.6);
        svg.Line(x, y, x + x2, y + y2, DirectionColour(angle.greatest), 1.6);
    }
}

void DrawCompass(Svg& svg, LayupKeys const& keys, double x, double y) {
    svg.Begin("circle").Set("cx", x).Set("cy", y).Set("r", kRadius);
    svg.Set("fill", "#fafafa").Set("stroke", "#999999").Set("stroke-width", 0.8).End();
    for (PlyDirection const& direction : keys.directions) {
        if (direction.angle.Varies()) DrawSpan(svg, x, y, direction.angle);
    }
    DrawArrow(svg, x, y, false, "1");
    DrawArrow(svg, x, y, true, "2");
    std::vector<std::pair<double, double>> labels = {{kRadius + 24, 16}};  // the name of axis 1
    for (PlyDirection const& direction : keys.directions) {
        if (direction.angle.Varies()) continue;
        double const angle = direction.angle.least;
        auto const [dx, dy] = On(angle, kRadius);
        svg.Line(x - dx, y - dy, x + dx, y + dy, DirectionColour(angle),
                 keys.directions.size() > 12 ? 1.4 : 3);
        if (keys.directions.size() > 12) continue;
        // Beside the axes, not on them.
        auto const beside = On(angle, kRadius + 8);
        double tx = beside.first;
        double ty = beside.second + 4;
        if (std::abs(angle) < 8) ty += angle < 0 ? 8 : -8;
        if (std::abs(angle) > 82) tx += 5;
        bool const free = std::all_of(labels.begin(), labels.end(), [&](auto const& other) {
            return std::abs(other.second - ty) >= 12 || std::abs(other.first - tx) >= 30;
        });
        if (!free) continue;
        labels.emplace_back(tx, ty);
        svg.Label(x + tx, y + ty, direction.label, {.size = 11});
    }
}

std::string Layers(int count) {
    return std::to_string(count) + (count == 1 ? " layer" : " layers");
}

class Legend {
  public:
    Legend(Svg& svg, double x, double y) : m_svg(svg), m_x(x), m_y(y) {}

    double Y() const { return m_y; }

    void Head(char const* text) {
        m_svg.Label(m_x, m_y + kHead - 6, text, {.bold = true});
        m_y += kHead;
    }

    /// A box of colour, and over it the hatches from left to right.
    void Line(std::string const& colour, std::vector<double> const& hatches, std::string name,
              int layers) {
        std::string const count = " (" + Layers(layers) + ")";
        m_svg.Begin("g").Set("transform", "translate(" + Pixels(std::round(m_x)) + " " +
                                              Pixels(std::round(m_y)) + ")");
        m_svg.Tooltip(name + count);
        m_svg.Begin("rect").Set("width", 32.0).Set("height", 16.0).Set("fill", colour);
        m_svg.Set("stroke", "#333333").Set("stroke-width", 0.8).End();
        double at = 0;
        for (double const angle : hatches) {
            double const width = 32 / static_cast<double>(hatches.size());
            m_svg.Begin("rect").Set("x", at).Set("width", width).Set("height", 16.0);
            m_svg.Set("fill", HatchOf(angle)).End();
            at += width;
        }
        m_svg.Label(42, 12, Shortened(name, kTextRoom - TextWidth(count, 12), 12) + count);
        m_svg.End();
        m_y += kLine;
    }

    void Others(std::size_t number) {
        m_svg.Label(m_x + 42, m_y + 12,
                    "and " + std::to_string(number) + (number == 1 ? " other" : " others"));
        m_y += kLine;
    }

  private:
    Svg& m_svg;
    double m_x;
    double m_y;
};

double Block(std::size_t lines, std::size_t most) {
    if (lines == 0) return 0;
    return kHead + kLine * static_cast<double>(std::min(lines, most + 1));
}

std::size_t AngleLines(LayupKeys const& keys) {
    return keys.directions.empty() ? 0 : keys.directions.size() + (keys.withoutAngle > 0 ? 1 : 0);
}

}  // namespace

LegendSize SizeOfLegend(LayupKeys const& keys, double room) {
    double const compass = keys.directions.empty() ? 0 : kCompass;
    double const lines = (room - compass - 2 * kHead) / (2 * kLine) - 1;
    LegendSize size{.most = static_cast<std::size_t>(std::max(8.0, lines)), .height = compass};
    size.height += Block(AngleLines(keys), size.most) + Block(keys.materials.size(), size.most);
    return size;
}

void DrawLegend(Svg& svg, LayupKeys const& keys, LegendSize const& size, double x, double y) {
    if (!keys.directions.empty()) {
        DrawCompass(svg, keys, x + kRadius + 18, y + kRadius + 44);
        y += kCompass;
    }
    Legend legend(svg, x, y);
    std::size_t const angles = std::min(size.most, keys.directions.size());
    if (angles > 0) legend.Head("Angles");
    for (std::size_t i = 0; i < angles; ++i) {
        PlyDirection const& direction = keys.directions[i];
        legend.Line("#ffffff", SpanSteps(direction.angle), direction.label, direction.layers);
    }
    if (keys.directions.size() > angles) {
        legend.Others(keys.directions.size() - angles);
    } else if (AngleLines(keys) > angles) {
        legend.Line("#ffffff", {}, "no angle shown", keys.withoutAngle);
    }
    std::size_t const materials = std::min(size.most, keys.materials.size());
    if (materials > 0) legend.Head("Materials");
    for (std::size_t i = 0; i < materials; ++i) {
        std::string const& material = keys.materials[i];
        legend.Line(MaterialColour(static_cast<int>(i)), {}, material,
                    keys.materialLayers.at(material));
    }
    if (keys.materials.size() > materials) legend.Others(keys.materials.size() - materials);
}

}  // namespace kov::tool
