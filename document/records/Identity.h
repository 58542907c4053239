// Identity: what every use of an identity goes through before the catalogue is touched: its context
// must be open, its numbers must not stem from a dropped transaction, and writing needs a
// transaction. Refusals name the object by kind, number and type. For the rooms of the document
// layer above the store.
#pragma once

#include <cstdint>
#include <string>

#include "KOVSimDynamicID.h"

namespace kov::store {
class Context;
}

namespace kov::records {

/// What is being asked, for the text of a refusal: "set the link" and the member's name. Built only
/// when it is needed.
struct Asked {
    char const* what;
    int member = -1;  // schema index; -1 for none

    std::string Text() const;
};

/// Such as "record 12 (Field_Meshed)" or "member 3 of collection 7 (MeshNodeCollection)".
std::string Describe(KOVSimDynamicID const& id);
/// The schema's name of a type or member, or its number in words.
std::string NameOfIndex(int index);

/// Throws "cannot ASKED: WHY".
[[noreturn]] void Refuse(Asked const& asked, std::string const& why);
/// Throws "cannot ASKED of OBJECT: WHY".
[[noreturn]] void Refuse(Asked const& asked, KOVSimDynamicID const& of, std::string const& why);

/// True for the numbers of temporary sets.
inline bool IsTemporary(KOVSimDynamicID const& id) {
    return id.category == KOVSimCategoryCSet && id.data.minor < -1;
}

/// The context of an object that is to be read. Null if `id` names nothing: a null category or
/// context, or number -1. Throws for a closed document and for numbers of dropped transactions.
store::Context* ToRead(KOVSimDynamicID const& id);
/// The context of an object that is to be written: as above, and throws too if `id` names nothing
/// or a temporary set, and unless a transaction is open.
store::Context& ToWrite(KOVSimDynamicID const& id, Asked const& asked);
/// Throws unless `target` may stand at the end of a link of an object in `context`: not null, of
/// the same document, and lasting.
void RequireTarget(store::Context& context, KOVSimDynamicID const& target, Asked const& asked,
                   KOVSimDynamicID const& owner);
/// Throws unless a transaction is open.
void RequireTransaction(store::Context& context, Asked const& asked);

/// The stored type of an object with a number of its own; -1 if there is none.
KOVSimTypeID TypeOfNumber(store::Context& context, KOVSimIDMinor number);
/// The identity behind a stored reference, its type looked up.
KOVSimDynamicID IdentityOf(store::Context& context, std::int64_t reference);

/// Makes the catalogue's row of a new object and gives its identity. In a transaction.
KOVSimDynamicID NewObject(store::Context& context, int category, KOVSimTypeID type);

/// The type number of a type index: the two are equal, and -1 is no particular type.
inline KOVSimTypeID TypeNumber(int type) { return type < 0 ? -1 : type; }

}  // namespace kov::records
