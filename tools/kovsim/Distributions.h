// Distributions: table fields of a deck, values by element, in the document of its model.
//
// The values go to the document in blocks while they are read, and are read back in blocks where
// somebody asks for them: no table field is ever held in memory. What stays with the scope is a
// NamedDistribution: its quantities, its default, and where its field is.
//
// All of this needs the open transaction of the model. What asks for values waits until the whole
// deck has been read; names of elements in messages come from the scopes' label tables, so that it
// has to happen before these are written.
#pragma once

#include <string>

#include "KOVSimCSet.h"
#include "ModelWriter.h"
#include "References.h"
#include "Scope.h"

namespace kov::tool {

/// What to say of a name that stands for none: "'D' is no distribution; expected ..." with the
/// nearest names that there are.
std::string UnknownDistribution(Scopes& scopes, Scope& scope, ScopedName const& name);

class Distributions {
  public:
    Distributions(ModelWriter& model, Scopes& scopes) : m_model(model), m_scopes(scopes) {}

    /// Throws a DeckError at that line for the first of `elements` that has no value and no default
    /// to take, or, with `positive`, a value or default that is not above 0. The distribution gives
    /// one number. `purpose`: what the value serves for, as in "shell section of 'SKIN'": the text
    /// begins with "PURPOSE: distribution 'D' gives ".
    void CheckCovers(NamedDistribution const& distribution, KOVSimCSet const& elements,
                     std::string const& purpose, std::string const& path, int line,
                     bool positive) const;

    /// The first of `elements`, as messages name it, of which `factor` times the value is 0, being
    /// too small for a number; empty if there is none. The values are above 0, as CheckCovers
    /// finds.
    std::string Vanishing(NamedDistribution const& distribution, KOVSimCSet const& elements,
                          double factor) const;

    /// A new table field without a name: `factor` times the values of `elements`, and times the
    /// default. The distribution gives one number. The numbers have to stay finite.
    KOVSimPosition ScaledField(NamedDistribution const& distribution, double factor,
                               KOVSimCSet const& elements);

  private:
    std::string Element(int ordinal) const;

    ModelWriter& m_model;
    Scopes& m_scopes;
};

}  // namespace kov::tool
