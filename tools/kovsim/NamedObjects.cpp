#include "NamedObjects.h"

#include <algorithm>
#include <utility>

#include "DocumentReader.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSrvGetCSetIDFromScopedName.h"
#include "Names.h"
#include "Nearest.h"

namespace kov::tool {
namespace {

constexpr char kSeparator[] = ".";
constexpr int kNoMap = -1;

// The map in which a kind is kept; surfaces and orientations have none for internal ones.
int MapOf(ObjectKind kind, bool internal) {
    switch (kind) {
        case ObjectKind::Nodes:
            return internal ? schema::Model_otherNodeSets() : schema::Model_nodeSets();
        case ObjectKind::Elements:
            return internal ? schema::Model_otherElementSets() : schema::Model_elementSets();
        case ObjectKind::Surface:
            return internal ? kNoMap : schema::Model_regions();
        case ObjectKind::Orientation:
            return internal ? kNoMap : schema::Model_orientationsByName();
    }
    return kNoMap;
}

// The regions of sections stand among the surfaces.
bool IsOf(ObjectKind kind, KOVSimPosition const& object) {
    return kind != ObjectKind::Surface || IsSurface(object);
}

// A name taken apart at the dots that stand outside quotes; its quotes are gone.
struct ScopedName {
    std::string first;  ///< what stands before the first dot; empty without one
    std::string rest;

    std::string Joined(char joiner) const { return first.empty() ? rest : first + joiner + rest; }
};

ScopedName TakeApart(std::string const& name) {
    ScopedName scoped;
    bool quoted = false;
    bool cut = false;
    for (char const c : name) {
        if (c == '"') {
            quoted = !quoted;
        } else if (c == '.' && !quoted && !cut) {
            cut = true;
            scoped.first = std::exchange(scoped.rest, {});
        } else {
            scoped.rest += c;
        }
    }
    if (quoted)
        throw DocumentFault("the quotes of the name '" + Shown(name) + "' are not in pairs");
    return scoped;
}

// The services resolve most names as they are given. They take quotes for a beginning only, and
// every dot for a separator; where a name has more of either, its pieces are handed over apart.
KOVSimPosition Resolve(KOVSimPosition const& focus, std::string const& name,
                       ScopedName const& scoped, int map) {
    auto const ask = [&](std::string const& text, char const* instance) {
        return KOVSrvGetIDFromScopedName(focus, ToKOVString(text), map, kSeparator, instance, true);
    };
    KOVSimPosition found = ask(name, "");
    if (found.IsNull() && !scoped.first.empty()) found = ask(scoped.rest, scoped.first.c_str());
    if (found.IsNull()) found = ask(scoped.Joined('.'), "");
    return found;
}

// The key under which the object was found: what the name looks like, or else the first that leads
// to it.
std::string KeyOf(KOVSimMap const& map, KOVSimPosition const& position, ScopedName const& scoped) {
    std::string const likely[] = {scoped.Joined('.'), scoped.Joined('_')};
    for (std::string const& key : likely) {
        if (map.Find(ToKOVString(key)).ID() == position.ID()) return key;
    }
    for (KOVSimMapiterator at = map.Begin(); at.NotDone(); ++at) {
        if (at.Value().ID() == position.ID()) return Plain(at.Key());
    }
    return scoped.Joined('_');
}

}  // namespace

char const* KindWord(ObjectKind kind) noexcept {
    constexpr char const* kWords[] = {"nodes", "elements", "surface", "orientation"};
    return kWords[static_cast<int>(kind)];
}

char const* KindName(ObjectKind kind) noexcept {
    constexpr char const* kNames[] = {"node set", "element set", "surface", "orientation"};
    return kNames[static_cast<int>(kind)];
}

std::vector<NamedObject> AllObjects(KOVObjDocument const& document, ObjectKind kind,
                                    bool internal) {
    std::vector<NamedObject> objects;
    int const map = MapOf(kind, internal);
    if (map == kNoMap) return objects;
    for (KOVSimMapiterator at = document.GetModel().GetMap(map).Begin(); at.NotDone(); ++at) {
        if (!IsOf(kind, at.Value())) continue;
        objects.push_back({kind, internal, Plain(at.Key()), at.Value()});
    }
    return objects;
}

std::vector<NamedObject> FindObjects(KOVObjDocument const& document, std::string const& name,
                                     std::vector<ObjectKind> const& kinds) {
    std::vector<NamedObject> objects;
    for (ObjectKind const kind : kinds) {
        for (bool const internal : {false, true}) {
            int const map = MapOf(kind, internal);
            if (map == kNoMap) continue;
            KeyedObject found = FindInMap(document, name, map);
            if (found.position.IsNull() || !IsOf(kind, found.position)) continue;
            objects.push_back({kind, internal, std::move(found.key), found.position});
            break;
        }
    }
    return objects;
}

KeyedObject FindInMap(KOVObjDocument const& document, std::string const& name, int map) {
    ScopedName const scoped = TakeApart(name);
    KOVSimPosition const found = Resolve(document.Focus(), name, scoped, map);
    if (found.IsNull()) return {};
    return {KeyOf(document.GetModel().GetMap(map), found, scoped), found};
}

std::vector<std::string> NearestKeys(KOVObjDocument const& document, std::string const& name,
                                     std::vector<ObjectKind> const& kinds) {
    std::vector<int> maps;
    for (ObjectKind const kind : kinds) {
        for (bool const internal : {false, true}) {
            if (MapOf(kind, internal) != kNoMap) maps.push_back(MapOf(kind, internal));
        }
    }
    return NearestInMaps(document, name, maps);
}

std::vector<std::string> NearestInMaps(KOVObjDocument const& document, std::string const& name,
                                       std::vector<int> const& maps) {
    std::string wanted = name;
    std::erase(wanted, '"');
    std::replace(wanted.begin(), wanted.end(), '.', '_');
    NearestSearch search(wanted);
    std::string const tail = "_" + LowerCase(wanted);
    std::vector<std::string> within;
    for (int const map : maps) {
        KOVSimMapiterator at = document.GetModel().GetMap(map).Begin();
        for (; at.NotDone() && within.size() < NearestSearch::kMost; ++at) {
            if (map == schema::Model_regions() && !IsSurface(at.Value())) continue;
            search.Look(View(at.Key()));
            if (std::string const key = Plain(at.Key()); LowerCase(key).ends_with(tail))
                within.push_back(key);
        }
    }
    return within.empty() ? search.Names() : within;
}

}  // namespace kov::tool
