// KOVObjModel: a facade on the position of a model.
#pragma once

#include "KOVExport.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVObjModel {
  public:
    KOVObjModel(KOVSimPosition const& model) : m_model(model) {}
    operator KOVSimPosition const&() const { return m_model; }

    KOVSimPosition GetMesh() const;
    void SetMesh(KOVSimPosition const& mesh) const;
    /// The step of that name in the model's map of steps; null if there is none.
    KOVSimPosition GetStep(KOVString const& name) const;

  private:
    KOVSimPosition m_model;
};
