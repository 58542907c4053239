// LabelCheck: refuses labels and ordinals that are given twice, in memory that does not grow with
// their number where they come ascending, and within a few megabytes where they do not. For the
// labeler.
#pragma once

#include <optional>

#include "KOVBasVector.h"

namespace kov::facades {

bool IsStrictlyAscending(KOVBasVector<int> const& values);
/// A value that stands twice; empty if none does.
std::optional<int> FindDuplicate(KOVBasVector<int> const& values);

}  // namespace kov::facades
