#include "ResultFormats.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <string_view>
#include <system_error>

#include "ExodusSource.h"
#include "FrdSource.h"
#include "NetcdfLayout.h"

namespace kov::tool {
namespace {

struct ResultFormat {
    char const* name;
    bool (*isLike)(std::string_view start);
    std::unique_ptr<ResultSource> (*open)(std::string const& path);
};

template <class Source>
std::unique_ptr<ResultSource> Open(std::string const& path) {
    return std::make_unique<Source>(path);
}

constexpr ResultFormat kFormats[] = {
    {"CalculiX .frd", LooksLikeFrd, Open<FrdSource>},
    {"Exodus II", LooksLikeNetcdf, Open<ExodusSource>},
};

[[noreturn]] void FailSystem(std::string const& path, char const* what) {
    throw Failure(path + ": " + what + ": " + std::generic_category().message(errno));
}

// A pipe gives its bytes once, and would be waited for; a file is opened again by its source.
void RefusePipes(std::string const& path) {
    struct stat found = {};
    if (stat(path.c_str(), &found) != 0 || S_ISREG(found.st_mode) || S_ISDIR(found.st_mode)) return;
    throw Failure(path + ": is a pipe or a device; expected a file");
}

// The first bytes of the file.
std::string StartOf(std::string const& path) {
    RefusePipes(path);
    std::FILE* const file = std::fopen(path.c_str(), "rbe");
    if (file == nullptr) FailSystem(path, "cannot be opened");
    char start[16];
    std::size_t const size = std::fread(start, 1, sizeof start, file);
    bool const failed = std::ferror(file) != 0;
    int const error = errno;
    std::fclose(file);
    errno = error;
    if (failed) FailSystem(path, "cannot be read");
    return {start, size};
}

}  // namespace

std::unique_ptr<ResultSource> OpenResults(std::string const& path) {
    std::string const start = StartOf(path);
    std::string names;
    for (ResultFormat const& format : kFormats) {
        if (format.isLike(start)) return format.open(path);
        names += (names.empty() ? "" : " or ") + std::string(format.name);
    }
    throw Failure(path + ": " + (start.empty() ? "is empty" : "is no file of results") +
                  "; expected " + names);
}

}  // namespace kov::tool
