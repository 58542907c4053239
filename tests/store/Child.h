// Another process for a test: this test program again, started with "--child=ROLE" and arguments.
// Roles are functions that register themselves by KOV_CHILD. Parent and child speak by lines
// through two pipes.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace kov::test {

class Child {
  public:
    Child(std::string const& role, std::vector<std::string> const& arguments);
    ~Child();
    Child(Child const&) = delete;
    Child& operator=(Child const&) = delete;

    /// The next line that the child prints; empty when it has ended.
    std::string ReadLine();
    void WriteLine(std::string const& line);
    /// Closes its input and waits for its end; the exit status, or minus the signal.
    int Wait();
    void Kill();
    pid_t Process() const { return m_process; }

  private:
    pid_t m_process = -1;
    int m_in = -1;
    int m_out = -1;
};

using ChildRole = int (*)(std::vector<std::string> const& arguments);
struct ChildRoleEntry {
    ChildRoleEntry(char const* name, ChildRole role);
};
/// The exit status of the role that the command line asks for; -1 if it asks for none.
int RunChildRole(int argc, char** argv);
/// In a child: a line to the parent, and a line from it (empty at the end).
void Say(std::string const& line);
std::string Hear();

#define KOV_CHILD(name)                                                    \
    static int name##Role(std::vector<std::string> const& arguments);      \
    static kov::test::ChildRoleEntry const name##Entry(#name, name##Role); \
    static int name##Role([[maybe_unused]] std::vector<std::string> const& arguments)

}  // namespace kov::test
