// Registry: finds contexts by their handles, and the context of a document that is open already. A
// handle is a serial number, which is never given again, above the number of a slot; the slot holds
// the handle and the context while it is open. Finding takes two loads and no lock. Private to
// Context.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <mutex>

#include "KOVSimDynamicID.h"

namespace kov::store {

class Context;

/// Which folder a document is, whatever its name.
struct FolderIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    bool operator==(FolderIdentity const&) const = default;
};

/// A handle for an open context.
KOVSimContextID Register(Context* context);
void Unregister(KOVSimContextID id);
/// The context of an open handle, or null.
Context* Registered(KOVSimContextID id);
/// Whether the handle was ever given out.
bool WasRegistered(KOVSimContextID id);

/// Held while documents are opened, shared and closed.
std::recursive_mutex& OpenMutex();
void Announce(FolderIdentity const& folder, std::weak_ptr<Context> context, unsigned forks);
void Withdraw(FolderIdentity const& folder);
enum class Sharing { None, Open, OfParent };
/// Whether a folder is open in this process, or was in its parent when it forked. REQUIRES:
/// OpenMutex is held.
Sharing FindShared(FolderIdentity const& folder, std::shared_ptr<Context>& context);

}  // namespace kov::store
