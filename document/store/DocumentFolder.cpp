#include "document/store/DocumentFolder.h"

#include <linux/magic.h>
#include <signal.h>
#include <sys/statfs.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "document/store/CatalogueTables.h"
#include "document/store/CatalogueVfs.h"
#include "document/store/Errors.h"
#include "document/store/Files.h"
#include "document/store/WriterLock.h"

namespace kov::store {

namespace {

constexpr char SqliteMagic[] = "SQLite format 3";
constexpr int TornReadAttempts = 50;

std::uint32_t Big32(unsigned char const* at) {
    return std::uint32_t{at[0]} << 24 | std::uint32_t{at[1]} << 16 | std::uint32_t{at[2]} << 8 |
           at[3];
}

/// Whether the maker of a temporary folder is at work no more. It holds the lock inside as long as
/// it works. Its process number guards the moment before it has the lock; a number may belong to
/// someone new, so it counts for a minute only.
bool IsAbandoned(std::string const& folder, long process) {
    WriterLock lock;
    struct stat status;
    if (TryStat(folder + "/lock", status) == 0 &&
        lock.TryAcquire(folder + "/lock", WriterLock::Kind::Alone) != 0)
        return false;
    if (::kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH) return true;
    return TryStat(folder, status) == 0 && ::time(nullptr) - status.st_mtime > 60;
}

void RemoveLeftovers(std::string const& parent, std::string const& prefix) {
    std::vector<std::string> names;
    if (TryList(parent, names) != 0) return;
    for (std::string const& name : names) {
        if (name.compare(0, prefix.size(), prefix) != 0) continue;
        char* end = nullptr;
        long const process = std::strtol(name.c_str() + prefix.size(), &end, 10);
        if (process <= 0 || *end != '-') continue;
        std::string const folder = parent + "/" + name;
        if (IsAbandoned(folder, process)) RemoveTree(folder);
    }
}

}  // namespace

std::string CleanPath(std::string const& path) {
    std::size_t end = path.size();
    while (end > 1 && path[end - 1] == '/') --end;
    if (end == 0) Fail("a document needs a path");
    if (path.find('\0') != std::string::npos) Fail("a path cannot hold a zero byte");
    return path.substr(0, end);
}

std::string AbsolutePath(std::string const& path) {
    if (path[0] == '/') return path;
    char* const here = ::getcwd(nullptr, 0);
    if (!here) FailFile("find", path, errno);
    std::string const absolute =
        std::string(here) == "/" ? "/" + path : std::string(here) + "/" + path;
    std::free(here);
    return absolute;
}

std::string ParentOf(std::string const& path) {
    std::size_t const slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(std::string const& path) {
    std::size_t const slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

FolderIdentity IdentifyFolder(std::string const& path) {
    struct stat status;
    if (int const error = TryStat(path, status)) FailFile("open", path, error);
    if (!S_ISDIR(status.st_mode))
        Fail("cannot open " + path + ": it is not a document, which is a folder");
    return {status.st_dev, status.st_ino};
}

std::int64_t LogBytes(DocumentFolder const& folder) {
    struct stat status;
    return TryStat(folder.Log(), status) == 0 ? status.st_size : 0;
}

void CheckCatalogueFile(DocumentFolder const& folder, bool beingWritten) {
    std::string const where = "cannot open " + folder.path + ": ";
    File file;
    int const error = file.TryOpen(folder.Catalogue(), File::Mode::Read);
    if (error == ENOENT || error == ENOTDIR)
        Fail(where + "it is not a document: it has no catalog.sqlite");
    if (error) FailFile("open", folder.Catalogue(), error);
    for (int attempt = 1;; ++attempt) {
        bool const hasLog = LogBytes(folder) > 0;
        std::int64_t const size = file.Size();
        alignas(8) unsigned char page[CataloguePageBytes];
        std::size_t const got = file.ReadAt(0, page, sizeof page);
        if (got >= sizeof SqliteMagic && std::memcmp(page, SqliteMagic, sizeof SqliteMagic) != 0) {
            Fail(where + "it is not a document: catalog.sqlite is no catalogue");
        }
        if (got < 100)
            Fail(where + "catalog.sqlite has been cut short to " + std::to_string(size) + " bytes");
        std::uint32_t const version = Big32(page + 60);
        std::uint32_t const pageBytes =
            page[16] == 0 && page[17] == 1 ? 65536u : std::uint32_t{page[16]} << 8 | page[17];
        bool const sound = got == sizeof page && IsSoundCataloguePage(page, 1);
        bool const isDocument = Big32(page + 68) == ApplicationId;
        // A newer format may lay its pages out in another way.
        if (isDocument && version > static_cast<std::uint32_t>(FormatVersion) &&
            (sound || pageBytes != CataloguePageBytes)) {
            Fail(where + "it has format version " + std::to_string(version) +
                 ", written by a newer program; this one knows " + "versions up to " +
                 std::to_string(FormatVersion));
        }
        if (!sound && (hasLog || beingWritten) && attempt < TornReadAttempts) {
            if (!beingWritten) return;  // the log holds what a power cut may have torn
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            continue;
        }
        if (got < sizeof page)
            Fail(where + "catalog.sqlite has been cut short to " + std::to_string(size) + " bytes");
        if (!sound) Fail(where + "page 1 of catalog.sqlite is damaged: its checksum does not fit");
        if (!isDocument)
            Fail(where + "it is not a document: catalog.sqlite belongs to another program");
        if (pageBytes != CataloguePageBytes || page[20] != CatalogueReservedBytes || version == 0) {
            Fail(where + "the header of catalog.sqlite is damaged");
        }
        std::int64_t const wanted = std::int64_t{Big32(page + 28)} * CataloguePageBytes;
        if (hasLog || beingWritten || size >= wanted) return;
        Fail(where + "catalog.sqlite has been cut short: " + std::to_string(size) + " bytes of " +
             std::to_string(wanted));
    }
}

bool IsOnNetwork(std::string const& path) {
    constexpr long Smb2 = 0xFE534D42, Cifs = 0xFF534D42, Ceph = 0x00C36400, Lustre = 0x0BD00BD0,
                   Gpfs = 0x47504653, NineP = 0x01021997, Gfs2 = 0x01161970, Ocfs2 = 0x7461636f;
    struct statfs status;
    if (::statfs(path.c_str(), &status) != 0) return false;
    switch (static_cast<long>(status.f_type) & 0xFFFFFFFFL) {
        case NFS_SUPER_MAGIC:
        case SMB_SUPER_MAGIC:
        case AFS_SUPER_MAGIC:
        case CODA_SUPER_MAGIC:
        case Smb2:
        case Cifs:
        case Ceph:
        case Lustre:
        case Gpfs:
        case NineP:
        case Gfs2:
        case Ocfs2:
            return true;
        default:
            return false;
    }
}

bool MayWrite(DocumentFolder const& folder) {
    return ::access(folder.path.c_str(), W_OK | X_OK) == 0 &&
           ::access(folder.Catalogue().c_str(), W_OK) == 0;
}

std::string MakeTemporaryFolder(std::string const& path) {
    static std::atomic<int> next{0};
    std::string const parent = ParentOf(path);
    std::string const prefix = "." + NameOf(path) + ".tmp-";
    RemoveLeftovers(parent, prefix);
    for (;;) {
        std::string const folder = (parent == "/" ? "" : parent) + "/" + prefix +
                                   std::to_string(::getpid()) + "-" + std::to_string(++next);
        int const error = TryMakeFolder(folder);
        if (error == 0) return folder;
        if (error != EEXIST) FailFile("create", path, error);
    }
}

}  // namespace kov::store
