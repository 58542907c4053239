#include "document/base/SourcePath.h"

#include <string_view>

KOVString kov::base::SourcePath(char const* file) {
    std::string_view path = file ? file : "";
    std::size_t const name = path.rfind('/') == std::string_view::npos ? 0 : path.rfind('/') + 1;
    std::size_t const dot = path.rfind('.');
    if (dot != std::string_view::npos && dot > name) path = path.substr(0, dot);
    KOVString result;
    result.BuildFromUTF8(path.data(), static_cast<int>(path.size()));
    return result;
}
