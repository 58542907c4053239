// KOVSrvElementConnectivity: appends the connectivity of elements to a mesh, and reads it back.
//
// Connectivity is a dataset over a relational distribution of node indices, (elements, connectivity
// positions). Elements with different numbers of nodes share no rectangular block, so there is a
// drawer for each key that the caller gives, such as an element type. The map from key to drawer is
// the object's own memory: a new object on the same dataset starts without it and makes new
// drawers. It is not undone with a dropped transaction: under a key whose drawer went that way
// `Append` throws KOVSimException. Copy an object only while it has made no drawer. Preconditions
// are fatal assertions.
#pragma once

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimBtree.h"
#include "KOVSimCSet.h"
#include "KOVSimDynamicID.h"
#include "KOVSimPosition.h"
#include "KOVSimTransaction.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSrvElementConnectivity {
  public:
    /// Stands for no dataset: `Append` stops at its first assertion.
    KOVSrvElementConnectivity() = default;
    /// `connectivity`: the position of the dataset. `chunkSize`: the chunk of the element dimension
    /// of every drawer that is made; not 0.
    KOVSrvElementConnectivity(KOVSimPosition const& connectivity, int chunkSize);
    /// Chunk sizes by key; there is no default then, and a key without one stops at an assertion.
    KOVSrvElementConnectivity(KOVSimPosition const& connectivity,
                              KOVSimBtree<KOVSimDynamicID, int> const& chunkSizes);

    /// Adds the connectivity of a block of elements, or overwrites it, and brings the dataset up to
    /// date. `key` selects the drawer; only its identity is used. `positions`: a set of
    /// connectivity positions; that of a key's first block is what its drawer holds, and a later
    /// block may name all of it or a part. `data`: (elements,
    /// positions), row-major, node indices from 0; owned by the caller. Answers the bytes written.
    int Append(KOVSimTransaction& transaction, KOVSimDynamicID const& key,
               KOVSimCSetID const& elements, KOVSimCSetID const& positions, int const* data);

    /// Reads connectivity from whichever drawers hold it. `out`: (elements, positions), row-major;
    /// owned by the caller; entries that no drawer holds stay as they were. Answers the bytes of
    /// the view.
    int Read(KOVSimCSet const& elements, KOVSimCSet const& positions, int* out) const;

  private:
    KOVSimDrawerID MakeDrawer(KOVSimDynamicID const& key, KOVSimDistributionID const& rdistribution,
                              KOVSimCSetID const& elements, KOVSimCSetID const& positions);

    int m_chunkSize = 0;
    KOVSimBtree<KOVSimDynamicID, int> m_chunkSizes;
    KOVSimBtree<KOVSimDynamicID, int> m_drawerIndices;
    KOVSimArray<KOVSimDrawerID, KOVSimArrayCopyClassPolicy<KOVSimDrawerID>> m_drawers;
    KOVSimDSetID m_connectivityID;
};
