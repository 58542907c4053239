#include "SectionCoverage.h"

#include <algorithm>
#include <vector>

#include "AscendingSets.h"
#include "ByIdentity.h"
#include "DocumentReader.h"
#include "ElementTypes.h"
#include "Interrupt.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "Names.h"

namespace kov::tool {
namespace {

// Elements by their types: what has no type stands last. Types that are not known count as such
// that need a section.
std::vector<TypedElements> ByType(std::vector<ElementGroup> const& groups, KOVSimCSet rest) {
    std::vector<TypedElements> typed;
    for (ElementGroup const& group : groups) {
        if (rest.IsEmpty()) break;
        if (group.elements.CollectionID() != rest.CollectionID()) continue;
        KOVSimCSet const common = group.elements.Intersection(rest);
        if (common.IsEmpty()) continue;
        bool const needs = group.type == nullptr || NeedsSection(*group.type);
        typed.push_back({group.name, needs, common});
        rest = rest - common;
    }
    if (!rest.IsEmpty()) typed.push_back({"", false, rest});
    return typed;
}

std::string SetName(SectionUse const& use) {
    for (int const map : {schema::Model_elementSets(), schema::Model_otherElementSets()}) {
        std::string name = Plain(use.elements.Name(map));
        if (!name.empty()) return name;
    }
    std::string name = Plain(use.region.Name(-1));
    return name.empty() ? Plain(use.region.Name(schema::Model_regions())) : name;
}

// The material of the first layer of each shell section, read at once: member index of the
// material, by member index of the section; -1 for none.
class FirstMaterials {
  public:
    explicit FirstMaterials(KOVObjDocument const& document) : m_document(document) {
        KOVSimPosition const model = document.GetModel();
        KOVSimCollection const slots =
            CollectionAt(model.GetPosition(schema::Model_bulkLayerSlots()));
        m_sections = CollectionAt(model.GetPosition(schema::Model_bulkSections()));
        KOVSimDistributionID const id = model.GetPosition(schema::Model_bulkShellLayers())
                                            .GetPosition(schema::BulkShellLayers_materials())
                                            .GetDistribution();
        if (id.IsNull() || !m_sections.IsPresent() || !slots.IsPresent() || slots.Space() == 0)
            return;
        int const count = m_sections.Space();
        m_materials.assign(static_cast<std::size_t>(count), -1);
        if (count == 0) return;
        KOVSimTransfer transfer{KOVSimDistribution(id)};
        transfer.SetRead().SetBufferPadding(false);
        transfer.SetDim(0, slots.CreateVolatileCSetStrided(0, 1, 1, 1));
        transfer.SetDim(1, m_sections.CreateVolatileCSetStrided(0, count, 1, 1));
        transfer.CheckView();
        transfer.SetBuffer(0, m_materials.data(), sizeof(int) * static_cast<unsigned long>(count));
        transfer.ExecRead().RelinquishBuffers();
    }

    KOVSimPosition Of(KOVSimPosition const& section) const {
        KOVSimDynamicID const id = section.ID();
        if (m_materials.empty() || id.category != KOVSimCategoryMember ||
            id.data.parent != m_sections.ID().Minor()) {
            return {};
        }
        int const material =
            m_materials[static_cast<std::size_t>(m_document.GetCMemberIndex(section))];
        KOVSimCollection const materials = CollectionAt(m_document.GetMaterialCollection());
        if (material < 0 || !materials.IsPresent()) return {};
        return m_document.GetRecord(materials.ID(), material);
    }

  private:
    KOVObjDocument m_document;
    KOVSimCollection m_sections;
    std::vector<int> m_materials;
};

KOVSimCSet Range(KOVSimCollection const& collection, int count) {
    if (count == 0) return KOVSimCSet(collection.ID());
    return collection.CreateVolatileCSetStrided(0, count, 1, 1);
}

KOVSimCSet MarkedIn(KOVSimCollection const& collection, std::vector<bool> const& marks) {
    std::vector<int> members;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        if (marks[i]) members.push_back(static_cast<int>(i));
    }
    return SetOf(collection, members);
}

bool AllNeedNone(std::vector<TypedElements> const& elements) {
    return std::none_of(elements.begin(), elements.end(),
                        [](TypedElements const& each) { return each.needsSection; });
}

}  // namespace

bool SectionCoverage::IsComplete() const {
    return AllNeedNone(uncovered) && AllNeedNone(inSeveral);
}

SectionCoverage ReadSectionCoverage(KOVObjDocument const& document) {
    SectionCoverage coverage;
    std::vector<SectionUse> const uses = AllUses(document);
    KOVSimCollection const elements =
        CollectionAt(KOVObjMesh(document.GetMesh()).GetElementCollection());
    if (!elements.IsPresent()) return coverage;
    int const space = elements.Space();
    // A bit for each element: with sets of what is left, many assignments would cost the square of
    // their number.
    std::vector<bool> taken(static_cast<std::size_t>(space));
    std::vector<bool> several(taken.size());
    std::vector<int> lost;
    ObjectNames names;
    FirstMaterials const firstMaterials(document);
    std::map<KOVSimDynamicID, SectionContent, ByIdentity> contents;
    coverage.assignments.reserve(uses.size());
    for (SectionUse const& use : uses) {
        if (coverage.assignments.size() % 1000 == 0) ThrowIfInterrupted();
        AssignmentCoverage& made = coverage.assignments.emplace_back();
        made.section = names.Of(use.section, schema::Model_sections());
        auto const [content, fresh] = contents.try_emplace(use.section.ID());
        if (fresh) content->second = ReadSection(use.section, names);
        made.content = content->second;
        made.material = made.content.material;
        if (made.content.kind == SectionKind::Shell && made.content.layers == 1) {
            made.material =
                names.Of(firstMaterials.Of(use.section), schema::MaterialLib_materials());
        }
        made.elementSet = SetName(use);
        KOVSimCSet const region(use.elements);
        made.size = region.Size();
        lost.clear();
        KOVSimCSet const within = region.Intersection(Range(elements, space));
        KOVSimCSetIterator at(within);
        for (at.First(); !at.IsDone(); at.Next()) {
            auto const element = static_cast<std::size_t>(at.CurrentValue());
            if (taken[element]) {
                several[element] = true;
                lost.push_back(at.CurrentValue());
            }
            taken[element] = true;
        }
        made.lost = SetOf(elements, lost);
        made.governed = within - made.lost;
    }
    std::vector<ElementGroup> const groups = ElementGroups(document);
    coverage.inSeveral = ByType(groups, MarkedIn(elements, several));
    taken.flip();
    coverage.uncovered = ByType(groups, MarkedIn(elements, taken));
    return coverage;
}

}  // namespace kov::tool
