// KOVSimDatabase: a shared handle on an open document's database. Copies take strong shares; the
// last one to go closes the database. Positions and identities hold no share.
#pragma once

#include <memory>

#include "KOVExport.h"
#include "KOVSimDynamicID.h"

class KOVSimPosition;
namespace kov::store {
class Context;
}

class KOV_EXPORT KOVSimDatabase {
  public:
    /// An empty handle, which holds no database.
    KOVSimDatabase() = default;
    /// A strong share of the database that holds `position`; empty for a null position. Throws if
    /// its document is closed.
    explicit KOVSimDatabase(KOVSimPosition const& position);
    explicit KOVSimDatabase(std::shared_ptr<kov::store::Context> context)
        : m_context(std::move(context)) {}

    /// True for a handle without a database, or one whose document was closed through any handle.
    bool IsClosed() const;
    /// The context of the database; null for a closed one.
    KOVSimContextID ContextID() const;
    std::shared_ptr<kov::store::Context> const& Share() const { return m_context; }

  private:
    std::shared_ptr<kov::store::Context> m_context;
};
