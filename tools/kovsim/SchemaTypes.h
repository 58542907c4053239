// SchemaTypes: the types of the schema as users read of them.
#pragma once

#include <string>

namespace kov::tool {

struct SchemaType {
    int type = -1;
    char const* name = "";  ///< such as "Grid_Node"; empty for a number that the schema lacks
    char const* text = "";  ///< what it is, in a few words
};

SchemaType FindSchemaType(int type);

/// What a grid is laid out over, such as "nodes": its text without the words that all such texts
/// begin with.
std::string GridText(SchemaType const& grid);

}  // namespace kov::tool
