#include "document/sets/SetStore.h"

#include "KOVSimException.h"
#include "document/records/CollectionSpaces.h"
#include "document/sets/CompartmentCodec.h"
#include "document/store/Catalogue.h"

namespace kov::sets {

using records::CollectionSpaces;
using store::Statement;

namespace {

constexpr std::size_t CacheBytes = std::size_t{16} << 20;

[[noreturn]] void Fail(std::string const& text) { KOVSimException::ThrowText(text.c_str()); }

std::string SetText(int number, int collection) {
    return "set " + std::to_string(number) + " of collection " + std::to_string(collection);
}

[[noreturn]] void NoSuchSet(int number, int collection) {
    Fail("there is no " + SetText(number, collection));
}

std::int64_t HashWord(IndexSet const& members) { return static_cast<std::int64_t>(members.Hash()); }

}  // namespace

SetStore::SetStore(store::Context& context) : m_context(context), m_cache(CacheBytes) {}

IndexSetPtr SetStore::Members(KOVSimCSetID const& id) {
    int const number = id.Minor();
    if (number == 0) return IndexSet::Empty();
    if (number > 0) {
        Stored stored = LoadStored(number);
        if (stored.collection != id.Parent()) NoSuchSet(number, id.Parent());
        return std::move(stored.members);
    }
    auto const temporary = m_temporary.find(number);
    if (temporary == m_temporary.end() || temporary->second.collection != id.Parent())
        NoSuchSet(number, id.Parent());
    // A transaction that was undone may have taken members away.
    RequireWithin(id.Parent(), *temporary->second.members, "use a temporary set");
    return temporary->second.members;
}

IndexSetPtr SetStore::Load(int number) { return LoadStored(number).members; }

SetStore::Stored SetStore::LoadStored(int number) {
    if (SetCache::Entry const* const entry = m_cache.Find(number))
        return {entry->collection, entry->members};
    auto const growing = m_growing.find(number);
    if (growing != m_growing.end()) return {growing->second, Growing(number)};
    Statement select(m_context.Cat(), "SELECT collection,size,members FROM sets WHERE number=?");
    select.Bind(number);
    if (!select.Step()) Fail("there is no set " + std::to_string(number));
    int const collection = static_cast<int>(select.Int(0));
    if (select.Int(1) < 0) {
        m_growing.emplace(number, collection);
        return {collection, Growing(number)};
    }
    std::string_view const bytes = select.Blob(2);
    std::string error;
    IndexSetPtr members = Decode(bytes.data(), bytes.size(), &error);
    if (!members) Fail(SetText(number, collection) + " is damaged: " + error);
    RequireWithin(collection, *members, ("use set " + std::to_string(number)).c_str());
    m_cache.Put(number, collection, members);
    return {collection, std::move(members)};
}

bool SetStore::IsGrowing(int number) {
    if (number <= 0 || m_cache.Find(number)) return false;
    if (m_growing.count(number) != 0) return true;
    Statement select(m_context.Cat(), "SELECT size FROM sets WHERE number=?");
    select.Bind(number);
    return select.Step() && select.Int(0) < 0;
}

IndexSetPtr SetStore::Growing(int number) {
    if (!m_growingMembers)
        Fail("set " + std::to_string(number) + " belongs to a drawer, and no drawers were opened");
    return m_growingMembers(number);
}

void SetStore::RequireWithin(int collection, IndexSet const& members, char const* what) {
    int const space = m_context.Part<CollectionSpaces>().Space(collection);
    if (members.Highest() < space) return;
    Fail(std::string("cannot ") + what + ": member " + std::to_string(members.Highest()) +
         " is outside collection " + std::to_string(collection) + ", which has " +
         std::to_string(space) + " members");
}

int SetStore::Create(int collection, IndexSetPtr const& members) {
    m_context.RequireTransaction("create a set");
    RequireWithin(collection, *members, "create a set");
    int const number = m_context.NewNumber();
    m_encoded.clear();
    Encode(*members, m_encoded);
    Statement insert(m_context.Cat(),
                     "INSERT INTO sets(number,collection,size,hash,members) VALUES(?,?,?,?,?)");
    insert.Bind(number).Bind(collection).Bind(members->Size()).Bind(HashWord(*members));
    insert.BindBlob(m_encoded.data(), m_encoded.size()).Run();
    m_cache.Put(number, collection, members);
    if (m_twins.IsBuilt()) m_twins.Add(collection, members->Hash(), number);
    return number;
}

int SetStore::CreateGrowing(int collection) {
    m_context.RequireTransaction("create a set");
    int const number = m_context.NewNumber();
    Statement insert(m_context.Cat(),
                     "INSERT INTO sets(number,collection,size,hash,members) VALUES(?,?,-1,0,x'')");
    insert.Bind(number).Bind(collection).Run();
    m_growing.emplace(number, collection);
    if (m_twins.IsBuilt()) m_twins.AddGrowing(collection, number);
    return number;
}

int SetStore::CreateTemporary(int collection, IndexSetPtr const& members) {
    RequireWithin(collection, *members, "create a temporary set");
    int const number = m_context.NewTemporaryNumber();
    m_temporary.emplace(number, Stored{collection, members});
    if (m_twins.IsBuilt()) m_twins.Add(collection, members->Hash(), number);
    return number;
}

int SetStore::Seek(int collection, IndexSet const& members) {
    if (members.IsEmpty()) return 0;
    if (!m_twins.IsBuilt()) BuildTwins();
    for (int const number : m_twins.Candidates(collection, members.Hash())) {
        IndexSetPtr candidate;
        if (number > 0) {
            candidate = Load(number);
        } else {
            auto const temporary = m_temporary.find(number);
            if (temporary->second.collection == collection) candidate = temporary->second.members;
        }
        if (candidate && candidate->IsAscending() && candidate->SameMembers(members)) return number;
    }
    return -1;
}

void SetStore::BuildTwins() {
    m_twins.Clear();
    Statement scan(m_context.Cat(), "SELECT number,collection,size,hash FROM sets");
    while (scan.Step()) {
        int const number = static_cast<int>(scan.Int(0));
        int const collection = static_cast<int>(scan.Int(1));
        if (scan.Int(2) < 0)
            m_twins.AddGrowing(collection, number);
        else
            m_twins.Add(collection, static_cast<std::uint64_t>(scan.Int(3)), number);
    }
    for (auto const& [number, stored] : m_temporary)
        m_twins.Add(stored.collection, stored.members->Hash(), number);
    m_twins.SetBuilt();
}

void SetStore::Forget() {
    m_cache.Clear();
    m_growing.clear();
    m_twins.Clear();
}

void SetStore::Verify(std::function<void(std::string const&)> const& finding) {
    VerifySets(finding);
    VerifyCompartments(finding);
}

void SetStore::VerifySets(std::function<void(std::string const&)> const& finding) {
    Statement scan(m_context.Cat(),
                   "SELECT s.number,s.collection,s.size,s.hash,s.members,c.space FROM sets s "
                   "LEFT JOIN collections c ON c.number=s.collection");
    while (scan.Step()) {
        // The members of a drawer's growing set are checked with the drawer, and a collection that
        // does not exist is told by the catalogue's own rules.
        if (scan.IsNull(5) || scan.Int(2) < 0) continue;
        std::string const name =
            SetText(static_cast<int>(scan.Int(0)), static_cast<int>(scan.Int(1)));
        std::string_view const bytes = scan.Blob(4);
        std::string error;
        IndexSetPtr const members = Decode(bytes.data(), bytes.size(), &error);
        if (!members) {
            finding(name + " is damaged: " + error);
        } else if (members->Size() != scan.Int(2)) {
            finding(name + ": its size is not that of its members");
        } else if (HashWord(*members) != scan.Int(3)) {
            finding(name + ": its hash is not that of its members");
        } else if (members->Highest() >= scan.Int(5)) {
            finding(name + " names members that the collection does not have");
        }
    }
}

void SetStore::VerifyCompartments(std::function<void(std::string const&)> const& finding) {
    Statement scan(m_context.Cat(), "SELECT dataset,place,sets FROM compartments");
    Statement exists(m_context.Cat(), "SELECT 1 FROM sets WHERE number=? AND collection=?");
    Statement empty(m_context.Cat(), "SELECT 1 FROM collections WHERE number=?");
    while (scan.Step()) {
        std::string const name = "dataset " + std::to_string(scan.Int(0)) + ", compartment " +
                                 std::to_string(scan.Int(1)) + ": ";
        std::vector<CompartmentWord> words;
        if (!DecodeCompartment(scan.Blob(2), words) || words.empty()) {
            finding(name + "it is damaged");
            continue;
        }
        for (CompartmentWord const& word : words) {
            Statement& look = word.set == 0 ? empty : exists;
            look.Bind(word.set == 0 ? word.collection : word.set);
            if (word.set != 0) look.Bind(word.collection);
            if (!look.Step()) {
                finding(name + SetText(word.set, word.collection) + " does not exist");
            }
            look.Rebind();
        }
    }
}

}  // namespace kov::sets
