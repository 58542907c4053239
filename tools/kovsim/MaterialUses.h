// MaterialUses: which sections are made of a material, alone or in some of their layers.
//
// The layers of all shells are read in blocks, and each section is looked at once, for all
// materials. Documents may come from any writer: what is not as expected names no material.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "ByIdentity.h"
#include "KOVObjDocument.h"

namespace kov::tool {

/// How many sections there are of each material, by the material's identity.
std::map<KOVSimDynamicID, int, ByIdentity> CountMaterialUses(KOVObjDocument const& document);

/// The keys of the sections of one material, ascending.
std::vector<std::string> SectionsOfMaterial(KOVObjDocument const& document,
                                            KOVSimPosition const& material);

}  // namespace kov::tool
