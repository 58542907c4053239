// KOVSimCtation: a list of compartments, the content of a dataset: one compartment for each
// distinct relation tuple.
#pragma once

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimCompartment.h"

class KOV_EXPORT KOVSimCtation {
  public:
    using Array = KOVSimArray<KOVSimCompartment, KOVSimArrayClassPolicy<KOVSimCompartment>>;

    KOVSimCtation() = default;
    explicit KOVSimCtation(Array const& compartments) : m_compartments(compartments) {}

    /// The compartments, in the order given; valid while the object lives.
    Array const& Compartments() const { return m_compartments; }
    int Size() const { return m_compartments.Size(); }

  private:
    Array m_compartments;
};
