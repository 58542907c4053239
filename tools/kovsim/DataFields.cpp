#include "DataFields.h"

#include <algorithm>

#include "Names.h"

namespace kov::tool {

using Result = FieldScanner::Result;

void FailLabel(DeckReader const& reader, FieldScanner const& fields, Result result,
               char const* what, char const* form) {
    if (result == Result::Empty) {
        reader.Fail(std::string(what) + " is missing; expected " + form);
    }
    std::string const field = "'" + Shown(fields.Field()) + "'";
    if (result == Result::Wrong) {
        reader.Fail(field + " is no whole number; expected " + what);
    }
    reader.Fail(field + " is out of range; expected " + what + " from 1 to 2147483647");
}

void FailNumber(DeckReader const& reader, FieldScanner const& fields, Result result,
                char const* what) {
    std::string const field = "'" + Shown(fields.Field()) + "'";
    reader.Fail(field +
                (result == Result::TooLarge ? " is too large a number; expected "
                                            : " is no number; expected ") +
                what);
}

bool HasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char const c) {
        auto const byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7f;
    });
}

}  // namespace kov::tool
