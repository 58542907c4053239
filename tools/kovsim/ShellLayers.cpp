#include "ShellLayers.h"

#include <algorithm>
#include <cmath>

#include "Interrupt.h"
#include "KOVSrvBulkShellLayers.h"

namespace kov::tool {
namespace {

// What was handed on and not written must not reach the next document.
class Gathered {
  public:
    Gathered() : m_layers(*omi_Singleton<KOVSrvBulkShellLayers>::Instance()) {}
    ~Gathered() {
        if (!m_written) omi_SingletonBase<KOVSrvBulkShellLayers>::Finalize();
    }
    Gathered(Gathered const&) = delete;
    Gathered& operator=(Gathered const&) = delete;

    KOVSrvBulkShellLayers* operator->() { return &m_layers; }
    void Write(KOVSimPosition const& focus) {
        m_layers.WriteBulkDistributions(focus);
        m_written = true;
    }

  private:
    KOVSrvBulkShellLayers& m_layers;
    bool m_written = false;
};

void HandOnAngle(Gathered& gathered, SectionTable const& table, SectionEntry const& section,
                 int number, LayerEntry const& layer) {
    if (layer.AngleName() == MentionTable::kNone) {
        gathered->AppendConstAngle(number, section.number, layer.Angle());
        return;
    }
    Mention const& angle = table.angleNames[layer.AngleName()];
    if (angle.orientation != nullptr) {
        gathered->AppendOrientation(number, section.number, angle.orientation->index);
    } else {
        gathered->AppendDistAngle(number, KOVSimPosition(section.set->stored),
                                  angle.distribution->field);
    }
}

void HandOnThickness(Gathered& gathered, SectionTable const& table, LayerShares const& shares,
                     SectionEntry const& section, int number, LayerEntry const& layer,
                     double whole) {
    KOVSimPosition const elements(section.set->stored);
    int const name = section.composite ? layer.ThicknessName() : section.thicknessName;
    if (name != MentionTable::kNone) {
        gathered->AppendDistThickness(number, elements,
                                      table.thicknessNames[name].distribution->field);
    } else if (section.thicknessName != MentionTable::kNone) {
        gathered->AppendDistThickness(number, elements,
                                      shares.Field(table, section, number, whole));
    } else {
        gathered->AppendConstThickness(number, section.number, layer.Thickness());
    }
}

void HandOn(Gathered& gathered, SectionTable const& table, LayerShares const& shares,
            SectionEntry const& section) {
    double const whole = ThicknessOfLines(table, section);
    if (!std::isfinite((std::abs(section.offset) + 0.5) * whole)) {
        table.files.Fail(section.at,
                         "the thickness of the layers together, or the offset, is beyond the range "
                         "of numbers; expected smaller ones");
    }
    for (int number = 0; number < section.Layers(); ++number) {
        LayerEntry const& layer = table.Layer(section, number);
        gathered->AppendMaterial(number, section.number, layer.material);
        gathered->AppendNumSectionPoints(number, section.number, layer.Points());
        if (layer.ply >= 0) gathered->AppendPly(number, section.number, layer.ply);
        HandOnThickness(gathered, table, shares, section, number, layer, whole);
        // A homogeneous shell has no angle of its own.
        if (section.composite) HandOnAngle(gathered, table, section, number, layer);
    }
}

}  // namespace

void WriteShellLayers(KOVObjDocument const& document, SectionTable& table,
                      LayerShares const& shares) {
    bool const any =
        std::any_of(table.sections.begin(), table.sections.end(),
                    [](auto const& section) { return section.kind == SectionEntry::Kind::Shell; });
    if (!any) return;
    Gathered gathered;
    long done = 0;
    for (SectionEntry const& section : table.sections) {
        if (++done % 1000 == 0) ThrowIfInterrupted();
        table.DropLayersBefore(section.firstLayer);
        if (section.kind != SectionEntry::Kind::Shell) continue;
        HandOn(gathered, table, shares, section);
    }
    table.DropLayersBefore(table.NextLayer());
    gathered.Write(document.Focus());
}

}  // namespace kov::tool
