// LabelTable: from the labels that a user gave to the ordinals of the mesh, both ways of growth
// cheap: labels in ascending order without holes cost nothing, any others at most 8 bytes each.
//
// The range of labels is cut into pages of 4096. A page is one run (its labels follow each other,
// and so do their ordinals), or a sorted list, or a full array, whatever is smallest. A look-up in
// a run or an array is a few nanoseconds, in a list a binary search within the page. A tree or a
// hash table would take several times the memory, and sorting at the end would not tell of a label
// that is there twice until it is too late to name its line.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "KOVBasVector.h"

namespace kov::tool {

class LabelTable {
  public:
    /// What a label that is not there has for an ordinal.
    static constexpr int None = -1;

    /// The ordinal of a label; None if it is not there. Any int may be asked.
    int Find(int label) const {
        Page const* const found = PageOf(label);
        if (found == nullptr) return None;
        Page const& page = *found;
        unsigned const at = OffsetOf(label);
        if (page.ordinals == nullptr) {
            unsigned const behind = at - page.first;
            return behind < page.count ? page.base + static_cast<int>(behind) : None;
        }
        return page.offsets == nullptr ? page.ordinals[at] : FindInList(page, at);
    }

    /// Adds a label from 1 upward that is not there yet; false, without a change, if it is.
    bool Insert(int label, int ordinal);

    int Size() const { return m_size; }

    /// Gives the ordinals of the labels first, first + stride, ... up to `last`, as f(ordinal,
    /// count) for each stretch of ordinals that go up by `stride` (by 1 where count is 1). Answers
    /// the first label that is not there, 0 if all are; with such a label `f` may have been called
    /// for those before it.
    template <class F>
    int ForRange(int first, int last, int stride, F&& f) const;

    /// The label that has an ordinal; 0 if none has. Walks the whole table: for messages.
    int LabelOf(int ordinal) const;

    /// Moves everything into two arrays by ascending label, `labels` and their `ordinals`, freeing
    /// the table on the way: the memory never holds both.
    void MoveTo(KOVBasVector<int>& labels, KOVBasVector<int>& ordinals);

  private:
    static constexpr unsigned kPageBits = 12;
    static constexpr unsigned kPageSize = 1U << kPageBits;
    static constexpr unsigned kChunkPages = 1024;
    // Beyond this many entries an array of ordinals is smaller than a list of offsets and ordinals.
    static constexpr unsigned kMostInList = kPageSize * 4 / 6;

    // A run without arrays: `first` and `base` are its first label, within the page, and ordinal.
    // Arrays otherwise: with `offsets` a sorted list of `count` entries, without it one ordinal for
    // each label of the page.
    struct Page {
        std::unique_ptr<int[]> ordinals;
        std::unique_ptr<std::uint16_t[]> offsets;
        int base = 0;
        std::uint16_t first = 0;
        std::uint16_t count = 0;
        std::uint16_t capacity = 0;
    };

    // A group of pages that follow each other, as many as its highest label asks for, so that the
    // table of a small instance is small.
    struct Chunk {
        std::unique_ptr<Page[]> pages;
        unsigned size = 0;
    };

    static unsigned OffsetOf(int label) { return static_cast<unsigned>(label) % kPageSize; }
    Page const* PageOf(int label) const {
        unsigned const page = static_cast<unsigned>(label) >> kPageBits;
        unsigned const chunk = page / kChunkPages;
        if (chunk >= m_chunks.size()) return nullptr;
        Chunk const& pages = m_chunks[chunk];
        return page % kChunkPages < pages.size ? &pages.pages[page % kChunkPages] : nullptr;
    }
    Page& MakePage(int label);

    static int FindInList(Page const& page, unsigned at);
    static bool InsertIntoRun(Page& page, unsigned at, int ordinal);
    static bool InsertIntoList(Page& page, unsigned at, int ordinal);
    static void GrowList(Page& page, unsigned capacity);
    static void MakeArray(Page& page);

    std::vector<Chunk> m_chunks;
    int m_size = 0;
};

template <class F>
int LabelTable::ForRange(int first, int last, int stride, F&& f) const {
    long long label = first;
    while (label <= last) {
        Page const* const found = PageOf(static_cast<int>(label));
        if (found == nullptr) return static_cast<int>(label);
        Page const& page = *found;
        unsigned const at = OffsetOf(static_cast<int>(label));
        if (page.ordinals != nullptr) {
            int const ordinal = Find(static_cast<int>(label));
            if (ordinal == None) return static_cast<int>(label);
            f(ordinal, 1);
            label += stride;
            continue;
        }
        unsigned const behind = at - page.first;
        if (behind >= page.count) return static_cast<int>(label);
        // All steps that stay in the run at once.
        long long const lastInRun = label + (page.count - 1 - static_cast<long long>(behind));
        long long const steps = ((lastInRun < last ? lastInRun : last) - label) / stride;
        f(page.base + static_cast<int>(behind), static_cast<int>(steps) + 1);
        label += (steps + 1) * stride;
    }
    return 0;
}

}  // namespace kov::tool
