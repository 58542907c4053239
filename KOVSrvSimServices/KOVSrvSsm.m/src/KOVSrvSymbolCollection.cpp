#include "KOVSrvSymbolCollection.h"

#include <string>

#include "KOVSimCSetIterator.h"
#include "KOVSimCollection.h"
#include "KOVSimContext.h"
#include "KOVSimException.h"
#include "KOVSimSymbols.h"

namespace {

int SymbolOf(KOVSimContext const& context, KOVSimSymbols const& symbols,
             KOVSimCollectionID const& collection, int member) {
    KOVSimDynamicID const record = context.GetRecord(collection, member);
    return symbols.IsMember(record) ? symbols.Get(record) : -1;
}

[[noreturn]] void RefuseSymbol(KOVSimCollectionID const& collection, int type, int symbol) {
    std::string text = "cannot find symbol " + std::to_string(symbol) + ": ";
    if (collection.IsNull()) {
        text += "the collection is null";
    } else {
        text += "no member of collection " + std::to_string(collection.Minor()) + " stands for it";
        KOVString const name = KOVSimTypeSchemaSnapshot().TypeName(type);
        if (!name.IsEmpty()) text += std::string(" as ") + name.Text();
    }
    KOVSimException::ThrowText(text.c_str());
}

}  // namespace

KOVSrvSymbolCollection::KOVSrvSymbolCollection(KOVSimCollectionID const& collection, int type)
    : m_collection(collection), m_type(type) {}

int KOVSrvSymbolCollection::GetSymbol(int member) const {
    KOVSimContext const context(m_collection.ContextID());
    return SymbolOf(context, KOVSimSymbols(context.ID()), m_collection, member);
}

KOVSrvSymbolCollection::Ints KOVSrvSymbolCollection::GetSymbols(KOVSimCSet set) const {
    KOVSimContext const context(m_collection.ContextID());
    KOVSimSymbols const symbols(context.ID());
    Ints found(set.Size(), 0);
    KOVSimCSetIterator at(set);
    for (at.First(); !at.IsDone(); at.Next()) {
        found.Get(at.CurrentLocation()) =
            SymbolOf(context, symbols, m_collection, at.CurrentValue());
    }
    return found;
}

int KOVSrvSymbolCollection::GetCMember(int symbol) const {
    KOVSimContext const context(m_collection.ContextID());
    KOVSimDynamicID const record =
        KOVSimSymbols(context.ID()).Get(context.Schema().TypeID(m_type), symbol, m_collection);
    if (record.IsNull()) RefuseSymbol(m_collection, m_type, symbol);
    return context.GetCMemberIndex(record);
}

KOVSrvSymbolCollection::Ints KOVSrvSymbolCollection::GetCMembers(Ints const& symbols) const {
    Ints members(symbols.Size(), 0);
    for (int i = 0; i < symbols.Size(); ++i) members.Get(i) = GetCMember(symbols.ConstGet(i));
    return members;
}

KOVSimCMemberID KOVSrvSymbolCollection::GetCMemberID(int symbol) const {
    KOVSimDynamicDataID data;
    data.parent = m_collection.Minor();
    data.minor = GetCMember(symbol);
    return KOVSimCMemberID(KOVSimDynamicID(KOVSimCategoryMember, m_collection.ContextID(), data,
                                           m_collection.TypeID(), 0));
}

KOVSimCSet KOVSrvSymbolCollection::CreateOCSet(Ints const& symbols) const {
    Ints const members = GetCMembers(symbols);
    return KOVSimCollection(m_collection).CreateVolatileOrderedCSet(members.Ptr(), members.Size());
}
