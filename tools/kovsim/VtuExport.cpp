#include "VtuExport.h"

#include <algorithm>
#include <limits>

#include "AscendingSets.h"
#include "Failure.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimDSet.h"
#include "KOVSimSchema.h"
#include "KOVSrvNodalCoordinates.h"
#include "zdm_ComponentSymbols.h"

namespace kov::tool {
namespace {

template <class T>
void AppendAll(VtuWriter& file, std::vector<T> const& values) {
    file.Append(values.data(), values.size() * sizeof(T));
}

}  // namespace

VtuExport::VtuExport(KOVObjDocument const& document, VtuExportOptions options)
    : m_document(document),
      m_options(options),
      m_mesh(document.GetMesh()),
      m_nodes(SpaceAt(m_mesh.GetNodeCollection())),
      m_elements(SpaceAt(m_mesh.GetElementCollection())),
      m_nodeCollection(CollectionAt(m_mesh.GetNodeCollection())),
      m_elementCollection(CollectionAt(m_mesh.GetElementCollection())),
      m_groups(ElementGroups(document)),
      m_instances(DocumentInstances(document)) {
    QueryConnectivity();
}

void VtuExport::QueryConnectivity() {
    KOVSimDSet const dset(m_mesh.GetConnectivity());
    if (dset.IsNull() || dset.GetRelationalDistributionID().IsNull()) return;
    KOVSimDistribution const distribution(dset.GetRelationalDistributionID());
    if (distribution.NumDimensions() != 2 || distribution.Range().Key() == KOVSimTypeKeyDouble) {
        throw Failure("the connectivity of the document does not give nodes by element and place");
    }
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
        drawers;
    distribution.QueryDrawers(drawers);
    for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
        KOVSimCSet const& positions = drawer.compartment.CSet(1);
        m_drawers.push_back({Ascending(drawer.compartment.CSet(0)), positions, positions.Size()});
    }
}

// Notes `index` for those elements of the block that are in `elements`.
void VtuExport::Place(Block const& block, KOVSimCSet const& elements, int index,
                      std::vector<int>& places) const {
    if (elements.IsEmpty()) return;
    int first = 0;
    int last = 0;
    int const end = block.first + block.count;
    if (IsRange(elements, first, last)) {
        for (int i = std::max(first, block.first); i <= std::min(last, end - 1); ++i) {
            places[static_cast<std::size_t>(i - block.first)] = index;
        }
        return;
    }
    if (last < block.first || first >= end) return;
    KOVSimCSet const range =
        m_elementCollection.CreateVolatileCSetStrided(block.first, block.count, 1, 1);
    for (int const member : MembersOf(elements.Intersection(range))) {
        places[static_cast<std::size_t>(member - block.first)] = index;
    }
}

template <class F>
void VtuExport::ForElementBlocks(F&& f) {
    Block block;
    for (block.first = 0; block.first < m_elements; block.first += block.count) {
        block.count = std::min(kBlock, m_elements - block.first);
        block.drawer.assign(block.Size(), -1);
        block.group.assign(block.Size(), -1);
        // Of drawers that hold the same element the one made last counts.
        for (std::size_t d = 0; d < m_drawers.size(); ++d) {
            Place(block, m_drawers[d].elements, static_cast<int>(d), block.drawer);
        }
        for (std::size_t g = 0; g < m_groups.size(); ++g) {
            Place(block, m_groups[g].elements, static_cast<int>(g), block.group);
        }
        f(block);
    }
}

int VtuExport::NodesOf(Block const& block, std::size_t i) const {
    int const drawer = block.drawer[i];
    return drawer < 0 ? 0 : m_drawers[static_cast<std::size_t>(drawer)].nodes;
}

// An element without a known type shows its nodes and nothing else.
Cell VtuExport::CellOf(Block const& block, std::size_t i) const {
    int const nodes = NodesOf(block, i);
    if (nodes == 0) return Cell::Empty;
    if (block.group[i] >= 0) {
        ElementGroup const& group = m_groups[static_cast<std::size_t>(block.group[i])];
        if (group.type != nullptr && group.type->nodes == nodes) return group.type->cell;
        ElementType const* const like = FindElementTypeByShape(group.shape, nodes);
        if (like != nullptr) return like->cell;
    }
    return nodes == 1 ? Cell::Vertex : Cell::PolyVertex;
}

std::int64_t VtuExport::CountConnectivity() {
    std::int64_t total = 0;
    ForElementBlocks([&](Block const& block) {
        for (std::size_t i = 0; i < block.Size(); ++i) total += NodesOf(block, i);
    });
    return total;
}

void VtuExport::WritePoints(VtuWriter& file) const {
    std::vector<double> xyz;
    KOVSimDistributionID const id = m_mesh.GetCoordinates().GetDistribution();
    KOVSimArray<KOVSimDrawerID, KOVSimArrayCopyClassPolicy<KOVSimDrawerID>> drawers;
    if (!id.IsNull()) {
        KOVSimDistribution const distribution(id);
        distribution.DrawerIDArray(drawers);
        if (drawers.Size() > 0 && (distribution.NumDimensions() != 2 ||
                                   distribution.Range().Key() != KOVSimTypeKeyDouble)) {
            throw Failure(
                "the coordinates of the document are not real numbers by node and component");
        }
    }
    int const components[] = {zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3};
    KOVSimCollection const collection = CollectionAt(m_document.GetComponentCollection());
    for (int first = 0; first < m_nodes; first += kBlock) {
        int const count = std::min(kBlock, m_nodes - first);
        xyz.assign(3 * static_cast<std::size_t>(count), 0.0);
        if (drawers.Size() > 0 && collection.IsPresent()) {
            KOVSrvNodalCoordinates const coordinates(m_mesh.GetCoordinates(), kBlock);
            coordinates.Read(m_nodeCollection.CreateVolatileCSetStrided(first, count, 1, 1),
                             collection.CreateVolatileCSet(components, 3, false), xyz.data());
        }
        AppendAll(file, xyz);
    }
}

template <class Index>
void VtuExport::WriteConnectivity(VtuWriter& file) {
    KOVSrvElementConnectivity const connectivity(m_mesh.GetConnectivity(), kBlock);
    std::vector<std::int64_t> start;
    std::vector<Index> out;
    std::vector<int> members;
    std::vector<int> rows;
    ForElementBlocks([&](Block const& block) {
        start.assign(block.Size() + 1, 0);
        for (std::size_t i = 0; i < block.Size(); ++i) start[i + 1] = start[i] + NodesOf(block, i);
        out.assign(static_cast<std::size_t>(start.back()), 0);
        for (std::size_t d = 0; d < m_drawers.size(); ++d) {
            Drawer const& drawer = m_drawers[d];
            members.clear();
            for (std::size_t i = 0; i < block.Size(); ++i) {
                if (block.drawer[i] == static_cast<int>(d))
                    members.push_back(block.first + static_cast<int>(i));
            }
            if (members.empty()) continue;
            auto const nodes = static_cast<std::size_t>(drawer.nodes);
            rows.assign(members.size() * nodes, 0);
            connectivity.Read(SetOf(m_elementCollection, members), drawer.positions, rows.data());
            for (std::size_t m = 0; m < members.size(); ++m) {
                auto const i = static_cast<std::size_t>(members[m] - block.first);
                std::span<int const> const order = NodeOrder(CellOf(block, i));
                int const* const row = rows.data() + m * nodes;
                Index* const cell = out.data() + start[i];
                for (std::size_t k = 0; k < nodes; ++k) {
                    int const node = row[order.empty() ? k : static_cast<std::size_t>(order[k])];
                    if (node < 0 || node >= m_nodes) {
                        throw Failure("element " + std::to_string(members[m]) +
                                      " of the mesh names node " + std::to_string(node) + ", of " +
                                      std::to_string(m_nodes) +
                                      " nodes; the document is not sound");
                    }
                    cell[k] = static_cast<Index>(node);
                }
            }
        }
        AppendAll(file, out);
    });
}

template <class Index>
void VtuExport::WriteOffsets(VtuWriter& file) {
    std::vector<Index> out;
    std::int64_t offset = 0;
    ForElementBlocks([&](Block const& block) {
        out.clear();
        for (std::size_t i = 0; i < block.Size(); ++i) {
            out.push_back(static_cast<Index>(offset += NodesOf(block, i)));
        }
        AppendAll(file, out);
    });
}

void VtuExport::WriteCellTypes(VtuWriter& file) {
    std::vector<std::uint8_t> out;
    ForElementBlocks([&](Block const& block) {
        out.clear();
        for (std::size_t i = 0; i < block.Size(); ++i) {
            out.push_back(static_cast<std::uint8_t>(CellOf(block, i)));
        }
        AppendAll(file, out);
    });
}

void VtuExport::WriteElementTypes(VtuWriter& file) {
    ForElementBlocks([&](Block const& block) { AppendAll(file, block.group); });
}

void VtuExport::WriteLabels(VtuWriter& file, KOVObjLabelerType type, int space) const {
    std::vector<int> const labels = LabelsByOrdinal(m_document, type, space);
    AppendAll(file, labels);
}

// The place of each node's or element's instance among the names; -1 for those of the assembly.
void VtuExport::WriteInstances(VtuWriter& file, KOVSimCSet DocumentInstance::*members,
                               int space) const {
    std::vector<int> indices(static_cast<std::size_t>(space), -1);
    for (std::size_t i = 0; i < m_instances.size(); ++i) {
        KOVSimCSetIterator at(m_instances[i].*members);
        for (at.First(); !at.IsDone(); at.Next()) {
            if (at.CurrentValue() >= space) continue;
            indices[static_cast<std::size_t>(at.CurrentValue())] = static_cast<int>(i);
        }
    }
    AppendAll(file, indices);
}

void VtuExport::AddSets(VtuWriter& file, VtuGroup group, std::vector<DocumentSet> const& sets,
                        int space) const {
    for (DocumentSet const& set : sets) {
        file.Add(group, set.name, "UInt8", 1, space,
                 [members = Ascending(set.set), space](VtuWriter& out) {
                     std::vector<std::uint8_t> flags;
                     KOVSimCSetIterator at(members);
                     at.First();
                     for (int first = 0; first < space; first += kBlock) {
                         int const end = first + std::min(kBlock, space - first);
                         flags.assign(static_cast<std::size_t>(end - first), 0);
                         for (; !at.IsDone() && at.CurrentValue() < end; at.Next()) {
                             flags[static_cast<std::size_t>(at.CurrentValue() - first)] = 1;
                         }
                         AppendAll(out, flags);
                     }
                 });
    }
}

VtuExportSummary VtuExport::Write(std::string const& path,
                                  std::function<void(VtuWriter&)> const& addResults) {
    VtuExportSummary summary;
    summary.points = m_nodes;
    summary.cells = m_elements;
    std::int64_t const nodes = m_nodes;
    std::int64_t const elements = m_elements;
    std::int64_t const total = CountConnectivity();
    // The offsets decide: 32 bits where they do, as viewers keep both arrays in one width.
    bool const narrow = total <= std::numeric_limits<std::int32_t>::max();
    std::int64_t const width = narrow ? 4 : 8;
    char const* const index = narrow ? "Int32" : "Int64";

    VtuWriter file(path);
    file.SetProgress(m_options.progress);
    auto const hasLabels = [this](KOVObjLabelerType type) {
        KOVObjLabeler labeler(m_document, type);
        labeler.Read();
        return labeler.Occurrences().Size() > 0;
    };
    if (hasLabels(KOVObjLabelerNodes)) {
        file.Add(VtuGroup::PointData, "NodeLabel", "Int32", 1, 4 * nodes,
                 [this](VtuWriter& out) { WriteLabels(out, KOVObjLabelerNodes, m_nodes); });
    }
    if (hasLabels(KOVObjLabelerElements)) {
        file.Add(VtuGroup::CellData, "ElementLabel", "Int32", 1, 4 * elements,
                 [this](VtuWriter& out) { WriteLabels(out, KOVObjLabelerElements, m_elements); });
    }
    if (!m_groups.empty()) {
        std::vector<std::string> names;
        for (ElementGroup const& group : m_groups) names.push_back(group.name);
        file.AddTexts("ElementTypeNames", names);
        file.Add(VtuGroup::CellData, "ElementType", "Int32", 1, 4 * elements,
                 [this](VtuWriter& out) { WriteElementTypes(out); });
    }
    if (!m_instances.empty()) {
        std::vector<std::string> names;
        for (DocumentInstance const& instance : m_instances) names.push_back(instance.name);
        file.AddTexts("InstanceNames", names);
        file.Add(VtuGroup::PointData, "Instance", "Int32", 1, 4 * nodes, [this](VtuWriter& out) {
            WriteInstances(out, &DocumentInstance::nodes, m_nodes);
        });
        file.Add(VtuGroup::CellData, "Instance", "Int32", 1, 4 * elements, [this](VtuWriter& out) {
            WriteInstances(out, &DocumentInstance::elements, m_elements);
        });
    }
    if (addResults) addResults(file);
    if (m_options.sets) {
        auto const nodeSets = DocumentSets(m_document, schema::Model_nodeSets());
        auto const elementSets = DocumentSets(m_document, schema::Model_elementSets());
        AddSets(file, VtuGroup::PointData, nodeSets, m_nodes);
        AddSets(file, VtuGroup::CellData, elementSets, m_elements);
        summary.nodeSets = nodeSets.size();
        summary.elementSets = elementSets.size();
    }
    file.Add(VtuGroup::Points, "Points", "Float64", 3, 24 * nodes,
             [this](VtuWriter& out) { WritePoints(out); });
    file.Add(
        VtuGroup::Cells, "connectivity", index, 1, width * total, [this, narrow](VtuWriter& out) {
            narrow ? WriteConnectivity<std::int32_t>(out) : WriteConnectivity<std::int64_t>(out);
        });
    file.Add(VtuGroup::Cells, "offsets", index, 1, width * elements,
             [this, narrow](VtuWriter& out) {
                 narrow ? WriteOffsets<std::int32_t>(out) : WriteOffsets<std::int64_t>(out);
             });
    file.Add(VtuGroup::Cells, "types", "UInt8", 1, elements,
             [this](VtuWriter& out) { WriteCellTypes(out); });
    file.Write(nodes, elements);
    return summary;
}

}  // namespace kov::tool
