// KOVObjElementClassification: a facade on the position of an element classification.
#pragma once

#include "KOVExport.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVObjElementClassification {
  public:
    KOVObjElementClassification(KOVSimPosition const& position) : m_classification(position) {}
    operator KOVSimPosition const&() const { return m_classification; }

    void AppendElementClass(KOVSimPosition const& elementClass) const;
    /// The position of the dataset (element classes, elements).
    KOVSimPosition GetMembership() const;
    void SetMembership(KOVSimPosition const& dset) const;

  private:
    KOVSimPosition m_classification;
};
