// Runs: the common language of the index sets.
//
// A run is a maximal stretch of consecutive members. Meshes number their nodes and elements block
// by block, so the sets of a model are usually a handful of runs, however many members they have;
// all that handles sets without reading members out handles runs.
#pragma once

#include <cstddef>

namespace kov::sets {

/// The members [first, end), never empty.
struct Run {
    int first;
    int end;
};

/// Takes blocks of runs, ascending and maximal across blocks too; answers false to stop the visit.
using RunSink = bool (*)(void* context, Run const* runs, size_t count);

/// One run as an index set stores it: where it starts, and how many members stand before it. A list
/// of them ends with a sentinel whose `location` is the size of the set, so that the length of a
/// run is a difference of neighbours and both ways of searching are binary.
struct Stretch {
    int first;
    int location;
};

}  // namespace kov::sets
