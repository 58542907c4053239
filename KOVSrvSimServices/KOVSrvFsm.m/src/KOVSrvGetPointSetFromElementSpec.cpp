#include "KOVSrvGetPointSetFromElementSpec.h"

#include <iterator>

#include "KOVObjDocument.h"
#include "KOVSimCollection.h"
#include "KOVSimSchema.h"
#include "KOVString.h"

namespace {

// The points of each shape, by its symbol (zdm_ShapeSymbols.h): 0 where the shape does not fix
// them.
constexpr int kPoints[] = {
    1,  0,  2,  0,  0,  0,  2, 3,  3,  6,   //  0 to  9
    9,  4,  5,  4,  8,  9,  3, 6,  0,  0,   // 10 to 19
    0,  0,  0,  0,  0,  0,  0, 0,  12, 18,  // 20 to 29
    24, 9,  12, 18, 12, 20, 0, 27, 8,  13,  // 30 to 39
    5,  10, 10, 4,  12, 15, 0, 6,  9,       // 40 to 48
};

int PointsOfShape(int symbol) {
    return symbol >= 0 && symbol < static_cast<int>(std::size(kPoints)) ? kPoints[symbol] : 0;
}

// An axisymmetric element that bends has its points once in each of n + 1 planes; the type's name
// ends in n.
int Planes(KOVString const& name) {
    int number = 0;
    if (name.SubString(1, 3) == "AXA" &&
        name.SubString(name.GetLengthInChar() - 1, 1).ConvertToNum(&number, "%d") != 0) {
        return number + 1;
    }
    return 1;
}

}  // namespace

KOVSimCSet KOVSrvGetPointSetFromElementSpec(KOVSimPosition const& elementSpec) {
    KOVSimPosition const own = elementSpec.GetPosition(schema::ElementSpec_points());
    if (!own.IsNull()) return KOVSimCSet(own.GetCSet());
    KOVObjDocument const document(elementSpec.Doc());
    KOVSimCollection const points(document.GetPointCollection().GetCollection());
    KOVSimPosition const shape = elementSpec.GetPosition(schema::ElementSpec_shape());
    if (shape.IsNull()) return KOVSimCSet(points.EmptyCSetID());
    int const count = Planes(elementSpec.Name(-1)) * PointsOfShape(shape.GetSymbolPosition());
    return points.CreateVolatileCSetStrided(0, count, 1, 1);
}
