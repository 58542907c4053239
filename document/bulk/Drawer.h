// Drawer: the state of one drawer of an open document: its sets, which member stands in which row,
// and where the rows lie.
//
// The row dimension is the one that grows, or dimension 0. A row holds the entries of one member of
// the row dimension, one for each member of the other dimension (the columns), in ascending order
// of these. Members that the drawer has but that were never written have no row, and read as zero.
//
//     made --write--> rows for some members --write, extension--> ... ; a drawer never shrinks
//
// A change that fails half-way (a full disk, no memory) leaves the drawer torn: it answers nothing
// and cannot be saved, so that its transaction can only be dropped.
//
// Invariants: every member with a row is in the row set; columns never change; a drawer that does
// not grow keeps its row set.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "document/bulk/Extents.h"
#include "document/bulk/RowBlocks.h"
#include "document/sets/IndexSet.h"

namespace kov::bulk {

struct DrawerInfo {
    int number = 0;
    int distribution = 0;
    int growing = -1;  // dimension, or -1
    bool chunked = false;
    int chunks[2] = {0, 0};
    int sets[2] = {0, 0};  // numbers of its own sets
    int dimensions = 1;
    int entryBytes = 0;
    int RowDim() const { return growing < 0 ? 0 : growing; }
};

class Drawer {
  public:
    /// A drawer that is being made: `rowMembers` has no row yet.
    Drawer(store::Context& context, DrawerInfo const& info, sets::IndexSetPtr rowMembers,
           sets::IndexSetPtr columns);
    /// One that was stored. Its row set is given for a drawer that does not grow, and null for one
    /// that does.
    Drawer(store::Context& context, DrawerInfo const& info, sets::IndexSetPtr rowMembers,
           sets::IndexSetPtr columns, int rows, std::int64_t rowBytes, sets::IndexSetPtr unwritten);

    DrawerInfo const& Info() const { return m_info; }
    /// All members of the row dimension, ascending.
    sets::IndexSetPtr const& RowMembers();
    /// The members of the other dimension, ascending; of a one-dimensional drawer the single member
    /// 0.
    sets::IndexSetPtr const& Columns() const { return m_columns; }
    /// Members of the row dimension without a row.
    sets::IndexSetPtr Unwritten();
    Extents const& Rows();
    RowBlocks& Blocks();
    std::int64_t RowBytes() const { return m_blocks.RowBytes(); }

    /// Writes whole rows. `members`: ascending, of the row set, or new where the drawer grows.
    /// `data`: their rows in order; there are columns.
    void Write(sets::IndexSetPtr const& members, char const* data);
    /// Adds members without rows to a growing drawer.
    void Extend(sets::IndexSetPtr const& members);

    /// Writes everything gathered to the segments and the catalogue.
    void Save();
    /// Writes gathered rows to the segments, and gives their memory back.
    void Flush();
    void Check(std::function<void(std::string const&)> const& finding);

  private:
    /// On its way out by an exception it marks the drawer as torn.
    class Change;

    void RequireWhole() const;
    void LoadExtents();
    void OverwriteWindow(std::vector<RowsRead> const& runs);

    store::Context& m_context;
    DrawerInfo m_info;
    sets::IndexSetPtr m_columns;
    sets::IndexSetPtr m_fixedRows;   // of a drawer that does not grow
    sets::IndexSetPtr m_unwritten;   // of one that does
    sets::IndexSetPtr m_rowMembers;  // of one that does; null until asked for
    Extents m_extents;
    bool m_extentsLoaded;
    int m_storedRows;
    RowBlocks m_blocks;
    bool m_changed = false;
    bool m_torn = false;  // a change has failed half-way
};

}  // namespace kov::bulk
