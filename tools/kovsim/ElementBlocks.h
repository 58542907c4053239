// ElementBlocks: which keyword of a deck gave which elements, for findings about elements that no
// line names any more.
#pragma once

#include <string>
#include <vector>

#include "ElementTypes.h"
#include "Scope.h"
#include "SectionTable.h"

namespace kov::tool {

/// Marks on the elements of a mesh, one bit each.
class ElementMarks {
  public:
    explicit ElementMarks(int elements)
        : m_words((static_cast<std::size_t>(elements) + 63) / 64, 0) {}

    /// The first member of a run that is marked; -1 if none is.
    int FirstMarked(int first, int count, int stride) const;
    void Mark(int first, int count, int stride);
    /// Marks a run; the number of its members that were not marked before.
    int Take(int first, int count, int stride);
    /// The elements of [first, end) that are not marked; the first of them in `unmarked`.
    int Unmarked(int first, int end, int& unmarked) const;

  private:
    bool IsMarked(int element) const {
        auto const at = static_cast<std::size_t>(element);
        return (m_words[at / 64] >> (at % 64) & 1U) != 0;
    }

    std::vector<std::uint64_t> m_words;
};

/// Elements of one keyword that are in no section.
struct Sectionless {
    std::string path;  ///< of the file with the keyword
    int line = 0;
    std::string type;
    long count = 0;  ///< over all instances of a part
    int label = 0;   ///< of the first
    std::string instance;
};

class ElementBlocks {
  public:
    /// The elements from `first` on are those of the keyword at `at`.
    void Begin(int first, ElementType const& type, DeckLine const& at);

    /// Elements that one keyword gave.
    struct Range {
        int first = 0;
        int end = 0;
        ElementType const* type = nullptr;
    };
    /// Those that `element` is one of. `elements`: of the whole mesh.
    Range RangeOf(int element, int elements) const;

    /// The blocks with elements that are not marked and whose type asks for a section, in the order
    /// of the deck: the first `most` of them. `blocks` and `elements` count all of them.
    std::vector<Sectionless> Unmarked(ElementMarks const& marks, int elements, Scopes const& scopes,
                                      FileNames const& files, std::size_t most, long& blocks,
                                      long& all) const;

  private:
    struct Block {
        int first;
        ElementType const* type;
        DeckLine at;
    };
    std::vector<Block> m_blocks;  ///< ascending
};

}  // namespace kov::tool
