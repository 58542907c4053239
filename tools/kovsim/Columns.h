// Columns: rows of texts in columns, each as wide as its longest text. Texts are counted in
// letters, as far as UTF-8 tells them; a text of more than kWidest letters stands out of its column
// instead of widening it for all rows.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kov::tool {

/// Letters of a text in UTF-8.
inline std::size_t LetterCount(std::string_view text) {
    std::size_t count = 0;
    for (char const c : text) count += (static_cast<unsigned char>(c) & 0xc0U) != 0x80;
    return count;
}

class Columns {
  public:
    static constexpr std::size_t kWidest = 100;

    /// One letter for each column: 'l' for texts that begin at its left side, 'r' for those that
    /// end at its right one.
    explicit Columns(std::string sides) : m_sides(std::move(sides)), m_widths(m_sides.size(), 0) {}

    /// `texts`: one for each column.
    void Row(std::vector<std::string> texts);
    /// All rows, each behind `indent`, the columns two blanks apart; without blanks at their ends.
    std::string Text(std::string_view indent = {}) const;

  private:
    std::string m_sides;
    std::vector<std::size_t> m_widths;
    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace kov::tool
