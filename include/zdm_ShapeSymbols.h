// zdm_ShapeSymbols.h: the shapes of elements, by their position in the shape collection.
//
// The name of a shape is its enumerator without the prefix: zdm_Shape_HEXAHEDRON_8 stands for
// "HEXAHEDRON_8". The number behind a name is the number of points; a shape without a number has as
// many as its element specification brings along. The numbers are stored and never change.
#pragma once

enum zdm_ShapeSymbolsEnm : int {
    zdm_Shape_POINT_1 = 0,
    zdm_Shape_POINT_CLOUD = 1,
    // Lines. The axisymmetric ones are traces of a surface of revolution.
    zdm_Shape_LINE_2 = 2,
    zdm_Shape_POLYLINE = 3,
    zdm_Shape_SPLINE = 4,
    zdm_Shape_ARC = 5,
    zdm_Shape_AXISYMMETRIC_LINE_2 = 6,
    zdm_Shape_LINE_3 = 7,
    zdm_Shape_AXISYMMETRIC_LINE_3 = 8,
    // Faces. The cylindrical ones span a sector around an axis.
    zdm_Shape_CYLINDRICAL_QUADRILATERAL_6 = 9,
    zdm_Shape_CYLINDRICAL_QUADRILATERAL_9 = 10,
    zdm_Shape_QUADRILATERAL_4 = 11,
    zdm_Shape_QUADRILATERAL_5 = 12,
    zdm_Shape_AXISYMMETRIC_QUADRILATERAL_4 = 13,
    zdm_Shape_QUADRILATERAL_8 = 14,
    zdm_Shape_QUADRILATERAL_9 = 15,
    zdm_Shape_TRIANGLE_3 = 16,
    zdm_Shape_TRIANGLE_6 = 17,
    zdm_Shape_POLYGON = 18,
    zdm_Shape_SPLINE_SURFACE = 19,
    zdm_Shape_SUBDIVISION_SURFACE = 20,
    zdm_Shape_SURFACE_OF_REVOLUTION = 21,
    zdm_Shape_SURFACE_OF_EXTRUSION = 22,
    // Volumes.
    zdm_Shape_POLYHEDRON = 23,
    zdm_Shape_SPLINE_VOLUME = 24,
    zdm_Shape_PARTICLE_CLUSTER = 25,
    zdm_Shape_SUBSTRUCTURE = 26,
    zdm_Shape_USER_DEFINED = 27,
    zdm_Shape_CYLINDRICAL_HEXAHEDRON_12 = 28,
    zdm_Shape_CYLINDRICAL_HEXAHEDRON_18 = 29,
    zdm_Shape_CYLINDRICAL_HEXAHEDRON_24 = 30,
    zdm_Shape_CYLINDRICAL_WEDGE_9 = 31,
    zdm_Shape_CYLINDRICAL_WEDGE_12 = 32,
    zdm_Shape_CYLINDRICAL_WEDGE_18 = 33,
    zdm_Shape_LAYERED_HEXAHEDRON_12 = 34,
    zdm_Shape_HEXAHEDRON_20 = 35,
    zdm_Shape_HEXAHEDRON = 36,
    zdm_Shape_HEXAHEDRON_27 = 37,
    zdm_Shape_HEXAHEDRON_8 = 38,
    zdm_Shape_PYRAMID_13 = 39,
    zdm_Shape_PYRAMID_5 = 40,
    zdm_Shape_TETRAHEDRON_10 = 41,
    zdm_Shape_MODIFIED_TETRAHEDRON_10 = 42,
    zdm_Shape_TETRAHEDRON_4 = 43,
    zdm_Shape_LAYERED_WEDGE_12 = 44,
    zdm_Shape_WEDGE_15 = 45,
    zdm_Shape_WEDGE = 46,
    zdm_Shape_WEDGE_6 = 47,
    zdm_Shape_LAYERED_WEDGE_9 = 48,
};
