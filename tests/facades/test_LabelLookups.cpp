// Many questions to one labeler: pages of labels, the index of owners, the way back from label to
// ordinal.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVObjLabeler.h"
#include "KOVObjMesh.h"
#include "KOVSimCollection.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
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

Ints Range(int first, int count) {
    Ints values(static_cast<std::size_t>(count));
    std::iota(values.begin(), values.end(), first);
    return values;
}

// What a labeler should know: for each instance the ordinal of each label.
using Model = std::map<std::string, std::map<int, int>>;

class LabelLookups : public DocumentTest {
  protected:
    void Extend(int nodes) const {
        KOVSimCollection(KOVObjMesh(Document().GetMesh()).GetNodeCollection().GetCollection())
            .ExtendSpace(nodes);
    }
    void Set(std::string const& name, Ints const& labels, Ints const& ordinals) const {
        KOVObjLabeler(Document(), KOVObjLabelerNodes)
            .SetInstance(name.c_str(), Values(labels), Values(ordinals));
    }
    void Record(int nodes, Model const& model) const {
        Write([&] {
            Extend(nodes);
            for (auto const& [name, ordinalOf] : model) {
                Ints labels, ordinals;
                for (auto const& [label, ordinal] : ordinalOf) {
                    labels.push_back(label);
                    ordinals.push_back(ordinal);
                }
                Set(name, labels, ordinals);
            }
        });
    }
    KOVObjLabeler Reading() const {
        KOVObjLabeler labeler(Document(), KOVObjLabelerNodes);
        labeler.Read();
        return labeler;
    }
    // Asks everything, three times over, so that what was kept is asked too.
    static void ExpectModel(KOVObjLabeler const& labeler, int nodes, Model const& model) {
        std::vector<std::string const*> owner(static_cast<std::size_t>(nodes), nullptr);
        for (auto const& [name, ordinalOf] : model) {
            for (auto const& [label, ordinal] : ordinalOf) {
                std::string const*& first = owner[static_cast<std::size_t>(ordinal)];
                if (!first) first = &name;
            }
        }
        for (int round = 0; round < 3; ++round) {
            for (int ordinal = -1; ordinal <= nodes; ++ordinal) {
                std::string const* const expected = ordinal < 0 || ordinal == nodes
                                                        ? nullptr
                                                        : owner[static_cast<std::size_t>(ordinal)];
                KOVString name("none");
                ASSERT_EQ(expected != nullptr,
                          labeler.GetOccurrenceForFlatMeshOrdinal(ordinal, name))
                    << ordinal;
                ASSERT_EQ(expected ? *expected : "none", std::string(name.TextOrEmpty()))
                    << ordinal;
            }
            for (auto const& [name, ordinalOf] : model) {
                KOVString const asked(name.c_str());
                KOVSimCSet const ordinals = labeler.GetInstanceOrdinals(asked);
                ASSERT_EQ(static_cast<int>(ordinalOf.size()), ordinals.Size());
                for (auto const& [label, ordinal] : ordinalOf) {
                    ASSERT_TRUE(ordinals.Contains(ordinal));
                    ASSERT_EQ(label, labeler.GetInstanceLabel(asked, ordinal)) << name;
                    ASSERT_EQ(ordinal, labeler.GetInstanceOrdinal(asked, label)) << name;
                    auto const next = ordinalOf.find(label + 1);
                    ASSERT_EQ(next == ordinalOf.end() ? -1 : next->second,
                              labeler.GetInstanceOrdinal(asked, label + 1))
                        << name;
                }
            }
        }
    }
};
KOV_DOCUMENT_TESTS(LabelLookups);

TEST_P(LabelLookups, ALabelLeadsToItsOrdinal) {
    Record(100, {{"P", {{10, 4}, {20, 3}, {30, 2}}}, {"Q", {{10, 7}}}, {"empty", {}}});
    Reopen(KOVObjDocument::ReadOnly);
    KOVObjLabeler const labeler = Reading();
    EXPECT_EQ(4, labeler.GetInstanceOrdinal("P", 10));
    EXPECT_EQ(2, labeler.GetInstanceOrdinal("P", 30));
    EXPECT_EQ(7, labeler.GetInstanceOrdinal("Q", 10));
    for (int const absent : {-1, 0, 9, 11, 31}) {
        EXPECT_EQ(-1, labeler.GetInstanceOrdinal("P", absent)) << absent;
    }
    EXPECT_EQ(-1, labeler.GetInstanceOrdinal("empty", 10));
    EXPECT_EQ(-1, labeler.GetInstanceOrdinal("R", 10));
    EXPECT_EQ(-1, KOVObjLabeler(Document(), KOVObjLabelerNodes).GetInstanceOrdinal("P", 10))
        << "nothing is known before Read";
}

TEST_P(LabelLookups, OrdinalsOfAnInstanceAreASetOfTheFlatMesh) {
    Record(100, {{"P", {{10, 4}, {20, 3}, {30, 9}}}, {"empty", {}}});
    Reopen();
    KOVObjLabeler const labeler = Reading();
    KOVSimCSet const ordinals = labeler.GetInstanceOrdinals("P");
    EXPECT_EQ(KOVObjMesh(Document().GetMesh()).GetNodeCollection().GetCollection(),
              ordinals.CollectionID());
    Ints members(3);
    ordinals.OrderedMembers(members.data());
    EXPECT_EQ((Ints{3, 4, 9}), members);
    EXPECT_EQ(0, labeler.GetInstanceOrdinals("empty").Size());
    EXPECT_TRUE(labeler.GetInstanceOrdinals("R").CollectionID().IsNull());
}

// Labels that run beside the ordinals, that fill a range, that lie far apart, negative ones.
TEST_P(LabelLookups, EveryKindOfNumberingIsFoundBack) {
    Model model;
    for (int i = 0; i < 50; ++i) {
        model["beside"][i + 1] = i;
        model["turned"][50 - i] = 50 + i;
        model["gaps"][2 * i - 20] = 100 + i;
        model["far"][i * 40000000 - 1000000000] = 150 + i;
        model["lowest"][i - 2147483647 - 1] = 200 + i;
        model["highest"][2147483600 - i] = 250 + i;
    }
    Record(300, model);
    Reopen();
    ExpectModel(Reading(), 300, model);
}

TEST_P(LabelLookups, OrdinalsThatAlternateBetweenInstancesAreToldApart) {
    Model model;
    int const nodes = 150000;
    for (int ordinal = 0; ordinal < nodes; ++ordinal) {
        if (ordinal % 7 == 3) continue;
        model["P" + std::to_string(ordinal % 3)][nodes - ordinal] = ordinal;
    }
    Record(nodes, model);
    Reopen();
    ExpectModel(Reading(), nodes, model);
}

TEST_P(LabelLookups, ManyInstancesOneBehindTheOther) {
    Model model;
    int const nodes = 140000;
    for (int ordinal = 0; ordinal < nodes; ++ordinal)
        model["P" + std::to_string(ordinal / 100)][ordinal % 100 * 3] = ordinal;
    Record(nodes, model);
    Reopen();
    ExpectModel(Reading(), nodes, model);
}

TEST_P(LabelLookups, ManyNamesAreToldApart) {
    Model model;
    for (int i = 0; i < 300; ++i) {
        model["PART-1-" + std::to_string(i)][i + 1] = i;
        model["part-1-" + std::to_string(i)][i + 1] = 300 + i;
    }
    model[""][5] = 600;
    Record(601, model);
    Reopen();
    KOVObjLabeler const labeler = Reading();
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 300; ++i) {
            std::string const name = "PART-1-" + std::to_string(i);
            EXPECT_EQ(i, labeler.GetInstanceOrdinal(name.c_str(), i + 1));
            EXPECT_FALSE(labeler.IsInstanceValid((name + "0000").c_str()));
            EXPECT_EQ(-1, labeler.GetInstanceLabel((name + " ").c_str(), i));
            EXPECT_EQ(5, labeler.GetInstanceLabel("", 600));
        }
    }
    ExpectModel(labeler, 601, model);
    KOVObjLabeler const other = Reading();
    for (int i = 0; i < 200; ++i) EXPECT_FALSE(other.IsInstanceValid("PART-1"));
    EXPECT_TRUE(other.IsInstanceValid("PART-1-7"));
}

TEST_P(LabelLookups, OfInstancesThatShareAnOrdinalTheFirstNameAnswers) {
    Record(20, {{"B", {{1, 5}, {2, 6}}}, {"A", {{1, 6}, {2, 7}}}, {"C", {{9, 5}, {8, 8}}}});
    Reopen();
    KOVObjLabeler const labeler = Reading();
    for (int round = 0; round < 10; ++round) {
        for (auto const& [ordinal, expected] :
             std::vector<std::pair<int, char const*>>{{5, "B"}, {6, "A"}, {7, "A"}, {8, "C"}}) {
            KOVString name;
            EXPECT_TRUE(labeler.GetOccurrenceForFlatMeshOrdinal(ordinal, name));
            EXPECT_EQ(expected, name) << round;
        }
    }
    EXPECT_EQ(9, labeler.GetInstanceLabel("C", 5));
    EXPECT_EQ(1, labeler.GetInstanceLabel("B", 5));
}

TEST_P(LabelLookups, RandomInstancesAgreeWithAPlainModel) {
    unsigned const seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    RecordProperty("seed", std::to_string(seed));
    std::mt19937 random(seed);
    auto const upTo = [&](int n) { return std::uniform_int_distribution<int>(0, n)(random); };
    int const nodes = 80000;
    int const instances = 1 + upTo(200);
    int const spread = 1 + upTo(3) * upTo(2000);  // ordinals that follow each other in an instance
    int const scale = upTo(1) ? 1 : 1 + upTo(10000);
    Model model;
    for (int ordinal = 0; ordinal < nodes;) {
        std::string const name = "I" + std::to_string(upTo(instances));
        for (int i = 0; i < spread && ordinal < nodes; ++i, ++ordinal) {
            if (upTo(9) == 0) continue;
            auto& ordinalOf = model[name];
            while (!ordinalOf.emplace(upTo(2 * nodes) * scale, ordinal).second) {
            }
        }
    }
    Record(nodes, model);
    Reopen(KOVObjDocument::ReadOnly);
    ExpectModel(Reading(), nodes, model);
}

// More labels than one page holds, and than one block.
TEST_P(LabelLookups, LabelsOfALargeInstanceAreReadByPages) {
    constexpr int Many = (1 << 20) + 40000;
    Ints labels = Range(1, Many);
    unsigned const seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::shuffle(labels.begin(), labels.end(), random);
    Ints ordinals;
    for (int i = 0; i < Many; ++i) ordinals.push_back(2 * i + 1);
    Write([&] {
        Extend(2 * Many + 1);
        Set("P", labels, ordinals);
    });
    Reopen(KOVObjDocument::ReadOnly);
    KOVObjLabeler const labeler = Reading();
    for (int at = 0; at < Many; at += 1 + static_cast<int>(random() % 100)) {
        auto const i = static_cast<std::size_t>(at);
        ASSERT_EQ(labels[i], labeler.GetInstanceLabel("P", ordinals[i]));
        ASSERT_EQ(-1, labeler.GetInstanceLabel("P", ordinals[i] + 1));
        ASSERT_EQ(ordinals[i], labeler.GetInstanceOrdinal("P", labels[i]));
    }
    EXPECT_EQ(labels.back(), labeler.GetInstanceLabel("P", ordinals.back()));
    KOVBasVector<int> foundLabels, foundOrdinals;
    labeler.GetInstanceLabelsAndOrdinals("P", foundLabels, foundOrdinals);
    ASSERT_EQ(Many, foundLabels.Size());
    for (int i = 0; i < Many; ++i) {
        ASSERT_EQ(i + 1, foundLabels[i]);
        ASSERT_EQ(i + 1, labels[static_cast<std::size_t>(foundOrdinals[i] / 2)]);
    }
}

TEST_P(LabelLookups, ALabelerAnswersForWhatItRead) {
    Record(10, {{"P", {{1, 0}, {2, 1}}}});
    KOVObjLabeler labeler = Reading();
    Write([&] {
        Set("P", {8}, {4});
        Set("Q", {1}, {0});
    });
    EXPECT_EQ(1, labeler.GetInstanceLabel("P", 0));
    EXPECT_EQ(-1, labeler.GetInstanceLabel("P", 4));
    EXPECT_EQ(1, labeler.GetInstanceOrdinal("P", 2));
    EXPECT_FALSE(labeler.IsInstanceValid("Q"));
    KOVObjLabeler const copy = labeler;
    labeler.Read();
    EXPECT_EQ(8, labeler.GetInstanceLabel("P", 4));
    EXPECT_EQ(-1, labeler.GetInstanceOrdinal("P", 2));
    EXPECT_EQ(0, labeler.GetInstanceOrdinal("Q", 1));
    EXPECT_EQ(1, copy.GetInstanceLabel("P", 0)) << "the copy has not read again";
}

TEST_P(LabelLookups, OfAClosedDocumentOnlyTheNamesAreKnown) {
    Record(10, {{"P", {{1, 0}, {2, 1}}}});
    KOVObjLabeler const labeler = Reading();
    KOVString name;
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(2, labeler.GetInstanceLabel("P", 1));
        EXPECT_TRUE(labeler.GetOccurrenceForFlatMeshOrdinal(1, name));
        EXPECT_EQ(1, labeler.GetInstanceOrdinal("P", 2));
    }
    Document().Close();
    EXPECT_EQ(1, labeler.Occurrences().Size());
    EXPECT_TRUE(labeler.IsInstanceValid("P"));
    EXPECT_THROW(labeler.GetInstanceLabel("P", 1), KOVSimException);
    EXPECT_THROW(labeler.GetInstanceOrdinal("P", 2), KOVSimException);
    EXPECT_THROW(labeler.GetInstanceOrdinals("P"), KOVSimException);
    EXPECT_THROW(labeler.GetOccurrenceForFlatMeshOrdinal(1, name), KOVSimException);
    KOVBasVector<int> labels, ordinals;
    EXPECT_THROW(labeler.GetInstanceLabelsAndOrdinals("P", labels, ordinals), KOVSimException);
    KOVObjLabeler late = labeler;
    EXPECT_THROW(late.Read(), KOVSimException);
}

TEST_P(LabelLookups, LabelsOfADroppedTransactionAreNotGivenOut) {
    Write([&] { Extend(10); });
    KOVObjLabeler labeler(Document(), KOVObjLabelerNodes);
    WriteAndDrop([&] {
        Set("P", {5, 6}, {0, 1});
        labeler.Read();
        for (int i = 0; i < 10; ++i) EXPECT_EQ(6, labeler.GetInstanceLabel("P", 1));
        EXPECT_EQ(1, labeler.GetInstanceOrdinal("P", 6));
    });
    EXPECT_THROW(labeler.GetInstanceLabel("P", 1), KOVSimException);
    EXPECT_THROW(labeler.GetInstanceOrdinal("P", 6), KOVSimException);
    EXPECT_EQ(0, Reading().Occurrences().Size());
}

TEST_P(LabelLookups, OwnersOfADroppedTransactionAreNotGivenOut) {
    Record(10, {{"A", {{1, 0}}}, {"P", {{1, 1}}}});
    KOVObjLabeler labeler(Document(), KOVObjLabelerNodes);
    KOVString name;
    WriteAndDrop([&] {
        Set("P", {5, 6}, {1, 2});
        labeler.Read();
        // More often than instances are asked one by one.
        for (int i = 0; i < 10; ++i) EXPECT_TRUE(labeler.GetOccurrenceForFlatMeshOrdinal(2, name));
        EXPECT_EQ("P", name);
    });
    name = "before";
    EXPECT_THROW(labeler.GetOccurrenceForFlatMeshOrdinal(2, name), KOVSimException);
    EXPECT_EQ("before", name);
    EXPECT_TRUE(labeler.GetOccurrenceForFlatMeshOrdinal(0, name)) << "A was recorded before";
    EXPECT_EQ("A", name);
    labeler.Read();
    EXPECT_FALSE(labeler.GetOccurrenceForFlatMeshOrdinal(2, name));
    EXPECT_TRUE(labeler.GetOccurrenceForFlatMeshOrdinal(1, name));
    EXPECT_EQ("P", name);
}

TEST_P(LabelLookups, OfSeveralRecordingsInOneTransactionTheLastCounts) {
    Write([&] { Extend(20); });
    Write([&] {
        Set("P", {1, 2}, {0, 1});
        KOVObjLabeler const first = Reading();
        for (int i = 0; i < 10; ++i) EXPECT_EQ(2, first.GetInstanceLabel("P", 1));
        Set("P", {7, 8, 9}, {1, 2, 11});
        KOVObjLabeler const second = Reading();
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(7, second.GetInstanceLabel("P", 1));
            EXPECT_EQ(-1, second.GetInstanceLabel("P", 0));
            EXPECT_EQ(2, first.GetInstanceLabel("P", 1)) << "as it was read";
        }
        Set("P", {4}, {3});
        Set("P", {5, 6}, {3, 13});
    });
    Reopen();
    ExpectModel(Reading(), 20, {{"P", {{5, 3}, {6, 13}}}});
}

// As another writer may leave them: an instance whose labels were not all written.
TEST_P(LabelLookups, LabelsThatStandTwiceAreAllDelivered) {
    Record(10, {{"P", {{1, 0}, {2, 1}, {3, 2}}}});
    Write([&] {
        KOVSimPosition const record =
            Document().Focus().GetMap(schema::Focus_nodeLabels()).Find("P");
        KOVSimDistribution const labels(
            record.GetPosition(schema::Labels_distribution()).GetDistribution());
        KOVSimCollection const nodes(labels.Grid().Collections().ConstGet(0));
        int const ordinal = 2;
        int const label = 1;
        KOVSimTransfer write(labels);
        write.SetWrite().SetBufferPadding(false);
        write.SetDim(0, nodes.CreateVolatileCSet(&ordinal, 1, false)).CheckView();
        write.SetBuffer(0, static_cast<void const*>(&label), sizeof label);
        write.ExecWrite().RelinquishBuffers();
    });
    Reopen();
    KOVObjLabeler const labeler = Reading();
    KOVBasVector<int> labels, ordinals;
    labeler.GetInstanceLabelsAndOrdinals("P", labels, ordinals);
    EXPECT_EQ((Ints{1, 1, 2}), Ints(labels.begin(), labels.end()));
    EXPECT_EQ((Ints{0, 2, 1}), Ints(ordinals.begin(), ordinals.end()));
    EXPECT_EQ(0, labeler.GetInstanceOrdinal("P", 1));
    EXPECT_EQ(1, labeler.GetInstanceOrdinal("P", 2));
    EXPECT_EQ(-1, labeler.GetInstanceOrdinal("P", 3));
}

}  // namespace
