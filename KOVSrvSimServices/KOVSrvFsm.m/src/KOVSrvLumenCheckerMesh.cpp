// The check of the mesh, down to the element classes without a section.
#include <algorithm>
#include <vector>

#include "KOVObjElementClass.h"
#include "KOVObjMesh.h"
#include "KOVSimCSet.h"
#include "KOVSimCollection.h"
#include "KOVSimContext.h"
#include "KOVSimDSet.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSrvLumenChecker.h"
#include "KOVSrvNodalCoordinates.h"
#include "LumenFindings.h"
#include "LumenSets.h"

using kov::fsm::CommonMembers;
using kov::fsm::DrawersOf;
using kov::fsm::FirstDimension;
using kov::fsm::LumenFindings;
using kov::fsm::LumenText;

namespace {

// Elements of these types carry their properties in other ways than by a section.
struct ExemptType {
    char const* name;
    bool whole;  // the type has exactly this name, and does not only begin with it
};

constexpr ExemptType kExemptTypes[] = {
    {"DCOUP", false}, {"DGAP", false},    {"DRAG", false},   {"F2D", false},     {"F3D", false},
    {"FLINK", false}, {"GAP", false},     {"IDCOUP", false}, {"ITS", false},     {"JOINT", false},
    {"PSI", false},   {"U", false},       {"Z", false},      {"X", false},       {"R2D2", true},
    {"R3D3", true},   {"R3D4", true},     {"RB2D2", true},   {"RB3D2", true},    {"CONN", false},
    {"RAX", false},   {"HEATCAP", false}, {"MASS", false},   {"ROTARYI", false},
};

bool IsExempt(KOVString const& type) {
    return std::any_of(std::begin(kExemptTypes), std::end(kExemptTypes), [&](ExemptType const& e) {
        return e.whole ? type.Compare(e.name) == 0 : type.FindPosition(e.name, 0) == 0;
    });
}

constexpr int kCoordinatesChunk = 100000;

// The service that answers the nodes asserts that each drawer lies over nodes. Coordinates without
// a drawer, or over anything else, hold no node.
KOVSimCSet NodesWithCoordinates(KOVSimPosition const& coordinates,
                                KOVSimCollectionID const& nodes) {
    kov::fsm::LumenDrawers const drawers = DrawersOf(coordinates.GetDistribution());
    bool const overNodes = std::all_of(drawers.begin(), drawers.end(), [&](auto const& drawer) {
        return drawer.compartment.Position(nodes) >= 0;
    });
    if (drawers.Size() == 0 || !overNodes) return KOVSimCSet(nodes);
    return KOVSrvNodalCoordinates(coordinates, kCoordinatesChunk).Nodes();
}

void CheckUserNodes(LumenFindings& findings, KOVObjMesh const& mesh,
                    KOVSimPosition const& coordinates) {
    KOVSimCollectionID const nodes = mesh.GetNodeCollection().GetCollection();
    if (!KOVSimCollection(nodes).IsPresent()) return findings.Add("nodeCollection is not present");
    KOVSimCSetID const id = mesh.GetUserNodes().GetCSet();
    if (id.IsNull()) return findings.Add("userNodes is not present");
    if (coordinates.IsNull()) return;
    KOVSimCSet const userNodes(id);
    if (userNodes.IsEmpty()) findings.Add("userNodes CSet is not present");
    if (!CommonMembers(userNodes, NodesWithCoordinates(coordinates, nodes))
             .SameMembers(userNodes)) {
        findings.Add("Some nodes from user node set are not present in coordinates distribution");
    }
}

void CheckCoordinates(LumenFindings& findings, KOVSimPosition const& coordinates) {
    if (coordinates.IsNull()) {
        return findings.Add("Coodinates distribution is not present in mesh.");
    }
    KOVSimDistributionID const distribution = coordinates.GetDistribution();
    if (distribution.IsNull()) findings.Add("Undefined coordinates distribution.");
    if (DrawersOf(distribution).Size() < 1) {
        findings.Add("There is no data in coordinates distribution.");
    }
}

// Null where the mesh has none.
KOVSimDSet CheckedAssignment(LumenFindings& findings, KOVObjMesh const& mesh) {
    KOVSimPosition const assignment = mesh.GetElementSpecAssignment();
    if (assignment.IsNull()) {
        findings.Add("Mesh has no elementSpecAssignment.");
        return KOVSimDSet();
    }
    int const category = assignment.ID().Category();
    if (category != KOVSimCategoryDSet) {
        findings.Add(
            "Mesh->elementSpecAssignment link points to an object of category {} instead of a "
            "DSet.",
            {category});
        return KOVSimDSet();
    }
    return KOVSimDSet(assignment);
}

// Looks at one class after the other. The number of a class counts those with sections and those
// reported before it, and is not its place.
class ClassWalk {
  public:
    ClassWalk(LumenFindings& findings, KOVObjDocument const& document, KOVSimDSet const& assignment)
        : m_findings(findings),
          m_assignment(assignment),
          m_context(document.Focus().Context()),
          m_specs(document.GetElementSpecCollection().GetCollection()) {
        KOVObjMesh const mesh(document.GetMesh());
        KOVSimCollectionID const elements = mesh.GetElementCollection().GetCollection();
        m_assigned = assignment.Collect(elements);
        m_connected = FirstDimension(
            KOVSimDSet(mesh.GetConnectivity()).GetRelationalDistributionID(), elements);
    }

    void Check(KOVSimPosition const& elementClass) {
        if (!elementClass.GetSet(schema::ElementClass_sections()).Empty()) {
            ++m_number;
            return;
        }
        KOVSimCSet const elements = KOVObjElementClass(elementClass).GetElementCSet().CSet();
        KOVSimCSet const inAssignment = CommonMembers(m_assigned, elements);
        if (inAssignment.IsEmpty()) return;
        KOVSimCSet const specs = m_assignment.Select(elements).Collect(m_specs);
        KOVString assignedName;
        if (!specs.IsEmpty()) {
            assignedName = SpecName(static_cast<int>(specs.Bounds() & 0xffffffff));
            if (IsExempt(assignedName)) return;
        }
        if (specs.Size() != 1) ReportSpecs(specs);
        KOVSimPosition const classSpec =
            elementClass.GetPosition(schema::ElementClass_elementSpec());
        m_findings.Add(
            " Element Class :#{}; has no reference to Section; #elements:{}; elClass->elSpec: {}; "
            "elSpecAssign->elSpec: {}; elements in elementSpecAssign: {}; elements in "
            "connectivity: {}",
            {m_number, elements.Size(),
             classSpec.IsNull() ? KOVString(kMissing)
                                : Quoted(classSpec.Name(schema::ElementSpecLib_elementSpecs())),
             specs.IsEmpty() ? KOVString(kMissing) : Quoted(assignedName),
             inAssignment.SameMembers(elements) ? "YES" : "PARTIAL", ConnectivityState(elements)});
        ++m_number;
    }

  private:
    static constexpr char kMissing[] = "-MISSING-";

    static KOVString Quoted(KOVString const& name) { return LumenText("\"{}\"", {name}); }

    KOVString SpecName(int member) const {
        return KOVSimPosition(m_context.GetRecord(m_specs, member))
            .Name(schema::ElementSpecLib_elementSpecs());
    }

    // Without any specification the quotation stays open: the mark follows the last name.
    void ReportSpecs(KOVSimCSet const& specs) {
        std::vector<int> members(static_cast<std::size_t>(specs.Size()));
        specs.Members(members.data());
        KOVString names;
        for (std::size_t i = 0; i < members.size(); ++i) {
            names.Append(SpecName(members[i])).Append(i + 1 < members.size() ? "," : "\"");
        }
        m_findings.Add(" Element Class :#{}; linked to more than 1 elSpec; #elments:{}; \"{}",
                       {m_number, specs.Size(), names});
    }

    char const* ConnectivityState(KOVSimCSet const& elements) const {
        KOVSimCSet const inConnectivity = CommonMembers(m_connected, elements);
        if (inConnectivity.IsEmpty()) return "NO";
        return inConnectivity.SameMembers(elements) ? "YES" : "PARTIAL";
    }

    LumenFindings& m_findings;
    KOVSimDSet m_assignment;
    KOVSimContext m_context;
    KOVSimCollectionID m_specs;
    KOVSimCSet m_assigned;
    KOVSimCSet m_connected;
    int m_number = 0;
};

}  // namespace

void KOVSrvLumenChecker::Check_Mesh() {
    LumenFindings findings(m_findings);
    if (m_document.GetMesh().IsNull()) return findings.Add("Mesh is not present in this Model.");
    KOVObjMesh const mesh(m_document.GetMesh());
    KOVSimPosition const coordinates = mesh.GetCoordinates();
    CheckCoordinates(findings, coordinates);
    KOVSimDSet const assignment = CheckedAssignment(findings, mesh);
    CheckUserNodes(findings, mesh, coordinates);
    if (mesh.GetElementClassification().IsNull()) {
        findings.Add("elementClassCollection is not present");
    }
    KOVSimPosition const classification = mesh.GetShapeFormulationLogicalSectionClassification();
    if (classification.IsNull()) {
        return findings.Add("shapeFormulationLogicalSectionClassification is not present");
    }
    KOVSimSet const classes = classification.GetSet(schema::ElementClassification_elementClasses());
    if (classes.Size() == 0) findings.Add("ElementClassification has no ElementClasses.");
    if (assignment.IsNull()) return;
    ClassWalk walk(findings, m_document, assignment);
    for (KOVSimSetiterator at = classes.Begin(); at.NotDone(); ++at) walk.Check(*at);
}
