// The checks of plies, section assignments, sections and their layers.
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "KOVSrvLumenChecker.h"
#include "KOVSrvShellSection.h"
#include "LumenFindings.h"

using kov::fsm::LumenFindings;
using kov::fsm::LumenText;

namespace {

constexpr int kLayerCountField = 0;
constexpr int kCompositionField = 9;
constexpr int kNeedsNoLayers = 2;

bool LacksLayers(KOVSimPosition const& shell) {
    int composition = kNeedsNoLayers;
    int layers = 0;
    shell.DataRecord().GetSymb(kCompositionField, composition);
    shell.DataRecord().GetInt(kLayerCountField, layers);
    return composition != kNeedsNoLayers && layers == 0;
}

void CheckLayer(LumenFindings& findings, KOVSimPosition const& layer, KOVString const& section,
                int number) {
    KOVSimPosition const ply = layer.GetPosition(schema::Layer_ply());
    if (!ply.IsNull() && ply.Parent(schema::Model_plies()).IsNull()) {
        findings.Add("Ply is not linked to Model, \"{}\", {}.", {section, number});
    }
    if (!layer.IsA(schema::Layer_Beam_Arbitrary())) return;
    KOVSimPosition const segments = layer.GetPosition(schema::Layer_Beam_Arbitrary_segments());
    if (segments.IsNull()) return;
    if (!segments.IsA(schema::Field_FTable())) {
        findings.Add("Layer_Beam_Arbitrary_segments is not of type Field_FTable, \"{}\", {}.",
                     {section, number});
    } else if (segments.GetPosition(schema::FieldFTable_table()).IsNull()) {
        findings.Add("Layer_Beam_Arbitrary_segments has no an FTable, \"{}\", {}.",
                     {section, number});
    }
}

// A single layer is not walked.
void CheckLayers(LumenFindings& findings, KOVSimVector const& layers, KOVString const& section) {
    if (layers.Size() <= 1) return;
    int number = 0;
    for (KOVSimVectoriterator at = layers.Begin(); at.NotDone(); ++at) {
        CheckLayer(findings, *at, section, number++);
    }
}

void CheckSection(LumenFindings& findings, KOVSimPosition const& section) {
    KOVString const name = section.Name(-1);
    if (section.ReferrersSet(schema::Focus_externalSectionIds()).Empty()) {
        findings.Add("Section \"{}\" is not linked to Focus (Focus_externalSectionIds).", {name});
    }
    if (!section.IsA(schema::Section_Shell())) return;
    if (LacksLayers(section)) {
        findings.Add("Shell section \"{}\" has no Layers (Section_layers).", {name});
    }
    CheckLayers(findings, section.GetVector(schema::Section_layers()), name);
}

void CheckRegion(LumenFindings& findings, KOVSimPosition const& assignment,
                 KOVString const& label) {
    KOVSimPosition const region = assignment.GetPosition(schema::SectionAssignment_region());
    if (region.IsNull()) return findings.Add("{} has no Region link.", {label});
    if (region.GetPosition(schema::Region_elementsCluster()).IsNull()) {
        findings.Add("Region referred by SectionAssignemt #{} has no elementsCluster CSet.",
                     {label});
    }
}

// That the bulk layers of a shell can be read is proved by reading them: what is wrong with them
// is an exception, and no finding.
void ReadBulkLayers(KOVSimPosition const& assignment) {
    KOVSrvShellSection const shell(assignment);
    shell.GetConstThicknesses();
    shell.GetPlies();
}

}  // namespace

void KOVSrvLumenChecker::Check_Ply() {
    LumenFindings findings(m_findings);
    for (KOVSimMapiterator at = m_model.GetMap(schema::Model_plies()).Begin(); at.NotDone(); ++at) {
        KOVSimPosition const ply = at.Value();
        if (ply.ReferrersSet(schema::Focus_externalPlyIds()).Size() == 0) {
            findings.Add("Ply \"{}\" is not referred to by Focus (Focus_externalPlyIds).",
                         {ply.Name(-1)});
        }
    }
}

void KOVSrvLumenChecker::Check_sectionAssignments() {
    LumenFindings findings(m_findings);
    bool const bulk = !m_model.GetPosition(schema::Model_bulkShellLayers()).IsNull();
    int number = 0;
    KOVSimVectoriterator at = m_model.GetVector(schema::Model_sectionAssignments()).Begin();
    for (; at.NotDone(); ++at) {
        KOVSimPosition const assignment = *at;
        KOVString const label = LumenText("SectionAssignment  #{}", {number++});
        KOVSimPosition const section = assignment.GetPosition(schema::SectionAssignment_section());
        if (section.IsNull()) findings.Add("{} has no Section link.", {label});
        CheckRegion(findings, assignment, label);
        if (section.IsNull()) continue;
        CheckSection(findings, section);
        if (bulk && section.IsA(schema::Section_Shell())) ReadBulkLayers(assignment);
    }
}
