#include "FieldForm.h"

#include <algorithm>
#include <span>

#include "zdm_AlgebraicTypes.h"
#include "zdm_ComponentSymbols.h"

namespace kov::tool {
namespace {

using Kind = FieldForm::Kind;

constexpr int kMost = 6;

// Components that make one thing, in the order of viewers, with what stands behind their labels.
struct Pattern {
    Kind kind;
    int count;
    int symbols[kMost];
    char const* endings[kMost];
};

constexpr Pattern kPatterns[] = {
    {Kind::Vector, 3, {zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3}, {"1", "2", "3"}},
    {Kind::Vector,
     3,
     {zdm_Component_C_R1, zdm_Component_C_R2, zdm_Component_C_R3},
     {"1", "2", "3"}},
    {Kind::SymmetricTensor,
     6,
     {zdm_Component_C_11, zdm_Component_C_22, zdm_Component_C_33, zdm_Component_C_12,
      zdm_Component_C_23, zdm_Component_C_13},
     {"11", "22", "33", "12", "23", "13"}},
    {Kind::SymmetricTensor,
     6,
     {zdm_Component_C_11, zdm_Component_C_22, zdm_Component_C_33, zdm_Component_C_12_21,
      zdm_Component_C_23_32, zdm_Component_C_13_31},
     {"11", "22", "33", "12", "23", "13"}},
};

bool Allows(int algebraicType, Kind kind) {
    switch (algebraicType) {
        case zdm_Algebraic_VECTOR:
        case zdm_Algebraic_POSITION:
            return kind == Kind::Vector;
        case zdm_Algebraic_TENSOR2_SYMMETRIC:
            return kind == Kind::SymmetricTensor;
        case -1:
            return true;
        default:
            return false;
    }
}

// The columns of the pattern; none where the field has a component that is not in it.
std::vector<FieldForm::Column> Fit(FieldContent const& field, Pattern const& pattern) {
    std::span<int const> const symbols(pattern.symbols, static_cast<std::size_t>(pattern.count));
    std::vector<FieldForm::Column> columns;
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        columns.push_back({-1, field.head.label + pattern.endings[i]});
    }
    for (std::size_t place = 0; place < field.components.size(); ++place) {
        auto const at = std::find(symbols.begin(), symbols.end(), field.components[place].symbol);
        if (at == symbols.end()) return {};
        FieldForm::Column& column = columns[static_cast<std::size_t>(at - symbols.begin())];
        column.place = static_cast<int>(place);
        column.label = field.components[place].label;
    }
    return columns;
}

}  // namespace

FieldForm FormOf(FieldContent const& field) {
    FieldForm form;
    if (field.components.empty()) return form;
    bool const untold = field.algebraicType == -1;
    if (field.components.size() == 1 &&
        (untold || field.components[0].symbol == zdm_Component_C_SCALAR)) {
        return {Kind::Scalar, {{0, field.components[0].label}}};
    }
    for (Pattern const& pattern : kPatterns) {
        if (!Allows(field.algebraicType, pattern.kind)) continue;
        std::vector<FieldForm::Column> columns = Fit(field, pattern);
        if (!columns.empty()) return {pattern.kind, std::move(columns)};
    }
    for (std::size_t place = 0; place < field.components.size(); ++place) {
        form.columns.push_back({static_cast<int>(place), field.components[place].label});
    }
    if (form.columns.size() == 1) form.kind = Kind::Scalar;
    return form;
}

}  // namespace kov::tool
