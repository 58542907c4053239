// Numbers at the start of a text, as strtol and strtod read them in the C locale, and faster.
//
// The usual spellings are read directly; whatever is unusual goes to the C runtime. Decimal numbers
// do not depend on the locale of the process: the comma separates fields here. For the keyword
// readers.
#pragma once

namespace kov::keyword {

/// The number at `text`, which ends with a zero byte. `end` is set behind it, or to `text` if there
/// is none; the result is 0 then. Decimal, cut to int.
int ToInt(char const* text, char const*& end);
double ToDouble(char const* text, char const*& end);

}  // namespace kov::keyword
