#include "KOVSrvShellSection.h"

#include <algorithm>
#include <limits>

#include "KOVAssert.h"
#include "KOVObjMeshedField.h"
#include "KOVSimCollection.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"

namespace {

constexpr int kNoEntry = -1;
constexpr double kNoConstant = -std::numeric_limits<double>::max();
constexpr int kLayerCountField = 0;

// Replaces the elements by `size` new ones.
template <class T>
void Refill(KOVBasVector<T>& vector, int size, T const& value) {
    KOVBasVector<T> fresh(size);
    std::fill(fresh.begin(), fresh.end(), value);
    vector.swap(fresh);
}

// Told without describing the drawers.
bool HasDrawers(KOVSimDistribution const& distribution) {
    KOVSimArray<KOVSimDrawerID, KOVSimArrayCopyClassPolicy<KOVSimDrawerID>> drawers;
    distribution.DrawerIDArray(drawers);
    return drawers.Size() > 0;
}

KOVSimDistribution DistributionOf(KOVSimPosition const& field) {
    return KOVSimDistribution(KOVObjMeshedField(field).GetDistribution().GetDistribution());
}

}  // namespace

KOVSrvShellSection::KOVSrvShellSection(KOVSimPosition const& assignment)
    : m_assignment(assignment), m_document(KOVSimDatabase(assignment)) {
    KOVSimPosition const section = assignment.GetPosition(schema::SectionAssignment_section());
    m_elementSet = assignment.GetPosition(schema::SectionAssignment_region())
                       .GetPosition(schema::Region_elementsCluster())
                       .CSet();
    section.DataRecord().GetInt(kLayerCountField, m_numLayers);
    if (m_numLayers == 0) {
        m_materialsRead = m_orientationsRead = m_pliesRead = m_sectionPointsRead = true;
        return;
    }
    KOVSimPosition const model = m_document.GetModel();
    KOVSimPosition const sections = model.GetPosition(schema::Model_bulkSections());
    KOVSimPosition const layerSlots = model.GetPosition(schema::Model_bulkLayerSlots());
    // A model without these has no layer data: there is nothing to find a place in.
    if (!layerSlots.IsNull()) {
        m_layerSet = KOVSimCollection(layerSlots.GetCollection())
                         .CreateTempCSetStrided(0, m_numLayers, 1, 1);
    }
    if (!sections.IsNull()) {
        int const index = m_document.GetCMemberIndex(section);
        m_sectionSet = KOVSimCollection(sections.GetCollection()).CreateTempCSet(&index, 1, false);
    }
    UpdateThicknesses();
    UpdateRotationAngles();
}

KOVSrvShellSection::~KOVSrvShellSection() = default;
KOVSrvShellSection::KOVSrvShellSection(KOVSrvShellSection const& other) = default;
KOVSrvShellSection& KOVSrvShellSection::operator=(KOVSrvShellSection const& other) = default;

KOVSimPosition KOVSrvShellSection::BulkMember(int member) const {
    return m_document.GetModel().GetPosition(schema::Model_bulkShellLayers()).GetPosition(member);
}

// Entries without a stored value keep what `entries` holds; all of them do where the model lacks
// the collections in which the section has its place.
void KOVSrvShellSection::ReadRow(KOVSimDistribution const& distribution, void* entries,
                                 unsigned long bytes) const {
    if (m_layerSet.IsEmpty() || m_sectionSet.IsEmpty()) return;
    KOVSimTransfer read(distribution);
    read.SetRead().SetBufferPadding(false).SetDim(0, m_layerSet).SetDim(1, m_sectionSet);
    read.CheckView().SetBuffer(0, entries, bytes).ExecRead().RelinquishBuffers();
}

// False, and nothing read, if the member is absent or has no drawer.
bool KOVSrvShellSection::ReadIntegers(int member, KOVBasVector<int>& entries) const {
    KOVSimPosition const position = BulkMember(member);
    if (position.IsNull()) return false;
    KOVSimDistribution const distribution(position.GetDistribution());
    if (!HasDrawers(distribution)) return false;
    Refill(entries, m_numLayers, kNoEntry);
    ReadRow(distribution, entries.Data(), static_cast<unsigned long>(m_numLayers) * sizeof(int));
    return true;
}

void KOVSrvShellSection::ReadRecords(int member, KOVSimPosition const& collection,
                                     KOVBasVector<KOVSimPosition>& records) const {
    if (collection.IsNull()) return;
    KOVBasVector<int> entries;
    if (!ReadIntegers(member, entries)) return;
    KOVSimCollectionID const id = collection.GetCollection();
    for (int i = 0; i < m_numLayers; ++i) {
        if (entries[i] != kNoEntry) records[i] = m_document.GetRecord(id, entries[i]);
    }
}

KOVBasVector<KOVSimPosition> const& KOVSrvShellSection::GetMaterials() const {
    if (m_materialsRead) return m_materials;
    Refill(m_materials, m_numLayers, KOVSimPosition());
    m_materialsRead = true;
    ReadRecords(schema::BulkShellLayers_materials(), m_document.GetMaterialCollection(),
                m_materials);
    return m_materials;
}

KOVBasVector<KOVSimPosition> const& KOVSrvShellSection::GetOrientations() const {
    if (m_orientationsRead) return m_orientations;
    Refill(m_orientations, m_numLayers, KOVSimPosition());
    m_orientationsRead = true;
    ReadRecords(schema::BulkShellLayers_orientations(),
                m_document.GetModel().GetPosition(schema::Model_orientations()), m_orientations);
    return m_orientations;
}

KOVBasVector<KOVSimPosition> const& KOVSrvShellSection::GetPlies() const {
    if (m_pliesRead) return m_plies;
    Refill(m_plies, m_numLayers, KOVSimPosition());
    m_pliesRead = true;
    ReadRecords(schema::BulkShellLayers_plies(),
                m_document.GetModel().GetPosition(schema::Model_bulkPlies()), m_plies);
    return m_plies;
}

KOVBasVector<int> const& KOVSrvShellSection::GetSectionPoints() const {
    if (m_sectionPointsRead) return m_sectionPoints;
    Refill(m_sectionPoints, m_numLayers, kNoEntry);
    m_sectionPointsRead = true;
    KOVBasVector<int> entries;
    if (ReadIntegers(schema::BulkShellLayers_sectionPoints(), entries)) {
        std::copy(entries.begin(), entries.end(), m_sectionPoints.begin());
    }
    return m_sectionPoints;
}

// The layers that have a value on each element of the section. False if the field has no drawer.
bool KOVSrvShellSection::MarkDistributed(KOVSimPosition const& field,
                                         KOVBasVector<VariationEnm>& variations) const {
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
        drawers;
    DistributionOf(field).QueryDrawers(drawers);
    int const size = m_elementSet.Size();
    for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
        KOVSimCSet const layer = drawer.compartment.CSet(0);
        KOV_THROW_ASSERT(layer.Size() == 1);
        int const number = layer[0];
        if (number >= m_numLayers) continue;
        if (drawer.compartment.CSet(1).Intersection(m_elementSet).Size() == size) {
            variations[number] = VariationDistributed;
        }
    }
    return drawers.Size() > 0;
}

void KOVSrvShellSection::Update(int distributedMember, int constantMember,
                                KOVBasVector<double>& constants,
                                KOVBasVector<VariationEnm>& variations) const {
    Refill(variations, m_numLayers, VariationNone);
    Refill(constants, m_numLayers, kNoConstant);
    KOVSimPosition const bulk = m_document.GetModel().GetPosition(schema::Model_bulkShellLayers());
    if (bulk.IsNull()) return;

    KOVSimPosition const distributed = bulk.GetPosition(distributedMember);
    if (!distributed.IsNull() && !MarkDistributed(distributed, variations)) return;

    // Last, so that a layer with both kinds of values counts as constant.
    KOVSimPosition const constant = bulk.GetPosition(constantMember);
    if (constant.IsNull()) return;
    KOVSimDistribution const distribution = DistributionOf(constant);
    if (!HasDrawers(distribution)) return;
    ReadRow(distribution, constants.Data(),
            static_cast<unsigned long>(m_numLayers) * sizeof(double));
    for (int i = 0; i < m_numLayers; ++i) {
        if (constants[i] != kNoConstant) variations[i] = VariationConstant;
    }
}

void KOVSrvShellSection::UpdateThicknesses() {
    Update(schema::BulkShellLayers_distThicknesses(), schema::BulkShellLayers_constThicknesses(),
           m_constThicknesses, m_thicknessVariation);
}

void KOVSrvShellSection::UpdateRotationAngles() {
    Update(schema::BulkShellLayers_distAngles(), schema::BulkShellLayers_constAngles(),
           m_constRotationAngles, m_rotationAngleVariation);
}
