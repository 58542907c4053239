#include "Names.h"

#include <algorithm>
#include <cctype>

namespace kov::tool {

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

bool Unquote(std::string& text) {
    auto const quotes = std::count(text.begin(), text.end(), '"');
    if (quotes != 0) std::erase(text, '"');
    return quotes % 2 == 0;
}

std::string NameText(std::string_view name) {
    bool plain = !name.empty();
    std::string text;
    for (char const c : name) {
        auto const byte = static_cast<unsigned char>(c);
        plain = plain && (std::isalnum(byte) != 0 || byte >= 0x80 || c == '-' || c == '_');
        if (byte >= 0x20 && byte != 0x7f) text += c;
    }
    return plain ? text : '"' + text + '"';
}

std::string Shown(std::string_view text) {
    std::string shown;
    for (char const c : text.substr(0, 60)) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7f) shown += c;
    }
    if (text.size() > 60) shown += "...";
    return shown;
}

KOVString ToKOVString(std::string_view text) {
    KOVString result;
    result.BuildFromUTF8(text.data(), static_cast<int>(text.size()));
    return result;
}

}  // namespace kov::tool
