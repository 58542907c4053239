// The check of one meshed field, and of components against the algebraic type of a field.
#include <algorithm>

#include "KOVSimCSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDrawer.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTypeSchemaSnapshot.h"
#include "KOVSrvLumenChecker.h"
#include "KOVSrvSymbolCollection.h"
#include "LumenFindings.h"
#include "zdm_AlgebraicTypes.h"
#include "zdm_ComponentSymbols.h"

using kov::fsm::LumenFindings;
using kov::fsm::LumenText;

namespace {

using Symbols = KOVSrvLumenChecker::Symbols;

// A set of components that a quantity may have, all or some of them.
struct SymbolSet {
    int count;
    int symbols[9];
};

constexpr SymbolSet kDirections{3, {zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3}};
constexpr SymbolSet kRotations{3, {zdm_Component_C_R1, zdm_Component_C_R2, zdm_Component_C_R3}};
constexpr SymbolSet kNineEntries{9,
                                 {zdm_Component_C_11, zdm_Component_C_22, zdm_Component_C_33,
                                  zdm_Component_C_12, zdm_Component_C_13, zdm_Component_C_23,
                                  zdm_Component_C_21, zdm_Component_C_31, zdm_Component_C_32}};
constexpr SymbolSet kSymmetricEntries{
    6,
    {zdm_Component_C_11, zdm_Component_C_22, zdm_Component_C_33, zdm_Component_C_12_21,
     zdm_Component_C_13_31, zdm_Component_C_23_32}};
constexpr SymbolSet kUpperEntries{6,
                                  {zdm_Component_C_11, zdm_Component_C_22, zdm_Component_C_33,
                                   zdm_Component_C_12, zdm_Component_C_13, zdm_Component_C_23}};
constexpr SymbolSet kPrincipals{3, {zdm_Component_C_TP1, zdm_Component_C_TP2, zdm_Component_C_TP3}};
constexpr SymbolSet kStressPrincipals{3,
                                      {zdm_Component_C_P1, zdm_Component_C_P2, zdm_Component_C_P3}};
constexpr SymbolSet kQuaternion{
    4, {zdm_Component_C_Q1, zdm_Component_C_Q2, zdm_Component_C_Q3, zdm_Component_C_Q4}};
constexpr SymbolSet kFourIndices{
    9,
    {zdm_Component_C_1111, zdm_Component_C_1122, zdm_Component_C_1112, zdm_Component_C_2211,
     zdm_Component_C_2222, zdm_Component_C_2212, zdm_Component_C_1211, zdm_Component_C_1222,
     zdm_Component_C_1212}};

constexpr char kMisfit[] = "{} components are not consistent with algebraicType {}.";

// The components of a field lie in one of these sets. That the nine entries belong to the symmetric
// tensors, and the upper six to the general ones, is meant so.
struct Quantity {
    int type;
    char const* name;
    SymbolSet const* sets[7];  // the unused ones are null
};

constexpr Quantity kQuantities[] = {
    {zdm_Algebraic_POSITION, "POSITION", {&kDirections, &kRotations}},
    {zdm_Algebraic_TENSOR2_GENERAL,
     "TENSOR2_GENERAL",
     {&kRotations, &kSymmetricEntries, &kPrincipals, &kStressPrincipals, &kQuaternion,
      &kUpperEntries}},
    {zdm_Algebraic_TENSOR2_ORTHOGONAL, "TENSOR2_ORTHOGONAL", {&kRotations, &kQuaternion}},
    {zdm_Algebraic_TENSOR2_SYMMETRIC,
     "TENSOR2_SYMMETRIC",
     {&kNineEntries, &kSymmetricEntries, &kPrincipals, &kStressPrincipals}},
    {zdm_Algebraic_TENSOR4, "TENSOR4", {&kFourIndices}},
    {zdm_Algebraic_VECTOR, "VECTOR", {&kDirections, &kRotations}},
};

bool AllAmong(Symbols const& symbols, int const* allowed, int count) {
    return std::all_of(symbols.begin(), symbols.end(), [&](int symbol) {
        return count > 0 && std::find(allowed, allowed + count, symbol) != allowed + count;
    });
}

bool Fits(Symbols const& symbols, Quantity const& quantity) {
    return std::any_of(std::begin(quantity.sets), std::end(quantity.sets), [&](auto const* set) {
        return set && AllAmong(symbols, set->symbols, set->count);
    });
}

KOVString Misfit(KOVString const& header, Quantity const& quantity) {
    // This text alone has the header behind the constant part.
    if (quantity.type == zdm_Algebraic_TENSOR2_ORTHOGONAL) {
        return LumenText(" components are not consistent with algebraicType {}.{}.",
                         {quantity.name, header});
    }
    return LumenText(kMisfit, {header, quantity.name});
}

void CheckScalar(LumenFindings& findings, KOVString const& header, Symbols const& symbols) {
    int const scalar = zdm_Component_C_SCALAR;
    if (symbols.Size() == 0 || (symbols.Size() == 1 && symbols.ConstGet(0) == scalar)) return;
    findings.Add(
        "{}; componentSymbol Size: #{}; componentSymbol[0]: #{}; zdm_Component_C_SCALAR: #{}; "
        "components are not consistent with algebraicType SCALAR.",
        {header, symbols.Size(), symbols.ConstGet(0), scalar});
}

// The components that any drawer of a serial field lies over.
KOVSimCSet ComponentsOf(KOVSimPosition const& serialField, KOVSimCollectionID const& collection) {
    KOVSimCSet components(collection);
    KOVSimSetiterator at = serialField.GetSet(schema::SerialField_drawers()).Begin();
    for (; at.NotDone(); ++at) {
        KOVSimDrawer const drawer(*at);
        if (!drawer.Description()) continue;
        KOVSimOCompartment const& domain = drawer.Description()->compartment;
        int const place = domain.Position(collection);
        if (place >= 0) components = components.Union(domain.CSet(place));
    }
    return components;
}

constexpr int kAlgebraicTypeField = 0;
constexpr int kNoAlgebraicType = -1;

int AlgebraicType(KOVSimPosition const& fieldType) {
    int type = kNoAlgebraicType;
    fieldType.DataRecord().GetSymb(kAlgebraicTypeField, type);
    return type;
}

}  // namespace

bool KOVSrvLumenChecker::Check_Component_Impl(Symbols const& componentSymbols, int* allowed,
                                              int allowedCount) const {
    return AllAmong(componentSymbols, allowed, allowedCount);
}

void KOVSrvLumenChecker::Check_Component(KOVString header, int algebraicType,
                                         Symbols const& componentSymbols,
                                         KOVSimPosition fieldType) {
    LumenFindings findings(m_findings);
    if (algebraicType == zdm_Algebraic_SCALAR) {
        return CheckScalar(findings, header, componentSymbols);
    }
    auto const quantity =
        std::find_if(std::begin(kQuantities), std::end(kQuantities),
                     [&](Quantity const& one) { return one.type == algebraicType; });
    if (quantity != std::end(kQuantities)) {
        if (!Fits(componentSymbols, *quantity)) findings.Add(Misfit(header, *quantity));
        return;
    }
    int const subtype = fieldType.TypePosition();
    if (subtype == schema::FieldType_unchecked()) return;
    findings.Add("algebraicType index# {} is not supported; field: {} subtype: {}.",
                 {algebraicType, header, KOVSimTypeSchemaSnapshot().TypeName(subtype)});
}

void KOVSrvLumenChecker::Check_Field(KOVSimPosition field, KOVString header,
                                     KOVString fieldNumber) {
    LumenFindings findings(m_findings);
    KOVString const text = LumenText("{}; Field: #{}", {header, fieldNumber});
    KOVSimPosition const fieldType = field.GetPosition(schema::Field_fieldType());
    if (fieldType.IsNull()) return findings.Add("{} has no Field_fieldType link.", {text});
    KOVString const typeName = fieldType.Name(schema::zdm_FieldTypeLib_fieldTypes());
    int const subtype = fieldType.TypePosition();
    KOVString const subtypeName = KOVSimTypeSchemaSnapshot().TypeName(subtype);
    if (typeName.IsEmpty() && subtype == schema::FieldTypePrimary()) {
        findings.Add(
            "{}; FieldType: -MISSING-; FieldTypePrimary, has no zdm_FieldTypeLib_fieldTypes "
            "parent link.",
            {text});
    }
    KOVSimCollectionID const collection = m_document.GetComponentCollection().GetCollection();
    KOVString const typed = typeName.IsEmpty()
                                ? LumenText("{}; FieldType: -MISSING-;", {text})
                                : LumenText("{}; FieldType: \"{}\";", {text, typeName});
    KOVSimDynamicDataID const record = fieldType.DataRecord().ID().data;
    int const algebraicType = AlgebraicType(fieldType);
    int number = 0;
    KOVSimSetiterator at = field.GetSet(schema::Field_serialFields()).Begin();
    for (; at.NotDone(); ++at) {
        KOVString const line =
            LumenText("{} SerFld: #{}; id: {}/{}", {typed, number++, record.parent, record.minor});
        KOVSimCSet const components = ComponentsOf(*at, collection);
        if (components.Size() > 0) {
            KOVSrvSymbolCollection const symbols(collection, schema::ComponentSymbol());
            Check_Component(line, algebraicType, symbols.GetSymbols(components), fieldType);
        } else if (algebraicType != zdm_Algebraic_SCALAR) {
            findings.Add(
                "{} \"{}\"; Drawer component CSets are empty but algebraicType is not SCALAR.",
                {line, subtypeName});
        }
    }
}
