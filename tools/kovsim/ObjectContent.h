// ObjectContent: what surfaces and orientations consist of, read from a document of any writer.
// What is absent is answered by emptiness.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVSimCSet.h"

namespace kov::tool {

/// The elements of a surface that have the same face, or the same edge, in it.
struct SurfacePart {
    std::string name;  ///< such as S1 or SPOS; a number where the face has no name
    KOVSimCSet elements;
};

struct SurfaceContent {
    std::vector<SurfacePart> faces;  ///< in the order of the faces
    std::vector<SurfacePart> edges;
    KOVSimCSet elements;  ///< that belong to it whole
    KOVSimCSet nodes;

    long Faces() const;
    long Edges() const;
};

SurfaceContent ReadSurface(KOVObjDocument const& document, KOVSimPosition const& region);
/// "12 faces, 40 nodes"; "nothing" for an empty one.
std::string SizeText(SurfaceContent const& surface);

struct OrientationContent {
    using Point = std::vector<double>;  ///< 3 numbers, or none where it is not given

    std::string system;  ///< rectangular, cylindrical, ...; empty where it is not given
    Point a;
    Point b;
    Point c;
    int rotationAxis = 0;  ///< 1 to 3; 0 for no rotation
    double rotationAngle = 0.0;
    Point axisPointA;
    Point axisPointB;
};

OrientationContent ReadOrientation(KOVSimPosition const& orientation);
std::string SystemText(OrientationContent const& orientation);

/// The shortest text that gives the same number again.
std::string NumberText(double number);
/// "1 node", "2 nodes".
std::string CountText(long count, std::string const& what);

}  // namespace kov::tool
