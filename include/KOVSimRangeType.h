// KOVSimRangeType: what the entries of a distribution are: KOVSimTypeKey 2 `int` (4 bytes), 4
// `double` (8 bytes), 7 `int` that is an index into the collection named here (4 bytes).
#pragma once

#include "KOVExport.h"
#include "KOVSimTypedIDs.h"

/// The value types of entries. Persisted; do not change the numbers.
enum KOVSimTypeKeyValue : int {
    KOVSimTypeKeyInt = 2,
    KOVSimTypeKeyDouble = 4,
    KOVSimTypeKeyMember = 7
};

class KOV_EXPORT KOVSimRangeType {
  public:
    explicit KOVSimRangeType(KOVSimTypeKey key) : m_key(key) {}
    /// Entries of key 7: indices of members of `collection`.
    KOVSimRangeType(KOVSimTypeKey key, KOVSimCollectionID const& collection)
        : m_key(key), m_collection(collection) {}

    KOVSimTypeKey Key() const { return m_key; }
    KOVSimCollectionID const& Collection() const { return m_collection; }

  private:
    KOVSimTypeKey m_key;
    KOVSimCollectionID m_collection;
};
