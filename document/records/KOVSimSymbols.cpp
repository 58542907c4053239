#include "KOVSimSymbols.h"

#include "KOVSimPosition.h"
#include "document/records/Identity.h"
#include "document/records/Members.h"
#include "document/schema/SchemaTable.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

using namespace kov;

bool KOVSimSymbols::IsMember(KOVSimDynamicID const& record) const { return Get(record) >= 0; }

int KOVSimSymbols::Get(KOVSimDynamicID const& record) const {
    return KOVSimPosition(record).GetSymbolPosition();
}

KOVSimDynamicID KOVSimSymbols::Get(KOVSimTypeID type, int symbol,
                                   KOVSimCollectionID const& collection) const {
    store::Context* const context = records::ToRead(collection);
    if (!context) return {};
    store::Statement select(
        context->Cat(),
        "SELECT member,type FROM members WHERE collection=? AND symbol=? ORDER BY member");
    select.Bind(collection.Minor()).Bind(symbol);
    while (select.Step()) {
        if (type < 0 || kov::schema::DerivesFrom(static_cast<int>(select.Int(1)), type)) {
            return records::MemberIdentity(collection, static_cast<int>(select.Int(0)));
        }
    }
    return {};
}
