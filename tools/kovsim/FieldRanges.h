// FieldRanges: the least and the greatest value of each component of a field, and where they stand.
//
// One pass over the values, block by block. What is not a number is counted and not compared.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "DocumentResults.h"

namespace kov::tool {

/// A value and where it stands: of equal ones that of the lowest item, there of the lowest point.
struct FieldExtreme {
    double value = 0.0;
    int item = -1;  ///< ordinal; -1 if there is no value
    int point = 0;
};

struct FieldRange {
    std::string label;     ///< of the component, or of what is derived
    std::string symbol;    ///< name of the component symbol; empty for what is derived
    bool derived = false;  ///< computed here: not in the document
    FieldExtreme lowest;
    FieldExtreme highest;
    std::int64_t nans = 0;
};

/// Of all components in the order of viewers, and behind them what follows from them: the magnitude
/// of a vector, the Mises stress of the field with the label S.
std::vector<FieldRange> RangesOf(FieldContent const& field);

}  // namespace kov::tool
