// FieldForm: what the components of a field make together, in the order in which viewers want them.
#pragma once

#include <string>
#include <vector>

#include "DocumentResults.h"

namespace kov::tool {

struct FieldForm {
    enum class Kind { Scalar, Vector, SymmetricTensor, Other };
    struct Column {
        int place = -1;     ///< among the components of the field; -1 for one that it lacks
        std::string label;  ///< such as "U1"
    };

    Kind kind = Kind::Other;
    /// One for a scalar. 1, 2, 3 for a vector; 11, 22, 33, 12, 23, 13 for a symmetric tensor, both
    /// with all of them as soon as the field has any. All that there are in their order for others.
    std::vector<Column> columns;
};

/// A field is what its algebraic type says, as far as its components agree; one without an
/// algebraic type what its components fit.
FieldForm FormOf(FieldContent const& field);

}  // namespace kov::tool
