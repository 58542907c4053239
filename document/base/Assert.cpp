// What stands behind the assertion macros.
#include <cstdio>
#include <cstdlib>

#include "HostFatalError.h"
#include "KOVAssert.h"
#include "KOVBasAssertException.h"
#include "KOVSimUttAssert.h"
#include "document/base/SourcePath.h"

namespace {

char const* OrEmpty(char const* text) { return text ? text : ""; }

}  // namespace

void KOVSimUttAssert::ReportAssertionFailure(char const* condition, char const* sourcePath,
                                             int line) {
    std::fprintf(stderr, "Assertion failed: %s, at %s, line %d\n", OrEmpty(condition),
                 OrEmpty(sourcePath), line);
}

void HostFatalError(char const* message, char const* detail1, char const* detail2,
                    char const* detail3, char const* sourcePath, int line) {
    std::fprintf(stderr, "%s", OrEmpty(message));
    for (char const* detail : {detail1, detail2, detail3}) {
        if (detail) std::fprintf(stderr, " %s", detail);
    }
    std::fprintf(stderr, ", at %s, line %d\n", OrEmpty(sourcePath), line);
    std::abort();
}

void KOVReportFailedCheck(char const* condition, char const* file, int line) {
    KOVSimUttAssert::ReportAssertionFailure(condition, kov::base::SourcePath(file).Text(), line);
}

// The exception is raised and goes no further than this function: whatever handler stands above,
// the process ends here, and with status 1.
void KOVEndFailedCheck(bool stillFails, char const* condition, char const* file, int line) {
    if (stillFails) {
        try {
            KOVBasAssertException exception(condition);
            exception.Throw(kov::base::SourcePath(file).Text(), line);
        } catch (...) {
        }
    }
    std::exit(1);
}

void KOVFailFatally(char const* message, char const* file, int line) {
    HostFatalError(message, nullptr, nullptr, nullptr, kov::base::SourcePath(file).Text(), line);
}

void KOVThrowFailedCheck(char const* condition, char const* file, int line) {
    KOVBasAssertException exception(condition);
    exception.Throw(kov::base::SourcePath(file).Text(), line);
}
