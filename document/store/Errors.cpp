#include "document/store/Errors.h"

#include <system_error>

#include "KOVSimException.h"

namespace kov::store {

void Fail(std::string const& text) { throw KOVSimException(KOVString(text.c_str())); }

std::string ErrnoText(int error) { return std::generic_category().message(error); }

void FailFile(char const* action, std::string const& path, int error) {
    Fail(std::string("cannot ") + action + " " + path + ": " + ErrnoText(error));
}

}  // namespace kov::store
