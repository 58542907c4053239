// Scope: the names and labels of one instance, or of the assembly itself. A deck without an
// assembly has the assembly's scope alone, whose name is empty; so keyword classes ask the current
// scope and need not know which kind of deck they read.
//
// A part has no scope: its body is read once for each of its instances, under the scope of that
// instance.
#pragma once

#include <deque>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "DeckReader.h"
#include "KOVSimCSet.h"
#include "LabelTable.h"
#include "Names.h"
#include "Placing.h"
#include "SetTable.h"
#include "TableField.h"

namespace kov::tool {

/// A part of a deck: where its body stands.
struct Part {
    std::string name;  ///< as it was typed first
    std::string path;
    DeckPlace body;     ///< behind the keyword line
    int line = 0;       ///< of the keyword
    int instances = 0;  ///< how often the body was read
};

/// A surface: nodes, or faces and edges of elements.
struct NamedSurface {
    std::string name;  ///< as it was typed
    std::string path;  ///< of the file with its keyword
    int line = 0;      ///< of that keyword
    bool ofNodes = false;
    NamedSet* members = nullptr;  ///< the nodes, or elements as a whole; null for none
    std::vector<std::pair<int, NamedSet*>> faces;  ///< elements by face, ascending

    /// The members of a face, of none for -1; made in `sets` if there are none yet.
    NamedSet& Members(int face, SetTable& sets);
};

/// A system of axes, as it stands in the assembly.
struct NamedOrientation {
    std::string name;         ///< as it was typed
    std::string path;         ///< of the file with its keyword
    int line = 0;             ///< of that keyword
    int system = 0;           ///< 0 rectangular, 1 cylindrical, 2 spherical, 3 Z rectangular
    double numbers[11] = {};  ///< points a, b, c; axis of a further rotation (0 none), degrees
    int index = -1;           ///< among those of the document, once it is written
};

/// A ply: layers of its name, in all sections of a scope.
struct NamedPly {
    std::string name;  ///< as it was typed first
    int number = 0;    ///< among all plies of the deck, in the order in which they came first
};

/// What the values of a distribution mean, one word for each.
struct NamedDistributionTable {
    std::string name;   ///< as it was typed
    std::string path;   ///< of the file with its keyword
    int line = 0;       ///< of that keyword
    std::string words;  ///< upper case, one blank apart, such as "LENGTH"
    int columns = 0;    ///< numbers that they stand for
};

/// A distribution that gives no numbers to elements, and of which only the name is kept.
struct NamedElsewhere {
    std::string name;  ///< as it was typed
    std::string path;  ///< of the file with its keyword
    int line = 0;      ///< of that keyword
};

/// A table field: numbers by element. Its values are in the document.
struct NamedDistribution : TableField {
    std::string name;              ///< as it was typed
    std::string path;              ///< of the file with its keyword
    int line = 0;                  ///< of that keyword
    std::string words;             ///< of its table: what the numbers are, such as "LENGTH"
    std::vector<double> defaults;  ///< one for each column, 0 if the deck gives none
    int defaultLine = 0;           ///< 0 if the deck gives none
    KOVSimCSet elements;           ///< those with a value of their own
    double lowest = 0;             ///< of the first column, over these; 0 without them
    DeckPlace data;                ///< in front of the first data line

    bool HasDefault() const { return defaultLine > 0; }
    /// One number for each element, which may serve as a thickness or an angle.
    bool IsOneNumber() const { return defaults.size() == 1; }
};

/// Objects of one scope by name, without regard to case.
template <class Object>
class NameTable {
  public:
    Object* Find(std::string_view name) {
        auto const found = m_byName.find(LowerCase(name));
        return found == m_byName.end() ? nullptr : found->second;
    }
    /// A new object of a name that is free.
    Object& Make(std::string const& name) {
        Object& object = m_all.emplace_back();
        object.name = name;
        m_byName[LowerCase(name)] = &object;
        return object;
    }
    std::size_t Size() const { return m_all.size(); }
    /// In the order in which they came.
    std::list<Object> const& All() const { return m_all; }
    std::list<Object>& All() { return m_all; }

  private:
    std::list<Object> m_all;
    std::unordered_map<std::string, Object*> m_byName;
};

struct Scope {
    Scope(std::string instance, SetPool& nodePool, SetPool& elementPool)
        : name(std::move(instance)), nodeSets(nodePool), elementSets(elementPool) {}

    bool IsRoot() const { return name.empty(); }
    /// The key of an object of this scope in the maps of a model.
    std::string Key(std::string_view object) const {
        return name.empty() ? std::string(object) : name + "_" + std::string(object);
    }

    std::string name;  ///< of the instance, as it was typed
    Part const* part = nullptr;
    std::string path;  ///< of the file with the instance's keyword
    int line = 0;      ///< of that keyword
    Placing placing;
    LabelTable nodeLabels;
    LabelTable elementLabels;
    SetTable nodeSets;
    SetTable elementSets;
    NameTable<NamedSurface> surfaces;
    NameTable<NamedOrientation> orientations;
    NameTable<NamedPly> plies;
    NameTable<NamedDistributionTable> distributionTables;
    NameTable<NamedDistribution> distributions;
    NameTable<NamedElsewhere> distributionsElsewhere;
    // Ordinals of an instance follow each other. The counts are -1 until its end.
    int firstNode = 0;
    int nodes = 0;
    int firstElement = 0;
    int elements = 0;
};

/// What differs between nodes and elements where labels and sets of either are named.
struct Entity {
    char const* name;   ///< "node"
    char const* label;  ///< "a node label"
    char const* set;    ///< "a node set"
    LabelTable Scope::*labels;
    SetTable Scope::*sets;
};
inline constexpr Entity kNodeEntity = {"node", "a node label", "a node set", &Scope::nodeLabels,
                                       &Scope::nodeSets};
inline constexpr Entity kElementEntity = {"element", "an element label", "an element set",
                                          &Scope::elementLabels, &Scope::elementSets};

/// The scopes of a deck, and the one that is current.
class Scopes {
  public:
    Scopes() { m_all.emplace_back(std::string(), m_nodePool, m_elementPool); }

    Scope& Root() { return m_all.front(); }
    /// The root first, then the instances in the order of the deck.
    std::deque<Scope>& All() { return m_all; }
    std::deque<Scope> const& All() const { return m_all; }
    bool HasInstances() const { return m_all.size() > 1; }
    /// Null if there is no instance of that name, whatever its case.
    Scope* FindInstance(std::string_view name);
    /// The length of the longest name of an instance, in bytes.
    std::size_t LongestInstance() const { return m_longestInstance; }
    /// A new instance; its name is not taken.
    Scope& MakeInstance(std::string const& name);

    /// The instance that has an element; the root for its own.
    Scope const& OfElement(int ordinal) const;

    /// What surfaces are made of: sets without names, over all scopes.
    SetTable& SurfaceNodes() { return m_surfaceNodes; }
    SetTable& SurfaceElements() { return m_surfaceElements; }

    /// Another object of the deck that has the key of `name` in `scope`, as a text such as "set
    /// 'S' of instance 'I'"; empty if none has. `stored` gives the name, as it is kept, that an
    /// object of a scope has; a null pointer for none.
    template <class Stored>
    std::string SameKey(Scope const& scope, std::string_view name, Stored&& stored);

  private:
    SetPool m_nodePool;
    SetPool m_elementPool;
    SetTable m_surfaceNodes{m_nodePool};
    SetTable m_surfaceElements{m_elementPool};
    std::deque<Scope> m_all;
    std::unordered_map<std::string, Scope*> m_byName;  ///< key: the name in lower case
    std::size_t m_longestInstance = 0;
};

/// "node 7 of instance 'I'", or "node 7" at the root, for messages.
std::string ShownLabel(Scope const& scope, Entity const& entity, int label);

/// "'N' of instance 'I'", or "'N'" at the root, for messages.
std::string ShownIn(Scope const& scope, std::string_view name);

// A key is cut at each joiner; what stands in front may be another instance.
template <class Stored>
std::string Scopes::SameKey(Scope const& scope, std::string_view name, Stored&& stored) {
    if (!HasInstances()) return {};
    std::string const key = scope.Key(name);
    auto const look = [&](Scope& other, std::string_view rest) -> std::string {
        if (&other == &scope) return {};
        std::string const* const found = stored(other, rest);
        return found != nullptr && other.Key(*found) == key ? ShownIn(other, *found)
                                                            : std::string();
    };
    std::string same = look(Root(), key);
    for (std::size_t at = key.find('_'); at != std::string::npos && same.empty();
         at = key.find('_', at + 1)) {
        Scope* const other = FindInstance(std::string_view(key).substr(0, at));
        if (other != nullptr) same = look(*other, std::string_view(key).substr(at + 1));
    }
    return same;
}

}  // namespace kov::tool
