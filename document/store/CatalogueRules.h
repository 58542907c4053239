// CatalogueRules: what must hold between the tables of a catalogue, each rule a query that finds
// the rows that break it.
#pragma once

#include <functional>
#include <string>

namespace kov::store {

class Catalogue;

/// Calls `finding` for broken rules; at most some rows of each.
void CheckCatalogueRules(Catalogue& catalogue,
                         std::function<void(std::string const&)> const& finding);

}  // namespace kov::store
