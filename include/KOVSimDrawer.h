// KOVSimDrawer: one rectangular block of a distribution, read as it stands when the object is
// built.
#pragma once

#include <memory>

#include "KOVExport.h"
#include "KOVSimDrawerDescription.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVSimDrawer {
  public:
    explicit KOVSimDrawer(KOVSimDrawerID const& id);
    /// The drawer at `position`; one without a description if the position denotes none.
    explicit KOVSimDrawer(KOVSimPosition const& position);

    KOVSimDrawerID ID() const { return m_id; }
    /// The distribution that owns the drawer.
    KOVSimDistributionID DistributionID() const;
    /// The description, owned by this object; null if there is none.
    KOVSimDrawerDescription const* Description() const { return m_description.get(); }

  private:
    KOVSimDrawerID m_id;
    std::shared_ptr<KOVSimPersistentDrawerDesc const> m_description;
};
