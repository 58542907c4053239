// The fatal report of the host.
#pragma once

#include "KOVExport.h"

/// Prints the message, those of the three further strings that are not null, the source path and
/// the line to standard error, and calls abort().
[[noreturn]] KOV_EXPORT void HostFatalError(char const* message, char const* detail1,
                                            char const* detail2, char const* detail3,
                                            char const* sourcePath, int line);
