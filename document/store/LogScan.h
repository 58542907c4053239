// LogScan: looks at a log that an earlier session has left, before SQLite recovers it. SQLite opens
// at the last whole commit and says nothing of what it leaves out; this tells whether something was
// left out that had been committed.
#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace kov::store {

/// A text if the log holds the end of a commit behind the last frame that is sound; empty if it
/// does not, or is not there.
std::string FindCutLog(std::string const& path);
/// The pages of the catalogue of which whole commits in the log have a newer copy.
std::set<std::int64_t> PagesInLog(std::string const& path);

}  // namespace kov::store
