#include "KOVObjMesh.h"

#include "KOVSimSchema.h"

KOVSimPosition KOVObjMesh::GetNodeCollection() const {
    return m_mesh.GetPosition(schema::Mesh_nodes());
}
void KOVObjMesh::SetNodeCollection(KOVSimPosition const& position) const {
    m_mesh.SetPosition(schema::Mesh_nodes(), position);
}

KOVSimPosition KOVObjMesh::GetElementCollection() const {
    return m_mesh.GetPosition(schema::Mesh_elements());
}
void KOVObjMesh::SetElementCollection(KOVSimPosition const& position) const {
    m_mesh.SetPosition(schema::Mesh_elements(), position);
}

KOVSimPosition KOVObjMesh::GetConnectivity() const {
    return m_mesh.GetPosition(schema::Mesh_connectivity());
}
void KOVObjMesh::SetConnectivity(KOVSimPosition const& position) const {
    m_mesh.SetPosition(schema::Mesh_connectivity(), position);
}

KOVSimPosition KOVObjMesh::GetCoordinates() const {
    return m_mesh.GetPosition(schema::Mesh_coordinates());
}
void KOVObjMesh::SetCoordinates(KOVSimPosition const& position) const {
    m_mesh.SetPosition(schema::Mesh_coordinates(), position);
}

KOVSimPosition KOVObjMesh::GetUserNodes() const {
    return m_mesh.GetPosition(schema::Mesh_userNodes());
}
void KOVObjMesh::SetUserNodes(KOVSimPosition const& position) const {
    m_mesh.SetPosition(schema::Mesh_userNodes(), position);
}

KOVSimPosition KOVObjMesh::GetElementSpecAssignment() const {
    return m_mesh.GetPosition(schema::Mesh_elementSpecAssignment());
}
void KOVObjMesh::SetElementSpecAssignment(KOVSimPosition const& position) const {
    m_mesh.SetPosition(schema::Mesh_elementSpecAssignment(), position);
}

KOVSimPosition KOVObjMesh::GetElementClassification() const {
    return m_mesh.GetPosition(schema::Mesh_elementClassification());
}
void KOVObjMesh::SetElementClassification(KOVSimPosition const& position) const {
    m_mesh.SetPosition(schema::Mesh_elementClassification(), position);
}

KOVSimPosition KOVObjMesh::GetElementClassCollection() const {
    return m_mesh.GetPosition(schema::Mesh_elementClassCollection());
}
void KOVObjMesh::SetElementClassCollection(KOVSimPosition const& position) const {
    m_mesh.SetPosition(schema::Mesh_elementClassCollection(), position);
}

KOVSimPosition KOVObjMesh::GetShapeFormulationLogicalSectionClassification() const {
    return m_mesh.GetPosition(schema::Mesh_shapeFormulationLogicalSectionClassification());
}
void KOVObjMesh::SetShapeFormulationLogicalSectionClassification(
    KOVSimPosition const& position) const {
    m_mesh.SetPosition(schema::Mesh_shapeFormulationLogicalSectionClassification(), position);
}
