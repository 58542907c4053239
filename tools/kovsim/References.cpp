#include "References.h"

#include <charconv>
#include <string_view>

#include "Failure.h"
#include "Names.h"
#include "Nearest.h"

namespace kov::tool {
namespace {

// A text that is a label; 0 if it is none.
int AsLabel(std::string_view text) {
    int label = 0;
    auto const result = std::from_chars(text.data(), text.data() + text.size(), label);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && label > 0 ? label
                                                                                            : 0;
}

// One thing that a name may stand for.
struct Meaning {
    Reference found;
    Scope const* instance = nullptr;  ///< null for a set of the scope itself
    std::string_view rest;            ///< behind the instance
};

std::string Described(Meaning const& meaning, Entity const& entity) {
    std::string const text =
        meaning.found.set != nullptr
            ? std::string(entity.name) + " set '" + Shown(meaning.found.set->name) + "'"
            : std::string(entity.name) + " " + Shown(meaning.rest);
    return meaning.instance == nullptr
               ? text
               : text + " of instance '" + Shown(meaning.instance->name) + "'";
}

// The way to write a name so that it has this meaning only.
std::string Quoted(Meaning const& meaning, ScopedName const& name) {
    if (meaning.instance == nullptr) return '"' + Shown(name.text) + '"';
    std::string const rest =
        meaning.found.set != nullptr ? '"' + Shown(meaning.rest) + '"' : std::string(meaning.rest);
    return '"' + Shown(meaning.instance->name) + "\"." + rest;
}

std::string Plural(Entity const& entity) { return std::string(entity.name) + "s"; }

// What to say where an instance is there, but has nothing of that name. `label`: 0 where the name
// is none, or none may stand.
std::string UnknownWithin(Scope& instance, Entity const& entity, std::string_view rest, int label) {
    std::string const text = "instance '" + Shown(instance.name) + "' has no " + entity.name + " ";
    if (label > 0) {
        return text + std::to_string(label) + "; expected " + Plural(entity) + " of the instance";
    }
    NearestSearch search(rest);
    for (NamedSet const& set : (instance.*entity.sets).Sets()) search.Look(set.name);
    return text + "set '" + Shown(rest) + "'; expected a set of the instance" +
           NearestHint(search.Names());
}

// `labels`: whether a label might stand in the place of the name.
std::string Unknown(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name,
                    NamedSet const* except, bool labels) {
    std::string const kind = entity.name;
    Scope* instance = nullptr;
    std::string_view rest;
    ForCuts(scopes, scope, name, [&](Scope& found, std::string_view behind) {
        instance = &found;
        rest = behind;
        return true;
    });
    if (instance != nullptr) {
        return UnknownWithin(*instance, entity, rest, labels ? AsLabel(rest) : 0);
    }
    if (scope.IsRoot() && scopes.HasInstances() && !name.dots.empty()) {
        std::string const head = name.text.substr(0, name.dots.front());
        return "'" + Shown(name.text) + "': " + UnknownInstance(scopes, head);
    }
    NearestSearch search(name.text);
    for (NamedSet const& set : (scope.*entity.sets).Sets()) {
        if (&set != except) search.Look(set.name);
    }
    std::vector<std::string> hints = search.Names();
    if (scope.IsRoot() && hints.empty()) {
        // The set may stand in an instance.
        for (Scope& other : scopes.All()) {
            if (other.IsRoot() || hints.size() == NearestSearch::kMost) continue;
            NamedSet const* const set = (other.*entity.sets).Find(name.text);
            if (set != nullptr) hints.push_back(other.name + "." + set->name);
        }
    }
    return "'" + Shown(name.text) + "' is " +
           (labels ? std::string("neither ") + entity.label + " nor the name of a set; expected " +
                         Plural(entity) + " or " + kind + " sets of "
                   : "no " + kind + " set; expected " + entity.set + " of ") +
           (scope.IsRoot() ? "the deck" : "instance '" + Shown(scope.name) + "'") +
           NearestHint(hints);
}

}  // namespace

bool ScopedName::Read(FieldScanner& fields) {
    fields.Again();
    bool const closed = fields.ReadText(text, dots);
    quoted = fields.Field().find('"') != std::string_view::npos;
    return closed;
}

void FailAmbiguous(ScopedName const& name, char const* kind, std::string const& first,
                   Scope const* ofFirst, std::string const& second, Scope const& ofSecond,
                   std::string const& path, int line) {
    auto const described = [kind](std::string const& object, Scope const* instance) {
        std::string const text = std::string(kind) + " '" + Shown(object) + "'";
        return instance == nullptr ? text : text + " of instance '" + Shown(instance->name) + "'";
    };
    auto const quoted = [](std::string const& object, Scope const* instance) {
        std::string const text = '"' + Shown(object) + '"';
        return instance == nullptr ? text : '"' + Shown(instance->name) + "\"." + text;
    };
    throw DeckError(path, line,
                    "'" + Shown(name.text) + "' is " + described(first, ofFirst) + " and " +
                        described(second, &ofSecond) + "; expected quotes, as in " +
                        quoted(first, ofFirst) + " or " + quoted(second, &ofSecond));
}

Reference FindReference(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name,
                        DeckReader const& reader, int line) {
    return FindReference(scopes, scope, entity, name, reader.Path(), line);
}

Reference FindReference(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name,
                        std::string const& path, int line) {
    Meaning first;
    bool const bare = !name.quoted;
    first.found.set = (scope.*entity.sets).Find(name.text);
    first.found.scope = &scope;
    bool any = first.found.set != nullptr && (bare || name.dots.empty());
    Reference const whole = first.found;
    ForCuts(scopes, scope, name, [&](Scope& instance, std::string_view rest) {
        Meaning meaning;
        meaning.instance = &instance;
        meaning.found.scope = &instance;
        meaning.rest = rest;
        int const label = AsLabel(rest);
        if (label > 0) meaning.found.ordinal = (instance.*entity.labels).Find(label);
        if (meaning.found.ordinal == LabelTable::None) {
            meaning.found.set = (instance.*entity.sets).Find(rest);
            if (meaning.found.set == nullptr) return false;
        }
        if (any) {
            throw DeckError(path, line,
                            "'" + Shown(name.text) + "' is " + Described(first, entity) + " and " +
                                Described(meaning, entity) + "; expected quotes, as in " +
                                Quoted(first, name) + " or " + Quoted(meaning, name));
        }
        any = true;
        first = meaning;
        return false;
    });
    return any ? first.found : whole;
}

int FindScopedLabel(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name) {
    int ordinal = LabelTable::None;
    ForCuts(scopes, scope, name, [&](Scope& instance, std::string_view rest) {
        ordinal = (instance.*entity.labels).Find(AsLabel(rest));
        return ordinal != LabelTable::None;
    });
    return ordinal;
}

std::string UnknownInstance(Scopes const& scopes, std::string const& name) {
    NearestSearch search(name);
    for (Scope const& scope : scopes.All()) {
        if (!scope.IsRoot()) search.Look(scope.name);
    }
    return "instance '" + Shown(name) + "' is not there; expected an instance of the assembly" +
           NearestHint(search.Names());
}

std::string UnknownReference(Scopes& scopes, Scope& scope, Entity const& entity,
                             ScopedName const& name, NamedSet const* except) {
    return Unknown(scopes, scope, entity, name, except, true);
}

std::string UnknownSet(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name) {
    return Unknown(scopes, scope, entity, name, nullptr, false);
}

std::string UnknownNode(Scopes& scopes, Scope& scope, ScopedName const& name) {
    std::string text;
    std::string const shown = "'" + Shown(name.text) + "' is ";
    if (scope.nodeSets.Find(name.text) != nullptr) {
        text = shown + "a node set; expected a single node";
    }
    ForCuts(scopes, scope, name, [&](Scope& instance, std::string_view rest) {
        if (AsLabel(rest) > 0) {
            text.clear();
            return true;
        }
        text = shown +
               (instance.nodeSets.Find(rest) != nullptr ? "a node set of instance '"
                                                        : "no node of instance '") +
               Shown(instance.name) + "'; expected a single node, as in " + Shown(instance.name) +
               ".1";
        return instance.nodeSets.Find(rest) != nullptr;
    });
    if (!text.empty()) return text;
    if (!scopes.HasInstances()) {
        return shown + "no node; the assembly has no instances, expected a label";
    }
    return UnknownReference(scopes, scope, kNodeEntity, name, nullptr);
}

std::string UnknownLabel(Scope const& scope, Entity const& entity, std::string const& who,
                         int label) {
    return who + " names " + entity.name + " " + std::to_string(label) +
           ", which is not defined; expected " + Plural(entity) + " of " +
           (scope.IsRoot() ? "the deck" : "instance '" + Shown(scope.name) + "'");
}

}  // namespace kov::tool
