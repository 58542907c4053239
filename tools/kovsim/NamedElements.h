// NamedElements: the elements that a user names, by an element set or by a surface.
#pragma once

#include <string>

#include "KOVObjDocument.h"
#include "KOVSimCSet.h"

namespace kov::tool {

/// The elements of the element set of that name, or else of the surface; ascending, on the mesh's
/// element collection. Throws DocumentFault, with the nearest names, if there is neither, and if
/// there is no element in it.
KOVSimCSet ElementsNamed(KOVObjDocument const& document, std::string const& name);

}  // namespace kov::tool
