// The assertions of the copier. Documents are made in the process that dies.
#include <vector>

#include "services/CopyFixture.h"

namespace kov::test {
namespace {

using CopyDistributionDeath = testing::Test;

Kind const kPlain{}, kGrowing{{4, 1}, 0};

// Nodes and elements as the dimensions of whatever is copied.
struct Scene {
    Scene() : transaction(mesh.Write()) {}
    KOVSimDistributionID New(int dimensions,
                             KOVSimRangeType const& range = KOVSimRangeType(KOVSimTypeKeyDouble)) {
        std::vector<KOVSimCollection> collections{mesh.nodes, mesh.components};
        collections.resize(static_cast<std::size_t>(dimensions));
        return NewDistribution(mesh.document, collections, range);
    }
    KOVSimDistributionID WithDrawer(Kind const& kind, std::vector<int> const& nodes) {
        KOVSimDistributionID const made = New(2);
        Add(made, kind, nodes);
        return made;
    }
    void Add(KOVSimDistributionID const& to, Kind const& kind, std::vector<int> const& nodes) {
        AddDrawer(to, kind, {mesh.Nodes(nodes), mesh.Components({0})},
                  std::vector<double>(nodes.size(), 1));
    }
    std::vector<KOVSimCSetID> Sets(std::vector<int> const& nodes) const {
        return {mesh.Nodes(nodes), mesh.Components({0})};
    }

    MeshDocument mesh;
    std::unique_ptr<KOVSimTransaction> transaction;
};

// The tests stand in this order: of several that apply, the first is seen.
constexpr char const* kDimensions = "\"The dimensions of the two distributions must match\" == 0";
constexpr char const* kReadSets =
    "\"CSets missing for all domains of distribution being read\" == 0";
constexpr char const* kWrittenSets =
    "\"CSets missing for all domains of distribution being written\" == 0";

TEST(CopyDistributionDeath, DistributionsOfDifferentDimensionsAreRefused) {
    for (int dimensions : {1, 2}) {
        ExpectCopierAssertion(kDimensions, [&] {
            Scene scene;
            Copy(scene.New(3 - dimensions), scene.New(dimensions), scene.Sets({1}),
                 scene.Sets({1}));
        });
    }
    ExpectCopierAssertion(kDimensions, [] {
        Scene scene;
        Copy(scene.New(1), scene.New(2), {}, {});
    });
}

TEST(CopyDistributionDeath, AnyOtherCountOfSetsThatAreReadIsRefused) {
    for (std::size_t count : {0U, 1U, 3U}) {
        ExpectCopierAssertion(kReadSets, [&] {
            Scene scene;
            std::vector<KOVSimCSetID> sets = scene.Sets({1});
            sets.resize(count);
            Copy(scene.New(2), scene.New(2), scene.Sets({1}), sets);
        });
    }
    ExpectCopierAssertion(kReadSets, [] {
        Scene scene;
        Copy(scene.New(2), scene.New(2), {}, {});
    });
}

TEST(CopyDistributionDeath, AnyOtherCountOfSetsThatAreWrittenIsRefused) {
    for (std::size_t count : {0U, 1U, 3U}) {
        ExpectCopierAssertion(kWrittenSets, [&] {
            Scene scene;
            std::vector<KOVSimCSetID> sets = scene.Sets({1});
            sets.resize(count);
            Copy(scene.New(2), scene.New(2), sets, scene.Sets({1}));
        });
    }
}

TEST(CopyDistributionDeath, GrowingDrawerBesideSeveralIsRefused) {
    ExpectCopierAssertion("writeDrwDescArray.Size() == 0 || writeDrwDescArray.Size() == 1", [] {
        Scene scene;
        KOVSimDistributionID const read = scene.WithDrawer(kGrowing, {1});
        KOVSimDistributionID const written = scene.WithDrawer(kPlain, {1});
        scene.Add(written, kGrowing, {2});
        Copy(written, read, scene.Sets({1}), scene.Sets({1}));
    });
}

// Replaces the first target by a set of its own.
class Replace : public KOVSrvDistributionTransform {
  public:
    explicit Replace(KOVSimCSetID const& set) : m_set(set) {}
    void Update(void*, SetIDs& targetSets) const override { targetSets.Get(0) = m_set; }

  private:
    KOVSimCSetID m_set;
};

constexpr char const* kSize = "bufferSize == writeTrans.RequiredBufferSize()";

TEST(CopyDistributionDeath, TransformThatChangesTheSizeIsRefused) {
    for (std::vector<int> const& other : {std::vector<int>{7}, std::vector<int>{7, 8, 9}}) {
        ExpectCopierAssertion(kSize, [&] {
            Scene scene;
            Copy(scene.New(2), scene.WithDrawer(kPlain, {1, 2}), scene.Sets({1, 2}),
                 scene.Sets({1, 2}), Replace(scene.mesh.Nodes(other)));
        });
    }
}

TEST(CopyDistributionDeath, EntriesOfAnotherSizeAreRefused) {
    ExpectCopierAssertion(kSize, [] {
        Scene scene;
        Copy(scene.New(2, KOVSimRangeType(KOVSimTypeKeyInt)), scene.WithDrawer(kPlain, {1, 2}),
             scene.Sets({1, 2}), scene.Sets({1, 2}));
    });
}

// The map leaves out what is not paired.
TEST(CopyDistributionDeath, DrawerWithMembersThatAreNotPairedIsRefused) {
    for (std::vector<int> const& paired : {std::vector<int>{1, 3}, std::vector<int>{8, 9}}) {
        ExpectCopierAssertion(kSize, [&] {
            Scene scene;
            Copy(scene.New(2), scene.WithDrawer(kGrowing, {1, 2, 3}), scene.Sets(paired),
                 scene.Sets(paired));
        });
    }
    ExpectCopierAssertion(kSize, [] {
        Scene scene;
        KOVSimCSetID const ordered = MeshDocument::Ordered(scene.mesh.nodes, {3, 1});
        KOVSimCSetID const component = scene.mesh.Components({0});
        Copy(scene.New(2), scene.WithDrawer(kGrowing, {1, 2, 3}), {ordered, component},
             {ordered, component});
    });
}

}  // namespace
}  // namespace kov::test
