// VtuExport: a document's mesh as a VTU file, block by block: coordinates and connectivity never
// stand in memory as a whole. What does is one label for each node, and then for each element.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "DocumentReader.h"
#include "KOVObjDocument.h"
#include "KOVSimDistribution.h"
#include "KOVSrvElementConnectivity.h"
#include "VtuWriter.h"

namespace kov::tool {

struct VtuExportOptions {
    bool sets = true;  ///< one array for each set
    /// Called now and then with the bytes written and the bytes to write.
    std::function<void(double done, double total)> progress = {};
};

struct VtuExportSummary {
    int points = 0;
    int cells = 0;
    std::size_t nodeSets = 0;
    std::size_t elementSets = 0;
};

class VtuExport {
  public:
    /// Nodes or elements to a block.
    static constexpr int kBlock = 100'000;

    explicit VtuExport(KOVObjDocument const& document, VtuExportOptions options = {});

    /// Makes the file at `path`. `addResults` may announce further arrays, which stand before those
    /// of the sets. May be called for several files. Throws Failure.
    VtuExportSummary Write(std::string const& path,
                           std::function<void(VtuWriter&)> const& addResults = {});

  private:
    // One drawer of the connectivity: elements with the same number of nodes.
    struct Drawer {
        KOVSimCSet elements;
        KOVSimCSet positions;
        int nodes;
    };
    // Which drawer and which group an element is in, -1 for none, for the elements of one block.
    struct Block {
        int first = 0;
        int count = 0;
        std::vector<int> drawer;
        std::vector<int> group;

        std::size_t Size() const { return static_cast<std::size_t>(count); }
    };

    void QueryConnectivity();
    std::int64_t CountConnectivity();
    template <class F>
    void ForElementBlocks(F&& f);
    void Place(Block const& block, KOVSimCSet const& elements, int index,
               std::vector<int>& places) const;
    int NodesOf(Block const& block, std::size_t i) const;
    Cell CellOf(Block const& block, std::size_t i) const;

    void WritePoints(VtuWriter& file) const;
    template <class Index>
    void WriteConnectivity(VtuWriter& file);
    template <class Index>
    void WriteOffsets(VtuWriter& file);
    void WriteCellTypes(VtuWriter& file);
    void WriteElementTypes(VtuWriter& file);
    void WriteLabels(VtuWriter& file, KOVObjLabelerType type, int space) const;
    void WriteInstances(VtuWriter& file, KOVSimCSet DocumentInstance::*members, int space) const;
    void AddSets(VtuWriter& file, VtuGroup group, std::vector<DocumentSet> const& sets,
                 int space) const;

    KOVObjDocument m_document;
    VtuExportOptions m_options;
    KOVObjMesh m_mesh;
    int m_nodes;
    int m_elements;
    KOVSimCollection m_nodeCollection;
    KOVSimCollection m_elementCollection;
    std::vector<ElementGroup> m_groups;
    std::vector<DocumentInstance> m_instances;
    std::vector<Drawer> m_drawers;
};

}  // namespace kov::tool
