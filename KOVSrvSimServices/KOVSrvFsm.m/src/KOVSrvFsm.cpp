#include "KOVSrvFsm.h"

#include <cstdint>

#include "KOVSrvBulkShellLayers.h"

namespace {

constinit std::int32_t s_counter = 0;

}  // namespace

void KOVSrvFsm_initialize(int& count) {
    if (++s_counter == 1) ++count;
}

void KOVSrvFsm_finalize(int& count) {
    if (--s_counter != 0) return;
    --count;
    omi_SingletonBase<KOVSrvBulkShellLayers>::Finalize();
}
