// ConditionKinds: the initial conditions that decks give and documents hold. Data only: one reader
// of decks, one writer and one reader of documents serve all kinds, and a new kind is a row here.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kov::tool {

// What an initial condition has in a document, in the fields of its record. Persisted; do not
// change the numbers.
inline constexpr int kConditionName = 0;    ///< string: "INITIAL", the kind, perhaps a number
inline constexpr int kConditionValues = 1;  ///< int: how many values a node or element has

struct ConditionKind {
    /// What tells several conditions of the kind apart.
    enum class Number : unsigned char { None, Variable, Dof };

    char const* type;  ///< as TYPE= has it, upper case
    bool ofElements;   ///< else of nodes
    int most;          ///< values on a line
    Number number;
    char const* word;  ///< what a column of values is called in a table field
};

inline constexpr int kMostConditionValues = 7;

std::span<ConditionKind const> ConditionKinds();
/// The kind whose type is that one, whatever its case and blanks; null if there is none.
ConditionKind const* FindConditionKind(std::string_view type);
/// True for a type that decks have and that is not kept.
bool IsConditionPassed(std::string_view type);

/// "VELOCITY 1", "STRESS": a kind with its number, if it has any.
std::string ConditionText(ConditionKind const& kind, int number);
/// The same in a document: "INITIAL VELOCITY 1".
std::string ConditionName(ConditionKind const& kind, int number);

struct NamedCondition {
    ConditionKind const* kind = nullptr;
    int number = 0;
};
/// What a name in a document means; a null kind for none.
NamedCondition ReadConditionName(std::string_view name);

}  // namespace kov::tool
