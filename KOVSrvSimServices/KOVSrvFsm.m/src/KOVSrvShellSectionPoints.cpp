#include "KOVSrvShellSectionPoints.h"

#include <vector>

#include "KOVAssert.h"
#include "KOVSimCSet.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimDistribution.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"

KOVSrvShellSectionPoints::KOVSrvShellSectionPoints(KOVObjDocument document)
    : m_document(document) {}

KOVSrvShellSectionPoints::~KOVSrvShellSectionPoints() = default;
KOVSrvShellSectionPoints::KOVSrvShellSectionPoints(KOVSrvShellSectionPoints const&) = default;
KOVSrvShellSectionPoints& KOVSrvShellSectionPoints::operator=(KOVSrvShellSectionPoints const&) =
    default;

int KOVSrvShellSectionPoints::GetNumSectionPoints(KOVSimPosition section, int layer) const {
    if (!m_mapRead) {
        Fill();
        m_mapRead = true;
    }
    PointsByLayer const* const layers = m_pointsBySection.Find(section);
    int const* const count = layers ? layers->Find(layer) : nullptr;
    return count ? *count : 0;
}

void KOVSrvShellSectionPoints::AddPoints(KOVSimPosition section, int layer, int count) {
    Add(section, layer, count);
}

void KOVSrvShellSectionPoints::UpdateMap() { Fill(); }

void KOVSrvShellSectionPoints::Add(KOVSimPosition const& section, int layer, int count) const {
    if (PointsByLayer* const layers = m_pointsBySection.Find(section)) {
        layers->InsertUnique(layer, count);
        return;
    }
    PointsByLayer layers;
    layers.InsertUnique(layer, count);
    m_pointsBySection.InsertUnique(section, layers);
}

void KOVSrvShellSectionPoints::Fill() const {
    if (m_mapRead) return;
    KOVSimPosition const bulk = m_document.GetModel().GetPosition(schema::Model_bulkShellLayers());
    if (bulk.IsNull()) {
        m_mapRead = true;
        return;
    }
    KOVSimPosition const store = bulk.GetPosition(schema::BulkShellLayers_sectionPoints());
    if (store.IsNull()) return;
    KOVSimDistribution const distribution(store.GetDistribution());
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
        drawers;
    distribution.QueryDrawers(drawers);
    if (drawers.Size() == 0) return;

    for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
        KOVSimCSet const& layer = drawer.compartment.CSet(0);
        KOVSimCSet const& sections = drawer.compartment.CSet(1);
        KOV_THROW_ASSERT(layer.Size() == 1);
        int const number = layer[0];

        KOVSimTransfer read(distribution);
        read.SetRead().SetDrawer(drawer.drawerID).SetBufferPadding(false);
        read.SetDim(0, layer).SetDim(1, sections).CheckView();
        // Behind the check, which refuses what no buffer could hold.
        std::vector<int, KOVBasStandardAllocator<int>> counts(
            static_cast<std::size_t>(sections.Size()), 0);
        read.SetBuffer(0, counts.data(), counts.size() * sizeof(int));
        read.ExecRead().RelinquishBuffers();

        KOVSimCollectionID const collection = sections.CollectionID();
        auto count = counts.cbegin();
        KOVSimCSetIterator section(sections);
        for (section.First(); !section.IsDone(); section.Next()) {
            Add(m_document.GetRecord(collection, section.CurrentValue()), number, *count++);
        }
    }
    m_mapRead = true;
}
