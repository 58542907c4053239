// MeshLabels: which instance and label the nodes or the elements of a mesh have, for many of them
// at a time and in bounded memory.
//
// An instance's labels are a distribution over its ordinals, and are read for the ordinals asked
// for, in one transfer. Documents may come from any writer: an ordinal may have no label, and one
// that several instances name counts for the first of them by name.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVObjLabeler.h"
#include "KOVSimCSet.h"
#include "KOVSimCollection.h"
#include "KOVSimDistribution.h"
#include "LabelRanges.h"

namespace kov::tool {

/// Instance by number, -1 for none, and the label in it.
struct Labelled {
    int instance = -1;
    int label = -1;
};

class MeshLabels {
  public:
    /// Labels to be sorted in memory; of larger sets they are marked in a bit map of 32 MiB, window
    /// after window.
    static constexpr int kSorted = 1'000'000;

    /// Throws Failure if the labels are of another collection than the mesh's.
    MeshLabels(KOVObjDocument const& document, KOVObjLabelerType type);

    /// The names of the instances, ascending; they are numbered in this order.
    std::vector<std::string> const& Names() const { return m_names; }
    /// The number of the instance of exactly that name; -1 if there is none.
    int Find(std::string_view name) const;
    /// The ordinals of an instance.
    KOVSimCSet const& Ordinals(int instance) const { return At(instance).ordinals; }

    /// Calls `f` for each instance that has members of `set`, with its number and these members,
    /// and last with -1 and the members that have no label.
    void ForInstances(KOVSimCSet const& set,
                      std::function<void(int instance, KOVSimCSet const& members)> const& f) const;
    /// The labels of `members`, which are ordinals of the instance, folded into ascending ranges;
    /// with the instance -1 the ordinals themselves.
    void ForRanges(int instance, KOVSimCSet const& members,
                   std::function<void(LabelRange const&)> const& f, int sorted = kSorted) const;
    /// Instance and label of each of `ordinals`, which ascend strictly.
    std::vector<Labelled> Look(std::vector<int> const& ordinals) const;

  private:
    struct Instance {
        KOVSimDistribution distribution;
        KOVSimDrawerID drawer;
        KOVSimCSet ordinals;
        KOVSimCSet own;  ///< without those of instances before it
    };

    Instance const& At(int instance) const {
        return m_instances[static_cast<std::size_t>(instance)];
    }
    void SettleOverlaps();
    void Read(int instance, KOVSimCSet const& members, int* labels) const;
    void FoldMarked(int instance, KOVSimCSet const& members,
                    std::function<void(LabelRange const&)> const& f) const;
    template <class F>
    void ForLabelBlocks(int instance, KOVSimCSet const& members, F&& f) const;

    KOVSimCollection m_collection;
    std::vector<std::string> m_names;
    std::vector<Instance> m_instances;
};

}  // namespace kov::tool
