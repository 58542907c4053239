#include "Layup.h"

#include <cmath>

namespace kov::tool {

std::optional<double> Layup::Thickness() const {
    if (layers.empty()) return {};
    double sum = 0;
    for (Layer const& layer : layers) {
        if (!layer.thickness.value) return {};
        sum += *layer.thickness.value;
    }
    if (!std::isfinite(sum)) return {};
    return sum;
}

}  // namespace kov::tool
