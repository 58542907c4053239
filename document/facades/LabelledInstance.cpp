#include "document/facades/LabelledInstance.h"

#include <algorithm>

#include "KOVSimCollection.h"
#include "KOVSimTransfer.h"
#include "document/records/Identity.h"
#include "document/sets/IndexSet.h"

namespace kov::facades {

namespace {

constexpr int Block = 1 << 20;  // labels in one transfer
// Labels that are kept together: 64 KiB, which is what the store verifies at once.
constexpr int PageSize = 1 << 14;
// So many look-ups read the one label; whoever asks oftener gets pages.
constexpr int FewLookups = 4;

}  // namespace

void LabelledInstance::Open() {
    // Also throws for a document that was closed, whatever is kept here.
    if (!records::ToRead(m_distributionID) || m_open) return;
    m_distribution = KOVSimDistribution(m_distributionID);
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
        drawers;
    m_distribution.QueryDrawers(drawers);
    if (drawers.Size() > 0) {
        m_ordinals = drawers.ConstGet(0).compartment.CSet(0);
        if (!m_ordinals.IsAscending())
            m_ordinals = KOVSimCSet(m_ordinals.CollectionID(), m_ordinals.Storage()->Ascending());
        if (m_ordinals.Storage()->IsRange()) m_first = m_ordinals.Storage()->Lowest();
        m_size = m_ordinals.Size();
        m_drawer = drawers.ConstGet(0).drawerID;
    }
    m_open = true;
}

KOVSimCSet const& LabelledInstance::Ordinals() {
    Open();
    return m_ordinals;
}

void LabelledInstance::ReadStored(int const* ordinals, int count, int* labels) const {
    KOVSimCSet const view =
        KOVSimCollection(m_ordinals.CollectionID()).CreateVolatileCSet(ordinals, count, false);
    KOVSimTransfer transfer(m_distribution);
    transfer.SetRead().SetBufferPadding(false).SetDrawer(m_drawer).SetDim(0, view).CheckView();
    transfer.SetBuffer(0, labels, sizeof(int) * static_cast<unsigned long>(count));
    transfer.ExecRead().RelinquishBuffers();
}

void LabelledInstance::ReadAll(KOVBasVector<int>& labels, KOVBasVector<int>& ordinals) const {
    int const n = m_ordinals.Size();
    labels.Resize(n);
    ordinals.Resize(n);
    m_ordinals.Members(ordinals.Data());
    for (int first = 0, count = 0; first < n; first += count) {
        count = std::min(Block, n - first);
        ReadStored(ordinals.Data() + first, count, labels.Data() + first);
    }
}

void LabelledInstance::Read(KOVBasVector<int>& labels, KOVBasVector<int>& ordinals) {
    Open();
    ReadAll(labels, ordinals);
    SortByLabel(labels, ordinals);
}

int LabelledInstance::LocationOf(int ordinal) const {
    if (m_first < 0) return m_ordinals.Storage()->LocationOf(ordinal);
    return ordinal >= m_first && ordinal - m_first < m_size ? ordinal - m_first : -1;
}

int LabelledInstance::LabelAt(int ordinal) {
    Open();
    int const location = LocationOf(ordinal);
    if (location < 0) return -1;
    if (m_lookups < FewLookups) {
        ++m_lookups;
        int label = -1;
        ReadStored(&ordinal, 1, &label);
        return label;
    }
    if (m_pages.empty())
        m_pages.resize(static_cast<std::size_t>((m_ordinals.Size() - 1) / PageSize + 1));
    std::unique_ptr<int[]>& page = m_pages[static_cast<std::size_t>(location / PageSize)];
    if (!page) {
        sets::IndexSet const& ordinals = *m_ordinals.Storage();
        int const first = location / PageSize * PageSize;
        int const count = std::min(PageSize, ordinals.Size() - first);
        std::vector<int> members(static_cast<std::size_t>(count));
        ordinals.CopyStored(first, count, members.data());
        std::unique_ptr<int[]> labels(new int[static_cast<std::size_t>(count)]);
        ReadStored(members.data(), count, labels.get());
        page = std::move(labels);
    }
    return page[static_cast<std::size_t>(location % PageSize)];
}

int LabelledInstance::OrdinalAt(int label) {
    Open();
    if (!m_index) {
        KOVBasVector<int> labels;
        KOVBasVector<int> ordinals;
        ReadAll(labels, ordinals);
        m_index.emplace(labels, ordinals);
    }
    return m_index->Find(label);
}

}  // namespace kov::facades
