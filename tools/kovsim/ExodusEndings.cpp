#include "ExodusEndings.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "Keywords.h"
#include "Names.h"
#include "VariableRows.h"

namespace kov::tool {

namespace {

struct Term {
    char const* letters;
    int term;
};

// Longer endings come before their own ends.
constexpr Term kTensorLetters[] = {{"xx", 0}, {"yy", 1},          {"zz", 2},
                                   {"xy", 3}, {"xz", 4},          {"zx", 4},
                                   {"yz", 5}, {"yx", kOtherTerm}, {"zy", kOtherTerm}};
constexpr Term kTensorDigits[] = {{"11", 0}, {"22", 1}, {"33", 2}, {"12", 3},
                                  {"13", 4}, {"31", 4}, {"23", 5}};
constexpr Term kTensorDiagonal[] = {{"xy", 3}, {"xz", 4},          {"zx", 4},
                                    {"yz", 5}, {"yx", kOtherTerm}, {"zy", kOtherTerm},
                                    {"x", 0},  {"y", 1},           {"z", 2}};
constexpr Term kVectorLetters[] = {{"x", 0}, {"y", 1}, {"z", 2}};
constexpr Term kVectorDigits[] = {{"1", 0}, {"2", 1}, {"3", 2}};

struct StyleTable {
    ExodusStyle style;
    ExodusRank rank;
    bool digits;
    std::span<Term const> terms;
};
constexpr StyleTable kStyles[] = {
    {ExodusStyle::TensorLetters, ExodusRank::Tensor, false, kTensorLetters},
    {ExodusStyle::TensorDigits, ExodusRank::Tensor, true, kTensorDigits},
    {ExodusStyle::TensorDiagonal, ExodusRank::Tensor, false, kTensorDiagonal},
    {ExodusStyle::VectorLetters, ExodusRank::Vector, false, kVectorLetters},
    {ExodusStyle::VectorDigits, ExodusRank::Vector, true, kVectorDigits},
    {ExodusStyle::Scalar, ExodusRank::Scalar, false, {}},
};

constexpr char const* kTensorTails[] = {"11", "22", "33", "12", "13", "23"};
constexpr char const* kVectorTails[] = {"1", "2", "3"};
constexpr char const* kScalarTails[] = {""};

constexpr std::string_view kSeparators = "_-.";

// What integration points are called in front of their number.
constexpr char const* kPointMarkers[] = {"ip", "gp", "qp", "intpt", "gauss"};

// Stems as programs write them, in lower case, and the labels of the variables that they stand for.
// Left out is what may mean several things, such as force or pressure.
struct Stem {
    char const* stem;
    ExodusRank rank;
    char const* atNodes;
    char const* inElements;
};
constexpr Stem kStems[] = {
    {"disp", ExodusRank::Vector, "U", "U"},
    {"displ", ExodusRank::Vector, "U", "U"},
    {"displacement", ExodusRank::Vector, "U", "U"},
    {"displacements", ExodusRank::Vector, "U", "U"},
    {"vel", ExodusRank::Vector, "V", "V"},
    {"veloc", ExodusRank::Vector, "V", "V"},
    {"velocity", ExodusRank::Vector, "V", "V"},
    {"acc", ExodusRank::Vector, "A", "A"},
    {"accel", ExodusRank::Vector, "A", "A"},
    {"accl", ExodusRank::Vector, "A", "A"},
    {"acceleration", ExodusRank::Vector, "A", "A"},
    {"rotation", ExodusRank::Vector, "UR", "UR"},
    {"rotations", ExodusRank::Vector, "UR", "UR"},
    {"react", ExodusRank::Vector, "RF", "RF"},
    {"reaction", ExodusRank::Vector, "RF", "RF"},
    {"reactions", ExodusRank::Vector, "RF", "RF"},
    {"reaction_force", ExodusRank::Vector, "RF", "RF"},
    {"reaction_forces", ExodusRank::Vector, "RF", "RF"},
    {"heat_flux", ExodusRank::Vector, "HFL", "HFL"},
    {"sig", ExodusRank::Tensor, "S", "S"},
    {"sigma", ExodusRank::Tensor, "S", "S"},
    {"stress", ExodusRank::Tensor, "S", "S"},
    {"cauchy_stress", ExodusRank::Tensor, "S", "S"},
    {"eps", ExodusRank::Tensor, "E", "E"},
    {"epsilon", ExodusRank::Tensor, "E", "E"},
    {"strain", ExodusRank::Tensor, "E", "E"},
    {"total_strain", ExodusRank::Tensor, "E", "E"},
    {"log_strain", ExodusRank::Tensor, "LE", "LE"},
    {"elastic_strain", ExodusRank::Tensor, "EE", "EE"},
    {"plastic_strain", ExodusRank::Tensor, "PE", "PE"},
    {"creep_strain", ExodusRank::Tensor, "CE", "CE"},
    {"thermal_strain", ExodusRank::Tensor, "THE", "THE"},
    {"temp", ExodusRank::Scalar, "NT", "TEMP"},
    {"temperature", ExodusRank::Scalar, "NT", "TEMP"},
    {"nt11", ExodusRank::Scalar, "NT", "TEMP"},
    {"mises", ExodusRank::Scalar, "MISES", "MISES"},
    {"vonmises", ExodusRank::Scalar, "MISES", "MISES"},
    {"von_mises", ExodusRank::Scalar, "MISES", "MISES"},
    {"vonmises_stress", ExodusRank::Scalar, "MISES", "MISES"},
    {"von_mises_stress", ExodusRank::Scalar, "MISES", "MISES"},
    {"eqps", ExodusRank::Scalar, "PEEQ", "PEEQ"},
    {"peeq", ExodusRank::Scalar, "PEEQ", "PEEQ"},
    {"density", ExodusRank::Scalar, "DENSITY", "DENSITY"},
    {"electric_potential", ExodusRank::Scalar, "EPOT", "EPOT"},
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsSeparator(char c) { return kSeparators.find(c) != std::string_view::npos; }

StyleTable const& TableOf(ExodusStyle style) { return kStyles[static_cast<std::size_t>(style)]; }

// The digits at the end of a name.
std::string_view DigitsAtEnd(std::string_view name) {
    std::size_t first = name.size();
    while (first > 0 && IsDigit(name[first - 1])) --first;
    return name.substr(first);
}

// What is in front of an ending, and the separator between the two, which goes into `form`.
std::optional<ExodusComponent> Before(std::string_view name, std::size_t ending, std::string form,
                                      int term) {
    std::string_view stem = name.substr(0, name.size() - ending);
    std::string_view separator;
    if (!stem.empty() && IsSeparator(stem.back())) {
        separator = stem.substr(stem.size() - 1);
        stem.remove_suffix(1);
    }
    if (stem.empty()) return std::nullopt;
    return ExodusComponent{stem, std::string(separator) + std::move(form), term};
}

std::optional<ExodusComponent> FindDigits(std::string_view name, StyleTable const& table) {
    std::string_view const digits = DigitsAtEnd(name);
    if (digits.empty()) return std::nullopt;
    auto const found = std::find_if(table.terms.begin(), table.terms.end(),
                                    [&](Term const& term) { return digits == term.letters; });
    return Before(name, digits.size(), "1", found == table.terms.end() ? kOtherTerm : found->term);
}

std::optional<ExodusComponent> FindLetters(std::string_view name, StyleTable const& table) {
    for (Term const& term : table.terms) {
        std::string_view const lower = term.letters;
        std::string const upper = UpperCase(term.letters);
        bool const small = name.ends_with(lower);
        if (!small && !name.ends_with(upper)) continue;
        auto found = Before(name, lower.size(), small ? "x" : "X", term.term);
        // The x of grad_yx is half of a term.
        bool const half = found && lower.size() == 1 && found->form.size() == 1 &&
                          std::string_view(small ? "xyz" : "XYZ").find(found->stem.back()) !=
                              std::string_view::npos;
        return half ? std::nullopt : found;
    }
    return std::nullopt;
}

// What the variable map says of the label of a whole field.
std::optional<ExodusKnown> FindInMap(std::string const& label) {
    auto const* const whole = FindVariableRow([&](KOVSrvVariableMapEntry const& row) {
        return row.component == zdm_Component_NONE && label == row.label;
    });
    if (whole == nullptr) return std::nullopt;
    ExodusKnown known{label, ExodusRank::Scalar, whole->fieldName};
    std::string const vector = label + "1", tensor = label + "11";
    ForEachVariableRow([&](KOVSrvVariableMapEntry const& row) {
        if (row.component == zdm_Component_NONE || known.field != row.fieldName) return;
        if (tensor == row.label) known.rank = ExodusRank::Tensor;
        if (vector == row.label && known.rank == ExodusRank::Scalar) {
            known.rank = ExodusRank::Vector;
        }
    });
    return known;
}

}  // namespace

ExodusRank RankOf(ExodusStyle style) { return TableOf(style).rank; }

std::span<char const* const> ComponentTails(ExodusRank rank) {
    switch (rank) {
        case ExodusRank::Tensor:
            return kTensorTails;
        case ExodusRank::Vector:
            return kVectorTails;
        case ExodusRank::Scalar:
            break;
    }
    return kScalarTails;
}

std::optional<ExodusComponent> FindExodusComponent(std::string_view name, ExodusStyle style) {
    StyleTable const& table = TableOf(style);
    if (style == ExodusStyle::Scalar) return ExodusComponent{name, "", 0};
    return table.digits ? FindDigits(name, table) : FindLetters(name, table);
}

std::optional<ExodusPoint> FindExodusPoint(std::string_view name, bool marked) {
    std::string_view const digits = DigitsAtEnd(name);
    ExodusPoint point;
    auto const [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), point.number);
    if (digits.empty() || error != std::errc() || point.number < 1) return std::nullopt;
    std::string_view rest = name.substr(0, name.size() - digits.size());
    std::size_t marker = 0;
    if (marked) {
        if (!rest.empty() && IsSeparator(rest.back())) rest.remove_suffix(1);
        std::string const lower = LowerCase(rest);
        for (char const* text : kPointMarkers) {
            if (lower.ends_with(text)) marker = std::strlen(text);
        }
        if (marker == 0) return std::nullopt;
        rest.remove_suffix(marker);
    }
    if (rest.size() < 2 || !IsSeparator(rest.back())) return std::nullopt;
    rest.remove_suffix(1);
    point.rest = rest;
    point.form = LowerCase(name.substr(rest.size(), name.size() - digits.size() - rest.size()));
    return point;
}

std::optional<ExodusKnown> FindExodusKnown(std::string_view stem, bool elements) {
    std::string const lower = LowerCase(stem);
    auto const row = std::find_if(std::begin(kStems), std::end(kStems),
                                  [&](Stem const& entry) { return lower == entry.stem; });
    if (row == std::end(kStems)) return FindInMap(std::string(stem));
    ExodusKnown known{elements ? row->inElements : row->atNodes, row->rank, ""};
    if (auto const mapped = FindInMap(known.label)) known.field = mapped->field;
    return known;
}

bool IsVariableLabel(std::string_view name) {
    return FindVariableRow([&](KOVSrvVariableMapEntry const& row) { return name == row.label; }) !=
           nullptr;
}

}  // namespace kov::tool
