// KOVSimCMemberMap: pairs the members of two sets of equal size, location by location, and carries
// subsets across. A copyable value of two words.
#pragma once

#include <memory>

#include "KOVExport.h"
#include "KOVSimCSet.h"

class KOV_EXPORT KOVSimCMemberMap {
  public:
    /// The map that maps nothing.
    KOVSimCMemberMap() = default;
    /// A map from `source` to `target`, which must be of equal size.
    static KOVSimCMemberMap Create(KOVSimCSet const& target, KOVSimCSet const& source);

    /// The members of `target` at the locations that the members of `set` have in `source`, in the
    /// order of these locations: an ordered set where that order is not ascending. Members that
    /// `source` does not hold are left out.
    KOVSimCSet Map(KOVSimCSet set) const;

    struct Pairing;

  private:
    std::shared_ptr<Pairing const> m_pairing;
};
