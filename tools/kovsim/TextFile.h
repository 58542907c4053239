// TextFile: a text as a new file.
#pragma once

#include <string>

namespace kov::tool {

/// Makes the file at `path`, and makes it lasting. Throws Failure that names `target`, which is
/// where the file will stand in the end.
void WriteTextFile(std::string const& path, std::string const& target, std::string const& text);

}  // namespace kov::tool
