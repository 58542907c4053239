// KOVSrvInverseConnectivity: from each node of a mesh to the elements that touch it.
//
// A compressed table in two flat arrays, made by counting and filling: the entries of node i are
// those from Offsets()[i] up to but not including Offsets()[i + 1], in order of drawer, then of
// element within the drawer, then of position within the element. An entry is one 32-bit word:
//
//     bits 0 to 24    element, the member of the element collection
//     bits 25 to 31   the position within the element at which the node stands
//
// so that a mesh may have 33,554,432 elements of 128 nodes; what lies beyond is cut off unchecked.
// All connectivity that is inverted is in memory between the two passes.
#pragma once

#include <cstdint>

#include "KOVExport.h"
#include "KOVSimCSet.h"
#include "KOVSimDistribution.h"
#include "KOVSimPosition.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSrvInverseConnectivity {
  public:
    /// `mesh`: the position of the mesh. Nothing is read yet.
    explicit KOVSrvInverseConnectivity(KOVSimPosition const& mesh);
    ~KOVSrvInverseConnectivity();
    KOVSrvInverseConnectivity(KOVSrvInverseConnectivity const&) = delete;
    KOVSrvInverseConnectivity& operator=(KOVSrvInverseConnectivity const&) = delete;

    /// The size of the mesh's node collection.
    int NumberNodes() const;

    /// Inverts the whole mesh, or the given elements only; what was there before goes. Every
    /// connectivity entry must be a node index below NumberNodes(); that is not checked. Throws
    /// KOVSimException, and holds nothing then, where there are more than 2147483647 entries, where
    /// the share of a drawer takes 2 GiB or more, and whatever else the store refuses.
    void Invert();
    void Invert(KOVSimCSetID const& elements);

    /// NumberNodes() + 1 ints, owned by this object until the next `Invert`; null before the first.
    int const* Offsets() const { return m_offsets; }
    /// The number of entries.
    int Total() const { return m_total; }
    /// The element and the position within it of entry `at`, in [0, Total()).
    int Element(int at) const { return static_cast<int>(m_inverse[at] & kElementMask); }
    int Position(int at) const { return static_cast<int>(m_inverse[at] >> kElementBits); }

    /// The steps of `Invert`, for callers that drive them themselves.
    /// Replaces the `n` counts in the offset array by the sum of the counts before each, and puts
    /// the total behind them.
    void ConvertCountToOffsetArray(int n);
    /// Pass one for a block: reads it and counts into the offset array. The block, (elements,
    /// positions) row-major, is the caller's, to be freed with mem_Free. `elements` is ascending.
    int* ReadConnectivityBlockAndCount(KOVSimDistribution& distribution,
                                       KOVSimCSetID const& elements, KOVSimCSetID const& positions);
    /// Pass two for a block. `cursor`: for each node the number of entries that are filled already;
    /// advanced.
    void ProcessConnectivityBlock(int const* block, KOVSimCSetID const& elements,
                                  KOVSimCSetID const& positions, int* cursor);

  private:
    static constexpr int kElementBits = 25;
    static constexpr std::uint32_t kElementMask = (std::uint32_t{1} << kElementBits) - 1;

    void Restart();
    void InvertDrawers();
    void InvertShares(KOVSimCSetID const& elements);
    void AllocateOffsets(int nodes);
    void AllocateEntries();

    KOVSimPosition m_mesh;
    int* m_offsets = nullptr;
    std::uint32_t* m_inverse = nullptr;
    int m_total = 0;
};
