#include "KOVSrvGetDofNumberFromDofRecord.h"

#include <cstddef>

#include "KOVSimCollection.h"
#include "KOVSimSchema.h"
#include "zdm_ComponentSymbols.h"
#include "zdm_DofSymbols.h"

namespace {

// Entry i is for number i + 1.
struct Symbol {
    int position;
    char const* name;
};

constexpr Symbol kDofs[] = {
    {zdm_Dof_DISPLACEMENT_1, "DISPLACEMENT_1"},     {zdm_Dof_DISPLACEMENT_2, "DISPLACEMENT_2"},
    {zdm_Dof_DISPLACEMENT_3, "DISPLACEMENT_3"},     {zdm_Dof_ROTATION_ANGLE_1, "ROTATION_ANGLE_1"},
    {zdm_Dof_ROTATION_ANGLE_2, "ROTATION_ANGLE_2"}, {zdm_Dof_ROTATION_ANGLE_3, "ROTATION_ANGLE_3"},
};
constexpr Symbol kComponents[] = {
    {zdm_Component_C_1, "C_1"},
    {zdm_Component_C_2, "C_2"},
    {zdm_Component_C_3, "C_3"},
};

template <std::size_t Count>
int NumberAt(Symbol const (&symbols)[Count], int position) {
    int number = 0;
    for (Symbol const& symbol : symbols) {
        ++number;
        if (symbol.position == position) return number;
    }
    return -1;
}

// Null for a number without a symbol.
template <std::size_t Count>
char const* NameOf(Symbol const (&symbols)[Count], int number) {
    bool const known = number >= 1 && number <= static_cast<int>(Count);
    return known ? symbols[number - 1].name : nullptr;
}

}  // namespace

int KOVSrvGetDofNumberFromDofRecord(KOVSimPosition const& record) {
    return NumberAt(kDofs, record.GetSymbolPosition());
}

int KOVSrvGetComponentNumberFromComponentRecord(KOVSimPosition const& record) {
    KOVString const name = record.GetSymbolName();
    if (name == "C_2") return 2;
    if (name == "C_3") return 3;
    return 1;
}

KOVSimPosition KOVSrvGetDofRecordFromDofNumber(KOVObjDocument const& document, int number) {
    KOVSimCollectionID const collection = document.GetDofTypeCollection().GetCollection();
    return document.GetSymbol(schema::DofSymbol(), NameOf(kDofs, number), collection);
}

KOVSimPosition KOVSrvGetComponentRecordFromDofNumber(KOVObjDocument const& document, int number) {
    KOVSimCollectionID const collection = document.GetComponentCollection().GetCollection();
    char const* const name = NameOf(kComponents, number);
    if (name == nullptr) return {};
    return document.GetSymbol(schema::ComponentSymbol(), name, collection);
}

KOVSimPosition KOVSrvGetComponentCSetFromComponentRecord(KOVObjDocument const& document,
                                                         KOVSimPosition const& record) {
    int const number = NumberAt(kComponents, record.GetSymbolPosition());
    KOVSimCollection components(document.GetComponentCollection().GetCollection());
    return components.CreateTempOrderedCSet(&number, 1);
}
