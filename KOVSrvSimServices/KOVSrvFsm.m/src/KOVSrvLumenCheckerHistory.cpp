// The checks of history fields, and of the fields of output requests.
#include "KOVObjMeshedField.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDrawer.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "KOVSrvLumenChecker.h"
#include "LumenFindings.h"

using kov::fsm::LumenFindings;
using kov::fsm::LumenText;

namespace {

// Values on these grids come from no region.
bool NeedsNoRequest(KOVSimPosition const& field) {
    int const grid = KOVObjMeshedField(field).GetGridType();
    return grid == schema::Grid_WholeModel() || grid == schema::Grid_SurfaceVector() ||
           grid == schema::Grid_SurfaceScalar();
}

bool LacksClusters(KOVSimPosition const& region) {
    return region.GetPosition(schema::Region_elementsFacesCluster()).IsNull() &&
           region.GetPosition(schema::Region_elementsEdgesCluster()).IsNull() &&
           region.GetPosition(schema::Region_nodesCluster()).IsNull() &&
           region.GetPosition(schema::Region_elementsCluster()).IsNull();
}

// `label`: the step and the field, as all texts of a history field begin.
void CheckUserRequest(LumenFindings& findings, KOVSimPosition const& user, KOVString const& label) {
    KOVSimSet const regions = user.GetSet(schema::UserOutputRequest_outputRegions());
    if (regions.Empty()) {
        return findings.Add(
            "{}, UserOutputRequest \"{}\" has no Region link (UserOutputRequest_outputRegions).",
            {label, user.Name(-1)});
    }
    for (KOVSimSetiterator at = regions.Begin(); at.NotDone(); ++at) {
        if (LacksClusters(*at)) {
            findings.Add("{}, UserOutputRequest \"{}\" has no cluster link.",
                         {label, user.Name(-1)});
        }
    }
}

// From a field back to the regions of the requests as the user wrote them.
void CheckOrigin(LumenFindings& findings, KOVSimPosition const& field, bool onNodesOrElements,
                 KOVString const& label) {
    KOVSimSet const requests = field.ReferrersSet(schema::OutputRequest_field());
    if (requests.Empty()) {
        return findings.Add("{} is not referred to by an OutputRequest (OutputRequest_field).",
                            {label});
    }
    for (KOVSimSetiterator request = requests.Begin(); request.NotDone(); ++request) {
        if ((*request).IsNull()) continue;
        KOVSimSet const users = (*request).ReferrersSet(schema::OutputRequest_elaboratedRequest());
        if (users.Empty() && !onNodesOrElements) {
            findings.Add(
                "OutputRequest for {} is not referred to by UserOutputRequest "
                "(OutputRequest_elaboratedRequest).",
                {label});
        }
        for (KOVSimSetiterator user = users.Begin(); user.NotDone(); ++user) {
            CheckUserRequest(findings, *user, label);
        }
    }
}

bool HasContent(KOVSimPosition const& field) {
    KOVSimSetiterator serial = field.GetSet(schema::Field_serialFields()).Begin();
    for (; serial.NotDone(); ++serial) {
        KOVSimSetiterator at = (*serial).GetSet(schema::SerialField_drawers()).Begin();
        for (; at.NotDone(); ++at) {
            KOVSimDrawer const drawer(*at);
            if (drawer.Description() && drawer.Description()->DataSizeItems(0) != 0) return true;
        }
    }
    return false;
}

constexpr int kRequestKindField = 3;
constexpr int kFieldOutput = 1;

bool GivesFields(KOVSimPosition const& request) {
    int kind = -1;
    request.DataRecord().GetSymb(kRequestKindField, kind);
    return kind == kFieldOutput;
}

}  // namespace

void KOVSrvLumenChecker::Check_History() {
    LumenFindings findings(m_findings);
    KOVSimVectoriterator step = m_model.GetVector(schema::Model_stepSequence()).Begin();
    for (; step.NotDone(); ++step) {
        if ((*step).IsNull()) continue;
        KOVString const header = LumenText("Step \"{}\"", {(*step).Name(-1)});
        KOVSimSetiterator at = (*step).GetSet(schema::Task_historyResults()).Begin();
        for (int number = 0; at.NotDone(); ++at, ++number) {
            KOVSimPosition const field = *at;
            KOVString const label = LumenText("{}, History field #{}", {header, number});
            if (!field.IsA(schema::Field_Meshed())) {
                findings.Add("{} is not a MeshedField.", {label});
                continue;
            }
            Check_Field(field, header, LumenText("{}", {number}));
            if (NeedsNoRequest(field)) continue;
            CheckOrigin(findings, field, HasNodeOrElementDim(field), label);
        }
    }

    KOVSimSetiterator request = m_model.GetSet(schema::Model_outputRequests()).Begin();
    for (int number = 0; request.NotDone(); ++request, ++number) {
        if (!GivesFields(*request)) continue;
        KOVString const header = LumenText("OutputRequest #{}", {number});
        KOVSimSetiterator at = (*request).GetSet(schema::OutputRequest_field()).Begin();
        for (int place = 0; at.NotDone(); ++at, ++place) {
            KOVSimPosition const field = *at;
            if (!field.IsA(schema::Field_Meshed())) {
                findings.Add("{}; Field #{} is not a MeshedField.", {header, place});
                continue;
            }
            if (HasContent(field) && field.Parent(schema::Task_fieldResults()).IsNull()) {
                findings.Add(
                    "For {}; Field #{}; fieldtype: \"{}\"; has content but has no "
                    "Task_fieldResults parent link.",
                    {header, place,
                     field.GetPosition(schema::Field_fieldType())
                         .Name(schema::zdm_FieldTypeLib_fieldTypes())});
            }
            Check_Field(field, header, LumenText("{}", {place}));
        }
    }
}
