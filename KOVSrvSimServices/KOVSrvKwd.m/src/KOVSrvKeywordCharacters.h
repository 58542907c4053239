// The kinds of characters that keyword text tells apart: those of the C locale, whatever the locale
// of the process is. For the keyword classes.
#pragma once

namespace kov::keyword {

inline bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }

inline bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

}  // namespace kov::keyword
