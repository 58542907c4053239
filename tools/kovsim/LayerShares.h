// LayerShares: table fields of layers that take a share of a thickness given by element.
//
// A composite section with a distribution of its whole thickness says of each layer only how much
// of it that layer takes. Layers of all sections that take the same share of one distribution have
// one table field together: sections of many equal layers are the rule.
#pragma once

#include <compare>
#include <cstddef>
#include <map>
#include <vector>

#include "Distributions.h"
#include "ModelWriter.h"
#include "SectionTable.h"

namespace kov::tool {

/// The thicknesses of all layers of a section together, as their lines give them.
double ThicknessOfLines(SectionTable const& table, SectionEntry const& section);

class LayerShares {
  public:
    /// Makes the fields of all sections of the table, whose sets are in the document; in the
    /// transaction of the model. Throws a DeckError at a section where a share, or what a layer
    /// gets of it on some element, is no number above 0.
    void Make(SectionTable const& table, ModelWriter& model, Distributions& distributions);

    /// The field of a layer of a section that has a distribution of its thickness. `whole`: that of
    /// ThicknessOfLines.
    KOVSimPosition Field(SectionTable const& table, SectionEntry const& section, int layer,
                         double whole) const;

  private:
    struct Key {
        NamedDistribution const* distribution;
        double share;
        friend auto operator<=>(Key const&, Key const&) = default;
    };

    std::map<Key, std::size_t> m_numbers;  ///< in the order in which the deck asks for them
    std::vector<KOVSimPosition> m_fields;  ///< by number
};

}  // namespace kov::tool
