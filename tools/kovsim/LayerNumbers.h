// LayerNumbers: thicknesses and angles that differ between the elements of a section, read in
// blocks of elements, with one transfer for each layer and block.
#pragma once

#include <functional>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "KOVSimDistribution.h"
#include "Layup.h"

namespace kov::tool {

/// The numbers of one layer: fills `numbers`, one for each member of `elements`, ascending. An
/// element without a number leaves its entry as it is.
using NumbersByElement = std::function<void(KOVSimCSet const& elements, double* numbers)>;

/// The distributed thicknesses or the distributed angles of all shell sections.
class ShellField {
  public:
    /// `field`: the meshed field, or a null position. Throws DocumentFault, which calls the field
    /// `called`, if it is not real numbers in drawers of one layer slot each, by element.
    ShellField(KOVSimPosition const& field, KOVSimCollectionID const& slots,
               KOVSimCollectionID const& elements, char const* called);

    /// The numbers of a layer, counted from 0; an empty function if none of it are stored.
    NumbersByElement Layer(int layer) const;

  private:
    struct Drawer {
        int layer;
        KOVSimDrawerID id;
        KOVSimCSet slot;
        KOVSimCSet elements;
    };

    KOVSimDistribution m_distribution;
    std::vector<Drawer> m_drawers;
};

/// The numbers of a table field, such as a deck's distribution: those of its first column, and its
/// default where an element has none. Throws DocumentFault if it is no table field of one-number
/// rows by element.
NumbersByElement TableFieldNumbers(KOVSimPosition const& field, KOVSimCollectionID const& elements);

/// How the layers of a layup get the numbers that vary: an empty function for all others.
struct LayerSources {
    std::vector<NumbersByElement> thickness;
    std::vector<NumbersByElement> angle;
};
/// Reads them over `elements` into the layup: the ranges of layers and of the whole, and with
/// `values` each number. Of a layup of one element its own numbers are taken.
void ReadLayerNumbers(Layup& layup, LayerSources const& sources, KOVSimCSet const& elements,
                      bool values);

}  // namespace kov::tool
