#include "ElementTypes.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVSimCollection.h"
#include "KOVSimPosition.h"
#include "zdm_ShapeSymbols.h"

namespace kov::tool {
namespace {

using Point = std::array<double, 3>;

// The corners of the reference element of a cell, in a deck's order: those of the first face
// counter-clockwise seen from inside, then those of the opposite face.
std::vector<Point> Corners(Cell cell) {
    switch (cell) {
        case Cell::QuadraticEdge:
            return {{0, 0, 0}, {2, 0, 0}};
        case Cell::QuadraticTriangle:
            return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
        case Cell::QuadraticQuad:
        case Cell::BiquadraticQuad:
            return {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
        case Cell::QuadraticTetra:
            return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        case Cell::QuadraticWedge:
            return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
        case Cell::QuadraticHexahedron:
            return {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                    {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
        default:
            return {};
    }
}

Point Middle(Point const& a, Point const& b) {
    return {(a[0] + b[0]) / 2, (a[1] + b[1]) / 2, (a[2] + b[2]) / 2};
}

// An element of the type in a deck's order, with straight edges.
std::vector<Point> DeckElement(ElementType const& type) {
    std::vector<Point> const corners = Corners(type.cell);
    auto const mid = [&](std::size_t a, std::size_t b) { return Middle(corners[a], corners[b]); };
    // A line is numbered along itself; all else has its corners first.
    if (type.cell == Cell::QuadraticEdge) return {corners[0], mid(0, 1), corners[1]};
    std::vector<Point> points = corners;
    auto const ring = [&](std::size_t first, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            points.push_back(mid(first + i, first + (i + 1) % count));
    };
    auto const upright = [&](std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) points.push_back(mid(i, count + i));
    };
    switch (type.cell) {
        case Cell::QuadraticTriangle:
            ring(0, 3);
            break;
        case Cell::QuadraticQuad:
            ring(0, 4);
            break;
        case Cell::BiquadraticQuad:
            ring(0, 4);
            points.push_back(mid(0, 2));
            break;
        case Cell::QuadraticTetra:
            ring(0, 3);
            for (std::size_t i = 0; i < 3; ++i) points.push_back(mid(i, 3));
            break;
        case Cell::QuadraticWedge:
            ring(0, 3);
            ring(3, 3);
            upright(3);
            break;
        case Cell::QuadraticHexahedron:
            ring(0, 4);
            ring(4, 4);
            upright(4);
            break;
        default:
            break;
    }
    return points;
}

// Where the format's own description puts the node in the middle of each edge: (end, end), from the
// first middle node on.
std::vector<std::array<int, 2>> CellEdges(Cell cell) {
    switch (cell) {
        case Cell::QuadraticEdge:
            return {{0, 1}};
        case Cell::QuadraticTriangle:
            return {{0, 1}, {1, 2}, {2, 0}};
        case Cell::QuadraticQuad:
        case Cell::BiquadraticQuad:
            return {{0, 1}, {1, 2}, {2, 3}, {3, 0}};
        case Cell::QuadraticTetra:
            return {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}};
        case Cell::QuadraticWedge:
            return {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}};
        case Cell::QuadraticHexahedron:
            return {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6},
                    {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
        default:
            return {};
    }
}

TEST(ElementTypes, EveryMiddleNodeOfADeckLiesInTheMiddleOfItsEdge) {
    int checked = 0;
    for (ElementType const& type : AllElementTypes()) {
        std::vector<Point> const points = DeckElement(type);
        std::span<int const> const middles = MiddleNodes(type);
        if (middles.empty()) continue;
        ASSERT_EQ(points.size(), static_cast<std::size_t>(type.nodes)) << type.name;
        for (std::size_t i = 0; i < middles.size(); i += 3) {
            auto const at = [&](std::size_t k) {
                return points.at(static_cast<std::size_t>(middles[i + k]));
            };
            EXPECT_EQ(at(2), Middle(at(0), at(1))) << type.name << " edge " << i / 3;
            ++checked;
        }
    }
    EXPECT_GT(checked, 300);
}

TEST(ElementTypes, EveryMiddleNodeOfACellLiesInTheMiddleOfItsEdge) {
    int checked = 0;
    for (ElementType const& type : AllElementTypes()) {
        std::vector<Point> const deck = DeckElement(type);
        auto const edges = CellEdges(type.cell);
        if (edges.empty()) continue;
        std::span<int const> const order = NodeOrder(type.cell);
        std::vector<Point> cell;
        for (std::size_t i = 0; i < deck.size(); ++i) {
            cell.push_back(deck[order.empty() ? i : static_cast<std::size_t>(order[i])]);
        }
        std::size_t const corners = Corners(type.cell).size();
        for (std::size_t e = 0; e < edges.size(); ++e) {
            Point const a = cell.at(static_cast<std::size_t>(edges[e][0]));
            Point const b = cell.at(static_cast<std::size_t>(edges[e][1]));
            EXPECT_EQ(cell.at(corners + e), Middle(a, b)) << type.name << " edge " << e;
            ++checked;
        }
    }
    EXPECT_GT(checked, 300);
}

TEST(ElementTypes, NodeOrdersArePermutations) {
    for (ElementType const& type : AllElementTypes()) {
        std::span<int const> const order = NodeOrder(type.cell);
        if (order.empty()) continue;
        std::set<int> const places(order.begin(), order.end());
        EXPECT_EQ(order.size(), static_cast<std::size_t>(type.nodes)) << type.name;
        EXPECT_EQ(places.size(), order.size());
        EXPECT_EQ(*places.begin(), 0);
        EXPECT_EQ(*places.rbegin(), type.nodes - 1);
    }
}

TEST(ElementTypes, AreFoundInAnyCase) {
    for (ElementType const& type : AllElementTypes()) {
        EXPECT_EQ(FindElementType(type.name), &type);
    }
    ASSERT_NE(FindElementType("c3d20r"), nullptr);
    EXPECT_EQ(FindElementType("c3d20r")->name, "C3D20R");
    for (char const* const name :
         {"", "C3D", "C3D9", "C3D8RX", "C3D8 R", "AVeryLongElementTypeName"}) {
        EXPECT_EQ(FindElementType(name), nullptr) << name;
    }
}

TEST(ElementTypes, HoldTheFamiliesThatDecksUse) {
    for (char const* const name :
         {"C3D4",   "C3D6",    "C3D8",    "C3D8R",   "C3D8I",   "C3D8H",    "C3D10",   "C3D10M",
          "C3D15",  "C3D20",   "C3D20R",  "C3D20RH", "S3",      "S3R",      "S4",      "S4R",
          "S6",     "S6R",     "S8",      "S8R",     "S8R5",    "CPS3",     "CPS4",    "CPS4R",
          "CPS6",   "CPS8",    "CPS8R",   "CPE3",    "CPE4",    "CPE4R",    "CPE6",    "CPE8",
          "CPE8R",  "CAX3",    "CAX4",    "CAX4R",   "CAX6",    "CAX8",     "CAX8R",   "M3D3",
          "M3D4",   "M3D4R",   "M3D6",    "M3D8",    "M3D8R",   "B21",      "B22",     "B31",
          "B32",    "T2D2",    "T3D2",    "T3D3",    "R2D2",    "R3D3",     "R3D4",    "MASS",
          "GAPUNI", "ROTARYI", "SPRINGA", "SPRING1", "SPRING2", "DASHPOTA", "CONN2D2", "CONN3D2"}) {
        EXPECT_NE(FindElementType(name), nullptr) << name;
    }
}

// The shape's own number of points, as the document tells it, is the type's.
TEST(ElementTypes, HaveTheShapeOfTheirNumberOfNodes) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    KOVSimCollectionID const shapes = document.GetShapeCollection().GetCollection();
    for (ElementType const& type : AllElementTypes()) {
        KOVSimPosition const shape(document.GetRecord(shapes, type.shape));
        EXPECT_EQ(shape.GetSymbolPosition(), type.shape);
        std::string const name = shape.GetSymbolName().TextOrEmpty();
        std::string const tail = "_" + std::to_string(type.nodes);
        ASSERT_GT(name.size(), tail.size());
        EXPECT_EQ(name.substr(name.size() - tail.size()), tail) << type.name << " " << name;
    }
}

TEST(ElementTypes, AreFoundByShape) {
    ElementType const* const found = FindElementTypeByShape(zdm_Shape_HEXAHEDRON_20, 20);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->cell, Cell::QuadraticHexahedron);
    EXPECT_EQ(FindElementTypeByShape(zdm_Shape_HEXAHEDRON_20, 8), nullptr);
    EXPECT_EQ(FindElementTypeByShape(-1, 4), nullptr);
}

}  // namespace
}  // namespace kov::tool
