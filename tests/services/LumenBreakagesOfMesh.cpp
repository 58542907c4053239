// What may be wrong with the mesh, its surfaces and the plies.
#include "services/LumenBreakageParts.h"

namespace kov::test {

namespace {

using D = LumenDocument;

void NoSections(D& d, char const* elementClass) {
    EmptySet(d.At(elementClass), schema::ElementClass_sections());
}

// Without the mesh nothing is known of rigid bodies, nor over what a field lies.
std::vector<std::string> WithoutMesh() {
    std::vector<std::string> findings{"Mesh is not present in this Model."};
    for (int surface = 0; surface < 4; ++surface) {
        findings.push_back("Mesh has no Mesh_rigidBodies Collection.");
    }
    findings.push_back(
        "OutputRequest for Step \"Static\", History field #2 is not referred to by "
        "UserOutputRequest (OutputRequest_elaboratedRequest).");
    return findings;
}

}  // namespace

std::vector<Breakage> MeshBreakages() {
    return {
        {"no mesh", "", [](D& d) { d.Unlink("model", schema::Model_mesh()); }, WithoutMesh()},
        {"no coordinates",
         "coordinates",
         [](D& d) { d.Unlink("mesh", schema::Mesh_coordinates()); },
         {"Coodinates distribution is not present in mesh."}},
        {"coordinates that are no distribution",
         "",
         [](D& d) { d.Mesh().SetCoordinates(SomeRecord(d)); },
         {"Undefined coordinates distribution.", "There is no data in coordinates distribution.",
          "Some nodes from user node set are not present in coordinates distribution"}},
        {"coordinates without a drawer",
         "",
         [](D& d) {
             d.Mesh().SetCoordinates(d.Distribution({d.nodes.ID(), d.components.ID()}));
         },
         {"There is no data in coordinates distribution.",
          "Some nodes from user node set are not present in coordinates distribution"}},
        {"no assignment of specifications",
         "assignment",
         [](D& d) { d.Unlink("mesh", schema::Mesh_elementSpecAssignment()); },
         {"Mesh has no elementSpecAssignment."}},
        {"a record as assignment",
         "assignment",
         [](D& d) { d.Mesh().SetElementSpecAssignment(SomeRecord(d)); },
         {"Mesh->elementSpecAssignment link points to an object of category 1 instead of a DSet."}},
        {"a CSet as assignment",
         "assignment",
         [](D& d) { d.Mesh().SetElementSpecAssignment(d.At("user nodes")); },
         {"Mesh->elementSpecAssignment link points to an object of category 5 instead of a DSet."}},
        {"no nodes",
         "",
         [](D& d) { d.Unlink("mesh", schema::Mesh_nodes()); },
         {"nodeCollection is not present"}},
        {"no user nodes",
         "coordinates",
         [](D& d) { d.Unlink("mesh", schema::Mesh_userNodes()); },
         {"userNodes is not present"}},
        {"user nodes that are no set",
         "coordinates",
         [](D& d) { d.Mesh().SetUserNodes(SomeRecord(d)); },
         {"userNodes is not present"}},
        {"an empty set of user nodes",
         "coordinates",
         [](D& d) { d.Mesh().SetUserNodes(d.PersistentSet(d.nodes, {})); },
         {"userNodes CSet is not present"}},
        {"user nodes without coordinates",
         "coordinates",
         [](D& d) {
             d.nodes.ExtendSpace(25);
             d.Mesh().SetUserNodes(d.PersistentSet(d.nodes, Range(0, 21)));
         },
         {"Some nodes from user node set are not present in coordinates distribution"}},
        {"no classification",
         "classification",
         [](D& d) { d.Unlink("mesh", schema::Mesh_elementClassification()); },
         {"elementClassCollection is not present"}},
        {"no classification by section",
         "",
         [](D& d) {
             d.Unlink("mesh", schema::Mesh_shapeFormulationLogicalSectionClassification());
         },
         {"shapeFormulationLogicalSectionClassification is not present"}},
        {"a classification without classes",
         "",
         [](D& d) {
             EmptySet(d.At("classification"), schema::ElementClassification_elementClasses());
         },
         {"ElementClassification has no ElementClasses."}},
        {"a class without a section",
         "class 0",
         [](D& d) { NoSections(d, "class.shell"); },
         {" Element Class :#0; has no reference to Section; #elements:10; elClass->elSpec: "
          "\"S4R\"; elSpecAssign->elSpec: \"S4R\"; elements in elementSpecAssign: YES; elements in "
          "connectivity: YES"}},
        {"a class without section and specification",
         "class 1",
         [](D& d) {
             NoSections(d, "class.solid");
             d.Unlink("class.solid", schema::ElementClass_elementSpec());
         },
         {" Element Class :#1; has no reference to Section; #elements:10; elClass->elSpec: "
          "-MISSING-; elSpecAssign->elSpec: \"C3D8\"; elements in elementSpecAssign: YES; elements "
          "in connectivity: YES"}},
        {"a class of two specifications",
         "",
         [](D& d) {
             NoSections(d, "class.shell");
             d.AssignSpecs({{3, Range(5, 3)}, {0, Range(0, 5)}, {1, Range(10, 10)}});
         },
         {" Element Class :#0; linked to more than 1 elSpec; #elments:2; \"S4R,S4\"",
          " Element Class :#0; has no reference to Section; #elements:10; elClass->elSpec: "
          "\"S4R\"; elSpecAssign->elSpec: \"S4R\"; elements in elementSpecAssign: PARTIAL; "
          "elements in connectivity: YES"}},
        {"an assignment of other specifications",
         "",
         [](D& d) {
             NoSections(d, "class.shell");
             KOVSimPosition const other =
                 d.Model().CreateTypedCollection(4, schema::ElementSpecCollection());
             d.document.SetElementSpecCollection(other);
         },
         {" Element Class :#0; linked to more than 1 elSpec; #elments:0; \"",
          " Element Class :#0; has no reference to Section; #elements:10; elClass->elSpec: "
          "\"S4R\"; elSpecAssign->elSpec: -MISSING-; elements in elementSpecAssign: YES; elements "
          "in connectivity: YES",
          // The masses are exempt by the name of a specification, which is not known any more.
          " Element Class :#2; linked to more than 1 elSpec; #elments:0; \"",
          " Element Class :#2; has no reference to Section; #elements:5; elClass->elSpec: "
          "\"MASS\"; elSpecAssign->elSpec: -MISSING-; elements in elementSpecAssign: YES; elements "
          "in connectivity: YES"}},
        {"a class of which some have connectivity",
         "",
         [](D& d) {
             NoSections(d, "class.solid");
             d.elements.ExtendSpace(50);
             KOVObjElementClass(d.At("class.solid"))
                 .SetElementCSet(d.PersistentSet(d.elements, {10, 11, 41}));
             d.AssignSpecs({{1, {10, 11, 41}}});
         },
         {" Element Class :#1; has no reference to Section; #elements:3; elClass->elSpec: "
          "\"C3D8\"; elSpecAssign->elSpec: \"C3D8\"; elements in elementSpecAssign: YES; elements "
          "in connectivity: PARTIAL"}},
        {"a mesh without connectivity",
         "",
         [](D& d) {
             NoSections(d, "class.shell");
             d.Unlink("mesh", schema::Mesh_connectivity());
         },
         {" Element Class :#0; has no reference to Section; #elements:10; elClass->elSpec: "
          "\"S4R\"; elSpecAssign->elSpec: \"S4R\"; elements in elementSpecAssign: YES; elements in "
          "connectivity: NO"}},
    };
}

std::vector<Breakage> RegionBreakages() {
    return {
        {"no collection of rigid bodies", "",
         [](D& d) { d.Unlink("mesh", schema::Mesh_rigidBodies()); },
         std::vector<std::string>(4, "Mesh has no Mesh_rigidBodies Collection.")},
        {"no reference nodes", "",
         [](D& d) { d.Unlink("mesh", schema::Mesh_rigidBodyReferenceNode()); },
         std::vector<std::string>(4, " Mesh has no rigidBodyReferenceNode DSet.")},
        {"a surface without a rigid body",
         "ANA-A body",
         [](D& d) { d.Unlink("RB-A", schema::Constraint_RigidBody_analyticSurface()); },
         {"Analytical Surface \"ANA-A\" is not referred to by any rigid body constraint "
          "(Constraint_RigidBody_analyticSurface)."}},
        {"a surface without a rigid body and without a mesh",
         "",
         [](D& d) {
             d.Unlink("RB-A", schema::Constraint_RigidBody_analyticSurface());
             d.Unlink("ANA-A", schema::AnalyticSurface_mesh());
         },
         {"Analytical Surface \"ANA-A\" is not referred to by any rigid body constraint "
          "(Constraint_RigidBody_analyticSurface).",
          "Analytical surface \"ANA-A\" has no a mesh."}},
        {"a surface mesh without nodes",
         "ANA-A mesh",
         [](D& d) { d.Unlink("ANA-A.mesh", schema::Mesh_nodes()); },
         {"Mesh for analytical surface \"ANA-A\" has no nodeCollection."}},
        {"a surface mesh without anything",
         "ANA-A mesh",
         [](D& d) { d.At("ANA-A").SetPosition(schema::AnalyticSurface_mesh(), SomeRecord(d)); },
         {"Mesh for analytical surface \"ANA-A\" has no nodeCollection.",
          "Mesh for analytical surface \"ANA-A\" has no elementCollection.",
          "Mesh for analytical surface \"ANA-A\" has no Connectivity."}},
        {"a rigid body that is not in the collection",
         "ANA-B body",
         [](D& d) {
             KOVSimPosition const loose = d.Record(schema::Constraint_RigidBody(), "LOOSE");
             loose.SetPosition(schema::Constraint_RigidBody_analyticSurface(), d.At("ANA-B"));
         },
         {"Rigid body \"LOOSE\" is not present in rigidBodyReferenceNode DSet."}},
        {"a surface mesh without elements",
         "ANA-B mesh",
         [](D& d) { d.Unlink("ANA-B.mesh", schema::Mesh_elements()); },
         {"Mesh for analytical surface \"ANA-B\" has no elementCollection."}},
        {"two rigid bodies of a surface, both without a reference node",
         "",
         [](D& d) {
             KOVSimPosition const second =
                 d.At("bodies").AppendMember(schema::Constraint_RigidBody());
             second.SetName("RB-C2");
             second.SetPosition(schema::Constraint_RigidBody_analyticSurface(), d.At("ANA-C"));
             d.document.GetMesh().SetPosition(
                 schema::Mesh_rigidBodyReferenceNode(),
                 d.Relation(KOVSimCollection(d.At("bodies").GetCollection()), d.nodes,
                            {{0, {0}}, {1, {1}}, {3, {3}}}, schema::RigidBodyReferenceNodes()));
         },
         {"Rigid body \"RB-C\" is not present in rigidBodyReferenceNode DSet.",
          "Rigid body \"RB-C2\" is not present in rigidBodyReferenceNode DSet."}},
        {"a surface without a mesh",
         "ANA-C mesh",
         [](D& d) { d.Unlink("ANA-C", schema::AnalyticSurface_mesh()); },
         {"Analytical surface \"ANA-C\" has no a mesh."}},
        {"reference nodes that are no dataset",
         "",
         [](D& d) {
             d.document.GetMesh().SetPosition(schema::Mesh_rigidBodyReferenceNode(), SomeRecord(d));
         },
         {"Rigid body \"RB-A\" is not present in rigidBodyReferenceNode DSet.",
          "Rigid body \"RB-B\" is not present in rigidBodyReferenceNode DSet.",
          "Rigid body \"RB-C\" is not present in rigidBodyReferenceNode DSet.",
          "Rigid body \"RB-R\" is not present in rigidBodyReferenceNode DSet."}},
        {"a surface mesh without connectivity",
         "ANA-R connectivity",
         [](D& d) { d.Unlink("ANA-R.mesh", schema::Mesh_connectivity()); },
         {"Mesh for analytical surface \"ANA-R\" has no Connectivity."}},
        {"an axis without its first point",
         "axis A",
         [](D& d) { d.Unlink("orientation", schema::Orientation_axisPointA()); },
         {"Orientation for analytical surface of revolution \"ANA-R\" has no axisPointA."}},
        {"an axis without its second point",
         "axis B",
         [](D& d) { d.Unlink("orientation", schema::Orientation_axisPointB()); },
         {"Orientation for analytical surface of revolution \"ANA-R\" has no axisPointB."}},
        {"a surface of revolution without a mesh, whose axis is not looked at",
         "",
         [](D& d) {
             d.Unlink("ANA-R", schema::AnalyticSurface_mesh());
             d.Unlink("orientation", schema::Orientation_axisPointA());
         },
         {"Analytical surface \"ANA-R\" has no a mesh."}},
        {"a ply that the focus does not know",
         "ply",
         [](D& d) { RemoveFromSet(d.At("focus"), schema::Focus_externalPlyIds(), d.At("PLY-1")); },
         {"Ply \"PLY-1\" is not referred to by Focus (Focus_externalPlyIds)."}},
    };
}

}  // namespace kov::test
