// The text of small .frd files, record by record, with the columns that they have.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace kov::test {

class FrdText {
  public:
    FrdText() { Line("    1C"); }

    FrdText& Line(std::string const& line) {
        text += line + newline;
        return *this;
    }
    /// The header of a data set: step, increment, value as it stands, count of rows.
    FrdText& Header(int step, int increment, std::string const& value, long rows, int type = 0,
                    int format = 1) {
        char line[160];
        ++m_sets;
        std::snprintf(line, sizeof line, "    1PSTEP              %12d%12d%12d", m_sets, increment,
                      step);
        Line(line);
        return Value(value, rows, type, m_frame += m_last == value ? 0 : 1, "", format);
    }
    FrdText& Value(std::string const& value, long rows, int type, int number,
                   std::string const& analysis = "", int format = 1) {
        char line[160];
        m_last = value;
        std::snprintf(line, sizeof line, "  100CL%5d%12s%12ld%20s%2d%5d%-10s%2d", 100 + number,
                      value.c_str(), rows, "", type, number, analysis.c_str(), format);
        return Line(line);
    }
    FrdText& Scalar(std::string const& name, std::string const& component) {
        char line[80];
        std::snprintf(line, sizeof line, " -4  %-8s%5d%5d", name.c_str(), 1, 1);
        Line(line);
        return Component(component, 1, 0, 0);
    }
    FrdText& Vector(std::string const& name, std::string const& letter) {
        char line[80];
        std::snprintf(line, sizeof line, " -4  %-8s%5d%5d", name.c_str(), 4, 1);
        Line(line);
        for (int i = 1; i <= 3; ++i) Component(letter + std::to_string(i), 2, i, 0);
        return Line(" -5  ALL         1    2    0    0    1ALL");
    }
    FrdText& Tensor(std::string const& name, std::string const& letter) {
        char line[80];
        std::snprintf(line, sizeof line, " -4  %-8s%5d%5d", name.c_str(), 6, 1);
        Line(line);
        Component(letter + "XX", 4, 1, 1).Component(letter + "YY", 4, 2, 2);
        Component(letter + "ZZ", 4, 3, 3).Component(letter + "XY", 4, 1, 2);
        return Component(letter + "YZ", 4, 2, 3).Component(letter + "ZX", 4, 3, 1);
    }
    FrdText& Component(std::string const& name, int type, int row, int column) {
        char line[80];
        std::snprintf(line, sizeof line, " -5  %-8s%5d%5d%5d%5d", name.c_str(), 1, type, row,
                      column);
        return Line(line);
    }
    FrdText& Row(int label, std::vector<std::string> const& values) {
        char field[40];
        std::snprintf(field, sizeof field, " -1%10d", label);
        std::string line = field;
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (i > 0 && i % 6 == 0) {
                Line(line);
                line = " -2          ";
            }
            std::snprintf(field, sizeof field, "%12s", values[i].c_str());
            line += field;
        }
        return Line(line);
    }
    FrdText& EndRows() { return Line(" -3"); }
    std::string End() { return Line(" 9999").text; }

    std::string newline = "\n";
    std::string text;

  private:
    int m_sets = 0;
    int m_frame = 0;
    std::string m_last;
};

}  // namespace kov::test
