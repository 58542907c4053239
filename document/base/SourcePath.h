// The path by which assertion reports name a source file: its path without the extension.
//
// Made when an assertion has failed, from the __FILE__ of the place, so that a passing assertion
// costs no more than its condition. For the base room.
#pragma once

#include "KOVString.h"

namespace kov::base {

/// "a/b.m/src/C.cpp" gives "a/b.m/src/C"; a name without an extension stays as it is.
KOVString SourcePath(char const* file);

}  // namespace kov::base
