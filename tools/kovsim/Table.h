// Table: lines of a name, a number and a remark, each in a column of its own, which is as wide as
// the longest name.
#pragma once

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "Columns.h"

namespace kov::tool {

class Table {
  public:
    void Line(std::string const& name, std::string const& value) {
        std::size_t const width = LetterCount(name);
        if (width <= kWidest) m_width = std::max(m_width, width);
        m_lines.emplace_back(name, value);
    }
    void Line(std::string const& name, long value) {
        char digits[32];
        std::snprintf(digits, sizeof digits, "%14ld", value);
        Line(name, digits);
    }
    void Line(std::string const& name, long value, std::string const& remark) {
        if (remark.empty()) return Line(name, value);
        char digits[32];
        std::snprintf(digits, sizeof digits, "%14ld  ", value);
        Line(name, digits + remark);
    }
    std::string Text() const {
        std::string text;
        for (auto const& [name, value] : m_lines) {
            std::size_t const width = LetterCount(name);
            text += name;
            text.append(width <= m_width ? m_width + 1 - width : 1, ' ');
            text += value + "\n";
        }
        return text;
    }

  private:
    // Names beyond this stand out of the column instead of widening it for all lines.
    static constexpr std::size_t kWidest = 100;

    std::vector<std::pair<std::string, std::string>> m_lines;
    std::size_t m_width = 21;
};

}  // namespace kov::tool
