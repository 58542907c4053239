#include "LayupShape.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kov::tool {
namespace {

constexpr double kLeastBand = 4;
constexpr double kPitch = 20;
constexpr double kNarrowPitch = 15;  // of many layers
constexpr std::size_t kMany = 40;

/// What layers without thickness are drawn with: the mean of the others.
double Nominal(std::vector<std::optional<Extent>> const& extents) {
    double mean = 0;
    double count = 0;
    for (auto const& extent : extents) {
        if (!extent) continue;
        ++count;
        mean += (extent->greatest - mean) / count;
    }
    return mean > 0 ? mean : 1;
}

}  // namespace

std::optional<Extent> ExtentOf(LayerNumber const& number) {
    std::optional<Extent> extent;
    if (number.variation == LayerNumber::Variation::None) return extent;
    if (number.value) {
        extent = Extent{*number.value, *number.value};
    } else if (number.range) {
        extent = Extent{number.range->first, number.range->second};
    }
    if (extent && !(std::isfinite(extent->least) && std::isfinite(extent->greatest))) return {};
    return extent;
}

std::optional<Extent> ThicknessOf(Layer const& layer) {
    auto const extent = ExtentOf(layer.thickness);
    if (extent && (extent->least < 0 || extent->greatest < extent->least)) return {};
    return extent;
}

std::vector<double> BandHeights(std::vector<double> const& thicknesses, double height,
                                double least) {
    std::size_t const n = thicknesses.size();
    std::vector<double> heights(n, n == 0 ? 0 : height / static_cast<double>(n));
    double const greatest = n == 0 ? 0 : *std::max_element(thicknesses.begin(), thicknesses.end());
    if (greatest <= 0) return heights;

    // In parts of the greatest one, so that sums stay finite. The thinnest are raised first: what
    // they take makes the share of the next ones smaller.
    double left = 0;
    for (std::size_t i = 0; i < n; ++i) left += heights[i] = thicknesses[i] / greatest;
    std::vector<std::size_t> order(n);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return heights[a] < heights[b]; });
    std::size_t raised = 0;
    while (raised < n && heights[order[raised]] * height < least * left) {
        left -= heights[order[raised]];
        heights[order[raised++]] = least;
        height -= least;
    }
    for (; raised < n; ++raised) heights[order[raised]] *= height / left;
    return heights;
}

std::vector<double> SpreadOut(std::vector<double> const& wanted, double pitch, double low,
                              double high) {
    // Without the pitches this is the monotone sequence next to the wanted one: neighbours out of
    // order are pooled at their mean.
    struct Pool {
        double sum;
        double count;
        double Mean() const { return sum / count; }
    };
    std::vector<Pool> pools;
    double shift = 0;
    for (double const place : wanted) {
        pools.push_back({place - shift, 1});
        shift += pitch;
        while (pools.size() > 1 && pools[pools.size() - 2].Mean() > pools.back().Mean()) {
            Pool const last = pools.back();
            pools.pop_back();
            pools.back().sum += last.sum;
            pools.back().count += last.count;
        }
    }
    double const last = high - shift + pitch;
    std::vector<double> places;
    for (Pool const& pool : pools) {
        double const mean = std::clamp(pool.Mean(), low, std::max(low, last));
        for (int i = 0; i < static_cast<int>(pool.count); ++i)
            places.push_back(mean + pitch * static_cast<double>(places.size()));
    }
    return places;
}

bool LayupShape::AllToScale() const {
    return std::find(toScale.begin(), toScale.end(), false) == toScale.end();
}

LayupShape ShapeOf(Layup const& layup) {
    std::vector<std::optional<Extent>> extents;
    for (Layer const& layer : layup.layers) extents.push_back(ThicknessOf(layer));
    double const nominal = Nominal(extents);
    auto const n = static_cast<double>(extents.size());

    LayupShape shape;
    shape.pitch = extents.size() > kMany ? kNarrowPitch : kPitch;
    shape.height = std::max({shape.pitch * n, std::min(420.0, 60 * n), 180.0});
    std::vector<double> greatest;
    double thickest = 0;
    for (auto const& extent : extents) {
        greatest.push_back(extent ? extent->greatest : nominal);
        thickest = std::max(thickest, greatest.back());
    }
    std::vector<double> const heights = BandHeights(greatest, shape.height, kLeastBand);

    shape.left = shape.right = shape.depths = shape.greatestDepths = {0};
    std::vector<double> centres;
    bool measured = true;
    // The scale is that of the thickest layer, which is never raised.
    double const scale = thickest > 0 ? *std::max_element(heights.begin(), heights.end()) : 0;
    for (std::size_t i = 0; i < extents.size(); ++i) {
        auto const& extent = extents[i];
        double part = 1;
        if (extent && extent->greatest > 0) part = extent->least / extent->greatest;
        if (extent && extent->Varies()) shape.varies = true;
        measured = measured && extent;
        shape.left.push_back(shape.left.back() + std::max(1.0, heights[i] * part));
        shape.right.push_back(shape.right.back() + heights[i]);
        shape.depths.push_back(shape.depths.back() + (extent ? extent->least : 0));
        shape.greatestDepths.push_back(shape.greatestDepths.back() + greatest[i]);
        double const exact = thickest > 0 ? greatest[i] / thickest * scale : 0;
        shape.toScale.push_back(extent && std::abs(heights[i] - exact) <= 1e-6 * shape.height);
        centres.push_back((shape.right[i] + shape.right[i + 1]) / 2);
    }
    if (!measured || !std::isfinite(shape.greatestDepths.back())) {
        shape.depths.clear();
        shape.greatestDepths.clear();
    }
    shape.rows = SpreadOut(centres, shape.pitch, shape.pitch / 2, shape.height - shape.pitch / 2);
    return shape;
}

}  // namespace kov::tool
