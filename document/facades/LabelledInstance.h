// LabelledInstance: one instance with its labels as they are stored, a distribution with one drawer
// that holds the label of each of its ordinals. It is opened when it is first asked, and keeps what
// it has read: labels by pages around those that were asked, so that further look-ups cost a few
// array accesses; for the way back from label to ordinal an index of all its labels. One thread at
// a time. For the labeler.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "KOVBasVector.h"
#include "KOVSimCSet.h"
#include "KOVSimDistribution.h"
#include "KOVString.h"
#include "document/facades/LabelOrder.h"

namespace kov::facades {

class LabelledInstance {
  public:
    LabelledInstance(KOVString name, KOVSimDistributionID const& distribution)
        : m_name(std::move(name)), m_distributionID(distribution) {}

    KOVString const& Name() const { return m_name; }
    /// Which ordinals it has; ascending.
    KOVSimCSet const& Ordinals();
    /// All labels, ascending, and their ordinals.
    void Read(KOVBasVector<int>& labels, KOVBasVector<int>& ordinals);
    /// The label of an ordinal; -1 if it does not have that.
    int LabelAt(int ordinal);
    /// The ordinal of a label; -1 if it does not have that.
    int OrdinalAt(int label);

  private:
    void Open();
    int LocationOf(int ordinal) const;
    void ReadStored(int const* ordinals, int count, int* labels) const;
    void ReadAll(KOVBasVector<int>& labels, KOVBasVector<int>& ordinals) const;

    KOVString m_name;
    KOVSimDistributionID m_distributionID;
    bool m_open = false;
    KOVSimDistribution m_distribution;
    KOVSimDrawerID m_drawer;  // null for an instance without labels
    KOVSimCSet m_ordinals;
    int m_first = -1;  // the first ordinal, where they are contiguous; it saves a way to memory
    int m_size = 0;

    int m_lookups = 0;
    std::vector<std::unique_ptr<int[]>> m_pages;  // labels by location in the set of ordinals
    std::optional<LabelIndex> m_index;
};

}  // namespace kov::facades
