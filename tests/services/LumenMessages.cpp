// Each text that the checker can give.
#include "services/LumenBreakages.h"

namespace kov::test {

std::vector<std::string> const& AllMessages() {
    static std::vector<std::string> const messages{
        // mesh
        "Mesh is not present in this Model.",
        "Coodinates distribution is not present in mesh.",
        "Undefined coordinates distribution.",
        "There is no data in coordinates distribution.",
        "Mesh has no elementSpecAssignment.",
        "Mesh->elementSpecAssignment link points to an object of category {} instead of a DSet.",
        "nodeCollection is not present",
        "userNodes is not present",
        "userNodes CSet is not present",
        "Some nodes from user node set are not present in coordinates distribution",
        "elementClassCollection is not present",
        "shapeFormulationLogicalSectionClassification is not present",
        "ElementClassification has no ElementClasses.",
        " Element Class :#{}; linked to more than 1 elSpec; #elments:{}; \"{}",
        " Element Class :#{}; has no reference to Section; #elements:{}; elClass->elSpec: {}; "
        "elSpecAssign->elSpec: {}; elements in elementSpecAssign: {}; elements in connectivity: {}",
        // regions
        "Analytical Surface \"{}\" is not referred to by any rigid body constraint "
        "(Constraint_RigidBody_analyticSurface).",
        "Mesh has no Mesh_rigidBodies Collection.",
        " Mesh has no rigidBodyReferenceNode DSet.",
        "Rigid body \"{}\" is not present in rigidBodyReferenceNode DSet.",
        "Analytical surface \"{}\" has no a mesh.",
        "Mesh for analytical surface \"{}\" has no nodeCollection.",
        "Mesh for analytical surface \"{}\" has no elementCollection.",
        "Mesh for analytical surface \"{}\" has no Connectivity.",
        "Orientation for analytical surface of revolution \"{}\" has no axisPointA.",
        "Orientation for analytical surface of revolution \"{}\" has no axisPointB.",
        // plies
        "Ply \"{}\" is not referred to by Focus (Focus_externalPlyIds).",
        // steps
        "Model has no Steps.",
        "Model_stepSequence is empty.",
        "Step \"{}\" is not referred to by Focus (Focus_externalTaskIds).",
        "Step_Lin_Buckle \"{}\" has no modes link (Task_modes).",
        "Step_Lin_Buckle \"{}\" has a mode set that is empty (Task_modes).",
        "Step \"{}\" has no FESystem.",
        "System is not ModalSystem for Step \"{}\".",
        "ModalSystem has no eigenvalues link (ModalSystem_eigenvalues)for Step \"{}\".",
        "TimeIncrementation record does not exist for Step_Gen_StaticRiks \"{}\" "
        "(Step_Gen_timeIncrementation).",
        "Task_times CSet's TimeCollection has no parent link to TimeDescription "
        "(TimeDescription_timeCollection)for Step \"{}\".",
        "TimeDescription has no data distribution for Step \"{}\".",
        "TimeDescription data distribution must have all members from times CSet for Step \"{}\".",
        "ArcLengthDescription record does not exist.",
        "ArcLengthDescription record does not exist for Step \"{}\".",
        "This ArcLengthDescription data distribution has no all members from times CSet for Step "
        "\"{}\".",
        "FrequencyDescription record does not exist for Step \"{}\".",
        "This FrequencyDescription data distribution has no all members from frequency CSet for "
        "Step \"{}\".",
        // history and output requests
        "Step \"{}\", History field #{} is not a MeshedField.",
        "Step \"{}\", History field #{} is not referred to by an OutputRequest "
        "(OutputRequest_field).",
        "OutputRequest for Step \"{}\", History field #{} is not referred to by UserOutputRequest "
        "(OutputRequest_elaboratedRequest).",
        "Step \"{}\", History field #{}, UserOutputRequest \"{}\" has no Region link "
        "(UserOutputRequest_outputRegions).",
        "Step \"{}\", History field #{}, UserOutputRequest \"{}\" has no cluster link.",
        "OutputRequest #{}; Field #{} is not a MeshedField.",
        "For OutputRequest #{}; Field #{}; fieldtype: \"{}\"; has content but has no "
        "Task_fieldResults parent link.",
        // fields
        "{}; Field: #{} has no Field_fieldType link.",
        "{}; Field: #{}; FieldType: -MISSING-; FieldTypePrimary, has no "
        "zdm_FieldTypeLib_fieldTypes parent link.",
        "{}; Field: #{}; FieldType: {}; SerFld: #{}; id: {}/{} \"{}\"; Drawer component CSets are "
        "empty but algebraicType is not SCALAR.",
        "{} components are not consistent with algebraicType POSITION.",
        "{} components are not consistent with algebraicType TENSOR2_GENERAL.",
        " components are not consistent with algebraicType TENSOR2_ORTHOGONAL.{}.",
        "{} components are not consistent with algebraicType TENSOR2_SYMMETRIC.",
        "{} components are not consistent with algebraicType TENSOR4.",
        "{} components are not consistent with algebraicType VECTOR.",
        "{}; componentSymbol Size: #{}; componentSymbol[0]: #{}; zdm_Component_C_SCALAR: #34; "
        "components are not consistent with algebraicType SCALAR.",
        "algebraicType index# {} is not supported; field: {} subtype: {}.",
        // surface output
        "Region \"{}\" for output surface contribution has no elementsFacesCluster or "
        "elementsEdgesCluster DSet, or nodesCluster CSet.",
        // section assignments
        "SectionAssignment  #{} has no Section link.",
        "SectionAssignment  #{} has no Region link.",
        "Region referred by SectionAssignemt #SectionAssignment  #{} has no elementsCluster CSet.",
        "Section \"{}\" is not linked to Focus (Focus_externalSectionIds).",
        "Shell section \"{}\" has no Layers (Section_layers).",
        "Ply is not linked to Model, \"{}\", {}.",
        "Layer_Beam_Arbitrary_segments is not of type Field_FTable, \"{}\", {}.",
        "Layer_Beam_Arbitrary_segments has no an FTable, \"{}\", {}.",
    };
    return messages;
}

}  // namespace kov::test
