#include "KOVObjLabeler.h"

#include <algorithm>
#include <climits>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVObjMesh.h"
#include "KOVSimCollection.h"
#include "support/DocumentFixture.h"

namespace {

using kov::test::DocumentTest;
using kov::test::RefusalOf;
using Ints = std::vector<int>;

KOVBasVector<int> Values(Ints const& from) {
    KOVBasVector<int> values;
    for (int const value : from) values.PushBack(value);
    return values;
}

class Labels : public DocumentTest {
  protected:
    static constexpr int Nodes = 5000;

    void SetUp() override {
        DocumentTest::SetUp();
        Write([&] {
            KOVObjMesh const mesh(Document().GetMesh());
            KOVSimCollection(mesh.GetNodeCollection().GetCollection()).ExtendSpace(Nodes);
            KOVSimCollection(mesh.GetElementCollection().GetCollection()).ExtendSpace(10);
        });
    }
    KOVObjLabeler Reading(KOVObjLabelerType type = KOVObjLabelerNodes) const {
        KOVObjLabeler labeler(Document(), type);
        labeler.Read();
        return labeler;
    }
    void Set(char const* name, Ints const& labels, Ints const& ordinals,
             KOVObjLabelerType type = KOVObjLabelerNodes) const {
        KOVObjLabeler(Document(), type).SetInstance(name, Values(labels), Values(ordinals));
    }
    static void ExpectInstance(KOVObjLabeler const& labeler, char const* name, Ints const& labels,
                               Ints const& ordinals) {
        KOVBasVector<int> foundLabels = Values({7});
        KOVBasVector<int> foundOrdinals = Values({7, 8});
        labeler.GetInstanceLabelsAndOrdinals(name, foundLabels, foundOrdinals);
        EXPECT_EQ(labels, Ints(foundLabels.begin(), foundLabels.end()));
        EXPECT_EQ(ordinals, Ints(foundOrdinals.begin(), foundOrdinals.end()));
    }
};
KOV_DOCUMENT_TESTS(Labels);

TEST_P(Labels, ADocumentWithoutLabelsHasNoInstance) {
    KOVObjLabeler const labeler = Reading();
    EXPECT_EQ(0, labeler.Occurrences().Size());
    EXPECT_FALSE(labeler.IsInstanceValid("PART-1"));
    ExpectInstance(labeler, "PART-1", {}, {});
    KOVString name("before");
    EXPECT_FALSE(labeler.GetOccurrenceForFlatMeshOrdinal(0, name));
    EXPECT_EQ("before", name);
    EXPECT_EQ(-1, labeler.GetInstanceLabel("PART-1", 0));
}

TEST_P(Labels, LabelsComeAscendingWithTheirOrdinals) {
    Write([&] { Set("P", {30, 10, 20}, {2, 4, 3}); });
    Reopen();
    KOVObjLabeler const labeler = Reading();
    ExpectInstance(labeler, "P", {10, 20, 30}, {4, 3, 2});
    EXPECT_EQ(30, labeler.GetInstanceLabel("P", 2));
    EXPECT_EQ(10, labeler.GetInstanceLabel("P", 4));
    EXPECT_EQ(-1, labeler.GetInstanceLabel("P", 1));
    EXPECT_EQ(-1, labeler.GetInstanceLabel("P", -1));
    EXPECT_EQ(-1, labeler.GetInstanceLabel("Q", 2));
}

TEST_P(Labels, AnOrdinalLeadsToItsInstance) {
    Write([&] {
        Set("B", {1, 2}, {0, 1});
        Set("A", {1, 2, 3}, {10, 11, 12});
        Set("", {5}, {20});
        Set("empty", {}, {});
    });
    Reopen();
    KOVObjLabeler const labeler = Reading();
    KOVObjLabeler::NameArray const names = labeler.Occurrences();
    ASSERT_EQ(4, names.Size());
    EXPECT_EQ("", names.ConstGet(0));
    EXPECT_EQ("A", names.ConstGet(1));
    EXPECT_EQ("B", names.ConstGet(2));
    EXPECT_TRUE(labeler.IsInstanceValid("empty"));
    EXPECT_FALSE(labeler.IsInstanceValid("a"));
    KOVString name;
    EXPECT_TRUE(labeler.GetOccurrenceForFlatMeshOrdinal(11, name));
    EXPECT_EQ("A", name);
    EXPECT_TRUE(labeler.GetOccurrenceForFlatMeshOrdinal(1, name));
    EXPECT_EQ("B", name);
    EXPECT_FALSE(labeler.GetOccurrenceForFlatMeshOrdinal(2, name));
    EXPECT_FALSE(labeler.GetOccurrenceForFlatMeshOrdinal(-1, name));
    EXPECT_EQ("B", name);
    ExpectInstance(labeler, "empty", {}, {});
}

TEST_P(Labels, NodesAndElementsAreLabelledApart) {
    Write([&] {
        Set("P", {1}, {3});
        Set("P", {9}, {3}, KOVObjLabelerElements);
    });
    Reopen();
    EXPECT_EQ(1, Reading().GetInstanceLabel("P", 3));
    EXPECT_EQ(9, Reading(KOVObjLabelerElements).GetInstanceLabel("P", 3));
    KOVObjLabeler fromPosition(Document().GetMesh(), KOVObjLabelerElements);
    EXPECT_EQ(0, fromPosition.Occurrences().Size()) << "nothing is known before Read";
    fromPosition.Read();
    EXPECT_EQ(1, fromPosition.Occurrences().Size());
}

TEST_P(Labels, RecordingAgainReplaces) {
    Write([&] { Set("P", {1, 2, 3}, {0, 1, 2}); });
    KOVObjLabeler const before = Reading();
    Write([&] { Set("P", {8}, {4}); });
    Reopen();
    ExpectInstance(Reading(), "P", {8}, {4});
    EXPECT_EQ(1, Reading().Occurrences().Size());
    WriteAndDrop([&] { Set("P", {9}, {4}); });
    ExpectInstance(Reading(), "P", {8}, {4});
}

TEST_P(Labels, WhatIsGivenTwiceIsRefused) {
    Write([&] {
        std::string text = RefusalOf([&] { Set("P", {1, 2, 1}, {0, 1, 2}); });
        EXPECT_EQ("cannot record node labels: label 1 is given twice", text);
        text = RefusalOf([&] { Set("P", {INT_MIN, INT_MAX, 0, INT_MAX}, {0, 1, 2, 3}); });
        EXPECT_EQ("cannot record node labels: label 2147483647 is given twice", text);
        text = RefusalOf([&] { Set("P", {1, 2, 3}, {5, 4, 5}); });
        EXPECT_EQ("cannot record node labels: ordinal 5 is given twice", text);
        text = RefusalOf([&] { Set("P", {1, 2}, {5}, KOVObjLabelerElements); });
        EXPECT_EQ("cannot record element labels: 2 labels were given for 1 ordinals", text);
        text = RefusalOf([&] { Set("P", {1}, {Nodes}); });
        EXPECT_NE(std::string::npos, text.find("ordinal 5000 is outside [0, 5000)")) << text;
    });
    EXPECT_NE("", RefusalOf([&] { Set("P", {1}, {0}); }));
    EXPECT_EQ(0, Reading().Occurrences().Size());
    KOVObjDocument const bare = KOVObjDocument::CreateInMemory(KOVObjDocument::Bare);
    KOVSimTransaction transaction(bare.ContextID());
    std::string const text = RefusalOf([&] {
        KOVObjLabeler(bare, KOVObjLabelerNodes).SetInstance("P", Values({1}), Values({0}));
    });
    EXPECT_NE(std::string::npos, text.find("no mesh to label")) << text;
}

TEST_P(Labels, AnyLabelOfAnIntIsKept) {
    Write([&] { Set("P", {INT_MAX, INT_MIN, 0, -1}, {0, 1, 2, 3}); });
    Reopen();
    ExpectInstance(Reading(), "P", {INT_MIN, -1, 0, INT_MAX}, {1, 3, 2, 0});
}

TEST_P(Labels, RandomLabelsAgreeWithAPlainMap) {
    unsigned const seed = std::random_device()();
    std::mt19937 random(seed);
    SCOPED_TRACE("seed " + std::to_string(seed));
    Ints ordinals(Nodes);
    std::iota(ordinals.begin(), ordinals.end(), 0);
    std::shuffle(ordinals.begin(), ordinals.end(), random);
    ordinals.resize(Nodes / 2);
    std::map<int, int> byLabel;
    Ints labels;
    for (int const ordinal : ordinals) {
        int label;
        do label = std::uniform_int_distribution<int>(0, 100000000)(random);
        while (byLabel.count(label));
        byLabel[label] = ordinal;
        labels.push_back(label);
    }
    Write([&] { Set("P", labels, ordinals); });
    Reopen();
    Ints expectedLabels;
    Ints expectedOrdinals;
    for (auto const& [label, ordinal] : byLabel) {
        expectedLabels.push_back(label);
        expectedOrdinals.push_back(ordinal);
    }
    KOVObjLabeler const labeler = Reading();
    ExpectInstance(labeler, "P", expectedLabels, expectedOrdinals);
    for (int i = 0; i < 100; ++i) {
        auto const at = static_cast<std::size_t>(i);
        ASSERT_EQ(expectedLabels[at], labeler.GetInstanceLabel("P", expectedOrdinals[at]));
    }
}

TEST_P(Labels, MoreThanOneBlockOfLabelsIsOneInstance) {
    constexpr int Many = (1 << 20) + 1000;
    KOVBasVector<int> labels(Many);
    KOVBasVector<int> ordinals(Many);
    for (int i = 0; i < Many; ++i) {
        labels[i] = 2 * i + 1;
        ordinals[i] = i;
    }
    Write([&] {
        KOVSimCollection(KOVObjMesh(Document().GetMesh()).GetNodeCollection().GetCollection())
            .ExtendSpace(Many);
        KOVObjLabeler(Document(), KOVObjLabelerNodes).SetInstance("P", labels, ordinals);
    });
    Reopen();
    KOVBasVector<int> foundLabels;
    KOVBasVector<int> foundOrdinals;
    Reading().GetInstanceLabelsAndOrdinals("P", foundLabels, foundOrdinals);
    ASSERT_EQ(Many, foundLabels.Size());
    EXPECT_TRUE(std::equal(labels.begin(), labels.end(), foundLabels.begin()));
    EXPECT_TRUE(std::equal(ordinals.begin(), ordinals.end(), foundOrdinals.begin()));
    EXPECT_EQ(2 * Many - 1, Reading().GetInstanceLabel("P", Many - 1));
}

}  // namespace
