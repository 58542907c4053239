// SetBlocks: the members of a set in pieces, so that a set of any size passes through bounded
// memory.
#pragma once

#include <cstddef>
#include <vector>

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
    std::vector<int> members;
    KOVSimCSetIterator at(set);
    at.First();
    while (!at.IsDone()) {
        ThrowIfInterrupted();
        members.clear();
        for (; !at.IsDone() && members.size() < static_cast<std::size_t>(most); at.Next()) {
            members.push_back(at.CurrentValue());
        }
        f(collection.CreateVolatileCSet(members.data(), static_cast<int>(members.size()), false));
    }
}

}  // namespace kov::tool
