#include "KOVSrvLabelMapper.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

#include "KOVAssert.h"
#include "KOVObjMesh.h"
#include "KOVObjModel.h"
#include "KOVSimCollection.h"
#include "KOVSimException.h"
#include "KOVSimSchema.h"
#include "LabelTable.h"

using kov::fsm::AllocateQuads;
using kov::fsm::CopySorted;
using kov::fsm::IsSortedByPrimaryOrdinal;
using kov::fsm::Quads;

namespace {

using Quad = KOVSrvLabelMapperQuad;

template <class Integer>
std::size_t Count(Integer count) {
    return static_cast<std::size_t>(count);
}

// Ints that hold the members of a set first, and what is collected for them afterwards.
class Buffer {
  public:
    explicit Buffer(int size)
        : m_data(static_cast<int*>(mem_OperatorNewThrowBuiltin(Count(size) * sizeof(int)))) {}
    ~Buffer() { mem_Free(m_data); }
    Buffer(Buffer const&) = delete;
    Buffer& operator=(Buffer const&) = delete;
    int* Get() const { return m_data; }

  private:
    int* m_data;
};

// The row of an ordinal, or null.
Quad const* Find(Quad const* quads, int count, int ordinal) {
    if (count == 0) return nullptr;
    // Most tables have hardly a gap.
    std::int64_t const guess = std::int64_t{ordinal} - quads[0].primaryOrdinal;
    if (guess >= 0 && guess < count && quads[guess].primaryOrdinal == ordinal) return quads + guess;
    return static_cast<Quad const*>(std::bsearch(&ordinal, quads, Count(count), sizeof(Quad),
                                                 KOVSrvLabelMapper::IntQuadCompare));
}

// The first row from `at` on whose ordinal is not smaller. It looks ahead in growing steps, so that
// a small set does not walk a large table.
Quad const* Forward(Quad const* at, Quad const* end, int ordinal) {
    auto const smaller = [](Quad const& row, int sought) { return row.primaryOrdinal < sought; };
    if (at == end || !smaller(*at, ordinal)) return at;
    std::ptrdiff_t step = 1;
    while (step < end - at && smaller(at[step], ordinal)) {
        at += step;
        step *= 2;
    }
    return std::lower_bound(at + 1, at + std::min(step, end - at), ordinal, smaller);
}

// Collects from the row of each member of the set that has one, in the set's order. `buffer`:
// room for all members. Answers how many were collected.
template <class Collect>
int Walk(Quad const* quads, int count, KOVSimCSet const& set, int* buffer, Collect collect) {
    int const size = set.Size();
    int found = 0;
    if (!set.IsAscending()) {
        set.OrderedMembers(buffer);
        for (int i = 0; i < size; ++i) {
            if (Quad const* const row = Find(quads, count, buffer[i]))
                buffer[found++] = collect(row);
        }
        return found;
    }
    set.Members(buffer);
    Quad const* at = quads;
    Quad const* const end = quads + count;
    for (int i = 0; i < size && at != end; ++i) {
        at = Forward(at, end, buffer[i]);
        if (at != end && at->primaryOrdinal == buffer[i]) buffer[found++] = collect(at++);
    }
    return found;
}

KOVSimCSet SetOfField(int Quad::*field, Quad const* quads, int count,
                      KOVSimCollectionID const& collection) {
    Buffer const list(count);
    std::transform(quads, quads + count, list.Get(), [field](Quad const& q) { return q.*field; });
    return KOVSimCollection(collection).CreateVolatileCSet(list.Get(), count, false);
}

}  // namespace

KOVSrvLabelMapper::KOVSrvLabelMapper(KOVSimPosition const& primary, KOVSimPosition const& secondary)
    : m_primary(primary), m_secondary(secondary) {}

KOVSrvLabelMapper::~KOVSrvLabelMapper() {
    mem_Free(m_nodes);
    mem_Free(m_elements);
    m_nodes = nullptr;
    m_elements = nullptr;
}

Quad* KOVSrvLabelMapper::ReadLabels(KOVObjLabeler const& labeler, KOVString const& instance,
                                    int& count) {
    KOVBasVector<int> labels;
    KOVBasVector<int> ordinals;
    if (labeler.IsInstanceValid(instance))
        labeler.GetInstanceLabelsAndOrdinals(instance, labels, ordinals);
    Quads quads = AllocateQuads(Count(labels.Size()));
    for (int i = 0; i < labels.Size(); ++i)
        quads[Count(i)] = Quad{labels[i], ordinals[i], -1, labels[i]};
    count = labels.Size();
    return quads.release();
}

Quad* KOVSrvLabelMapper::RemapInstanceBasedOnUserLabels(KOVObjLabeler const& primary,
                                                        KOVObjLabeler const& secondary,
                                                        KOVString const& instance,
                                                        int instanceIndex, int& count) {
    int rows = 0;
    Quads a(ReadLabels(primary, instance, rows));
    KOVBasVector<int> labels;
    KOVBasVector<int> ordinals;
    if (secondary.IsInstanceValid(instance))
        secondary.GetInstanceLabelsAndOrdinals(instance, labels, ordinals);

    int common = 0;
    for (int i = 0, j = 0; i < rows && j < labels.Size();) {
        Quad const& row = a[Count(i)];
        if (row.userLabel == labels[j]) {
            a[Count(common++)] = Quad{row.secondaryOrdinal, ordinals[j], instanceIndex, labels[j]};
            ++i;
            ++j;
        } else if (labels[j] < row.userLabel) {
            ++j;
        } else {
            ++i;
        }
    }
    count = common;
    return a.release();
}

Quad* KOVSrvLabelMapper::RemapBasedOnUserLabels(KOVObjLabelerType type, int& count) {
    KOVObjLabeler primary(m_primary, type);
    primary.Read();
    KOVObjLabeler secondary(m_secondary, type);
    secondary.Read();
    m_occurrences = primary.Occurrences();

    // Instances are taken by their lowest primary ordinals, and each is sorted by itself. As a rule
    // they lie one behind the other in the flat mesh, and that is the order of the whole.
    struct Instance {
        int lowest;
        int index;
    };
    std::vector<Instance> instances;
    // No instance can have more rows than either side has labels; mostly it has as many.
    std::size_t most = 0;
    for (int i = 0; i < m_occurrences.Size(); ++i) {
        KOVString const& name = m_occurrences.ConstGet(i);
        KOVSimCSet const ordinals = primary.GetInstanceOrdinals(name);
        int const size = std::min(ordinals.Size(), secondary.GetInstanceOrdinals(name).Size());
        if (size == 0) continue;
        instances.push_back({static_cast<int>(ordinals.Bounds() & 0xffffffff), i});
        most += Count(size);
    }
    std::stable_sort(instances.begin(), instances.end(),
                     [](Instance const& a, Instance const& b) { return a.lowest < b.lowest; });

    Quads table = AllocateQuads(most);
    std::size_t ntotal = 0;
    std::size_t n = 0;
    for (Instance const& instance : instances) {
        int c = 0;
        Quads const q(RemapInstanceBasedOnUserLabels(
            primary, secondary, m_occurrences.ConstGet(instance.index), instance.index, c));
        ntotal += Count(c);
        n = Count(CopySorted(q.get(), Count(c), table.get() + n) - table.get());
    }
    KOV_UTT_ASSERT(n == ntotal);
    if (ntotal > Count(std::numeric_limits<int>::max()))
        KOVSimException::ThrowText("KOVSrvLabelMapper: more than 2147483647 common labels");
    if (n < most / 2 || !IsSortedByPrimaryOrdinal(table.get(), n)) {
        Quads sorted = AllocateQuads(n);
        CopySorted(table.get(), n, sorted.get());
        table = std::move(sorted);
    }
    count = static_cast<int>(ntotal);
    return table.release();
}

int KOVSrvLabelMapper::IntQuadCompare(void const* itemA, void const* itemB) {
    KOV_UTT_ASSERT(itemA != NULL);
    KOV_UTT_ASSERT(itemB != NULL);
    int const a = *static_cast<int const*>(itemA);
    int const b = *static_cast<int const*>(itemB);
    return (a > b) - (a < b);
}

KOVSrvLabelMapper::Ordinals KOVSrvLabelMapper::GetMappingFromPrimarySet(Quad* quads, int count,
                                                                        KOVSimCSetID set) {
    KOVSimCSet const opened(set);
    Buffer const buffer(opened.Size());
    int const found = Walk(quads, count, opened, buffer.Get(),
                           [quads](Quad const* row) { return static_cast<int>(row - quads); });
    Ordinals mapping(found);
    std::copy_n(buffer.Get(), found, mapping.Ptr());
    return mapping;
}

KOVSimCSet KOVSrvLabelMapper::MapSet(Quad* quads, int count, KOVSimCSetID set,
                                     KOVSimCollectionID collection, bool unordered) {
    KOVSimCSet const opened(set);
    Buffer const buffer(opened.Size());
    int const found = Walk(quads, count, opened, buffer.Get(),
                           [](Quad const* row) { return row->secondaryOrdinal; });
    KOVSimCollection const target(collection);
    return unordered ? target.CreateVolatileCSet(buffer.Get(), found, false)
                     : target.CreateVolatileOrderedCSet(buffer.Get(), found);
}

KOVSimCSet KOVSrvLabelMapper::GetCommonPrimarySet(Quad* quads, int count,
                                                  KOVSimCollectionID collection) {
    return SetOfField(&Quad::primaryOrdinal, quads, count, collection);
}

KOVSimCSet KOVSrvLabelMapper::GetCommonSecondarySet(Quad* quads, int count,
                                                    KOVSimCollectionID collection) {
    return SetOfField(&Quad::secondaryOrdinal, quads, count, collection);
}

KOVSimCollectionID KOVSrvLabelMapper::GetCollection(KOVSimPosition const& position,
                                                    int meshMember) const {
    KOVObjModel const model(position.GetPosition(schema::Focus_model()));
    return model.GetMesh().GetPosition(meshMember).GetCollection();
}

void KOVSrvLabelMapper::NeedElements() {
    if (m_elements) return;
    m_elements = RemapBasedOnUserLabels(KOVObjLabelerElements, m_nelements);
    m_elementOccurrences = m_occurrences;
}

void KOVSrvLabelMapper::NeedNodes() {
    if (m_nodes) return;
    m_nodes = RemapBasedOnUserLabels(KOVObjLabelerNodes, m_nnodes);
    m_nodeOccurrences = m_occurrences;
}

KOVSrvLabelMapper::Ordinals KOVSrvLabelMapper::GetMappingFromPrimaryElementSet(KOVSimCSetID set) {
    NeedElements();
    return GetMappingFromPrimarySet(m_elements, m_nelements, set);
}

KOVSrvLabelMapper::Ordinals KOVSrvLabelMapper::GetMappingFromPrimaryNodeSet(KOVSimCSetID set) {
    NeedNodes();
    return GetMappingFromPrimarySet(m_nodes, m_nnodes, set);
}

KOVSimCSet KOVSrvLabelMapper::GetCommonPrimaryElementSet() {
    NeedElements();
    return GetCommonPrimarySet(m_elements, m_nelements,
                               GetCollection(m_primary, schema::Mesh_elements()));
}

KOVSimCSet KOVSrvLabelMapper::GetCommonPrimaryNodeSet() {
    NeedNodes();
    return GetCommonPrimarySet(m_nodes, m_nnodes, GetCollection(m_primary, schema::Mesh_nodes()));
}

KOVSimCSet KOVSrvLabelMapper::GetCommonSecondaryElementSet() {
    NeedElements();
    return GetCommonSecondarySet(m_elements, m_nelements,
                                 GetCollection(m_secondary, schema::Mesh_elements()));
}

KOVSimCSet KOVSrvLabelMapper::GetCommonSecondaryNodeSet() {
    NeedNodes();
    return GetCommonSecondarySet(m_nodes, m_nnodes,
                                 GetCollection(m_secondary, schema::Mesh_nodes()));
}

KOVSimCSet KOVSrvLabelMapper::GetSecondaryElementSet(KOVSimCSetID const& primaryElementSet,
                                                     bool unordered) {
    NeedElements();
    KOVSimCollectionID const elementCol = GetCollection(m_secondary, schema::Mesh_elements());
    KOV_UTT_ASSERT(primaryElementSet.CollectionID() != elementCol);
    return MapSet(m_elements, m_nelements, primaryElementSet, elementCol, unordered);
}

KOVSimCSet KOVSrvLabelMapper::GetSecondaryNodeSet(KOVSimCSetID const& primaryNodeSet,
                                                  bool unordered) {
    NeedNodes();
    KOVSimCollectionID const nodeCol = GetCollection(m_secondary, schema::Mesh_nodes());
    KOV_UTT_ASSERT(primaryNodeSet.CollectionID() != nodeCol);
    return MapSet(m_nodes, m_nnodes, primaryNodeSet, nodeCol, unordered);
}

int KOVSrvLabelMapper::GetElementMappingOrdinalUserLabel(int mappingOrdinal) const {
    KOV_UTT_ASSERT(m_elements != 0);
    KOV_UTT_ASSERT(mappingOrdinal < m_nelements);
    return m_elements[mappingOrdinal].userLabel;
}

int KOVSrvLabelMapper::GetNodeMappingOrdinalUserLabel(int mappingOrdinal) const {
    KOV_UTT_ASSERT(m_nodes != 0);
    KOV_UTT_ASSERT(mappingOrdinal < m_nnodes);
    return m_nodes[mappingOrdinal].userLabel;
}

KOVString KOVSrvLabelMapper::GetElementMappingOrdinalInstanceName(int mappingOrdinal) const {
    KOV_UTT_ASSERT(m_elements != 0);
    KOV_UTT_ASSERT(mappingOrdinal < m_nelements);
    return m_elementOccurrences.ConstGet(m_elements[mappingOrdinal].instanceIndex);
}

KOVString KOVSrvLabelMapper::GetNodeMappingOrdinalInstanceName(int mappingOrdinal) const {
    KOV_UTT_ASSERT(m_nodes != 0);
    KOV_UTT_ASSERT(mappingOrdinal < m_nnodes);
    return m_nodeOccurrences.ConstGet(m_nodes[mappingOrdinal].instanceIndex);
}
