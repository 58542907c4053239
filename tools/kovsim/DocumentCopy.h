// DocumentCopy: the objects of one document made again in a new one, with some collections cut to
// the members that are wanted there.
//
// The copy follows the links from the focus, whatever stands under them, so that it needs to know
// little of what a model is. Objects of the new document's skeleton stand for their counterparts;
// everything else is made. Sets, datasets and distributions over a cut collection are cut alike and
// renumbered. What had something in a cut collection and keeps nothing of it is lost: a set, a
// dataset, a distribution, a drawer, and those records that mean nothing without it (a region, an
// instance, its orientations, labels, a field and so on; Falls() in DocumentCopyFate.cpp has the
// list). A table field with defaults has a value for every element, and stays. Links to lost
// objects are left out, and the collections in which lost records are members close up.
//
// Objects that no link leads to are not copied; of associations those that the schema names are.
// Records of mappers, and the degrees of freedom of a mesh, tell about one mesh as a whole and are
// left out.
//
// Memory: a few words for each object; two bits at most for each member of a cut collection; a
// block of numbers. Both documents must stay open. In a transaction of the caller's on the new one.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ByIdentity.h"
#include "DistributionCopy.h"
#include "KOVObjDocument.h"
#include "KOVSimDSet.h"
#include "Renumbering.h"

namespace kov::tool {

class DocumentCopy {
  public:
    /// The members of collections up to this size are looked at one by one; larger ones are arrays
    /// of places, and hold a record only where a link leads to it.
    static constexpr int kMostRecords = 1'000'000;

    /// `block`: entries of distributions that pass through memory at once.
    DocumentCopy(KOVObjDocument const& from, KOVObjDocument const& to,
                 int block = DistributionCopy::kBlock)
        : m_from(from), m_to(to), m_block(block) {}

    /// Cuts a collection to the members of `kept`. Before Run().
    void Keep(KOVSimCollectionID const& collection, KOVSimCSet const& kept);
    /// Copies everything.
    void Run();
    /// Called after each distribution, with the bytes of bulk numbers that were copied so far.
    void SetProgress(std::function<void(double)> progress) { m_progress = std::move(progress); }

    /// How the collection goes into the copy.
    Renumbering const& RenumberingOf(KOVSimCollectionID const& collection);

  private:
    /// What becomes of an object: it has nothing to do with the cut, keeps something, or has lost
    /// everything.
    enum class Fate { Untouched, Kept, Lost };
    /// What the type of an object says: copied as it is; lost with the parts of the mesh that it
    /// stands for; never copied.
    enum class Kind { Plain, Falls, LeftOut };

    Fate FateOf(KOVSimPosition const& source);
    Fate FateOfSet(KOVSimCSet const& set);
    Fate FateOfDataset(KOVSimDSet const& dset);
    Fate FateOfDistribution(KOVSimDistribution const& distribution);
    Fate FateOfDrawer(KOVSimPosition const& source);
    Fate FateOfOrientation(KOVSimPosition const& source);
    Fate FateOfRecord(KOVSimPosition const& source);
    Kind KindOf(KOVSimPosition const& source);
    /// True for the values of a table field whose defaults hold for all other elements.
    bool StandsBesideDefaults(KOVSimDistribution const& distribution) const;

    void Adopt(KOVSimPosition const& source, KOVSimPosition const& target);
    void AdoptBulk(KOVSimPosition const& source, KOVSimPosition const& target);
    void Pair(KOVSimPosition const& source, KOVSimPosition const& target);
    KOVSimPosition Known(KOVSimPosition const& source) const;

    KOVSimPosition Translate(KOVSimPosition const& source,
                             KOVSimPosition const& present = KOVSimPosition());
    KOVSimPosition Make(KOVSimPosition const& source);
    KOVSimPosition MakeCollection(KOVSimPosition const& source);
    KOVSimPosition MakeSet(KOVSimPosition const& source);
    KOVSimPosition MakeDataset(KOVSimPosition const& source);
    KOVSimPosition MakeDistribution(KOVSimPosition const& source);
    KOVSimPosition MakeTable(KOVSimPosition const& source);
    KOVSimPosition MakeMember(KOVSimPosition const& source);
    bool SameSymbols(KOVSimPosition const& source, KOVSimPosition const& target) const;
    void FillCollection(KOVSimPosition const& source, KOVSimPosition const& target);
    void CopyDrawers(KOVSimDistribution const& from, KOVSimDistribution const& to);
    bool CopyWholeDrawers(KOVSimDistribution const& from, KOVSimDistribution const& to,
                          DrawerDescriptions const& drawers);
    void CopyContent(KOVSimPosition const& source, KOVSimPosition const& target);
    void CopyLinks(KOVSimPosition const& source, KOVSimPosition const& target, int member);

    KOVObjDocument m_from;
    KOVObjDocument m_to;
    int m_block;
    std::function<void(double)> m_progress;
    double m_bytes = 0;
    std::map<int, std::unique_ptr<Renumbering>> m_renumberings;  ///< by number of the collection
    std::set<int> m_numbering;              ///< collections whose renumbering is being found out
    std::unordered_map<int, Kind> m_kinds;  ///< by type
    std::map<KOVSimDynamicID, Fate, ByIdentity> m_fates;
    std::map<KOVSimDynamicID, KOVSimDynamicID, ByIdentity> m_targets;
    std::set<KOVSimDynamicID, ByIdentity> m_taken;  ///< skeleton objects that stand for one
    std::deque<std::pair<KOVSimDynamicID, KOVSimDynamicID>> m_queue;  ///< content to be copied
    std::vector<std::pair<KOVSimPosition, KOVSimPosition>> m_skeletonBulk;
    std::vector<std::pair<KOVSimDSetID, KOVSimDistributionID>> m_relations;
};

/// Copies the name and the fields of an object.
void CopyFields(KOVSimPosition const& source, KOVSimPosition const& target);

}  // namespace kov::tool
