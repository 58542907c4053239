// LogScan: looks at a log that an earlier session has left, before SQLite recovers it. SQLite opens
// at the last whole commit and says nothing of what it leaves out; this tells whether something was
// left out that had been committed.
#pragma once

#include <cstdint>
#include <string>

namespace kov::store {

/// A text if the log holds the end of a commit behind the last frame that is sound; empty if it
/// does not, or is not there.
std::string FindCutLog(std::string const& path);
/// Whether a whole commit in the log has a newer copy of the catalogue's page.
bool IsInLog(std::string const& path, std::int64_t page);

}  // namespace kov::store
