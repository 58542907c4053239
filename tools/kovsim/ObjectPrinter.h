// ObjectPrinter: sets, surfaces and orientations with all that is in them, one after the other, as
// text or as JSON. The labels of nodes and of elements are looked up when they are first needed.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Json.h"
#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "MeshLabels.h"
#include "NamedObjects.h"
#include "ObjectContent.h"
#include "TextOut.h"

namespace kov::tool {

inline bool IsSetKind(ObjectKind kind) {
    return kind == ObjectKind::Nodes || kind == ObjectKind::Elements;
}
/// Of an object of such a kind; other writers may have put anything into the maps.
bool IsSet(NamedObject const& object);
/// What the objects of a kind are called together: "internal node sets".
std::string ListTitle(ObjectKind kind, bool internal);
/// The member "system" of an orientation; null where none is given.
void AddSystem(Json& json, OrientationContent const& orientation);

class ObjectPrinter {
  public:
    explicit ObjectPrinter(KOVObjDocument const& document) : m_document(document) {}

    /// Throws DocumentFault for an object that is not of its kind, or holds other members.
    void Print(NamedObject const& object);
    void Print(Json& json, NamedObject const& object);
    /// Where everything goes; to be flushed at the end.
    TextOut& Out() { return m_out; }

  private:
    static KOVSimCSet SetOf(NamedObject const& object);
    MeshLabels const& Labels(ObjectKind kind);
    void Check(ObjectKind kind, KOVSimCSet const& set) const;
    void Members(char const* indent, ObjectKind kind, KOVSimCSet const& set);
    void Members(Json& json, ObjectKind kind, KOVSimCSet const& set);
    void Part(std::string const& name, ObjectKind kind, KOVSimCSet const& set);
    void Parts(Json& json, char const* key, std::vector<SurfacePart> const& parts);
    void Point(char const* name, OrientationContent::Point const& point);
    void Orientation(OrientationContent const& orientation);

    KOVObjDocument m_document;
    TextOut m_out;
    std::optional<MeshLabels> m_nodes;
    std::optional<MeshLabels> m_elements;
};

}  // namespace kov::tool
