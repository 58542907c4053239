// VariableRows: the rows of the map of result variables, in its order, which is part of it.
#pragma once

#include "KOVSrvVariableMap.h"

namespace kov::tool {

/// The first row that fits; null if none does.
template <class Fits>
KOVSrvVariableMapEntry const* FindVariableRow(Fits&& fits) {
    for (int i = 0;; ++i) {
        KOVSrvVariableMapEntry const* const row = KOVSrvVariableMap::GetEntry(i);
        if (row->label == nullptr) return nullptr;
        if (fits(*row)) return row;
    }
}

template <class Visit>
void ForEachVariableRow(Visit&& visit) {
    FindVariableRow([&visit](KOVSrvVariableMapEntry const& row) {
        visit(row);
        return false;
    });
}

}  // namespace kov::tool
