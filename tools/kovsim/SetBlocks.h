// SetBlocks: the members of a set in pieces, so that a set of any size passes through bounded
// memory.
//
// Two ways: blocks have the same count of members, however far these are apart; windows reach over
// the same span of numbers, and touch no single member, which is faster where sets are dense.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "AscendingSets.h"
#include "Interrupt.h"
#include "KOVSimCSet.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimCollection.h"

namespace kov::tool {

/// Calls f(piece) for pieces of `set` of at most `most` members, which together are the set in its
/// ascending order.
template <class F>
void ForSetBlocks(KOVSimCSet const& set, int most, F&& f) {
    if (set.IsEmpty()) return;
    KOVSimCollection const collection(set.CollectionID());
    KOVSimCSet const ascending = Ascending(set);
    std::vector<int> members;
    KOVSimCSetIterator at(ascending);
    at.First();
    while (!at.IsDone()) {
        ThrowIfInterrupted();
        members.clear();
        for (; !at.IsDone() && members.size() < static_cast<std::size_t>(most); at.Next()) {
            members.push_back(at.CurrentValue());
        }
        f(SetOf(collection, members));
    }
}

/// Those of the members of an ascending set that lie in [first, first + count).
inline KOVSimCSet InWindow(KOVSimCSet const& set, int first, int count) {
    return set.Intersection(
        KOVSimCollection(set.CollectionID()).CreateVolatileCSetStrided(first, count, 1, 1));
}

/// Calls f(piece) for the pieces of an ascending set that lie in windows of `span` numbers, the
/// first of which begins with its lowest member; empty ones are passed over.
template <class F>
void ForSetWindows(KOVSimCSet const& set, std::int64_t span, F&& f) {
    if (set.IsEmpty()) return;
    int lowest = 0;
    int highest = 0;
    IsRange(set, lowest, highest);
    for (std::int64_t first = lowest; first <= highest; first += span) {
        ThrowIfInterrupted();
        KOVSimCSet const piece = InWindow(set, static_cast<int>(first),
                                          static_cast<int>(std::min(span, highest - first + 1)));
        if (!piece.IsEmpty()) f(piece);
    }
}

}  // namespace kov::tool
