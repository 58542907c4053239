#include "LayerShares.h"

#include <algorithm>
#include <string>

#include "Interrupt.h"
#include "KOVSimCSet.h"
#include "KOVSimCSetIterator.h"

namespace kov::tool {
namespace {

bool HasShares(SectionEntry const& section) {
    return section.composite && section.thicknessName != MentionTable::kNone;
}

// All elements of sections that share none.
KOVSimCSet ElementsOf(std::vector<SectionEntry const*> const& sections,
                      KOVSimCollection const& collection) {
    if (sections.size() == 1) return KOVSimCSet(sections.front()->set->stored);
    std::vector<int> members;
    for (SectionEntry const* const section : sections) {
        KOVSimCSetIterator at(KOVSimCSet(section->set->stored));
        for (at.First(); !at.IsDone(); at.Next()) members.push_back(at.CurrentValue());
    }
    return collection.CreateVolatileCSet(members.data(), static_cast<int>(members.size()), false);
}

}  // namespace

double ThicknessOfLines(SectionTable const& table, SectionEntry const& section) {
    double whole = 0;
    for (int layer = 0; layer < section.Layers(); ++layer) {
        whole += table.Layer(section, layer).Thickness();
    }
    return whole;
}

void LayerShares::Make(SectionTable const& table, ModelWriter& model,
                       Distributions& distributions) {
    struct Group {
        Key key;
        std::vector<SectionEntry const*> sections;
    };
    std::vector<Group> groups;
    for (SectionEntry const& section : table.sections) {
        if (!HasShares(section)) continue;
        double const whole = ThicknessOfLines(table, section);
        NamedDistribution const* const distribution =
            table.thicknessNames[section.thicknessName].distribution;
        double least = 1;
        for (int line = 0; line < section.layerLines; ++line) {
            double const share = table.Layer(section, line).Thickness() / whole;
            if (!(share > 0)) {
                table.files.Fail(section.at,
                                 "the thicknesses of the layers differ beyond the range of "
                                 "numbers; expected shares of one thickness");
            }
            least = std::min(least, share);
            Key const key{distribution, share};
            auto const [at, isNew] = m_numbers.try_emplace(key, groups.size());
            if (isNew) groups.push_back({key, {}});
            std::vector<SectionEntry const*>& sections = groups[at->second].sections;
            if (sections.empty() || sections.back() != &section) sections.push_back(&section);
        }
        std::string const element =
            distributions.Vanishing(*distribution, KOVSimCSet(section.set->stored), least);
        if (!element.empty()) {
            table.files.Fail(section.at, "the thinnest layer of " + element +
                                             " is too thin for a number; expected a thickness of "
                                             "each layer above 0");
        }
    }
    for (Group const& group : groups) {
        ThrowIfInterrupted();
        m_fields.push_back(
            distributions.ScaledField(*group.key.distribution, group.key.share,
                                      ElementsOf(group.sections, model.ElementCollection())));
    }
}

KOVSimPosition LayerShares::Field(SectionTable const& table, SectionEntry const& section, int layer,
                                  double whole) const {
    double const share = table.Layer(section, layer).Thickness() / whole;
    return m_fields[m_numbers.at(
        {table.thicknessNames[section.thicknessName].distribution, share})];
}

}  // namespace kov::tool
