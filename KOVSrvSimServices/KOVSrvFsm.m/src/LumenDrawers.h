// What drawers hold, as the checker asks for it.
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
        members = members.Union(drawer.compartment.CSet(0));
    }
    return members;
}

}  // namespace kov::fsm
