#include "Faces.h"

#include <vector>

#include "Names.h"

namespace kov::tool {
namespace {

constexpr char const* kNames[kFaceNames] = {"S1",   "S2",   "S3", "S4", "S5", "S6",
                                            "SPOS", "SNEG", "E1", "E2", "E3", "E4"};
constexpr int kPositive = 6;
constexpr int kNegative = 7;

// Corners of a flat shape; 0 for others.
int Corners(Cell cell) {
    switch (cell) {
        case Cell::Triangle:
        case Cell::QuadraticTriangle:
            return 3;
        case Cell::Quad:
        case Cell::QuadraticQuad:
        case Cell::BiquadraticQuad:
            return 4;
        default:
            return 0;
    }
}

// How many of S1, S2 and so on there are.
int NumberedFaces(ElementType const& type) {
    switch (type.family) {
        case Family::Solid:
            break;
        case Family::PlaneStress:
        case Family::PlaneStrain:
        case Family::Axisymmetric:
            return Corners(type.cell);
        default:
            return 0;
    }
    switch (type.cell) {
        case Cell::Tetra:
        case Cell::QuadraticTetra:
            return 4;
        case Cell::Pyramid:
        case Cell::Wedge:
        case Cell::QuadraticWedge:
            return 5;
        case Cell::Hexahedron:
        case Cell::QuadraticHexahedron:
            return 6;
        default:
            return 0;
    }
}

// Rigid beams have no sides.
bool HasSides(ElementType const& type) {
    switch (type.family) {
        case Family::Shell:
        case Family::Membrane:
            return true;
        case Family::Rigid:
            return type.name.substr(0, 2) != "RB";
        default:
            return false;
    }
}

}  // namespace

char const* FaceName(int face) noexcept { return kNames[face]; }

int FindFace(std::string_view name) noexcept {
    for (int face = 0; face < kFaceNames; ++face) {
        std::string_view const known = kNames[face];
        if (name.size() != known.size()) continue;
        bool same = true;
        for (std::size_t i = 0; i < name.size(); ++i) {
            char const c = name[i];
            same = same && (c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c) == known[i];
        }
        if (same) return face;
    }
    return -1;
}

bool HasFace(ElementType const& type, int face) noexcept {
    if (face < kPositive) return face < NumberedFaces(type);
    if (face <= kNegative) return HasSides(type);
    return type.family == Family::Shell && face - kFirstEdge < Corners(type.cell);
}

std::string FacesOf(ElementType const& type) {
    std::vector<char const*> names;
    for (int face = 0; face < kFaceNames; ++face) {
        if (HasFace(type, face)) names.push_back(kNames[face]);
    }
    if (names.empty()) return "no faces";
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += i == 0 ? "" : i + 1 < names.size() ? ", " : " or ";
        text += names[i];
    }
    return text;
}

}  // namespace kov::tool
