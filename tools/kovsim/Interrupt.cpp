#include "Interrupt.h"

#include <signal.h>

#include <csignal>
#include <cstdlib>

#include "Failure.h"

namespace kov::tool {
namespace {

volatile std::sig_atomic_t g_signal = 0;

void Note(int signal) { g_signal = signal; }

}  // namespace

void CatchInterrupts() {
    struct sigaction action = {};
    action.sa_handler = Note;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (int const signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        // A signal that the caller ignores, as nohup does, stays ignored.
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) continue;
        sigaction(signal, &action, nullptr);
    }
}

void IgnoreFileSizeSignal() { std::signal(SIGXFSZ, SIG_IGN); }

int PendingInterrupt() noexcept { return static_cast<int>(g_signal); }

void ThrowIfInterrupted() {
    if (g_signal != 0) throw Interruption(static_cast<int>(g_signal));
}

void EndBySignal(int signal) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(2);
}

}  // namespace kov::tool
