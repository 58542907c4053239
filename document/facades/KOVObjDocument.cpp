// KOVObjDocument: making, opening and keeping documents. What a document holds is in
// KOVObjDocumentContent.cpp.
#include "KOVObjDocument.h"

#include <string>

#include "KOVSimException.h"
#include "document/bulk/DrawerStore.h"
#include "document/facades/Skeleton.h"
#include "document/store/Context.h"
#include "document/store/Statistics.h"

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
    store::Statistics const sizes =
        store::GatherStatistics(Opened(m_database, "gather statistics"));
    KOVObjDocumentStatistics all;
    all.catalogueBytes = sizes.catalogueBytes;
    all.bulkBytes = sizes.bulkBytes;
    all.liveBulkBytes = sizes.liveBulkBytes;
    all.supersededBytes = sizes.supersededBytes;
    all.segments = sizes.segments;
    all.blocks = sizes.blocks;
    all.records = sizes.records;
    all.collections = sizes.collections;
    all.sets = sizes.sets;
    all.distributions = sizes.distributions;
    all.drawers = sizes.drawers;
    all.datasets = sizes.datasets;
    all.tables = sizes.tables;
    all.links = sizes.links;
    all.commits = sizes.commits;
    return all;
}
