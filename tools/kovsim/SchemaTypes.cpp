#include "SchemaTypes.h"

#include <string_view>

#include "zdm.h"

namespace kov::tool {

SchemaType FindSchemaType(int type) {
#define KOV_SCHEMA_TYPE(fragment, member, name, base, text) \
    if (zdm_CoreFragmentTypeIndex(fragment, member) == type) return {type, #name, text};
#define KOV_SCHEMA_MEMBER(fragment, member, name, kind, text)
#include "KOVSimSchemaTable.inc"
    return {type, "", ""};
}

std::string GridText(SchemaType const& grid) {
    std::string const text = grid.text;
    constexpr std::string_view kOf = "grid type of ";
    if (text.rfind(kOf, 0) == 0) return text.substr(kOf.size());
    std::size_t const colon = text.find(": ");
    return text.rfind("grid type", 0) == 0 && colon != std::string::npos ? text.substr(colon + 2)
                                                                         : text;
}

}  // namespace kov::tool
