// The order of text keys in a KOVSimBtree. Other key types have an overload beside their class.
#pragma once

#include <cstring>

#include "KOVString.h"

/// Byte order of `b` against `a`: positive if b stands behind a. A tree calls it with the key of a
/// node as `a` and the key sought as `b`. An empty text counts as "".
inline int KOVSimBtreeCompare(KOVString const& a, KOVString const& b) {
    return std::strcmp(b.TextOrEmpty(), a.TextOrEmpty());
}
