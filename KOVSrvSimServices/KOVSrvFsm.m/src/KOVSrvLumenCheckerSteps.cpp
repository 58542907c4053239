// The check of the steps: known to the focus, with modes and incrementation where their kind wants
// them, and with data for all that they name.
#include "KOVSimCSet.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "KOVSrvLumenChecker.h"
#include "LumenFindings.h"
#include "LumenSets.h"

using kov::fsm::FirstDimension;
using kov::fsm::LumenFindings;

namespace {

// A set that a step names lies on a collection that a description owns; the description's data say
// what each member is. One row for each kind of description.
struct Description {
    int (*parent)();
    int (*data)();
    char const* noDescription;  // null: no finding
    char const* noData;
    bool comparedWithoutData;  // then all of the set is without data
    char const* notCovered;
};

constexpr Description kTimes{
    schema::TimeDescription_timeCollection,
    schema::TimeDescription_data,
    "Task_times CSet's TimeCollection has no parent link to TimeDescription "
    "(TimeDescription_timeCollection)for Step \"{}\".",
    "TimeDescription has no data distribution for Step \"{}\".",
    false,
    "TimeDescription data distribution must have all members from times CSet for Step \"{}\".",
};

constexpr Description kArcLengths{
    schema::ArcLengthDescription_arcLengthCollection,
    schema::ArcLengthDescription_data,
    "ArcLengthDescription record does not exist.",
    "ArcLengthDescription record does not exist for Step \"{}\".",
    false,
    "This ArcLengthDescription data distribution has no all members from times CSet for Step "
    "\"{}\".",
};

constexpr Description kFrequencies{
    schema::FrequencyDescription_frequencyCollection,
    schema::FrequencyDescription_data,
    nullptr,
    "FrequencyDescription record does not exist for Step \"{}\".",
    true,
    "This FrequencyDescription data distribution has no all members from frequency CSet for Step "
    "\"{}\".",
};

void CheckDescription(LumenFindings& findings, Description const& kind, KOVSimPosition const& set,
                      KOVString const& step) {
    KOVSimCollectionID const collection = set.GetCSet().CollectionID();
    KOVSimPosition const description = KOVSimPosition(collection).Parent(kind.parent());
    if (description.IsNull()) {
        // Not each of the texts names the step.
        if (kind.noDescription) findings.Add(kind.noDescription, {step});
        return;
    }
    KOVSimPosition const data = description.GetPosition(kind.data());
    if (data.IsNull()) {
        findings.Add(kind.noData, {step});
        if (!kind.comparedWithoutData) return;
    }
    KOVSimCSet const required = set.CSet();
    KOVSimCSet const known = FirstDimension(data.GetDistribution(), collection);
    if (!required.SameMembers(known.Intersection(required))) findings.Add(kind.notCovered, {step});
}

void CheckModes(LumenFindings& findings, KOVSimPosition const& step, KOVString const& name) {
    bool const buckling = step.IsA(schema::Step_Lin_Buckle());
    KOVSimPosition const modes = step.GetPosition(schema::Task_modes());
    if (modes.IsNull()) {
        if (buckling) {
            findings.Add("Step_Lin_Buckle \"{}\" has no modes link (Task_modes).", {name});
        }
        return;
    }
    if (buckling && modes.CSet().Size() < 1) {
        findings.Add("Step_Lin_Buckle \"{}\" has a mode set that is empty (Task_modes).", {name});
    }
    KOVSimPosition const system = step.GetPosition(schema::Task_feSystem());
    if (system.IsNull()) {
        findings.Add("Step \"{}\" has no FESystem.", {name});
    } else if (!system.IsA(schema::ModalSystem())) {
        findings.Add("System is not ModalSystem for Step \"{}\".", {name});
    } else if (system.GetPosition(schema::ModalSystem_eigenvalues()).IsNull()) {
        findings.Add(
            "ModalSystem has no eigenvalues link (ModalSystem_eigenvalues)for Step \"{}\".",
            {name});
    }
}

void CheckStep(LumenFindings& findings, KOVSimPosition const& step) {
    KOVString const name = step.Name(-1);
    if (step.ReferrersSet(schema::Focus_externalTaskIds()).Size() == 0) {
        findings.Add("Step \"{}\" is not referred to by Focus (Focus_externalTaskIds).", {name});
    }
    CheckModes(findings, step, name);
    bool const riks = step.IsA(schema::Step_Gen_StaticRiks());
    if (riks && step.GetPosition(schema::Step_Gen_timeIncrementation()).IsNull()) {
        findings.Add(
            "TimeIncrementation record does not exist for Step_Gen_StaticRiks \"{}\" "
            "(Step_Gen_timeIncrementation).",
            {name});
    }
    KOVSimPosition const times = step.GetPosition(schema::Task_times());
    if (!times.IsNull()) CheckDescription(findings, kTimes, times, name);
    KOVSimPosition const arcLengths = step.GetPosition(schema::Step_Gen_StaticRiks_arcLengths());
    if (riks && !arcLengths.GetCSet().IsNull()) {
        CheckDescription(findings, kArcLengths, arcLengths, name);
    }
    KOVSimPosition const frequencies = step.GetPosition(schema::Task_frequencies());
    if (!frequencies.GetCSet().IsNull()) {
        CheckDescription(findings, kFrequencies, frequencies, name);
    }
}

}  // namespace

void KOVSrvLumenChecker::Check_Steps() {
    LumenFindings findings(m_findings);
    if (m_model.GetMap(schema::Model_steps()).Size() == 0) {
        return findings.Add("Model has no Steps.");
    }
    KOVSimVector const sequence = m_model.GetVector(schema::Model_stepSequence());
    if (sequence.Size() < 1) return findings.Add("Model_stepSequence is empty.");
    for (KOVSimVectoriterator at = sequence.Begin(); at.NotDone(); ++at) CheckStep(findings, *at);
}
