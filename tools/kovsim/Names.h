// Names: small operations on the names that users give.
#pragma once

#include <string>
#include <string_view>

#include "KOVString.h"

namespace kov::tool {

/// A to Z folded; all other bytes stay.
std::string LowerCase(std::string_view text);

/// Takes the double quotes out of a text. False if they are not in pairs.
bool Unquote(std::string& text);

/// A name as a user writes it: as it is where it is plain, else in double quotes; control
/// characters are left out. The empty name is `""`.
std::string NameText(std::string_view name);

/// A text for a message: control characters and all but the first 60 bytes are left out.
std::string Shown(std::string_view text);

inline std::string_view View(KOVString const& text) {
    return {text.TextOrEmpty(), static_cast<std::size_t>(text.GetLengthInByte())};
}
inline std::string Plain(KOVString const& text) { return std::string(View(text)); }
/// A KOVString of all the bytes.
KOVString ToKOVString(std::string_view text);

}  // namespace kov::tool
