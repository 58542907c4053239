// MaterialContent: the materials of a document with their behaviours, and the tables of these, read
// in blocks of rows. Documents may come from any writer: what is not as expected is left out, or
// answered by a DocumentFault.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVSimPosition.h"
#include "MaterialBehaviors.h"

namespace kov::tool {

struct BehaviorContent {
    std::string name;
    std::string type;  ///< empty for none
    KOVSimPosition position;
    BehaviorKind const* kind = nullptr;    ///< null if the name is not known
    BehaviorTable const* table = nullptr;  ///< null if there is none, or the type is not known
    std::vector<std::pair<std::string, double>> numbers;  ///< those of its own, by name
    int rows = 0;
    bool hasTemperature = false;
    double lowest = 0;  ///< temperature
    double highest = 0;
    int fieldVariables = 0;

    /// The names of the columns of a row.
    std::vector<std::string> Columns() const;
};

struct MaterialContent {
    std::string name;
    KOVSimPosition position;
    std::vector<BehaviorContent> behaviors;  ///< by ascending names
};

/// The names of all materials, ascending.
std::vector<std::string> MaterialNames(KOVObjDocument const& document);
/// How many behaviours all materials have together.
int CountBehaviors(KOVObjDocument const& document);
/// The material of that name.
MaterialContent LookAtMaterial(KOVObjDocument const& document, std::string const& name);

/// Shows the rows of a behaviour one by one, each with its Columns().
void ForEachRow(BehaviorContent const& behavior,
                std::function<void(std::vector<double> const&)> const& show);

}  // namespace kov::tool
