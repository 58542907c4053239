#include "ObjectContent.h"

#include <array>
#include <charconv>
#include <map>
#include <utility>

#include "DocumentReader.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimSchema.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr int kSystemField = 0;
constexpr int kGeometryField = 1;
constexpr char const* kSystems[] = {"rectangular", "cylindrical", "spherical", "Z rectangular"};

// A compartment is (elements, faces), in any order.
std::vector<SurfacePart> ReadParts(KOVObjDocument const& document, KOVSimPosition const& relation) {
    std::vector<SurfacePart> parts;
    KOVSimDSet const dset(relation);
    if (dset.IsNull()) return parts;
    KOVSimCollectionID const elements =
        KOVObjMesh(document.GetMesh()).GetElementCollection().GetCollection();
    std::map<std::pair<KOVSimIDMinor, int>, KOVSimCSet> byFace;
    std::map<KOVSimIDMinor, KOVSimCollectionID> collections;
    for (KOVSimCompartment const& compartment : dset.GetCtation().Compartments()) {
        int const elementsAt = compartment.Position(elements);
        if (compartment.Size() != 2 || elementsAt < 0) continue;
        KOVSimCSet const& named = compartment.CSet(1 - elementsAt);
        KOVSimIDMinor const faces = named.CollectionID().Minor();
        collections[faces] = named.CollectionID();
        for (int i = 0; i < named.Size(); ++i) {
            KOVSimCSet& of = byFace[{faces, named[i]}];
            of = of.Union(compartment.CSet(elementsAt));
        }
    }
    for (auto const& [face, of] : byFace) {
        KOVSimPosition const symbol(document.GetRecord(collections[face.first], face.second));
        std::string name = Plain(symbol.GetSymbolName());
        parts.push_back({name.empty() ? std::to_string(face.second) : std::move(name), of});
    }
    return parts;
}

long Total(std::vector<SurfacePart> const& parts) {
    long total = 0;
    for (SurfacePart const& part : parts) total += part.elements.Size();
    return total;
}

OrientationContent::Point ReadPoint(KOVSimPosition const& record) {
    std::array<double, 3> values = {};
    if (record.IsNull() || record.GetDataRecord().FieldKind(0) != 'd') return {};
    record.GetDataRecord().GetDouble(0, values.data(), 3);
    return {values.begin(), values.end()};
}

}  // namespace

long SurfaceContent::Faces() const { return Total(faces); }
long SurfaceContent::Edges() const { return Total(edges); }

SurfaceContent ReadSurface(KOVObjDocument const& document, KOVSimPosition const& region) {
    return {ReadParts(document, region.GetPosition(schema::Region_elementsFacesCluster())),
            ReadParts(document, region.GetPosition(schema::Region_elementsEdgesCluster())),
            KOVSimCSet(region.GetPosition(schema::Region_elementsCluster())),
            KOVSimCSet(region.GetPosition(schema::Region_nodesCluster()))};
}

std::string SizeText(SurfaceContent const& surface) {
    std::string text;
    auto const add = [&text](long count, char const* what) {
        if (count > 0) text += (text.empty() ? "" : ", ") + CountText(count, what);
    };
    add(surface.Faces(), "face");
    add(surface.Edges(), "edge");
    add(surface.elements.Size(), "element");
    add(surface.nodes.Size(), "node");
    return text.empty() ? "nothing" : text;
}

OrientationContent ReadOrientation(KOVSimPosition const& orientation) {
    OrientationContent read;
    KOVSimDataRecord const record = orientation.GetDataRecord();
    int system = -1;
    record.GetInt(kSystemField, system);
    if (system >= 0 && system < static_cast<int>(std::size(kSystems))) {
        read.system = kSystems[system];
    } else if (system != -1) {
        read.system = "system " + std::to_string(system);
    }
    if (record.FieldKind(kGeometryField) == 'd') {
        // The points a, b, c, then the number of an axis and an angle in degrees.
        std::array<double, 11> values = {};
        record.GetDouble(kGeometryField, values.data(), static_cast<int>(values.size()));
        auto const at = values.begin();
        read.a.assign(at, at + 3);
        read.b.assign(at + 3, at + 6);
        read.c.assign(at + 6, at + 9);
        if (values[9] >= 1.0 && values[9] <= 3.0) {
            read.rotationAxis = static_cast<int>(values[9]);
            read.rotationAngle = values[10];
        }
    }
    read.axisPointA = ReadPoint(orientation.GetPosition(schema::Orientation_axisPointA()));
    read.axisPointB = ReadPoint(orientation.GetPosition(schema::Orientation_axisPointB()));
    return read;
}

std::string SystemText(OrientationContent const& orientation) {
    return orientation.system.empty() ? "system not given" : orientation.system;
}

std::string NumberText(double number) {
    char digits[32];
    auto const result = std::to_chars(digits, digits + sizeof digits, number);
    return {digits, result.ptr};
}

std::string CountText(long count, std::string const& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace kov::tool
