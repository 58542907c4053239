// ExodusEndings: the tables behind ExodusNames: what the ends of names say of components and of
// integration points, and which stems stand for variables that users know.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kov::tool {

enum class ExodusRank { Scalar, Vector, Tensor };

/// Ways to spell components. Of a tensor in diagonal letters the normal terms have one letter: Sx,
/// Sy, Sz, Sxy, Syz, Sxz.
enum class ExodusStyle {
    TensorLetters,
    TensorDigits,
    TensorDiagonal,
    VectorLetters,
    VectorDigits,
    Scalar,
};

constexpr std::array<ExodusStyle, 6> kExodusStyles = {
    ExodusStyle::TensorLetters, ExodusStyle::TensorDigits, ExodusStyle::TensorDiagonal,
    ExodusStyle::VectorLetters, ExodusStyle::VectorDigits, ExodusStyle::Scalar};

ExodusRank RankOf(ExodusStyle style);

/// What is put behind a label for each component of a rank: 1, 2, 3, or 11, 22, 33, 12, 13, 23, or
/// nothing.
std::span<char const* const> ComponentTails(ExodusRank rank);

constexpr int kOtherTerm = -1;

struct ExodusComponent {
    std::string_view stem;
    std::string form;  ///< how it is spelled; names of one field are spelled alike
    int term = 0;      ///< index of a tail; kOtherTerm for a lower term or a number that is none
};
/// None if the name does not end in this style. A scalar is a stem with nothing behind it.
std::optional<ExodusComponent> FindExodusComponent(std::string_view name, ExodusStyle style);

struct ExodusPoint {
    std::string_view rest;  ///< the name without its end
    std::string form;
    int number = 0;  ///< from 1
};
/// `_k` or `-k` at the end of a name, `marked`: with letters in front of the number that say what
/// it counts, such as `_ip_k`.
std::optional<ExodusPoint> FindExodusPoint(std::string_view name, bool marked);

struct ExodusKnown {
    std::string label;
    ExodusRank rank = ExodusRank::Scalar;
    std::string field;  ///< of the variable map; empty where it does not have the label
};
/// The variable that a stem stands for: by the table of stems, in any case of letters, or as a
/// label of the variable map to the letter.
std::optional<ExodusKnown> FindExodusKnown(std::string_view stem, bool elements);

/// True for a label of the variable map, of a field as a whole or of a component.
bool IsVariableLabel(std::string_view name);

}  // namespace kov::tool
