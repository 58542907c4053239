// KOVSimDSet: a stored relation between the members of two or more collections. Its content is a
// ctation, or a relational distribution whose entries name members of a collection, such as
// connectivity.
#pragma once

#include <memory>

#include "KOVExport.h"
#include "KOVSimCSet.h"
#include "KOVSimCtation.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSimDSet {
  public:
    /// The null dataset.
    KOVSimDSet();
    explicit KOVSimDSet(KOVSimDSetID const& id);
    /// The dataset at `position`; null if the position denotes none.
    explicit KOVSimDSet(KOVSimPosition const& position);

    /// No dataset, or a selection with nothing selected.
    bool IsNull() const;
    /// It has no content: no compartment, and no drawer with a member.
    bool IsEmpty() const;
    KOVSimDSetID ID() const { return m_id; }
    /// Its compartments in the order given; valid while the object lives. Of a dataset over a
    /// distribution: one compartment for each drawer.
    KOVSimCtation const& GetCtation() const;
    /// The distribution that backs it; null if none does.
    KOVSimDistributionID GetRelationalDistributionID() const;
    /// The part of the relation that touches the given members; a null dataset if none does.
    KOVSimDSet Select(KOVSimCSet const& set) const;
    /// All members of that collection that the relation holds, ascending. Of a dataset over a
    /// distribution also the collection that the entries refer to.
    KOVSimCSet Collect(KOVSimCollectionID const& collection) const;

    struct Content;

  private:
    KOVSimDSetID m_id;
    std::shared_ptr<Content const> m_content;
};
