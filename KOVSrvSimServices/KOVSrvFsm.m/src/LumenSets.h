// Sets as the checker compares them. What lies on another collection than it should has nothing in
// common with what is looked for: a fault that a finding tells, where the algebra of sets would
// refuse.
#pragma once

#include "KOVSimArray.h"
#include "KOVSimCSet.h"
#include "KOVSimDistribution.h"
#include "KOVSimDrawerDescription.h"

namespace kov::fsm {

using LumenDrawers =
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;

inline LumenDrawers DrawersOf(KOVSimDistributionID const& distribution) {
    LumenDrawers drawers;
    KOVSimDistribution(distribution).QueryDrawers(drawers);
    return drawers;
}

/// The members of `collection` that are in the first dimension of any drawer.
inline KOVSimCSet FirstDimension(KOVSimDistributionID const& distribution,
                                 KOVSimCollectionID const& collection) {
    KOVSimCSet members(collection);
    for (KOVSimPersistentDrawerDesc const& drawer : DrawersOf(distribution)) {
        KOVSimCSet const& set = drawer.compartment.CSet(0);
        if (set.CollectionID() == collection) members = members.Union(set);
    }
    return members;
}

/// The members of `set` that stand in `other` too.
inline KOVSimCSet CommonMembers(KOVSimCSet const& set, KOVSimCSet const& other) {
    return set.CollectionID() == other.CollectionID() ? set.Intersection(other) : KOVSimCSet();
}

}  // namespace kov::fsm
