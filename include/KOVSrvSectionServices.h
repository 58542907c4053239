// KOVSrvSectionServices: which section assignment of a model governs a set of elements.
//
// A model keeps its assignments in the ordered vector Model_sectionAssignments; each gives a
// section to the element set of a region. Where regions overlap, the first assignment in the vector
// governs. Static operations without state; nothing is written. The model is that of the document
// in which the element set lies.
//
// Every assignment up to the one that settles the question needs a region, and the region an
// element set: fatal assertions, which abort the process. An assignment without a section is given
// like any other.
#pragma once

#include "KOVBasMap.h"
#include "KOVExport.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVSrvSectionServices {
  public:
    /// Splits a set of elements by the assignments that govern them. A key is the position of a set
    /// of elements, its value the assignment that governs these, or a null position for those that
    /// none governs. The keys are disjoint and together hold the elements of `elements`: the
    /// position given where no assignment governs any of them, otherwise temporary sets of the
    /// element collection, which end with the context. Ordered by the identities of the sets; empty
    /// for a null position and for an empty set. Throws KOVSimException where a region's set is one
    /// of another collection.
    static KOVBasMap<KOVSimPosition, KOVSimPosition> GetSectionAssignments(KOVSimPosition elements);

    /// The first assignment whose region is this very set or holds all of its elements; a null
    /// position if there is none, as for a set that is split over several assignments, and for a
    /// null position. Every region holds the empty set. Throws as GetSectionAssignments does.
    static KOVSimPosition GetSectionAssignment(KOVSimPosition elements);
};
