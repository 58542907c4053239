// ResultVariables: which fields of a document hold a variable of a file of results, by the map of
// variables, and as which components.
//
// The components of one variable may belong to several fields: displacements and rotations do. What
// the map does not know becomes a field under its own name: as a vector or tensor, where all its
// components are named so, and else as scalars.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ResultSource.h"
#include "zdm_AlgebraicTypes.h"

namespace kov::tool {

/// What a document cannot take from a file of results. The text has no place: whoever knows the
/// file puts it in front.
class ResultFault : public Failure {
  public:
    using Failure::Failure;
};

struct ResultTarget {
    std::string name;         ///< of the field type, such as U_D
    bool known = false;       ///< the map has the variable
    bool knownThere = false;  ///< it has the variable on this grid
    int grid = -1;            ///< type index
    int algebraicType = zdm_Algebraic_SCALAR;
    std::vector<int> symbols;          ///< component symbols, ascending
    std::vector<std::size_t> columns;  ///< of a block, one for each symbol
};

/// The type index of the grid of values at a place.
int GridOf(ResultPlace place);

/// Where the columns of a field go: each to one target. Throws ResultFault if two columns are the
/// same component.
std::vector<ResultTarget> TargetsOf(ResultField const& field);

/// The nearest labels that the map has, for hints.
std::vector<std::string> NearestVariables(std::string_view label);

}  // namespace kov::tool
