// Distributions of one and two dimensions with drawers of every kind, for the copier: how they are
// made, and what they hold as a plain map.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "KOVSrvCopyDistribution.h"
#include "services/MeshFixture.h"

namespace kov::test {

using SetIDs = KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>;

inline SetIDs IDs(std::vector<KOVSimCSetID> const& given) {
    SetIDs ids(static_cast<int>(given.size()));
    for (std::size_t i = 0; i < given.size(); ++i) ids.Get(static_cast<int>(i)) = given[i];
    return ids;
}

/// How a drawer is made: its chunk sizes, none for a plain one, and the dimension that grows.
struct Kind {
    std::vector<int> chunks;
    int growing = -1;
    bool operator==(Kind const& other) const {
        return chunks == other.chunks && growing == other.growing;
    }
};
inline std::ostream& operator<<(std::ostream& out, Kind const& kind) {
    return out << testing::PrintToString(kind.chunks) << " growing " << kind.growing;
}

/// (member of dimension 0, of dimension 1 or 0) -> what stands there.
using Entries = std::map<std::pair<int, int>, double>;

/// A new distribution over these collections. In a transaction.
inline KOVSimDistributionID NewDistribution(
    KOVObjDocument const& document, std::vector<KOVSimCollection> const& collections,
    KOVSimRangeType const& range = KOVSimRangeType(KOVSimTypeKeyDouble)) {
    KOVSimGrid::CollectionArray grid(static_cast<int>(collections.size()), 0);
    for (std::size_t i = 0; i < collections.size(); ++i) {
        grid.Get(static_cast<int>(i)) = collections[i].ID();
    }
    return document.CreateDistribution(KOVSimGrid(grid), range, -1);
}

/// A new drawer of that kind, filled in the order of the sets. In a transaction.
template <class Number>
void AddDrawer(KOVSimDistributionID const& distribution, Kind const& kind,
               std::vector<KOVSimCSetID> const& sets, std::vector<Number> const& data) {
    KOVSimTransfer write{KOVSimDistribution(distribution)};
    write.SetWrite().SetBufferPadding(false);
    if (kind.chunks.empty()) {
        write.SetMakeNewDrawer();
    } else {
        Ints chunks(static_cast<int>(kind.chunks.size()));
        std::copy(kind.chunks.begin(), kind.chunks.end(), chunks.begin());
        write.SetMakeNewDrawerChunked(chunks);
    }
    if (kind.growing >= 0) write.SetExtendableDim(kind.growing);
    for (std::size_t i = 0; i < sets.size(); ++i) write.SetDim(static_cast<int>(i), sets[i]);
    write.CheckView().SetBuffer(0, data.data(), data.size() * sizeof(Number)).ExecWrite();
    write.RelinquishBuffers();
}

inline std::vector<Kind> KindsOf(KOVSimDistributionID const& distribution) {
    std::vector<Kind> kinds;
    for (auto const& drawer : MeshDocument::Drawers(KOVSimDistribution(distribution))) {
        kinds.push_back({MeshDocument::ChunkSizes(drawer), drawer.extendableDim});
    }
    return kinds;
}

/// The members of each dimension of drawer `at`.
inline std::vector<std::vector<int>> SetsOf(KOVSimDistributionID const& distribution, int at) {
    auto const drawers = MeshDocument::Drawers(KOVSimDistribution(distribution));
    std::vector<std::vector<int>> sets;
    for (int i = 0; i < drawers.ConstGet(at).compartment.Size(); ++i) {
        sets.push_back(Members(drawers.ConstGet(at).compartment.CSet(i)));
    }
    return sets;
}

/// All that the distribution holds: of all drawers together, or of drawer `only` by itself.
inline Entries ContentOf(KOVSimDistributionID const& distribution, int only = -1) {
    KOVSimDistribution const opened(distribution);
    auto const drawers = MeshDocument::Drawers(opened);
    Entries content;
    for (int at = 0; at < drawers.Size(); ++at) {
        if (only >= 0 && at != only) continue;
        auto const& drawer = drawers.ConstGet(at);
        std::vector<std::vector<int>> const sets = SetsOf(distribution, at);
        KOVSimTransfer read(opened);
        read.SetRead().SetBufferPadding(false);
        if (only >= 0) read.SetDrawer(drawer.drawerID);
        for (int i = 0; i < drawer.compartment.Size(); ++i) {
            read.SetDim(i, drawer.compartment.CSet(i));
        }
        read.CheckView();
        std::vector<double> data(static_cast<std::size_t>(drawer.DataSizeItems(0)), -99);
        read.SetBuffer(0, data.data(), data.size() * sizeof(double)).ExecRead();
        std::vector<int> const columns = sets.size() > 1 ? sets[1] : std::vector<int>{0};
        auto value = data.begin();
        for (int row : sets[0]) {
            for (int column : columns) content[{row, column}] = *value++;
        }
    }
    return content;
}

inline void Copy(KOVSimDistributionID const& written, KOVSimDistributionID const& read,
                 std::vector<KOVSimCSetID> const& writtenSets,
                 std::vector<KOVSimCSetID> const& readSets,
                 KOVSrvDistributionTransform const& transform = KOVSrvDistributionTransform()) {
    KOVSrvCopyDistribution(written, read, IDs(writtenSets), IDs(readSets), transform);
}

/// Two distributions over (nodes, components): `read`, and `written`, without drawers at first.
class CopyTest : public testing::TestWithParam<Medium> {
  protected:
    CopyTest() {
        InTransaction([&] {
            read = NewDistribution(mesh.document, {mesh.nodes, mesh.components});
            written = NewDistribution(mesh.document, {mesh.nodes, mesh.components});
        });
    }
    template <class Work>
    void InTransaction(Work work) {
        auto const transaction = mesh.Write();
        work();
        transaction->Commit();
    }
    // A drawer of rows x columns whose entry (i, j) is 100 * i + j + offset.
    void Add(KOVSimDistributionID const& distribution, Kind const& kind,
             std::vector<int> const& rows, std::vector<int> const& columns, double offset = 0) {
        std::vector<double> data;
        for (int row : rows) {
            for (int column : columns) data.push_back(100 * row + column + offset);
        }
        InTransaction([&] {
            AddDrawer(distribution, kind, {mesh.Nodes(rows), mesh.Components(columns)}, data);
        });
    }
    // Nodes 0 to 99 go `shift` further, components stay.
    void CopyAll(int shift = 500,
                 KOVSrvDistributionTransform const& transform = KOVSrvDistributionTransform()) {
        InTransaction([&] {
            KOVSimCSetID const components = mesh.Components(Range(0, 38));
            Copy(written, read, {mesh.Nodes(Range(shift, 100)), components},
                 {mesh.Nodes(Range(0, 100)), components}, transform);
        });
    }
    void Reopen() {
        mesh.Reopen();
        for (KOVSimDistributionID* id : {&read, &written}) {
            KOVSimDynamicID again = id->ID();
            again.context = mesh.document.ContextID();
            *id = KOVSimDistributionID(again);
        }
    }
    static Entries Shifted(Entries const& entries, int shift) {
        Entries shifted;
        for (auto const& [place, value] : entries) {
            shifted[{place.first + shift, place.second}] = value;
        }
        return shifted;
    }

    MeshDocument mesh{GetParam(), 1000, 1000};
    KOVSimDistributionID read, written;
};
/// As ExpectCheckedAssertion, of the copier.
template <class Work>
void ExpectCopierAssertion(std::string const& condition, Work work) {
    EXPECT_EXIT(work(), testing::ExitedWithCode(1),
                testing::AllOf(testing::HasSubstr("Assertion failed: " + condition + ", at "),
                               testing::HasSubstr(
                                   "KOVSrvSimServices/KOVSrvSsm.m/src/KOVSrvDistCopier, line")));
}

}  // namespace kov::test
