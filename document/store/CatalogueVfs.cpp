#include "document/store/CatalogueVfs.h"

#include <sqlite3.h>

#include <cerrno>
#include <cstring>
#include <mutex>
#include <new>

#include "document/store/Files.h"
#include "document/store/PageSums.h"

namespace kov::store {

namespace {

constexpr std::size_t PageSize = CataloguePageBytes;
constexpr std::size_t SummedBytes = PageSize - CatalogueReservedBytes;

struct State {
    std::string path;
    bool isCatalogue = false;
    bool folderUnsynced = false;  // a new log: SQLite syncs the folder with the log's first sync
};

struct KovFile {
    sqlite3_file base;
    State* state;
    sqlite3_file* Real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

KovFile* Cast(sqlite3_file* file) { return reinterpret_cast<KovFile*>(file); }
sqlite3_vfs* RealVfs(sqlite3_vfs* vfs) { return static_cast<sqlite3_vfs*>(vfs->pAppData); }

std::string FolderOf(std::string const& path) {
    std::size_t const slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

std::uint64_t StoredSum(void const* page) {
    std::uint64_t sum;
    std::memcpy(&sum, static_cast<char const*>(page) + SummedBytes, sizeof sum);
    return sum;
}

// The last failure of the log is looked for beside that of the catalogue, so it is kept by thread:
// SQLite gives no way from a log's file to its connection.
thread_local CatalogueFault t_fault;

int Refused(State const& state, int error, int code) {
    t_fault.error = error;
    t_fault.path = state.path;
    return error == ENOSPC && code == SQLITE_IOERR_WRITE ? SQLITE_FULL : code;
}

int Ask(State const& state, FileCall const& call, int code) {
    std::size_t allowed = call.bytes;
    int const error = AskObserver(call, allowed);
    return error ? Refused(state, error, code) : SQLITE_OK;
}

int Close(sqlite3_file* file) {
    KovFile* const f = Cast(file);
    int const code = f->Real()->pMethods ? f->Real()->pMethods->xClose(f->Real()) : SQLITE_OK;
    delete f->state;
    f->state = nullptr;
    return code;
}

bool IsHeaderRead(int bytes, sqlite3_int64 offset) {
    return (offset == 0 && bytes == 100) || (offset == 24 && bytes == 16);
}

int Read(sqlite3_file* file, void* out, int bytes, sqlite3_int64 offset) {
    KovFile* const f = Cast(file);
    State& state = *f->state;
    auto const size = static_cast<std::size_t>(bytes);
    FileCall const call{FileCall::Read, state.path, nullptr, offset, nullptr, size};
    if (int const code = Ask(state, call, SQLITE_IOERR_READ)) return code;
    int const code = f->Real()->pMethods->xRead(f->Real(), out, bytes, offset);
    if (code == SQLITE_OK) TellObserver(call);
    if (!state.isCatalogue) return code;
    std::int64_t const number = offset / CataloguePageBytes + 1;
    if (code == SQLITE_IOERR_SHORT_READ && offset >= CataloguePageBytes) {
        // SQLite would go on with zeros.
        t_fault.missingPage = number;
        return SQLITE_IOERR_DATA;
    }
    if (code != SQLITE_OK || IsHeaderRead(bytes, offset)) return code;
    if (size != PageSize || offset % CataloguePageBytes != 0 ||
        !IsSoundCataloguePage(out, number)) {
        t_fault.damagedPage = number;
        return SQLITE_IOERR_DATA;
    }
    return SQLITE_OK;
}

int WriteThrough(KovFile* f, void const* data, std::size_t bytes, sqlite3_int64 offset) {
    State& state = *f->state;
    std::size_t allowed = bytes;
    int const refused =
        AskObserver({FileCall::Write, state.path, nullptr, offset, data, bytes}, allowed);
    std::size_t const wanted = refused == 0 ? bytes : allowed < bytes ? allowed : 0;
    if (wanted) {
        int const code =
            f->Real()->pMethods->xWrite(f->Real(), data, static_cast<int>(wanted), offset);
        if (code != SQLITE_OK) return code;
        TellObserver({FileCall::Write, state.path, nullptr, offset, data, wanted});
    }
    return refused ? Refused(state, refused, SQLITE_IOERR_WRITE) : SQLITE_OK;
}

int Write(sqlite3_file* file, void const* data, int bytes, sqlite3_int64 offset) {
    KovFile* const f = Cast(file);
    auto const size = static_cast<std::size_t>(bytes);
    if (!f->state->isCatalogue) return WriteThrough(f, data, size, offset);
    if (size != PageSize || offset % CataloguePageBytes != 0) return SQLITE_IOERR_WRITE;
    char page[PageSize];
    std::memcpy(page, data, SummedBytes);
    auto const number = static_cast<std::uint64_t>(offset / CataloguePageBytes + 1);
    std::uint64_t const sum = SeededSum(page, SummedBytes, number);
    std::memcpy(page + SummedBytes, &sum, sizeof sum);
    return WriteThrough(f, page, PageSize, offset);
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
    KovFile* const f = Cast(file);
    FileCall const call{FileCall::Truncate, f->state->path, nullptr, size};
    if (int const code = Ask(*f->state, call, SQLITE_IOERR_TRUNCATE)) return code;
    int const code = f->Real()->pMethods->xTruncate(f->Real(), size);
    if (code == SQLITE_OK) TellObserver(call);
    return code;
}

int Sync(sqlite3_file* file, int flags) {
    KovFile* const f = Cast(file);
    State& state = *f->state;
    FileCall const call{FileCall::Sync, state.path};
    if (int const code = Ask(state, call, SQLITE_IOERR_FSYNC)) return code;
    int const code = f->Real()->pMethods->xSync(f->Real(), flags);
    if (code != SQLITE_OK) return code;
    TellObserver(call);
    if (state.folderUnsynced) {
        std::string const folder = FolderOf(state.path);
        TellObserver({FileCall::SyncFolder, folder});
        state.folderUnsynced = false;
    }
    return SQLITE_OK;
}

int FileSize(sqlite3_file* file, sqlite3_int64* size) {
    KovFile* const f = Cast(file);
    return f->Real()->pMethods->xFileSize(f->Real(), size);
}
int Lock(sqlite3_file* file, int level) {
    KovFile* const f = Cast(file);
    return f->Real()->pMethods->xLock(f->Real(), level);
}
int Unlock(sqlite3_file* file, int level) {
    KovFile* const f = Cast(file);
    return f->Real()->pMethods->xUnlock(f->Real(), level);
}
int CheckReservedLock(sqlite3_file* file, int* out) {
    KovFile* const f = Cast(file);
    return f->Real()->pMethods->xCheckReservedLock(f->Real(), out);
}
int FileControl(sqlite3_file* file, int operation, void* argument) {
    KovFile* const f = Cast(file);
    return f->Real()->pMethods->xFileControl(f->Real(), operation, argument);
}
int SectorSize(sqlite3_file* file) {
    KovFile* const f = Cast(file);
    return f->Real()->pMethods->xSectorSize(f->Real());
}
int DeviceCharacteristics(sqlite3_file* file) {
    KovFile* const f = Cast(file);
    return f->Real()->pMethods->xDeviceCharacteristics(f->Real());
}
int ShmMap(sqlite3_file* file, int page, int bytes, int extend, void volatile** out) {
    KovFile* const f = Cast(file);
    return f->Real()->pMethods->xShmMap(f->Real(), page, bytes, extend, out);
}
int ShmLock(sqlite3_file* file, int offset, int n, int flags) {
    KovFile* const f = Cast(file);
    return f->Real()->pMethods->xShmLock(f->Real(), offset, n, flags);
}
void ShmBarrier(sqlite3_file* file) {
    KovFile* const f = Cast(file);
    f->Real()->pMethods->xShmBarrier(f->Real());
}
int ShmUnmap(sqlite3_file* file, int remove) {
    KovFile* const f = Cast(file);
    return f->Real()->pMethods->xShmUnmap(f->Real(), remove);
}

// Version 2: without the calls for memory mapping.
sqlite3_io_methods const Methods = {2,
                                    Close,
                                    Read,
                                    Write,
                                    Truncate,
                                    Sync,
                                    FileSize,
                                    Lock,
                                    Unlock,
                                    CheckReservedLock,
                                    FileControl,
                                    SectorSize,
                                    DeviceCharacteristics,
                                    ShmMap,
                                    ShmLock,
                                    ShmBarrier,
                                    ShmUnmap,
                                    nullptr,
                                    nullptr};

int OpenFile(sqlite3_vfs* vfs, char const* name, sqlite3_file* file, int flags, int* outFlags) {
    KovFile* const f = Cast(file);
    f->base.pMethods = nullptr;
    sqlite3_vfs* const real = RealVfs(vfs);
    auto* const state = new (std::nothrow) State;
    if (!state) return SQLITE_NOMEM;
    if (name) state->path = name;
    state->isCatalogue = (flags & SQLITE_OPEN_MAIN_DB) != 0;
    int exists = 1;
    if (name && (flags & SQLITE_OPEN_CREATE))
        real->xAccess(real, name, SQLITE_ACCESS_EXISTS, &exists);
    FileCall const call{exists ? FileCall::Open : FileCall::Create, state->path};
    int code = name ? Ask(*state, call, SQLITE_CANTOPEN) : SQLITE_OK;
    if (code == SQLITE_OK) code = real->xOpen(real, name, f->Real(), flags, outFlags);
    if (code != SQLITE_OK) {
        delete state;
        return code;
    }
    if (name) TellObserver(call);
    state->folderUnsynced = !exists && !state->isCatalogue;
    f->state = state;
    f->base.pMethods = &Methods;
    return SQLITE_OK;
}

int DeleteFile(sqlite3_vfs* vfs, char const* name, int syncFolder) {
    sqlite3_vfs* const real = RealVfs(vfs);
    State state;
    state.path = name;
    FileCall const call{FileCall::Remove, state.path};
    if (int const code = Ask(state, call, SQLITE_IOERR_DELETE)) return code;
    int const code = real->xDelete(real, name, syncFolder);
    if (code != SQLITE_OK) return code;
    TellObserver(call);
    if (syncFolder) {
        std::string const folder = FolderOf(state.path);
        TellObserver({FileCall::SyncFolder, folder});
    }
    return SQLITE_OK;
}

int Access(sqlite3_vfs* vfs, char const* name, int flags, int* out) {
    return RealVfs(vfs)->xAccess(RealVfs(vfs), name, flags, out);
}
int FullPathname(sqlite3_vfs* vfs, char const* name, int bytes, char* out) {
    return RealVfs(vfs)->xFullPathname(RealVfs(vfs), name, bytes, out);
}
int Randomness(sqlite3_vfs* vfs, int bytes, char* out) {
    return RealVfs(vfs)->xRandomness(RealVfs(vfs), bytes, out);
}
int Sleep(sqlite3_vfs* vfs, int microseconds) {
    return RealVfs(vfs)->xSleep(RealVfs(vfs), microseconds);
}
int CurrentTime(sqlite3_vfs* vfs, double* out) {
    return RealVfs(vfs)->xCurrentTime(RealVfs(vfs), out);
}
int GetLastError(sqlite3_vfs* vfs, int bytes, char* out) {
    return RealVfs(vfs)->xGetLastError(RealVfs(vfs), bytes, out);
}
int CurrentTimeInt64(sqlite3_vfs* vfs, sqlite3_int64* out) {
    return RealVfs(vfs)->xCurrentTimeInt64(RealVfs(vfs), out);
}

KovFile* CatalogueFile(sqlite3* db) {
    sqlite3_file* file = nullptr;
    if (sqlite3_file_control(db, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK)
        return nullptr;
    return file && file->pMethods == &Methods ? Cast(file) : nullptr;
}

}  // namespace

void RegisterCatalogueVfs() {
    static std::once_flag once;
    static sqlite3_vfs vfs;
    std::call_once(once, [] {
        sqlite3_initialize();
        sqlite3_vfs* const real = sqlite3_vfs_find("unix");
        vfs.iVersion = 2;
        vfs.szOsFile = static_cast<int>(sizeof(KovFile)) + real->szOsFile;
        vfs.mxPathname = real->mxPathname;
        vfs.zName = CatalogueVfsName;
        vfs.pAppData = real;
        vfs.xOpen = OpenFile;
        vfs.xDelete = DeleteFile;
        vfs.xAccess = Access;
        vfs.xFullPathname = FullPathname;
        vfs.xRandomness = Randomness;
        vfs.xSleep = Sleep;
        vfs.xCurrentTime = CurrentTime;
        vfs.xGetLastError = GetLastError;
        vfs.xCurrentTimeInt64 = CurrentTimeInt64;
        sqlite3_vfs_register(&vfs, 0);
    });
}

CatalogueFault TakeCatalogueFault() {
    CatalogueFault fault = t_fault;
    t_fault = {};
    return fault;
}

bool IsSoundCataloguePage(void const* page, std::int64_t number) {
    return StoredSum(page) == SeededSum(page, SummedBytes, static_cast<std::uint64_t>(number));
}

int ReadRawPage(sqlite3* db, std::int64_t number, void* page) {
    KovFile* const f = CatalogueFile(db);
    if (!f) return SQLITE_ERROR;
    return f->Real()->pMethods->xRead(f->Real(), page, CataloguePageBytes,
                                      (number - 1) * CataloguePageBytes);
}

std::int64_t RawFileBytes(sqlite3* db) {
    KovFile* const f = CatalogueFile(db);
    sqlite3_int64 size = 0;
    if (!f || f->Real()->pMethods->xFileSize(f->Real(), &size) != SQLITE_OK) return -1;
    return size;
}

}  // namespace kov::store
