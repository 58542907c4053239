#include "NamedElements.h"

#include "AscendingSets.h"
#include "DocumentReader.h"
#include "NamedObjects.h"
#include "Names.h"
#include "Nearest.h"
#include "ObjectContent.h"

namespace kov::tool {
namespace {

KOVSimCSet ElementsOf(KOVObjDocument const& document, NamedObject const& object) {
    if (object.kind == ObjectKind::Elements) return KOVSimCSet(object.position);
    SurfaceContent const surface = ReadSurface(document, object.position);
    KOVSimCSet all = surface.elements;
    for (auto const* const parts : {&surface.faces, &surface.edges}) {
        for (SurfacePart const& part : *parts) all = all.Union(part.elements);
    }
    return all;
}

}  // namespace

KOVSimCSet ElementsNamed(KOVObjDocument const& document, std::string const& name) {
    std::vector<ObjectKind> const kinds = {ObjectKind::Elements, ObjectKind::Surface};
    std::vector<NamedObject> const objects = FindObjects(document, name, kinds);
    if (objects.empty()) {
        if (!FindObjects(document, name, {ObjectKind::Nodes}).empty()) {
            throw DocumentFault("'" + Shown(name) + "' is a node set; expected an element set");
        }
        throw DocumentFault("no element set or surface named '" + Shown(name) + "'" +
                            NearestHint(NearestKeys(document, name, kinds)));
    }
    NamedObject const& object = objects.front();
    KOVSimCSet const elements = ElementsOf(document, object);
    std::string const what = std::string("the ") + KindName(object.kind) + " '" + Shown(name) + "'";
    if (elements.IsEmpty()) {
        throw DocumentFault(what + " has no elements; expected one that has some");
    }
    KOVObjMesh const mesh(document.GetMesh());
    if (elements.CollectionID() != mesh.GetElementCollection().GetCollection()) {
        throw DocumentFault(what +
                            " holds members of a collection that is not that of the mesh's "
                            "elements");
    }
    return Ascending(elements);
}

}  // namespace kov::tool
