// A folder that a test may fill, removed with all its content at the end of the scope.
//
// It lies below KOV_TEST_TMP where that is set (the test runner does), else below the system's own
// place for temporary files. Set KOV_KEEP_TMP to look at what a failing test left.
#pragma once

#include <stdlib.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace kov::test {

class TempFolder {
  public:
    TempFolder() {
        char const* base = std::getenv("KOV_TEST_TMP");
        std::filesystem::path parent =
            base != nullptr && *base != '\0' ? base : std::filesystem::temp_directory_path();
        std::filesystem::create_directories(parent);
        std::string pattern = (parent / "t-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), pattern);
        }
        path_ = pattern;
    }
    ~TempFolder() {
        if (std::getenv("KOV_KEEP_TMP") != nullptr) return;
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(TempFolder const&) = delete;
    TempFolder& operator=(TempFolder const&) = delete;

    std::filesystem::path const& Path() const { return path_; }
    // The path of an entry, as text for interfaces that take `char const*` or strings.
    std::string operator/(char const* name) const { return (path_ / name).string(); }

  private:
    std::filesystem::path path_;
};

}  // namespace kov::test
