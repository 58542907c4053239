#include "ElementTypes.h"

#include <algorithm>

#include "zdm_ShapeSymbols.h"

namespace kov::tool {
namespace {

constexpr ElementType kTypes[] = {
#define KOV_ELEMENT_TYPE(name, shape, nodes, cell, dimension, family) \
    {name, zdm_Shape_##shape, nodes, Cell::cell, dimension, Family::family},
#include "ElementTypes.inc"
#undef KOV_ELEMENT_TYPE
};

constexpr bool Ascends() {
    for (std::size_t i = 1; i < std::size(kTypes); ++i) {
        if (!(kTypes[i - 1].name < kTypes[i].name)) return false;
    }
    return true;
}
static_assert(Ascends(), "ElementTypes.inc is searched by halving");

constexpr int kLineOrder[] = {0, 2, 1};

constexpr int kLine[] = {0, 2, 1};
constexpr int kTriangle[] = {0, 1, 3, 1, 2, 4, 2, 0, 5};
constexpr int kQuad[] = {0, 1, 4, 1, 2, 5, 2, 3, 6, 3, 0, 7};
constexpr int kTetra[] = {0, 1, 4, 1, 2, 5, 2, 0, 6, 0, 3, 7, 1, 3, 8, 2, 3, 9};
constexpr int kWedge[] = {0,  1, 6, 1,  2, 7, 2,  0, 8, 3,  4, 9, 4, 5,
                          10, 5, 3, 11, 0, 3, 12, 1, 4, 13, 2, 5, 14};
constexpr int kHexahedron[] = {0, 1, 8,  1, 2, 9,  2, 3, 10, 3, 0, 11, 4, 5, 12, 5, 6, 13,
                               6, 7, 14, 7, 4, 15, 0, 4, 16, 1, 5, 17, 2, 6, 18, 3, 7, 19};

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

ElementType const* FindElementType(std::string_view name) noexcept {
    char folded[16];
    if (name.size() > sizeof folded) return nullptr;
    std::transform(name.begin(), name.end(), folded, Upper);
    std::string_view const sought(folded, name.size());
    auto const* const found = std::lower_bound(
        std::begin(kTypes), std::end(kTypes), sought,
        [](ElementType const& type, std::string_view text) { return type.name < text; });
    return found != std::end(kTypes) && found->name == sought ? found : nullptr;
}

ElementType const* FindElementTypeByShape(int shape, int nodes) noexcept {
    for (ElementType const& type : kTypes) {
        if (type.shape == shape && type.nodes == nodes) return &type;
    }
    return nullptr;
}

std::span<ElementType const> AllElementTypes() noexcept { return kTypes; }

std::span<int const> NodeOrder(Cell cell) noexcept {
    if (cell == Cell::QuadraticEdge) return kLineOrder;
    return {};
}

std::span<int const> MiddleNodes(ElementType const& type) noexcept {
    switch (type.cell) {
        case Cell::QuadraticEdge:
            return kLine;
        case Cell::QuadraticTriangle:
            return kTriangle;
        case Cell::QuadraticQuad:
        case Cell::BiquadraticQuad:
            return kQuad;
        case Cell::QuadraticTetra:
            return kTetra;
        case Cell::QuadraticWedge:
            return kWedge;
        case Cell::QuadraticHexahedron:
            return kHexahedron;
        default:
            return {};
    }
}

char const* FamilyName(Family family) noexcept {
    switch (family) {
        case Family::Solid:
            return "solid";
        case Family::Shell:
            return "shell";
        case Family::PlaneStress:
            return "plane stress";
        case Family::PlaneStrain:
            return "plane strain";
        case Family::Axisymmetric:
            return "axisymmetric";
        case Family::Membrane:
            return "membrane";
        case Family::Beam:
            return "beam";
        case Family::Truss:
            return "truss";
        case Family::Rigid:
            return "rigid";
        case Family::Mass:
            return "mass";
        case Family::Spring:
            return "spring";
        case Family::Dashpot:
            return "dashpot";
        case Family::Gap:
            return "gap";
        case Family::Connector:
            return "connector";
    }
    return "";
}

bool NeedsSection(ElementType const& type) noexcept {
    switch (type.family) {
        case Family::Rigid:
        case Family::Mass:
        case Family::Spring:
        case Family::Dashpot:
        case Family::Gap:
        case Family::Connector:
            return false;
        default:
            return true;
    }
}

}  // namespace kov::tool
