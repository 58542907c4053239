// KOVObjDocument: making, opening and keeping documents. What a document holds is in
// KOVObjDocumentContent.cpp.
#include "KOVObjDocument.h"

#include <string>

#include "KOVSimException.h"
#include "document/bulk/DrawerStore.h"
#include "document/facades/Skeleton.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

using namespace kov;
using store::Context;

namespace {

std::string Text(KOVString const& text) {
    return {text.TextOrEmpty(), static_cast<std::size_t>(text.GetLengthInByte())};
}

/// A handle on a context whose drawers answer for the sets that grow with them.
KOVObjDocument Handle(std::shared_ptr<Context> context) {
    bulk::DrawerStore::Of(*context);
    return KOVObjDocument(KOVSimDatabase(std::move(context)));
}

Context& Opened(KOVSimDatabase const& database, char const* what) {
    if (!database.Share()) {
        KOVSimException::ThrowText(
            (std::string("cannot ") + what + ": the handle has no document").c_str());
    }
    return Context::Of(database.Share()->ID());
}

std::int64_t Number(Context& context, char const* sql) {
    store::Statement select(context.Cat(), sql);
    return select.Step() ? select.Int(0) : 0;
}

}  // namespace

KOVObjDocument KOVObjDocument::Create(KOVString const& path) {
    return Handle(Context::Create(Text(path), facades::MakeSkeleton));
}

KOVObjDocument KOVObjDocument::CreateInMemory() {
    return Handle(Context::CreateInMemory(facades::MakeSkeleton));
}

KOVObjDocument KOVObjDocument::CreateInMemory(BareTag) {
    return Handle(Context::CreateInMemory(facades::MakeFocus));
}

KOVObjDocument KOVObjDocument::Open(KOVString const& path, Access access) {
    return Handle(Context::Open(
        Text(path), access == ReadOnly ? Context::Access::ReadOnly : Context::Access::ReadWrite));
}

void KOVObjDocument::Close() const {
    if (!IsClosed()) m_database.Share()->Close();
}

bool KOVObjDocument::Refresh() const { return Opened(m_database, "refresh").Refresh(); }

KOVString KOVObjDocument::Path() const {
    KOVString path;
    if (m_database.Share()) path.BuildFromUTF8(m_database.Share()->Path().c_str());
    return path;
}

bool KOVObjDocument::IsReadOnly() const {
    return Opened(m_database, "ask for the access").IsReadOnly();
}

bool KOVObjDocument::Verify(std::function<void(char const* finding)> const& finding) const {
    bool sound = true;
    Opened(m_database, "verify").Verify([&](std::string const& text) {
        sound = false;
        if (finding) finding(text.c_str());
    });
    return sound;
}

void KOVObjDocument::WriteCompacted(KOVString const& path) const {
    Opened(m_database, "write a compacted copy").WriteCompacted(Text(path));
}

KOVObjDocumentStatistics KOVObjDocument::Statistics() const {
    Context& context = Opened(m_database, "gather statistics");
    KOVObjDocumentStatistics all;
    all.catalogueBytes =
        Number(context, "SELECT page_count*page_size FROM pragma_page_count(), pragma_page_size()");
    all.segments = Number(context, "SELECT count(*) FROM segments");
    all.bulkBytes = Number(context, "SELECT sum(bytes) FROM segments");
    // Of a stored block only the rows that still count are live.
    all.liveBulkBytes =
        Number(context,
               "SELECT sum(b.rows*d.row_bytes) FROM blocks b JOIN drawers d ON d.number=b.drawer");
    constexpr std::int64_t SegmentHead = 64;
    all.supersededBytes = all.bulkBytes - all.segments * SegmentHead - all.liveBulkBytes;
    all.blocks = Number(context, "SELECT count(*) FROM blocks");
    all.records = Number(context, "SELECT count(*) FROM objects WHERE category=1");
    all.collections = Number(context, "SELECT count(*) FROM collections");
    all.sets = Number(context, "SELECT count(*) FROM sets");
    all.distributions = Number(context, "SELECT count(*) FROM distributions");
    all.drawers = Number(context, "SELECT count(*) FROM drawers");
    all.datasets = Number(context, "SELECT count(*) FROM datasets");
    all.tables = Number(context, "SELECT count(*) FROM tables");
    all.links = Number(context, "SELECT count(*) FROM links");
    all.commits = Number(context, "SELECT value FROM meta WHERE name='commits'");
    return all;
}
