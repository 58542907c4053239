// A reader of JSON texts for tests: takes any text apart, and refuses what is no JSON.
#pragma once

#include <cctype>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace kov::test {

/// A value as a tree. Asking for what is not there throws.
struct JsonValue {
    enum class Kind { Null, Truth, Number, Text, Array, Object };

    Kind kind = Kind::Null;
    bool truth = false;
    double number = 0.0;
    std::string text;
    std::vector<JsonValue> items;
    std::map<std::string, JsonValue> members;

    JsonValue const& operator[](char const* name) const { return members.at(name); }
    JsonValue const& operator[](int i) const { return items.at(static_cast<std::size_t>(i)); }
    std::size_t Size() const { return items.size() + members.size(); }
    bool IsNull() const { return kind == Kind::Null; }
    int Int() const {
        if (kind != Kind::Number) throw std::runtime_error("no number");
        return static_cast<int>(number);
    }
    /// The numbers of an array.
    std::vector<double> Numbers() const {
        std::vector<double> numbers;
        for (JsonValue const& item : items) numbers.push_back(item.number);
        return numbers;
    }
};

class JsonReader {
  public:
    explicit JsonReader(std::string const& text) : m_text(text) {}

    JsonValue Read() {
        JsonValue value = Value();
        Blanks();
        if (m_at != m_text.size()) Fail("text behind the value");
        return value;
    }

  private:
    [[noreturn]] void Fail(std::string const& what) const {
        throw std::runtime_error(what + " at byte " + std::to_string(m_at) + " of " + m_text);
    }
    void Blanks() {
        while (m_at < m_text.size() && std::isspace(static_cast<unsigned char>(m_text[m_at])))
            ++m_at;
    }
    char Peek() {
        Blanks();
        return m_at < m_text.size() ? m_text[m_at] : '\0';
    }
    bool Take(char c) {
        if (Peek() != c) return false;
        ++m_at;
        return true;
    }
    void Expect(char c) {
        if (!Take(c)) Fail(std::string("no ") + c);
    }
    bool TakeWord(std::string const& word) {
        if (m_text.compare(m_at, word.size(), word) != 0) return false;
        m_at += word.size();
        return true;
    }

    std::string Text() {
        Expect('"');
        std::string text;
        for (;;) {
            if (m_at >= m_text.size()) Fail("an open text");
            char const c = m_text[m_at++];
            if (c == '"') return text;
            if (static_cast<unsigned char>(c) < 0x20) Fail("a control character");
            if (c != '\\') {
                text += c;
                continue;
            }
            char const escaped = m_at < m_text.size() ? m_text[m_at++] : '\0';
            if (escaped == 'u') {
                text += static_cast<char>(std::stoi(m_text.substr(m_at, 4), nullptr, 16));
                m_at += 4;
            } else {
                text += escaped == 'n' ? '\n' : escaped;
            }
        }
    }

    JsonValue Value() {
        JsonValue value;
        char const c = Peek();
        if (c == '{') {
            value.kind = JsonValue::Kind::Object;
            ++m_at;
            if (Take('}')) return value;
            do {
                std::string const name = Text();
                Expect(':');
                if (!value.members.emplace(name, Value()).second) Fail("a name twice");
            } while (Take(','));
            Expect('}');
        } else if (c == '[') {
            value.kind = JsonValue::Kind::Array;
            ++m_at;
            if (Take(']')) return value;
            do {
                value.items.push_back(Value());
            } while (Take(','));
            Expect(']');
        } else if (c == '"') {
            value.kind = JsonValue::Kind::Text;
            value.text = Text();
        } else if (TakeWord("true") || TakeWord("false")) {
            value.kind = JsonValue::Kind::Truth;
            value.truth = c == 't';
        } else if (!TakeWord("null")) {
            value.kind = JsonValue::Kind::Number;
            char* end = nullptr;
            value.number = std::strtod(m_text.c_str() + m_at, &end);
            if (end == m_text.c_str() + m_at) Fail("no value");
            m_at = static_cast<std::size_t>(end - m_text.c_str());
        }
        return value;
    }

    std::string m_text;
    std::size_t m_at = 0;
};

inline JsonValue ParseJson(std::string const& text) { return JsonReader(text).Read(); }

}  // namespace kov::test
