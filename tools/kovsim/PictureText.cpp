#include "PictureText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

#include "Json.h"

namespace kov::tool {
namespace {

constexpr char kEllipsis[] = "\xe2\x80\xa6";

/// Width of the character in parts of the size.
double CharacterWidth(std::string_view character) {
    if (character == kEllipsis) return 1;
    if (character.size() == 2) return 0.65;  // letters of Europe and its neighbours
    if (character.size() > 2) return 1.05;   // ideographs and the like
    char const c = character.front();
    if (std::string_view(" .,:;'|!()[]-/\\ijlIftr").find(c) != std::string_view::npos) return 0.35;
    if (std::string_view("mwMW@%").find(c) != std::string_view::npos) return 0.9;
    return c >= 'A' && c <= 'Z' ? 0.71 : 0.58;
}

std::size_t CharacterLength(std::string_view text) {
    return std::max<std::size_t>(1, Utf8SequenceLength(text));
}

}  // namespace

double TextWidth(std::string_view text, double size) {
    double width = 0;
    while (!text.empty()) {
        std::size_t const length = CharacterLength(text);
        width += CharacterWidth(text.substr(0, length));
        text.remove_prefix(length);
    }
    return width * size;
}

std::string Shortened(std::string_view text, double room, double size) {
    if (TextWidth(text, size) <= room) return std::string(text);
    std::vector<std::string_view> characters;
    for (std::string_view rest = text; !rest.empty();) {
        characters.push_back(rest.substr(0, CharacterLength(rest)));
        rest.remove_prefix(characters.back().size());
    }
    // From both ends by turns, two at the start for one at the end.
    double left = room / size - CharacterWidth(kEllipsis);
    std::size_t head = 0;
    std::size_t tail = 0;
    while (head + tail < characters.size()) {
        bool const atEnd = head >= 2 * (tail + 1);
        left -= CharacterWidth(characters[atEnd ? characters.size() - 1 - tail : head]);
        if (left < 0) break;
        ++(atEnd ? tail : head);
    }
    std::string shown;
    for (std::size_t i = 0; i < head; ++i) shown += characters[i];
    shown += kEllipsis;
    for (std::size_t i = characters.size() - tail; i < characters.size(); ++i)
        shown += characters[i];
    return shown;
}

std::string ShortNumber(double number) {
    if (!std::isfinite(number)) return "?";
    char digits[32];
    auto const end = std::to_chars(digits, digits + sizeof digits, number == 0 ? 0 : number,
                                   std::chars_format::general, 6)
                         .ptr;
    return {digits, end};
}

std::string FullNumber(double number) {
    if (!std::isfinite(number)) return "?";
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, number == 0 ? 0 : number).ptr};
}

}  // namespace kov::tool
