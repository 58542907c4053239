#include "document/records/ReverseLinks.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "document/records/Links.h"
#include "document/store/Catalogue.h"

namespace kov::records {

void ReverseLinks::Add(std::int64_t member, std::int64_t owner, LinkKey const& key,
                       std::int64_t target) {
    IndexOf(member).insert({target, owner, key.Sortable()});
}

void ReverseLinks::Remove(std::int64_t member, std::int64_t owner, LinkKey const& key,
                          std::int64_t target) {
    IndexOf(member).erase({target, owner, key.Sortable()});
}

ReverseLinks::Index& ReverseLinks::IndexOf(std::int64_t member) {
    auto const known = m_indices.find(member);
    if (known != m_indices.end()) return known->second;
    std::vector<Entry> entries;
    store::Statement scan(m_context.Cat(), "SELECT owner,key,target FROM links WHERE member=?");
    scan.Bind(member);
    while (scan.Step())
        entries.push_back({scan.Int(2), scan.Int(0), LinkKey::Of(scan, 1).Sortable()});
    // A tree of sorted entries is made in linear time.
    std::sort(entries.begin(), entries.end());
    return m_indices[member] = Index(std::make_move_iterator(entries.begin()),
                                     std::make_move_iterator(entries.end()));
}

}  // namespace kov::records
