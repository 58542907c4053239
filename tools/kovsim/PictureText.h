// PictureText: names and numbers as they stand in pictures, where room is short.
//
// Widths are those of a common sans-serif face with a margin for wider ones, as nobody knows which
// face will be there when the picture is looked at.
#pragma once

#include <string>
#include <string_view>

namespace kov::tool {

/// Roughly how wide `text` comes out at that size, in pixels.
double TextWidth(std::string_view text, double size);

/// `text`, or as much of its start and end as fits `room` pixels, with an ellipsis between: names
/// that were made by the thousand differ in their ends.
std::string Shortened(std::string_view text, double room, double size);

/// Six significant digits; "?" for what is no finite number.
std::string ShortNumber(double number);

/// As many digits as are needed to read the same number back; "?" for what is no finite number.
std::string FullNumber(double number);

}  // namespace kov::tool
