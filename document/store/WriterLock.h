// WriterLock: the lock on NAME.ksd/lock. A writer holds it alone for its whole life; a reader that
// opens the catalogue without locks of its own (it may not write, or the file system is a
// network's) holds it shared. Open-file-description locks: they belong to the descriptor, so that
// they hold between two documents of one process as well, and end with a killed process.
//
// A forked child inherits the descriptor; a handler closes it there, so that the lock ends with the
// parent.
#pragma once

#include <string>

#include "document/store/Files.h"

namespace kov::store {

class WriterLock {
  public:
    WriterLock() = default;
    ~WriterLock() { Release(); }
    WriterLock(WriterLock const&) = delete;
    WriterLock& operator=(WriterLock const&) = delete;

    enum class Kind { Alone, Shared };
    /// 0: held now. EAGAIN: someone else holds it. Otherwise an errno value. `Alone` makes the file
    /// where it is missing.
    int TryAcquire(std::string const& path, Kind kind);
    void Release();
    /// In a forked child: forgets the lock, which is the parent's.
    void Abandon();

    /// Whether a writer holds the lock at `path`, in this process or another. A missing file is
    /// held by nobody.
    static bool IsWritten(std::string const& path);

  private:
    File m_file;
};

}  // namespace kov::store
