// References: what a text in place of a label stands for: a set of the current scope, or on
// assembly level a label or a set of an instance, as `instance.label` and `instance.set`.
//
// Dots within quotes are part of a name. A set that has the whole text for its name comes before an
// instance; of several cuts the first that gives an instance counts.
#pragma once

#include <string>
#include <vector>

#include "FieldScanner.h"
#include "Scope.h"

namespace kov::tool {

/// A name as it was typed: without quotes, and where the dots outside them stand.
struct ScopedName {
    std::string text;
    std::vector<std::size_t> dots;

    /// Takes the field that `fields` has tried already. False if its quotes are not closed.
    bool Read(FieldScanner& fields);
};

/// What a text stands for: a single ordinal, a set, or nothing that is known.
struct Reference {
    int ordinal = LabelTable::None;
    NamedSet* set = nullptr;
};

/// Looks a name up from `scope`.
Reference FindReference(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name);

/// The same for a label alone, `instance.label`: None if it stands for none.
int FindScopedLabel(Scopes& scopes, Scope& scope, Entity const& entity, ScopedName const& name);

/// What to say of a name that stands for nothing: what is missing, what was expected, and the
/// nearest names that there are. `except`: a set that is no hint; may be null.
std::string UnknownReference(Scopes& scopes, Scope& scope, Entity const& entity,
                             ScopedName const& name, NamedSet const* except);

/// "node set 'S' names node 7, which is not defined; ..." for a plain label.
std::string UnknownLabel(Scope const& scope, Entity const& entity, std::string const& who,
                         int label);

/// "instance 'I' is not there; ..." with the nearest that are.
std::string UnknownInstance(Scopes const& scopes, std::string const& name);

}  // namespace kov::tool
