// Files: the POSIX calls of the store, each with the observer of FileCalls.h in front of it. Calls
// are repeated after signals and short transfers; descriptors close on exec. What has "Try" in its
// name answers an errno value (0: done), the rest throws KOVSimException.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "document/store/FileCalls.h"

namespace kov::store {

/// An open file. Movable; closes itself.
class File {
  public:
    File() = default;
    ~File() { Close(); }
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;

    enum class Mode { Read, Write };
    int TryOpen(std::string const& path, Mode mode);
    /// Makes a file that does not exist yet, open for writing and reading.
    int TryCreate(std::string const& path);
    void Open(std::string const& path, Mode mode);
    void Create(std::string const& path);
    void Close();
    /// Lets go of the descriptor without closing it: for a child that has inherited it.
    void Abandon() { m_fd = -1; }

    bool IsOpen() const { return m_fd >= 0; }
    int Descriptor() const { return m_fd; }
    std::string const& Path() const { return m_path; }
    /// For a file that was renamed, or whose folder was.
    void SetPath(std::string path) { m_path = std::move(path); }

    /// Reads up to `bytes`; answers how many there were before the end of the file.
    std::size_t ReadAt(std::int64_t offset, void* out, std::size_t bytes) const;
    void WriteAt(std::int64_t offset, void const* data, std::size_t bytes);
    /// The same; an errno value instead of an exception.
    int TryWriteAt(std::int64_t offset, void const* data, std::size_t bytes);
    /// Lets the system begin to write a stretch to the disk, without waiting: the sync to come is
    /// then short. A failure is told by the sync.
    void BeginWriteBack(std::int64_t offset, std::int64_t bytes) const;
    int TrySync();
    int TryTruncate(std::int64_t size);
    std::int64_t Size() const;

  private:
    int m_fd = -1;
    std::string m_path;
};

int TryMakeFolder(std::string const& path);
/// Makes the entries of a folder lasting.
int TrySyncFolder(std::string const& path);
/// Renames without replacing: EEXIST if `target` exists.
int TryRename(std::string const& path, std::string const& target);
int TryRemoveFile(std::string const& path);
int TryRemoveFolder(std::string const& path);
int TryStat(std::string const& path, struct stat& out);
/// The names in a folder, without "." and "..".
int TryList(std::string const& path, std::vector<std::string>& names);
/// Removes a folder of at most two levels, such as a document. Answers the first error.
int RemoveTree(std::string const& path);

/// A call that is made by someone else: `Observed` asks the observer before, `Observe` tells it
/// afterwards.
int AskObserver(FileCall const& call, std::size_t& allowed);
void TellObserver(FileCall const& call);

}  // namespace kov::store
