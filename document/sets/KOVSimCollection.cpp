#include "KOVSimCollection.h"

#include <string>

#include "KOVSimException.h"
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

/// What is asked of a collection: the words of a refusal.
constexpr char Create[] = "create a set";
constexpr char CreateTemporary[] = "create a temporary set";
constexpr char MakeVolatile[] = "make a volatile set";

/// The set that `make` makes; where it refuses, the refusal says what was asked of which
/// collection.
template <class Make>
IndexSetPtr Made(KOVSimCollectionID const& collection, char const* what, Make const& make) {
    try {
        return make();
    } catch (KOVSimException const& refusal) {
        records::Refuse({what}, collection, refusal.what());
    }
}

IndexSetPtr FromArray(KOVSimCollectionID const& collection, char const* what, int const* members,
                      int n, IndexSetPtr (*make)(int const*, std::size_t)) {
    if (n < 0) {
        records::Refuse({what}, collection,
                        "the count of members, " + std::to_string(n) + ", is negative");
    }
    if (n > 0 && !members) records::Refuse({what}, collection, "the members are null");
    return Made(collection, what, [&] { return make(members, static_cast<std::size_t>(n)); });
}

IndexSetPtr Strided(KOVSimCollectionID const& collection, char const* what, int first, int count,
                    int stride) {
    return Made(collection, what, [&] { return IndexSet::Strided(first, count, stride); });
}

KOVSimCSetID Persistent(KOVSimCollectionID const& collection, IndexSetPtr const& members) {
    store::Context& context = sets::Opened(collection, Create);
    return sets::SetIdentity(collection, SetStore::Of(context).Create(collection.Minor(), members));
}

KOVSimCSetID Temporary(KOVSimCollectionID const& collection, IndexSetPtr const& members) {
    store::Context& context = sets::Opened(collection, CreateTemporary);
    return sets::SetIdentity(collection,
                             SetStore::Of(context).CreateTemporary(collection.Minor(), members));
}

KOVSimCSet Volatile(KOVSimCollectionID const& collection, IndexSetPtr members) {
    store::Context& context = sets::Opened(collection, MakeVolatile);
    SetStore::Of(context).RequireWithin(collection.Minor(), *members, MakeVolatile);
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
    return Persistent(m_id, FromArray(m_id, Create, members, n, IndexSet::FromMembers));
}

KOVSimCSetID KOVSimCollection::CreateCSetStrided(int first, int count, int stride, int) {
    return Persistent(m_id, Strided(m_id, Create, first, count, stride));
}

KOVSimCSetID KOVSimCollection::CreateTempCSet(int const* members, int n, bool) {
    return Temporary(m_id, FromArray(m_id, CreateTemporary, members, n, IndexSet::FromMembers));
}

KOVSimCSetID KOVSimCollection::CreateTempCSetStrided(int first, int count, int stride, int) {
    return Temporary(m_id, Strided(m_id, CreateTemporary, first, count, stride));
}

KOVSimCSetID KOVSimCollection::CreateTempOrderedCSet(int const* members, int n) {
    return Temporary(m_id, FromArray(m_id, CreateTemporary, members, n, IndexSet::FromOrdered));
}

KOVSimCSet KOVSimCollection::CreateVolatileCSet(int const* members, int n, bool) const {
    return Volatile(m_id, FromArray(m_id, MakeVolatile, members, n, IndexSet::FromMembers));
}

KOVSimCSet KOVSimCollection::CreateVolatileCSetStrided(int first, int count, int stride,
                                                       int) const {
    return Volatile(m_id, Strided(m_id, MakeVolatile, first, count, stride));
}

KOVSimCSet KOVSimCollection::CreateVolatileOrderedCSet(int const* members, int n) const {
    return Volatile(m_id, FromArray(m_id, MakeVolatile, members, n, IndexSet::FromOrdered));
}

KOVSimCSetID KOVSimCollection::SeekCSet(KOVSimCSet const& set, bool) const {
    store::Context& context = sets::Opened(m_id, "seek a set");
    if (!set.CollectionID().IsNull() && set.CollectionID() != m_id) return {};
    return sets::SetIdentity(m_id, SetStore::Of(context).Seek(m_id.Minor(), *set.Storage()));
}
