#include "Json.h"

#include <charconv>
#include <cmath>

namespace kov::tool {

std::size_t Utf8SequenceLength(std::string_view text) noexcept {
    auto const byte = [&](std::size_t i) {
        return static_cast<unsigned>(static_cast<unsigned char>(text[i]));
    };
    if (text.empty()) return 0;
    unsigned const first = byte(0);
    if (first < 0x80) return 1;
    std::size_t const length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0U) != 0x80) return 0;
    }
    // Overlong forms, surrogates, and what lies above the last code point.
    if ((first == 0xe0 && byte(1) < 0xa0) || (first == 0xed && byte(1) > 0x9f)) return 0;
    if ((first == 0xf0 && byte(1) < 0x90) || (first == 0xf4 && byte(1) > 0x8f)) return 0;
    return length;
}

Json& Json::Key(std::string_view name) {
    Separate();
    Quote(name);
    m_text += ": ";
    m_afterKey = true;
    return *this;
}

Json& Json::Value(std::string_view text) {
    Separate();
    Quote(text);
    return *this;
}

Json& Json::Value(long long number) {
    Separate();
    m_text += std::to_string(number);
    return *this;
}

Json& Json::Value(double number) {
    if (!std::isfinite(number)) return Null();
    Separate();
    char digits[32];
    auto const result = std::to_chars(digits, digits + sizeof digits, number);
    m_text.append(digits, result.ptr);
    return *this;
}

Json& Json::Value(bool truth) {
    Separate();
    m_text += truth ? "true" : "false";
    return *this;
}

Json& Json::Null() {
    Separate();
    m_text += "null";
    return *this;
}

Json& Json::Begin(char bracket) {
    Separate();
    m_text += bracket;
    m_filled.push_back(false);
    if (std::exchange(m_oneLineNext, false) && m_oneLineFrom == 0) m_oneLineFrom = m_filled.size();
    return *this;
}

Json& Json::End(char bracket) {
    bool const filled = m_filled.back();
    m_filled.pop_back();
    if (filled) NewLine();
    if (m_filled.size() < m_oneLineFrom) m_oneLineFrom = 0;
    m_text += bracket;
    return *this;
}

void Json::Separate() {
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_filled.empty()) return;
    if (m_filled.back()) m_text += OnOneLine() ? ", " : ",";
    m_filled.back() = true;
    NewLine();
}

void Json::NewLine() {
    if (OnOneLine()) return;
    m_text += '\n';
    m_text.append(2 * m_filled.size(), ' ');
}

void Json::Quote(std::string_view text) {
    static constexpr char kDigits[] = "0123456789abcdef";
    m_text += '"';
    while (!text.empty()) {
        auto const byte = static_cast<unsigned char>(text.front());
        std::size_t const length = Utf8SequenceLength(text);
        if (length == 0) {
            m_text += "\xef\xbf\xbd";
        } else if (byte == '"' || byte == '\\') {
            (m_text += '\\') += text.front();
        } else if (byte == '\n') {
            m_text += "\\n";
        } else if (byte < 0x20 || byte == 0x7f) {
            ((m_text += "\\u00") += kDigits[byte >> 4U]) += kDigits[byte & 15U];
        } else {
            m_text += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    m_text += '"';
}

}  // namespace kov::tool
