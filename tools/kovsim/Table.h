// Table: lines of a name, a number and a remark, each in a column of its own.
#pragma once

#include <cstdio>
#include <string>

namespace kov::tool {

class Table {
  public:
    void Line(std::string const& name, std::string const& value) {
        m_text += name;
        m_text.append(name.size() < 22 ? 22 - name.size() : 1, ' ');
        m_text += value + "\n";
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
    std::string const& Text() const { return m_text; }

  private:
    std::string m_text;
};

}  // namespace kov::tool
