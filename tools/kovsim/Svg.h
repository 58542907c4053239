// Svg: writes one SVG picture, element by element.
//
// Elements are begun, get their attributes, then text or children, and are ended. Texts and
// attributes are escaped here, and what XML cannot hold becomes a question mark, so that the result
// is well-formed whatever the names of a model are. Lengths are pixels, y points downward.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kov::tool {

/// A length with two decimals at most, as it stands in attributes; "0" for what is no finite
/// number.
std::string Pixels(double number);

/// How a line of text looks.
struct SvgTextStyle {
    double size = 12;
    char const* anchor = "start";
    char const* fill = "#222222";
    bool bold = false;
    bool italic = false;
};

class Svg {
  public:
    /// A picture of that size, with a light ground.
    Svg(double width, double height);

    Svg& Begin(char const* tag);
    /// An attribute of the element begun last, before its text and children.
    Svg& Set(char const* name, double number);
    Svg& Set(char const* name, std::string_view text);
    Svg& Text(std::string_view text);
    Svg& End();

    /// The text that shows where the pointer rests on the element begun last.
    Svg& Tooltip(std::string_view text) { return Begin("title").Text(text).End(); }

    Svg& Line(double x1, double y1, double x2, double y2, std::string_view stroke, double width,
              char const* dashes = nullptr);
    /// A line of text with its base line at y; `tooltip` may be empty.
    Svg& Label(double x, double y, std::string_view text, SvgTextStyle const& style = {},
               std::string_view tooltip = {});
    /// The same, shortened to `room` pixels; the whole text then is the tooltip.
    Svg& LabelWithin(double x, double y, double room, std::string_view text,
                     SvgTextStyle const& style = {});

    /// Ends what is open.
    std::string Take();

  private:
    void CloseTag();

    std::string m_text;
    std::vector<char const*> m_open;
    bool m_inTag = false;
    bool m_inLine = false;  ///< inside of <text> and <title>, where blanks count
};

}  // namespace kov::tool
