#include "KOVSrvNodalCoordinates.h"

#include <algorithm>
#include <cstddef>

#include "KOVAssert.h"
#include "KOVObjMesh.h"
#include "KOVObjModel.h"
#include "KOVSimArray.h"
#include "KOVSimDistribution.h"
#include "KOVSimDrawerDescription.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"

namespace {

using Drawers =
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;
using Chunks = KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>;

// The place of the node dimension in a drawer's compartment.
int NodeDimension(Drawers const& drawers, int drawer, KOVSimCollectionID const& nodeCollection) {
    int const pos = drawers.ConstGet(drawer).compartment.Position(nodeCollection);
    KOV_UTT_ASSERT(pos >= 0);
    return pos;
}

// The first drawer's set as it stands, joined with those of all further drawers. `dimension` gives
// the dimension to take from the place of the node dimension.
template <class Dimension>
KOVSimCSet UnionOverDrawers(KOVSimDistributionID const& distribution,
                            KOVSimCollectionID const& nodeCollection, Dimension dimension) {
    Drawers drawers(1, 0);
    KOVSimDistribution(distribution).QueryDrawers(drawers);
    auto const setOf = [&](int drawer) -> KOVSimCSet const& {
        int const pos = NodeDimension(drawers, drawer, nodeCollection);
        return drawers.ConstGet(drawer).compartment.CSet(dimension(pos));
    };
    if (drawers.Size() < 2) return setOf(0);
    KOVSimCSet all;
    for (int d = 0; d < drawers.Size(); ++d) {
        all = d == 0 ? setOf(d) : all.Union(setOf(d));
    }
    return all;
}

}  // namespace

KOVSrvNodalCoordinates::KOVSrvNodalCoordinates(KOVSimPosition const& coordinates, int chunkSize)
    : m_chunkSize(chunkSize), m_distributionID(coordinates.GetDistribution()) {
    KOVObjModel const model(coordinates.Focus().GetPosition(schema::Focus_model()));
    KOVObjMesh const mesh(model.GetMesh());
    m_nodeCollection = mesh.GetNodeCollection().GetCollection();
}

KOVSimCSet KOVSrvNodalCoordinates::Nodes() const {
    KOV_UTT_ASSERT(m_distributionID.IsNull() == false);
    return UnionOverDrawers(m_distributionID, m_nodeCollection, [](int pos) { return pos; });
}

KOVSimCSet KOVSrvNodalCoordinates::Components() const {
    KOV_UTT_ASSERT(m_distributionID.IsNull() == false);
    return UnionOverDrawers(m_distributionID, m_nodeCollection,
                            [](int pos) { return pos == 0 ? 1 : 0; });
}

int KOVSrvNodalCoordinates::Append(KOVSimTransaction&, KOVSimCSetID const& nodes,
                                   KOVSimCSetID const& componentSet, double const* data) {
    KOV_UTT_ASSERT(m_distributionID.IsNull() == false);
    int const n = KOVSimCSet(nodes).Size();
    KOVSimDistribution const distribution(m_distributionID);
    Drawers drawers(1, 0);
    distribution.QueryDrawers(drawers);
    int const numDrawers = drawers.Size();
    KOV_UTT_ASSERT(numDrawers < 2);

    KOVSimDrawerID drawer;
    if (numDrawers == 0) {
        Chunks chunkSizes(2, 0);
        int* const chunks = chunkSizes.Ptr();
        chunks[0] = m_chunkSize;
        chunks[1] = KOVSimCSet(componentSet).Size();
        KOV_UTT_ASSERT(chunks[1] > 1);
        KOVSimTransfer make(distribution);
        make.SetMakeNewDrawerChunked(chunkSizes).SetBufferPadding(false).SetExtendableDim(0);
        // A drawer's domain is ascending; the order of the caller's set is honoured by the write.
        make.SetDim(0, KOVSimCSet(nodes).AscendingID()).SetDim(1, componentSet);
        make.CheckView().ExecMake();
        drawer = make.DrawerID();
    } else {
        drawer = drawers.ConstGet(0).drawerID;
    }

    KOVSimTransfer write(distribution);
    write.SetWrite().SetBufferPadding(false).SetAutoExtend().SetDrawer(drawer);
    write.SetDim(0, nodes).SetDim(1, componentSet).CheckView();
    std::size_t const len = static_cast<std::size_t>(write.RequiredBufferSize(0));
    // Sizes of sets are never negative; the condition's text is part of the contract.
    // clang-format off
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wsign-conversion"
    KOV_UTT_ASSERT(len == n*KOVSimCSet(componentSet).Size()*sizeof(double));
#pragma GCC diagnostic pop
    // clang-format on
    write.SetBuffer(0, data, len).ExecWrite().RelinquishBuffers();
    return static_cast<int>(len);
}

int KOVSrvNodalCoordinates::Read(KOVSimCSet const& nodes, KOVSimCSet const& components,
                                 double* out) const {
    KOV_UTT_ASSERT(m_distributionID.IsNull() == false);
    KOVSimTransfer read{KOVSimDistribution(m_distributionID)};
    read.SetRead().SetBufferPadding(false).SetDim(0, nodes).SetDim(1, components).CheckView();
    std::size_t const n =
        static_cast<std::size_t>(nodes.Size()) * static_cast<std::size_t>(components.Size());
    std::size_t const len = static_cast<std::size_t>(read.RequiredBufferSize(0));
    // clang-format off
    KOV_UTT_ASSERT(n*sizeof(double) == len);
    // clang-format on
    std::fill_n(out, n, 0.0);
    read.SetBuffer(0, out, len).ExecRead().RelinquishBuffers();
    return static_cast<int>(len);
}
