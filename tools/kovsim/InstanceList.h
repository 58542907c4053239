// InstanceList: the instances of a document as its inspectors count and show them: those of the
// model, and those that labels alone name. What stands under labels without an instance has the
// empty name.
#pragma once

#include <string>
#include <vector>

#include "MeshLabels.h"

namespace kov::tool {

struct InstanceEntry {
    std::string name;
    std::string part;  ///< empty if it is not known
    int nodes = 0;
    int elements = 0;
};

/// By ascending name, each name once. `nodes`, `elements`: the labels of the document.
std::vector<InstanceEntry> ListInstances(KOVObjDocument const& document, MeshLabels const& nodes,
                                         MeshLabels const& elements);

/// "8 nodes, 1 element, part Plate".
std::string InstanceText(InstanceEntry const& instance);

}  // namespace kov::tool
