// An observer that lets the n-th call on files fail, or all from the n-th on. Calls that only look
// (open, read, lock) count as well.
#pragma once

#include <cerrno>
#include <cstddef>
#include <string>

#include "document/store/FileCalls.h"

namespace kov::test {

class FailingCalls : public store::FileObserver {
  public:
    enum class Fault {
        IoError,      ///< any call: EIO
        NoSpace,      ///< what writes or makes something: ENOSPC
        ShortWrite,   ///< half of a write, then ENOSPC
        FullFromHere  ///< NoSpace for all calls from there on
    };
    FailingCalls(std::size_t n, Fault fault) : m_n(n), m_fault(fault) {
        store::SetFileObserver(this);
    }
    ~FailingCalls() override { store::SetFileObserver(nullptr); }

    std::size_t Calls() const { return m_calls; }
    /// Whether a call was made to fail.
    bool HasFailed() const { return m_failed; }
    std::string const& What() const { return m_what; }

    int Before(store::FileCall const& call, std::size_t& allowed) override {
        using Kind = store::FileCall::Kind;
        std::size_t const number = ++m_calls;
        if (m_fault == Fault::FullFromHere ? number < m_n : number != m_n) return 0;
        bool const makes = call.kind == Kind::Write || call.kind == Kind::Create ||
                           call.kind == Kind::MakeFolder || call.kind == Kind::Sync ||
                           call.kind == Kind::Rename;
        if (m_fault != Fault::IoError &&
            !(m_fault == Fault::ShortWrite ? call.kind == Kind::Write : makes))
            return 0;
        if (!m_failed)
            m_what = "call " + std::to_string(number) + ", kind " + std::to_string(call.kind) +
                     " on " + call.path;
        m_failed = true;
        if (m_fault == Fault::IoError) return EIO;
        if (m_fault == Fault::ShortWrite) {
            allowed = call.bytes / 2;
            return 0;
        }
        return ENOSPC;
    }
    void After(store::FileCall const&) override {}

  private:
    std::size_t m_n;
    Fault m_fault;
    std::size_t m_calls = 0;
    bool m_failed = false;
    std::string m_what;
};

}  // namespace kov::test
