#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>

#include "HostFatalError.h"
#include "KOVAssert.h"
#include "KOVBasAssertException.h"
#include "KOVSimException.h"
#include "KOVSimUttAssert.h"

namespace {

int s_evaluations = 0;

bool FailsOnlyOnce() { return ++s_evaluations > 1; }

void FailAboveAHandler(int number) {
    try {
        KOV_UTT_ASSERT(number == 1);
    } catch (...) {
    }
    std::fprintf(stderr, "went on\n");
    std::_Exit(3);
}

}  // namespace

TEST(KOV_UTT_ASSERT, PassesOverATrueConditionAndEvaluatesItOnce) {
    s_evaluations = 1;
    KOV_UTT_ASSERT(FailsOnlyOnce());
    EXPECT_EQ(s_evaluations, 2);
}

TEST(KOV_UTT_ASSERT, ReportsTheConditionAndTheSourcePathWithoutExtension) {
    int const number = 2;
    EXPECT_EXIT(KOV_UTT_ASSERT(number == 1), testing::ExitedWithCode(1),
                "number == 1.*tests/base/test_Assert[^.].*line [0-9]+");
}

TEST(KOV_UTT_ASSERT, EndsWithStatus1UnderAHandler) {
    EXPECT_EXIT(FailAboveAHandler(2), testing::ExitedWithCode(1), "number == 1");
}

TEST(KOV_UTT_ASSERT, EndsWithStatus1AlsoWhenTheSecondEvaluationIsTrue) {
    s_evaluations = 0;
    EXPECT_EXIT(KOV_UTT_ASSERT(FailsOnlyOnce()), testing::ExitedWithCode(1), "FailsOnlyOnce\\(\\)");
}

TEST(KOV_UTT_ASSERT, AMessageIsTheWholeExpression) {
    EXPECT_EXIT(KOV_UTT_ASSERT("The dimensions of the two distributions must match" == 0),
                testing::ExitedWithCode(1),
                "\"The dimensions of the two distributions must match\" == 0");
    EXPECT_EXIT(KOV_UTT_ASSERT(!"not yet there."), testing::ExitedWithCode(1),
                "!\"not yet there\\.\"");
}

TEST(KOV_UTT_ASSERT, TheReportIsOneLine) {
    testing::internal::CaptureStderr();
    KOVSimUttAssert::ReportAssertionFailure("a == b", "x/src/Y", 17);
    std::string const report = testing::internal::GetCapturedStderr();
    EXPECT_EQ(report, "Assertion failed: a == b, at x/src/Y, line 17\n");
    KOVSimUttAssert::ReportAssertionFailure(nullptr, nullptr, 0);
}

TEST(KOV_FATAL_ASSERT, AbortsWithTheGluedText) {
    bool const null = true;
    EXPECT_EXIT(KOV_FATAL_ASSERT(null == false), testing::KilledBySignal(SIGABRT),
                "AssertionFailed:null == false.*tests/base/test_Assert[^.]");
}

TEST(KOV_FATAL_ASSERT, PassesOverATrueCondition) {
    int const number = 1;
    KOV_FATAL_ASSERT(number == 1);
    SUCCEED();
}

TEST(HostFatalError, PrintsTheFurtherStringsThatAreThere) {
    EXPECT_EXIT(HostFatalError("message", "first", nullptr, "third", "path", 5),
                testing::KilledBySignal(SIGABRT), "message first third.*path.*line 5");
}

TEST(KOV_THROW_ASSERT, RaisesTheAssertExceptionAndNothingElse) {
    int const size = 2;
    testing::internal::CaptureStderr();
    try {
        KOV_THROW_ASSERT(size == 1);
        FAIL();
    } catch (KOVBasAssertException const& exception) {
        EXPECT_STREQ(exception.what(), "size == 1");
        std::string const path = exception.SourcePath();
        EXPECT_EQ(path.substr(path.rfind('/')), "/test_Assert");
        EXPECT_GT(exception.Line(), 0);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(KOV_THROW_ASSERT, PassesOverATrueCondition) {
    int const size = 1;
    EXPECT_NO_THROW(KOV_THROW_ASSERT(size == 1));
}

TEST(KOVBasException, ThrowRaisesAnObjectOfItsOwnClass) {
    KOVBasException base("base");
    KOVBasAssertException assertion("assertion");
    KOVSimException refusal("refusal");
    EXPECT_THROW(base.Throw("p", 1), KOVBasException);
    EXPECT_THROW(static_cast<KOVBasException&>(assertion).Throw("p", 1), KOVBasAssertException);
    EXPECT_THROW(static_cast<KOVBasException&>(refusal).Throw("p", 1), KOVSimException);
}

TEST(KOVBasException, IsAStandardExceptionThatRemembersWhereItWasRaised) {
    try {
        KOVSimException("why not").Throw("a/b", 12);
    } catch (std::exception const& exception) {
        EXPECT_STREQ(exception.what(), "why not");
        auto const* const own = dynamic_cast<KOVBasException const*>(&exception);
        ASSERT_NE(own, nullptr);
        EXPECT_STREQ(own->SourcePath(), "a/b");
        EXPECT_EQ(own->Line(), 12);
    }
}

TEST(KOVBasException, CopiesShareTheText) {
    KOVBasException const a("text");
    KOVBasException const b(a);
    EXPECT_EQ(a.what(), b.what());
    EXPECT_EQ(a.SourcePath(), nullptr);
    EXPECT_STREQ(KOVBasException(KOVString()).what(), "");
}

TEST(KOVSimException, AnIndexIsNamedWithItsBounds) {
    try {
        KOVSimException::ThrowIndex("Get", 5, 3);
        FAIL();
    } catch (KOVSimException const& exception) {
        EXPECT_STREQ(exception.what(), "Get: index 5 is outside [0, 3)");
    }
}
