#include "KOVSrvKeywordNumbers.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

int kov::keyword::ToInt(char const* text, char const*& end) {
    char const* at = text + (*text == '-' ? 1 : 0);
    char const* const digits = at;
    int value = 0;
    while (IsDigit(*at) && at - digits < 9) value = value * 10 + (*at++ - '0');
    if (at == digits || IsDigit(*at)) {
        // Signs, white space, nothing at all, or more digits than surely fit.
        char* stop = nullptr;
        long const number = std::strtol(text, &stop, 10);
        end = stop;
        return static_cast<int>(number);
    }
    end = at;
    return *text == '-' ? -value : value;
}

double kov::keyword::ToDouble(char const* text, char const*& end) {
    char const* const digits = text + (*text == '-' || *text == '+' ? 1 : 0);
    if (IsDigit(*digits) || (*digits == '.' && IsDigit(digits[1]))) {
        double value = 0.0;
        // Its text ends at the first character that belongs to no number.
        char const* last = digits;
        while (IsDigit(*last) || *last == '.' || *last == 'e' || *last == 'E' || *last == '-' ||
               *last == '+') {
            ++last;
        }
        bool const isHex = digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
        auto const [stop, error] = std::from_chars(*text == '+' ? digits : text, last, value);
        if (error == std::errc() && !isHex) {
            end = stop;
            return value;
        }
    }
    char* stop = nullptr;
    double const value = std::strtod(text, &stop);
    end = stop;
    return value;
}
