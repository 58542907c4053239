#include "KOVSrvBulkShellLayers.h"

#include <algorithm>
#include <cstddef>

#include "KOVAssert.h"
#include "KOVObjMesh.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimFTable.h"
#include "KOVSimTransaction.h"
#include "KOVSimVector.h"
#include "ShellLayerStore.h"

namespace {

using Integers = ShellLayerNumbers<int>;
using Reals = ShellLayerNumbers<double>;

// Members of a collection with their values.
template <class Number>
using Values = KOVBasVector<KOVBasPair<int, Number>>;

template <class Entry>
void Append(KOVBasMap<int, KOVBasVector<Entry>>& layers, int layer, Entry const& entry) {
    KOVBasVector<Entry>* entries = layers.Find(layer);
    if (!entries) {
        layers.InsertUnique(layer, {});
        entries = layers.Find(layer);
    }
    entries->PushBack(entry);
}

// Puts values into ascending order of the members; of several for one member the first stays.
template <class Number>
void Settle(Values<Number>& values) {
    auto const before = [](auto const& a, auto const& b) { return a.first < b.first; };
    auto const notBefore = [&](auto const& a, auto const& b) { return !before(a, b); };
    if (std::adjacent_find(values.begin(), values.end(), notBefore) == values.end()) return;
    std::stable_sort(values.begin(), values.end(), before);
    auto const end = std::unique(values.begin(), values.end(),
                                 [](auto const& a, auto const& b) { return a.first == b.first; });
    values.Resize(static_cast<int>(end - values.begin()));
}

// Settles the values of one layer, and writes them.
template <class Number, class Check>
void WriteLayer(ShellLayerStore& store, int layer, Values<Number>& values, Check const& check) {
    Settle(values);
    auto const n = static_cast<std::size_t>(values.Size());
    Integers members(n);
    ShellLayerNumbers<Number> numbers(n);
    std::size_t i = 0;
    for (auto const& [member, number] : values) {
        members[i] = member;
        numbers[i++] = number;
    }
    store.WriteLayer(layer, members, numbers, [&](unsigned long len) { check(len, numbers); });
}

void ReadField(KOVSimPosition const& elementSet, KOVSimPosition const& field,
               Values<double>& values) {
    KOVSimPosition const table = field.GetPosition(schema::FieldFTable_table());
    if (table.IsNull()) return;
    double fill = 0.0;
    KOVSimFTable(table.GetFTable()).GetData(&fill, 1);
    KOVSimPosition const position = field.GetPosition(schema::FieldFTable_distribution());
    if (position.IsNull()) return;

    KOVSimDistribution const distribution(position.GetDistribution());
    KOVSimArray<KOVSimDrawerID, KOVSimArrayCopyClassPolicy<KOVSimDrawerID>> drawers;
    distribution.DrawerIDArray(drawers);
    KOVSimDrawerID const drawer = drawers.ConstGet(0);
    KOVSimCSet const elements(elementSet.GetCSet());
    KOVSimCSet const columns = distribution.DrawerDescription(drawer).compartment.CSet(1);

    KOVSimTransfer read(distribution);
    read.SetRead().SetDrawer(drawer).SetBufferPadding(false).SetBufferType(KOVSimTypeKeyDouble);
    read.SetDim(0, elements).SetDim(1, columns).CheckView();
    auto const n = static_cast<std::size_t>(elements.Size());
    std::size_t const size = n * static_cast<std::size_t>(columns.Size());
    // At least one number for each element, also if the drawer has no column.
    Reals buffer(std::max(size, n), fill);
    read.SetBuffer(0, buffer.data(), size * sizeof(double)).ExecRead().RelinquishBuffers();

    std::size_t i = 0;
    KOVSimCSetIterator element(elements);
    for (element.First(); !element.IsDone(); element.Next()) {
        values.PushBack({element.CurrentValue(), buffer[i++]});
    }
}

// The texts of the conditions are contract, spaces included.
// clang-format off

void CheckIntegers(unsigned long len, Integers const& buffer) {
    KOV_THROW_ASSERT(len == buffer.size()*sizeof(int));
}

void CheckReals(unsigned long len, Reals const& buffer) {
    KOV_THROW_ASSERT(len == buffer.size()*sizeof(double));
}

void CheckThicknesses(unsigned long len, Reals const& thicknesses) {
    KOV_THROW_ASSERT(len == thicknesses.size()*sizeof(double));
}

void CheckAngles(unsigned long len, Reals const& angles) {
    KOV_THROW_ASSERT(len == angles.size()*sizeof(double));
}

// clang-format on

// Where a store goes: the bulk record, and the collections of its grid.
struct Place {
    KOVSimPosition const& bulkRecord;
    KOVSimPosition const& layerSlots;
    KOVSimPosition columns;

    ShellLayerStore NewStore(int type, KOVSimRangeType const& range) const {
        return {bulkRecord, layerSlots, columns, type, range};
    }
};

KOVSimRangeType MembersOf(KOVSimPosition const& collection) {
    return {KOVSimTypeKeyMember, collection.GetCollection()};
}

void WriteIntegers(Place const& place, KOVSimRangeType const& range, int member,
                   KOVBasMap<int, Values<int>>& layers) {
    ShellLayerStore store = place.NewStore(schema::BulkLayerSectionDistribution(), range);
    for (auto& [layer, values] : layers) WriteLayer(store, layer, values, CheckIntegers);
    place.bulkRecord.SetPosition(member, store.Distribution());
    layers.Clear();
}

void WriteConstants(Place const& place, KOVObjDocument const& document, char const* label,
                    int member, KOVBasMap<int, Values<double>>& layers) {
    ShellLayerStore store = place.NewStore(schema::BulkLayerSectionDistribution(),
                                           KOVSimRangeType(KOVSimTypeKeyDouble));
    KOVSimPosition const field = store.MakeField(document, label);
    for (auto& [layer, values] : layers) WriteLayer(store, layer, values, CheckReals);
    place.bulkRecord.SetPosition(member, field);
    layers.Clear();
}

template <class FieldLayers, class Check>
void WriteDistributed(Place const& place, KOVObjDocument const& document, char const* label,
                      int member, FieldLayers& layers, Check const& check) {
    ShellLayerStore store = place.NewStore(schema::BulkLayerElementDistribution(),
                                           KOVSimRangeType(KOVSimTypeKeyDouble));
    KOVSimPosition const field = store.MakeField(document, label);
    for (auto const& [layer, pairs] : layers) {
        Values<double> values;
        for (auto const& [elementSet, table] : pairs) {
            if (!elementSet.IsNull() && !table.IsNull()) ReadField(elementSet, table, values);
        }
        WriteLayer(store, layer, values, check);
    }
    place.bulkRecord.SetPosition(member, field);
    layers.Clear();
}

// The object at `member` of the model; `make` makes it where there is none.
template <class Make>
KOVSimPosition FoundOrMade(KOVSimPosition const& model, int member, Make const& make) {
    KOVSimPosition position = model.GetPosition(member);
    if (position.IsNull()) {
        position = make();
        model.SetPosition(member, position);
    }
    return position;
}

}  // namespace

KOVSrvBulkShellLayers::KOVSrvBulkShellLayers() = default;
KOVSrvBulkShellLayers::~KOVSrvBulkShellLayers() = default;

void KOVSrvBulkShellLayers::AppendMaterial(int layer, int section, int material) {
    Append(m_materials, layer, {section, material});
}

void KOVSrvBulkShellLayers::AppendOrientation(int layer, int section, int orientation) {
    Append(m_orientations, layer, {section, orientation});
}

void KOVSrvBulkShellLayers::AppendPly(int layer, int section, int ply) {
    Append(m_plies, layer, {section, ply});
}

void KOVSrvBulkShellLayers::AppendNumSectionPoints(int layer, int section, int count) {
    Append(m_numSectionPoints, layer, {section, count});
}

void KOVSrvBulkShellLayers::AppendConstThickness(int layer, int section, double thickness) {
    Append(m_constThicknesses, layer, {section, thickness});
}

void KOVSrvBulkShellLayers::AppendConstAngle(int layer, int section, double angle) {
    Append(m_constAngles, layer, {section, angle});
}

void KOVSrvBulkShellLayers::AppendDistThickness(int layer, KOVSimPosition elementSet,
                                                KOVSimPosition field) {
    Append(m_distThicknesses, layer, FieldPair(elementSet, field));
}

void KOVSrvBulkShellLayers::AppendDistAngle(int layer, KOVSimPosition elementSet,
                                            KOVSimPosition field) {
    Append(m_distAngles, layer, FieldPair(elementSet, field));
}

void KOVSrvBulkShellLayers::WriteBulkDistributions(KOVSimPosition position) {
    if (!m_enabled) return;
    m_document = KOVObjDocument(KOVSimDatabase(position));
    KOVSimPosition const model = m_document.GetModel();
    KOVSimVector const assignments = model.GetVector(schema::Model_sectionAssignments());
    for (KOVSimVectoriterator at = assignments.Begin(); at.NotDone(); ++at) {
        KOVSimPosition const section = (*at).GetPosition(schema::SectionAssignment_section());
        if (!section.IsA(schema::Section_Shell())) continue;
        KOVSimTransaction transaction(m_document.ContextID());
        Initialize();
        WriteMaterialDistribution();
        WriteOrientationDistribution();
        WritePlyDistribution();
        WriteSectionPointDistribution();
        WriteConstThicknessDistribution();
        WriteConstAngleDistribution();
        WriteDistThicknessDistribution();
        WriteDistAngleDistribution();
        transaction.Commit();
        return;
    }
}

void KOVSrvBulkShellLayers::Initialize() {
    if (!m_enabled) return;
    KOVSimPosition const model = m_document.GetModel();
    auto const collection = [&](int member, int type) {
        return FoundOrMade(model, member, [&] { return model.CreateTypedCollection(1, type); });
    };
    m_bulkRecord = FoundOrMade(model, schema::Model_bulkShellLayers(), [&] {
        return m_document.CreateDataRecord(schema::BulkShellLayers()).Pos();
    });
    m_sections = collection(schema::Model_bulkSections(), schema::BulkSection());
    m_plyCollection = collection(schema::Model_bulkPlies(), schema::BulkPly());
    m_layerSlots = collection(schema::Model_bulkLayerSlots(), schema::BulkLayerSlot());
    m_materialCollection = m_document.GetMaterialCollection();
    m_orientationCollection = model.GetPosition(schema::Model_orientations());
}

void KOVSrvBulkShellLayers::WriteMaterialDistribution() {
    if (!m_enabled || m_materials.Size() == 0) return;
    WriteIntegers({m_bulkRecord, m_layerSlots, m_sections}, MembersOf(m_materialCollection),
                  schema::BulkShellLayers_materials(), m_materials);
}

void KOVSrvBulkShellLayers::WriteOrientationDistribution() {
    if (!m_enabled || m_orientations.Size() == 0) return;
    WriteIntegers({m_bulkRecord, m_layerSlots, m_sections}, MembersOf(m_orientationCollection),
                  schema::BulkShellLayers_orientations(), m_orientations);
}

void KOVSrvBulkShellLayers::WritePlyDistribution() {
    if (!m_enabled || m_plies.Size() == 0) return;
    WriteIntegers({m_bulkRecord, m_layerSlots, m_sections}, MembersOf(m_plyCollection),
                  schema::BulkShellLayers_plies(), m_plies);
}

void KOVSrvBulkShellLayers::WriteSectionPointDistribution() {
    if (!m_enabled || m_numSectionPoints.Size() == 0) return;
    WriteIntegers({m_bulkRecord, m_layerSlots, m_sections}, KOVSimRangeType(KOVSimTypeKeyInt),
                  schema::BulkShellLayers_sectionPoints(), m_numSectionPoints);
}

void KOVSrvBulkShellLayers::WriteConstThicknessDistribution() {
    if (!m_enabled || m_constThicknesses.Size() == 0) return;
    WriteConstants({m_bulkRecord, m_layerSlots, m_sections}, m_document, "STH",
                   schema::BulkShellLayers_constThicknesses(), m_constThicknesses);
}

void KOVSrvBulkShellLayers::WriteConstAngleDistribution() {
    if (!m_enabled || m_constAngles.Size() == 0) return;
    WriteConstants({m_bulkRecord, m_layerSlots, m_sections}, m_document, "ANGLE",
                   schema::BulkShellLayers_constAngles(), m_constAngles);
}

void KOVSrvBulkShellLayers::WriteDistThicknessDistribution() {
    if (!m_enabled || m_distThicknesses.Size() == 0) return;
    WriteDistributed(
        {m_bulkRecord, m_layerSlots, KOVObjMesh(m_document.GetMesh()).GetElementCollection()},
        m_document, "STH", schema::BulkShellLayers_distThicknesses(), m_distThicknesses,
        CheckThicknesses);
}

void KOVSrvBulkShellLayers::WriteDistAngleDistribution() {
    if (!m_enabled || m_distAngles.Size() == 0) return;
    WriteDistributed(
        {m_bulkRecord, m_layerSlots, KOVObjMesh(m_document.GetMesh()).GetElementCollection()},
        m_document, "ANGLE", schema::BulkShellLayers_distAngles(), m_distAngles, CheckAngles);
}

void KOVSrvBulkShellLayers::ReadFieldData(KOVSimPosition elementSet, KOVSimPosition field,
                                          KOVBasMap<int, double>& values) {
    Values<double> read;
    ReadField(elementSet, field, read);
    for (auto const& [element, value] : read) values.InsertUnique(element, value);
}
