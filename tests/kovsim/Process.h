// The command line, run as its users run it.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "support/TempFolder.h"

namespace kov::test {

inline std::string ReadFile(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline void WriteFile(std::string const& path, std::string const& text) {
    std::ofstream(path, std::ios::binary) << text;
}

/// The names in a folder.
inline std::set<std::string> Entries(std::string const& folder) {
    std::set<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

/// A process that runs kovsim in a folder, its output going to files there.
class Process {
  public:
    Process(std::string const& folder, std::vector<std::string> const& arguments,
            std::string program = Program())
        : m_out(folder + "/../" + Unique() + ".out"), m_err(m_out + ".err") {
        m_child = fork();
        if (m_child != 0) return;
        std::vector<char*> argv;
        argv.push_back(program.data());
        std::vector<std::string> copies = arguments;
        for (std::string& argument : copies) argv.push_back(argument.data());
        argv.push_back(nullptr);
        int const out = open(m_out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        int const err = open(m_err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (chdir(folder.c_str()) != 0 || dup2(out, 1) < 0 || dup2(err, 2) < 0) _exit(98);
        execv(program.c_str(), argv.data());
        _exit(99);
    }

    static std::string Program() {
        char const* const program = std::getenv("KOVSIM");
        return program == nullptr ? "kovsim" : program;
    }

    /// Waits for the end; the exit status, or 1000 and the signal.
    int Wait() {
        int status = 0;
        waitpid(m_child, &status, 0);
        return WIFSIGNALED(status) ? 1000 + WTERMSIG(status) : WEXITSTATUS(status);
    }
    /// True once it has ended; Wait() gives nothing then.
    void Signal(int signal) const { kill(m_child, signal); }

    std::string Output() const { return ReadFile(m_out); }
    std::string Errors() const { return ReadFile(m_err); }

  private:
    static std::string Unique() {
        static int count = 0;
        return "run-" + std::to_string(getpid()) + "-" + std::to_string(++count);
    }

    std::string m_out;
    std::string m_err;
    pid_t m_child;
};

/// A folder to run kovsim in.
class Workshop {
  public:
    Workshop() { std::filesystem::create_directory(Folder()); }

    std::string Folder() const { return m_folder / "work"; }
    std::string operator/(char const* name) const { return Folder() + "/" + name; }

    struct Result {
        int status;
        std::string output;
        std::string errors;
    };
    Result Run(std::vector<std::string> const& arguments) const {
        return End(Process(Folder(), arguments));
    }
    /// Runs a line of shell, in which $KOVSIM is the program.
    Result Shell(std::string const& line) const {
        return End(Process(Folder(), {"-c", line}, "/bin/sh"));
    }

  private:
    static Result End(Process process) {
        int const status = process.Wait();
        return {status, process.Output(), process.Errors()};
    }

    TempFolder m_folder;
};

}  // namespace kov::test
