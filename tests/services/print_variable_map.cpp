// Prints the variable map, a row a line, for the test that expands its notation anew.
#include <cstdio>

#include "KOVSrvVariableMap.h"

int main() {
    KOVSrvVariableMapEntry const* row = KOVSrvVariableMap::GetEntry(0);
    for (; row->label; ++row)
        std::printf("%s|%d|%s|%d\n", row->label, row->component, row->fieldName, row->gridType);
    std::printf("|%d|%s|%d\n", row->component, row->fieldName, row->gridType);
}
