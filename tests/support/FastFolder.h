// A temporary folder in memory where the system has such a place: for tests that make and sync
// thousands of small documents, and for which it does not matter where the bytes go. Otherwise like
// TempFolder.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "support/TempFolder.h"

namespace kov::test {

class FastFolder {
  public:
    FastFolder() {
        std::string pattern = "/dev/shm/kov-XXXXXX";
        if (::mkdtemp(pattern.data()) != nullptr) {
            path_ = pattern;
        } else {
            path_ = fallback_.emplace().Path();
        }
    }
    ~FastFolder() {
        std::error_code ignored;
        if (!fallback_) std::filesystem::remove_all(path_, ignored);
    }
    FastFolder(FastFolder const&) = delete;
    FastFolder& operator=(FastFolder const&) = delete;

    std::filesystem::path const& Path() const { return path_; }
    std::string operator/(char const* name) const { return (path_ / name).string(); }

  private:
    std::filesystem::path path_;
    std::optional<TempFolder> fallback_;
};

}  // namespace kov::test
