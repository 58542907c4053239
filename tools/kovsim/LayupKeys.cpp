#include "LayupKeys.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "LayupPalette.h"
#include "PictureText.h"

namespace kov::tool {
namespace {

constexpr char kDegree[] = "\xc2\xb0";
constexpr char kTo[] = " \xe2\x80\xa6 ";
constexpr char kDot[] = " \xc2\xb7 ";
constexpr std::size_t kLongestCode = 16;
constexpr char kDash[] = "\xe2\x80\x93";

std::string Count(long number, char const* one, char const* many) {
    return std::to_string(number) + " " + (number == 1 ? one : many);
}

std::string FullText(LayerNumber const& number, char const* unit) {
    using Variation = LayerNumber::Variation;
    if (number.variation == Variation::None) return "none";
    std::string text;
    if (number.value) {
        text = FullNumber(*number.value) + unit;
    } else if (number.range) {
        text = FullNumber(number.range->first) + " to " + FullNumber(number.range->second) + unit;
    }
    if (number.variation == Variation::Constant) return text.empty() ? "none" : text;
    return text.empty() ? "by element" : text + " (by element)";
}

std::string ThicknessText(Layup const& layup) {
    bool const solid = layup.kind == Layup::Kind::Solid;
    char const* const what = solid ? "sum of relative thicknesses " : "thickness ";
    Extent sum{0, 0};
    for (Layer const& layer : layup.layers) {
        auto const extent = ThicknessOf(layer);
        if (!extent) return {};
        sum.least += extent->least;
        sum.greatest += extent->greatest;
    }
    if (layup.layers.empty() || !std::isfinite(sum.greatest)) return {};
    if (!sum.Varies()) return what + ShortNumber(sum.least);
    auto const range = [](double least, double greatest) {
        return ShortNumber(least) + kTo + ShortNumber(greatest);
    };
    // The thinnest layers and the thickest ones need not be those of the same elements.
    auto const& whole = layup.thicknessRange;
    return what + (whole ? range(whole->first, whole->second)
                         : "within " + range(sum.least, sum.greatest));
}

std::string DirectionText(int stackDirection) {
    if (stackDirection <= 0 || stackDirection > 4) return {};
    return stackDirection == 4 ? "stacked along the orientation"
                               : "stacked along direction " + std::to_string(stackDirection);
}

std::string ReferenceText(double offset) {
    if (!std::isfinite(offset)) return {};
    if (offset == 0) return "reference surface in the middle";
    std::string const place = offset == 0.5    ? "at the top"
                              : offset == -0.5 ? "at the bottom"
                              : offset > 0     ? "above the middle"
                                               : "below the middle";
    return "reference surface " + place + " (offset " + ShortNumber(offset) + " thicknesses)";
}

std::string Joined(std::vector<std::string> const& parts) {
    std::string line;
    for (std::string const& part : parts) {
        if (part.empty()) continue;
        if (!line.empty()) line += kDot;
        line += part;
    }
    return line;
}

/// Whether two layers certainly are the same but for ply and section points. Equal ranges do not
/// say so.
bool Alike(Layer const& a, Layer const& b) {
    bool const angles = a.angle.variation == b.angle.variation && a.angle.value == b.angle.value &&
                        (a.angle.value || a.angle.variation == LayerNumber::Variation::None);
    return angles && a.thickness.value && a.thickness.value == b.thickness.value &&
           a.material == b.material && a.orientation == b.orientation;
}

/// "symmetric", and for plies of one kind the usual code of their angles from the bottom up.
std::string StackingText(Layup const& layup) {
    auto const& layers = layup.layers;
    std::size_t const n = layers.size();
    if (n < 2) return {};
    bool symmetric = true;
    for (std::size_t i = 0; i < n / 2; ++i)
        symmetric = symmetric && Alike(layers[i], layers[n - 1 - i]);
    std::string const word = symmetric ? "symmetric" : "";
    bool const half = symmetric && n % 2 == 0;
    std::size_t const shown = half ? n / 2 : n;
    if (shown > kLongestCode) return word;
    std::string code = "[";
    for (std::size_t i = 0; i < n; ++i) {
        Layer plain = layers[i];
        plain.angle = layers[0].angle;
        if (!Alike(plain, layers[0]) || !layers[i].angle.value || !ExtentOf(layers[i].angle))
            return word;
        if (i < shown) code += (i == 0 ? "" : "/") + ShortNumber(*layers[i].angle.value);
    }
    return Joined({word, code + (half ? "]s" : "]")});
}

}  // namespace

LayupKeys::LayupKeys(Layup const& layup) {
    std::map<std::string, std::size_t> known;
    for (Layer const& layer : layup.layers) {
        if (!layer.material.empty()) {
            auto const next = static_cast<int>(materials.size());
            if (m_materialIndex.emplace(layer.material, next).second)
                materials.push_back(layer.material);
            ++materialLayers[layer.material];
        }
        auto angle = ExtentOf(layer.angle);
        if (!angle) {
            ++withoutAngle;
            continue;
        }
        if (!angle->Varies()) angle->least = angle->greatest = DirectionOf(angle->least);
        std::string label = ShortNumber(angle->least);
        if (angle->Varies()) label += kTo + ShortNumber(angle->greatest);
        label += kDegree;
        auto const [at, first] = known.emplace(label, directions.size());
        if (first) directions.push_back({*angle, label, 0});
        ++directions[at->second].layers;
    }
    std::stable_sort(directions.begin(), directions.end(),
                     [](PlyDirection const& a, PlyDirection const& b) {
                         auto const rank = [](PlyDirection const& direction) {
                             Extent const& angle = direction.angle;
                             return std::tuple(angle.Varies(), std::abs(angle.least),
                                               angle.least < 0, angle.greatest);
                         };
                         return rank(a) < rank(b);
                     });
}

int LayupKeys::Material(std::string const& name) const {
    auto const at = m_materialIndex.find(name);
    return at == m_materialIndex.end() ? -1 : at->second;
}

std::string NumberText(LayerNumber const& number, char const* unit) {
    using Variation = LayerNumber::Variation;
    if (number.variation == Variation::None) return kDash;
    bool const spread = number.variation == Variation::ByElement;
    auto const text = [&](double value) {
        return ShortNumber(value) + (std::isfinite(value) ? unit : "");
    };
    if (number.value) return text(*number.value) + (spread ? ", by element" : "");
    if (!number.range) return spread ? "by element" : kDash;
    auto const [least, greatest] = *number.range;
    return least == greatest ? text(least) : ShortNumber(least) + kTo + text(greatest);
}

std::string LayerText(Layup const& layup, std::size_t index) {
    Layer const& layer = layup.layers[index];
    std::string text = "layer " + std::to_string(index + 1);
    if (!layer.ply.empty()) text += ", ply " + layer.ply;
    if (!layer.material.empty()) text += ", material " + layer.material;
    text += (layup.kind == Layup::Kind::Solid ? ", relative thickness " : ", thickness ") +
            FullText(layer.thickness, "");
    text += ", angle " + FullText(layer.angle, kDegree);
    if (!layer.orientation.empty()) text += ", orientation " + layer.orientation;
    if (layer.sectionPoints) {
        text += ", " + Count(*layer.sectionPoints, "section point", "section points");
    }
    return text;
}

std::vector<std::string> HeadLines(Layup const& layup, double room) {
    auto const name = [&](std::string const& text) { return Shortened(text, room, kHeadSize); };
    bool const shell = layup.kind == Layup::Kind::Shell;
    std::string const kind = std::string(layup.composite ? "composite " : "homogeneous ") +
                             (shell ? "shell section" : "solid section");
    std::string where;
    if (auto const& element = layup.element) {
        where = "element " + name(element->instance) + (element->instance.empty() ? "" : ".") +
                std::to_string(element->label);
        if (!element->type.empty()) where += " (" + name(element->type) + ")";
    } else {
        where = Count(layup.elementCount, "element", "elements");
        if (layup.assignments != 1)
            where += " in " + Count(layup.assignments, "assignment", "assignments");
    }
    auto const layers = static_cast<long>(layup.layers.size());
    return {Joined({layup.name.empty() ? "" : "section " + name(layup.section), kind,
                    Count(layers, "layer", "layers"), ThicknessText(layup), where}),
            Joined({layup.orientation.empty() ? "no orientation"
                                              : "orientation " + name(layup.orientation),
                    DirectionText(layup.stackDirection),
                    shell ? (layup.gauss ? "Gauss integration" : "Simpson's rule") : "",
                    shell ? ReferenceText(layup.offset) : "", StackingText(layup)})};
}

}  // namespace kov::tool
