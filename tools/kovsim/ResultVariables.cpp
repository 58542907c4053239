#include "ResultVariables.h"

#include <algorithm>
#include <cstring>

#include "KOVSimSchema.h"
#include "Names.h"
#include "Nearest.h"
#include "VariableRows.h"
#include "zdm_ComponentSymbols.h"

namespace kov::tool {
namespace {

struct Ending {
    char const* text;
    zdm_ComponentSymbolsEnm symbol;
};

// What the labels of components end with, by algebraic type, where the map has no row.
constexpr Ending kVector[] = {
    {"1", zdm_Component_C_1}, {"2", zdm_Component_C_2}, {"3", zdm_Component_C_3}};
constexpr Ending kTensor[] = {
    {"11", zdm_Component_C_11}, {"22", zdm_Component_C_22}, {"33", zdm_Component_C_33},
    {"12", zdm_Component_C_12}, {"13", zdm_Component_C_13}, {"23", zdm_Component_C_23},
    {"21", zdm_Component_C_21}, {"31", zdm_Component_C_31}, {"32", zdm_Component_C_32}};

// What kind of quantity the symbol is a component of.
int AlgebraicTypeOf(int symbol) {
    switch (symbol) {
        case zdm_Component_C_1:
        case zdm_Component_C_2:
        case zdm_Component_C_3:
        case zdm_Component_C_R1:
        case zdm_Component_C_R2:
        case zdm_Component_C_R3:
            return zdm_Algebraic_VECTOR;
        case zdm_Component_C_Q1:
        case zdm_Component_C_Q2:
        case zdm_Component_C_Q3:
        case zdm_Component_C_Q4:
            return zdm_Algebraic_TENSOR2_ORTHOGONAL;
        case zdm_Component_C_SCALAR:
        case zdm_Component_NONE:
            return zdm_Algebraic_SCALAR;
        default:
            return zdm_Algebraic_TENSOR2_SYMMETRIC;
    }
}

// Of the field as a whole: what any of its components in the map is.
int AlgebraicTypeOfField(char const* name) {
    auto const* const row = FindVariableRow([&](KOVSrvVariableMapEntry const& each) {
        return std::strcmp(each.fieldName, name) == 0 &&
               AlgebraicTypeOf(each.component) != zdm_Algebraic_SCALAR;
    });
    return row == nullptr ? zdm_Algebraic_SCALAR : AlgebraicTypeOf(row->component);
}

// The first row of a label; null if there is none, and for one that stands for all components of a
// vector or tensor, which is no number.
KOVSrvVariableMapEntry const* FindRow(std::string const& label) {
    auto const* const found =
        FindVariableRow([&](KOVSrvVariableMapEntry const& row) { return label == row.label; });
    if (found == nullptr || found->component != zdm_Component_NONE) return found;
    return AlgebraicTypeOfField(found->fieldName) == zdm_Algebraic_SCALAR ? found : nullptr;
}

bool IsOnGrid(std::string const& label, int grid) {
    return FindVariableRow([&](KOVSrvVariableMapEntry const& row) {
               return row.gridType == grid && label == row.label;
           }) != nullptr;
}

// The symbols of all components by their endings; empty if one has another.
template <std::size_t N>
std::vector<int> SymbolsByEnding(ResultField const& field, Ending const (&endings)[N]) {
    std::vector<int> symbols;
    for (std::string const& component : field.components) {
        auto const at = std::find_if(std::begin(endings), std::end(endings), [&](Ending const& e) {
            return component == field.label + e.text;
        });
        if (at == std::end(endings)) return {};
        symbols.push_back(at->symbol);
    }
    return symbols;
}

void AddColumn(ResultTarget& target, int symbol, std::size_t column, ResultField const& field) {
    auto const at = std::lower_bound(target.symbols.begin(), target.symbols.end(), symbol);
    if (at != target.symbols.end() && *at == symbol) {
        throw ResultFault("component '" + Shown(field.components[column]) + "' of field '" +
                          Shown(field.label) + "' stands there twice");
    }
    target.columns.insert(target.columns.begin() + (at - target.symbols.begin()), column);
    target.symbols.insert(at, symbol);
}

ResultTarget UnknownTarget(std::string name, int type, int grid) {
    ResultTarget target;
    target.name = std::move(name);
    target.algebraicType = type;
    target.grid = grid;
    return target;
}

void AddUnknown(ResultField const& field, int grid, std::vector<ResultTarget>& targets) {
    std::vector<int> symbols = SymbolsByEnding(field, kVector);
    int type = zdm_Algebraic_VECTOR;
    if (symbols.empty()) {
        symbols = SymbolsByEnding(field, kTensor);
        // All nine components too: of the types it is this one that they go with.
        type = zdm_Algebraic_TENSOR2_SYMMETRIC;
    }
    if (!symbols.empty()) {
        ResultTarget& target = targets.emplace_back(UnknownTarget(field.label, type, grid));
        for (std::size_t i = 0; i < symbols.size(); ++i) AddColumn(target, symbols[i], i, field);
        return;
    }
    for (std::size_t i = 0; i < field.components.size(); ++i) {
        bool const seen = std::any_of(targets.begin(), targets.end(), [&](ResultTarget const& t) {
            return t.name == field.components[i];
        });
        ResultTarget& target =
            seen ? *std::find_if(targets.begin(), targets.end(),
                                 [&](auto const& t) { return t.name == field.components[i]; })
                 : targets.emplace_back(
                       UnknownTarget(field.components[i], zdm_Algebraic_SCALAR, grid));
        AddColumn(target, zdm_Component_C_SCALAR, i, field);
    }
}

}  // namespace

int GridOf(ResultPlace place) {
    switch (place) {
        case ResultPlace::Node:
            return schema::Grid_Node();
        case ResultPlace::Element:
            return schema::Grid_Element();
        case ResultPlace::IntegrationPoint:
            break;
    }
    return schema::Grid_IntegrationPoint();
}

std::vector<ResultTarget> TargetsOf(ResultField const& field) {
    int const grid = GridOf(field.place);
    std::vector<ResultTarget> targets;
    std::vector<KOVSrvVariableMapEntry const*> rows;
    for (std::string const& component : field.components) rows.push_back(FindRow(component));
    if (std::find(rows.begin(), rows.end(), nullptr) != rows.end()) {
        AddUnknown(field, grid, targets);
        return targets;
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::string const name = rows[i]->fieldName;
        auto at = std::find_if(targets.begin(), targets.end(),
                               [&](ResultTarget const& t) { return t.name == name; });
        if (at == targets.end()) {
            at = targets.insert(at, ResultTarget{});
            at->name = name;
            at->known = true;
            at->knownThere = IsOnGrid(field.components[i], grid);
            at->grid = grid;
            at->algebraicType = AlgebraicTypeOfField(rows[i]->fieldName);
        }
        int const symbol =
            rows[i]->component == zdm_Component_NONE ? zdm_Component_C_SCALAR : rows[i]->component;
        AddColumn(*at, symbol, i, field);
    }
    return targets;
}

std::vector<std::string> NearestVariables(std::string_view label) {
    NearestSearch search(label);
    char const* last = "";
    ForEachVariableRow([&](KOVSrvVariableMapEntry const& row) {
        if (std::strcmp(last, row.label) != 0) search.Look(row.label);
        last = row.label;
    });
    return search.Names();
}

}  // namespace kov::tool
