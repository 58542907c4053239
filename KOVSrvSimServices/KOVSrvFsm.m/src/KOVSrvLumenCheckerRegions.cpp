// The checks of analytic surfaces and of the regions of surface output.
#include "KOVObjMesh.h"
#include "KOVSimCSet.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimCollection.h"
#include "KOVSimContext.h"
#include "KOVSimDSet.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSrvLumenChecker.h"
#include "LumenFindings.h"

using kov::fsm::LumenFindings;

namespace {

bool IsAnalyticSurface(KOVSimPosition const& region) {
    return region.IsA(schema::AnalyticSurface_TypeA()) ||
           region.IsA(schema::AnalyticSurface_TypeB()) ||
           region.IsA(schema::AnalyticSurface_TypeC()) ||
           region.IsA(schema::AnalyticSurface_Revolution());
}

bool HasReferenceNode(KOVSimDSet const& referenceNodes, KOVSimCollection const& rigidBodies,
                      int index) {
    // What is no member of the collection is in no relation of its members.
    if (index < 0 || index >= rigidBodies.Space()) return false;
    return !referenceNodes.Select(rigidBodies.CreateVolatileCSet(&index, 1, false)).IsNull();
}

void CheckRigidBodies(LumenFindings& findings, KOVObjDocument const& document,
                      KOVSimPosition const& surface, KOVString const& name) {
    KOVSimSet const bodies = surface.ReferrersSet(schema::Constraint_RigidBody_analyticSurface());
    if (bodies.Size() == 0) {
        return findings.Add(
            "Analytical Surface \"{}\" is not referred to by any rigid body constraint "
            "(Constraint_RigidBody_analyticSurface).",
            {name});
    }
    KOVSimPosition const mesh = document.GetMesh();
    KOVSimCollectionID const rigidBodies =
        mesh.GetPosition(schema::Mesh_rigidBodies()).GetCollection();
    if (rigidBodies.IsNull()) return findings.Add("Mesh has no Mesh_rigidBodies Collection.");
    KOVSimPosition const reference = mesh.GetPosition(schema::Mesh_rigidBodyReferenceNode());
    if (reference.IsNull()) return findings.Add(" Mesh has no rigidBodyReferenceNode DSet.");
    KOVSimDSet const referenceNodes(reference);
    for (KOVSimSetiterator at = bodies.Begin(); at.NotDone(); ++at) {
        if (!HasReferenceNode(referenceNodes, KOVSimCollection(rigidBodies),
                              document.GetCMemberIndex(*at))) {
            findings.Add("Rigid body \"{}\" is not present in rigidBodyReferenceNode DSet.",
                         {(*at).Name(-1)});
        }
    }
}

void CheckSurfaceMesh(LumenFindings& findings, KOVSimPosition const& position,
                      KOVString const& name) {
    struct Part {
        KOVSimPosition (KOVObjMesh::*get)() const;
        char const* missing;
    };
    static constexpr Part kParts[] = {
        {&KOVObjMesh::GetNodeCollection,
         "Mesh for analytical surface \"{}\" has no nodeCollection."},
        {&KOVObjMesh::GetElementCollection,
         "Mesh for analytical surface \"{}\" has no elementCollection."},
        {&KOVObjMesh::GetConnectivity, "Mesh for analytical surface \"{}\" has no Connectivity."},
    };
    KOVObjMesh const mesh(position);
    for (Part const& part : kParts) {
        if ((mesh.*part.get)().IsNull()) findings.Add(part.missing, {name});
    }
}

void CheckAxis(LumenFindings& findings, KOVSimPosition const& surface, KOVString const& name) {
    KOVSimPosition const orientation =
        surface.GetPosition(schema::AnalyticSurface_Revolution_orientation());
    if (orientation.IsNull()) return;
    struct Point {
        int (*member)();
        char const* missing;
    };
    static constexpr Point kPoints[] = {
        {schema::Orientation_axisPointA,
         "Orientation for analytical surface of revolution \"{}\" has no axisPointA."},
        {schema::Orientation_axisPointB,
         "Orientation for analytical surface of revolution \"{}\" has no axisPointB."},
    };
    for (Point const& point : kPoints) {
        if (orientation.GetPosition(point.member()).IsNull()) findings.Add(point.missing, {name});
    }
}

bool LacksOutputClusters(KOVSimPosition const& region) {
    return region.GetPosition(schema::Region_elementsFacesCluster()).IsNull() &&
           region.GetPosition(schema::Region_elementsEdgesCluster()).IsNull() &&
           region.GetPosition(schema::Region_nodesCluster()).IsNull();
}

}  // namespace

void KOVSrvLumenChecker::Check_Regions() {
    LumenFindings findings(m_findings);
    KOVSimMapiterator at = m_model.GetMap(schema::Model_regions()).Begin();
    for (; at.NotDone(); ++at) {
        KOVSimPosition const surface = at.Value();
        if (!IsAnalyticSurface(surface)) continue;
        KOVString const name = surface.Name(-1);
        CheckRigidBodies(findings, m_document, surface, name);
        KOVSimPosition const mesh = surface.GetPosition(schema::AnalyticSurface_mesh());
        if (mesh.IsNull()) {
            findings.Add("Analytical surface \"{}\" has no a mesh.", {name});
            continue;
        }
        CheckSurfaceMesh(findings, mesh, name);
        if (surface.IsA(schema::AnalyticSurface_Revolution())) CheckAxis(findings, surface, name);
    }
}

void KOVSrvLumenChecker::Check_FocusResults() {
    LumenFindings findings(m_findings);
    KOVSimPosition const focus = m_document.Focus();
    KOVSimPosition const record =
        focus.Follow(schema::FocusRecord(), schema::FocusRecord_surfaceOutput);
    if (record.IsNull()) return;
    KOVSimPosition const output =
        record.Follow(schema::SurfaceOutputRecord(), schema::SurfaceOutputRecord_regions);
    if (output.IsNull()) return;
    KOVSimCollectionID const regions =
        m_model.GetPosition(schema::Model_regionCollection()).GetCollection();
    KOVSimCSet const contributing = output.DSet().Collect(regions);
    KOVSimContext const context = focus.Context();
    KOVSimCSetIterator at(contributing);
    for (at.First(); !at.IsDone(); at.Next()) {
        KOVSimPosition const region = context.GetRecord(regions, at.CurrentValue());
        if (region.IsA(schema::Surface_ClusterFree()) || region.IsA(schema::Region_ClusterFree())) {
            continue;
        }
        if (LacksOutputClusters(region)) {
            findings.Add(
                "Region \"{}\" for output surface contribution has no elementsFacesCluster or "
                "elementsEdgesCluster DSet, or nodesCluster CSet.",
                {region.Name(-1)});
        }
    }
}
