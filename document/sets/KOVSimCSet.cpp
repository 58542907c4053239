#include "KOVSimCSet.h"

#include "document/records/Identity.h"
#include "document/sets/Opened.h"
#include "document/sets/SetStore.h"

using namespace kov;
using sets::IndexSet;
using sets::SetStore;

namespace kov::sets {

store::Context& Opened(KOVSimCollectionID const& collection, char const* what) {
    store::Context* const context = records::ToRead(collection);
    if (!context) records::Refuse({what}, "the collection is null");
    return *context;
}

KOVSimCSetID SetIdentity(KOVSimCollectionID const& collection, int number) {
    if (number == -1) return {};
    KOVSimDynamicDataID data;
    data.parent = collection.Minor();
    data.minor = number;
    return KOVSimCSetID(
        KOVSimDynamicID(KOVSimCategoryCSet, collection.ContextID(), data, collection.TypeID(), 0));
}

namespace {

/// The collection that a result of two sets lies on.
KOVSimCollectionID Common(KOVSimCSet const& a, KOVSimCSet const& b, char const* what) {
    KOVSimCollectionID const& first = a.CollectionID();
    KOVSimCollectionID const& second = b.CollectionID();
    if (first.IsNull()) return second;
    if (!second.IsNull() && first != second) {
        records::Refuse({what}, "one set lies on " + records::Describe(first) + ", the other on " +
                                    records::Describe(second));
    }
    return first;
}

void FillBits(omi_BlkBitVect& bits, IndexSet const& members) {
    // The highest bit first, so that the vector grows once.
    if (!members.IsEmpty()) bits.SetBit(members.Highest());
    members.ForEachRun([&bits](int first, int count) {
        for (int member = first; member != first + count; ++member) bits.SetBit(member);
    });
}

}  // namespace

}  // namespace kov::sets

KOVSimCSet::KOVSimCSet() : m_members(IndexSet::Empty()) {}

KOVSimCSet::KOVSimCSet(KOVSimCSetID const& id) : m_members(IndexSet::Empty()) {
    store::Context* const context = records::ToRead(id);
    if (!context) return;
    m_members = SetStore::Of(*context).Members(id);
    m_id = id;
    m_collection = id.CollectionID();
}

KOVSimCSet::KOVSimCSet(KOVSimPosition const& position) : KOVSimCSet(position.GetCSet()) {}

KOVSimCSet::KOVSimCSet(KOVSimCollectionID const& collection)
    : m_collection(collection), m_members(IndexSet::Empty()) {
    if (records::ToRead(collection)) m_id = sets::SetIdentity(collection, 0);
}

KOVSimCSet::KOVSimCSet(KOVSimCollectionID const& collection, KOVSimIndexSetPtr members)
    : m_collection(collection), m_members(members ? std::move(members) : IndexSet::Empty()) {}

int KOVSimCSet::Size() const { return m_members->Size(); }

void KOVSimCSet::Members(int* out) const { m_members->CopyAscending(out); }

void KOVSimCSet::OrderedMembers(int* out) const { m_members->CopyStored(out); }

int KOVSimCSet::operator[](int location) const { return m_members->At(location); }

long long KOVSimCSet::Bounds() const {
    if (m_members->IsEmpty()) return -1;
    auto const low = static_cast<std::uint32_t>(m_members->Lowest());
    auto const high = static_cast<std::uint64_t>(static_cast<std::uint32_t>(m_members->Highest()));
    return static_cast<long long>(high << 32 | low);
}

bool KOVSimCSet::IsAscending() const { return m_members->IsAscending(); }

KOVSimCSetID KOVSimCSet::AscendingID() const {
    if (!m_id.IsNull() && m_members->IsAscending()) return m_id;
    if (m_collection.IsNull()) return {};
    SetStore& store = SetStore::Of(sets::Opened(m_collection, "find the ascending form of a set"));
    KOVSimIndexSetPtr const ascending = m_members->Ascending();
    int number = store.Seek(m_collection.Minor(), *ascending);
    if (number == -1) number = store.CreateTemporary(m_collection.Minor(), ascending);
    return sets::SetIdentity(m_collection, number);
}

KOVSimCSet KOVSimCSet::Union(KOVSimCSet other) const {
    KOVSimCollectionID const collection = sets::Common(*this, other, "unite two sets");
    return KOVSimCSet(collection, sets::Union(m_members, other.m_members));
}

KOVSimCSet KOVSimCSet::Intersection(KOVSimCSet other) const {
    KOVSimCollectionID const collection = sets::Common(*this, other, "intersect two sets");
    return KOVSimCSet(collection, sets::Intersection(m_members, other.m_members));
}

KOVSimCSet KOVSimCSet::operator-(KOVSimCSet other) const {
    KOVSimCollectionID const collection = sets::Common(*this, other, "subtract a set");
    return KOVSimCSet(collection, sets::Difference(m_members, other.m_members));
}

bool KOVSimCSet::SameMembers(KOVSimCSet const& other) const {
    return m_members->SameMembers(*other.m_members);
}

bool KOVSimCSet::Contains(int member) const { return m_members->Contains(member); }

void KOVSimCSet::AsBitVector(omi_BlkBitVect& bits) const {
    omi_BlkBitVect filled;
    sets::FillBits(filled, *m_members);
    bits = filled;
}

KOVSimCSetID KOVSimCSet::RegisterWithCollection() {
    if (m_id.Minor() >= 0) return m_id;
    SetStore& store = SetStore::Of(sets::Opened(m_collection, "register a set"));
    m_id = sets::SetIdentity(m_collection, store.Create(m_collection.Minor(), m_members));
    return m_id;
}

KOVSimCSetID KOVSimCSet::RegisterWithTempCollection() {
    if (!m_id.IsNull()) return m_id;
    SetStore& store = SetStore::Of(sets::Opened(m_collection, "register a temporary set"));
    m_id = sets::SetIdentity(m_collection, store.CreateTemporary(m_collection.Minor(), m_members));
    return m_id;
}
