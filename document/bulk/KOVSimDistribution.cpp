#include "KOVSimDistribution.h"

#include "KOVSimDrawer.h"
#include "KOVSimException.h"
#include "document/bulk/DrawerStore.h"

using kov::bulk::Drawer;
using kov::bulk::DrawerInfo;
using kov::bulk::DrawerStore;
using kov::store::Context;

namespace {

KOVSimDynamicID ChildOf(KOVSimDynamicID const& owner, int category, int number) {
    KOVSimDynamicDataID data;
    data.parent = owner.data.minor;
    data.minor = number;
    return {category, owner.context, data, owner.type, 0};
}

KOVSimTypeID CollectionType(KOVSimContextID context, int number) {
    KOVSimCollectionID const untyped(context, number, -1, 0);
    return KOVSimPosition(untyped).TypePosition();
}

KOVSimCollectionID CollectionOf(KOVSimContextID context, int number) {
    return {context, number, CollectionType(context, number), 0};
}

KOVSimPersistentDrawerDesc Describe(KOVSimDistribution const& distribution, Drawer& drawer) {
    DrawerInfo const& info = drawer.Info();
    KOVSimPersistentDrawerDesc description;
    description.drawerID =
        KOVSimDrawerID(ChildOf(distribution.ID().ID(), KOVSimCategoryDrawer, info.number));
    description.extendableDim = info.growing;
    KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> sets(info.dimensions, 0);
    for (int dim = 0; dim < info.dimensions; ++dim)
        sets.Get(dim) = KOVSimCSetID(ChildOf(distribution.Grid().Collections().ConstGet(dim).ID(),
                                             KOVSimCategoryCSet, info.sets[dim]));
    description.compartment = KOVSimOCompartment(sets);
    if (info.chunked) {
        KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(info.dimensions, 0);
        for (int dim = 0; dim < info.dimensions; ++dim) chunks.Get(dim) = info.chunks[dim];
        description.SetChunkSizes(chunks);
    }
    return description;
}

}  // namespace

KOVSimDistribution::KOVSimDistribution(KOVSimDistributionID const& id) {
    if (id.IsNull()) return;
    Context& context = Context::Of(id.ContextID());
    kov::bulk::DistributionInfo const& info = DrawerStore::Of(context).Distribution(id.Minor());
    KOVSimGrid::CollectionArray collections(info.dimensions, 0);
    for (int dim = 0; dim < info.dimensions; ++dim)
        collections.Get(dim) = CollectionOf(id.ContextID(), info.collections[dim]);
    KOVSimDynamicID known = id.ID();
    known.type = info.type;
    m_id = KOVSimDistributionID(known);
    m_grid = KOVSimGrid(collections);
    m_range = info.range == 0 ? KOVSimRangeType(info.key)
                              : KOVSimRangeType(info.key, CollectionOf(id.ContextID(), info.range));
    m_share = context.weak_from_this();
}

bool KOVSimDistribution::IsPresent() const {
    std::shared_ptr<Context> const share = m_share.lock();
    return share && !share->IsClosed();
}

void KOVSimDistribution::QueryDrawers(
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>&
        drawers) const {
    drawers.SetSize(0);
    if (m_id.IsNull()) return;
    DrawerStore& store = DrawerStore::Of(Context::Of(m_id.ContextID()));
    std::vector<int> const numbers = store.DrawersOf(m_id.Minor());
    drawers.SetSize(static_cast<int>(numbers.size()));
    for (std::size_t i = 0; i < numbers.size(); ++i)
        drawers.Get(static_cast<int>(i)) = Describe(*this, store.Get(numbers[i]));
}

void KOVSimDistribution::DrawerIDArray(
    KOVSimArray<KOVSimDrawerID, KOVSimArrayCopyClassPolicy<KOVSimDrawerID>>& drawers) const {
    drawers.SetSize(0);
    if (m_id.IsNull()) return;
    std::vector<int> const& numbers =
        DrawerStore::Of(Context::Of(m_id.ContextID())).DrawersOf(m_id.Minor());
    drawers.SetSize(static_cast<int>(numbers.size()));
    for (std::size_t i = 0; i < numbers.size(); ++i)
        drawers.Get(static_cast<int>(i)) =
            KOVSimDrawerID(ChildOf(m_id.ID(), KOVSimCategoryDrawer, numbers[i]));
}

KOVSimPersistentDrawerDesc KOVSimDistribution::DrawerDescription(
    KOVSimDrawerID const& drawer) const {
    if (m_id.IsNull() || drawer.IsNull() || drawer.Parent() != m_id.Minor())
        KOVSimException::ThrowText(
            "cannot describe a drawer: it does not belong to the distribution that was asked");
    return Describe(*this, DrawerStore::Of(Context::Of(m_id.ContextID())).Get(drawer.Minor()));
}

std::int64_t KOVSimDrawerDescription::DataSizeItems(int) const {
    if (compartment.Size() == 0) return 0;
    std::int64_t items = 1;
    for (int dim = 0; dim < compartment.Size(); ++dim) items *= compartment.CSet(dim).Size();
    return items;
}

KOVSimDrawer::KOVSimDrawer(KOVSimDrawerID const& id) : KOVSimDrawer(KOVSimPosition(id)) {}

KOVSimDrawer::KOVSimDrawer(KOVSimPosition const& position) : m_id(position.GetDrawer()) {
    if (m_id.IsNull()) return;
    m_description = std::make_shared<KOVSimPersistentDrawerDesc const>(
        KOVSimDistribution(DistributionID()).DrawerDescription(m_id));
}

KOVSimDistributionID KOVSimDrawer::DistributionID() const {
    if (m_id.IsNull()) return {};
    KOVSimDynamicDataID data;
    data.parent = 0;
    data.minor = m_id.Parent();
    return KOVSimDistributionID(
        KOVSimDynamicID(KOVSimCategoryDistribution, m_id.ContextID(), data, m_id.TypeID(), 0));
}
