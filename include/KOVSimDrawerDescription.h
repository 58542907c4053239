// Descriptions of drawers: which block of the grid a drawer holds, how it is chunked, in which
// dimension it grows. A description keeps what it had when it was taken, whatever becomes of the
// drawer.
#pragma once

#include <cstdint>

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimOCompartment.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSimDrawerDescription {
  public:
    /// One set for each dimension. A dimension's set is the drawer's own persistent set.
    KOVSimOCompartment compartment;
    /// The dimension in which the drawer may grow; -1 for none.
    int extendableDim = -1;

    /// True if the drawer was made with chunk sizes.
    bool IsChunked() const { return m_chunks.Size() > 0; }
    /// The chunk size of each dimension, as given when the drawer was made; no entries for an
    /// unchunked drawer.
    void ChunkSizes(KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>& sizes) const {
        sizes = m_chunks;
    }
    void SetChunkSizes(KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> const& sizes) {
        m_chunks = sizes;
    }
    /// The number of entries: the product of the sizes of the dimensions. `buffer` is always 0.
    std::int64_t DataSizeItems(int buffer) const;

  private:
    KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> m_chunks;
};

/// A description together with the ID of the drawer.
class KOV_EXPORT KOVSimPersistentDrawerDesc : public KOVSimDrawerDescription {
  public:
    KOVSimDrawerID drawerID;
};
