// ResultFormats: which format a file of results has, told by how it begins, and its source.
#pragma once

#include <memory>
#include <string>

#include "ResultSource.h"

namespace kov::tool {

/// Throws Failure for a file that cannot be read, and for one of no known format.
std::unique_ptr<ResultSource> OpenResults(std::string const& path);

}  // namespace kov::tool
