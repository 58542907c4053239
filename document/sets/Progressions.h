// Arithmetic of progressions, ranges among them. Private to the sets.
#pragma once

#include "document/sets/IndexSet.h"

namespace kov::sets {

/// The members of a progression within [from, to).
IndexSetPtr ClippedProgression(IndexSet const& progression, int from, int to);
/// The members that two progressions share, which are a progression again.
IndexSetPtr CommonProgression(IndexSet const& a, IndexSet const& b);
/// The union of two progressions if that is one too as far as their ends and strides tell, else
/// null. REQUIRES: neither is empty.
IndexSetPtr JoinedProgressions(IndexSet const& a, IndexSet const& b);

}  // namespace kov::sets
