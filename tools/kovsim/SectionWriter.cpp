#include "SectionWriter.h"

#include <algorithm>

#include "Interrupt.h"
#include "KOVSimCollection.h"
#include "KOVSimSchema.h"
#include "Names.h"
#include "SectionFields.h"

namespace kov::tool {
namespace {

// The collection under a member; made when it is asked for first.
KOVSimPosition Collection(KOVSimPosition const& owner, int member, int type) {
    KOVSimPosition const found = owner.GetPosition(member);
    if (!found.IsNull()) return found;
    KOVSimPosition const made(owner.CreateTypedCollection(0, type));
    owner.SetPosition(member, made);
    return made;
}

int RecordType(SectionEntry::Kind kind) {
    switch (kind) {
        case SectionEntry::Kind::Shell:
            return schema::Section_Shell();
        case SectionEntry::Kind::Solid:
            return schema::Section_Solid();
        case SectionEntry::Kind::Membrane:
            return schema::Section_Membrane();
        case SectionEntry::Kind::Beam:
            break;
    }
    return schema::Section_Beam();
}

std::string Purpose(SectionEntry const& section) {
    return std::string(section.Words()) + " of " + ShownIn(*section.setScope, section.set->name);
}

}  // namespace

SectionWriter::SectionWriter(ModelWriter& model, Distributions const& distributions,
                             SectionTable& table)
    : m_model(model),
      m_distributions(distributions),
      m_table(table),
      m_top(model.Document().GetModel()),
      m_regions(m_top.GetMap(schema::Model_regions())),
      m_names(m_top.GetMap(schema::Model_sections())),
      m_external(m_top.Focus().GetSet(schema::Focus_externalSectionIds())),
      m_assignments(m_top.GetVector(schema::Model_sectionAssignments())) {}

void SectionWriter::Write() {
    WriteMaterials();
    WritePlies();
    bool const shells = std::any_of(
        m_table.sections.begin(), m_table.sections.end(),
        [](SectionEntry const& section) { return section.kind == SectionEntry::Kind::Shell; });
    if (shells) MakeShellCollections();
    if (!m_table.sections.empty()) {
        m_regionMembers =
            Collection(m_top, schema::Model_regionCollection(), schema::RegionCollection());
    }
    long done = 0;
    for (SectionEntry& section : m_table.sections) {
        if (++done % 1000 == 0) ThrowIfInterrupted();
        Check(section);
        WriteSection(section);
    }
}

void SectionWriter::WriteMaterials() {
    KOVSimPosition const collection = m_model.Document().GetMaterialCollection();
    KOVSimMap const byName = collection.GetMap(schema::MaterialLib_materials());
    for (NamedMaterial const& material : m_table.materials.All()) {
        KOVSimPosition const position = collection.AppendMember(schema::Material());
        KOVString const name = ToKOVString(material.name);
        position.SetName(name);
        byName.Insert(name, position);
        if (material.behaviors.empty()) continue;
        KOVSimMap const behaviors = position.GetMap(schema::Material_behaviors());
        for (NamedBehavior const& behavior : material.behaviors) {
            behaviors.Insert(KOVString(behavior.kind->name), KOVSimPosition(behavior.record));
        }
    }
}

void SectionWriter::WritePlies() {
    if (m_table.plies.empty()) return;
    m_plies = Collection(m_top, schema::Model_bulkPlies(), schema::BulkPly());
    KOVSimMap const byName = m_top.GetMap(schema::Model_plies());
    KOVSimSet const external = m_top.Focus().GetSet(schema::Focus_externalPlyIds());
    long done = 0;
    for (auto const& [scope, ply] : m_table.plies) {
        if (++done % 1000 == 0) ThrowIfInterrupted();
        KOVSimPosition const position = m_plies.AppendMember(schema::Ply());
        KOVString const key = ToKOVString(scope->Key(ply->name));
        position.SetName(key);
        byName.Insert(key, position);
        external.Insert(position);
    }
}

// All that the layers of shells refer to, in full: what is missing then would be made with a member
// that nobody asked for.
void SectionWriter::MakeShellCollections() {
    m_shells = Collection(m_top, schema::Model_bulkSections(), schema::BulkSection());
    static_cast<void>(Collection(m_top, schema::Model_bulkPlies(), schema::BulkPly()));
    KOVSimPosition const slots =
        Collection(m_top, schema::Model_bulkLayerSlots(), schema::BulkLayerSlot());
    int deepest = 0;
    for (SectionEntry const& section : m_table.sections) {
        if (section.kind == SectionEntry::Kind::Shell)
            deepest = std::max(deepest, section.Layers());
    }
    for (int i = 0; i < deepest; ++i) {
        static_cast<void>(slots.AppendMember(schema::BulkLayerSlot()));
    }
}

// A section takes no element without a value.
void SectionWriter::Check(SectionEntry const& section) const {
    KOVSimCSet const elements(section.set->stored);
    std::string const purpose = Purpose(section);
    std::string const& path = m_table.files.Path(section.at);
    if (section.thicknessName != MentionTable::kNone) {
        m_distributions.CheckCovers(*m_table.thicknessNames[section.thicknessName].distribution,
                                    elements, purpose, path, section.at.line, true);
    }
    for (int i = 0; i < section.layerLines; ++i) {
        LayerEntry const& layer = m_table.Layer(section, i);
        if (int const name = layer.ThicknessName(); name != MentionTable::kNone) {
            m_distributions.CheckCovers(*m_table.thicknessNames[name].distribution, elements,
                                        purpose, path, layer.line, true);
        }
        int const name = layer.AngleName();
        if (name == MentionTable::kNone) continue;
        if (NamedDistribution const* const angles = m_table.angleNames[name].distribution) {
            m_distributions.CheckCovers(*angles, elements, purpose, path, layer.line, false);
        }
    }
}

void SectionWriter::WriteSection(SectionEntry& section) {
    std::string const key = section.setScope->Key(section.set->name);
    KOVSimPosition const position = MakeRecord(section);
    KOVString const name = ToKOVString(key);
    position.SetName(name);
    m_names.Insert(name, position);
    m_external.Insert(position);
    WriteFields(section, position.GetDataRecord());
    WriteLinks(section, position);
    WriteAssignment(section, key, position);
    if (section.kind == SectionEntry::Kind::Solid) WriteSolidLayers(section, position);
}

KOVSimPosition SectionWriter::MakeRecord(SectionEntry& section) {
    if (section.kind != SectionEntry::Kind::Shell) {
        return m_model.Document().CreateDataRecord(RecordType(section.kind)).Pos();
    }
    section.number = m_shellCount++;
    return m_shells.AppendMember(RecordType(section.kind));
}

void SectionWriter::WriteFields(SectionEntry const& section, KOVSimDataRecord const& record) {
    record.SetInt(kSectionLayers, section.Layers());
    if (section.kind == SectionEntry::Kind::Shell) {
        record.SetSymb(kSectionComposite, section.composite ? 1 : 0);
        record.SetDouble(kSectionOffset, section.offset);
        record.SetInt(kSectionIntegration, section.gauss ? 1 : 0);
    }
    if (!section.name.empty()) record.SetString(kSectionName, ToKOVString(section.name));
    if (section.composite) record.SetInt(kSectionStackDirection, section.stackDirection);
    if (section.value > 0) record.SetDouble(kSectionDimensions, &section.value, 1);
    if (section.beam == nullptr) return;
    auto const numbers = [&record](int field, std::vector<double> const& values) {
        if (values.empty()) return;
        record.SetDouble(field, values.data(), static_cast<int>(values.size()));
    };
    numbers(kSectionDimensions, section.beam->dimensions);
    numbers(kSectionDirection, section.beam->direction);
    numbers(kSectionPoints, {section.beam->points.begin(), section.beam->points.end()});
}

void SectionWriter::WriteLinks(SectionEntry const& section, KOVSimPosition const& position) {
    if (section.material != MaterialTable::kNone) {
        position.SetPosition(schema::Section_material(), Material(section.material));
    }
    if (section.orientation != MentionTable::kNone) {
        position.SetPosition(
            schema::Section_orientation(),
            Orientation(*m_table.orientationNames[section.orientation].orientation));
    }
    if (section.thicknessName != MentionTable::kNone) {
        position.SetPosition(schema::Section_thicknessField(),
                             m_table.thicknessNames[section.thicknessName].distribution->field);
    }
}

void SectionWriter::WriteAssignment(SectionEntry const& section, std::string const& key,
                                    KOVSimPosition const& position) {
    std::string const regionKey = kSectionRegionPrefix + key;
    KOVString const name = ToKOVString(regionKey);
    if (!m_regions.Find(name).IsNull()) {
        m_table.files.Fail(section.at, "the name '" + Shown(regionKey) +
                                           "' of the section's region is that of a surface; "
                                           "expected a surface of another name");
    }
    KOVSimPosition const region = m_regionMembers.AppendMember(schema::Region());
    region.SetName(name);
    m_regions.Insert(name, region);
    region.SetPosition(schema::Region_elementsCluster(), KOVSimPosition(section.set->stored));
    KOVSimPosition const assignment = m_top.CreateDataRecord(schema::SectionAssignment()).Pos();
    assignment.SetPosition(schema::SectionAssignment_section(), position);
    assignment.SetPosition(schema::SectionAssignment_region(), region);
    m_assignments.PushBack(assignment);
}

void SectionWriter::WriteSolidLayers(SectionEntry const& section, KOVSimPosition const& position) {
    KOVSimVector const layers = position.GetVector(schema::Section_layers());
    for (int i = 0; i < section.Layers(); ++i) {
        KOVSimPosition const layer = m_top.CreateDataRecord(schema::Layer()).Pos();
        WriteSolidLayer(m_table.Layer(section, i), layer);
        layers.PushBack(layer);
    }
}

void SectionWriter::WriteSolidLayer(LayerEntry const& layer, KOVSimPosition const& position) {
    KOVSimDataRecord const record = position.GetDataRecord();
    if (int const name = layer.ThicknessName(); name != MentionTable::kNone) {
        position.SetPosition(schema::Layer_thicknessField(),
                             m_table.thicknessNames[name].distribution->field);
    } else {
        record.SetDouble(kLayerThickness, layer.Thickness());
    }
    record.SetInt(kLayerPoints, layer.Points());
    position.SetPosition(schema::Layer_material(), Material(layer.material));
    if (layer.ply >= 0) {
        KOVSimCollectionID const plies = m_plies.GetCollection();
        position.SetPosition(schema::Layer_ply(), m_model.Document().GetRecord(plies, layer.ply));
    }
    if (layer.AngleName() == MentionTable::kNone) {
        record.SetDouble(kLayerAngle, layer.Angle());
        return;
    }
    Mention const& angle = m_table.angleNames[layer.AngleName()];
    if (angle.orientation != nullptr) {
        position.SetPosition(schema::Layer_orientation(), Orientation(*angle.orientation));
    } else {
        position.SetPosition(schema::Layer_angleField(), angle.distribution->field);
    }
}

KOVSimPosition SectionWriter::Material(int number) const {
    KOVObjDocument const& document = m_model.Document();
    return document.GetRecord(document.GetMaterialCollection().GetCollection(), number);
}

KOVSimPosition SectionWriter::Orientation(NamedOrientation const& orientation) const {
    KOVSimCollectionID const collection =
        m_top.GetPosition(schema::Model_orientations()).GetCollection();
    return m_model.Document().GetRecord(collection, orientation.index);
}

}  // namespace kov::tool
