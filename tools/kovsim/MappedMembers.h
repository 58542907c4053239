// MappedMembers: the members of a set for output, as instance and label; those of an ordered set in
// their sequence, in which each stretch of ascending labels of one instance is a line.
//
//     Part-1: 7-9
//     Part-1: 3
//     Part-2: 1, 5-6
#pragma once

#include <string>

#include "Json.h"
#include "MeshLabels.h"
#include "TextOut.h"

namespace kov::tool {

/// Lines that begin with `indent`. An ascending set is shown by PrintMembers.
void PrintSequence(TextOut& out, std::string const& indent, MeshLabels const& labels,
                   KOVSimCSet const& set);
/// An array of {"instance", "ranges"} in the same sequence.
void PrintSequence(TextOut& out, Json& json, MeshLabels const& labels, KOVSimCSet const& set);

/// The members themselves in their sequence, folded into ranges: a line, or an array of [first,
/// last, step].
void PrintOrdinals(TextOut& out, std::string const& head, KOVSimCSet const& set);
void PrintOrdinals(TextOut& out, Json& json, KOVSimCSet const& set);

}  // namespace kov::tool
