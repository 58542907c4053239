// Models with sections and layers, made through the library as any writer may make them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "KOVSimGrid.h"
#include "KOVSimRangeType.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "KOVSrvBulkShellLayers.h"
#include "ModelBuilder.h"

namespace kov::test {

/// A layer as it is written. Numbers by element go to a table field; with a constant as well, the
/// constant counts.
struct LayerMade {
    std::string material;
    std::string ply;
    std::string orientation;
    std::optional<int> points;
    std::optional<double> thickness;
    std::optional<double> angle;
    std::map<int, double> thicknesses;
    std::map<int, double> angles;
};

class SectionBuilder {
  public:
    using Ints = ModelBuilder::Ints;

    explicit SectionBuilder(KOVObjDocument const& document)
        : model(document), m_document(document), m_top(document.GetModel()) {
        for (auto const& [member, type] :
             {std::pair{schema::Model_bulkSections(), schema::BulkSection()},
              {schema::Model_bulkPlies(), schema::BulkPly()},
              {schema::Model_bulkLayerSlots(), schema::BulkLayerSlot()},
              {schema::Model_orientations(), schema::OrientationCollection()}}) {
            if (m_top.GetPosition(member).IsNull())
                m_top.SetPosition(member, KOVSimPosition(m_top.CreateTypedCollection(0, type)));
        }
    }

    /// Ends the transaction and writes the layers of shells.
    void Commit() {
        model.Commit();
        omi_Singleton<KOVSrvBulkShellLayers>::Instance()->WriteBulkDistributions(
            m_document.Focus());
    }

    KOVSimPosition Material(std::string const& name) {
        return Named(m_materials, name, m_document.GetMaterialCollection(), schema::Material(), -1);
    }
    KOVSimPosition Orientation(std::string const& name) {
        return Named(m_orientations, name, m_top.GetPosition(schema::Model_orientations()),
                     schema::Orientation(), schema::Model_orientationsByName());
    }
    KOVSimPosition Ply(std::string const& name) {
        return Named(m_plies, name, m_top.GetPosition(schema::Model_bulkPlies()), schema::Ply(),
                     schema::Model_plies());
    }

    KOVSimPosition Shell(std::string const& name, std::vector<LayerMade> const& layers,
                         bool composite = true) {
        KOVSimPosition const sections = m_top.GetPosition(schema::Model_bulkSections());
        KOVSimPosition const shell = sections.AppendMember(schema::Section_Shell());
        shell.GetDataRecord().SetInt(0, static_cast<int>(layers.size()));
        shell.GetDataRecord().SetSymb(9, composite ? 1 : 0);
        Put(schema::Model_sections(), name, shell);
        KOVSimPosition const slots = m_top.GetPosition(schema::Model_bulkLayerSlots());
        while (KOVSimCollection(slots.GetCollection()).Space() < static_cast<int>(layers.size()))
            slots.AppendMember(schema::BulkLayerSlot());
        KOVSrvBulkShellLayers& bulk = *omi_Singleton<KOVSrvBulkShellLayers>::Instance();
        int const section = Index(shell);
        int number = 0;
        for (LayerMade const& layer : layers) {
            if (!layer.material.empty())
                bulk.AppendMaterial(number, section, Index(Material(layer.material)));
            if (!layer.orientation.empty())
                bulk.AppendOrientation(number, section, Index(Orientation(layer.orientation)));
            if (!layer.ply.empty()) bulk.AppendPly(number, section, Index(Ply(layer.ply)));
            if (layer.points) bulk.AppendNumSectionPoints(number, section, *layer.points);
            if (layer.thickness) bulk.AppendConstThickness(number, section, *layer.thickness);
            if (layer.angle) bulk.AppendConstAngle(number, section, *layer.angle);
            if (!layer.thicknesses.empty())
                bulk.AppendDistThickness(number, Members(layer.thicknesses),
                                         Field(layer.thicknesses));
            if (!layer.angles.empty())
                bulk.AppendDistAngle(number, Members(layer.angles), Field(layer.angles));
            ++number;
        }
        return shell;
    }
    /// A composite solid, or a homogeneous one of a material.
    KOVSimPosition Solid(std::string const& name, std::vector<LayerMade> const& layers,
                         std::string const& material = {}) {
        KOVSimPosition const solid = Section(name, schema::Section_Solid(), material);
        for (LayerMade const& layer : layers) {
            KOVSimPosition const made = model.Record(schema::Layer());
            KOVSimDataRecord const record = made.GetDataRecord();
            if (layer.thickness) record.SetDouble(0, *layer.thickness);
            if (layer.points) record.SetInt(1, *layer.points);
            if (layer.angle) record.SetDouble(2, *layer.angle);
            if (!layer.material.empty())
                made.SetPosition(schema::Layer_material(), Material(layer.material));
            if (!layer.orientation.empty())
                made.SetPosition(schema::Layer_orientation(), Orientation(layer.orientation));
            if (!layer.ply.empty()) made.SetPosition(schema::Layer_ply(), Ply(layer.ply));
            if (!layer.thicknesses.empty())
                made.SetPosition(schema::Layer_thicknessField(), Field(layer.thicknesses));
            if (!layer.angles.empty())
                made.SetPosition(schema::Layer_angleField(), Field(layer.angles));
            solid.GetVector(schema::Section_layers()).PushBack(made);
        }
        return solid;
    }
    KOVSimPosition Section(std::string const& name, int type, std::string const& material) {
        KOVSimPosition const section = model.Record(type);
        if (!material.empty()) section.SetPosition(schema::Section_material(), Material(material));
        Put(schema::Model_sections(), name, section);
        return section;
    }

    KOVSimPosition ElementSet(char const* key, Ints const& members) {
        KOVSimPosition const set = model.ElementSet(members);
        model.Put(schema::Model_elementSets(), key, set);
        return set;
    }
    /// Null positions are left out.
    KOVSimPosition Assign(KOVSimPosition const& section, KOVSimPosition const& elements,
                          bool withRegion = true) {
        KOVSimPosition const made = model.Record(schema::SectionAssignment());
        if (withRegion) {
            KOVSimPosition const region = model.Record(schema::Region());
            if (!elements.IsNull()) region.SetPosition(schema::Region_elementsCluster(), elements);
            made.SetPosition(schema::SectionAssignment_region(), region);
        }
        if (!section.IsNull()) made.SetPosition(schema::SectionAssignment_section(), section);
        m_top.GetVector(schema::Model_sectionAssignments()).PushBack(made);
        return made;
    }
    KOVSimPosition Assign(KOVSimPosition const& section, Ints const& members) {
        return Assign(section, model.ElementSet(members));
    }

    /// A table field with these numbers, and `fill` elsewhere.
    KOVSimPosition Field(std::map<int, double> const& values,
                         std::optional<double> const& fill = 0) {
        KOVSimPosition const field = model.Record(schema::Field_FTable());
        field.GetDataRecord().SetInt(0, fill ? 1 : 0);
        double const first = fill.value_or(0);
        KOVBasVector<KOVString> labels(0);
        KOVBasVector<KOVString> column(1);
        column[0] = "VALUE";
        field.SetPosition(
            schema::FieldFTable_table(),
            KOVSimPosition(m_top.CreateFTable(schema::FTable(), 1, labels, column, &first, 1)));
        KOVSimCollection columns(m_document.Focus()
                                     .GetPosition(schema::Focus_sharedCollections())
                                     .GetPosition(schema::SharedCollections_fieldColumns())
                                     .GetCollection());
        KOVSimGrid::CollectionArray grid(2);
        grid.Get(0) = model.Elements().ID();
        grid.Get(1) = columns.ID();
        KOVSimDistributionID const id =
            field.CreateTypedDistribution(KOVSimGrid(grid), schema::TableFieldDistribution(),
                                          KOVSimRangeType(KOVSimTypeKeyDouble));
        field.SetPosition(schema::FieldFTable_distribution(), KOVSimPosition(id));
        std::vector<double> numbers;
        for (auto const& [element, value] : values) numbers.push_back(value);
        KOVSimCSetID const rows = Members(values).GetCSet();
        KOVSimCSetID const one = columns.CreateCSetStrided(0, 1, 1, 1);
        KOVSimTransfer make{KOVSimDistribution(id)};
        make.SetMakeNewDrawer().SetBufferPadding(false);
        make.SetDim(0, rows).SetDim(1, one).CheckView().ExecMake();
        KOVSimTransfer write{KOVSimDistribution(id)};
        write.SetWrite().SetBufferPadding(false).SetDrawer(make.DrawerID());
        write.SetDim(0, rows).SetDim(1, one).CheckView();
        write.SetBuffer(0, numbers.data(), numbers.size() * sizeof(double)).ExecWrite();
        write.RelinquishBuffers();
        return field;
    }

    ModelBuilder model;

  private:
    int Index(KOVSimPosition const& record) const { return m_document.GetCMemberIndex(record); }
    KOVSimPosition Members(std::map<int, double> const& values) {
        Ints members;
        for (auto const& [element, value] : values) members.push_back(element);
        return model.ElementSet(members);
    }
    void Put(int map, std::string const& name, KOVSimPosition const& object) const {
        object.SetName(name.c_str());
        m_top.GetMap(map).Insert(name.c_str(), object);
    }
    KOVSimPosition Named(std::map<std::string, KOVSimPosition>& all, std::string const& name,
                         KOVSimPosition const& collection, int type, int map) {
        auto const [at, fresh] = all.try_emplace(name);
        if (!fresh) return at->second;
        at->second = collection.AppendMember(type);
        at->second.SetName(name.c_str());
        if (map >= 0) m_top.GetMap(map).Insert(name.c_str(), at->second);
        return at->second;
    }

    KOVObjDocument m_document;
    KOVSimPosition m_top;
    std::map<std::string, KOVSimPosition> m_materials;
    std::map<std::string, KOVSimPosition> m_orientations;
    std::map<std::string, KOVSimPosition> m_plies;
};

}  // namespace kov::test
