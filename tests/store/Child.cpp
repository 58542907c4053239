#include "store/Child.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <map>
#include <stdexcept>

extern char** environ;

namespace kov::test {

namespace {

std::map<std::string, ChildRole>& Roles() {
    static std::map<std::string, ChildRole> roles;
    return roles;
}

}  // namespace

ChildRoleEntry::ChildRoleEntry(char const* name, ChildRole role) { Roles()[name] = role; }

int RunChildRole(int argc, char** argv) {
    std::string const prefix = "--child=";
    if (argc < 2 || std::string(argv[1]).compare(0, prefix.size(), prefix) != 0) return -1;
    auto const role = Roles().find(argv[1] + prefix.size());
    if (role == Roles().end()) return 99;
    try {
        return role->second(std::vector<std::string>(argv + 2, argv + argc));
    } catch (std::exception const& e) {
        Say(std::string("exception: ") + e.what());
        return 98;
    }
}

Child::Child(std::string const& role, std::vector<std::string> const& arguments) {
    int toChild[2], fromChild[2];
    if (::pipe2(toChild, O_CLOEXEC) != 0 || ::pipe2(fromChild, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, toChild[0], 0);
    posix_spawn_file_actions_adddup2(&actions, fromChild[1], 1);
    std::vector<std::string> words{"/proc/self/exe", "--child=" + role};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    int const error =
        ::posix_spawn(&m_process, "/proc/self/exe", &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(toChild[0]);
    ::close(fromChild[1]);
    m_out = toChild[1];
    m_in = fromChild[0];
    if (error) throw std::runtime_error("posix_spawn");
}

Child::~Child() {
    if (m_process > 0) Kill();
    if (m_out >= 0) ::close(m_out);
    if (m_in >= 0) ::close(m_in);
}

std::string Child::ReadLine() {
    std::string line;
    char c;
    for (;;) {
        ssize_t const n = ::read(m_in, &c, 1);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0 || c == '\n') return line;
        line += c;
    }
}

void Child::WriteLine(std::string const& line) {
    std::string const text = line + "\n";
    if (::write(m_out, text.data(), text.size()) < 0)
        throw std::runtime_error("the child has gone");
}

int Child::Wait() {
    if (m_out >= 0) ::close(m_out);
    m_out = -1;
    int status = 0;
    while (::waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

void Child::Kill() {
    ::kill(m_process, SIGKILL);
    Wait();
}

void Say(std::string const& line) {
    std::string const text = line + "\n";
    if (::write(1, text.data(), text.size()) < 0) ::_exit(97);
}

std::string Hear() {
    std::string line;
    std::getline(std::cin, line);
    return line;
}

}  // namespace kov::test
