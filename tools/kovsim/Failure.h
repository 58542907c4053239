// What kovsim reports to its user and ends with: texts without the leading "kovsim: ", which main()
// adds. Anything else that reaches main() (an exception of the document layer, an exhausted memory)
// is reported by its own text.
#pragma once

#include <stdexcept>
#include <string>

namespace kov::tool {

/// The work could not be done; exit status 2.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Something is wrong at one line of a deck: "FILE:LINE: TEXT".
class DeckError : public Failure {
  public:
    /// `line` counts from 1. `text` says what is wrong, and what was expected.
    DeckError(std::string const& file, int line, std::string const& text)
        : Failure(file + ":" + std::to_string(line) + ": " + text), m_line(line) {}

    int Line() const { return m_line; }

  private:
    int m_line;
};

/// The user stopped the work by a signal; everything is cleaned up on the way out.
class Interruption : public Failure {
  public:
    /// `more` tells what is there all the same.
    explicit Interruption(int signal, std::string const& more = {})
        : Failure("interrupted" + more), m_signal(signal) {}

    int Signal() const { return m_signal; }

  private:
    int m_signal;
};

}  // namespace kov::tool
