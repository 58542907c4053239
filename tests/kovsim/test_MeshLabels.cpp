#include "MeshLabels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "DocumentReader.h"
#include "ModelBuilder.h"

namespace kov::test {
namespace {

using tool::Labelled;
using tool::LabelRange;
using tool::MeshLabels;
using Ints = std::vector<int>;

class MeshLabelsTest : public ::testing::Test {
  protected:
    KOVObjDocument document = KOVObjDocument::CreateInMemory();

    KOVSimCSet Set(Ints const& members) const {
        return tool::CollectionAt(KOVObjMesh(document.GetMesh()).GetNodeCollection())
            .CreateVolatileCSet(members.data(), static_cast<int>(members.size()), false);
    }
    /// Labels by instance; of members without one the ordinals, under -1.
    static std::map<int, Ints> ByInstance(MeshLabels const& labels, KOVSimCSet const& set,
                                          int sorted = MeshLabels::kSorted) {
        std::map<int, Ints> all;
        labels.ForInstances(set, [&](int instance, KOVSimCSet const& members) {
            EXPECT_EQ(all.count(instance), 0U);
            Ints& of = all[instance];
            labels.ForRanges(
                instance, members,
                [&](LabelRange const& range) {
                    for (long long at = range.first; at <= range.last; at += range.step) {
                        of.push_back(static_cast<int>(at));
                    }
                },
                sorted);
        });
        return all;
    }
};

TEST_F(MeshLabelsTest, InstancesAreNumberedByName) {
    BuildAssembly(document);
    MeshLabels const labels(document, KOVObjLabelerNodes);
    EXPECT_EQ(labels.Names(), (std::vector<std::string>{"", "My Part", "P-1"}));
    EXPECT_EQ(labels.Find("My Part"), 1);
    EXPECT_EQ(labels.Find("my part"), -1);
    EXPECT_EQ(labels.Find("Q"), -1);
    EXPECT_EQ(labels.Ordinals(2).Size(), 5);
}

TEST_F(MeshLabelsTest, MembersAreToldByInstanceAscending) {
    BuildAssembly(document);
    MeshLabels const labels(document, KOVObjLabelerNodes);
    auto const all = ByInstance(labels, Set({0, 1, 4, 6, 7, 10, 11}));
    EXPECT_EQ(all, (std::map<int, Ints>{{-1, {11}}, {0, {100}}, {1, {2, 3}}, {2, {7, 10, 30}}}));
    EXPECT_TRUE(ByInstance(labels, Set({})).empty());
}

TEST_F(MeshLabelsTest, LooksUpManyAtATime) {
    BuildAssembly(document);
    MeshLabels const labels(document, KOVObjLabelerNodes);
    Ints seen;
    for (Labelled const& found : labels.Look({0, 2, 5, 9, 10, 11})) {
        seen.insert(seen.end(), {found.instance, found.label});
    }
    EXPECT_EQ(seen, (Ints{2, 30, 2, 20, 1, 1, 1, 5, 0, 100, -1, -1}));
    EXPECT_TRUE(labels.Look({}).empty());
}

TEST_F(MeshLabelsTest, WithoutLabelsAllMembersAreWithout) {
    ModelBuilder model(document);
    model.Space(4, 0);
    model.Commit();
    MeshLabels const labels(document, KOVObjLabelerNodes);
    EXPECT_TRUE(labels.Names().empty());
    EXPECT_EQ(ByInstance(labels, Set({1, 3})), (std::map<int, Ints>{{-1, {1, 3}}}));
}

TEST_F(MeshLabelsTest, ANodeOfSeveralInstancesCountsForTheFirst) {
    ModelBuilder model(document);
    model.Space(6, 0);
    model.Labels(KOVObjLabelerNodes, "b", {1, 2, 3, 4}, {0, 1, 2, 3});
    model.Labels(KOVObjLabelerNodes, "a", {11, 12}, {2, 4});
    model.Commit();
    MeshLabels const labels(document, KOVObjLabelerNodes);
    EXPECT_EQ(ByInstance(labels, Set({0, 1, 2, 3, 4, 5})),
              (std::map<int, Ints>{{-1, {5}}, {0, {11, 12}}, {1, {1, 2, 4}}}));
}

TEST_F(MeshLabelsTest, ABareDocumentHasNone) {
    document = KOVObjDocument::CreateInMemory(KOVObjDocument::Bare);
    MeshLabels const labels(document, KOVObjLabelerElements);
    EXPECT_TRUE(labels.Names().empty());
    EXPECT_TRUE(ByInstance(labels, KOVSimCSet()).empty());
}

TEST_F(MeshLabelsTest, LabelsOfAnotherCollectionAreRefused) {
    BuildAssembly(document);
    {
        ModelBuilder model(document);
        KOVSimMap const map = document.Focus().GetMap(schema::Focus_nodeLabels());
        map.Find("P-1").SetPosition(schema::Labels_distribution(),
                                    document.Focus()
                                        .GetMap(schema::Focus_elementLabels())
                                        .Find("P-1")
                                        .GetPosition(schema::Labels_distribution()));
        model.Commit();
    }
    try {
        MeshLabels const labels(document, KOVObjLabelerNodes);
        FAIL();
    } catch (tool::DocumentFault const& fault) {
        EXPECT_STREQ(fault.what(), "the labels of instance P-1 are not those of the mesh's nodes");
    }
}

// Both ways of bringing labels into order give the same, whatever the labels.
TEST_F(MeshLabelsTest, AgreesWithAPlainSort) {
    unsigned const seed = std::random_device{}();
    std::mt19937 random(seed);
    for (int round = 0; round < 12; ++round) {
        document = KOVObjDocument::CreateInMemory();
        int const space = 1 + static_cast<int>(random() % 3000);
        std::map<int, int> byOrdinal;
        Ints labels;
        Ints ordinals;
        // Labels close together, far apart, or at both ends of their range.
        int const spread = round % 4;
        for (int i = 0; i < space; ++i) {
            if (random() % 5 == 0) continue;
            long long label = i + 1;
            if (spread == 1) label = (i * 7919LL) % 3001;
            if (spread == 2) label = (i % 2 ? -1 : 1) * (i * 600000LL);
            if (spread == 3)
                label = i % 2 ? std::numeric_limits<int>::min() + i
                              : std::numeric_limits<int>::max() - i;
            labels.push_back(static_cast<int>(label));
            ordinals.push_back(i);
            byOrdinal[i] = static_cast<int>(label);
        }
        {
            ModelBuilder model(document);
            model.Space(space, 0);
            if (!labels.empty()) model.Labels(KOVObjLabelerNodes, "x", labels, ordinals);
            model.Commit();
        }
        Ints members;
        std::map<int, Ints> expected;
        for (int i = 0; i < space; ++i) {
            if (random() % 3 == 0) continue;
            members.push_back(i);
            auto const at = byOrdinal.find(i);
            at == byOrdinal.end() ? expected[-1].push_back(i) : expected[0].push_back(at->second);
        }
        for (auto& [instance, of] : expected) std::sort(of.begin(), of.end());
        MeshLabels const mesh(document, KOVObjLabelerNodes);
        for (int const sorted : {MeshLabels::kSorted, 0}) {
            ASSERT_EQ(ByInstance(mesh, Set(members), sorted), expected)
                << "seed " << seed << ", round " << round << ", sorted " << sorted;
        }
    }
}

}  // namespace
}  // namespace kov::test
