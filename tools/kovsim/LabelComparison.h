// LabelComparison: what the nodes, or the elements, of two documents have in common by instance and
// label. One instance's labels of both documents are in memory at a time.
#pragma once

#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVObjLabeler.h"

namespace kov::tool {

/// How many there are in the first document, in the second, and in both.
struct LabelCounts {
    int inA = 0;
    int inB = 0;
    int common = 0;

    bool Same() const { return inA == common && inB == common; }
};

struct LabelComparison {
    struct Instance {
        std::string name;
        bool isInA = false;
        bool isInB = false;
        LabelCounts counts;
    };

    LabelCounts total;    ///< with those that have no label
    int unlabelledA = 0;  ///< those that have no label cannot be compared
    int unlabelledB = 0;
    std::vector<Instance> instances;  ///< of both, by ascending name

    bool Same() const;
};

/// Throws KOVSimException where labels cannot be read.
LabelComparison CompareLabels(KOVObjDocument const& a, KOVObjDocument const& b,
                              KOVObjLabelerType type);

}  // namespace kov::tool
