// FileCalls: the one seam through which the store touches files, its own segment calls and those
// that SQLite makes through our VFS alike. Tests put an observer in: it may let the n-th call fail
// or fall short, and it may record what was written, synced, created, renamed and removed. Without
// an observer a call costs one test of a null pointer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kov::store {

/// One call on a file. `path` is the full path as the store knows it.
struct FileCall {
    enum Kind {
        Open,    ///< an existing file is opened
        Create,  ///< a file comes into being
        MakeFolder,
        Read,
        Write,
        Sync,        ///< data of one file
        SyncFolder,  ///< entries of one folder
        Truncate,    ///< `offset` is the new size
        Rename,      ///< `path` to `target`, which does not exist
        Remove,
        Lock,
    };
    Kind kind;
    std::string const& path;
    std::string const* target = nullptr;  ///< of a rename
    std::int64_t offset = 0;
    void const* data = nullptr;  ///< of a write
    std::size_t bytes = 0;       ///< of a read or write
};

class FileObserver {
  public:
    virtual ~FileObserver() = default;
    /// Called before the call is made. 0 lets it through; an errno value makes it fail with that
    /// error, without effect. For a write, `allowed` may be lowered: that many bytes are written,
    /// and the call then fails with the value returned (0: reported as a short write of ENOSPC).
    virtual int Before(FileCall const& call, std::size_t& allowed) = 0;
    /// Called after it has succeeded.
    virtual void After(FileCall const& call) = 0;
};

/// Puts an observer in, or takes it out with null. For tests; one for the process.
void SetFileObserver(FileObserver* observer);
FileObserver* CurrentFileObserver();

}  // namespace kov::store
