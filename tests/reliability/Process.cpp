#include "reliability/Process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <stdexcept>

namespace reliability {

namespace {

void WriteAll(int fd, std::string const& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        ssize_t const n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno != EINTR) ::_exit(2);
        if (n > 0) done += static_cast<std::size_t>(n);
    }
}

}  // namespace

Process::Process(std::function<void(Say const&)> const& body) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    m_process = ::fork();
    if (m_process < 0) throw std::runtime_error("no process");
    if (m_process > 0) {
        ::close(ends[1]);
        m_pipe = ends[0];
        return;
    }
    ::close(ends[0]);
    int const out = ends[1];
    int status = 0;
    try {
        body([out](std::string const& line) { WriteAll(out, line + "\n"); });
    } catch (std::exception const& e) {
        WriteAll(out, std::string("error: ") + e.what() + "\n");
        status = 1;
    }
    ::_exit(status);
}

Process::~Process() {
    if (m_process > 0) {
        Kill();
        ::waitpid(m_process, nullptr, 0);
    }
    if (m_pipe >= 0) ::close(m_pipe);
}

bool Process::ReadLine(std::string& line) {
    for (;;) {
        std::size_t const end = m_read.find('\n');
        if (end != std::string::npos) {
            line = m_read.substr(0, end);
            m_read.erase(0, end + 1);
            return true;
        }
        char buffer[4096];
        ssize_t const n = ::read(m_pipe, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        m_read.append(buffer, static_cast<std::size_t>(n));
    }
}

void Process::Kill() { ::kill(m_process, SIGKILL); }

int Process::Wait(std::vector<std::string>& lines) {
    std::string line;
    while (ReadLine(line)) lines.push_back(line);
    int status = 0;
    while (::waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

int KillAtCall::Before(kov::store::FileCall const& call, std::size_t& allowed) {
    if (m_left-- != 0) return 0;
    if (m_moment == Moment::Within && call.kind == kov::store::FileCall::Write && call.bytes > 1) {
        m_due = true;
        allowed = call.bytes / 2;
        return EIO;
    }
    if (m_moment != Moment::After) ::kill(::getpid(), SIGKILL);
    m_due = true;
    return 0;
}

void KillAtCall::After(kov::store::FileCall const&) {
    if (m_due) ::kill(::getpid(), SIGKILL);
}

}  // namespace reliability
