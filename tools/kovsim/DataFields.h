// DataFields: fields of a data line with the errors that go with them, shared by the keyword
// classes.
#pragma once

#include <string>
#include <string_view>

#include "DeckReader.h"
#include "FieldScanner.h"

namespace kov::tool {

/// After a field that was no whole number from 1 upward. `what`: "a node label" or the like;
/// `form`: what a line holds.
[[noreturn]] void FailLabel(DeckReader const& reader, FieldScanner const& fields,
                            FieldScanner::Result result, char const* what, char const* form);
/// After a field that was no real number.
[[noreturn]] void FailNumber(DeckReader const& reader, FieldScanner const& fields,
                             FieldScanner::Result result, char const* what);

/// True if a control character is in a text: messages show names without them, so that two names
/// might look alike.
bool HasControl(std::string_view text);

/// A label: a whole number from 1 upward.
inline int ReadLabel(DeckReader const& reader, FieldScanner& fields, char const* what,
                     char const* form) {
    int label = 0;
    auto const result = fields.ReadInt(label);
    if (result != FieldScanner::Result::Value || label < 1) [[unlikely]] {
        FailLabel(reader, fields, result, what, form);
    }
    return label;
}

}  // namespace kov::tool
