#include "KOVSrvBasic.h"

#include <cstdint>

#include "KOVDocModules.h"
#include "KOVSrvFsm.h"
#include "KOVSrvKwd.h"
#include "KOVSrvSsm.h"

namespace {

constinit std::int32_t s_counter = 0;
constinit int s_countOfC = 0;

}  // namespace

void KOVSrvBasic_initialize(int& count) {
    if (s_counter++ != 0) return;
    ++count;
    KOVDocObjects_initialize(count);
    KOVDocMarkup_initialize(count);
    KOVDocInterface_initialize(count);
    KOVDocContainers_initialize(count);
    KOVRootShared_initialize(count);
    KOVRootUtilities_initialize(count);
    KOVRootGenerics_initialize(count);
    KOVRootAlloc_initialize(count);
    KOVSrvSsm_initialize(count);
    KOVSrvFsm_initialize(count);
    KOVSrvKwd_initialize(count);
    KOVSrvBasic_specific_initialize(count);
}

void KOVSrvBasic_finalize(int& count) {
    if (--s_counter != 0) return;
    --count;
    KOVSrvBasic_specific_finalize(count);
    KOVSrvKwd_finalize(count);
    KOVSrvFsm_finalize(count);
    KOVSrvSsm_finalize(count);
    KOVRootAlloc_finalize(count);
    KOVRootGenerics_finalize(count);
    KOVRootUtilities_finalize(count);
    KOVRootShared_finalize(count);
    KOVDocContainers_finalize(count);
    KOVDocInterface_finalize(count);
    KOVDocMarkup_finalize(count);
    KOVDocObjects_finalize(count);
}

void KOVSrvBasic_initializeC(void) { KOVSrvBasic_initialize(s_countOfC); }
void KOVSrvBasic_finalizeC(void) { KOVSrvBasic_finalize(s_countOfC); }
