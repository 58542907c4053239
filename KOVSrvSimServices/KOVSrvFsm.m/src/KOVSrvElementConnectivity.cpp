#include "KOVSrvElementConnectivity.h"

#include "KOVAssert.h"
#include "KOVSimContext.h"
#include "KOVSimDSet.h"
#include "KOVSimDistribution.h"
#include "KOVSimTransfer.h"

KOVSrvElementConnectivity::KOVSrvElementConnectivity(KOVSimPosition const& connectivity,
                                                     int chunkSize)
    : m_chunkSize(chunkSize), m_connectivityID(connectivity.GetDSet()) {}

KOVSrvElementConnectivity::KOVSrvElementConnectivity(
    KOVSimPosition const& connectivity, KOVSimBtree<KOVSimDynamicID, int> const& chunkSizes)
    : m_chunkSizes(chunkSizes), m_connectivityID(connectivity.GetDSet()) {}

KOVSimDrawerID KOVSrvElementConnectivity::MakeDrawer(KOVSimDynamicID const& key,
                                                     KOVSimDistributionID const& rdistribution,
                                                     KOVSimCSetID const& elements,
                                                     KOVSimCSetID const& positions) {
    KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(2, 0);
    if (m_chunkSizes.IsMember(key)) {
        chunks.Get(0) = m_chunkSizes.Get(key);
    } else {
        KOV_FATAL_ASSERT(m_chunkSize != 0);
        chunks.Get(0) = m_chunkSize;
    }
    chunks.Get(1) = KOVSimCSet(positions).Size();

    KOVSimTransfer make{KOVSimDistribution(rdistribution)};
    make.SetMakeNewDrawerChunked(chunks).SetBufferPadding(false).SetExtendableDim(0);
    make.SetDim(0, KOVSimCSet(elements).AscendingID()).SetDim(1, positions);
    make.CheckView().ExecMake();
    KOVSimDrawerID const drawer = make.DrawerID();

    int const index = m_drawerIndices.NumberOfKeys();
    m_drawerIndices.Insert(key, index, false);
    m_drawers.SetSize(index + 1);
    m_drawers.Get(index) = drawer;
    return drawer;
}

int KOVSrvElementConnectivity::Append(KOVSimTransaction& transaction, KOVSimDynamicID const& key,
                                      KOVSimCSetID const& elements, KOVSimCSetID const& positions,
                                      int const* data) {
    KOVSimDSet const connectivity(m_connectivityID);
    KOVSimDistributionID const rdistribution = connectivity.GetRelationalDistributionID();
    KOV_FATAL_ASSERT(rdistribution.IsNull() == false);

    KOVSimDrawerID const drawer = m_drawerIndices.IsMember(key)
                                      ? m_drawers.ConstGet(m_drawerIndices.Get(key))
                                      : MakeDrawer(key, rdistribution, elements, positions);

    KOVSimTransfer write{KOVSimDistribution(rdistribution)};
    write.SetWrite().SetAutoExtend().SetBufferPadding(false).SetDrawer(drawer);
    write.SetDim(0, elements).SetDim(1, positions).CheckView();
    int const size = write.RequiredBufferSize(0);
    write.SetBuffer(0, data, static_cast<unsigned long>(size)).ExecWrite().RelinquishBuffers();

    KOVSimContext(transaction.ContextID()).UpdateDSet(m_connectivityID, rdistribution);
    return size;
}

int KOVSrvElementConnectivity::Read(KOVSimCSet const& elements, KOVSimCSet const& positions,
                                    int* out) const {
    KOVSimDSet const connectivity(m_connectivityID);
    KOVSimDistribution const distribution(connectivity.GetRelationalDistributionID());
    KOVSimTransfer read(distribution);
    read.SetRead().SetBufferPadding(false).SetDim(0, elements).SetDim(1, positions).CheckView();
    int const size = read.RequiredBufferSize(0);
    read.SetBuffer(0, out, static_cast<unsigned long>(size)).ExecRead().RelinquishBuffers();
    return size;
}
