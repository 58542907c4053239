// Opening a document that exists: what it is, who else has it, recovery of the catalogue, then of
// the segments.
#include <cerrno>
#include <cstring>
#include <set>

#include "document/store/ContextOpened.h"
#include "document/store/Errors.h"
#include "document/store/Files.h"
#include "document/store/Forks.h"
#include "document/store/LogScan.h"

namespace kov::store {

std::shared_ptr<Context> Context::Open(std::string const& path, Access access) {
    std::lock_guard const lock(OpenMutex());
    std::string const clean = CleanPath(path);
    FolderIdentity const identity = IdentifyFolder(clean);
    std::shared_ptr<Context> shared;
    switch (FindShared(identity, shared)) {
        case Sharing::Open:
            if (shared->m_access == access) return shared;
            Fail("cannot open " + clean +
                 (access == Access::ReadWrite
                      ? " for writing: this process has it open for reading"
                      : " for reading: this process has it open for writing"));
        case Sharing::OfParent:
            Fail("cannot open " + clean +
                 ": the process that this one was forked from had it open at that moment");
        case Sharing::None:
            break;
    }
    std::shared_ptr<Context> context(new Context);
    context->m_path = clean;
    context->m_opened = std::make_unique<Opened>(clean);
    context->m_opened->identity = identity;
    try {
        context->OpenExisting(access);
    } catch (...) {
        // Whatever is wrong, what is found stays as it is.
        context->m_opened->catalogue.Close(true);
        context->Close();
        throw;
    }
    return context;
}

void Context::OpenExisting(Access access) {
    m_access = access;
    Opened& opened = *m_opened;
    CheckCatalogueFile(opened.folder, WriterLock::IsWritten(opened.folder.Lock()));
    if (access == Access::ReadWrite) {
        OpenForWriting();
    } else {
        OpenForReading();
    }
    m_catalogue = &opened.catalogue;
    ReadMeta();
    OpenSegments();
    m_id = Register(this);
    Announce(opened.identity, weak_from_this(), m_forks);
    opened.announced = true;
}

void Context::OpenForWriting() {
    Opened& opened = *m_opened;
    std::string const where = "cannot open " + m_path + " for writing: ";
    if (IsOnNetwork(opened.folder.path))
        Fail(where + "writing on a network file system is refused");
    if (!MayWrite(opened.folder)) Fail(where + ErrnoText(EACCES));
    int const error = opened.lock.TryAcquire(opened.folder.Lock(), WriterLock::Kind::Alone);
    if (error == EAGAIN) {
        Fail(where + (WriterLock::IsWritten(opened.folder.Lock())
                          ? "another writer has it open"
                          : "a reader without the right to write has it open"));
    }
    if (error) FailFile("lock", opened.folder.Lock(), error);
    opened.cutLog = FindCutLog(opened.folder.Log());
    opened.catalogue.OpenFile(opened.folder.Catalogue(), Catalogue::Mode::Write);
}

void Context::OpenForReading() {
    Opened& opened = *m_opened;
    bool const network = IsOnNetwork(opened.folder.path);
    bool room = true;
    if (!network && MayWrite(opened.folder)) {
        if (!WriterLock::IsWritten(opened.folder.Lock()))
            opened.cutLog = FindCutLog(opened.folder.Log());
        try {
            opened.catalogue.OpenFile(opened.folder.Catalogue(), Catalogue::Mode::Read);
            opened.catalogue.BeginRead();
            return;
        } catch (NoRoom const&) {
            opened.catalogue.Close(true);
            room = false;
        }
    }
    // Without the files by which readers and a writer make room for each other, nobody may write
    // meanwhile.
    std::string const why = network ? " is on a network file system"
                            : room  ? " cannot be written to by this process"
                                    : " is on a disk without room";
    int const error = opened.lock.TryAcquire(opened.folder.Lock(), WriterLock::Kind::Shared);
    if (error == EAGAIN)
        Fail("cannot open " + m_path + ": it" + why + ", and is being written by another");
    if (error && error != ENOENT &&
        !(network && (error == ENOLCK || error == EOPNOTSUPP || error == EINVAL))) {
        FailFile("lock", opened.folder.Lock(), error);
    }
    if (LogBytes(opened.folder) > 0) {
        Fail("cannot open " + m_path + ": it" + why +
             ", and a log is left that someone who may write must recover first");
    }
    opened.immutable = true;
    opened.catalogue.OpenFile(opened.folder.Catalogue(), Catalogue::Mode::Immutable);
    opened.catalogue.BeginRead();
}

void Context::ReadMeta() {
    Statement meta(*m_catalogue, "SELECT value FROM meta WHERE name = ?");
    auto const number = [&](char const* name, std::int64_t least, std::int64_t most) {
        meta.Rebind();
        meta.BindText(name);
        if (!meta.Step() || meta.KindOf(0) != Statement::Kind::Integer || meta.Int(0) < least ||
            meta.Int(0) > most) {
            Fail(m_path + ": the catalogue is damaged: '" + name + "' in meta is missing or wrong");
        }
        return meta.Int(0);
    };
    number("format", 1, INT32_MAX);
    m_nextNumber = static_cast<KOVSimIDMinor>(number("next_number", 1, INT32_MAX));
    m_focus = static_cast<KOVSimIDMinor>(number("focus", 0, INT32_MAX));
    m_commits = number("commits", 0, INT64_MAX - 1);
    m_catalogue->SetSnapshot(m_commits);
    meta.Rebind();
    meta.BindText("uuid");
    if (!meta.Step() || meta.Blob(0).size() != m_opened->uuid.size()) {
        Fail(m_path + ": the catalogue is damaged: 'uuid' in meta is missing or wrong");
    }
    std::memcpy(m_opened->uuid.data(), meta.Blob(0).data(), m_opened->uuid.size());
}

/// Checks that the segments have what is committed; a writer cuts off what is not.
void Context::OpenSegments() {
    Opened& opened = *m_opened;
    std::vector<SegmentLength> lengths;
    {
        Statement segments(*m_catalogue, "SELECT number, bytes FROM segments ORDER BY number");
        while (segments.Step()) {
            std::int64_t const number = segments.Int(0);
            if (number < 1 || number > 999999999 || segments.Int(1) < SegmentHeaderBytes) {
                Fail(m_path + ": the catalogue is damaged: it names a segment " +
                     std::to_string(number) + " of " + std::to_string(segments.Int(1)) + " bytes");
            }
            lengths.push_back({static_cast<int>(number), segments.Int(1)});
        }
    }
    std::set<std::string> known;
    for (SegmentLength const& length : lengths) {
        std::string const name = SegmentName(length.number);
        std::string const path = opened.folder.Bulk() + "/" + name;
        known.insert(name);
        struct stat status;
        if (int const error = TryStat(path, status)) FailFile("open", path, error);
        if (status.st_size < length.bytes) {
            Fail("cannot open " + m_path + ": bulk/" + name + " has been cut short: " +
                 std::to_string(status.st_size) + " bytes of " + std::to_string(length.bytes));
        }
        if (IsReadOnly() || status.st_size == length.bytes) continue;
        File file;
        file.Open(path, File::Mode::Write);
        if (int const error = file.TryTruncate(length.bytes)) FailFile("cut", path, error);
    }
    if (!IsReadOnly()) {
        std::vector<std::string> names;
        if (int const error = TryList(opened.folder.Bulk(), names))
            FailFile("read", opened.folder.Bulk(), error);
        for (std::string const& name : names) {
            if (SegmentNumber(name) == 0 || known.count(name)) continue;
            std::string const path = opened.folder.Bulk() + "/" + name;
            if (int const error = TryRemoveFile(path)) FailFile("remove", path, error);
        }
    }
    if (opened.blocks) {
        opened.blocks->SetLengths(lengths);
    } else {
        opened.blocks =
            std::make_unique<BlockStore>(opened.folder.Bulk(), opened.uuid, lengths, !IsReadOnly());
    }
}

}  // namespace kov::store
