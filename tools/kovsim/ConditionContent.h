// ConditionContent: the initial conditions of a document, and the values of those that differ from
// node to node or from element to element. Documents may come from any writer: field entries of
// another kind are passed over, and an initial condition that is not as expected is answered by a
// DocumentFault.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ConditionKinds.h"
#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "TableField.h"

namespace kov::tool {

struct ConditionContent {
    ConditionKind const* kind = nullptr;
    int number = 0;
    KOVSimCSet region;  ///< nodes or elements
    std::string set;    ///< its key in the model; empty where it has none
    int columns = 1;    ///< values of each member
    bool uniform = false;
    std::vector<double> values;  ///< of a uniform one
    TableField field;            ///< of any other
};

/// In the order in which they were made.
std::vector<ConditionContent> InitialConditions(KOVObjDocument const& document);
/// How many there are, without a look at their values.
int CountInitialConditions(KOVObjDocument const& document);

/// Shows the values of one that is not uniform in blocks: some of its members, and their values row
/// by row.
void ForConditionRows(
    ConditionContent const& condition,
    std::function<void(KOVSimCSet const&, std::vector<double> const&)> const& show);
/// Least and greatest value of each column, uniform or not; nothing without members.
std::vector<std::pair<double, double>> ConditionRanges(ConditionContent const& condition);

}  // namespace kov::tool
