// Plain text output. zio_cout writes to standard output through the C runtime's own buffer, so that
// it mixes in order with printf.
#pragma once

#include "KOVExport.h"

class KOV_EXPORT zio_ostream {
  public:
    constexpr zio_ostream() = default;

    /// Null prints nothing.
    zio_ostream& print(char const* text);
    zio_ostream& print_int(int number);
    zio_ostream& put(char character);
    zio_ostream& flush();
};

extern KOV_EXPORT zio_ostream zio_cout;
