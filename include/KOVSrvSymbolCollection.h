// KOVSrvSymbolCollection: between the members of a symbolic collection and the symbols that they
// stand for.
//
// Some collections of a document are symbolic: each member record stands for a numbered symbol,
// such as a component or a degree of freedom. Members are indices in the collection, symbols are
// numbers of an enumeration such as zdm_ComponentSymbolsEnm; the two agree in a collection made in
// the enumeration's order, and in no other. A plain value of identities; every operation asks the
// document afresh, and none needs a transaction.
#pragma once

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimCSet.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSrvSymbolCollection {
  public:
    using Ints = KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>;

    /// Stands for no collection: every operation that needs a member or a symbol throws
    /// KOVSimException.
    KOVSrvSymbolCollection() = default;
    /// `type`: the type index of the symbol records, such as schema::ComponentSymbol().
    KOVSrvSymbolCollection(KOVSimCollectionID const& collection, int type);

    /// The symbol for which member `member` stands; -1 if it stands for none. Throws
    /// KOVSimException outside the collection.
    int GetSymbol(int member) const;
    /// The symbols of all members of `set`, as by GetSymbol, in the set's own order: entry i is for
    /// location i. Empty for an empty set.
    Ints GetSymbols(KOVSimCSet set) const;

    /// The index of the member that stands for `symbol`. Throws KOVSimException if there is none of
    /// the collection's type.
    int GetCMember(int symbol) const;
    /// The same for each of `symbols`, in their order.
    Ints GetCMembers(Ints const& symbols) const;
    /// The identity of that member.
    KOVSimCMemberID GetCMemberID(int symbol) const;
    /// A volatile set of the members that stand for `symbols`, in their order.
    KOVSimCSet CreateOCSet(Ints const& symbols) const;

  private:
    KOVSimCollectionID m_collection;
    int m_type = -1;
};
