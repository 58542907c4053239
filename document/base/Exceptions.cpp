#include <cstdio>

#include "KOVBasAssertException.h"
#include "KOVBasException.h"
#include "KOVSimException.h"

KOVBasException::KOVBasException(KOVString const& text) : m_text(text) {}
KOVBasException::KOVBasException(KOVBasException const& other) noexcept = default;
KOVBasException& KOVBasException::operator=(KOVBasException const& other) noexcept = default;
KOVBasException::~KOVBasException() = default;

char const* KOVBasException::what() const noexcept { return m_text.TextOrEmpty(); }

void KOVBasException::SetPlace(char const* sourcePath, int line) {
    m_sourcePath = sourcePath;
    m_line = line;
}

void KOVBasException::Throw(char const* sourcePath, int line) {
    SetPlace(sourcePath, line);
    throw *this;
}

KOVBasAssertException::KOVBasAssertException(char const* condition)
    : KOVBasException(KOVString(condition)) {}
KOVBasAssertException::KOVBasAssertException(KOVBasAssertException const& other) noexcept = default;
KOVBasAssertException& KOVBasAssertException::operator=(
    KOVBasAssertException const& other) noexcept = default;
KOVBasAssertException::~KOVBasAssertException() = default;

void KOVBasAssertException::Throw(char const* sourcePath, int line) {
    SetPlace(sourcePath, line);
    throw *this;
}

KOVSimException::KOVSimException(KOVString const& text) : KOVBasException(text) {}
KOVSimException::KOVSimException(KOVSimException const& other) noexcept = default;
KOVSimException& KOVSimException::operator=(KOVSimException const& other) noexcept = default;
KOVSimException::~KOVSimException() = default;

void KOVSimException::Throw(char const* sourcePath, int line) {
    SetPlace(sourcePath, line);
    throw *this;
}

void KOVSimException::ThrowIndex(char const* asked, long long index, long long size) {
    char numbers[80];
    std::snprintf(numbers, sizeof numbers, ": index %lld is outside [0, %lld)", index, size);
    throw KOVSimException(KOVString(asked) + numbers);
}

void KOVSimException::ThrowText(char const* text) { throw KOVSimException(KOVString(text)); }
