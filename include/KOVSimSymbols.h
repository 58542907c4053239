// KOVSimSymbols: the table of symbols of one context: members of symbol collections that stand for
// an enumerated number.
#pragma once

#include "KOVExport.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSimSymbols {
  public:
    explicit KOVSimSymbols(KOVSimContextID context) : m_context(context) {}

    /// True if the record is a symbol.
    bool IsMember(KOVSimDynamicID const& record) const;
    /// The number of the symbol; -1 if the record is none.
    int Get(KOVSimDynamicID const& record) const;
    /// The record of `type` that stands for `symbol` in the collection; null if there is none. A
    /// `type` of -1 accepts any.
    KOVSimDynamicID Get(KOVSimTypeID type, int symbol, KOVSimCollectionID const& collection) const;

  private:
    KOVSimContextID m_context;
};
