#include "Svg.h"

#include <charconv>
#include <cmath>
#include <utility>

#include "PictureText.h"
#include "VtuWriter.h"

namespace kov::tool {
std::string Pixels(double number) {
    // The bound keeps the digits within the buffer; no picture is that large.
    if (!std::isfinite(number) || std::abs(number) > 1e12) return "0";
    char digits[48];
    auto const end =
        std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, 2).ptr;
    std::string text(digits, end);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text == "-0" ? "0" : text;
}

Svg::Svg(double width, double height) {
    m_text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    Begin("svg").Set("xmlns", "http://www.w3.org/2000/svg");
    Set("width", width).Set("height", height);
    Set("viewBox", "0 0 " + Pixels(width) + " " + Pixels(height));
    Set("font-family", "Helvetica, Arial, sans-serif").Set("role", "img");
    Begin("rect").Set("width", width).Set("height", height).Set("fill", "#ffffff").End();
}

Svg& Svg::Begin(char const* tag) {
    CloseTag();
    if (!m_inLine) (m_text += '\n').append(m_open.size(), ' ');
    (m_text += '<') += tag;
    m_open.push_back(tag);
    m_inTag = true;
    std::string_view const name = tag;
    if (name == "text" || name == "title" || name == "desc") m_inLine = true;
    return *this;
}

Svg& Svg::Set(char const* name, double number) { return Set(name, Pixels(number)); }

Svg& Svg::Set(char const* name, std::string_view text) {
    ((m_text += ' ') += name) += "=\"";
    (m_text += XmlText(text)) += '"';
    return *this;
}

Svg& Svg::Text(std::string_view text) {
    CloseTag();
    m_text += XmlText(text);
    return *this;
}

Svg& Svg::End() {
    char const* const tag = m_open.back();
    m_open.pop_back();
    if (std::exchange(m_inTag, false)) {
        m_text += "/>";
    } else {
        if (!m_inLine) (m_text += '\n').append(m_open.size(), ' ');
        ((m_text += "</") += tag) += '>';
    }
    m_inLine = !m_open.empty() && std::string_view(m_open.back()) == "text";
    return *this;
}

Svg& Svg::Line(double x1, double y1, double x2, double y2, std::string_view stroke, double width,
               char const* dashes) {
    Begin("line").Set("x1", x1).Set("y1", y1).Set("x2", x2).Set("y2", y2);
    Set("stroke", stroke).Set("stroke-width", width);
    if (dashes != nullptr) Set("stroke-dasharray", dashes);
    return End();
}

Svg& Svg::Label(double x, double y, std::string_view text, SvgTextStyle const& style,
                std::string_view tooltip) {
    Begin("text").Set("x", x).Set("y", y).Set("font-size", style.size).Set("fill", style.fill);
    if (std::string_view(style.anchor) != "start") Set("text-anchor", style.anchor);
    if (style.bold) Set("font-weight", "bold");
    if (style.italic) Set("font-style", "italic");
    if (!tooltip.empty()) Tooltip(tooltip);
    return Text(text).End();
}

Svg& Svg::LabelWithin(double x, double y, double room, std::string_view text,
                      SvgTextStyle const& style) {
    std::string const shown = Shortened(text, room, style.size);
    return Label(x, y, shown, style, shown == text ? std::string_view() : text);
}

std::string Svg::Take() {
    while (!m_open.empty()) End();
    m_text += '\n';
    return std::exchange(m_text, {});
}

void Svg::CloseTag() {
    if (std::exchange(m_inTag, false)) m_text += '>';
}

}  // namespace kov::tool
