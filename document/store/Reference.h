// References: how links and fields name an object in one 64-bit integer: (parent << 35) | (minor <<
// 3) | category code, where `minor` is taken as 32 unsigned bits. Codes: 0 member, 1 record, 2
// distribution, 3 dataset, 4 collection, 5 set, 6 drawer, 7 function table. Persisted; do not
// change. Objects without owner thus have small references, which SQLite stores short.
#pragma once

#include <cstdint>

#include "KOVSimDynamicID.h"

namespace kov::store {

inline constexpr std::int64_t MaxParent = (std::int64_t{1} << 28) - 1;

inline std::int64_t ToReference(KOVSimDynamicID const& id) {
    std::int64_t const code = id.category == KOVSimCategoryMember ? 0 : id.category;
    return (static_cast<std::int64_t>(id.data.parent) << 35) |
           (static_cast<std::int64_t>(static_cast<std::uint32_t>(id.data.minor)) << 3) | code;
}

inline KOVSimDynamicID FromReference(std::int64_t reference, KOVSimContextID context,
                                     KOVSimTypeID type) {
    int const code = static_cast<int>(reference & 7);
    KOVSimDynamicDataID data;
    data.parent = static_cast<KOVSimIDMinor>(reference >> 35);
    data.minor = static_cast<KOVSimIDMinor>(static_cast<std::uint32_t>(reference >> 3));
    return {code == 0 ? static_cast<int>(KOVSimCategoryMember) : code, context, data, type, 0};
}

}  // namespace kov::store
