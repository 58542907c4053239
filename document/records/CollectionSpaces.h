// CollectionSpaces: the member counts of collections, kept in memory once read: every set and every
// transfer asks for them. Forgotten when a transaction is undone or the reader moves to another
// commit.
#pragma once

#include <unordered_map>

#include "KOVSimTypedIDs.h"
#include "document/store/Context.h"

namespace kov::records {

class CollectionSpaces : public store::ContextPart {
  public:
    explicit CollectionSpaces(store::Context& context) : m_context(context) {}

    /// The count of members. Throws KOVSimException if there is no such collection.
    int Space(KOVSimIDMinor collection);
    /// Makes a collection's row. In a transaction.
    void Create(KOVSimIDMinor collection, int space);
    /// Raises the count; the caller has checked that it grows. In a transaction.
    void Extend(KOVSimIDMinor collection, int space);

    void AfterRollback() override { m_spaces.clear(); }
    void AfterRefresh() override { m_spaces.clear(); }

  private:
    store::Context& m_context;
    std::unordered_map<KOVSimIDMinor, int> m_spaces;
};

}  // namespace kov::records
