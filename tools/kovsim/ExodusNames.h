// ExodusNames: an Exodus II file has scalars only, and tells by their names which of them belong
// together: disp_x, disp_y, disp_z; SXX ... SXZ; stress_xx_1 ... stress_xx_8. There is no rule but
// custom. What custom leaves open stays as it is in the file: a name that is taken for too little
// is a field more, a name that is taken for too much is a wrong result.
//
// The tables of endings and of stems that are known stand in the source.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kov::tool {

/// The variables of an Exodus II file at nodes, or in elements, by name.
struct ExodusVariables {
    bool elements = false;
    std::vector<std::string> names;
    /// For each element block and variable whether the block has it; one row for nodes.
    std::vector<std::vector<bool>> present;
    std::vector<std::size_t> items;     ///< in each block
    std::vector<std::string> blockIds;  ///< of each block, for labels; none for nodes
};

/// One field: variables of the file in the order of points and components.
struct ExodusGroup {
    std::string label;
    std::vector<std::string> components;
    bool numbered = false;  ///< by integration points
    /// Indices of variables, (points, components); one point where it is not numbered. A block has
    /// all of the first points up to some number.
    std::vector<std::vector<int>> variables;
    std::vector<int> blocks;  ///< rows of `present` that have it, ascending
};

struct ExodusGroups {
    /// In the order of their first variable. Labels are distinct, and so are the fields of the
    /// variable map that they lead to.
    std::vector<ExodusGroup> groups;
    std::vector<std::string> notes;
};

/// Names must be distinct and not empty.
ExodusGroups GroupExodusVariables(ExodusVariables const& variables);

}  // namespace kov::tool
