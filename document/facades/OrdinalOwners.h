// OrdinalOwners: from an ordinal of the flat mesh to the instance that has it, also where many
// instances share a stretch of ordinals. The ordinals are cut into pages, each of which is resolved
// when it is first asked: into runs of one owner, or a table where the owners alternate. For the
// labeler.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "document/sets/IndexSet.h"

namespace kov::facades {

class OrdinalOwners {
  public:
    /// The ordinals of each owner, 0, 1, ...; none may be null.
    explicit OrdinalOwners(std::vector<sets::IndexSetPtr> sets);
    /// The owner of an ordinal, the first of them if several have it; -1 if none does.
    int Find(int ordinal);

  private:
    static constexpr int PageBits = 16;
    static constexpr int PageSize = 1 << PageBits;

    struct Run {
        int first;  // within the page; it ends where the next one begins
        int owner;
    };
    struct Page {
        std::vector<Run> runs;    // empty if there is a table
        std::vector<int> owners;  // of each ordinal of the page
    };
    std::unique_ptr<Page> Resolve(int number) const;

    std::vector<sets::IndexSetPtr> m_sets;
    std::vector<std::unique_ptr<Page>> m_pages;
};

}  // namespace kov::facades
