#include "document/base/Invariant.h"

#include <cstdio>
#include <cstdlib>

void kov::base::InvariantBroken(char const* invariant, char const* file, int line) {
    std::fprintf(stderr, "Invariant broken: %s, at %s:%d\n", invariant, file, line);
    std::abort();
}
