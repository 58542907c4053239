// KOVObjElementClass: a facade on the position of an element class, a member of the mesh's class
// collection.
#pragma once

#include "KOVExport.h"
#include "KOVObjMesh.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVObjElementClass {
  public:
    KOVObjElementClass() = default;
    KOVObjElementClass(KOVSimPosition const& position) : m_class(position) {}
    operator KOVSimPosition const&() const { return m_class; }

    /// Makes the next free member of the class collection that was set on `mesh` an element class
    /// linked to the element specification, and stands for it from then on. Throws if the mesh has
    /// no class collection or it has no free member.
    void Register(KOVObjMesh& mesh, KOVSimPosition const& specification);
    /// The position of the set of the class's elements; null if none was set.
    KOVSimPosition GetElementCSet() const;
    void SetElementCSet(KOVSimPosition const& set) const;

  private:
    KOVSimPosition m_class;
};
