// ByIdentity: the order of objects as keys of standard containers.
#pragma once

#include "KOVSimDynamicID.h"

namespace kov::tool {

/// Orders identities of one document.
struct ByIdentity {
    bool operator()(KOVSimDynamicID const& a, KOVSimDynamicID const& b) const {
        return a.Compare(b) < 0;
    }
};

}  // namespace kov::tool
