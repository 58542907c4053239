// The report of a failed checked assertion.
#pragma once

#include "KOVExport.h"

class KOV_EXPORT KOVSimUttAssert {
  public:
    /// Prints one line to standard error, with the condition, the source path and the line, and
    /// returns. A null text is printed as an empty one.
    static void ReportAssertionFailure(char const* condition, char const* sourcePath, int line);
};
