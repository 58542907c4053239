#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <numeric>
#include <vector>

#include "KOVAssert.h"
#include "KOVSimCMemberMap.h"
#include "KOVSimCSet.h"
#include "KOVSimCollection.h"
#include "KOVSimDistribution.h"
#include "KOVSimDrawerDescription.h"
#include "KOVSimTransfer.h"
#include "KOVSrvCopyDistribution.h"

namespace {

using SetIDs = KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>;
using Drawers =
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;

struct Freed {
    void operator()(void* buffer) const { mem_Free(buffer); }
};
using Buffer = std::unique_ptr<void, Freed>;

// The members of an ordered set in stored order.
std::vector<int> Stored(KOVSimCSet const& set) {
    std::vector<int> members(static_cast<std::size_t>(set.Size()));
    set.OrderedMembers(members.data());
    return members;
}

// Carries the members of one dimension across. A map gives its members in the order of locations,
// and a drawer is read in ascending order: the pairs are put into ascending order of the members
// read, so that the two orders agree.
KOVSimCMemberMap Pairing(KOVSimCSet const& writtenSet, KOVSimCSet const& readSet) {
    if (readSet.IsAscending() || readSet.Size() != writtenSet.Size()) {
        return KOVSimCMemberMap::Create(writtenSet, readSet);
    }
    std::vector<int> const from = Stored(readSet), to = Stored(writtenSet);
    std::vector<std::size_t> order(from.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return from[a] < from[b]; });
    std::vector<int> source, target;
    for (std::size_t place : order) {
        if (!source.empty() && source.back() == from[place]) continue;
        source.push_back(from[place]);
        target.push_back(to[place]);
    }
    int const n = static_cast<int>(source.size());
    return KOVSimCMemberMap::Create(
        KOVSimCollection(writtenSet.CollectionID()).CreateVolatileOrderedCSet(target.data(), n),
        KOVSimCollection(readSet.CollectionID()).CreateVolatileCSet(source.data(), n, false));
}

// Both compilers find these conditions to be false always, which is their purpose.
#pragma GCC diagnostic push
#ifdef __clang__
#pragma GCC diagnostic ignored "-Wtautological-pointer-compare"
#else
#pragma GCC diagnostic ignored "-Waddress"
#endif
// clang-format off

void CheckDimensions(KOVSimDistribution const& written, SetIDs const& writtenSets,
                     SetIDs const& readSets, int dim) {
    if (written.NumDimensions() != dim) {
        KOV_UTT_ASSERT("The dimensions of the two distributions must match" == 0);
    }
    if (readSets.Size() != dim) {
        KOV_UTT_ASSERT("CSets missing for all domains of distribution being read" == 0);
    }
    if (writtenSets.Size() != dim) {
        KOV_UTT_ASSERT("CSets missing for all domains of distribution being written" == 0);
    }
}

// Which drawer of the written side takes the data of `drawer`.
void SetMode(KOVSimTransfer& writeTrans, KOVSimDrawerDescription const& drawer,
             Drawers const& writeDrwDescArray) {
    KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks;
    drawer.ChunkSizes(chunks);
    if (drawer.extendableDim >= 0) {
        KOV_UTT_ASSERT(writeDrwDescArray.Size() == 0 || writeDrwDescArray.Size() == 1);
        if (writeDrwDescArray.Size() == 0) {
            if (!drawer.IsChunked()) {
                KOV_UTT_ASSERT("only chunked drawers are extendable" == 0);
            }
            writeTrans.SetMakeNewDrawerChunked(chunks).SetExtendableDim(drawer.extendableDim);
        } else if (writeDrwDescArray.Size() == 1) {
            writeTrans.SetAutoExtend().SetDrawer(writeDrwDescArray.ConstGet(0).drawerID);
        } else {
            KOV_UTT_ASSERT("Extendable dimension in distribution being read, however >1 drawers exist in distributino being updated" ==0);
        }
    } else if (drawer.IsChunked()) {
        // The copy of a drawer that could not grow can grow in dimension 0.
        writeTrans.SetMakeNewDrawerChunked(chunks).SetExtendableDim(0);
    } else {
        writeTrans.SetMakeNewDrawer();
    }
}

// clang-format on
#pragma GCC diagnostic pop

}  // namespace

KOVSrvDistributionTransform::~KOVSrvDistributionTransform() = default;

void KOVSrvDistributionTransform::Update(void*, SetIDs&) const {}

void KOVSrvCopyDistribution(KOVSimDistributionID const& written, KOVSimDistributionID const& read,
                            SetIDs const& writtenSets, SetIDs const& readSets,
                            KOVSrvDistributionTransform const& transform) {
    KOVSimDistribution const to(written), from(read);
    int const dim = from.NumDimensions();
    CheckDimensions(to, writtenSets, readSets, dim);
    Drawers readDrawers, writeDrawers;
    from.QueryDrawers(readDrawers);
    to.QueryDrawers(writeDrawers);
    std::vector<KOVSimCMemberMap> maps;

    for (KOVSimPersistentDrawerDesc const& drawer : readDrawers) {
        SetIDs drawerSets;
        drawer.compartment.CSetIDs(drawerSets);
        int const readDistDims = drawerSets.Size();
        KOV_UTT_ASSERT(dim == readDistDims);
        SetIDs mapped(dim, 0);
        for (int i = 0; i < dim; ++i) {
            if (static_cast<int>(maps.size()) == i) {
                maps.push_back(Pairing(writtenSets.ConstGet(i), readSets.ConstGet(i)));
            }
            KOVSimCMemberMap const& map = maps[static_cast<std::size_t>(i)];
            mapped.Get(i) = map.Map(drawerSets.ConstGet(i)).RegisterWithCollection();
        }

        KOVSimTransfer readTrans(from);
        readTrans.SetRead().SetBufferPadding(false);
        for (int i = 0; i < dim; ++i) readTrans.SetDim(i, drawerSets.ConstGet(i));
        readTrans.CheckView();
        int const bufferSize = readTrans.RequiredBufferSize(0);
        auto const bytes = static_cast<std::size_t>(bufferSize);
        Buffer const buffer(mem_Malloc(bytes));
        if (!buffer) throw std::bad_alloc();
        readTrans.SetBuffer(0, buffer.get(), bytes).ExecRead();

        transform.Update(buffer.get(), mapped);

        KOVSimTransfer writeTrans(to);
        writeTrans.SetWrite().SetBufferPadding(false);
        SetMode(writeTrans, drawer, writeDrawers);
        for (int i = 0; i < dim; ++i) writeTrans.SetDim(i, mapped.ConstGet(i));
        writeTrans.CheckView();
        KOV_UTT_ASSERT(bufferSize == writeTrans.RequiredBufferSize());
        writeTrans.SetBuffer(0, buffer.get(), bytes).ExecWrite();
        writeTrans.RelinquishBuffers();
        readTrans.RelinquishBuffers();
    }
}
