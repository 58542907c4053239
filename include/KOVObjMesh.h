// KOVObjMesh: a facade on the position of a mesh. Getters give null positions where nothing was
// set; setters need a transaction.
#pragma once

#include "KOVExport.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVObjMesh {
  public:
    KOVObjMesh(KOVSimPosition const& mesh) : m_mesh(mesh) {}
    operator KOVSimPosition const&() const { return m_mesh; }

    /// The collections of nodes and elements.
    KOVSimPosition GetNodeCollection() const;
    void SetNodeCollection(KOVSimPosition const& position) const;
    KOVSimPosition GetElementCollection() const;
    void SetElementCollection(KOVSimPosition const& position) const;
    /// The connectivity dataset, over the distribution (elements, connectivity positions) of node
    /// indices.
    KOVSimPosition GetConnectivity() const;
    void SetConnectivity(KOVSimPosition const& position) const;
    /// The coordinates distribution (nodes, components), in the model's length unit.
    KOVSimPosition GetCoordinates() const;
    void SetCoordinates(KOVSimPosition const& position) const;
    /// The set of the nodes that the user defined.
    KOVSimPosition GetUserNodes() const;
    void SetUserNodes(KOVSimPosition const& position) const;
    /// The dataset (element specifications, elements).
    KOVSimPosition GetElementSpecAssignment() const;
    void SetElementSpecAssignment(KOVSimPosition const& position) const;
    KOVSimPosition GetElementClassification() const;
    void SetElementClassification(KOVSimPosition const& position) const;
    KOVSimPosition GetElementClassCollection() const;
    void SetElementClassCollection(KOVSimPosition const& position) const;
    KOVSimPosition GetShapeFormulationLogicalSectionClassification() const;
    void SetShapeFormulationLogicalSectionClassification(KOVSimPosition const& position) const;

  private:
    KOVSimPosition m_mesh;
};
