// Errors of the store: every refusal and every failing file becomes a KOVSimException with a text
// that names the file.
#pragma once

#include <string>

namespace kov::store {

/// Raises a KOVSimException with `text`.
[[noreturn]] void Fail(std::string const& text);
/// Raises "cannot `action` `path`: (text of the errno value)".
[[noreturn]] void FailFile(char const* action, std::string const& path, int error);
std::string ErrnoText(int error);

}  // namespace kov::store
