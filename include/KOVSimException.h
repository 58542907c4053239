// Misuse and refusals of the document layer. Its text says what was asked, of which object, and
// why not.
#pragma once

#include "KOVBasException.h"

class KOV_EXPORT KOVSimException : public KOVBasException {
  public:
    explicit KOVSimException(KOVString const& text);
    KOVSimException(KOVSimException const& other) noexcept;
    KOVSimException& operator=(KOVSimException const& other) noexcept;
    ~KOVSimException() override;

    void Throw(char const* sourcePath, int line) override;

    /// Raises "`asked`: index `index` is outside [0, `size`)". Out of line, so that the checks of
    /// the containers stay small.
    [[noreturn]] static void ThrowIndex(char const* asked, long long index, long long size);
    /// Raises `text`.
    [[noreturn]] static void ThrowText(char const* text);
};
