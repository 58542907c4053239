// Json: writes one JSON text, value by value, with the commas and the indentation done here.
//
// Text that is not valid UTF-8 is written with the replacement character for each wrong byte, so
// that the output always is a JSON text. Numbers that JSON does not have (infinities, not-a-number)
// are written as null.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kov::tool {

class Json {
  public:
    enum class Form { Indented, OneLine };

    explicit Json(Form form = Form::Indented) : m_form(form) {}

    Json& BeginObject() { return Begin('{'); }
    Json& EndObject() { return End('}'); }
    Json& BeginArray() { return Begin('['); }
    Json& EndArray() { return End(']'); }

    /// The next bracket and all inside it stand on one line.
    Json& OneLine() {
        m_oneLineNext = true;
        return *this;
    }

    /// The name of the next value; only inside an object.
    Json& Key(std::string_view name);

    Json& Value(std::string_view text);
    Json& Value(char const* text) { return Value(std::string_view(text)); }
    Json& Value(long long number);
    Json& Value(int number) { return Value(static_cast<long long>(number)); }
    Json& Value(long number) { return Value(static_cast<long long>(number)); }
    Json& Value(double number);
    Json& Value(bool truth);
    Json& Null();

    template <class T>
    Json& Member(std::string_view name, T const& value) {
        return Key(name).Value(value);
    }

    /// Takes out what was written so far, so that a long text can be printed piece by piece.
    std::string Take() { return std::exchange(m_text, {}); }

    /// What was written and not taken out, with a newline at the end.
    std::string Text() const { return m_text + "\n"; }

  private:
    Json& Begin(char bracket);
    Json& End(char bracket);
    void Separate();
    bool OnOneLine() const { return m_form == Form::OneLine || m_oneLineFrom != 0; }
    void NewLine();
    void Quote(std::string_view text);

    Form m_form;
    std::string m_text;
    std::vector<bool> m_filled;  ///< for each open bracket whether something stands in it
    bool m_afterKey = false;
    bool m_oneLineNext = false;
    std::size_t m_oneLineFrom = 0;  ///< brackets from this depth on stand on one line; 0 for none
};

/// Length of the valid UTF-8 sequence at the start of `text`; 0 if there is none.
std::size_t Utf8SequenceLength(std::string_view text) noexcept;

}  // namespace kov::tool
