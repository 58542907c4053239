// Handles on the mesh of a document, as every measuring program needs them.
#pragma once

#include "KOVObjDocument.h"
#include "KOVObjMesh.h"
#include "KOVSimCollection.h"
#include "KOVSimDSet.h"
#include "KOVSimDistribution.h"
#include "KOVSimTransaction.h"

namespace bench {

struct Mesh {
    explicit Mesh(KOVObjDocument const& document)
        : position(document.GetMesh()),
          nodes(KOVObjMesh(position).GetNodeCollection().GetCollection()),
          elements(KOVObjMesh(position).GetElementCollection().GetCollection()),
          components(document.GetComponentCollection().GetCollection()),
          coordinates(KOVObjMesh(position).GetCoordinates()),
          connectivity(KOVObjMesh(position).GetConnectivity()) {
        slots = KOVSimCollection(Relation().Grid().Collections().ConstGet(1));
    }
    /// The distribution behind the connectivity.
    KOVSimDistribution Relation() const {
        return KOVSimDistribution(KOVSimDSet(connectivity).GetRelationalDistributionID());
    }
    /// The components of coordinates, a new temporary set.
    KOVSimCSetID Axes() {
        int const axes[3] = {0, 12, 20};
        return components.CreateTempCSet(axes, 3, false);
    }
    void Extend(int nodeCount, int elementCount) {
        if (nodes.Space() < nodeCount) nodes.ExtendSpace(nodeCount);
        if (elements.Space() < elementCount) elements.ExtendSpace(elementCount);
    }

    KOVSimPosition position;
    KOVSimCollection nodes, elements, components, slots;
    KOVSimPosition coordinates, connectivity;
};

}  // namespace bench
