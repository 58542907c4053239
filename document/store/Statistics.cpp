#include "document/store/Statistics.h"

#include <algorithm>

#include "document/store/BlockStore.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

namespace kov::store {

namespace {

std::int64_t One(Catalogue& catalogue, char const* sql) {
    Statement query(catalogue, sql);
    return query.Step() ? query.Int(0) : 0;
}

}  // namespace

Statistics GatherStatistics(Context& context) {
    Catalogue& catalogue = context.Cat();
    Statistics s;
    s.catalogueBytes = context.CatalogueBytes();
    s.bulkBytes = context.Blocks().Bytes();
    s.segments = context.Blocks().Segments();
    s.liveBulkBytes = One(catalogue,
                          "SELECT ifnull(sum(blocks.rows * drawers.row_bytes), 0) FROM blocks "
                          "JOIN drawers ON drawers.number = blocks.drawer");
    s.supersededBytes =
        std::max<std::int64_t>(0, s.bulkBytes - s.segments * SegmentHeaderBytes - s.liveBulkBytes);
    s.blocks = One(catalogue, "SELECT count(*) FROM blocks");
    s.records = One(catalogue, "SELECT count(*) FROM objects WHERE category = 1");
    s.collections = One(catalogue, "SELECT count(*) FROM collections");
    s.sets = One(catalogue, "SELECT count(*) FROM sets");
    s.distributions = One(catalogue, "SELECT count(*) FROM distributions");
    s.drawers = One(catalogue, "SELECT count(*) FROM drawers");
    s.datasets = One(catalogue, "SELECT count(*) FROM datasets");
    s.tables = One(catalogue, "SELECT count(*) FROM tables");
    s.links = One(catalogue, "SELECT count(*) FROM links");
    s.commits = One(catalogue, "SELECT value FROM meta WHERE name = 'commits'");
    return s;
}

}  // namespace kov::store
