// FieldArrays: the fields of one frame as arrays of a VTU file.
//
// Values at nodes are point data, values of whole elements cell data, block by block. Values at
// integration points are carried to the nodes (PointsToNodes) and are point data too. Vectors have
// three components and symmetric tensors six, in the order XX YY ZZ XY YZ XZ; components that the
// field lacks are 0. Where there is no value stands not-a-number.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "DocumentResults.h"
#include "FieldForm.h"
#include "KOVObjDocument.h"
#include "PointsToNodes.h"
#include "VtuWriter.h"

namespace kov::tool {

/// What arrays are called: by the label of the variable, and where fields on several grids have the
/// same label, by that and the grid. Told all fields first, so that an array has the same name in
/// every file of a series.
class ArrayNames {
  public:
    void See(FieldHead const& head) { m_grids[head.label].insert(head.grid); }
    std::string NameOf(FieldHead const& head) const;

  private:
    std::map<std::string, std::set<int>> m_grids;
};

class FieldArrays {
  public:
    /// Finds out about `heads`, whose values stay where they are.
    FieldArrays(KOVObjDocument const& document, DocumentResults& results, ArrayNames const& names,
                std::vector<FieldHead> const& heads);

    /// Announces the arrays. This object must live until the file is written.
    void AddTo(VtuWriter& file);
    /// The names of the arrays.
    std::vector<std::string> Names() const;
    /// Those whose values were at integration points.
    std::vector<std::string> NamesFromPoints() const;
    /// What is not carried, and why; complete once the file is written.
    std::vector<std::string> Notes() const;

  private:
    struct Carried {
        FieldContent field;
        FieldForm form;
        std::string name;
        VtuGroup group;
        std::unique_ptr<PointsToNodes> points;  ///< for values at integration points
    };

    void Take(FieldContent field, std::string const& name);
    void WriteRows(VtuWriter& out, Carried const& carried, int space) const;
    void WriteMeans(VtuWriter& out, Carried const& carried) const;

    KOVObjDocument m_document;
    int m_nodes;
    int m_elements;
    std::vector<std::unique_ptr<Carried>> m_carried;
    std::vector<std::string> m_notes;
};

}  // namespace kov::tool
