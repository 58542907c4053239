// References: what a text in place of a label stands for: a set of the current scope, or on
// assembly level a label or a set of an instance, as `instance.label` and `instance.set`.
//
// Dots within quotes are part of a name. A text without quotes may fit several things: a set with
// the whole text for its name, and one cut or more at a dot; this is an error that asks for quotes.
// With quotes and a dot outside them, an instance comes before a set with the whole name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "FieldScanner.h"
#include "Scope.h"

namespace kov::tool {

/// A name as it was typed: without quotes, and where the dots outside them stand.
struct ScopedName {
    std::string text;
    std::vector<std::size_t> dots;
    bool quoted = false;  ///< it was typed with quotes

    /// Takes the field that `fields` has tried already. False if its quotes are not closed.
    bool Read(FieldScanner& fields);
};

/// What a text stands for: a single ordinal, a set, or nothing that is known.
struct Reference {
    int ordinal = LabelTable::None;
    NamedSet* set = nullptr;
    Scope* scope = nullptr;  ///< whose it is
};

/// Calls f(instance, rest) for each cut of a name at a dot that gives an instance, until it answers
/// true; only at the root. A text may have very many dots: those behind the longest name of an
/// instance are not looked at.
template <class F>
void ForCuts(Scopes& scopes, Scope const& scope, ScopedName const& name, F&& f) {
    if (!scope.IsRoot() || !scopes.HasInstances()) return;
    std::string_view const text = name.text;
    for (std::size_t const dot : name.dots) {
        if (dot > scopes.LongestInstance()) return;
        Scope* const instance = scopes.FindInstance(text.substr(0, dot));
        if (instance != nullptr && f(*instance, text.substr(dot + 1))) return;
    }
}

/// Throws at that line: a name without quotes is this object and that one. A null instance is the
/// scope itself.
[[noreturn]] void FailAmbiguous(ScopedName const& name, char const* kind, std::string const& first,
                                Scope const* ofFirst, std::string const& second,
                                Scope const& ofSecond, std::string const& path, int line);

/// The object of a table of scopes, such as their orientations, that a name stands for: one of
/// `scope` itself, or of an instance at the root. Null if there is none. Throws at that line if the
/// name fits several. `kind`: "orientation" and the like.
template <class Object>
Object const* FindNamed(Scopes& scopes, Scope& scope, NameTable<Object> Scope::*table,
                        ScopedName const& name, char const* kind, std::string const& path,
                        int line) {
    Object const* const whole = (scope.*table).Find(name.text);
    Object const* found = name.quoted && !name.dots.empty() ? nullptr : whole;
    Scope const* of = nullptr;
    ForCuts(scopes, scope, name, [&](Scope& instance, std::string_view rest) {
        Object const* const within = (instance.*table).Find(rest);
        if (within == nullptr) return false;
        if (found != nullptr) {
            FailAmbiguous(name, kind, found->name, of, within->name, instance, path, line);
        }
        found = within;
        of = &instance;
        return false;
    });
    return found == nullptr ? whole : found;
}

/// Looks a name up from `scope`. Throws at line `line` of the file if it fits several things.
Reference FindReference(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name,
                        std::string const& path, int line);
Reference FindReference(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name,
                        DeckReader const& reader, int line);

/// The same for a label alone, `instance.label`: None if it stands for none.
int FindScopedLabel(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name);

/// What to say of a name that stands for nothing: what is missing, what was expected, and the
/// nearest names that there are. `except`: a set that is no hint; may be null.
std::string UnknownReference(Scopes& scopes, Scope& scope, Entity const& entity,
                             ScopedName const& name, NamedSet const* except);

/// The same for a name in a place where a set alone may stand.
std::string UnknownSet(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name);

/// The same for a name in place of a node's label, where no set may stand.
std::string UnknownNode(Scopes& scopes, Scope& scope, ScopedName const& name);

/// "node set 'S' names node 7, which is not defined; ..." for a plain label.
std::string UnknownLabel(Scope const& scope, Entity const& entity, std::string const& who,
                         int label);

/// "instance 'I' is not there; ..." with the nearest that are.
std::string UnknownInstance(Scopes const& scopes, std::string const& name);

}  // namespace kov::tool
