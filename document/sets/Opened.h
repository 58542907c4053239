// Opened: from a set or collection identity to the context and the members behind it. For the
// public classes of this room.
#pragma once

#include "KOVSimCSet.h"
#include "KOVSimTypedIDs.h"
#include "document/sets/IndexSet.h"

namespace kov::store {
class Context;
}

namespace kov::sets {

/// The context of a collection. Throws "cannot WHAT: ..." for a null one, a closed document and a
/// dropped number.
store::Context& Opened(KOVSimCollectionID const& collection, char const* what);
/// The identity of set `number` of a collection.
KOVSimCSetID SetIdentity(KOVSimCollectionID const& collection, int number);

}  // namespace kov::sets
