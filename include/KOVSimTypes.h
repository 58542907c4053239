// KOVSimTypes.h: the plain number types of identities and schema.
#pragma once

#include <cstdint>

/// The number of a schema type as one context knows it; -1 is no particular type.
using KOVSimTypeID = std::int32_t;
/// The number of an object within its owner, or of a root object within its context; -1 is none.
using KOVSimIDMinor = std::int32_t;
/// What the entries of a distribution are: 4 for `double`, 7 for members of a collection, and so
/// on.
using KOVSimTypeKey = int;
