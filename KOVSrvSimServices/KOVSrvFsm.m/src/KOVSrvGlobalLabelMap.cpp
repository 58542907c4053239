#include "KOVSrvGlobalLabelMap.h"

#include <cstddef>
#include <memory>

#include "KOVAssert.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimDistribution.h"
#include "KOVSimTransfer.h"
#include "KOVSrvGetInstanceInfo.h"

namespace {

struct Freed {
    void operator()(void* pointer) const { mem_Free(pointer); }
};

}  // namespace

KOVSrvGlobalLabelMap::KOVSrvGlobalLabelMap(KOVSimPosition focus, KOVSrvLabelerType type)
    : m_focus(focus), m_type(type) {}

KOVSrvGlobalLabelMap::~KOVSrvGlobalLabelMap() { delete m_table; }

KOVSimPosition KOVSrvGlobalLabelMap::Focus() const { return m_focus; }

void KOVSrvGlobalLabelMap::Initialize(KOVSimPosition labels) {
    std::unique_ptr<Table> table(new Table);
    LoadGlobalLabels(labels, *table);
    delete m_table;
    m_table = table.release();
}

void KOVSrvGlobalLabelMap::Initialize(Table const& table) {
    if (m_table == &table) return;
    delete m_table;
    m_table = const_cast<Table*>(&table);
}

void KOVSrvGlobalLabelMap::LoadGlobalLabels(KOVSimPosition labels, Table& table) {
    KOVSimDistribution const distribution(labels.GetDistribution());
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
        drawers;
    distribution.QueryDrawers(drawers);
    if (drawers.Size() == 0) return;

    KOVSimPersistentDrawerDesc const& first = drawers.ConstGet(0);
    KOVSimCSet const ordinals = first.compartment.CSet(0);
    std::size_t const bytes = sizeof(int) * static_cast<std::size_t>(ordinals.Size());
    std::unique_ptr<int[], Freed> const buffer(
        static_cast<int*>(mem_OperatorNewThrowBuiltin(bytes)));
    KOVSimTransfer read(distribution);
    // A later drawer that holds some of the ordinals too would serve these.
    read.SetRead().SetBufferPadding(false).SetDrawer(first.drawerID);
    read.SetDim(0, ordinals).CheckView();
    read.SetBuffer(0, buffer.get(), bytes).ExecRead().RelinquishBuffers();

    int const* label = buffer.get();
    KOVSimCSetIterator ordinal(ordinals);
    for (ordinal.First(); !ordinal.IsDone(); ordinal.Next())
        table.Insert(*label++, ordinal.CurrentValue());
}

bool KOVSrvGlobalLabelMap::GetInstanceLabel(int globalLabel, KOVString& instance,
                                            int& label) const {
    KOV_FATAL_ASSERT(m_focus.IsNull() == false);
    int const* const ordinal = m_table ? m_table->Find(globalLabel) : nullptr;
    return ordinal && KOVSrvGetInstanceInfo(m_focus, m_type, *ordinal, instance, label);
}
