#include "SectionCoverage.h"

#include <algorithm>
#include <utility>

#include "DocumentReader.h"
#include "ElementTypes.h"
#include "Interrupt.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "KOVSrvSectionServices.h"
#include "Names.h"

namespace kov::tool {
namespace {

struct Before {
    bool operator()(KOVSimDynamicID const& a, KOVSimDynamicID const& b) const {
        return a.Compare(b) < 0;
    }
};

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
    // The services want each assignment to be complete.
    std::vector<SectionUse> const uses = AllUses(document);
    KOVSimCollection elements = CollectionAt(KOVObjMesh(document.GetMesh()).GetElementCollection());
    if (!elements.IsPresent()) return coverage;
    KOVSimCSet const all(elements.CreateTempCSetStrided(0, elements.Space(), 1, 1));
    std::map<KOVSimDynamicID, KOVSimCSet, Before> governed;
    KOVSimCSet uncovered(elements.ID());
    for (auto const& [key, assignment] : KOVSrvSectionServices::GetSectionAssignments(all.Pos())) {
        if (assignment.IsNull()) {
            uncovered = key.CSet();
        } else {
            governed.emplace(assignment.ID(), key.CSet());
        }
    }
    ObjectNames names;
    FirstMaterials const firstMaterials(document);
    std::map<KOVSimDynamicID, SectionContent, Before> contents;
    KOVSimCSet several(elements.ID());
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
        made.governed = made.lost = KOVSimCSet(elements.ID());
        // An assignment that stands in the vector twice governs nothing the second time.
        if (auto const at = governed.find(use.assignment.ID()); at != governed.end()) {
            made.governed = at->second;
            governed.erase(at);
        }
        if (made.governed.Size() == made.size) continue;
        made.lost = region - made.governed;
        several = several.Union(made.lost);
    }
    std::vector<ElementGroup> const groups = ElementGroups(document);
    coverage.uncovered = ByType(groups, uncovered);
    coverage.inSeveral = ByType(groups, several);
    return coverage;
}

}  // namespace kov::tool
