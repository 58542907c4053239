// Numbers to and from text. The formats come from callers, so they are read here before the C
// runtime sees them: a format can ask for nothing but the one int that is there.
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "KOVSimException.h"
#include "KOVString.h"

namespace {

/// Whether `format` holds exactly one conversion, and that of an int.
bool IsOneInt(char const* format) {
    int conversions = 0;
    for (char const* at = format; *at; ++at) {
        if (*at != '%') continue;
        ++at;
        if (*at == '%') continue;
        at += std::strspn(at, "-+ #0");
        at += std::strspn(at, "0123456789");
        if (*at == '.') {
            ++at;
            at += std::strspn(at, "0123456789");
        }
        if (!*at || !std::strchr("diuxXoc", *at)) return false;
        ++conversions;
    }
    return conversions == 1;
}

}  // namespace

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
void KOVString::BuildFromNum(int number, char const* format) {
    if (!format || !IsOneInt(format)) {
        KOVSimException::ThrowText("KOVString::BuildFromNum: the format is not that of one int");
    }
    int const bytes = std::snprintf(nullptr, 0, format, number);
    if (bytes < 0) KOVSimException::ThrowText("KOVString::BuildFromNum: the width is too large");
    char* const made = Make(bytes);
    if (made) std::snprintf(made, static_cast<std::size_t>(bytes) + 1, format, number);
    Adopt(made);
}
#pragma GCC diagnostic pop

KOVString& KOVString::operator+=(int number) {
    KOVString text;
    text.BuildFromNum(number, "%d");
    return Append(text);
}

int KOVString::ConvertToNum(int* number, char const* format) const {
    if (!number || !format || format[0] != '%' || format[1] == '\0' || format[2] != '\0') return 0;
    int base = 10;
    switch (format[1]) {
        case 'd':
        case 'u':
            break;
        case 'i':
            base = 0;
            break;
        case 'x':
        case 'X':
            base = 16;
            break;
        case 'o':
            base = 8;
            break;
        default:
            return 0;
    }
    char const* const text = TextOrEmpty();
    char* end = nullptr;
    errno = 0;
    long const value = std::strtol(text, &end, base);
    if (end == text || errno == ERANGE || value < INT_MIN || value > INT_MAX) return 0;
    *number = static_cast<int>(value);
    return 1;
}
