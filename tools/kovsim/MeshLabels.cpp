#include "MeshLabels.h"

#include <algorithm>
#include <cstdint>

#include "DocumentReader.h"
#include "Interrupt.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "Names.h"

namespace kov::tool {
namespace {

using Drawers =
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;

constexpr int kBlock = 1 << 20;                          // ordinals in one transfer
constexpr std::int64_t kWindow = std::int64_t{1} << 28;  // labels in one bit map

struct Bounds {
    int first;
    int last;
};

Bounds BoundsOf(KOVSimCSet const& set) {
    long long const bounds = set.Bounds();
    return {static_cast<int>(bounds & 0xffffffff), static_cast<int>(bounds >> 32)};
}

bool Ascends(std::vector<int> const& values) {
    return std::adjacent_find(values.begin(), values.end(), [](int a, int b) { return a >= b; }) ==
           values.end();
}

}  // namespace

MeshLabels::MeshLabels(KOVObjDocument const& document, KOVObjLabelerType type) {
    bool const nodes = type == KOVObjLabelerNodes;
    KOVObjMesh const mesh(document.GetMesh());
    m_collection = CollectionAt(nodes ? mesh.GetNodeCollection() : mesh.GetElementCollection());
    int const map = nodes ? schema::Focus_nodeLabels() : schema::Focus_elementLabels();
    for (KOVSimMapiterator at = document.Focus().GetMap(map).Begin(); at.NotDone(); ++at) {
        Instance& instance = m_instances.emplace_back();
        m_names.push_back(Plain(at.Key()));
        instance.ordinals = KOVSimCSet(m_collection.ID());
        KOVSimDistributionID const id =
            at.Value().GetPosition(schema::Labels_distribution()).GetDistribution();
        Drawers drawers;
        if (!id.IsNull()) {
            instance.distribution = KOVSimDistribution(id);
            instance.distribution.QueryDrawers(drawers);
        }
        if (drawers.Size() > 0) {
            instance.drawer = drawers.ConstGet(0).drawerID;
            instance.ordinals = drawers.ConstGet(0).compartment.CSet(0);
            if (instance.distribution.NumDimensions() != 1 ||
                instance.distribution.Range().Key() == KOVSimTypeKeyDouble ||
                instance.ordinals.CollectionID() != m_collection.ID()) {
                throw DocumentFault("the labels of instance " + NameText(m_names.back()) +
                                    " are not those of the mesh's " +
                                    (nodes ? "nodes" : "elements"));
            }
        }
        instance.own = instance.ordinals;
    }
    SettleOverlaps();
}

// Instances whose ordinals lie apart, as translators make them, are left as they are.
void MeshLabels::SettleOverlaps() {
    std::vector<Bounds> bounds;
    for (Instance const& instance : m_instances) {
        if (!instance.ordinals.IsEmpty()) bounds.push_back(BoundsOf(instance.ordinals));
    }
    std::sort(bounds.begin(), bounds.end(),
              [](Bounds const& a, Bounds const& b) { return a.first < b.first; });
    bool const apart =
        std::adjacent_find(bounds.begin(), bounds.end(), [](Bounds const& a, Bounds const& b) {
            return b.first <= a.last;
        }) == bounds.end();
    if (apart) return;
    KOVSimCSet taken(m_collection.ID());
    for (Instance& instance : m_instances) {
        instance.own = instance.ordinals - taken;
        taken = taken.Union(instance.ordinals);
    }
}

int MeshLabels::Find(std::string_view name) const {
    auto const at = std::lower_bound(m_names.begin(), m_names.end(), name);
    return at != m_names.end() && *at == name ? static_cast<int>(at - m_names.begin()) : -1;
}

void MeshLabels::Read(int instance, KOVSimCSet const& members, int* labels) const {
    KOVSimTransfer transfer(At(instance).distribution);
    transfer.SetRead().SetBufferPadding(false).SetDrawer(At(instance).drawer).SetDim(0, members);
    transfer.CheckView();
    transfer.SetBuffer(0, labels, sizeof(int) * static_cast<unsigned long>(members.Size()));
    transfer.ExecRead().RelinquishBuffers();
}

void MeshLabels::ForInstances(
    KOVSimCSet const& set,
    std::function<void(int instance, KOVSimCSet const& members)> const& f) const {
    if (set.IsEmpty()) return;
    Bounds const all = BoundsOf(set);
    std::int64_t labelled = 0;
    int const count = static_cast<int>(m_instances.size());
    for (int i = 0; i < count; ++i) {
        KOVSimCSet const& own = At(i).own;
        if (own.IsEmpty()) continue;
        Bounds const bounds = BoundsOf(own);
        if (bounds.last < all.first || bounds.first > all.last) continue;
        KOVSimCSet const members = set.Intersection(own);
        if (members.IsEmpty()) continue;
        labelled += members.Size();
        f(i, members);
    }
    if (labelled == set.Size()) return;
    KOVSimCSet rest = set.Union(KOVSimCSet(set.CollectionID()));
    for (Instance const& instance : m_instances) rest = rest - instance.own;
    if (!rest.IsEmpty()) f(-1, rest);
}

template <class F>
void MeshLabels::ForLabelBlocks(int instance, KOVSimCSet const& members, F&& f) const {
    std::vector<int> labels;
    Bounds const bounds = BoundsOf(members);
    for (std::int64_t first = bounds.first; first <= bounds.last; first += kBlock) {
        ThrowIfInterrupted();
        auto const count =
            static_cast<int>(std::min<std::int64_t>(kBlock, bounds.last - first + 1));
        KOVSimCSet const block = members.Intersection(
            m_collection.CreateVolatileCSetStrided(static_cast<int>(first), count, 1, 1));
        if (block.IsEmpty()) continue;
        labels.resize(static_cast<std::size_t>(block.Size()));
        instance < 0 ? block.Members(labels.data()) : Read(instance, block, labels.data());
        f(labels);
    }
}

void MeshLabels::ForRanges(int instance, KOVSimCSet const& members,
                           std::function<void(LabelRange const&)> const& f, int sorted) const {
    if (members.IsEmpty()) return;
    if (members.Size() > sorted) return FoldMarked(instance, members, f);
    std::vector<int> labels(static_cast<std::size_t>(members.Size()));
    instance < 0 ? members.Members(labels.data()) : Read(instance, members, labels.data());
    if (!Ascends(labels)) {
        std::sort(labels.begin(), labels.end());
        labels.erase(std::unique(labels.begin(), labels.end()), labels.end());
    }
    RangeFolder folder(f);
    for (int const label : labels) folder.Add(label);
    folder.Finish();
}

void MeshLabels::FoldMarked(int instance, KOVSimCSet const& members,
                            std::function<void(LabelRange const&)> const& f) const {
    RangeFolder folder(f);
    // The first pass finds how far the labels reach, and whether they ascend with the ordinals.
    bool ascends = true;
    std::int64_t last = INT64_MIN;
    std::int64_t lowest = INT64_MAX;
    std::int64_t highest = INT64_MIN;
    ForLabelBlocks(instance, members, [&](std::vector<int> const& labels) {
        ascends = ascends && labels.front() > last && Ascends(labels);
        last = labels.back();
        auto const [low, high] = std::minmax_element(labels.begin(), labels.end());
        lowest = std::min<std::int64_t>(lowest, *low);
        highest = std::max<std::int64_t>(highest, *high);
    });
    if (ascends) {
        ForLabelBlocks(instance, members, [&](std::vector<int> const& labels) {
            for (int const label : labels) folder.Add(label);
        });
        return folder.Finish();
    }
    std::vector<std::uint64_t> marks;
    for (std::int64_t first = lowest; first <= highest; first += kWindow) {
        std::int64_t const width = std::min(kWindow, highest - first + 1);
        marks.assign(static_cast<std::size_t>(width + 63) / 64, 0);
        ForLabelBlocks(instance, members, [&](std::vector<int> const& labels) {
            for (int const label : labels) {
                std::int64_t const place = label - first;
                if (place < 0 || place >= width) continue;
                marks[static_cast<std::size_t>(place) / 64] |= std::uint64_t{1} << (place % 64);
            }
        });
        for (std::size_t word = 0; word < marks.size(); ++word) {
            for (std::uint64_t rest = marks[word]; rest != 0; rest &= rest - 1) {
                folder.Add(static_cast<int>(first + static_cast<std::int64_t>(word) * 64 +
                                            __builtin_ctzll(rest)));
            }
        }
    }
    folder.Finish();
}

std::vector<Labelled> MeshLabels::Look(std::vector<int> const& ordinals) const {
    std::vector<Labelled> found(ordinals.size());
    if (ordinals.empty()) return found;
    KOVSimCSet const asked =
        m_collection.CreateVolatileCSet(ordinals.data(), static_cast<int>(ordinals.size()), false);
    std::vector<int> members;
    std::vector<int> labels;
    ForInstances(asked, [&](int instance, KOVSimCSet const& set) {
        if (instance < 0) return;
        members.resize(static_cast<std::size_t>(set.Size()));
        labels.resize(members.size());
        set.Members(members.data());
        Read(instance, set, labels.data());
        auto at = ordinals.begin();
        for (std::size_t i = 0; i < members.size(); ++i) {
            at = std::lower_bound(at, ordinals.end(), members[i]);
            found[static_cast<std::size_t>(at - ordinals.begin())] = {instance, labels[i]};
        }
    });
    return found;
}

}  // namespace kov::tool
