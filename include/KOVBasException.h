// Base of all exceptions of the system. Its text is kept in a shared string: copying while
// unwinding allocates nothing.
#pragma once

#include <exception>

#include "KOVExport.h"
#include "KOVString.h"

class KOV_EXPORT KOVBasException : public std::exception {
  public:
    explicit KOVBasException(KOVString const& text);
    KOVBasException(KOVBasException const& other) noexcept;
    KOVBasException& operator=(KOVBasException const& other) noexcept;
    ~KOVBasException() override;

    /// The text given to the constructor; never null.
    char const* what() const noexcept override;
    KOVString const& Text() const noexcept { return m_text; }

    /// Raises an object of the exception's own class, a copy of this one that remembers the place.
    /// Each class that derives from this one overrides it with a throw of its own class.
    virtual void Throw(char const* sourcePath, int line);

    /// Where it was raised: null and 0 if it was not raised by Throw.
    char const* SourcePath() const noexcept { return m_sourcePath.Text(); }
    int Line() const noexcept { return m_line; }

  protected:
    void SetPlace(char const* sourcePath, int line);

  private:
    KOVString m_text;
    KOVString m_sourcePath;
    int m_line = 0;
};
