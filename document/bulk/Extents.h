// Extents: which row of a drawer holds which member of its row dimension, as an extent list like a
// file system's: runs of consecutive members in consecutive rows. Rows are given out in order of
// arrival and never move.
//
// Two orders are kept: the sorted list answers look-ups; what has arrived since the last save is
// kept in order of arrival and goes to the catalogue as one short blob. Members that arrive above
// all others cost one append; others wait in a tail that is merged at the next look-up.
//
// Invariants: sorted extents do not overlap; rows of all extents together are [0, Rows()) without
// gap or overlap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kov::bulk {

/// `count` members from `first` in rows from `row`.
struct Extent {
    int first;
    int count;
    int row;
    int End() const { return first + count; }
};

class Extents {
  public:
    int Rows() const { return m_rows; }

    /// Gives the next rows to the members [first, first + count), none of which has a row yet.
    void Append(int first, int count);

    /// Splits the members [first, first + count) into stretches and calls f(first, count, row) for
    /// each, ascending; `row` is -1 for members without a row.
    template <class F>
    void ForEach(int first, int count, F&& f) const {
        Settle();
        std::size_t at = LowerBound(first);
        int const end = first + count;
        while (first < end) {
            if (at == m_sorted.size() || m_sorted[at].first >= end) {
                f(first, end - first, -1);
                return;
            }
            Extent const& extent = m_sorted[at];
            if (first < extent.first) {
                f(first, extent.first - first, -1);
                first = extent.first;
            }
            int const stop = end < extent.End() ? end : extent.End();
            f(first, stop - first, extent.row + (first - extent.first));
            first = stop;
            ++at;
        }
    }
    /// Sorted by member.
    std::vector<Extent> const& Sorted() const {
        Settle();
        return m_sorted;
    }

    // The stored form: rows of the table `extents`, each a first row and a blob.
    struct Chunk {
        int firstRow;
        std::string runs;
    };
    bool HasUnsaved() const { return m_savedRows != m_rows; }
    /// What is to be stored for the rows that came since the last call. Its first row may be that
    /// of the chunk stored last: it then replaces it, so that many small commits do not leave many
    /// chunks.
    Chunk Save();
    /// Takes a stored chunk up, in order of first rows; an empty text, or what is wrong with it.
    std::string Load(std::int64_t firstRow, std::string_view runs);
    /// Whether two of the loaded extents hold the same member. To be asked once, after the last
    /// chunk.
    bool Overlap() const;

  private:
    void Settle() const;
    std::size_t LowerBound(int first) const;
    void AddSorted(Extent const& extent) const;

    int m_rows = 0;
    int m_savedRows = 0;
    std::vector<Extent> m_arrived;  // the last stored chunk if it is short, and what came behind it
    mutable std::vector<Extent> m_sorted;
    mutable std::vector<Extent> m_unsettled;
};

}  // namespace kov::bulk
