// Each test runs in a process of its own: the counters live as long as the process.
#include "KOVSrvBasic.h"

#include <gtest/gtest.h>

#include "KOVDocModules.h"
#include "KOVSrvFsm.h"
#include "KOVSrvKwd.h"
#include "KOVSrvSsm.h"

namespace {

// The frame, eight modules of the document layer, three service modules, the specific step.
constexpr int kModules = 13;

struct Pair {
    void (*initialize)(int&);
    void (*finalize)(int&);
};
constexpr Pair kPairs[] = {
    {KOVSrvBasic_specific_initialize, KOVSrvBasic_specific_finalize},
    {KOVSrvFsm_initialize, KOVSrvFsm_finalize},
    {KOVSrvKwd_initialize, KOVSrvKwd_finalize},
    {KOVSrvSsm_initialize, KOVSrvSsm_finalize},
    {KOVDocObjects_initialize, KOVDocObjects_finalize},
    {KOVDocMarkup_initialize, KOVDocMarkup_finalize},
    {KOVDocInterface_initialize, KOVDocInterface_finalize},
    {KOVDocContainers_initialize, KOVDocContainers_finalize},
    {KOVRootShared_initialize, KOVRootShared_finalize},
    {KOVRootUtilities_initialize, KOVRootUtilities_finalize},
    {KOVRootGenerics_initialize, KOVRootGenerics_finalize},
    {KOVRootAlloc_initialize, KOVRootAlloc_finalize},
};

}  // namespace

TEST(KOVSrvBasic, AFirstInitializeCountsEveryModuleThatCameUp) {
    int count = 0;
    KOVSrvBasic_initialize(count);
    EXPECT_EQ(count, kModules);
    KOVSrvBasic_finalize(count);
    EXPECT_EQ(count, 0);
}

TEST(KOVSrvBasic, ASecondInitializeLeavesTheCountAlone) {
    int count = 0;
    int other = 5;
    KOVSrvBasic_initialize(count);
    KOVSrvBasic_initialize(other);
    EXPECT_EQ(other, 5);
    KOVSrvBasic_finalize(other);
    EXPECT_EQ(other, 5);
    KOVSrvBasic_finalize(count);
    EXPECT_EQ(count, 0);
}

TEST(KOVSrvBasic, TheCountMayStartAnywhereAndIsJustAddedTo) {
    int count = -100;
    KOVSrvBasic_initialize(count);
    EXPECT_EQ(count, -100 + kModules);
    KOVSrvBasic_finalize(count);
    EXPECT_EQ(count, -100);
}

TEST(KOVSrvBasic, ModulesThatAreUpAlreadyAreNotCountedAgain) {
    int own = 0;
    KOVSrvKwd_initialize(own);
    KOVRootAlloc_initialize(own);
    EXPECT_EQ(own, 2);
    int count = 0;
    KOVSrvBasic_initialize(count);
    EXPECT_EQ(count, kModules - 2);
    KOVSrvBasic_finalize(count);
    EXPECT_EQ(count, 0);
    KOVSrvKwd_finalize(own);
    KOVRootAlloc_finalize(own);
    EXPECT_EQ(own, 0);
}

TEST(KOVSrvBasic, FinalizeWithoutInitializeDoesNothingAndMakesTheNextInitializeNoFirstCall) {
    int count = 3;
    KOVSrvBasic_finalize(count);
    EXPECT_EQ(count, 3);
    KOVSrvBasic_initialize(count);
    EXPECT_EQ(count, 3);
    KOVSrvBasic_initialize(count);
    EXPECT_EQ(count, 3 + kModules);
}

TEST(KOVSrvBasic, ComesUpAgainAfterAFullFinalize) {
    int count = 0;
    for (int round = 0; round < 3; ++round) {
        KOVSrvBasic_initialize(count);
        EXPECT_EQ(count, kModules);
        KOVSrvBasic_finalize(count);
        EXPECT_EQ(count, 0);
    }
}

TEST(KOVSrvBasic, TheFormsWithoutArgumentShareTheCounter) {
    int count = 0;
    KOVSrvBasic_initializeC();
    KOVSrvBasic_initialize(count);
    EXPECT_EQ(count, 0);
    KOVSrvBasic_finalizeC();
    // The last call takes the modules down for whoever makes it.
    KOVSrvBasic_finalize(count);
    EXPECT_EQ(count, -kModules);
    KOVSrvBasic_initialize(count);
    EXPECT_EQ(count, 0);
}

TEST(KOVSrvBasic, EachModuleCountsOnItsOutermostPairOnly) {
    for (Pair const& pair : kPairs) {
        int count = 10;
        pair.initialize(count);
        EXPECT_EQ(count, 11);
        pair.initialize(count);
        EXPECT_EQ(count, 11);
        pair.finalize(count);
        EXPECT_EQ(count, 11);
        pair.finalize(count);
        EXPECT_EQ(count, 10);
    }
}

TEST(KOVSrvBasic, AModuleBelowZeroComesUpOnlyPastThatPoint) {
    for (Pair const& pair : kPairs) {
        int count = 0;
        pair.finalize(count);
        EXPECT_EQ(count, 0);
        pair.initialize(count);
        EXPECT_EQ(count, 0);
        pair.initialize(count);
        EXPECT_EQ(count, 1);
    }
}
