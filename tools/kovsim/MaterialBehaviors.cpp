#include "MaterialBehaviors.h"

#include <algorithm>

#include "ElasticStability.h"
#include "KOVSimSchema.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr auto kAny = ColumnRule::Any;
constexpr auto kAbove = ColumnRule::AboveZero;
constexpr auto kFrom = ColumnRule::FromZero;

// The quantities of a document; persisted.
enum Quantity : int {
    kYoungsModulus = 0,
    kPoissonsRatio = 1,
    kYoungsModuli = 2,
    kPoissonsRatios = 3,
    kShearModuli = 4,
    kStiffness = 5,
    kYieldStress = 6,
    kPlasticStrain = 7,
    kDensity = 8,
    kExpansion = 9,
    kConductivity = 10,
    kSpecificHeat = 11,
};

// ---- elastic ----
constexpr TablePart kIsotropicParts[] = {{kYoungsModulus, 1}, {kPoissonsRatio, 1}};
constexpr TableColumn kIsotropic[] = {{"E", kAbove}, {"nu", ColumnRule::PoissonRatio}};
constexpr TablePart kOrthotropicParts[] = {{kStiffness, 9}};
constexpr TableColumn kOrthotropic[] = {{"D1111", kAbove}, {"D1122", kAny},   {"D2222", kAbove},
                                        {"D1133", kAny},   {"D2233", kAny},   {"D3333", kAbove},
                                        {"D1212", kAbove}, {"D1313", kAbove}, {"D2323", kAbove}};
constexpr TablePart kEngineeringParts[] = {
    {kYoungsModuli, 3}, {kPoissonsRatios, 3}, {kShearModuli, 3}};
constexpr TableColumn kEngineering[] = {{"E1", kAbove},  {"E2", kAbove},  {"E3", kAbove},
                                        {"nu12", kAny},  {"nu13", kAny},  {"nu23", kAny},
                                        {"G12", kAbove}, {"G13", kAbove}, {"G23", kAbove}};
constexpr TablePart kAnisotropicParts[] = {{kStiffness, 21}};
constexpr TableColumn kAnisotropic[] = {
    {"D1111", kAbove}, {"D1122", kAny}, {"D2222", kAbove}, {"D1133", kAny}, {"D2233", kAny},
    {"D3333", kAbove}, {"D1112", kAny}, {"D2212", kAny},   {"D3312", kAny}, {"D1212", kAbove},
    {"D1113", kAny},   {"D2213", kAny}, {"D3313", kAny},   {"D1213", kAny}, {"D1313", kAbove},
    {"D1123", kAny},   {"D2223", kAny}, {"D3323", kAny},   {"D1223", kAny}, {"D1323", kAny},
    {"D2323", kAbove}};
constexpr TablePart kLaminaParts[] = {{kYoungsModuli, 2}, {kPoissonsRatios, 1}, {kShearModuli, 3}};
constexpr TableColumn kLamina[] = {{"E1", kAbove},  {"E2", kAbove},  {"nu12", kAny},
                                   {"G12", kAbove}, {"G13", kAbove}, {"G23", kAbove}};
constexpr TablePart kShearParts[] = {{kShearModuli, 1}};
constexpr TableColumn kShear[] = {{"G", kAbove}};
constexpr TablePart kTractionParts[] = {{kStiffness, 3}};
constexpr TableColumn kTraction[] = {{"Knn", kAbove}, {"Kss", kAbove}, {"Ktt", kAbove}};
constexpr BehaviorTable kElastic[] = {
    {"ISOTROPIC", kIsotropicParts, kIsotropic},
    {"ORTHOTROPIC", kOrthotropicParts, kOrthotropic, false, &OrthotropicFinding},
    {"ENGINEERING CONSTANTS", kEngineeringParts, kEngineering, false, &EngineeringFinding},
    {"ANISOTROPIC", kAnisotropicParts, kAnisotropic, false, &AnisotropicFinding},
    {"LAMINA", kLaminaParts, kLamina, false, &LaminaFinding},
    {"SHEAR", kShearParts, kShear},
    {"TRACTION", kTractionParts, kTraction},
};
constexpr char const* kElasticPassed[] = {"moduli", "compression", "no compression", "no tension"};
constexpr char const* kElasticTypes[] = {"BILAMINA", "COUPLED", "COUPLED TRACTION", "SHORT FIBER"};

// ---- plastic ----
constexpr TablePart kPlasticParts[] = {{kYieldStress, 1}, {kPlasticStrain, 1}};
constexpr TableColumn kPlasticColumns[] = {{"yield stress", kAbove}, {"plastic strain", kFrom}};
constexpr BehaviorTable kPlastic[] = {
    {"ISOTROPIC", kPlasticParts, kPlasticColumns, true},
    {"KINEMATIC", kPlasticParts, kPlasticColumns, true},
};
constexpr char const* kPlasticPassed[] = {"extrapolation", "scale stress"};
constexpr char const* kPlasticRefused[] = {"rate"};
constexpr char const* kPlasticTypes[] = {"COMBINED", "JOHNSON COOK", "USER"};

// ---- density, specific heat ----
constexpr TablePart kDensityParts[] = {{kDensity, 1}};
constexpr TableColumn kDensityColumns[] = {{"density", kFrom}};
constexpr BehaviorTable kDensityTables[] = {{"", kDensityParts, kDensityColumns}};
constexpr TablePart kHeatParts[] = {{kSpecificHeat, 1}};
constexpr TableColumn kHeatColumns[] = {{"specific heat", kFrom}};
constexpr BehaviorTable kHeat[] = {{"", kHeatParts, kHeatColumns}};
constexpr char const* kHeatPassed[] = {"constant volume"};
constexpr char const* kPoreFluid[] = {"pore fluid"};

// ---- expansion, conductivity ----
constexpr TablePart kExpansionParts1[] = {{kExpansion, 1}};
constexpr TablePart kExpansionParts3[] = {{kExpansion, 3}};
constexpr TablePart kExpansionParts6[] = {{kExpansion, 6}};
constexpr TableColumn kExpansion1[] = {{"alpha", kAny}};
constexpr TableColumn kExpansion3[] = {{"alpha11", kAny}, {"alpha22", kAny}, {"alpha33", kAny}};
constexpr TableColumn kExpansion6[] = {{"alpha11", kAny}, {"alpha22", kAny}, {"alpha33", kAny},
                                       {"alpha12", kAny}, {"alpha13", kAny}, {"alpha23", kAny}};
constexpr BehaviorTable kExpansionTables[] = {
    {"ISOTROPIC", kExpansionParts1, kExpansion1},
    {"ORTHOTROPIC", kExpansionParts3, kExpansion3},
    {"ANISOTROPIC", kExpansionParts6, kExpansion6},
};
constexpr BehaviorNumber kExpansionNumbers[] = {{"zero", "zero", 1, kAny}};
constexpr char const* kExpansionRefused[] = {"pore fluid", "user"};
constexpr char const* kExpansionTypes[] = {"SHORT FIBER", "USER"};
constexpr TablePart kConductivityParts1[] = {{kConductivity, 1}};
constexpr TablePart kConductivityParts3[] = {{kConductivity, 3}};
constexpr TablePart kConductivityParts6[] = {{kConductivity, 6}};
constexpr TableColumn kConductivity1[] = {{"k", kFrom}};
constexpr TableColumn kConductivity3[] = {{"k11", kFrom}, {"k22", kFrom}, {"k33", kFrom}};
constexpr TableColumn kConductivity6[] = {{"k11", kFrom}, {"k12", kAny}, {"k22", kFrom},
                                          {"k13", kAny},  {"k23", kAny}, {"k33", kFrom}};
constexpr BehaviorTable kConductivityTables[] = {
    {"ISOTROPIC", kConductivityParts1, kConductivity1},
    {"ORTHOTROPIC", kConductivityParts3, kConductivity3},
    {"ANISOTROPIC", kConductivityParts6, kConductivity6},
};

// ---- damping ----
constexpr BehaviorNumber kDampingNumbers[] = {
    {"alpha", "alpha", 1, kFrom},
    {"beta", "beta", 2, kFrom},
    {"composite", "composite", 3, kFrom},
    {"structural", "structural", 4, kFrom},
};

constexpr BehaviorKind kKinds[] = {
    {"elastic", "Elastic", "type", kElastic, {}, kElasticPassed, {}, kElasticTypes},
    {"plastic",
     "Plastic",
     "hardening",
     kPlastic,
     {},
     kPlasticPassed,
     kPlasticRefused,
     kPlasticTypes},
    {"density", "Density", nullptr, kDensityTables, {}, {}, kPoreFluid, {}},
    {"expansion",
     "Expansion",
     "type",
     kExpansionTables,
     kExpansionNumbers,
     {},
     kExpansionRefused,
     kExpansionTypes},
    {"conductivity", "Conductivity", "type", kConductivityTables, {}, {}, kPoreFluid, {}},
    {"specific heat", "SpecificHeat", nullptr, kHeat, {}, kHeatPassed, kPoreFluid, {}},
    {"damping", "Damping", nullptr, {}, kDampingNumbers, {}, {}, {}},
};

}  // namespace

std::string BehaviorTable::TypeKey() const {
    std::string key = LowerCase(type);
    std::erase(key, ' ');
    return key;
}

std::span<BehaviorKind const> BehaviorKinds() { return kKinds; }

BehaviorKind const* FindBehavior(std::string_view name) {
    auto const found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                    [name](BehaviorKind const& kind) { return kind.name == name; });
    return found == std::end(kKinds) ? nullptr : found;
}

BehaviorTable const* FindTable(BehaviorKind const& kind, std::string_view type) {
    for (BehaviorTable const& table : kind.tables) {
        if (table.type == type) return &table;
    }
    return nullptr;
}

TableDescription::TableDescription(BehaviorTable const& table) {
    for (TablePart const& part : table.parts) {
        m_types.push_back(schema::MaterialTable_dependentData());
        m_members.push_back(part.part);
        m_lengths.push_back(part.length);
    }
    m_types.push_back(-1);
    m_table = KOVSrvFsmMaterialTable(m_types.data(), m_members.data(), m_lengths.data(), true,
                                     schema::MaterialTable_temperatureData(), kBehaviorTemperature,
                                     schema::MaterialTable_fieldVariableData(), kBehaviorFields);
}

}  // namespace kov::tool
