// Making a document. On disk it is built under a temporary name beside its place: catalogue and
// segments are written, synced and closed there, then the folder is renamed without replacing, and
// the catalogue opened again under its name (SQLite keeps the path of the log).
#include <sys/random.h>

#include <cerrno>

#include "document/store/CatalogueTables.h"
#include "document/store/ContextOpened.h"
#include "document/store/Errors.h"
#include "document/store/Files.h"
#include "document/store/Forks.h"

namespace kov::store {

namespace {

Uuid NewUuid() {
    Uuid uuid{};
    std::size_t done = 0;
    while (done < uuid.size()) {
        ssize_t const got = ::getrandom(uuid.data() + done, uuid.size() - done, 0);
        if (got > 0) done += static_cast<std::size_t>(got);
        if (got < 0 && errno != EINTR) FailFile("read", "the system's random numbers", errno);
    }
    return uuid;
}

void Require(int error, char const* action, std::string const& path) {
    if (error) FailFile(action, path, error);
}

}  // namespace

std::shared_ptr<Context> Context::CreateInMemory(std::function<void(Context&)> const& fill) {
    std::shared_ptr<Context> context(new Context);
    context->m_opened = std::make_unique<Opened>(std::string());
    context->m_opened->catalogue.OpenMemory();
    context->m_opened->uuid = NewUuid();
    context->m_opened->blocks = std::make_unique<BlockStore>(context->m_opened->uuid);
    context->FillFirst(fill);
    return context;
}

std::shared_ptr<Context> Context::Create(std::string const& path,
                                         std::function<void(Context&)> const& fill) {
    std::shared_ptr<Context> const context =
        BuildAt(path, [&](Context& made) { made.FillFirst(fill); });
    try {
        context->MoveInto();
    } catch (...) {
        // It is whole; but who is told that it was not made must find nothing.
        context->Close();
        RemoveTree(context->m_opened->folder.path);
        throw;
    }
    return context;
}

/// Builds a whole document under a temporary name, lets `fill` fill it, and gives it its name. What
/// is answered has its catalogue closed.
std::shared_ptr<Context> Context::BuildAt(std::string const& path,
                                          std::function<void(Context&)> const& fill) {
    std::shared_ptr<Context> context(new Context);
    context->m_path = CleanPath(path);
    context->m_opened = std::make_unique<Opened>(context->m_path);
    Opened& opened = *context->m_opened;
    std::string const target = opened.folder.path;
    std::string const asked = "cannot create " + context->m_path + ": ";
    struct stat status;
    if (::lstat(target.c_str(), &status) == 0) Fail(asked + "it exists already");
    if (IsOnNetwork(ParentOf(target))) Fail(asked + "writing on a network file system is refused");
    std::string const temporary = MakeTemporaryFolder(target);
    bool renamed = false;
    try {
        context->Build(temporary, fill);
        int const error = TryRename(temporary, target);
        if (error == EEXIST || error == ENOTEMPTY) Fail(asked + "it exists already");
        Require(error, "create", context->m_path);
        renamed = true;
        opened.folder.path = target;
        opened.blocks->MoveTo(opened.folder.Bulk());
        if (int const unsynced = TrySyncFolder(ParentOf(target))) {
            Fail(asked + "its folder cannot be synced: " + ErrnoText(unsynced));
        }
    } catch (...) {
        opened.catalogue.Close(true);
        RemoveTree(renamed ? target : temporary);
        context->Close();
        throw;
    }
    return context;
}

void Context::Build(std::string const& folder, std::function<void(Context&)> const& fill) {
    Opened& opened = *m_opened;
    opened.folder.path = folder;
    Require(opened.lock.TryAcquire(opened.folder.Lock(), WriterLock::Kind::Alone), "lock",
            opened.folder.Lock());
    Require(TryMakeFolder(opened.folder.Bulk()), "create", opened.folder.Bulk());
    opened.catalogue.OpenFile(opened.folder.Catalogue(), Catalogue::Mode::Create);
    opened.uuid = NewUuid();
    opened.blocks = std::make_unique<BlockStore>(opened.folder.Bulk(), opened.uuid,
                                                 std::vector<SegmentLength>{}, true);
    fill(*this);
    opened.catalogue.CheckpointAll();
    m_catalogue = nullptr;
    opened.catalogue.Close(false);
    Require(TrySyncFolder(opened.folder.Bulk()), "sync", opened.folder.Bulk());
    Require(TrySyncFolder(folder), "sync", folder);
}

/// The tables and the first transaction, which is the caller's.
void Context::FillFirst(std::function<void(Context&)> const& fill) {
    m_catalogue = &m_opened->catalogue;
    m_id = Register(this);
    Begin();
    MakeTables();
    if (fill) fill(*this);
    Commit();
}

void Context::MakeTables() {
    Catalogue& catalogue = *m_catalogue;
    catalogue.Execute(("PRAGMA application_id=" + std::to_string(ApplicationId) + ";" +
                       "PRAGMA user_version=" + std::to_string(FormatVersion) + ";")
                          .c_str());
    catalogue.Execute(CatalogueTables);
    Statement meta(catalogue, "INSERT INTO meta(name, value) VALUES(?, ?)");
    meta.BindText("format").Bind(FormatVersion).Run();
    meta.BindText("uuid").BindBlob(m_opened->uuid.data(), m_opened->uuid.size()).Run();
    meta.BindText("next_number").Bind(m_nextNumber).Run();
    meta.BindText("focus").Bind(m_focus).Run();
    meta.BindText("commits").Bind(0).Run();
}

/// The folder has its name: goes on under that.
void Context::MoveInto() {
    std::lock_guard const lock(OpenMutex());
    Opened& opened = *m_opened;
    opened.identity = IdentifyFolder(opened.folder.path);
    opened.catalogue.OpenFile(opened.folder.Catalogue(), Catalogue::Mode::Write);
    m_catalogue = &opened.catalogue;
    Announce(opened.identity, weak_from_this(), m_forks);
    opened.announced = true;
}

}  // namespace kov::store
