// Members: rows of the table `members`: those members of collections that are records or symbols.
// Every other member is an index and no more, and costs nothing. For the records.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "KOVSimDynamicID.h"

namespace kov::store {
class Context;
}

namespace kov::records {

struct Asked;

struct MemberRow {
    KOVSimTypeID type;
    int symbol;  // -1: no symbol
    std::string name;
};

/// The row of a member; empty for one that was made nothing in particular.
std::optional<MemberRow> FindMember(store::Context& context, KOVSimDynamicID const& member);
/// Makes the row of a member that has none yet, as of the collection's own type. Throws if the
/// member lies outside its collection. In a transaction.
void RequireMemberRow(store::Context& context, KOVSimDynamicID const& member, Asked const& asked);
/// The identity of a member of a collection.
KOVSimDynamicID MemberIdentity(KOVSimDynamicID const& collection, int index);

/// The first member of a collection that is a symbol of that name, and of `type` unless that is -1;
/// null if there is none.
KOVSimDynamicID FindSymbol(store::Context& context, KOVSimDynamicID const& collection, int type,
                           std::string_view name);

/// The first member of a collection behind all those that are records or symbols, or else the first
/// gap among these; -1 if every member is one.
int FreeMember(store::Context& context, KOVSimDynamicID const& collection);

}  // namespace kov::records
