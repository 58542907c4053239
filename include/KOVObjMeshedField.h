// KOVObjMeshedField: a facade on the position of a meshed field.
#pragma once

#include "KOVExport.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVObjMeshedField {
  public:
    KOVObjMeshedField(KOVSimPosition const& field) : m_field(field) {}
    operator KOVSimPosition const&() const { return m_field; }

    /// The distribution that was set, or else the one that owns the drawers of the field's first
    /// serial field; null if there is neither.
    KOVSimPosition GetDistribution() const;
    void SetDistribution(KOVSimPosition const& distribution) const;
    /// The type index of the field's grid type; -1 if none was recorded.
    int GetGridType() const;

  private:
    KOVSimPosition m_field;
};
