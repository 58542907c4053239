// KOVSrvSetMapperFactory: keeps a permutation of a set with the model, and rebuilds the map between
// the two numberings from it.
//
// For each kind of object, nodes, elements and degrees of freedom, a model may have one mapper: a
// record with links to the base set and to the permuted set, which pair location by location. The
// sets themselves hold the numbers; the record only says that they belong together. All operations
// are static. `position` is any position of the document.
#pragma once

#include "KOVExport.h"
#include "KOVSimCMemberMap.h"
#include "KOVSimPosition.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSrvSetMapperFactory {
  public:
    /// Records `permutation` as the permuted form of the set `base`. In a transaction. The
    /// collection of `base` says the kind; a set on a collection other than those of nodes,
    /// elements and degrees of freedom is a failed assertion, which ends the process. A mapper that
    /// the model has for that kind is replaced, and its record stays behind. The sizes are not
    /// compared. Both are persistent sets; a null position is refused with KOVSimException before
    /// anything is written.
    static void PersistMapper(KOVSimPosition const& permutation, KOVSimPosition const& base);

    /// The map from the base set to the permuted set; the one that maps nothing where the model has
    /// no mapper of the kind. Throws KOVSimException where the two sets differ in size.
    static KOVSimCMemberMap NodeMapper(KOVSimPosition position);
    static KOVSimCMemberMap ElementMapper(KOVSimPosition position);
    static KOVSimCMemberMap DofMapper(KOVSimPosition position);

    /// The permuted set itself; null where the model has no mapper of the kind.
    static KOVSimCSetID GetPermutationNodes(KOVSimPosition position);
    static KOVSimCSetID GetPermutationElements(KOVSimPosition position);

    /// The set of the active nodes or elements of the model's mesh; null if none was set.
    static KOVSimCSetID GetActiveNodalOrdinals(KOVSimPosition position);
    static KOVSimCSetID GetActiveElementOrdinals(KOVSimPosition position);
};
