#include "FieldScanner.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace kov::tool {

std::string_view FieldScanner::Field() const {
    char const* end = m_field;
    bool quoted = false;
    for (; !IsEnd(*end) && (quoted || *end != ','); ++end) {
        if (*end == '"') quoted = !quoted;
    }
    while (end > m_field && IsBlank(end[-1])) --end;
    return {m_field, static_cast<std::size_t>(end - m_field)};
}

FieldScanner::Result FieldScanner::ReadNoInt() {
    return *m_at == '-' || *m_at == '+' || !EndField(m_at) ? Result::Wrong : Result::Empty;
}

FieldScanner::Result FieldScanner::ReadLongInt() {
    std::string_view const field = Field();
    std::size_t at = field.front() == '-' || field.front() == '+' ? 1 : 0;
    if (field.find_first_not_of("0123456789", at) != std::string_view::npos) return Result::Wrong;
    return Result::TooLarge;
}

FieldScanner::Result FieldScanner::ReadNoDouble() {
    return *m_at == '-' || *m_at == '+' || !EndField(m_at) ? Result::Wrong : Result::Empty;
}

// Numbers that from_chars does not take as they stand: a D for the exponent, an exponent out of
// range.
FieldScanner::Result FieldScanner::ReadOddDouble(double& value) {
    std::string_view field = Field();
    char text[64];
    if (field.size() >= sizeof text) return Result::Wrong;
    std::size_t length = 0;
    for (char const c : field) text[length++] = c == 'D' || c == 'd' ? 'e' : c;
    text[length] = '\0';
    if (std::strspn(text, "0123456789+-.eE") != length) return Result::Wrong;
    char* end = nullptr;
    double const number = std::strtod(text, &end);
    if (end != text + length) return Result::Wrong;
    if (!std::isfinite(number)) return Result::TooLarge;
    value = number;
    static_cast<void>(EndField(m_field + length));
    return Result::Value;
}

}  // namespace kov::tool
