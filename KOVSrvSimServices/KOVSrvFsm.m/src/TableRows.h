// Tables of doubles on their way to a caller: an array of row pointers, each row a block of its
// own, all from the mem_ family. Until the caller takes them they are freed with this object, so
// that a read that is refused half-way leaves nothing behind.
#pragma once

#include <cstddef>
#include <memory>

#include "mem.h"

namespace kov::fsm {

struct FreeMem {
    void operator()(double* block) const noexcept { mem_Free(block); }
};
/// Doubles of one transfer; not cleared.
using Doubles = std::unique_ptr<double[], FreeMem>;

inline Doubles NewDoubles(std::size_t count) {
    return Doubles(static_cast<double*>(mem_OperatorNewThrowBuiltin(count * sizeof(double))));
}

class TableRows {
  public:
    /// `rowCount` rows of `columnCount` values each; the values are not cleared.
    TableRows(int rowCount, int columnCount) : TableRows(rowCount) {
        for (; m_count < rowCount; ++m_count) {
            m_rows.get()[m_count] = NewDoubles(static_cast<std::size_t>(columnCount)).release();
        }
    }
    ~TableRows() {
        if (!m_rows) return;
        for (int row = 0; row < m_count; ++row) mem_Free(m_rows.get()[row]);
    }
    TableRows(TableRows const&) = delete;
    TableRows& operator=(TableRows const&) = delete;

    /// Copies `block`, (rows, width) row-major, to the columns from `column` on.
    void SetColumns(int column, int width, double const* block) {
        for (int row = 0; row < m_count; ++row) {
            double* const to = m_rows.get()[row] + column;
            for (int k = 0; k < width; ++k) to[k] = *block++;
        }
    }

    /// The array of rows; it and each row are the caller's from then on.
    double** Release() { return m_rows.release(); }

  private:
    struct FreeRows {
        void operator()(double** rows) const noexcept { mem_Free(rows); }
    };
    /// The array alone.
    explicit TableRows(int rowCount)
        : m_rows(static_cast<double**>(
              mem_OperatorNewThrowBuiltin(static_cast<std::size_t>(rowCount) * sizeof(double*)))) {}

    std::unique_ptr<double*, FreeRows> m_rows;
    int m_count = 0;
};

}  // namespace kov::fsm
