// Faults: an observer of the store's file calls that has one of them fail, or all of a kind from
// one on, the way a full or dying disk does.
#pragma once

#include <cerrno>
#include <cstdint>
#include <string>

#include "document/store/FileCalls.h"

namespace reliability {

struct Fault {
    enum Kind {
        AnyCall,    ///< the n-th call of any kind, reads included, fails with EIO
        FullOnce,   ///< the n-th write fails with ENOSPC
        ShortOnce,  ///< the n-th write stops half-way
        SyncOnce,   ///< the n-th sync, of a file or a folder, fails with EIO
        FullFrom,   ///< all writes and new files from the n-th on fail with ENOSPC
        DeadFrom,   ///< all writes, cuts and syncs from the n-th on fail with EIO
        Kinds,
    };
    Kind kind;
    std::int64_t n;
};

inline char const* NameOf(Fault::Kind kind) {
    static char const* const names[] = {"any call, once",         "a write finds the disk full",
                                        "a write falls short",    "a sync fails",
                                        "a disk that stays full", "a disk that stops writing"};
    return names[kind];
}

class FaultyDisk : public kov::store::FileObserver {
  public:
    explicit FaultyDisk(Fault const& fault) : m_fault(fault) {}

    int Before(kov::store::FileCall const& call, std::size_t& allowed) override {
        if (!Concerns(call.kind)) return 0;
        std::int64_t const n = m_calls++;
        bool const once = m_fault.kind < Fault::FullFrom;
        if (n < m_fault.n || (once && n > m_fault.n)) return 0;
        if (!m_struck) m_what = Describe(call);
        m_struck = true;
        m_sync = m_sync || call.kind == kov::store::FileCall::Sync ||
                 call.kind == kov::store::FileCall::SyncFolder;
        if (m_fault.kind == Fault::ShortOnce) {
            allowed = call.bytes / 2;
            return 0;
        }
        return m_fault.kind == Fault::FullOnce || m_fault.kind == Fault::FullFrom ? ENOSPC : EIO;
    }
    void After(kov::store::FileCall const&) override {}

    /// Calls that the fault looks at.
    std::int64_t Calls() const { return m_calls; }
    bool HasStruck() const { return m_struck; }
    /// Whether it was, or was among others, a sync that failed.
    bool HasFailedSync() const { return m_sync; }
    std::string const& What() const { return m_what; }

  private:
    bool Concerns(kov::store::FileCall::Kind kind) const {
        using kov::store::FileCall;
        switch (m_fault.kind) {
            case Fault::AnyCall:
                return true;
            case Fault::FullOnce:
            case Fault::ShortOnce:
                return kind == FileCall::Write;
            case Fault::SyncOnce:
                return kind == FileCall::Sync || kind == FileCall::SyncFolder;
            case Fault::FullFrom:
                return kind == FileCall::Write || kind == FileCall::Create ||
                       kind == FileCall::MakeFolder;
            default:
                return kind == FileCall::Write || kind == FileCall::Sync ||
                       kind == FileCall::SyncFolder || kind == FileCall::Truncate;
        }
    }

    static std::string Describe(kov::store::FileCall const& call) {
        static char const* const names[] = {"open",   "create", "make folder", "read",
                                            "write",  "sync",   "sync folder", "truncate",
                                            "rename", "remove", "lock"};
        return std::string(names[call.kind]) + " " + call.path + " at " +
               std::to_string(call.offset) + ", " + std::to_string(call.bytes) + " bytes";
    }

    Fault m_fault;
    std::int64_t m_calls = 0;
    bool m_struck = false;
    bool m_sync = false;
    std::string m_what;
};

}  // namespace reliability
