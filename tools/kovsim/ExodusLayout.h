// ExodusLayout: what stands where in an Exodus II file: its times, its element blocks, its
// variables at nodes and in elements with the places of their values, and what it has beside them.
//
// The format has grown since 1992, and its libraries write what they are told. Understood are
// values by variable (vals_nod_var3, vals_elem_var3eb1) and, older, of all variables together
// (vals_nod_var, vals_elem_var); and values with a dimension for components behind the items.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "ExodusNames.h"
#include "NetcdfFile.h"

namespace kov::tool {

/// Where the values of a scalar stand: those of items [0, n) of a frame lie along one dimension.
struct ExodusLane {
    NetcdfFile::Variable variable;
    std::vector<std::size_t> start;  ///< of item 0; entry 0 is the frame
    std::size_t along = 1;           ///< the dimension of the items
    double unwritten = 0.0;
};

/// The variables of one kind, with a lane for each block and variable; the nodes are one block.
struct ExodusSection {
    ExodusVariables variables;
    std::vector<std::vector<std::optional<ExodusLane>>> lanes;
};

struct ExodusBlock {
    long long id = 0;
    std::size_t first = 0;  ///< its first element
    std::size_t count = 0;
};

struct ExodusLayout {
    std::size_t frames = 0;
    std::optional<NetcdfFile::Variable> times;
    std::size_t nodes = 0;
    std::size_t elements = 0;
    std::vector<ExodusBlock> blocks;
    ExodusSection atNodes;
    ExodusSection inElements;
    std::vector<std::string> notes;
};

/// Throws Failure for a file that is not Exodus II or contradicts itself.
ExodusLayout ReadExodusLayout(NetcdfFile const& file);

}  // namespace kov::tool
