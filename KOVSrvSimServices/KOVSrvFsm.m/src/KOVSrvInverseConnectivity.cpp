#include "KOVSrvInverseConnectivity.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include "InverseKernels.h"
#include "KOVAssert.h"
#include "KOVSimArray.h"
#include "KOVSimCollection.h"
#include "KOVSimDSet.h"
#include "KOVSimDrawerDescription.h"
#include "KOVSimException.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "mem.h"

namespace {

struct Freed {
    void operator()(void* pointer) const { mem_Free(pointer); }
};
template <class T>
using Buffer = std::unique_ptr<T[], Freed>;

template <class T>
Buffer<T> Allocate(std::size_t count) {
    return Buffer<T>(static_cast<T*>(mem_OperatorNewThrowBuiltin(count * sizeof(T))));
}

using Drawers =
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;

std::size_t SizeOf(KOVSimCSet const& set) { return static_cast<std::size_t>(set.Size()); }

bool IsContiguous(KOVSimCSet const& set) {
    long long const bounds = set.Bounds();
    long long const lowest = static_cast<std::int32_t>(bounds & 0xffffffff);
    return set.Size() > 0 && (bounds >> 32) - lowest + 1 == set.Size();
}

int Lowest(KOVSimCSet const& set) { return static_cast<std::int32_t>(set.Bounds() & 0xffffffff); }

// The members of a set, ascending. They are written out only where they do not follow each other.
class MembersOf {
  public:
    explicit MembersOf(KOVSimCSet const& set) {
        if (IsContiguous(set)) {
            m_members.first = Lowest(set);
            return;
        }
        m_listed = Allocate<int>(SizeOf(set));
        set.Members(m_listed.get());
        m_members.listed = m_listed.get();
    }
    kov::fsm::Members Get() const { return m_members; }

  private:
    Buffer<int> m_listed;
    kov::fsm::Members m_members;
};

// The stored twin of an ascending set, or a temporary set made for it.
KOVSimCSetID StoredTwin(KOVSimCollection& collection, KOVSimCSet const& set) {
    KOVSimCSetID const stored = collection.SeekCSet(set, false);
    if (!stored.IsNull()) return stored;
    if (IsContiguous(set)) {
        return collection.CreateTempCSetStrided(Lowest(set), set.Size(), 1, 1);
    }
    Buffer<int> const members = Allocate<int>(SizeOf(set));
    set.Members(members.get());
    return collection.CreateTempCSet(members.get(), set.Size(), false);
}

// What pass one keeps of a drawer for pass two; without data where no element is taken.
struct Block {
    Buffer<int> data;
    KOVSimCSetID elements;
    KOVSimCSetID positions;
};

// Undoes an inversion that does not come to its end: reading a block may throw, and half a table
// would be taken for a whole one.
template <class Undo>
class Unless {
  public:
    explicit Unless(Undo undo) : m_undo(undo) {}
    Unless(Unless const&) = delete;
    Unless& operator=(Unless const&) = delete;
    ~Unless() {
        if (!m_done) m_undo();
    }
    void Done() { m_done = true; }

  private:
    Undo m_undo;
    bool m_done = false;
};

// Pass two over all blocks; each is freed as soon as its entries are written.
void FillEntries(std::vector<Block>& blocks, int const* offsets, int nodes,
                 std::uint32_t* entries) {
    // The next free entry of each node.
    Buffer<int> const next = Allocate<int>(static_cast<std::size_t>(nodes));
    std::copy_n(offsets, nodes, next.get());
    for (Block& block : blocks) {
        if (!block.data) continue;
        KOVSimCSet const elements(block.elements);
        std::size_t const ne = SizeOf(elements);
        std::size_t const np = SizeOf(KOVSimCSet(block.positions));
        MembersOf const members(elements);
        bool const scattered = kov::fsm::IsScattered(block.data.get(), ne, np);
        kov::fsm::FillNext(block.data.get(), ne, np, members.Get(), scattered, next.get(), entries);
        block.data.reset();
    }
}

}  // namespace

KOVSrvInverseConnectivity::KOVSrvInverseConnectivity(KOVSimPosition const& mesh) : m_mesh(mesh) {}

KOVSrvInverseConnectivity::~KOVSrvInverseConnectivity() { Restart(); }

int KOVSrvInverseConnectivity::NumberNodes() const {
    KOVSimPosition const nodes = m_mesh.GetPosition(schema::Mesh_nodes());
    return KOVSimCollection(nodes.GetCollection()).Space();
}

void KOVSrvInverseConnectivity::Restart() {
    m_total = 0;
    mem_Free(m_offsets);
    mem_Free(m_inverse);
    m_offsets = nullptr;
    m_inverse = nullptr;
}

void KOVSrvInverseConnectivity::AllocateOffsets(int nodes) {
    std::size_t const count = static_cast<std::size_t>(nodes) + 1;
    m_offsets = Allocate<int>(count).release();
    std::fill_n(m_offsets, count, 0);
}

void KOVSrvInverseConnectivity::AllocateEntries() {
    std::size_t const bytes = static_cast<std::size_t>(m_total) * sizeof(std::uint32_t);
    m_inverse = static_cast<std::uint32_t*>(mem_OperatorNewTinyThrow(bytes));
}

void KOVSrvInverseConnectivity::Invert() {
    Restart();
    Unless unfinished([this] { Restart(); });
    InvertDrawers();
    unfinished.Done();
}

void KOVSrvInverseConnectivity::Invert(KOVSimCSetID const& elements) {
    Restart();
    Unless unfinished([this] { Restart(); });
    InvertShares(elements);
    unfinished.Done();
}

void KOVSrvInverseConnectivity::InvertDrawers() {
    int const nodes = NumberNodes();
    AllocateOffsets(nodes);

    KOVSimDSet const connectivity(m_mesh.GetPosition(schema::Mesh_connectivity()).GetDSet());
    if (connectivity.IsEmpty()) return;
    KOVSimDistribution distribution(connectivity.GetRelationalDistributionID());
    Drawers drawers;
    distribution.QueryDrawers(drawers);

    std::vector<Block> blocks;
    for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
        Block block;
        block.elements = drawer.compartment.CSet(0).ID();
        block.positions = drawer.compartment.CSet(1).ID();
        block.data.reset(
            ReadConnectivityBlockAndCount(distribution, block.elements, block.positions));
        blocks.push_back(std::move(block));
    }

    ConvertCountToOffsetArray(nodes);
    if (m_total == 0) return;
    AllocateEntries();
    FillEntries(blocks, m_offsets, nodes, m_inverse);
}

void KOVSrvInverseConnectivity::InvertShares(KOVSimCSetID const& elements) {
    KOVSimCSet const elset(elements);
    // The rows of a block follow the set of the view, and pass two takes its members ascending.
    KOV_UTT_ASSERT(elset.IsAscending() || elset.Size() == 0);
    int const nodes = NumberNodes();
    AllocateOffsets(nodes);

    KOVSimDSet const connectivity(m_mesh.GetPosition(schema::Mesh_connectivity()).GetDSet());
    if (connectivity.IsEmpty()) return;
    KOVSimDistribution distribution(connectivity.GetRelationalDistributionID());
    Drawers drawers;
    distribution.QueryDrawers(drawers);
    KOVSimCollection collection(elements.CollectionID());

    std::vector<Block> blocks;
    for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
        KOVSimCSet const taken = elset.Intersection(drawer.compartment.CSet(0));
        Block block;
        if (!taken.IsEmpty()) {
            block.elements = StoredTwin(collection, taken);
            block.positions = drawer.compartment.CSet(1).ID();
            block.data.reset(
                ReadConnectivityBlockAndCount(distribution, block.elements, block.positions));
        }
        blocks.push_back(std::move(block));
    }

    ConvertCountToOffsetArray(nodes);
    if (m_total == 0) return;
    AllocateEntries();
    std::memset(m_inverse, 0xff, static_cast<std::size_t>(m_total) * sizeof(std::uint32_t));
    FillEntries(blocks, m_offsets, nodes, m_inverse);
}

int* KOVSrvInverseConnectivity::ReadConnectivityBlockAndCount(KOVSimDistribution& distribution,
                                                              KOVSimCSetID const& elements,
                                                              KOVSimCSetID const& positions) {
    std::size_t const ne = SizeOf(KOVSimCSet(elements));
    std::size_t const np = SizeOf(KOVSimCSet(positions));
    std::size_t const ndata = ne * np;

    KOVSimTransfer read(distribution);
    read.SetRead().SetBufferPadding(false).SetDim(0, elements).SetDim(1, positions).CheckView();
    std::size_t const size = static_cast<std::size_t>(read.RequiredBufferSize(0));
    // clang-format off
    KOV_UTT_ASSERT(size == ndata*sizeof(int));
    // clang-format on
    if (ndata > static_cast<std::size_t>(std::numeric_limits<int>::max() - m_total)) {
        KOVSimException::ThrowText(
            "KOVSrvInverseConnectivity: more than 2147483647 entries in the inverse");
    }
    Buffer<int> data = Allocate<int>(ndata);
    read.SetBuffer(0, data.get(), size).ExecRead().RelinquishBuffers();

    kov::fsm::Count(data.get(), ndata, kov::fsm::IsScattered(data.get(), ne, np), m_offsets);
    m_total += static_cast<int>(ndata);
    return data.release();
}

void KOVSrvInverseConnectivity::ConvertCountToOffsetArray(int n) {
    int sum = 0;
    for (int i = 0; i < n; ++i) {
        int const count = m_offsets[i];
        m_offsets[i] = sum;
        sum += count;
    }
    m_offsets[n] = sum;
}

void KOVSrvInverseConnectivity::ProcessConnectivityBlock(int const* block,
                                                         KOVSimCSetID const& elements,
                                                         KOVSimCSetID const& positions,
                                                         int* cursor) {
    KOVSimCSet const set(elements);
    MembersOf const members(set);
    kov::fsm::Fill(
        block, SizeOf(set), SizeOf(KOVSimCSet(positions)), members.Get(),
        [this, cursor](int node) { return m_offsets[node] + cursor[node]++; }, m_inverse);
}
