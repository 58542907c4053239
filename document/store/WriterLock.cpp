#include "document/store/WriterLock.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

#include "document/store/Forks.h"

namespace kov::store {

namespace {

// Descriptors of held locks plus one, for the child of a fork: only plain memory can be looked at
// there.
constexpr int Places = 4096;
std::atomic<int> g_descriptors[Places];

void Remember(int fd) {
    WatchForks();
    for (auto& place : g_descriptors) {
        int free = 0;
        if (place.compare_exchange_strong(free, fd + 1)) return;
    }
}

void Forget(int fd) {
    for (auto& place : g_descriptors) {
        int held = fd + 1;
        if (place.compare_exchange_strong(held, 0)) return;
    }
}

struct flock WholeFile(short type) {
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    return lock;
}

}  // namespace

void CloseLocksInChild() {
    for (auto& place : g_descriptors) {
        if (int const held = place.exchange(0)) ::close(held - 1);
    }
}

int WriterLock::TryAcquire(std::string const& path, Kind kind) {
    FileCall const call{FileCall::Lock, path};
    std::size_t allowed = 0;
    if (int const refused = AskObserver(call, allowed)) return refused;
    int error = m_file.TryOpen(path, kind == Kind::Alone ? File::Mode::Write : File::Mode::Read);
    if (error == ENOENT && kind == Kind::Alone) error = m_file.TryCreate(path);
    if (error) return error;
    struct flock lock = WholeFile(kind == Kind::Alone ? F_WRLCK : F_RDLCK);
    if (::fcntl(m_file.Descriptor(), F_OFD_SETLK, &lock) != 0) {
        error = errno == EACCES ? EAGAIN : errno;
        m_file.Close();
        return error;
    }
    Remember(m_file.Descriptor());
    TellObserver(call);
    return 0;
}

void WriterLock::Release() {
    if (!m_file.IsOpen()) return;
    // Unlocked by hand: a copy of the descriptor in a child would keep the lock.
    struct flock lock = WholeFile(F_UNLCK);
    ::fcntl(m_file.Descriptor(), F_OFD_SETLK, &lock);
    Forget(m_file.Descriptor());
    m_file.Close();
}

void WriterLock::Abandon() { m_file.Abandon(); }

bool WriterLock::IsWritten(std::string const& path) {
    File file;
    if (file.TryOpen(path, File::Mode::Read) != 0) return false;
    struct flock lock = WholeFile(F_RDLCK);
    return ::fcntl(file.Descriptor(), F_OFD_GETLK, &lock) == 0 && lock.l_type == F_WRLCK;
}

}  // namespace kov::store
