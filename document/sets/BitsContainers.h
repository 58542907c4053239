// The insides of a Roaring bitmap: containers of the members that share their upper 16 bits, each
// an array of up to 4096, a bitset of 65536, or runs. Functions here name a container by its index.
//
// Private to Bits; CRoaring's layout of version 0.2 is known here and in BitsContainers.cpp alone.
#pragma once

#include <roaring/roaring.h>

#include <vector>

#include "document/sets/BitsKernels.h"
#include "document/sets/RunBlock.h"

namespace kov::sets {

/// Appends the container of `key` with members: (n), ascending, whose upper bits are `key`.
void AppendMembers(roaring_array_t& array, int key, int const* members, size_t n);
/// Appends the container of `key` with `runs` of lower bits, in the kind that takes the least room.
void AppendRuns(roaring_array_t& array, int key, std::vector<Run> const& runs);

int ContainerSize(roaring_array_t const& array, int32_t i);
/// Writes the members at places [first, first + count) of the container.
void CopyContainer(roaring_array_t const& array, int32_t i, int first, int count, int* out);
/// The place of the member with these lower bits, or -1.
int RankInContainer(roaring_array_t const& array, int32_t i, int low);
bool VisitContainerRuns(roaring_array_t const& array, int32_t i, RunBlock& block);
/// The number of runs that start in the container. `previousEnd` is the end of the members before
/// it, and becomes the end of those in it.
size_t ContainerRuns(roaring_array_t const& array, int32_t i, int& previousEnd);

/// Appends the containers of a op b to `out`, which is empty.
void Combine(WordOp op, roaring_array_t const& a, roaring_array_t const& b, roaring_array_t& out);

}  // namespace kov::sets
