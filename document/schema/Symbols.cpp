#include "document/schema/Symbols.h"

#include <cstddef>

#include "zdm_ComponentSymbols.h"
#include "zdm_DofSymbols.h"
#include "zdm_ShapeSymbols.h"

namespace kov::schema {

namespace {

// Each row names its enumerator, and the tables below are checked to have every row at the position
// that its enumerator gives.
struct Row {
    int symbol;
    SymbolEntry entry;
};
struct ShapeRow {
    int symbol;
    ShapeEntry entry;
};

#define COMPONENT(name)                 \
    {                                   \
        zdm_Component_##name, { #name } \
    }
#define DOF(name)                 \
    {                             \
        zdm_Dof_##name, { #name } \
    }
#define SHAPE(name, points, dimension)                 \
    {                                                  \
        zdm_Shape_##name, { #name, points, dimension } \
    }

constexpr Row kComponents[] = {
    COMPONENT(C_1),    COMPONENT(C_11),    COMPONENT(C_1111),   COMPONENT(C_1112),
    COMPONENT(C_1122), COMPONENT(C_12),    COMPONENT(C_1211),   COMPONENT(C_1212),
    COMPONENT(C_1222), COMPONENT(C_12_21), COMPONENT(C_13),     COMPONENT(C_13_31),
    COMPONENT(C_2),    COMPONENT(C_21),    COMPONENT(C_22),     COMPONENT(C_2211),
    COMPONENT(C_2212), COMPONENT(C_2222),  COMPONENT(C_23),     COMPONENT(C_23_32),
    COMPONENT(C_3),    COMPONENT(C_31),    COMPONENT(C_32),     COMPONENT(C_33),
    COMPONENT(C_P1),   COMPONENT(C_P2),    COMPONENT(C_P3),     COMPONENT(C_Q1),
    COMPONENT(C_Q2),   COMPONENT(C_Q3),    COMPONENT(C_Q4),     COMPONENT(C_R1),
    COMPONENT(C_R2),   COMPONENT(C_R3),    COMPONENT(C_SCALAR), COMPONENT(C_TP1),
    COMPONENT(C_TP2),  COMPONENT(C_TP3),
};

constexpr Row kDofs[] = {
    DOF(ACOUSTIC_PRESSURE), DOF(CONCENTRATION),
    DOF(DISPLACEMENT_1),    DOF(DISPLACEMENT_2),
    DOF(DISPLACEMENT_3),    DOF(ELECTRIC_POTENTIAL),
    DOF(FLUID_PRESSURE),    DOF(MAGNETIC_POTENTIAL),
    DOF(PORE_PRESSURE),     DOF(ROTATION_ANGLE_1),
    DOF(ROTATION_ANGLE_2),  DOF(ROTATION_ANGLE_3),
    DOF(TEMPERATURE),       DOF(WARPING),
};

// Name, points, dimension.
constexpr ShapeRow kShapes[] = {
    SHAPE(POINT_1, 1, 0),
    SHAPE(POINT_CLOUD, 0, 0),
    SHAPE(LINE_2, 2, 1),
    SHAPE(POLYLINE, 0, 1),
    SHAPE(SPLINE, 0, 1),
    SHAPE(ARC, 0, 1),
    SHAPE(AXISYMMETRIC_LINE_2, 2, 1),
    SHAPE(LINE_3, 3, 1),
    SHAPE(AXISYMMETRIC_LINE_3, 3, 1),
    SHAPE(CYLINDRICAL_QUADRILATERAL_6, 6, 2),
    SHAPE(CYLINDRICAL_QUADRILATERAL_9, 9, 2),
    SHAPE(QUADRILATERAL_4, 4, 2),
    SHAPE(QUADRILATERAL_5, 5, 2),
    SHAPE(AXISYMMETRIC_QUADRILATERAL_4, 4, 2),
    SHAPE(QUADRILATERAL_8, 8, 2),
    SHAPE(QUADRILATERAL_9, 9, 2),
    SHAPE(TRIANGLE_3, 3, 2),
    SHAPE(TRIANGLE_6, 6, 2),
    SHAPE(POLYGON, 0, 2),
    SHAPE(SPLINE_SURFACE, 0, 2),
    SHAPE(SUBDIVISION_SURFACE, 0, 2),
    SHAPE(SURFACE_OF_REVOLUTION, 0, 2),
    SHAPE(SURFACE_OF_EXTRUSION, 0, 2),
    SHAPE(POLYHEDRON, 0, 3),
    SHAPE(SPLINE_VOLUME, 0, 3),
    SHAPE(PARTICLE_CLUSTER, 0, 3),
    SHAPE(SUBSTRUCTURE, 0, 3),
    SHAPE(USER_DEFINED, 0, 3),
    SHAPE(CYLINDRICAL_HEXAHEDRON_12, 12, 3),
    SHAPE(CYLINDRICAL_HEXAHEDRON_18, 18, 3),
    SHAPE(CYLINDRICAL_HEXAHEDRON_24, 24, 3),
    SHAPE(CYLINDRICAL_WEDGE_9, 9, 3),
    SHAPE(CYLINDRICAL_WEDGE_12, 12, 3),
    SHAPE(CYLINDRICAL_WEDGE_18, 18, 3),
    SHAPE(LAYERED_HEXAHEDRON_12, 12, 3),
    SHAPE(HEXAHEDRON_20, 20, 3),
    SHAPE(HEXAHEDRON, 0, 3),
    SHAPE(HEXAHEDRON_27, 27, 3),
    SHAPE(HEXAHEDRON_8, 8, 3),
    SHAPE(PYRAMID_13, 13, 3),
    SHAPE(PYRAMID_5, 5, 3),
    SHAPE(TETRAHEDRON_10, 10, 3),
    SHAPE(MODIFIED_TETRAHEDRON_10, 10, 3),
    SHAPE(TETRAHEDRON_4, 4, 3),
    SHAPE(LAYERED_WEDGE_12, 12, 3),
    SHAPE(WEDGE_15, 15, 3),
    SHAPE(WEDGE, 0, 3),
    SHAPE(WEDGE_6, 6, 3),
    SHAPE(LAYERED_WEDGE_9, 9, 3),
};

#undef COMPONENT
#undef DOF
#undef SHAPE

template <class Entry, std::size_t N>
struct Table {
    Entry rows[N];
};

/// The entries alone. A row out of place makes the expression no constant, and is so refused when
/// this file is compiled.
template <class Entry, class R, std::size_t N>
constexpr Table<Entry, N> InOrder(R const (&rows)[N]) {
    Table<Entry, N> table{};
    for (std::size_t i = 0; i < N; ++i) {
        if (rows[i].symbol != static_cast<int>(i)) throw "a symbol is not at its position";
        table.rows[i] = rows[i].entry;
    }
    return table;
}

constexpr auto kComponentTable = InOrder<SymbolEntry>(kComponents);
constexpr auto kDofTable = InOrder<SymbolEntry>(kDofs);
constexpr auto kShapeTable = InOrder<ShapeEntry>(kShapes);

static_assert(std::size(kComponents) == zdm_Component_NONE);

}  // namespace

std::span<SymbolEntry const> ComponentSymbols() noexcept { return kComponentTable.rows; }

std::span<SymbolEntry const> DofSymbols() noexcept { return kDofTable.rows; }

std::span<ShapeEntry const> ShapeSymbols() noexcept { return kShapeTable.rows; }

}  // namespace kov::schema
