#include "SectionContent.h"

#include "DocumentReader.h"
#include "Interrupt.h"
#include "KOVSimDataRecord.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "Names.h"
#include "SectionFields.h"

namespace kov::tool {
namespace {

constexpr int kGauss = 1;

SectionKind KindOf(KOVSimPosition const& section) {
    if (section.IsA(schema::Section_Shell())) return SectionKind::Shell;
    if (section.IsA(schema::Section_Solid())) return SectionKind::Solid;
    if (section.IsA(schema::Section_Membrane())) return SectionKind::Membrane;
    if (section.IsA(schema::Section_Beam())) return SectionKind::Beam;
    if (section.IsA(schema::Section_Surface())) return SectionKind::Surface;
    return SectionKind::Other;
}

}  // namespace

std::string const& ObjectNames::Of(KOVSimPosition const& object, int map) {
    auto const [at, fresh] = m_names.try_emplace(object.ID());
    if (fresh && !object.IsNull()) {
        at->second = Plain(object.Name(-1));
        if (at->second.empty()) at->second = Plain(object.Name(map));
    }
    return at->second;
}

char const* KindWord(SectionKind kind) noexcept {
    constexpr char const* kWords[] = {"shell", "solid", "membrane", "beam", "surface", "section"};
    return kWords[static_cast<int>(kind)];
}

std::string SectionContent::KindText() const {
    if (composite) return std::string("composite ") + KindWord(kind);
    bool const either = kind == SectionKind::Shell || kind == SectionKind::Solid;
    return either ? std::string("homogeneous ") + KindWord(kind) : KindWord(kind);
}

bool SectionContent::IsLayered() const {
    return layers > 0 && (kind == SectionKind::Shell || kind == SectionKind::Solid);
}

SectionContent ReadSection(KOVSimPosition const& section, ObjectNames& names) {
    SectionContent read;
    KOVSimDataRecord const record = section.GetDataRecord();
    read.kind = KindOf(section);
    if (read.kind == SectionKind::Shell) {
        record.GetInt(kSectionLayers, read.layers);
        read.composite = read.layers > 1;
        int symbol = read.composite ? 1 : 0;
        record.GetSymb(kSectionComposite, symbol);
        read.composite = symbol == 1;
        record.GetDouble(kSectionOffset, read.offset);
        int integration = 0;
        record.GetInt(kSectionIntegration, integration);
        read.gauss = integration == kGauss;
    } else if (read.kind == SectionKind::Solid) {
        read.layers = section.GetVector(schema::Section_layers()).Size();
        read.composite = read.layers > 0;
    }
    if (read.composite) {
        read.layup = Plain(record.ReturnString(kSectionName));
        record.GetInt(kSectionStackDirection, read.stackDirection);
    } else if (read.kind == SectionKind::Beam) {
        read.profile = Plain(record.ReturnString(kSectionName));
    }
    read.material =
        names.Of(section.GetPosition(schema::Section_material()), schema::MaterialLib_materials());
    read.orientation = names.Of(section.GetPosition(schema::Section_orientation()),
                                schema::Model_orientationsByName());
    return read;
}

SectionUse ReadUse(KOVSimPosition const& assignment, KOVSimCollectionID const& elements,
                   std::string const& called) {
    SectionUse use;
    use.assignment = assignment;
    use.section = assignment.GetPosition(schema::SectionAssignment_section());
    if (use.section.IsNull()) throw DocumentFault(called + " has no section");
    use.region = assignment.GetPosition(schema::SectionAssignment_region());
    if (use.region.IsNull()) throw DocumentFault(called + " has no region");
    use.elements = use.region.GetPosition(schema::Region_elementsCluster());
    if (use.elements.IsNull()) throw DocumentFault("the region of " + called + " has no elements");
    if (!KOVSimCSetID::CanBeConverted(use.elements.ID()) ||
        KOVSimCSet(use.elements).CollectionID() != elements) {
        throw DocumentFault("the region of " + called + " is no set of the mesh's elements");
    }
    return use;
}

std::vector<SectionUse> AllUses(KOVObjDocument const& document) {
    std::vector<SectionUse> uses;
    KOVSimCollectionID const elements =
        KOVObjMesh(document.GetMesh()).GetElementCollection().GetCollection();
    KOVSimVector const assignments =
        document.GetModel().GetVector(schema::Model_sectionAssignments());
    for (KOVSimVectoriterator at = assignments.Begin(); at.NotDone(); ++at) {
        if (uses.size() % 1000 == 0) ThrowIfInterrupted();
        uses.push_back(
            ReadUse(*at, elements, "section assignment " + std::to_string(uses.size() + 1)));
    }
    return uses;
}

std::vector<SectionUse> UsesOf(KOVObjDocument const& document, KOVSimPosition const& section,
                               std::string const& name) {
    std::vector<SectionUse> uses;
    KOVSimDynamicID const model = document.GetModel().ID();
    KOVSimCollectionID const elements =
        KOVObjMesh(document.GetMesh()).GetElementCollection().GetCollection();
    KOVSimSet const referrers = section.ReferrersSet(schema::SectionAssignment_section());
    for (KOVSimSetiterator at = referrers.Begin(); at.NotDone(); ++at) {
        if ((*at).Parent(schema::Model_sectionAssignments()).ID() != model) continue;
        uses.push_back(ReadUse(*at, elements, "an assignment of section " + NameText(name)));
    }
    return uses;
}

}  // namespace kov::tool
