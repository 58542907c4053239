// NamedObjects: the sets, surfaces and orientations of a model, by the names that users give them.
//
// A model keeps them in maps under flattened keys: `Part-1_Set-1` for the set Set-1 of the instance
// Part-1. Sets that a translator made for its own use stand in maps of their own, as internal ones.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "KOVObjDocument.h"

namespace kov::tool {

enum class ObjectKind { Nodes, Elements, Surface, Orientation };

constexpr ObjectKind kObjectKinds[] = {ObjectKind::Nodes, ObjectKind::Elements, ObjectKind::Surface,
                                       ObjectKind::Orientation};

/// The word that names a kind in options: nodes, elements, surface, orientation.
char const* KindWord(ObjectKind kind) noexcept;
/// What one object of a kind is called: node set, element set, surface, orientation.
char const* KindName(ObjectKind kind) noexcept;

struct NamedObject {
    ObjectKind kind;
    bool internal;
    std::string key;
    KOVSimPosition position;
};

/// All objects of a kind, by ascending key; the internal ones or all others.
std::vector<NamedObject> AllObjects(KOVObjDocument const& document, ObjectKind kind, bool internal);

/// The objects that `name` means, at most one for each of `kinds`: a scoped name as a deck has it
/// (`Part-1.Set-1`, `"My Part"."Top Set"`, `Set-1`), or a key. Throws Failure if its quotes are not
/// in pairs.
std::vector<NamedObject> FindObjects(KOVObjDocument const& document, std::string const& name,
                                     std::vector<ObjectKind> const& kinds);

/// The keys of `kinds` nearest to a name that means none of them: those of that name within an
/// instance before all others.
std::vector<std::string> NearestKeys(KOVObjDocument const& document, std::string const& name,
                                     std::vector<ObjectKind> const& kinds);

/// An object and its key in a map of the model.
struct KeyedObject {
    std::string key;
    KOVSimPosition position;  ///< null if there is none
};
/// The object that `name`, written as for FindObjects, means in one map of the model, such as that
/// of its sections. Throws Failure if its quotes are not in pairs.
KeyedObject FindInMap(KOVObjDocument const& document, std::string const& name, int map);
/// The keys of these maps nearest to a name, as NearestKeys gives them.
std::vector<std::string> NearestInMaps(KOVObjDocument const& document, std::string const& name,
                                       std::vector<int> const& maps);

}  // namespace kov::tool
