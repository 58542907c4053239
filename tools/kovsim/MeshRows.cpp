#include "MeshRows.h"

#include <algorithm>
#include <bit>

#include "KOVSimDSet.h"
#include "KOVSimTransfer.h"
#include "zdm_ComponentSymbols.h"

namespace kov::tool {
namespace {

constexpr std::uint64_t kAbsent = 0x7ff8'6162'7365'6e74;

// The places in `ascending` of the members of an ascending set.
std::vector<int> PlacesOf(KOVSimCSet const& set, std::vector<int> const& ascending) {
    std::vector<int> places(static_cast<std::size_t>(set.Size()));
    set.Members(places.data());
    auto at = ascending.begin();
    for (int& place : places) {
        at = std::lower_bound(at, ascending.end(), place);
        place = static_cast<int>(at - ascending.begin());
    }
    return places;
}

template <class Number>
void ReadRows(KOVSimTransfer& transfer, KOVSimCSet const& rows, KOVSimCSet const& columns,
              std::vector<Number>& out) {
    transfer.SetDim(0, rows).SetDim(1, columns).CheckView();
    transfer.SetBuffer(0, out.data(), sizeof(Number) * out.size());
    transfer.ExecRead().RelinquishBuffers();
}

}  // namespace

double NodeCoordinates::Absent() { return std::bit_cast<double>(kAbsent); }
bool NodeCoordinates::IsAbsent(double number) {
    return std::bit_cast<std::uint64_t>(number) == kAbsent;
}

NodeCoordinates::NodeCoordinates(KOVObjDocument const& document)
    : m_nodes(CollectionAt(KOVObjMesh(document.GetMesh()).GetNodeCollection())),
      m_components(CollectionAt(document.GetComponentCollection())) {
    KOVSimDistributionID const id =
        KOVObjMesh(document.GetMesh()).GetCoordinates().GetDistribution();
    if (id.IsNull()) return;
    m_distribution = KOVSimDistribution(id);
    KOVSimGrid::CollectionArray const& grid = m_distribution.Grid().Collections();
    if (grid.Size() != 2 || m_distribution.Range().Key() != KOVSimTypeKeyDouble ||
        grid.ConstGet(0) != m_nodes.ID() || grid.ConstGet(1) != m_components.ID()) {
        throw DocumentFault("the coordinates are not real numbers by node and component");
    }
}

std::vector<double> NodeCoordinates::Read(std::vector<int> const& nodes) const {
    std::vector<double> xyz(3 * nodes.size(), Absent());
    if (nodes.empty() || m_distribution.ID().IsNull()) return xyz;
    int const components[] = {zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3};
    KOVSimTransfer transfer(m_distribution);
    transfer.SetRead().SetBufferPadding(false);
    ReadRows(transfer,
             m_nodes.CreateVolatileCSet(nodes.data(), static_cast<int>(nodes.size()), false),
             m_components.CreateVolatileCSet(components, 3, false), xyz);
    return xyz;
}

ElementRows::ElementRows(KOVObjDocument const& document)
    : m_elements(CollectionAt(KOVObjMesh(document.GetMesh()).GetElementCollection())),
      m_nodes(SpaceAt(KOVObjMesh(document.GetMesh()).GetNodeCollection())),
      m_groups(ElementGroups(document)) {
    KOVSimDSet const dset(KOVObjMesh(document.GetMesh()).GetConnectivity());
    if (dset.IsNull() || dset.GetRelationalDistributionID().IsNull()) return;
    m_distribution = KOVSimDistribution(dset.GetRelationalDistributionID());
    if (m_distribution.NumDimensions() != 2 ||
        m_distribution.Range().Key() == KOVSimTypeKeyDouble ||
        m_distribution.Grid().Collections().ConstGet(0) != m_elements.ID()) {
        throw DocumentFault("the connectivity does not give nodes by element and place");
    }
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
        drawers;
    m_distribution.QueryDrawers(drawers);
    for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
        m_drawers.push_back(
            {drawer.drawerID, drawer.compartment.CSet(0), drawer.compartment.CSet(1)});
    }
}

std::string ElementRows::TypeName(int group) const {
    return group < 0 ? "" : m_groups[static_cast<std::size_t>(group)].name;
}

void ElementRows::ReadDrawer(Drawer const& drawer, KOVSimCSet const& inside,
                             std::vector<int> const& places, Rows& rows) const {
    auto const width = static_cast<std::size_t>(drawer.positions.Size());
    std::vector<int> read(places.size() * width);
    if (read.empty()) return;
    KOVSimTransfer transfer(m_distribution);
    transfer.SetRead().SetBufferPadding(false).SetDrawer(drawer.id);
    ReadRows(transfer, inside, drawer.positions, read);
    for (std::size_t i = 0; i < places.size(); ++i) {
        auto const begin = read.begin() + static_cast<std::ptrdiff_t>(i * width);
        std::size_t const start = rows.start[static_cast<std::size_t>(places[i])];
        std::copy(begin, begin + static_cast<std::ptrdiff_t>(width),
                  rows.nodes.begin() + static_cast<std::ptrdiff_t>(start));
    }
}

ElementRows::Rows ElementRows::Read(std::vector<int> const& elements) const {
    Rows rows;
    rows.start.assign(elements.size() + 1, 0);
    rows.group.assign(elements.size(), -1);
    if (elements.empty()) return rows;
    KOVSimCSet const asked =
        m_elements.CreateVolatileCSet(elements.data(), static_cast<int>(elements.size()), false);
    for (std::size_t g = 0; g < m_groups.size(); ++g) {
        for (int const place : PlacesOf(asked.Intersection(m_groups[g].elements), elements)) {
            rows.group[static_cast<std::size_t>(place)] = static_cast<int>(g);
        }
    }
    // Of drawers that overlap the last serves an element.
    std::vector<KOVSimCSet> inside(m_drawers.size());
    KOVSimCSet left = asked;
    for (std::size_t d = m_drawers.size(); d-- > 0;) {
        inside[d] = left.Intersection(m_drawers[d].elements);
        if (inside[d].IsEmpty()) continue;
        left = left - inside[d];
        for (int const place : PlacesOf(inside[d], elements)) {
            rows.start[static_cast<std::size_t>(place) + 1] =
                static_cast<std::size_t>(m_drawers[d].positions.Size());
        }
    }
    for (std::size_t i = 0; i < elements.size(); ++i) rows.start[i + 1] += rows.start[i];
    rows.nodes.assign(rows.start.back(), 0);
    for (std::size_t d = 0; d < m_drawers.size(); ++d) {
        if (inside[d].IsEmpty()) continue;
        ReadDrawer(m_drawers[d], inside[d], PlacesOf(inside[d], elements), rows);
    }
    for (std::size_t i = 0; i < elements.size(); ++i) {
        for (std::size_t k = rows.start[i]; k < rows.start[i + 1]; ++k) {
            if (rows.nodes[k] >= 0 && rows.nodes[k] < m_nodes) continue;
            throw DocumentFault("element " + std::to_string(elements[i]) +
                                " of the mesh names node " + std::to_string(rows.nodes[k]) +
                                ", of " + std::to_string(m_nodes) +
                                " nodes; the document is not sound");
        }
    }
    return rows;
}

}  // namespace kov::tool
