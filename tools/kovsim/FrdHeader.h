// FrdHeader: the records of .frd files that stand before rows of values, field by field of fixed
// columns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ResultSource.h"

namespace kov::tool {

/// The text of `count` columns from `first` (from 0) on, without blanks around it; less where the
/// line ends.
std::string_view FrdColumns(std::string_view line, std::size_t first, std::size_t count);
/// False if the text is no whole number.
bool FrdInteger(std::string_view text, long long& number);
/// A real number, in the ways in which Fortran and C write them: 1.0E-05, 1.0D-05, 0.1-105, NaN,
/// Inf. False if the text is none, or is beyond the range of numbers.
bool FrdReal(std::string_view text, double& number);

/// What stands before a data set.
struct FrdHeader {
    int step = 1;
    int increment = 0;
    int mode = 0;    ///< 0 if none is told
    int number = 0;  ///< of the frame in the file
    int type = 0;    ///< 0 static, 1 by time, 2 frequencies, 4 buckling
    double value = 0.0;
    std::string valueText;
    std::string analysis;
    long long rows = 0;
    int format = 1;    ///< 0 short, 1 long labels; others are binary
    std::string name;  ///< of the field

    bool IsFrameOf(FrdHeader const& other) const {
        return step == other.step && increment == other.increment && mode == other.mode &&
               number == other.number && type == other.type && valueText == other.valueText;
    }

    /// Each reads one record and answers whether it is well formed.
    bool ReadStep(std::string_view line);
    bool ReadMode(std::string_view line);
    bool ReadValue(std::string_view line);
};

struct FrdComponent {
    std::string name;
    int type = 1;          ///< 1 scalar, 2 vector, 4 tensor
    int row = 0;           ///< number of the component, from 1; of tensors the first one
    int column = 0;        ///< of tensors the second one
    bool isInFile = true;  ///< false for what viewers compute, such as ALL

    bool Read(std::string_view line);
};

/// Label of the variable of that name, and of each of its components that is in the file.
void LabelFrdField(std::string const& name, std::vector<FrdComponent> const& components,
                   ResultField& field);

/// Makes frames of headers, which come in the order of the file: it has total times only, no
/// numbers of buckling steps, and counts their modes in one row with the state they start at.
class FrdClock {
  public:
    ResultFrame FrameOf(FrdHeader const& header);

  private:
    static StepKind KindOf(FrdHeader const& header);
    int StepOf(FrdHeader const& header);

    int m_step = 0;
    int m_counted = 0;  ///< modes or frequencies in the step so far
    bool m_buckles = false;
    double m_start = 0.0;
    double m_last = 0.0;
    int m_decimals = 0;  ///< of the largest precision of times so far
};

}  // namespace kov::tool
