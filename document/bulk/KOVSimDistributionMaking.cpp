// The operations of positions and contexts that make distributions.
#include <string>
#include <vector>

#include "KOVSimContext.h"
#include "KOVSimException.h"
#include "KOVSimGrid.h"
#include "KOVSimPosition.h"
#include "KOVSimRangeType.h"
#include "document/bulk/DrawerStore.h"

namespace {

[[noreturn]] void Refuse(std::string const& why) {
    KOVSimException::ThrowText(("cannot create a distribution: " + why).c_str());
}

void CheckCollection(KOVSimCollectionID const& collection, KOVSimContextID context,
                     std::string const& what) {
    if (collection.IsNull()) Refuse("the collection of " + what + " is null");
    if (collection.ContextID() != context)
        Refuse("the collection of " + what + " belongs to another document");
    if (KOVSimPosition(collection).GetCollection().IsNull())
        Refuse("what was given for " + what + " is no collection");
}

}  // namespace

KOVSimDistributionID KOVSimContext::CreateDistribution(KOVSimGrid const& grid,
                                                       KOVSimRangeType const& range,
                                                       KOVSimTypeID type) const {
    kov::store::Context& context = kov::store::Context::Of(m_id);
    if (grid.NumDimensions() < 1 || grid.NumDimensions() > 2)
        Refuse("a grid has one or two dimensions, and " + std::to_string(grid.NumDimensions()) +
               " were given");
    std::vector<int> collections;
    for (int dim = 0; dim < grid.NumDimensions(); ++dim) {
        CheckCollection(grid.Collections().ConstGet(dim), m_id, "dimension " + std::to_string(dim));
        collections.push_back(grid.Collections().ConstGet(dim).Minor());
    }
    int const key = range.Key();
    if (key != KOVSimTypeKeyInt && key != KOVSimTypeKeyDouble && key != KOVSimTypeKeyMember)
        Refuse("entries of type " + std::to_string(key) + " are unknown: 2, 4 and 7 are known");
    if (key == KOVSimTypeKeyMember) CheckCollection(range.Collection(), m_id, "the range");
    int const number = kov::bulk::DrawerStore::Of(context).CreateDistribution(
        type, key, key == KOVSimTypeKeyMember ? range.Collection().Minor() : 0, collections);
    KOVSimDynamicDataID data;
    data.parent = 0;
    data.minor = number;
    return KOVSimDistributionID(KOVSimDynamicID(KOVSimCategoryDistribution, m_id, data, type, 0));
}

KOVSimDistributionID KOVSimPosition::CreateTypedDistribution(KOVSimGrid const& grid, int type,
                                                             KOVSimRangeType const& range) const {
    if (IsNull()) Refuse("the position is null");
    KOVSimContext const context(ID().context);
    return context.CreateDistribution(grid, range, context.Schema().TypeID(type));
}
