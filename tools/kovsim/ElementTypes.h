// ElementTypes: what is known of each element type of a deck. The rows stand in ElementTypes.inc; a
// new type is a new row.
#pragma once

#include <span>
#include <string_view>

namespace kov::tool {

/// Cell types of the VTU format. The format's numbers; do not change.
enum class Cell : unsigned char {
    Empty = 0,
    Vertex = 1,
    PolyVertex = 2,
    Line = 3,
    Triangle = 5,
    Quad = 9,
    Tetra = 10,
    Hexahedron = 12,
    Wedge = 13,
    Pyramid = 14,
    QuadraticEdge = 21,
    QuadraticTriangle = 22,
    QuadraticQuad = 23,
    QuadraticTetra = 24,
    QuadraticHexahedron = 25,
    QuadraticWedge = 26,
    BiquadraticQuad = 28,
};

/// What an element is used for, as a deck's author speaks of it.
enum class Family : unsigned char {
    Solid,
    Shell,
    PlaneStress,
    PlaneStrain,
    Axisymmetric,
    Membrane,
    Beam,
    Truss,
    Rigid,
    Mass,
    Spring,
    Dashpot,
    Gap,
    Connector,
};

struct ElementType {
    std::string_view name;  ///< in capitals
    int shape;              ///< number of the shape symbol, a zdm_ShapeSymbolsEnm
    int nodes;              ///< nodes of one element
    Cell cell;              ///< what a viewer shows it as
    int dimension;          ///< of the shape: 0 point, 1 line, 2 face, 3 volume
    Family family;
};

/// The type of that name, in any case; null if there is none.
ElementType const* FindElementType(std::string_view name) noexcept;
/// The first type with that shape and number of nodes; null if there is none.
ElementType const* FindElementTypeByShape(int shape, int nodes) noexcept;
/// All types, ascending by name.
std::span<ElementType const> AllElementTypes() noexcept;

/// The order in which a cell's nodes are written: place i of the cell takes node order[i] of the
/// element. Empty where both orders are the same, which is so for all cells but the line with a
/// node in its middle: a deck names the middle second, a viewer last.
std::span<int const> NodeOrder(Cell cell) noexcept;

/// The edges of a cell with a node in the middle of each, as triples (end, end, middle) of places
/// in the element's own node order; empty for cells of first order.
std::span<int const> MiddleNodes(ElementType const& type) noexcept;

char const* FamilyName(Family family) noexcept;

/// True for types whose elements ask for a section: all but rigid elements, masses, springs,
/// dashpots, gaps and connectors, which have their data elsewhere.
bool NeedsSection(ElementType const& type) noexcept;

}  // namespace kov::tool
