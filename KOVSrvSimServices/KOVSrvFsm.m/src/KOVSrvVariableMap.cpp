#include "KOVSrvVariableMap.h"

#include "KOVSrvSimServices/KOVSrvFsm.m/src/VariableRows.h"
#include "zdm.h"

namespace {

constexpr int kVariables = 5471;
constexpr int kTextBytes = 14923;

constexpr char kNotation[] =
#include "KOVSrvSimServices/KOVSrvFsm.m/src/KOVSrvVariableMap.inc"
    ;

using Expansion = kov::fsm::VariableRowsExpansion<kVariables, kTextBytes>;
constexpr Expansion::Result kExpanded = Expansion().Expand(kNotation);
static_assert(kExpanded.rowCount == kVariables);
static_assert(kExpanded.texts.count == kTextBytes);

// Apart from the expanded rows, which are of no use when the program runs.
constexpr auto kTexts = kExpanded.texts;

struct Table {
    KOVSrvVariableMapEntry rows[kVariables + 1];
};

// gridType holds the schema pair until the table is completed.
constexpr Table MakeTable() {
    Table table{};
    for (int i = 0; i < kVariables; ++i) {
        kov::fsm::VariableRow const& row = kExpanded.rows[i];
        table.rows[i] = {kTexts.bytes + row.label,
                         static_cast<zdm_ComponentSymbolsEnm>(row.component),
                         kTexts.bytes + row.field, row.grid};
    }
    table.rows[kVariables] = {nullptr, zdm_Component_NONE, "UNDEFINED", 0};
    return table;
}

constinit Table table = MakeTable();

bool CompleteTable() noexcept {
    for (int i = 0; i < kVariables; ++i) {
        int& grid = table.rows[i].gridType;
        grid = zdm_CoreFragmentTypeIndex(kov::fsm::GridFragment(grid), kov::fsm::GridMember(grid));
    }
    return true;
}

[[maybe_unused]] bool const completed = CompleteTable();

}  // namespace

KOVSrvVariableMapEntry const* KOVSrvVariableMap::GetEntry(int index) { return table.rows + index; }
