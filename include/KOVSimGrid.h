// KOVSimGrid: the collections over which a distribution stands, one for each dimension, in order.
// One or two dimensions.
#pragma once

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSimGrid {
  public:
    using CollectionArray =
        KOVSimArray<KOVSimCollectionID, KOVSimArrayCopyClassPolicy<KOVSimCollectionID>>;

    KOVSimGrid() = default;
    explicit KOVSimGrid(CollectionArray const& collections) : m_collections(collections) {}

    int NumDimensions() const { return m_collections.Size(); }
    CollectionArray const& Collections() const { return m_collections; }

  private:
    CollectionArray m_collections;
};
