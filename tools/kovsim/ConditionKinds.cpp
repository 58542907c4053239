#include "ConditionKinds.h"

#include <algorithm>
#include <charconv>

#include "Names.h"

namespace kov::tool {
namespace {

using Number = ConditionKind::Number;

constexpr ConditionKind kKinds[] = {
    {"TEMPERATURE", false, 7, Number::None, "TEMPERATURE"},
    {"FIELD", false, 7, Number::Variable, "FIELD"},
    {"VELOCITY", false, 1, Number::Dof, "VELOCITY"},
    {"STRESS", true, 6, Number::None, "STRESS"},
    {"PLASTIC STRAIN", true, 6, Number::None, "STRAIN"},
    {"HARDENING", true, 7, Number::None, "HARDENING"},
};
constexpr char const* kPassed[] = {
    "ACOUSTIC STATIC PRESSURE",
    "CONCENTRATION",
    "CONTACT",
    "ENRICHMENT",
    "FLUID PRESSURE",
    "MASS FLOW RATE",
    "NODE REF COORDINATE",
    "PORE PRESSURE",
    "PRESSURE STRESS",
    "RATIO",
    "REF COORDINATE",
    "RELATIVE DENSITY",
    "ROTATING VELOCITY",
    "SATURATION",
    "SOLUTION",
    "SPECIFIC ENERGY",
};
constexpr std::string_view kInitial = "INITIAL ";

// Types are shown with blanks, which mean nothing.
std::string Word(std::string_view type) {
    std::string word = LowerCase(type);
    std::erase(word, ' ');
    return word;
}

}  // namespace

std::span<ConditionKind const> ConditionKinds() { return kKinds; }

ConditionKind const* FindConditionKind(std::string_view type) {
    std::string const wanted = Word(type);
    auto const found =
        std::find_if(std::begin(kKinds), std::end(kKinds),
                     [&](ConditionKind const& kind) { return Word(kind.type) == wanted; });
    return found == std::end(kKinds) ? nullptr : found;
}

bool IsConditionPassed(std::string_view type) {
    std::string const wanted = Word(type);
    return std::any_of(std::begin(kPassed), std::end(kPassed),
                       [&](char const* passed) { return Word(passed) == wanted; });
}

std::string ConditionText(ConditionKind const& kind, int number) {
    return kind.number == Number::None ? kind.type
                                       : std::string(kind.type) + " " + std::to_string(number);
}

std::string ConditionName(ConditionKind const& kind, int number) {
    return std::string(kInitial) + ConditionText(kind, number);
}

NamedCondition ReadConditionName(std::string_view name) {
    if (name.substr(0, kInitial.size()) != kInitial) return {};
    name.remove_prefix(kInitial.size());
    for (ConditionKind const& kind : kKinds) {
        std::string_view const type = kind.type;
        if (kind.number == Number::None) {
            if (name == type) return {&kind, 0};
            continue;
        }
        if (name.size() < type.size() + 2 || name.substr(0, type.size()) != type ||
            name[type.size()] != ' ') {
            continue;
        }
        int number = 0;
        char const* const end = name.data() + name.size();
        auto const [at, error] = std::from_chars(name.data() + type.size() + 1, end, number);
        if (error == std::errc() && at == end) return {&kind, number};
    }
    return {};
}

}  // namespace kov::tool
