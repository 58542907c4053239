// ResultLabels: from the user labels of one instance to ordinals, for files that name every row by
// its label.
//
// Kept as runs in which label and ordinal ascend together, so that the labels of a mesh in its
// usual order take next to no memory, and rows in the order of a run are found without a search.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVObjLabeler.h"

namespace kov::tool {

/// The instance whose labels a file of results names: the one asked for, or else the only one.
/// Throws DocumentFault if there is no such instance, none at all, or several to choose from.
std::string ResultInstance(KOVObjDocument const& document,
                           std::optional<std::string> const& instance);

class ResultLabels {
  public:
    /// Reads the labels block by block. An instance that has none of this type has no rows.
    ResultLabels(KOVObjDocument const& document, KOVObjLabelerType type,
                 std::string const& instance);

    /// The ordinal of a label; -1 if there is none.
    int Find(int label) {
        if (m_at < m_runs.size() && m_runs[m_at].Holds(label)) return m_runs[m_at].Ordinal(label);
        return Search(label);
    }
    /// How many members the collection has.
    int Space() const { return m_space; }

  private:
    struct Run {
        int label;
        int ordinal;
        int count;

        bool Holds(int of) const { return of >= label && of - label < count; }
        int Ordinal(int of) const { return ordinal + (of - label); }
    };

    int Search(int label);

    std::vector<Run> m_runs;  ///< ascending by label
    std::size_t m_at = 0;     ///< where the last label was found
    int m_space = 0;
};

}  // namespace kov::tool
