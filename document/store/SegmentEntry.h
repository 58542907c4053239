// What a BlockStore knows of one segment. Private to it.
#pragma once

#include "document/store/BlockStore.h"
#include "document/store/VerifiedPages.h"

namespace kov::store {

struct BlockStore::Entry {
    int number = 0;
    std::int64_t committed = 0;  // length of the last commit; 0 for a segment of this transaction
    std::int64_t length = 0;     // with what this transaction appended, the tail included
    std::int64_t written = 0;    // without the tail
    std::int64_t limit = 0;
    std::unique_ptr<Segment> segment;  // null until first used
    VerifiedPages verified;
};

}  // namespace kov::store
