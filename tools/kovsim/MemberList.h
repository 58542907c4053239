// MemberList: the members of a set of nodes or elements as a user knows them, for output.
//
//     Part-1: 1-20, 25, 30-60 step 2
//     "": 7
//     (no label): 11-12
//
// A line for each instance, with its labels ascending; a long list goes on in lines that begin with
// the instance again, so that each line can be read alone. Members without a label stand last, by
// their ordinals.
#pragma once

#include <string>

#include "Json.h"
#include "MeshLabels.h"
#include "TextOut.h"

namespace kov::tool {

/// The instance with that number, as output shows it.
std::string InstanceText(MeshLabels const& labels, int instance);

/// Lines that begin with `indent`.
void PrintMembers(TextOut& out, std::string const& indent, MeshLabels const& labels,
                  KOVSimCSet const& set);

/// An array of {"instance", "ranges"}, with [first, last, step] for each range; "instance" is null
/// for members without a label. What is written is printed on the way.
void PrintMembers(TextOut& out, Json& json, MeshLabels const& labels, KOVSimCSet const& set);

/// The first ranges of labels of some members of an instance, on part of a line: "1-20, 25, ...".
std::string FirstLabels(MeshLabels const& labels, int instance, KOVSimCSet const& members);
/// The same of a set, instance by instance: "Part-1: 1-20, 25; \"\": 7".
std::string FirstMembers(MeshLabels const& labels, KOVSimCSet const& set);

}  // namespace kov::tool
