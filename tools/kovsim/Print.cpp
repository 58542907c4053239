#include <cerrno>
#include <cstdio>
#include <system_error>

#include "Commands.h"
#include "Failure.h"

namespace kov::tool {

void Print(std::string const& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0)
        return;
    throw Failure("cannot write to standard output: " + std::generic_category().message(errno));
}

void PrintAbout(std::string const& made, std::string const& text) {
    try {
        Print(text);
    } catch (Failure const& error) {
        throw Failure(made + " is made and whole, but the summary is lost: " + error.what());
    }
}

}  // namespace kov::tool
