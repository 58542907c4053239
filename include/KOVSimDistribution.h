// KOVSimDistribution: a typed array over a grid of collections, stored as drawers. A value facade
// that keeps a weak share of the database and a copy of the grid; cheap to copy.
#pragma once

#include <memory>

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimDrawerDescription.h"
#include "KOVSimGrid.h"
#include "KOVSimRangeType.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSimDistribution {
  public:
    KOVSimDistribution() = default;
    /// Throws if there is no such distribution, or its document is closed; a null `id` gives a null
    /// facade.
    explicit KOVSimDistribution(KOVSimDistributionID const& id);

    KOVSimDistributionID ID() const { return m_id; }
    int NumDimensions() const { return m_grid.NumDimensions(); }
    KOVSimGrid const& Grid() const { return m_grid; }
    KOVSimRangeType Range() const { return m_range; }
    /// False for a null facade, or one whose database has gone.
    bool IsPresent() const;

    /// Fills the array with one description for each drawer, in the order of creation.
    void QueryDrawers(
        KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>&
            drawers) const;
    /// Fills the array with the IDs of the drawers, in the same order.
    void DrawerIDArray(
        KOVSimArray<KOVSimDrawerID, KOVSimArrayCopyClassPolicy<KOVSimDrawerID>>& drawers) const;
    KOVSimPersistentDrawerDesc DrawerDescription(KOVSimDrawerID const& drawer) const;

  private:
    KOVSimDistributionID m_id;
    KOVSimGrid m_grid;
    KOVSimRangeType m_range{KOVSimTypeKeyInt};
    std::weak_ptr<kov::store::Context> m_share;
};
