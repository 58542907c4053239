// Statistics: sizes and counts of a document, for inspectors. Counted afresh at each call.
#pragma once

#include <cstdint>

namespace kov::store {

class Context;

struct Statistics {
    std::int64_t catalogueBytes = 0;   // the catalogue's file and its log
    std::int64_t bulkBytes = 0;        // of the segments, headers included
    std::int64_t liveBulkBytes = 0;    // of rows in use
    std::int64_t supersededBytes = 0;  // what overwrites and merges have left behind
    std::int64_t segments = 0;
    std::int64_t blocks = 0;
    std::int64_t records = 0;
    std::int64_t collections = 0;
    std::int64_t sets = 0;
    std::int64_t distributions = 0;
    std::int64_t drawers = 0;
    std::int64_t datasets = 0;
    std::int64_t tables = 0;
    std::int64_t links = 0;
    std::int64_t commits = 0;
};

Statistics GatherStatistics(Context& context);

}  // namespace kov::store
