#include "Columns.h"

#include <algorithm>
#include <utility>

namespace kov::tool {

void Columns::Row(std::vector<std::string> texts) {
    texts.resize(m_sides.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        std::size_t const width = LetterCount(texts[i]);
        if (width <= kWidest) m_widths[i] = std::max(m_widths[i], width);
    }
    m_rows.push_back(std::move(texts));
}

std::string Columns::Text(std::string_view indent) const {
    std::string text;
    for (std::vector<std::string> const& row : m_rows) {
        std::string line(indent);
        for (std::size_t i = 0; i < row.size(); ++i) {
            std::size_t const width = LetterCount(row[i]);
            std::size_t const blanks = width < m_widths[i] ? m_widths[i] - width : 0;
            if (i > 0) line += "  ";
            if (m_sides[i] == 'r') line.append(blanks, ' ');
            line += row[i];
            if (m_sides[i] != 'r') line.append(blanks, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

}  // namespace kov::tool
