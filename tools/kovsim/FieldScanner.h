// FieldScanner: reads the comma-separated fields of one data line, in place.
//
// The text ends with a zero byte and may have a newline before it; blanks are space, tab and
// carriage return. It allocates nothing and copies nothing in the ordinary case: it stands in the
// innermost loop of a translation. What is no number is never taken for one: the whole field must
// be the number, apart from blanks around it.
#pragma once

#include <charconv>
#include <string>
#include <string_view>
#include <vector>

namespace kov::tool {

class FieldScanner {
  public:
    enum class Result {
        Value,    ///< the field was read
        Empty,    ///< nothing stands in the field; the caller's variable is unchanged
        Wrong,    ///< something else stands in the field; unchanged likewise
        TooLarge  ///< a number, but outside what the variable can hold; unchanged likewise
    };

    /// [line, end) lives as long as the scanner, with a zero byte at `end`.
    FieldScanner(char const* line, char const* end) : m_at(line), m_end(end) {}

    /// True when no field is left: the text is at its end, and nothing but blanks stood behind the
    /// last comma.
    bool AtEnd() {
        SkipBlanks();
        return IsEnd(*m_at);
    }

    /// The next field as a whole number, with an optional sign.
    Result ReadInt(int& value) {
        SkipBlanks();
        m_field = m_at;
        char const* at = m_at;
        bool const negative = *at == '-';
        if (*at == '-' || *at == '+') ++at;
        unsigned digit = Digit(*at);
        if (digit > 9) return ReadNoInt();
        unsigned long number = 0;
        char const* const first = at;
        do {
            number = number * 10 + digit;
            digit = Digit(*++at);
        } while (digit <= 9);
        // 18 digits cannot wrap; leading zeros may make a small number longer.
        if (at - first > 18 || number > 2147483647UL) return ReadLongInt();
        if (!EndField(at)) return Result::Wrong;
        value = negative ? -static_cast<int>(number) : static_cast<int>(number);
        return Result::Value;
    }

    /// The next field as a real number: decimal, with an optional exponent behind E, e, D or d.
    /// Infinities, not-a-number and hexadecimal numbers are Wrong. A number too small for the type
    /// is 0 or its nearest neighbour.
    Result ReadDouble(double& value) {
        SkipBlanks();
        m_field = m_at;
        char const* at = m_at;
        if (*at == '+') ++at;
        // Sign and first digit are looked at here, as from_chars would take "inf" and "nan" too.
        char const* const digits = *at == '-' && at == m_field ? at + 1 : at;
        if (Digit(*digits) > 9 && *digits != '.') return ReadNoDouble();
        double number;
        auto const result = std::from_chars(at, m_end, number);
        if (result.ec != std::errc() || !EndField(result.ptr)) return ReadOddDouble(value);
        value = number;
        return Result::Value;
    }

    /// The next field as text: blanks outside double quotes are dropped, a pair of quotes keeps
    /// commas and blanks and is itself dropped. Answers false if the quotes are not closed. `text`
    /// keeps its storage.
    template <class String>
    bool ReadText(String& text) {
        return ReadText(text, [](std::size_t) {});
    }
    /// The same; `dots` takes where dots outside the quotes stand in `text`.
    bool ReadText(std::string& text, std::vector<std::size_t>& dots) {
        dots.clear();
        return ReadText(text, [&dots](std::size_t at) { dots.push_back(at); });
    }

    /// The text of the field last read or tried, without blanks around it, for messages.
    std::string_view Field() const;
    /// After a Wrong field: reads it once more as something else.
    void Again() { m_at = m_field; }
    /// True if the field last read stood before a comma.
    bool HadComma() const { return m_at[-1] == ','; }

    static bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }
    static bool IsEnd(char c) { return c == '\0' || c == '\n'; }

  private:
    template <class String, class Dot>
    bool ReadText(String& text, Dot&& dot) {
        SkipBlanks();
        m_field = m_at;
        text.clear();
        bool quoted = false;
        for (; *m_at != '\0' && (quoted ? *m_at != '\n' : *m_at != ',' && *m_at != '\n'); ++m_at) {
            if (*m_at == '"') {
                quoted = !quoted;
            } else if (quoted || !IsBlank(*m_at)) {
                if (*m_at == '.' && !quoted) dot(text.size());
                text.push_back(*m_at);
            }
        }
        if (*m_at == ',') ++m_at;
        return !quoted;
    }

    static unsigned Digit(char c) {
        return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0';
    }

    void SkipBlanks() {
        while (IsBlank(*m_at)) ++m_at;
    }

    // Steps from the end of a number to the next field; false, without a step, if something else
    // follows.
    bool EndField(char const* at) {
        while (IsBlank(*at)) ++at;
        if (*at == ',') {
            ++at;
        } else if (!IsEnd(*at)) {
            return false;
        }
        m_at = at;
        return true;
    }

    Result ReadNoInt();
    Result ReadLongInt();
    Result ReadNoDouble();
    Result ReadOddDouble(double& value);

    char const* m_at;
    char const* m_end;
    char const* m_field = nullptr;
};

}  // namespace kov::tool
