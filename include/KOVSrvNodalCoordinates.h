// KOVSrvNodalCoordinates: the coordinates of a mesh's nodes, appended in blocks and read back.
//
// The coordinates are one distribution of doubles over (nodes, components), held in at most one
// chunked drawer that grows with the nodes. The class hides the drawer: its users deal in sets of
// nodes and of components. A plain value of identities, without memory of its own; every operation
// asks the document afresh. Preconditions are checked assertions, which end the process.
#pragma once

#include "KOVExport.h"
#include "KOVSimCSet.h"
#include "KOVSimPosition.h"
#include "KOVSimTransaction.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSrvNodalCoordinates {
  public:
    /// All null; every operation stops at its first assertion.
    KOVSrvNodalCoordinates() = default;
    /// `coordinates`: the position of the distribution. `chunkSize`: the chunk of the node
    /// dimension when a drawer has to be made; given to the store as it is.
    KOVSrvNodalCoordinates(KOVSimPosition const& coordinates, int chunkSize);

    /// All nodes that have coordinates, and all components that are stored. Both need a drawer to
    /// exist; without one KOVSimException is thrown.
    KOVSimCSet Nodes() const;
    KOVSimCSet Components() const;
    int NumberNodes() const { return Nodes().Size(); }
    int NumberComponents() const { return Components().Size(); }

    /// Adds values, or overwrites those of nodes that have coordinates already. The first call
    /// makes the drawer, and needs at least two components. `nodes` may be an ordered set. `data`:
    /// (nodes, components), row-major, in the order of the two sets, in the model's length unit;
    /// owned by the caller. Answers the bytes written.
    int Append(KOVSimTransaction& transaction, KOVSimCSetID const& nodes,
               KOVSimCSetID const& componentSet, double const* data);

    /// Reads values straight into `out`: (nodes, components), row-major, in the order of the two
    /// sets; owned by the caller. Entries that the store does not hold become 0. Answers the bytes
    /// read.
    int Read(KOVSimCSet const& nodes, KOVSimCSet const& components, double* out) const;

  private:
    int m_chunkSize = 0;
    KOVSimCollectionID m_nodeCollection;
    KOVSimDistributionID m_distributionID;
};
