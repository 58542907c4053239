// PointsToNodes: values at the integration points of elements, carried to the nodes of the mesh.
//
// Within an element the values go through KOVSrvExtrapolation, with the coefficients that
// IntegrationPoints.h has for its type and its number of points. A node gets the plain mean of what
// its elements give: elements of unequal size count alike, and nothing keeps a jump between two
// materials apart.
//
// Memory: one number for each node and component, one for each node, and a block of elements.
#pragma once

#include <string>
#include <vector>

#include "DocumentReader.h"
#include "DocumentResults.h"
#include "IntegrationPoints.h"
#include "KOVObjDocument.h"
#include "MeshRows.h"

namespace kov::tool {

class PointsToNodes {
  public:
    /// `field`: one at integration points; it must outlive this object. Looks at its sets alone.
    PointsToNodes(KOVObjDocument const& document, FieldContent const& field);

    /// True if any element can be carried.
    bool Any() const { return !m_parts.empty(); }
    /// What is not carried, and why. Complete after Means().
    std::vector<std::string> const& Notes() const { return m_notes; }

    /// (nodes, components of the field), row-major; not-a-number at nodes without a value. Throws
    /// DocumentFault for a node outside the mesh.
    std::vector<double> Means(int nodes);

  private:
    // Elements of one type that have the same points.
    struct Part {
        int group;
        ElementType const* type;
        int points;
        KOVSimCSet elements;
        IntegrationPoints rule;
    };
    struct Sums;

    std::vector<KOVSimCSet> ElementsByPoints(KOVSimCSet& all);
    void AddPart(int number, ElementGroup const& group, KOVSimCSet const& elements, int points);
    void ReadPoints(Part const& part, std::vector<int> const& elements, KOVSimCSet const& set,
                    std::vector<double>& source) const;
    int Gather(Part const& part, std::vector<int> const& elements,
               std::vector<double> const& target, Sums& sums) const;

    FieldContent const& m_field;
    std::size_t m_width;  ///< components
    ElementRows m_rows;
    std::vector<Part> m_parts;
    std::vector<std::string> m_notes;
};

}  // namespace kov::tool
