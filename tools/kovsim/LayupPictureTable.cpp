#include <algorithm>
#include <cmath>
#include <numbers>

#include "LayupPalette.h"
#include "LayupPictureParts.h"
#include "PictureText.h"

namespace kov::tool {
namespace {

constexpr double kGap = 18;
constexpr double kChip = 24;
constexpr char kNothing[] = "\xe2\x80\x93";

}  // namespace

LayupTable::LayupTable(Layup const& layup, LayupKeys const& keys, LayupShape const& shape)
    : m_layup(layup), m_shape(shape), m_size(shape.pitch < 18 ? 11 : 12) {
    Column number{.head = "Layer", .right = true};
    Column ply{.head = "Ply"};
    Column material{.head = "Material"};
    Column thickness{.head = "Thickness", .right = true};
    Column angle{.head = "Angle", .chips = !keys.directions.empty()};
    Column orientation{.head = "Orientation"};
    Column points{.head = "Points", .right = true};
    if (layup.kind == Layup::Kind::Solid) thickness.head = "Rel. thickness";
    for (std::size_t i = 0; i < layup.layers.size(); ++i) {
        Layer const& layer = layup.layers[i];
        number.texts.push_back(std::to_string(i + 1));
        ply.texts.push_back(layer.ply);
        material.texts.push_back(layer.material);
        bool const marked = ThicknessOf(layer) && !shape.toScale[i];
        thickness.texts.push_back(NumberText(layer.thickness) + (marked ? " *" : ""));
        bool const turned = layer.angle.variation == LayerNumber::Variation::None;
        angle.texts.push_back(turned ? "" : NumberText(layer.angle, "\xc2\xb0"));
        orientation.texts.push_back(layer.orientation);
        points.texts.push_back(layer.sectionPoints ? std::to_string(*layer.sectionPoints) : "");
    }
    Add(std::move(number), 80, true);
    Add(std::move(ply), 190, false);
    Add(std::move(material), 190, true);
    Add(std::move(thickness), 190, true);
    Add(std::move(angle), 190, false);
    Add(std::move(orientation), 150, false);
    Add(std::move(points), 60, false);
}

void LayupTable::Add(Column column, double room, bool always) {
    bool filled = always;
    column.width = TextWidth(column.head, m_size) * 1.08;  // bold
    for (std::string& text : column.texts) {
        filled = filled || !text.empty();
        if (text.empty()) text = kNothing;
        column.width = std::max(column.width, std::min(room, TextWidth(text, m_size)));
    }
    if (!filled) return;
    m_width += column.width + (column.chips ? kChip : 0) + (m_columns.empty() ? 0 : kGap);
    m_columns.push_back(std::move(column));
}

void LayupTable::Draw(Svg& svg, double x, double bottom, double stackRight) const {
    double const head = bottom - m_shape.height - 16;
    double at = x;
    for (Column const& column : m_columns) {
        double const text = at + (column.chips ? kChip : 0);
        svg.Label(column.right ? text + column.width : text, head, column.head,
                  {.size = m_size, .anchor = column.right ? "end" : "start", .bold = true});
        at = text + column.width + kGap;
    }
    svg.Line(x, head + 7, x + m_width, head + 7, "#999999", 1);

    for (std::size_t i = 0; i < m_layup.layers.size(); ++i) {
        double const y = bottom - m_shape.rows[i];
        double const band = bottom - (m_shape.right[i] + m_shape.right[i + 1]) / 2;
        svg.Line(stackRight, band, stackRight + 8, band, "#999999", 0.8);
        svg.Line(stackRight + 8, band, x - 14, y, "#999999", 0.8);
        svg.Line(x - 14, y, x - 6, y, "#999999", 0.8);
        svg.Begin("g").Set("class", "line").Tooltip(LayerText(m_layup, i));
        at = x;
        for (Column const& column : m_columns) {
            if (column.chips) DrawChip(svg, at + 8, y, m_layup.layers[i]);
            double const text = at + (column.chips ? kChip : 0);
            svg.LabelWithin(column.right ? text + column.width : text, y + 0.35 * m_size,
                            column.width + 0.01, column.texts[i],
                            {.size = m_size, .anchor = column.right ? "end" : "start"});
            at = text + column.width + kGap;
        }
        svg.End();
    }
}

void LayupTable::DrawChip(Svg& svg, double x, double y, Layer const& layer) const {
    auto const angle = ExtentOf(layer.angle);
    if (!angle) return;
    auto const line = [&](double degrees) {
        double const radians = DirectionOf(degrees) * std::numbers::pi / 180;
        double const dx = 0.6 * m_size * std::cos(radians);
        double const dy = 0.6 * m_size * std::sin(radians);
        svg.Line(x - dx, y + dy, x + dx, y - dy, DirectionColour(degrees), 2.4);
    };
    line(angle->least);
    if (angle->Varies()) line(angle->greatest);
}

}  // namespace kov::tool
