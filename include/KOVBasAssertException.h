// What a failed assertion raises. Its text is the condition as it is written in the source.
#pragma once

#include "KOVBasException.h"

class KOV_EXPORT KOVBasAssertException : public KOVBasException {
  public:
    explicit KOVBasAssertException(char const* condition);
    KOVBasAssertException(KOVBasAssertException const& other) noexcept;
    KOVBasAssertException& operator=(KOVBasAssertException const& other) noexcept;
    ~KOVBasAssertException() override;

    void Throw(char const* sourcePath, int line) override;
};
