// KOVSimPosition: members of collections, and symbols.
#include <climits>
#include <string>

#include "KOVSimPosition.h"
#include "document/records/CollectionSpaces.h"
#include "document/records/Identity.h"
#include "document/records/Members.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

using namespace kov;
using records::Asked;

namespace {

std::optional<records::MemberRow> SymbolRow(KOVSimDynamicID const& id) {
    store::Context* const context = records::ToRead(id);
    if (!context || id.category != KOVSimCategoryMember) return std::nullopt;
    auto row = records::FindMember(*context, id);
    return row && row->symbol >= 0 ? row : std::nullopt;
}

store::Context& CollectionToWrite(KOVSimDynamicID const& id, Asked const& asked) {
    store::Context& context = records::ToWrite(id, asked);
    if (id.category != KOVSimCategoryCollection) records::Refuse(asked, id, "it is no collection");
    return context;
}

/// Raises the collection by one member, and gives its index.
int AddMember(store::Context& context, KOVSimDynamicID const& collection, Asked const& asked) {
    auto& spaces = context.Part<records::CollectionSpaces>();
    int const index = spaces.Space(collection.data.minor);
    if (index == INT_MAX) records::Refuse(asked, collection, "it has 2147483647 members already");
    spaces.Extend(collection.data.minor, index + 1);
    return index;
}

}  // namespace

int KOVSimPosition::GetSymbolPosition() const {
    auto const row = SymbolRow(m_id);
    return row ? row->symbol : -1;
}

KOVString KOVSimPosition::GetSymbolName() const {
    KOVString name;
    if (auto const row = SymbolRow(m_id))
        name.BuildFromUTF8(row->name.data(), static_cast<int>(row->name.size()));
    return name;
}

KOVSimPosition KOVSimPosition::AddSymbol(KOVString const& name, int symbol, int type) const {
    Asked const asked{"add a symbol"};
    store::Context& context = CollectionToWrite(m_id, asked);
    if (symbol < 0)
        records::Refuse(asked, m_id, "its number, " + std::to_string(symbol) + ", is negative");
    KOVSimDynamicID const member = records::MemberIdentity(m_id, AddMember(context, m_id, asked));
    store::Statement insert(
        context.Cat(),
        "INSERT OR REPLACE INTO members(collection,member,type,symbol,name) VALUES(?,?,?,?,?)");
    insert.Bind(member.data.parent)
        .Bind(member.data.minor)
        .Bind(records::TypeNumber(type))
        .Bind(symbol);
    insert.BindText({name.TextOrEmpty(), static_cast<std::size_t>(name.GetLengthInByte())}).Run();
    return member;
}

KOVSimPosition KOVSimPosition::CreateMember(int index, int type) const {
    Asked const asked{"create a member"};
    store::Context& context = CollectionToWrite(m_id, asked);
    int const space = context.Part<records::CollectionSpaces>().Space(m_id.data.minor);
    if (index < 0 || index >= space) {
        records::Refuse(
            asked, m_id,
            "index " + std::to_string(index) + " is outside [0, " + std::to_string(space) + ")");
    }
    store::Statement insert(context.Cat(),
                            "INSERT INTO members(collection,member,type) VALUES(?,?,?) "
                            "ON CONFLICT(collection,member) DO UPDATE SET type=excluded.type");
    insert.Bind(m_id.data.minor).Bind(index).Bind(records::TypeNumber(type)).Run();
    return records::MemberIdentity(m_id, index);
}

KOVSimPosition KOVSimPosition::AppendMember(int type) const {
    Asked const asked{"append a member"};
    store::Context& context = CollectionToWrite(m_id, asked);
    return CreateMember(AddMember(context, m_id, asked), type);
}
