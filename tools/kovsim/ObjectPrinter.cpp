#include "ObjectPrinter.h"

#include "DocumentReader.h"
#include "MemberList.h"
#include "Names.h"

namespace kov::tool {
namespace {

void AddPoint(Json& json, char const* name, OrientationContent::Point const& point) {
    json.Key(name);
    if (point.empty()) {
        json.Null();
        return;
    }
    json.OneLine().BeginArray();
    for (double const number : point) json.Value(number);
    json.EndArray();
}

void AddOrientation(Json& json, OrientationContent const& orientation) {
    AddSystem(json, orientation);
    AddPoint(json, "a", orientation.a);
    AddPoint(json, "b", orientation.b);
    AddPoint(json, "c", orientation.c);
    json.Member("rotationAxis", orientation.rotationAxis);
    json.Member("rotationAngle", orientation.rotationAngle);
    AddPoint(json, "axisPointA", orientation.axisPointA);
    AddPoint(json, "axisPointB", orientation.axisPointB);
}

}  // namespace

bool IsSet(NamedObject const& object) { return KOVSimCSetID::CanBeConverted(object.position.ID()); }

std::string ListTitle(ObjectKind kind, bool internal) {
    return (internal ? "internal " : "") + std::string(KindName(kind)) + "s";
}

void AddSystem(Json& json, OrientationContent const& orientation) {
    json.Key("system");
    orientation.system.empty() ? json.Null() : json.Value(orientation.system);
}

void ObjectPrinter::Print(NamedObject const& object) {
    m_out << (object.internal ? "internal " : "") << KindName(object.kind) << " "
          << NameText(object.key) << ": ";
    if (IsSetKind(object.kind)) {
        KOVSimCSet const set = SetOf(object);
        m_out << CountText(set.Size(), object.kind == ObjectKind::Nodes ? "node" : "element")
              << "\n";
        Members("  ", object.kind, set);
    } else if (object.kind == ObjectKind::Surface) {
        SurfaceContent const surface = ReadSurface(m_document, object.position);
        m_out << SizeText(surface) << "\n";
        for (auto const* const parts : {&surface.faces, &surface.edges}) {
            for (SurfacePart const& part : *parts) {
                Part(NameText(part.name), ObjectKind::Elements, part.elements);
            }
        }
        Part("elements", ObjectKind::Elements, surface.elements);
        Part("nodes", ObjectKind::Nodes, surface.nodes);
    } else {
        Orientation(ReadOrientation(object.position));
    }
}

void ObjectPrinter::Print(Json& json, NamedObject const& object) {
    json.BeginObject().Member("kind", KindWord(object.kind)).Member("name", object.key);
    json.Member("internal", object.internal);
    if (IsSetKind(object.kind)) {
        KOVSimCSet const set = SetOf(object);
        json.Member("size", set.Size()).Key("members");
        Members(json, object.kind, set);
    } else if (object.kind == ObjectKind::Surface) {
        SurfaceContent const surface = ReadSurface(m_document, object.position);
        Parts(json, "faces", surface.faces);
        Parts(json, "edges", surface.edges);
        json.Key("elements");
        Members(json, ObjectKind::Elements, surface.elements);
        json.Key("nodes");
        Members(json, ObjectKind::Nodes, surface.nodes);
    } else {
        AddOrientation(json, ReadOrientation(object.position));
    }
    json.EndObject();
}

KOVSimCSet ObjectPrinter::SetOf(NamedObject const& object) {
    if (IsSet(object)) return KOVSimCSet(object.position);
    throw DocumentFault("'" + Shown(object.key) + "' stands among the " +
                        ListTitle(object.kind, object.internal) + ", and is no set");
}

MeshLabels const& ObjectPrinter::Labels(ObjectKind kind) {
    bool const nodes = kind == ObjectKind::Nodes;
    std::optional<MeshLabels>& labels = nodes ? m_nodes : m_elements;
    if (!labels) {
        labels.emplace(m_document, nodes ? KOVObjLabelerNodes : KOVObjLabelerElements);
    }
    return *labels;
}

void ObjectPrinter::Check(ObjectKind kind, KOVSimCSet const& set) const {
    bool const nodes = kind == ObjectKind::Nodes;
    KOVObjMesh const mesh(m_document.GetMesh());
    KOVSimPosition const all = nodes ? mesh.GetNodeCollection() : mesh.GetElementCollection();
    if (set.IsEmpty() || set.CollectionID() == all.GetCollection()) return;
    throw DocumentFault(std::string("the set holds members of a collection that is not that of "
                                    "the mesh's ") +
                        (nodes ? "nodes" : "elements"));
}

void ObjectPrinter::Members(char const* indent, ObjectKind kind, KOVSimCSet const& set) {
    Check(kind, set);
    PrintMembers(m_out, indent, Labels(kind), set);
}

void ObjectPrinter::Members(Json& json, ObjectKind kind, KOVSimCSet const& set) {
    Check(kind, set);
    PrintMembers(m_out, json, Labels(kind), set);
}

void ObjectPrinter::Part(std::string const& name, ObjectKind kind, KOVSimCSet const& set) {
    if (set.IsEmpty()) return;
    m_out << "  " << name << "\n";
    Members("    ", kind, set);
}

void ObjectPrinter::Parts(Json& json, char const* key, std::vector<SurfacePart> const& parts) {
    json.Key(key).BeginArray();
    for (SurfacePart const& part : parts) {
        json.BeginObject().Member("name", part.name).Member("size", part.elements.Size());
        json.Key("elements");
        Members(json, ObjectKind::Elements, part.elements);
        json.EndObject();
    }
    json.EndArray();
}

void ObjectPrinter::Point(char const* name, OrientationContent::Point const& point) {
    if (point.empty()) return;
    m_out << "  " << name << " " << NumberText(point[0]) << ", " << NumberText(point[1]) << ", "
          << NumberText(point[2]) << "\n";
}

void ObjectPrinter::Orientation(OrientationContent const& orientation) {
    m_out << SystemText(orientation) << "\n";
    Point("a", orientation.a);
    Point("b", orientation.b);
    Point("c", orientation.c);
    if (orientation.rotationAxis != 0) {
        m_out << "  rotated by " << NumberText(orientation.rotationAngle) << " degrees about axis "
              << orientation.rotationAxis << "\n";
    }
    Point("first axis point", orientation.axisPointA);
    Point("second axis point", orientation.axisPointB);
}

}  // namespace kov::tool
