// ResultFields: writes one field of a frame into a document, block by block.
//
// Rows are gathered up to some number of values and then written as one drawer for each target,
// each point number and each element type, so that a field of any size passes through bounded
// memory, and so that rows in any order need no more than a sort of what is gathered.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "DocumentReader.h"
#include "KOVObjDocument.h"
#include "KOVSimDistribution.h"
#include "ResultLabels.h"
#include "ResultSteps.h"
#include "ResultVariables.h"

namespace kov::tool {

/// Labels of a file that the model does not have.
struct UnknownLabels {
    static constexpr std::size_t kFirst = 3;

    long count = 0;
    long rows = 0;           ///< of the field, with those that are known
    std::vector<int> first;  ///< up to kFirst
    std::string where;       ///< of the first
};

class ResultFieldWriter {
  public:
    /// So many values are gathered before they go to the document.
    static constexpr std::size_t kValues = 4'000'000;

    /// In a transaction. `labels` lives as long as the writer and is that of the field's place.
    /// `values`: how many are gathered at most.
    ResultFieldWriter(KOVObjDocument const& document, MadeFrame const& frame,
                      ResultField const& field, ResultLabels& labels, std::size_t values = kValues);

    /// Throws Failure for a label that stood before, and for a block that is no rectangle. Rows
    /// whose labels the model does not have are left out.
    void Add(ResultBlock const& block, std::string const& where);
    /// After the last block.
    void Finish();

    std::vector<ResultTarget> const& Targets() const { return m_targets; }
    UnknownLabels const& Unknown() const { return m_unknown; }
    /// Rows by points that were written.
    long long Rows() const { return m_rows; }

  private:
    // A meshed field of the document.
    struct Field {
        KOVSimPosition field;
        KOVSimDistributionID distribution;
        KOVSimCSetID components;
        std::vector<KOVSimPosition> serials;  ///< by number of the point, or one at 0
    };

    void Place(ResultBlock const& block, std::string const& where);
    void Flush();
    void Sort();
    void WriteGroup(KOVSimCSet const& items, std::vector<std::size_t> const* rows);
    void MakeFields();
    KOVSimPosition FieldType(ResultTarget const& target) const;
    KOVSimPosition Serial(Field& field, int point);
    std::vector<std::size_t> RowsOf(KOVSimCSet const& items) const;

    KOVObjDocument m_document;
    MadeFrame m_frame;
    ResultField m_field;
    ResultLabels& m_labels;
    std::size_t m_most;
    std::vector<ResultTarget> m_targets;
    std::vector<Field> m_fields;  ///< one for each target; made with the first rows
    std::vector<ElementGroup> m_groups;
    KOVSimCollection m_collection;
    UnknownLabels m_unknown;
    long long m_rows = 0;

    std::vector<bool> m_seen;     ///< by ordinal
    std::vector<int> m_ordinals;  ///< of the rows gathered
    bool m_ascends = true;
    int m_points = 1;
    std::vector<double> m_values;  ///< (ordinals, points, components)
    std::vector<double> m_out;     ///< what goes to one drawer
};

}  // namespace kov::tool
