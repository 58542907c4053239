// What the base room keeps to itself.
#include <gtest/gtest.h>

#include "document/base/Invariant.h"
#include "document/base/SourcePath.h"

using kov::base::SourcePath;

TEST(SourcePath, LosesTheExtensionOnly) {
    EXPECT_STREQ(SourcePath("/r/KOVSrvKwd.m/src/Parser.cpp").Text(), "/r/KOVSrvKwd.m/src/Parser");
    EXPECT_STREQ(SourcePath("/r/KOVSrvKwd.m/src/Parser").Text(), "/r/KOVSrvKwd.m/src/Parser");
    EXPECT_STREQ(SourcePath("Parser.test.cpp").Text(), "Parser.test");
    EXPECT_STREQ(SourcePath(".hidden").Text(), ".hidden");
    EXPECT_STREQ(SourcePath("/r/.hidden").Text(), "/r/.hidden");
    EXPECT_EQ(SourcePath("").Text(), nullptr);
    EXPECT_EQ(SourcePath(nullptr).Text(), nullptr);
}

TEST(Invariant, ABrokenOneAborts) {
    EXPECT_EXIT(kov::base::InvariantBroken("a < b", "file.cpp", 3),
                testing::KilledBySignal(SIGABRT), "Invariant broken: a < b, at file.cpp:3");
}

TEST(Invariant, IsCheckedInDebugBuildsOnly) {
    int evaluations = 0;
    KOV_INVARIANT(++evaluations > 0);
#ifdef NDEBUG
    EXPECT_EQ(evaluations, 0);
#else
    EXPECT_EQ(evaluations, 1);
#endif
}
