// KOVSimPosition: what kind of object it is, of which document, and what it is called. Its links
// are in KOVSimPositionLinks.cpp, members and symbols in KOVSimPositionMembers.cpp, what concerns
// sets in document/sets.
#include "KOVSimPosition.h"

#include <string>

#include "KOVSimContext.h"
#include "KOVSimDataRecord.h"
#include "KOVSimSchema.h"
#include "document/records/CollectionSpaces.h"
#include "document/records/Identity.h"
#include "document/records/Members.h"
#include "document/schema/SchemaTable.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"
#include "document/store/Reference.h"

using namespace kov;
using records::Asked;
using store::Statement;

namespace {

// Only objects with a row of their own keep a name: where the row stands.
struct NamedRow {
    char const* select;
    char const* update;
    bool ofMember;
};

NamedRow RowOf(int category) {
    switch (category) {
        case KOVSimCategoryCSet:
            return {"SELECT name FROM sets WHERE number=?",
                    "UPDATE sets SET name=? WHERE number=? RETURNING 1", false};
        case KOVSimCategoryMember:
            return {"SELECT name FROM members WHERE member=? AND collection=?",
                    "UPDATE members SET name=? WHERE member=? AND collection=? RETURNING 1", true};
        case KOVSimCategoryDrawer:
            return {nullptr, nullptr, false};
        default:
            return {"SELECT name FROM objects WHERE number=?",
                    "UPDATE objects SET name=? WHERE number=? RETURNING 1", false};
    }
}

template <class ID>
ID OfKind(KOVSimDynamicID const& id, int category) {
    return id.category == category ? ID(id) : ID();
}

}  // namespace

KOVSimDatabase KOVSimPosition::Doc() const { return KOVSimDatabase(*this); }

KOVSimContext KOVSimPosition::Context() const { return KOVSimContext(m_id.context); }

KOVSimPosition KOVSimPosition::Focus() const {
    if (IsNull()) return {};
    store::Context& context = store::Context::Of(m_id.context);
    if (context.Focus() == 0) return {};
    KOVSimDynamicDataID data;
    data.parent = 0;
    data.minor = context.Focus();
    return KOVSimDynamicID(KOVSimCategoryRecord, m_id.context, data, ::schema::FocusRecord(), 0);
}

bool KOVSimPosition::IsA(int type) const { return kov::schema::DerivesFrom(TypePosition(), type); }

int KOVSimPosition::TypePosition() const {
    store::Context* const context = records::ToRead(m_id);
    if (!context) return -1;
    if (m_id.category == KOVSimCategoryMember) {
        auto const member = records::FindMember(*context, m_id);
        if (member && member->type >= 0) return member->type;
    }
    if (m_id.type >= 0) return m_id.type;
    // An identity that was put together by hand may lack the type that its object has.
    return records::IdentityOf(*context, store::ToReference(m_id)).type;
}

KOVString KOVSimPosition::Name(int member) const {
    if (member >= 0) return GetReferenceKey(member);
    store::Context* const context = records::ToRead(m_id);
    NamedRow const row = RowOf(m_id.category);
    KOVString name;
    if (!context || !row.select) return name;
    Statement select(context->Cat(), row.select);
    select.Bind(m_id.data.minor);
    if (row.ofMember) select.Bind(m_id.data.parent);
    if (select.Step() && !select.IsNull(0)) {
        std::string_view const text = select.Text(0);
        name.BuildFromUTF8(text.data(), static_cast<int>(text.size()));
    }
    return name;
}

void KOVSimPosition::SetName(KOVString const& name) const {
    Asked const asked{"set the name"};
    store::Context& context = records::ToWrite(m_id, asked);
    NamedRow const row = RowOf(m_id.category);
    if (!row.update) records::Refuse(asked, m_id, "a drawer has no name of its own");
    if (row.ofMember) records::RequireMemberRow(context, m_id, asked);
    Statement update(context.Cat(), row.update);
    update.BindText({name.TextOrEmpty(), static_cast<std::size_t>(name.GetLengthInByte())})
        .Bind(m_id.data.minor);
    if (row.ofMember) update.Bind(m_id.data.parent);
    if (!update.Step()) records::Refuse(asked, m_id, "there is no such object");
}

KOVSimDataRecord KOVSimPosition::GetDataRecord() const { return KOVSimDataRecord(*this); }
KOVSimDataRecord KOVSimPosition::DataRecord() const { return KOVSimDataRecord(*this); }

KOVSimCollectionID KOVSimPosition::GetCollection() const {
    return OfKind<KOVSimCollectionID>(m_id, KOVSimCategoryCollection);
}
KOVSimCSetID KOVSimPosition::GetCSet() const {
    return OfKind<KOVSimCSetID>(m_id, KOVSimCategoryCSet);
}
KOVSimDSetID KOVSimPosition::GetDSet() const {
    return OfKind<KOVSimDSetID>(m_id, KOVSimCategoryDSet);
}
KOVSimDistributionID KOVSimPosition::GetDistribution() const {
    return OfKind<KOVSimDistributionID>(m_id, KOVSimCategoryDistribution);
}
KOVSimDrawerID KOVSimPosition::GetDrawer() const {
    return OfKind<KOVSimDrawerID>(m_id, KOVSimCategoryDrawer);
}
KOVSimFTableID KOVSimPosition::GetFTable() const {
    return OfKind<KOVSimFTableID>(m_id, KOVSimCategoryFTable);
}

KOVSimDataRecord KOVSimPosition::CreateDataRecord(int type) const {
    Asked const asked{"create a record"};
    if (IsNull()) records::Refuse(asked, "the position is null");
    store::Context& context = store::Context::Of(m_id.context);
    records::RequireTransaction(context, asked);
    return KOVSimDataRecord(
        records::NewObject(context, KOVSimCategoryRecord, records::TypeNumber(type)));
}

KOVSimCollectionID KOVSimPosition::CreateTypedCollection(int size, int type) const {
    Asked const asked{"create a collection"};
    if (IsNull()) records::Refuse(asked, "the position is null");
    if (size < 0) records::Refuse(asked, "its size, " + std::to_string(size) + ", is negative");
    store::Context& context = store::Context::Of(m_id.context);
    records::RequireTransaction(context, asked);
    KOVSimCollectionID const id(
        records::NewObject(context, KOVSimCategoryCollection, records::TypeNumber(type)));
    context.Part<records::CollectionSpaces>().Create(id.Minor(), size);
    return id;
}
