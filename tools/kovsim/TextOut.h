// TextOut: long output, printed in pieces of about a megabyte, so that it never stands in memory as
// a whole.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "Commands.h"

namespace kov::tool {

class TextOut {
  public:
    TextOut& operator<<(std::string_view text) {
        m_text += text;
        if (m_text.size() >= kPiece) Flush();
        return *this;
    }
    TextOut& operator<<(int number) { return *this << std::to_string(number); }

    /// After the last text. What is not flushed is not printed.
    void Flush() {
        if (!m_text.empty()) Print(std::exchange(m_text, {}));
    }

  private:
    static constexpr std::size_t kPiece = std::size_t{1} << 20;

    std::string m_text;
};

}  // namespace kov::tool
