// KOVSimFTable: a small labelled table of doubles, stored whole.
#pragma once

#include <memory>

#include "KOVExport.h"
#include "KOVSimTypedIDs.h"
#include "KOVString.h"

class KOV_EXPORT KOVSimFTable {
  public:
    /// Throws if there is no such table; a null `id` gives a table without rows and columns.
    explicit KOVSimFTable(KOVSimFTableID const& id);

    int RowCount() const;
    int ColumnCount() const;
    /// The label of a column, from 0. Throws outside.
    KOVString ColumnLabel(int column) const;
    /// The labels given with the table itself, from 0; they may be those of its first columns.
    int LabelCount() const;
    KOVString Label(int index) const;
    /// Copies the first `n` values, row by row: entry (row, column) is at column + ColumnCount() *
    /// row. `out`: n doubles, the caller's. Asking for more than the table holds is refused.
    void GetData(double* out, int n) const;

    struct Content;

  private:
    std::shared_ptr<Content const> m_content;
};
