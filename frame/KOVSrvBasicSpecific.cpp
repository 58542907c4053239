#include <cstdint>

#include "KOVSrvBasic.h"

namespace {

constinit std::int32_t s_counter = 0;

}  // namespace

void KOVSrvBasic_specific_initialize(int& count) {
    if (++s_counter == 1) ++count;
}

void KOVSrvBasic_specific_finalize(int& count) {
    if (--s_counter == 0) --count;
}
