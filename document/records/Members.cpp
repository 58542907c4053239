#include "document/records/Members.h"

#include "document/records/CollectionSpaces.h"
#include "document/records/Identity.h"
#include "document/schema/SchemaTable.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

namespace kov::records {

std::optional<MemberRow> FindMember(store::Context& context, KOVSimDynamicID const& member) {
    store::Statement select(context.Cat(),
                            "SELECT type,symbol,name FROM members WHERE collection=? AND member=?");
    select.Bind(member.data.parent).Bind(member.data.minor);
    if (!select.Step()) return std::nullopt;
    return MemberRow{static_cast<KOVSimTypeID>(select.Int(0)),
                     select.IsNull(1) ? -1 : static_cast<int>(select.Int(1)),
                     select.IsNull(2) ? std::string() : std::string(select.Text(2))};
}

void RequireMemberRow(store::Context& context, KOVSimDynamicID const& member, Asked const& asked) {
    int const space = context.Part<CollectionSpaces>().Space(member.data.parent);
    if (member.data.minor < 0 || member.data.minor >= space) {
        Refuse(asked, member, "the collection has " + std::to_string(space) + " members");
    }
    store::Statement insert(context.Cat(),
                            "INSERT OR IGNORE INTO members(collection,member,type) VALUES(?,?,?)");
    insert.Bind(member.data.parent).Bind(member.data.minor).Bind(member.type).Run();
}

KOVSimDynamicID MemberIdentity(KOVSimDynamicID const& collection, int index) {
    KOVSimDynamicDataID data;
    data.parent = collection.data.minor;
    data.minor = index;
    return {KOVSimCategoryMember, collection.context, data, collection.type, 0};
}

KOVSimDynamicID FindSymbol(store::Context& context, KOVSimDynamicID const& collection, int type,
                           std::string_view name) {
    store::Statement select(
        context.Cat(),
        "SELECT member,type FROM members WHERE collection=? AND name=? AND symbol IS NOT NULL "
        "ORDER BY member");
    select.Bind(collection.data.minor).BindText(name);
    while (select.Step()) {
        if (type < 0 || schema::DerivesFrom(static_cast<int>(select.Int(1)), type)) {
            return MemberIdentity(collection, static_cast<int>(select.Int(0)));
        }
    }
    return {};
}

int FreeMember(store::Context& context, KOVSimDynamicID const& collection) {
    int const space = context.Part<CollectionSpaces>().Space(collection.data.minor);
    store::Statement last(context.Cat(), "SELECT max(member) FROM members WHERE collection=?");
    last.Bind(collection.data.minor);
    if (!last.Step() || last.IsNull(0)) return space > 0 ? 0 : -1;
    if (last.Int(0) + 1 < space) return static_cast<int>(last.Int(0)) + 1;
    store::Statement all(context.Cat(),
                         "SELECT member FROM members WHERE collection=? ORDER BY member");
    all.Bind(collection.data.minor);
    int expected = 0;
    while (all.Step() && all.Int(0) == expected) ++expected;
    return expected < space ? expected : -1;
}

}  // namespace kov::records
