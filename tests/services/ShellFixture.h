// A document whose model assigns shell sections, the table fields of distributed values, and what
// the stores of layer data hold as plain rows.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "KOVSrvBulkShellLayers.h"
#include "KOVSrvShellSection.h"
#include "services/MeshFixture.h"

namespace kov::test {

/// Reaches into the one object: pointers to what it keeps to itself.
struct BulkFields : KOVSrvBulkShellLayers {
    static auto Document() { return &BulkFields::m_document; }
    static auto Materials() { return &BulkFields::m_materials; }
    static auto Orientations() { return &BulkFields::m_orientations; }
    static auto Plies() { return &BulkFields::m_plies; }
    static auto NumSectionPoints() { return &BulkFields::m_numSectionPoints; }
    static auto ConstThicknesses() { return &BulkFields::m_constThicknesses; }
    static auto ConstAngles() { return &BulkFields::m_constAngles; }
    static auto DistThicknesses() { return &BulkFields::m_distThicknesses; }
    static auto DistAngles() { return &BulkFields::m_distAngles; }
    static auto Enabled() { return &BulkFields::m_enabled; }
    static auto BulkRecord() { return &BulkFields::m_bulkRecord; }
    static auto LayerSlots() { return &BulkFields::m_layerSlots; }
    static auto Sections() { return &BulkFields::m_sections; }
    static auto MaterialCollection() { return &BulkFields::m_materialCollection; }
    static auto OrientationCollection() { return &BulkFields::m_orientationCollection; }
    static auto PlyCollection() { return &BulkFields::m_plyCollection; }
};

inline KOVSrvBulkShellLayers& Bulk() { return *omi_Singleton<KOVSrvBulkShellLayers>::Instance(); }
inline void EndBulk() { omi_SingletonBase<KOVSrvBulkShellLayers>::Finalize(); }

/// How many entries of each of the eight kinds are held, layers counted.
inline std::vector<int> LayersHeld() {
    KOVSrvBulkShellLayers& bulk = Bulk();
    return {(bulk.*BulkFields::Materials()).Size(),
            (bulk.*BulkFields::Orientations()).Size(),
            (bulk.*BulkFields::Plies()).Size(),
            (bulk.*BulkFields::NumSectionPoints()).Size(),
            (bulk.*BulkFields::ConstThicknesses()).Size(),
            (bulk.*BulkFields::ConstAngles()).Size(),
            (bulk.*BulkFields::DistThicknesses()).Size(),
            (bulk.*BulkFields::DistAngles()).Size()};
}
inline std::vector<int> const kNothingHeld(8, 0);

/// One drawer of a store.
struct Row {
    std::vector<int> layers, members;
    std::vector<double> values;
    bool operator==(Row const& other) const {
        return layers == other.layers && members == other.members && values == other.values;
    }
};
inline std::ostream& operator<<(std::ostream& out, Row const& row) {
    return out << "layers " << testing::PrintToString(row.layers) << " members "
               << testing::PrintToString(row.members) << " values "
               << testing::PrintToString(row.values);
}
using Rows = std::vector<Row>;

/// The drawers of a distribution in the order of making, read whole; integers as doubles.
inline Rows RowsOf(KOVSimDistributionID const& id) {
    KOVSimDistribution const distribution(id);
    Rows rows;
    for (KOVSimPersistentDrawerDesc const& drawer : MeshDocument::Drawers(distribution)) {
        Row row{Members(drawer.compartment.CSet(0)), Members(drawer.compartment.CSet(1)), {}};
        row.values.assign(row.layers.size() * row.members.size(), -99);
        KOVSimTransfer read(distribution);
        read.SetRead().SetBufferPadding(false).SetBufferType(KOVSimTypeKeyDouble);
        read.SetDrawer(drawer.drawerID);
        read.SetDim(0, drawer.compartment.CSet(0)).SetDim(1, drawer.compartment.CSet(1));
        read.CheckView().SetBuffer(0, row.values.data(), row.values.size() * sizeof(double));
        read.ExecRead().RelinquishBuffers();
        rows.push_back(row);
    }
    return rows;
}

class ShellDocument : public MeshDocument {
  public:
    using MeshDocument::MeshDocument;

    KOVSimPosition Model() const { return document.GetModel(); }
    KOVSimPosition BulkRecord() const {
        return Model().GetPosition(schema::Model_bulkShellLayers());
    }
    KOVSimPosition BulkMember(int member) const { return BulkRecord().GetPosition(member); }
    KOVSimPosition Sections() const { return Model().GetPosition(schema::Model_bulkSections()); }
    KOVSimPosition Slots() const { return Model().GetPosition(schema::Model_bulkLayerSlots()); }
    KOVSimPosition Plies() const { return Model().GetPosition(schema::Model_bulkPlies()); }
    KOVSimPosition Orientations() const {
        return Model().GetPosition(schema::Model_orientations());
    }

    /// The collections that layers are members of, and 10 materials, plies and orientations. In a
    /// transaction, as all that follows.
    void AddCollections(int slots = 5, int sections = 8) const {
        auto const add = [&](int member, int count, int type) {
            Model().SetPosition(member, Model().CreateTypedCollection(count, type));
        };
        add(schema::Model_bulkLayerSlots(), slots, schema::BulkLayerSlot());
        add(schema::Model_bulkSections(), sections, schema::BulkSection());
        add(schema::Model_bulkPlies(), 10, schema::BulkPly());
        add(schema::Model_orientations(), 10, schema::OrientationCollection());
        KOVSimCollection(document.GetMaterialCollection().GetCollection()).ExtendSpace(10);
    }
    /// Assigns member `section` of the bulk sections, as a shell of so many layers, to elements.
    void Assign(int section, int layers, std::vector<int> const& members) const {
        KOVSimPosition const shell = Sections().CreateMember(section, schema::Section_Shell());
        shell.DataRecord().SetInt(0, layers);
        Assign(shell, members);
    }
    void Assign(KOVSimPosition const& section, std::vector<int> const& members) const {
        KOVSimPosition const region = document.CreateDataRecord(schema::Region()).Pos();
        region.SetPosition(schema::Region_elementsCluster(), ElementSet(members));
        KOVSimPosition const made = document.CreateDataRecord(schema::SectionAssignment()).Pos();
        made.SetPosition(schema::SectionAssignment_section(), section);
        made.SetPosition(schema::SectionAssignment_region(), region);
        Model().GetVector(schema::Model_sectionAssignments()).PushBack(made);
    }
    KOVSimPosition Assignment(int index) const {
        KOVSimVectoriterator at = Model().GetVector(schema::Model_sectionAssignments()).Begin();
        while (index-- > 0) ++at;
        return *at;
    }
    KOVSimPosition ElementSet(std::vector<int> const& members) const {
        return KOVSimCollection(elements).CreateCSet(members.data(),
                                                     static_cast<int>(members.size()), false);
    }
    KOVSimPosition FieldColumns() const {
        return document.Focus()
            .GetPosition(schema::Focus_sharedCollections())
            .GetPosition(schema::SharedCollections_fieldColumns());
    }
    KOVSimDistributionID NewFieldDistribution() const {
        return NewDistribution(elements, KOVSimCollection(FieldColumns().GetCollection()),
                               KOVSimRangeType(KOVSimTypeKeyDouble));
    }
    /// A drawer of elements x columns 0, 1, ..., `values` element after element.
    void AddFieldDrawer(KOVSimDistributionID const& distribution, std::vector<int> const& members,
                        std::vector<double> const& values, int columns = 1) const {
        NewDrawer(distribution, Elements(members),
                  Set(KOVSimCollection(FieldColumns().GetCollection()), Range(0, columns)), values);
    }
    /// A table field with one drawer; elsewhere its value is `fill`.
    KOVSimPosition NewField(std::vector<int> const& members, std::vector<double> const& values,
                            double fill = 0, int columns = 1) const {
        KOVSimPosition const field = NewTableField(fill);
        KOVSimDistributionID const distribution = NewFieldDistribution();
        AddFieldDrawer(distribution, members, values, columns);
        field.SetPosition(schema::FieldFTable_distribution(), distribution);
        return field;
    }
    /// A table field without distribution.
    KOVSimPosition NewTableField(double fill) const {
        KOVSimPosition const field = document.CreateDataRecord(schema::Field_FTable()).Pos();
        KOVBasVector<KOVString> labels(0), column(1);
        column[0] = "VALUE";
        field.SetPosition(schema::FieldFTable_table(),
                          Model().CreateFTable(schema::FTable(), 1, labels, column, &fill, 1));
        return field;
    }

    /// The distribution of a bulk member, linked itself or through a meshed field.
    KOVSimDistributionID Store(int member) const {
        KOVSimPosition const position = BulkMember(member);
        if (!position.GetDistribution().IsNull()) return position.GetDistribution();
        return KOVObjMeshedField(position).GetDistribution().GetDistribution();
    }
    Rows StoredRows(int member) const { return RowsOf(Store(member)); }
    void WriteBulk() const { Bulk().WriteBulkDistributions(document.Focus()); }
};

/// A document with the collections, and with section 0 of 2 layers on the elements 0 to 9.
class ShellTest : public testing::TestWithParam<Medium> {
  protected:
    ShellTest() {
        InTransaction([&] {
            mesh.AddCollections();
            mesh.Assign(0, 2, Range(0, 10));
        });
    }
    ~ShellTest() override { EndBulk(); }
    template <class Work>
    void InTransaction(Work work) {
        auto const transaction = mesh.Write();
        work();
        transaction->Commit();
    }
    void WriteAndReopen() {
        mesh.WriteBulk();
        mesh.Reopen();
    }

    ShellDocument mesh{GetParam(), 10, 100};
};

/// `work` raises the plain throwing form's exception, with that condition, from that source.
template <class Work>
void ExpectThrownAssertion(std::string const& condition, std::string const& source, Work work) {
    try {
        work();
        FAIL() << "nothing was raised";
    } catch (KOVBasAssertException const& failure) {
        EXPECT_STREQ(failure.what(), condition.c_str());
        EXPECT_THAT(failure.SourcePath(),
                    testing::EndsWith("KOVSrvSimServices/KOVSrvFsm.m/src/" + source));
        EXPECT_GT(failure.Line(), 0);
    }
}

}  // namespace kov::test
