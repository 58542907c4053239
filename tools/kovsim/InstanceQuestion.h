// InstanceQuestion: instances and labels as a user asks for them on the command line, with hints
// where they are not there.
#pragma once

#include <string>

#include "KOVObjDocument.h"
#include "KOVObjLabeler.h"
#include "MeshLabels.h"

namespace kov::tool {

/// The name that a word of the command line stands for, quotes taken off. Throws DocumentFault if
/// they are not in pairs.
std::string InstanceName(std::string const& word);

/// The number of that instance in `labels`, which are those of `type`; -1 for an instance that has
/// none of them. Throws DocumentFault, with the nearest names, if the document has no such
/// instance; `withoutLabels` ends the text if there are no labels at all.
int InstanceNumber(KOVObjDocument const& document, MeshLabels const& labels, KOVObjLabelerType type,
                   std::string const& name, char const* withoutLabels = "");

/// The ordinal of the element of that label in that instance. Throws DocumentFault, with what is
/// there, if there is none.
int ElementOrdinal(KOVObjDocument const& document, MeshLabels const& labels,
                   std::string const& instance, int label);

}  // namespace kov::tool
