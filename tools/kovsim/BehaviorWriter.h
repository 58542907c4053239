// BehaviorWriter: one behaviour of a material on its way into a document, row by row. Rows are
// gathered in blocks, so that a table of any length takes bounded memory; a table of one block is
// stored as one that does not grow.
#pragma once

#include <vector>

#include "KOVObjDocument.h"
#include "KOVSimDataRecord.h"
#include "KOVSimTransaction.h"
#include "MaterialBehaviors.h"

namespace kov::tool {

class BehaviorWriter {
  public:
    /// Makes the record. `table`: null for a behaviour without a table; it outlives the writer.
    BehaviorWriter(KOVObjDocument const& document, KOVSimTransaction& transaction,
                   BehaviorKind const& kind, BehaviorTable const* table);

    KOVSimPosition const& Position() const { return m_position; }
    void SetNumber(BehaviorNumber const& number, double value);
    /// What each row has behind its dependent values; before the first row.
    void SetShape(bool hasTemperature, int fieldVariables);
    /// Dependent values, temperature, field variables; without the temperature where there is none.
    void AddRow(std::vector<double> const& row);
    /// Behind the last row.
    void Finish();

  private:
    KOVSimCollectionID MakeCollection(int member, int type);
    void WriteBlock(bool more);

    KOVSimTransaction& m_transaction;
    KOVSimPosition m_position;
    BehaviorTable const* m_table;
    bool m_hasTemperature = false;
    int m_fieldVariables = 0;
    std::size_t m_columns = 0;
    std::size_t m_blockRows = 1;
    std::vector<double> m_values;
    KOVSimCollectionID m_rows;  ///< null before the first block
};

}  // namespace kov::tool
