// Process: a forked copy of the test that does something until it ends or is killed, and tells its
// parent by lines through a pipe. No document may be open at the fork.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "document/store/FileCalls.h"

namespace reliability {

/// Speaks to the parent. A line that was said has been handed to the kernel: it outlives a kill.
using Say = std::function<void(std::string const& line)>;

class Process {
  public:
    /// Starts `body`. An exception that leaves it becomes the line "error: TEXT" and status 1.
    explicit Process(std::function<void(Say const&)> const& body);
    ~Process();
    Process(Process const&) = delete;
    Process& operator=(Process const&) = delete;

    /// The next line; false when the process has ended.
    bool ReadLine(std::string& line);
    void Kill();
    /// Reads what is left, adds it to `lines`, and waits. The exit status, or minus the signal.
    int Wait(std::vector<std::string>& lines);

  private:
    pid_t m_process = -1;
    int m_pipe = -1;
    std::string m_read;
};

/// Ends its own process with SIGKILL at the n-th call on a file, from 0: before the call, after it,
/// or, where it is a write, half-way through.
class KillAtCall : public kov::store::FileObserver {
  public:
    enum class Moment { Before, Within, After };
    KillAtCall(std::int64_t call, Moment moment) : m_left(call), m_moment(moment) {}

    int Before(kov::store::FileCall const& call, std::size_t& allowed) override;
    void After(kov::store::FileCall const& call) override;

  private:
    std::int64_t m_left;
    Moment m_moment;
    bool m_due = false;
};

/// Counts calls.
class CountCalls : public kov::store::FileObserver {
  public:
    int Before(kov::store::FileCall const&, std::size_t&) override {
        ++count;
        return 0;
    }
    void After(kov::store::FileCall const&) override {}
    std::int64_t count = 0;
};

/// Keeps an observer in the seam for a scope.
class Observing {
  public:
    explicit Observing(kov::store::FileObserver& observer) {
        kov::store::SetFileObserver(&observer);
    }
    ~Observing() { kov::store::SetFileObserver(nullptr); }
    Observing(Observing const&) = delete;
    Observing& operator=(Observing const&) = delete;
};

}  // namespace reliability
