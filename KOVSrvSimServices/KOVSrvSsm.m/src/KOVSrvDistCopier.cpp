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

// The pairings of all dimensions, made for the first drawer.
class Pairings {
  public:
    Pairings(SetIDs const& writtenSets, SetIDs const& readSets)
        : m_writtenSets(writtenSets), m_readSets(readSets) {}
    KOVSimCMemberMap const& At(int i) {
        if (static_cast<int>(m_maps.size()) == i) {
            m_maps.push_back(Pairing(m_writtenSets.ConstGet(i), m_readSets.ConstGet(i)));
        }
        return m_maps[static_cast<std::size_t>(i)];
    }

  private:
    SetIDs const& m_writtenSets;
    SetIDs const& m_readSets;
    std::vector<KOVSimCMemberMap> m_maps;
};

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
    Pairings pairings(writtenSets, readSets);

    for (KOVSimPersistentDrawerDesc const& drawer : readDrawers) {
        SetIDs drawerSets;
        drawer.compartment.CSetIDs(drawerSets);
        int const readDistDims = drawerSets.Size();
        KOV_UTT_ASSERT(dim == readDistDims);

        KOVSimTransfer readTrans(from);
        readTrans.SetRead().SetBufferPadding(false);
        SetIDs mapped(dim, 0);
        std::vector<KOVSimCSet> targets;
        for (int i = 0; i < dim; ++i) {
            KOVSimCSet const drawerSet(drawerSets.ConstGet(i));
            readTrans.SetDim(i, drawerSet);
            targets.push_back(pairings.At(i).Map(drawerSet));
            mapped.Get(i) = targets.back().RegisterWithCollection();
        }
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
        for (int i = 0; i < dim; ++i) {
            // A set that stayed is taken as it is: by its ID a large one would be read again.
            KOVSimCSet const& target = targets[static_cast<std::size_t>(i)];
            bool const stayed = mapped.ConstGet(i) == target.ID();
            writeTrans.SetDim(i, stayed ? target : KOVSimCSet(mapped.ConstGet(i)));
        }
        writeTrans.CheckView();
        KOV_UTT_ASSERT(bufferSize == writeTrans.RequiredBufferSize());
        writeTrans.SetBuffer(0, buffer.get(), bytes).ExecWrite();
        writeTrans.RelinquishBuffers();
        readTrans.RelinquishBuffers();
    }
}
