// Progress: one line on the terminal that says how far long work has come; nothing at all where
// standard error is no terminal.
#pragma once

#include <chrono>
#include <string>

namespace kov::tool {

class Progress {
  public:
    explicit Progress(std::string what);
    ~Progress();
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    /// Shows done / total, at most a few times a second. Cheap enough to be called once a block.
    void Show(double done, double total);
    /// Takes the line away.
    void Clear();

  private:
    std::string m_what;
    std::chrono::steady_clock::time_point m_next;
    bool m_terminal;
    bool m_shown = false;
};

}  // namespace kov::tool
