// MeshRows: coordinates of some nodes, and nodes and types of some elements, each by one transfer
// for many. Documents may come from any writer: rows that are not there are told as such.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "DocumentReader.h"
#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "KOVSimCollection.h"
#include "KOVSimDistribution.h"

namespace kov::tool {

class NodeCoordinates {
  public:
    /// Throws DocumentFault if the coordinates are not real numbers by node and component.
    explicit NodeCoordinates(KOVObjDocument const& document);

    /// Coordinates of `nodes`, which ascend strictly: 3 numbers for each, Absent() where none is
    /// stored.
    std::vector<double> Read(std::vector<int> const& nodes) const;

    /// A not-a-number that no arithmetic gives; ask IsAbsent.
    static double Absent();
    static bool IsAbsent(double number);

  private:
    KOVSimCollection m_nodes;
    KOVSimCollection m_components;
    KOVSimDistribution m_distribution;
};

class ElementRows {
  public:
    /// Throws DocumentFault if the connectivity does not give nodes by element and place.
    explicit ElementRows(KOVObjDocument const& document);

    struct Rows {
        std::vector<std::size_t>
            start;               ///< where the nodes of an element begin; one more at the end
        std::vector<int> nodes;  ///< ordinals of nodes
        std::vector<int> group;  ///< number of the element's group; -1 for none
    };
    /// Of `elements`, which ascend strictly. Throws DocumentFault for a node outside the mesh.
    Rows Read(std::vector<int> const& elements) const;
    /// The name of an element type by the number of its group; empty for none.
    std::string TypeName(int group) const;

  private:
    struct Drawer {
        KOVSimDrawerID id;
        KOVSimCSet elements;
        KOVSimCSet positions;
    };
    void ReadDrawer(Drawer const& drawer, KOVSimCSet const& inside, std::vector<int> const& places,
                    Rows& rows) const;

    KOVSimCollection m_elements;
    int m_nodes;
    KOVSimDistribution m_distribution;
    std::vector<Drawer> m_drawers;
    std::vector<ElementGroup> m_groups;
};

}  // namespace kov::tool
