#include "Progress.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace kov::tool {

using Clock = std::chrono::steady_clock;

Progress::Progress(std::string what)
    : m_what(std::move(what)),
      m_next(Clock::now() + std::chrono::milliseconds(500)),
      m_terminal(isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() { Clear(); }

void Progress::Show(double done, double total) {
    if (!m_terminal || total <= 0) return;
    auto const now = Clock::now();
    if (now < m_next) return;
    m_next = now + std::chrono::milliseconds(200);
    double const share = done < total ? done / total : 1.0;
    std::fprintf(stderr, "\r%s %3.0f%%", m_what.c_str(), 100.0 * share);
    std::fflush(stderr);
    m_shown = true;
}

void Progress::Clear() {
    if (!m_shown) return;
    std::fprintf(stderr, "\r\033[K");
    std::fflush(stderr);
    m_shown = false;
}

}  // namespace kov::tool
