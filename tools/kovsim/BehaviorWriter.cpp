#include "BehaviorWriter.h"

#include <algorithm>

#include "Interrupt.h"
#include "KOVSimSchema.h"
#include "Names.h"
#include "TableField.h"

namespace kov::tool {

BehaviorWriter::BehaviorWriter(KOVObjDocument const& document, KOVSimTransaction& transaction,
                               BehaviorKind const& kind, BehaviorTable const* table)
    : m_transaction(transaction),
      m_position(document.CreateDataRecord(schema::MaterialBehavior()).Pos()),
      m_table(table) {
    m_position.SetName(ToKOVString(kind.name));
    m_position.GetDataRecord().SetString(kBehaviorType,
                                         KOVString(table == nullptr ? "" : table->type));
}

void BehaviorWriter::SetNumber(BehaviorNumber const& number, double value) {
    m_position.GetDataRecord().SetDouble(number.field, value);
}

void BehaviorWriter::SetShape(bool hasTemperature, int fieldVariables) {
    m_hasTemperature = hasTemperature;
    m_fieldVariables = fieldVariables;
    m_columns = m_table->columns.size() + (hasTemperature ? 1 : 0) +
                static_cast<std::size_t>(fieldVariables);
    m_blockRows = static_cast<std::size_t>(RowsInBlock(static_cast<int>(m_columns)));
}

void BehaviorWriter::AddRow(std::vector<double> const& row) {
    if (m_values.size() >= m_blockRows * m_columns) WriteBlock(true);
    m_values.insert(m_values.end(), row.begin(), row.end());
}

void BehaviorWriter::Finish() {
    if (!m_values.empty()) WriteBlock(false);
}

KOVSimCollectionID BehaviorWriter::MakeCollection(int member, int type) {
    KOVSimCollectionID const collection = m_position.CreateTypedCollection(0, type);
    m_position.SetPosition(member, KOVSimPosition(collection));
    return collection;
}

void BehaviorWriter::WriteBlock(bool more) {
    ThrowIfInterrupted();
    std::size_t const count = m_values.size() / m_columns;
    std::vector<double const*> rows(count);
    for (std::size_t i = 0; i < count; ++i) rows[i] = m_values.data() + i * m_columns;
    int const rowCount = static_cast<int>(count);
    TableDescription description(*m_table);
    if (!m_rows.IsNull()) {
        static_cast<void>(description.Table().Append(m_transaction, m_position, m_rows, {}, {},
                                                     rows.data(), rowCount, m_hasTemperature,
                                                     m_fieldVariables));
    } else {
        m_rows =
            MakeCollection(schema::MaterialBehavior_rows(), schema::MaterialTableRowCollection());
        KOVSimCollectionID const dependents = MakeCollection(
            schema::MaterialBehavior_dependentColumns(), schema::MaterialTableColumnCollection());
        KOVSimCollectionID fields;
        if (m_fieldVariables > 0) {
            fields = MakeCollection(schema::MaterialBehavior_fieldVariableColumns(),
                                    schema::MaterialTableColumnCollection());
        }
        static_cast<void>(description.Table().Save(m_transaction, m_position, m_rows, dependents,
                                                   fields, rows.data(), rowCount, m_hasTemperature,
                                                   m_fieldVariables, more));
    }
    m_values.clear();
}

}  // namespace kov::tool
