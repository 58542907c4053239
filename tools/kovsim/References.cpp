#include "References.h"

#include <charconv>
#include <string_view>

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

// Calls f(instance, rest) for each cut that gives an instance, until it answers true.
template <class F>
void ForCuts(Scopes& scopes, Scope const& scope, ScopedName const& name, F&& f) {
    if (!scope.IsRoot() || !scopes.HasInstances()) return;
    std::string_view const text = name.text;
    for (std::size_t const dot : name.dots) {
        Scope* const instance = scopes.FindInstance(text.substr(0, dot));
        if (instance != nullptr && f(*instance, text.substr(dot + 1))) return;
    }
}

std::string Plural(Entity const& entity) { return std::string(entity.name) + "s"; }

}  // namespace

bool ScopedName::Read(FieldScanner& fields) {
    fields.Again();
    return fields.ReadText(text, dots);
}

Reference FindReference(Scopes& scopes, Scope& scope, Entity const& entity,
                        ScopedName const& name) {
    Reference found;
    found.set = (scope.*entity.sets).Find(name.text);
    if (found.set != nullptr) return found;
    ForCuts(scopes, scope, name, [&](Scope& instance, std::string_view rest) {
        int const label = AsLabel(rest);
        if (label > 0) found.ordinal = (instance.*entity.labels).Find(label);
        if (found.ordinal == LabelTable::None) found.set = (instance.*entity.sets).Find(rest);
        return found.ordinal != LabelTable::None || found.set != nullptr;
    });
    return found;
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
    std::string const kind = entity.name;
    Scope* instance = nullptr;
    std::string_view rest;
    ForCuts(scopes, scope, name, [&](Scope& found, std::string_view behind) {
        instance = &found;
        rest = behind;
        return true;
    });
    if (instance != nullptr) {
        if (int const label = AsLabel(rest)) {
            return "instance '" + Shown(instance->name) + "' has no " + kind + " " +
                   std::to_string(label) + "; expected " + Plural(entity) + " of the instance";
        }
        NearestSearch search(rest);
        for (NamedSet const& set : (instance->*entity.sets).Sets()) search.Look(set.name);
        return "instance '" + Shown(instance->name) + "' has no " + kind + " set '" + Shown(rest) +
               "'; expected a set of the instance" + NearestHint(search.Names());
    }
    if (scope.IsRoot() && !name.dots.empty()) {
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
    return "'" + Shown(name.text) + "' is neither " + entity.label +
           " nor the name of a set; expected " + Plural(entity) + " or " + kind + " sets of " +
           (scope.IsRoot() ? "the deck" : "instance '" + Shown(scope.name) + "'") +
           NearestHint(hints);
}

std::string UnknownLabel(Scope const& scope, Entity const& entity, std::string const& who,
                         int label) {
    return who + " names " + entity.name + " " + std::to_string(label) +
           ", which is not defined; expected " + Plural(entity) + " of " +
           (scope.IsRoot() ? "the deck" : "instance '" + Shown(scope.name) + "'");
}

}  // namespace kov::tool
