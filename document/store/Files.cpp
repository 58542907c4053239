#include "document/store/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "document/store/Errors.h"

namespace kov::store {

namespace {

int OpenDescriptor(std::string const& path, int flags) {
    int fd;
    do {
        fd = ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, 0666);
    } while (fd < 0 && errno == EINTR);
    return fd;
}

int Ask(FileCall const& call) {
    std::size_t allowed = call.bytes;
    return AskObserver(call, allowed);
}

/// Makes a call that answers -1 and errno, between the two questions to the observer.
template <class F>
int Observed(FileCall const& call, F const& make) {
    if (int const error = Ask(call)) return error;
    int result;
    do {
        result = make();
    } while (result < 0 && errno == EINTR);
    if (result < 0) return errno;
    TellObserver(call);
    return 0;
}

}  // namespace

File::File(File&& other) noexcept
    : m_fd(std::exchange(other.m_fd, -1)), m_path(std::move(other.m_path)) {}

File& File::operator=(File&& other) noexcept {
    if (this != &other) {
        Close();
        m_fd = std::exchange(other.m_fd, -1);
        m_path = std::move(other.m_path);
    }
    return *this;
}

int File::TryOpen(std::string const& path, Mode mode) {
    return Observed({FileCall::Open, path}, [&] {
        int const fd = OpenDescriptor(path, mode == Mode::Write ? O_RDWR : O_RDONLY);
        if (fd < 0) return -1;
        Close();
        m_fd = fd;
        m_path = path;
        return 0;
    });
}

int File::TryCreate(std::string const& path) {
    return Observed({FileCall::Create, path}, [&] {
        int const fd = OpenDescriptor(path, O_RDWR | O_CREAT | O_EXCL);
        if (fd < 0) return -1;
        Close();
        m_fd = fd;
        m_path = path;
        return 0;
    });
}

void File::Open(std::string const& path, Mode mode) {
    if (int const error = TryOpen(path, mode)) FailFile("open", path, error);
}

void File::Create(std::string const& path) {
    if (int const error = TryCreate(path)) FailFile("create", path, error);
}

void File::Close() {
    if (m_fd >= 0) ::close(std::exchange(m_fd, -1));
}

std::size_t File::ReadAt(std::int64_t offset, void* out, std::size_t bytes) const {
    FileCall const call{FileCall::Read, m_path, nullptr, offset, nullptr, bytes};
    if (int const error = Ask(call)) FailFile("read", m_path, error);
    std::size_t done = 0;
    while (done < bytes) {
        ssize_t const n = ::pread(m_fd, static_cast<char*>(out) + done, bytes - done,
                                  offset + static_cast<std::int64_t>(done));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) FailFile("read", m_path, errno);
        if (n == 0) break;
        done += static_cast<std::size_t>(n);
    }
    TellObserver(call);
    return done;
}

int File::TryWriteAt(std::int64_t offset, void const* data, std::size_t bytes) {
    std::size_t allowed = bytes;
    int const refused =
        AskObserver({FileCall::Write, m_path, nullptr, offset, data, bytes}, allowed);
    std::size_t const wanted = refused == 0 ? bytes : allowed < bytes ? allowed : 0;
    std::size_t done = 0;
    while (done < wanted) {
        ssize_t const n = ::pwrite(m_fd, static_cast<char const*>(data) + done, wanted - done,
                                   offset + static_cast<std::int64_t>(done));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return errno;
        if (n == 0) return ENOSPC;
        done += static_cast<std::size_t>(n);
    }
    if (done) TellObserver({FileCall::Write, m_path, nullptr, offset, data, done});
    return refused;
}

void File::WriteAt(std::int64_t offset, void const* data, std::size_t bytes) {
    if (int const error = TryWriteAt(offset, data, bytes)) FailFile("write", m_path, error);
}

void File::BeginWriteBack(std::int64_t offset, std::int64_t bytes) const {
    ::sync_file_range(m_fd, offset, bytes, SYNC_FILE_RANGE_WRITE);
}

int File::TrySync() {
    return Observed({FileCall::Sync, m_path}, [&] { return ::fdatasync(m_fd); });
}

int File::TryTruncate(std::int64_t size) {
    return Observed({FileCall::Truncate, m_path, nullptr, size},
                    [&] { return ::ftruncate(m_fd, size); });
}

std::int64_t File::Size() const {
    struct stat status;
    if (::fstat(m_fd, &status) != 0) FailFile("read the size of", m_path, errno);
    return status.st_size;
}

int TryMakeFolder(std::string const& path) {
    return Observed({FileCall::MakeFolder, path}, [&] { return ::mkdir(path.c_str(), 0777); });
}

int TrySyncFolder(std::string const& path) {
    return Observed({FileCall::SyncFolder, path}, [&] {
        int const fd = OpenDescriptor(path, O_RDONLY | O_DIRECTORY);
        if (fd < 0) return -1;
        int const result = ::fsync(fd);
        int const error = errno;
        ::close(fd);
        errno = error;
        return result;
    });
}

int TryRename(std::string const& path, std::string const& target) {
    return Observed({FileCall::Rename, path, &target}, [&] {
        if (::renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
            return 0;
        }
        if (errno != EINVAL && errno != ENOSYS) return -1;
        // A file system that cannot: a folder that is renamed replaces empty folders only.
        struct stat status;
        if (::lstat(target.c_str(), &status) == 0) {
            errno = EEXIST;
            return -1;
        }
        return ::rename(path.c_str(), target.c_str());
    });
}

int TryRemoveFile(std::string const& path) {
    return Observed({FileCall::Remove, path}, [&] { return ::unlink(path.c_str()); });
}

int TryRemoveFolder(std::string const& path) {
    return Observed({FileCall::Remove, path}, [&] { return ::rmdir(path.c_str()); });
}

int TryStat(std::string const& path, struct stat& out) {
    return ::stat(path.c_str(), &out) == 0 ? 0 : errno;
}

int TryList(std::string const& path, std::vector<std::string>& names) {
    DIR* const folder = ::opendir(path.c_str());
    if (!folder) return errno;
    for (;;) {
        errno = 0;
        dirent const* const entry = ::readdir(folder);
        if (!entry) break;
        std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(std::move(name));
    }
    int const error = errno;
    ::closedir(folder);
    return error;
}

int RemoveTree(std::string const& path) {
    std::vector<std::string> names;
    int first = TryList(path, names);
    for (std::string const& name : names) {
        std::string const entry = path + "/" + name;
        struct stat status;
        if (::lstat(entry.c_str(), &status) != 0) continue;
        int const error = S_ISDIR(status.st_mode) ? RemoveTree(entry) : TryRemoveFile(entry);
        if (first == 0) first = error;
    }
    int const error = TryRemoveFolder(path);
    return first ? first : error;
}

}  // namespace kov::store
