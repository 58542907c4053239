#include "LabelRanges.h"

namespace kov::tool {

std::string ToText(LabelRange const& range) {
    std::string text = std::to_string(range.first);
    if (range.first == range.last) return text;
    text += '-' + std::to_string(range.last);
    if (range.step != 1) text += " step " + std::to_string(range.step);
    return text;
}

}  // namespace kov::tool
