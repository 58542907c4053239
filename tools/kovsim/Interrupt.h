// Signals that ask the process to end. They set a flag, which long work asks between blocks, so
// that outputs are taken away on the ordinary way out. The same signal a second time ends the
// process at once.
#pragma once

namespace kov::tool {

/// Installs the handlers for SIGINT, SIGTERM and SIGHUP.
void CatchInterrupts();

/// A write beyond the limit of file sizes fails as one on a full disk does, instead of ending the
/// process.
void IgnoreFileSizeSignal();

/// The signal that came, or 0.
int PendingInterrupt() noexcept;

/// Throws Interruption if a signal came.
void ThrowIfInterrupted();

/// Ends the process by `signal` itself, so that a calling shell sees what happened.
[[noreturn]] void EndBySignal(int signal);

}  // namespace kov::tool
