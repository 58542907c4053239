#include "LayupReader.h"

#include <map>
#include <utility>

#include "ByIdentity.h"
#include "DocumentReader.h"
#include "InstanceQuestion.h"
#include "Interrupt.h"
#include "KOVObjMeshedField.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimVector.h"
#include "KOVSrvSectionServices.h"
#include "KOVSrvShellSection.h"
#include "NamedObjects.h"
#include "Names.h"
#include "Nearest.h"
#include "SectionFields.h"

namespace kov::tool {
namespace {

using Variation = LayerNumber::Variation;

KOVSimCSet ElementsOf(std::vector<SectionUse> const& uses, KOVSimCollectionID const& elements) {
    KOVSimCSet all(elements);
    for (SectionUse const& use : uses) all = all.Union(KOVSimCSet(use.elements));
    return all;
}

LayerNumber Constant(double value) {
    LayerNumber number;
    number.variation = Variation::Constant;
    number.value = value;
    return number;
}

LayerNumber OfShell(KOVSrvShellSection::VariationEnm variation, double constant) {
    if (variation == KOVSrvShellSection::VariationConstant) return Constant(constant);
    LayerNumber number;
    if (variation == KOVSrvShellSection::VariationDistributed)
        number.variation = Variation::ByElement;
    return number;
}

// Gives a number its source if it varies.
void Settle(LayerNumber& number, NumbersByElement& source, NumbersByElement const& stored) {
    if (number.variation != Variation::ByElement) return;
    if (stored) {
        source = stored;
    } else {
        number.variation = Variation::None;
    }
}

// The number of a solid's layer: a field of its record, or a table field.
LayerNumber OfSolid(KOVSimPosition const& layer, int field, int link, NumbersByElement& source,
                    KOVSimCollectionID const& elements) {
    KOVSimDataRecord const record = layer.GetDataRecord();
    if (record.FieldKind(field) == 'd') {
        double value = 0;
        record.GetDouble(field, value);
        return Constant(value);
    }
    LayerNumber number;
    KOVSimPosition const table = layer.GetPosition(link);
    if (table.IsNull()) return number;
    number.variation = Variation::ByElement;
    source = TableFieldNumbers(table, elements);
    return number;
}

}  // namespace

LayupReader::LayupReader(KOVObjDocument const& document, bool values)
    : m_document(document),
      m_values(values),
      m_elements(KOVObjMesh(document.GetMesh()).GetElementCollection().GetCollection()) {}

Layup LayupReader::OfSection(std::string const& name) {
    int const map = schema::Model_sections();
    KeyedObject const found = FindInMap(m_document, name, map);
    if (found.position.IsNull()) {
        throw DocumentFault("no section named '" + Shown(name) + "'" +
                            NearestHint(NearestInMaps(m_document, name, {map})));
    }
    SectionContent const content = ReadSection(found.position, m_names);
    std::string const called = "section " + NameText(found.key);
    if (!content.IsLayered()) RefuseWithoutLayers(content, called);
    Uses const uses = UsesOf(m_document, found.position, found.key);
    if (uses.empty()) throw DocumentFault(called + " is assigned to no elements");
    return Read(found.position, content, found.key, uses, nullptr, {}, nullptr);
}

Layup LayupReader::OfElement(std::string const& instance, int label) {
    MeshLabels const labels(m_document, KOVObjLabelerElements);
    int const ordinal = ElementOrdinal(m_document, labels, instance, label);
    std::string const called = "element " + std::to_string(label) + " of " + NameText(instance);
    // The services want each assignment to be complete.
    Uses const all = AllUses(m_document);
    KOVSimCollection elements(m_elements);
    KOVSimCSetID const one = elements.CreateTempCSet(&ordinal, 1, false);
    KOVSimPosition const assignment =
        KOVSrvSectionServices::GetSectionAssignment(KOVSimPosition(one));
    if (assignment.IsNull()) throw DocumentFault(called + " is in no section");
    KOVSimPosition const section = assignment.GetPosition(schema::SectionAssignment_section());
    std::string const name = m_names.Of(section, schema::Model_sections());
    SectionContent const content = ReadSection(section, m_names);
    if (!content.IsLayered())
        RefuseWithoutLayers(content, called + " is in section " + NameText(name) + ", which");
    Uses uses;
    SectionUse const* governing = nullptr;
    for (SectionUse const& use : all) {
        if (use.section.ID() == section.ID()) uses.push_back(use);
        if (use.assignment.ID() == assignment.ID()) governing = &use;
    }
    Layup::Element element{instance, label, {}};
    for (ElementGroup const& group : ElementGroups(m_document)) {
        if (group.elements.CollectionID() == m_elements && group.elements.Contains(ordinal))
            element.type = group.name;
    }
    KOVSimCSet const own(one);
    return Read(section, content, name, uses, governing, element, &own);
}

void LayupReader::ForAll(std::function<void(Layup const&)> const& f) {
    std::map<KOVSimDynamicID, std::size_t, ByIdentity> places;
    std::vector<Uses> sections;
    for (SectionUse const& use : AllUses(m_document)) {
        auto const [at, fresh] = places.try_emplace(use.section.ID(), sections.size());
        if (fresh) sections.emplace_back();
        sections[at->second].push_back(use);
    }
    for (Uses const& uses : sections) {
        ThrowIfInterrupted();
        KOVSimPosition const section = uses.front().section;
        SectionContent const content = ReadSection(section, m_names);
        if (!content.IsLayered()) continue;
        std::string const name = m_names.Of(section, schema::Model_sections());
        f(Read(section, content, name, uses, nullptr, {}, nullptr));
    }
}

void LayupReader::RefuseWithoutLayers(SectionContent const& content,
                                      std::string const& called) const {
    std::string text = called + " is a " + content.KindText();
    if (!content.profile.empty()) text += " of profile " + NameText(content.profile);
    if (!content.material.empty()) text += " of material " + NameText(content.material);
    throw DocumentFault(text + " and has no layers");
}

Layup LayupReader::Read(KOVSimPosition const& section, SectionContent const& content,
                        std::string const& name, Uses const& uses, SectionUse const* governing,
                        std::optional<Layup::Element> const& element, KOVSimCSet const* ofElement) {
    Layup layup;
    layup.section = name;
    layup.kind = content.kind == SectionKind::Shell ? Layup::Kind::Shell : Layup::Kind::Solid;
    layup.composite = content.composite;
    layup.gauss = content.gauss;
    layup.name = content.layup;
    layup.orientation = content.orientation;
    layup.offset = content.offset;
    layup.stackDirection = content.stackDirection;
    layup.assignments = static_cast<int>(uses.size());
    KOVSimCSet const all = ElementsOf(uses, m_elements);
    layup.elementCount = all.Size();
    layup.element = element;
    KOVSimCSet const& shown = ofElement == nullptr ? all : *ofElement;
    if (m_values) {
        layup.elements.resize(static_cast<std::size_t>(shown.Size()));
        shown.Members(layup.elements.data());
    }
    LayerSources sources;
    if (layup.kind == Layup::Kind::Shell) {
        ReadShell(layup, sources, section, content, governing == nullptr ? uses : Uses{*governing});
    } else {
        ReadSolid(layup, sources, section);
    }
    ReadLayerNumbers(layup, sources, shown, m_values);
    return layup;
}

void LayupReader::ReadShell(Layup& layup, LayerSources& sources, KOVSimPosition const& section,
                            SectionContent const& content, Uses const& uses) {
    CheckStores();
    KOVSimPosition const model = m_document.GetModel();
    KOVSimCollectionID const sections =
        model.GetPosition(schema::Model_bulkSections()).GetCollection();
    KOVSimDynamicID const id = section.ID();
    std::string const called = "section " + NameText(layup.section);
    if (sections.IsNull() || id.category != KOVSimCategoryMember ||
        id.data.parent != sections.Minor()) {
        throw DocumentFault(called + " is not among the shell sections that have layers");
    }
    if (content.layers > SpaceAt(model.GetPosition(schema::Model_bulkLayerSlots()))) {
        throw DocumentFault(called + " has " + std::to_string(content.layers) +
                            " layers, more than the model has layer slots");
    }
    auto const count = static_cast<std::size_t>(content.layers);
    layup.layers.resize(count);
    sources.thickness.resize(count);
    sources.angle.resize(count);
    bool first = true;
    for (SectionUse const& use : uses) {
        KOVSrvShellSection const shell(use.assignment);
        for (int i = 0; i < content.layers; ++i) {
            Layer& layer = layup.layers[static_cast<std::size_t>(i)];
            LayerNumber const thickness =
                OfShell(shell.GetThicknessVariation()[i], shell.GetConstThicknesses()[i]);
            LayerNumber const angle =
                OfShell(shell.GetRotationAngleVariation()[i], shell.GetConstRotationAngles()[i]);
            if (!first) {
                // A layer varies where all assignments have numbers for it.
                if (thickness.variation == Variation::None) layer.thickness = thickness;
                if (angle.variation == Variation::None) layer.angle = angle;
                continue;
            }
            layer.thickness = thickness;
            layer.angle = angle;
            layer.material = m_names.Of(shell.GetMaterials()[i], schema::MaterialLib_materials());
            layer.orientation =
                m_names.Of(shell.GetOrientations()[i], schema::Model_orientationsByName());
            layer.ply = m_names.Of(shell.GetPlies()[i], schema::Model_plies());
            int const points = shell.GetSectionPoints()[i];
            if (points >= 0) layer.sectionPoints = points;
        }
        first = false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        Layer& layer = layup.layers[i];
        Settle(layer.thickness, sources.thickness[i], m_thicknesses->Layer(static_cast<int>(i)));
        Settle(layer.angle, sources.angle[i], m_angles->Layer(static_cast<int>(i)));
    }
}

void LayupReader::ReadSolid(Layup& layup, LayerSources& sources, KOVSimPosition const& section) {
    KOVSimVector const layers = section.GetVector(schema::Section_layers());
    for (KOVSimVectoriterator at = layers.Begin(); at.NotDone(); ++at) {
        KOVSimPosition const record = *at;
        Layer& layer = layup.layers.emplace_back();
        layer.thickness = OfSolid(record, kLayerThickness, schema::Layer_thicknessField(),
                                  sources.thickness.emplace_back(), m_elements);
        layer.angle = OfSolid(record, kLayerAngle, schema::Layer_angleField(),
                              sources.angle.emplace_back(), m_elements);
        layer.material = m_names.Of(record.GetPosition(schema::Layer_material()),
                                    schema::MaterialLib_materials());
        layer.orientation = m_names.Of(record.GetPosition(schema::Layer_orientation()),
                                       schema::Model_orientationsByName());
        layer.ply = m_names.Of(record.GetPosition(schema::Layer_ply()), schema::Model_plies());
        if (record.GetDataRecord().FieldKind(kLayerPoints) == 'i') {
            int points = 0;
            record.GetDataRecord().GetInt(kLayerPoints, points);
            layer.sectionPoints = points;
        }
    }
}

// Once for the document: the stores of layer data are over the collections that the services read
// them by.
void LayupReader::CheckStores() {
    if (m_thicknesses) return;
    CheckStore(schema::BulkShellLayers_materials(), false, "materials");
    CheckStore(schema::BulkShellLayers_orientations(), false, "orientations");
    CheckStore(schema::BulkShellLayers_plies(), false, "plies");
    CheckStore(schema::BulkShellLayers_sectionPoints(), false, "section points");
    CheckStore(schema::BulkShellLayers_constThicknesses(), true, "constant thicknesses");
    CheckStore(schema::BulkShellLayers_constAngles(), true, "constant angles");
    KOVSimPosition const model = m_document.GetModel();
    KOVSimPosition const bulk = model.GetPosition(schema::Model_bulkShellLayers());
    KOVSimCollectionID const slots =
        model.GetPosition(schema::Model_bulkLayerSlots()).GetCollection();
    m_thicknesses.emplace(bulk.GetPosition(schema::BulkShellLayers_distThicknesses()), slots,
                          m_elements, "distributed thicknesses");
    m_angles.emplace(bulk.GetPosition(schema::BulkShellLayers_distAngles()), slots, m_elements,
                     "distributed angles");
}

void LayupReader::CheckStore(int member, bool meshed, char const* called) const {
    KOVSimPosition const model = m_document.GetModel();
    KOVSimPosition const store =
        model.GetPosition(schema::Model_bulkShellLayers()).GetPosition(member);
    if (store.IsNull()) return;
    KOVSimDistributionID const id =
        meshed ? KOVObjMeshedField(store).GetDistribution().GetDistribution()
               : store.GetDistribution();
    std::string const text = std::string("the ") + called + " of the bulk layers ";
    if (id.IsNull()) throw DocumentFault(text + "have no distribution");
    KOVSimDistribution const distribution(id);
    bool const real = distribution.Range().Key() == KOVSimTypeKeyDouble;
    if (distribution.NumDimensions() != 2 || real != meshed ||
        distribution.Grid().Collections().ConstGet(0) !=
            model.GetPosition(schema::Model_bulkLayerSlots()).GetCollection() ||
        distribution.Grid().Collections().ConstGet(1) !=
            model.GetPosition(schema::Model_bulkSections()).GetCollection()) {
        throw DocumentFault(text + "are not " + (meshed ? "real" : "whole") +
                            " numbers by layer slot and section");
    }
}

}  // namespace kov::tool
