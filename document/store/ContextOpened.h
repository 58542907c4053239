// What an open context is made of. Private to Context.
#pragma once

#include <optional>

#include "document/store/BlockStore.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"
#include "document/store/DocumentFolder.h"
#include "document/store/WriterLock.h"

namespace kov::store {

struct Context::Opened {
    /// `document`: as the user named it; empty in memory.
    explicit Opened(std::string const& document)
        : folder(document.empty() ? document : AbsolutePath(document)), catalogue(document) {}

    DocumentFolder folder;  // while a document is built: the temporary one
    FolderIdentity identity;
    bool announced = false;
    bool immutable = false;  // nothing can change while it is open
    std::string cutLog;      // what was found out about a log that was cut
    WriterLock lock;
    Catalogue catalogue;
    std::unique_ptr<BlockStore> blocks;
    Uuid uuid{};
};

}  // namespace kov::store
