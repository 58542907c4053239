// DistributionCopy: the drawers of a distribution written into a distribution of another document,
// cut to the members that go there, in blocks, so that drawers of any size pass through bounded
// memory.
//
// Each drawer gives one of the same kind: chunks, growing dimension, order of creation. A drawer
// without a member that goes into the copy gives none. Entries that name members of a renumbered
// collection get the new numbers, and -1 where the member does not go into the copy; entries below
// 0 name nothing and stay.
#pragma once

#include <vector>

#include "KOVSimDistribution.h"
#include "KOVSimTransfer.h"
#include "Renumbering.h"

namespace kov::tool {

using DrawerDescriptions =
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;

class DistributionCopy {
  public:
    /// Entries that pass through memory at once, unless a caller wants fewer.
    static constexpr int kBlock = 1'000'000;

    /// `dimensions`: one renumbering for each; `entries`: that of the members that the entries
    /// name, an identity where they name none. All must outlive the object.
    DistributionCopy(KOVSimDistribution const& from, KOVSimDistribution const& to,
                     std::vector<Renumbering const*> const& dimensions, Renumbering const& entries,
                     int block = kBlock);

    /// Copies one drawer, and gives that in the copy; null if nothing of it goes there. In a
    /// transaction.
    KOVSimDrawerID Copy(KOVSimPersistentDrawerDesc const& drawer);
    /// The same for a drawer of which nothing goes there: gives one without entries.
    KOVSimDrawerID MakeEmpty(KOVSimPersistentDrawerDesc const& drawer);

  private:
    KOVSimDrawerID Make(KOVSimPersistentDrawerDesc const& drawer,
                        std::vector<KOVSimCSet> const& mapped);
    void CopyBlock(KOVSimDrawerID const& drawer, KOVSimDrawerID const& made,
                   std::vector<KOVSimCSet> const& view);

    KOVSimDistribution m_from;
    KOVSimDistribution m_to;
    std::vector<Renumbering const*> m_dimensions;
    std::vector<KOVSimCollection> m_sources;
    std::vector<KOVSimCollection> m_targets;
    Renumbering const& m_entries;
    int m_block;
    std::vector<char> m_buffer;
};

/// The sets of a drawer as they go into the copy, under the old numbers; no sets if one of them
/// loses all its members.
std::vector<KOVSimCSet> PartOfDrawer(KOVSimDrawerDescription const& drawer,
                                     std::vector<Renumbering const*> const& dimensions);

}  // namespace kov::tool
