#include "ModelWriter.h"

#include <algorithm>
#include <numeric>

#include "Conventions.h"
#include "Interrupt.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "Names.h"
#include "zdm_ComponentSymbols.h"

namespace kov::tool {
namespace {

// Node ordinals that may wait over all types: 16 MB.
constexpr std::size_t kMostPending = 4'000'000;

KOVSimCollectionID PositionCollection(KOVObjMesh const& mesh) {
    KOVSimDSet const connectivity(mesh.GetConnectivity());
    KOVSimDistribution const distribution(connectivity.GetRelationalDistributionID());
    return distribution.Grid().Collections().ConstGet(1);
}

// A temporary set of `count` ascending ordinals; a range is named as such.
KOVSimCSetID BlockSet(KOVSimCollection& collection, int const* ordinals, int count) {
    if (ordinals[count - 1] - ordinals[0] == count - 1) {
        return collection.CreateTempCSetStrided(ordinals[0], count, 1, 1);
    }
    return collection.CreateTempCSet(ordinals, count, false);
}

void ExtendTo(KOVSimCollection& collection, int count) {
    if (collection.Space() < count) collection.ExtendSpace(count);
}

}  // namespace

ModelWriter::ModelWriter(KOVObjDocument const& document, KOVSimTransaction& transaction)
    : m_document(document),
      m_transaction(transaction),
      m_mesh(document.GetMesh()),
      m_nodeCollection(m_mesh.GetNodeCollection().GetCollection()),
      m_elementCollection(m_mesh.GetElementCollection().GetCollection()),
      m_positionCollection(PositionCollection(m_mesh)),
      m_nodalCoordinates(m_mesh.GetCoordinates(), kBlock),
      m_connectivity(m_mesh.GetConnectivity(), kBlock) {
    int const components[] = {zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3};
    KOVSimCollection collection(document.GetComponentCollection().GetCollection());
    m_components = collection.CreateTempCSet(components, 3, false);
}

KOVSimCollection& ModelWriter::NodeCollection() {
    ExtendTo(m_nodeCollection, m_nodes);
    return m_nodeCollection;
}

KOVSimCollection& ModelWriter::ElementCollection() {
    ExtendTo(m_elementCollection, m_elements);
    return m_elementCollection;
}

void ModelWriter::WriteNodes() {
    ThrowIfInterrupted();
    int const count = m_nodes - m_writtenNodes;
    if (count == 0) return;
    KOVSimCSetID const nodes = NodeCollection().CreateTempCSetStrided(m_writtenNodes, count, 1, 1);
    m_nodalCoordinates.Append(m_transaction, nodes, m_components, m_coordinates.data());
    m_coordinates.clear();
    m_writtenNodes = m_nodes;
}

void ModelWriter::ReadNodes(int const* ordinals, int count, double* out) {
    WriteNodes();
    if (count == 0) return;
    KOVSimCSet const nodes = m_nodeCollection.CreateVolatileOrderedCSet(ordinals, count);
    m_nodalCoordinates.Read(nodes, KOVSimCSet(m_components), out);
}

TypeElements& ModelWriter::Elements(ElementType const& type) {
    for (TypeElements& elements : m_types) {
        if (elements.type == &type) return elements;
    }
    KOVString const name = ToKOVString(type.name);
    KOVSimPosition const specifications = m_document.GetElementSpecCollection();
    KOVSimPosition const specification = specifications.AppendMember(schema::ElementSpec());
    specification.SetName(name);
    KOVSimCollectionID const shapes = m_document.GetShapeCollection().GetCollection();
    specification.SetPosition(schema::ElementSpec_shape(),
                              m_document.GetRecord(shapes, type.shape));
    specifications.GetMap(schema::ElementSpecLib_elementSpecs()).Insert(name, specification);

    TypeElements& elements = m_types.emplace_back();
    elements.type = &type;
    elements.specification = specification;
    elements.positions = m_positionCollection.CreateTempCSetStrided(0, type.nodes, 1, 1);
    return elements;
}

void ModelWriter::BeginElements(ElementType const& type) {
    if (!m_typeSpans.empty() && m_typeSpans.back().type == &type) return;
    if (!m_typeSpans.empty() && m_typeSpans.back().first == m_elements) m_typeSpans.pop_back();
    m_typeSpans.push_back({m_elements, &type});
}

ModelWriter::TypeSpan const* ModelWriter::SpanOf(int ordinal) const {
    auto const behind =
        std::upper_bound(m_typeSpans.begin(), m_typeSpans.end(), ordinal,
                         [](int a, TypeSpan const& span) { return a < span.first; });
    return m_typeSpans.data() + (behind - m_typeSpans.begin()) - 1;
}

void ModelWriter::SetNodes(TypeElements& elements, int ordinal, int const* nodes) {
    // The rows of a block follow its set, which is ascending: an element that was put off begins a
    // new one.
    if (!elements.ordinals.empty() && ordinal < elements.ordinals.back()) WriteElements(elements);
    elements.ordinals.push_back(ordinal);
    elements.nodes.insert(elements.nodes.end(), nodes, nodes + elements.type->nodes);
    elements.members.Add(ordinal);
    ++elements.count;
    m_pending += static_cast<std::size_t>(elements.type->nodes);
    if (elements.ordinals.size() == kBlock) {
        WriteElements(elements);
    } else if (m_pending > kMostPending) {
        WriteAllElements();
    }
}

void ModelWriter::WriteElements(TypeElements& elements) {
    ThrowIfInterrupted();
    if (elements.ordinals.empty()) return;
    int const count = static_cast<int>(elements.ordinals.size());
    KOVSimCSetID const block = BlockSet(ElementCollection(), elements.ordinals.data(), count);
    m_connectivity.Append(m_transaction, elements.specification.ID(), block, elements.positions,
                          elements.nodes.data());
    m_pending -= elements.nodes.size();
    elements.ordinals.clear();
    elements.nodes.clear();
    if (elements.members.Runs() > 100'000) elements.members.Fold(m_elementCollection);
}

void ModelWriter::WriteAllElements() {
    for (TypeElements& elements : m_types) WriteElements(elements);
}

void ModelWriter::ForNodesOf(SetMembers const& elements,
                             std::function<void(int const*, int)> const& f) {
    WriteAllElements();
    std::vector<int> ordinals;
    elements.ForRuns([&](int first, int count, int stride) {
        for (int i = 0; i < count; ++i) {
            ordinals.push_back(first + i * stride);
            if (ordinals.size() == kBlock) ReadElementNodes(ordinals, f);
        }
    });
    ReadElementNodes(ordinals, f);
}

void ModelWriter::ReadElementNodes(std::vector<int>& ordinals,
                                   std::function<void(int const*, int)> const& f) {
    ThrowIfInterrupted();
    std::sort(ordinals.begin(), ordinals.end());
    std::vector<int> nodes;
    std::vector<int> ofType;
    for (TypeElements const& elements : m_types) {
        ofType.clear();
        for (int const ordinal : ordinals) {
            if (&TypeOf(ordinal) == elements.type) ofType.push_back(ordinal);
        }
        if (ofType.empty()) continue;
        ofType.erase(std::unique(ofType.begin(), ofType.end()), ofType.end());
        auto const perElement = static_cast<std::size_t>(elements.type->nodes);
        std::size_t const before = nodes.size();
        nodes.resize(before + ofType.size() * perElement);
        m_connectivity.Read(m_elementCollection.CreateVolatileCSet(
                                ofType.data(), static_cast<int>(ofType.size()), false),
                            KOVSimCSet(elements.positions), nodes.data() + before);
    }
    std::sort(nodes.begin(), nodes.end());
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    if (!nodes.empty()) f(nodes.data(), static_cast<int>(nodes.size()));
    ordinals.clear();
}

// One compartment for each type: (its specification, its elements).
void ModelWriter::WriteAssignment() {
    if (m_types.empty()) return;
    KOVSimCollection specifications(m_document.GetElementSpecCollection().GetCollection());
    KOVSimCtation::Array compartments(static_cast<int>(m_types.size()));
    int at = 0;
    for (TypeElements& elements : m_types) {
        int const index = m_document.GetCMemberIndex(elements.specification);
        KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> sets(2);
        sets.Get(0) = specifications.CreateCSet(&index, 1, false);
        sets.Get(1) = elements.members.Store(m_elementCollection);
        compartments.Get(at++) = KOVSimCompartment(sets);
    }
    KOVSimPosition const mesh = m_mesh;
    KOVSimDSetID const assignment =
        mesh.CreateTypedDSet(KOVSimCtation(compartments), schema::ElementSpecAssignment());
    m_mesh.SetElementSpecAssignment(KOVSimPosition(assignment));
}

void ModelWriter::Finish(std::string const& heading) {
    WriteNodes();
    WriteAllElements();
    std::vector<double>().swap(m_coordinates);
    m_mesh.SetUserNodes(KOVSimPosition(NodeCollection().CreateCSetStrided(0, m_nodes, 1, 1)));
    WriteAssignment();
    if (!heading.empty()) {
        m_document.GetModel().GetDataRecord().SetString(kHeadingField, ToKOVString(heading));
    }
    ThrowIfInterrupted();
}

}  // namespace kov::tool
