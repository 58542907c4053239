// AscendingSets: from sets to their members and back, where the order is the ascending one.
#pragma once

#include <cstddef>
#include <vector>

#include "KOVSimCSet.h"
#include "KOVSimCollection.h"

namespace kov::tool {

/// The same members ascending.
inline KOVSimCSet Ascending(KOVSimCSet const& set) {
    return set.IsAscending() ? set : set.Union(KOVSimCSet(set.CollectionID()));
}

/// True if the members of an ascending set are one run, from `first` to `last`; these are the
/// lowest and the highest member in any case.
inline bool IsRange(KOVSimCSet const& set, int& first, int& last) {
    long long const bounds = set.Bounds();
    first = static_cast<int>(bounds & 0xffffffff);
    last = static_cast<int>(bounds >> 32);
    return set.IsAscending() && static_cast<long long>(last) - first + 1 == set.Size();
}

/// Puts the members into `members`, whose memory serves again.
inline void ReadMembers(KOVSimCSet const& set, std::vector<int>& members) {
    members.resize(static_cast<std::size_t>(set.Size()));
    set.Members(members.data());
}

inline std::vector<int> MembersOf(KOVSimCSet const& set) {
    std::vector<int> members;
    ReadMembers(set, members);
    return members;
}

/// A volatile set of members that ascend, each once.
inline KOVSimCSet SetOf(KOVSimCollection const& collection, std::vector<int> const& members) {
    if (members.empty()) return KOVSimCSet(collection.ID());
    int const count = static_cast<int>(members.size());
    if (members.back() - members.front() == count - 1) {
        return collection.CreateVolatileCSetStrided(members.front(), count, 1, 1);
    }
    return collection.CreateVolatileCSet(members.data(), count, false);
}

}  // namespace kov::tool
