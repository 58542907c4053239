#include "KOVSimCollection.h"

#include <string>

#include "document/records/CollectionSpaces.h"
#include "document/records/Identity.h"
#include "document/sets/Opened.h"
#include "document/sets/SetStore.h"

using namespace kov;
using records::CollectionSpaces;
using sets::IndexSet;
using sets::IndexSetPtr;
using sets::SetStore;

namespace {

std::size_t Count(int const* members, int n, char const* what) {
    if (n < 0 || (n > 0 && !members)) {
        records::Refuse({what}, n < 0
                                    ? "the count of members, " + std::to_string(n) + ", is negative"
                                    : std::string("the members are null"));
    }
    return static_cast<std::size_t>(n);
}

KOVSimCSetID Persistent(KOVSimCollectionID const& collection, IndexSetPtr const& members) {
    store::Context& context = sets::Opened(collection, "create a set");
    return sets::SetIdentity(collection, SetStore::Of(context).Create(collection.Minor(), members));
}

KOVSimCSetID Temporary(KOVSimCollectionID const& collection, IndexSetPtr const& members) {
    store::Context& context = sets::Opened(collection, "create a temporary set");
    return sets::SetIdentity(collection,
                             SetStore::Of(context).CreateTemporary(collection.Minor(), members));
}

KOVSimCSet Volatile(KOVSimCollectionID const& collection, IndexSetPtr members) {
    store::Context& context = sets::Opened(collection, "make a volatile set");
    SetStore::Of(context).RequireWithin(collection.Minor(), *members, "make a volatile set");
    return KOVSimCSet(collection, std::move(members));
}

}  // namespace

KOVSimCollection::KOVSimCollection(KOVSimCollectionID const& id) : m_id(id) {
    if (id.IsNull()) return;
    if (store::Context* const context = store::Context::Find(id.ContextID()))
        m_share = context->weak_from_this();
}

bool KOVSimCollection::IsPresent() const {
    std::shared_ptr<store::Context> const share = m_share.lock();
    return share && !share->IsClosed();
}

int KOVSimCollection::Space() const {
    return sets::Opened(m_id, "ask for the space of a collection")
        .Part<CollectionSpaces>()
        .Space(m_id.Minor());
}

void KOVSimCollection::ExtendSpace(int n) {
    records::Asked const asked{"extend the space"};
    store::Context& context = records::ToWrite(m_id, asked);
    int const space = Space();
    if (n < space) {
        records::Refuse(asked, m_id,
                        std::to_string(n) + " members are fewer than the " + std::to_string(space) +
                            " that it has");
    }
    if (n > space) context.Part<CollectionSpaces>().Extend(m_id.Minor(), n);
}

KOVSimCSetID KOVSimCollection::EmptyCSetID() const {
    sets::Opened(m_id, "ask for the empty set of a collection");
    return sets::SetIdentity(m_id, 0);
}

KOVSimCSetID KOVSimCollection::CreateCSet(int const* members, int n, bool) {
    return Persistent(m_id, IndexSet::FromMembers(members, Count(members, n, "create a set")));
}

KOVSimCSetID KOVSimCollection::CreateCSetStrided(int first, int count, int stride, int) {
    return Persistent(m_id, IndexSet::Strided(first, count, stride));
}

KOVSimCSetID KOVSimCollection::CreateTempCSet(int const* members, int n, bool) {
    return Temporary(m_id,
                     IndexSet::FromMembers(members, Count(members, n, "create a temporary set")));
}

KOVSimCSetID KOVSimCollection::CreateTempCSetStrided(int first, int count, int stride, int) {
    return Temporary(m_id, IndexSet::Strided(first, count, stride));
}

KOVSimCSetID KOVSimCollection::CreateTempOrderedCSet(int const* members, int n) {
    return Temporary(m_id,
                     IndexSet::FromOrdered(members, Count(members, n, "create a temporary set")));
}

KOVSimCSet KOVSimCollection::CreateVolatileCSet(int const* members, int n, bool) const {
    return Volatile(m_id, IndexSet::FromMembers(members, Count(members, n, "make a volatile set")));
}

KOVSimCSet KOVSimCollection::CreateVolatileCSetStrided(int first, int count, int stride,
                                                       int) const {
    return Volatile(m_id, IndexSet::Strided(first, count, stride));
}

KOVSimCSet KOVSimCollection::CreateVolatileOrderedCSet(int const* members, int n) const {
    return Volatile(m_id, IndexSet::FromOrdered(members, Count(members, n, "make a volatile set")));
}

KOVSimCSetID KOVSimCollection::SeekCSet(KOVSimCSet const& set, bool) const {
    store::Context& context = sets::Opened(m_id, "seek a set");
    if (!set.CollectionID().IsNull() && set.CollectionID() != m_id) return {};
    return sets::SetIdentity(m_id, SetStore::Of(context).Seek(m_id.Minor(), *set.Storage()));
}
