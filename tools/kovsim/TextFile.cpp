#include "TextFile.h"

#include <stdio.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "Failure.h"

namespace kov::tool {

void WriteTextFile(std::string const& path, std::string const& target, std::string const& text) {
    std::FILE* const file = std::fopen(path.c_str(), "wbxe");
    bool written = file != nullptr;
    written = written && std::fwrite(text.data(), 1, text.size(), file) == text.size();
    written = written && std::fflush(file) == 0 && fsync(fileno(file)) == 0;
    int const error = errno;
    if (file != nullptr && std::fclose(file) != 0 && written) written = false;
    if (!written) {
        throw Failure(target + ": cannot be written: " + std::generic_category().message(error));
    }
}

}  // namespace kov::tool
