// Json: writes one JSON text, value by value, with the commas and the indentation done here.
//
// Text that is not valid UTF-8 is written with the replacement character for each wrong byte, so
// that the output always is a JSON text. Numbers that JSON does not have (infinities, not-a-number)
// are written as null.
#pragma once

#include <string>
#include <string_view>
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

    /// What was written, with a newline at the end.
    std::string Text() const { return m_text + "\n"; }

  private:
    Json& Begin(char bracket);
    Json& End(char bracket);
    void Separate();
    void NewLine();
    void Quote(std::string_view text);

    Form m_form;
    std::string m_text;
    std::vector<bool> m_filled;  ///< for each open bracket whether something stands in it
    bool m_afterKey = false;
};

/// Length of the valid UTF-8 sequence at the start of `text`; 0 if there is none.
std::size_t Utf8SequenceLength(std::string_view text) noexcept;

}  // namespace kov::tool
