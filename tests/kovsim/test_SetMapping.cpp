// Sets and labels of one document found in another, beside plain vectors.

#include "SetMapping.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "LabelComparison.h"
#include "MappedMembers.h"
#include "RandomModel.h"
#include "SubModel.h"

namespace kov::test {
namespace {

Ints MembersOf(KOVSimCSet const& set) {
    Ints members(static_cast<std::size_t>(set.Size()));
    set.OrderedMembers(members.data());
    return members;
}

// A mesh of some nodes, with the labels of its instances.
class Labelled {
  public:
    using Labels = std::map<std::string, std::map<int, int>>;  ///< ordinal by label

    explicit Labelled(Labels const& all, int space = 100) : labels(all) {
        KOVSimTransaction transaction(document.ContextID());
        Nodes().ExtendSpace(space);
        for (auto const& [name, of] : labels) {
            KOVBasVector<int> values;
            KOVBasVector<int> ordinals;
            for (auto const& [label, ordinal] : of) {
                values.PushBack(label);
                ordinals.PushBack(ordinal);
            }
            KOVObjLabeler labeler(document, KOVObjLabelerNodes);
            labeler.Read();
            labeler.SetInstance(tool::ToKOVString(name), values, ordinals);
        }
        transaction.Commit();
    }

    KOVSimCollection Nodes() const {
        return tool::CollectionAt(KOVObjMesh(document.GetMesh()).GetNodeCollection());
    }
    KOVSimCSetID Set(Ints const& members) const {
        return Nodes().CreateTempCSet(members.data(), static_cast<int>(members.size()), false);
    }
    KOVSimCSetID Ordered(Ints const& members) const {
        return Nodes().CreateTempOrderedCSet(members.data(), static_cast<int>(members.size()));
    }

    KOVObjDocument document = KOVObjDocument::CreateInMemory();
    Labels labels;
};

tool::MappedSet MapNodes(Labelled const& a, Labelled const& b, KOVSimCSetID const& set,
                         bool ordered) {
    return tool::MapSet(a.document, b.document, KOVObjLabelerNodes, set, ordered);
}

TEST(SetMapping, FindsMembersByInstanceAndLabel) {
    Labelled const a({{"L", {{1, 0}, {2, 1}, {3, 2}}}, {"R", {{1, 3}, {2, 4}}}});
    Labelled const b({{"L", {{2, 7}, {3, 6}}}, {"R", {{1, 9}}}, {"X", {{2, 11}}}});
    tool::MappedSet const mapped = MapNodes(a, b, a.Set({0, 1, 2, 3, 4, 5}), false);
    EXPECT_EQ(MembersOf(mapped.inB), (Ints{6, 7, 9}));
    EXPECT_EQ(MembersOf(mapped.missing), (Ints{0, 4, 5}));
    EXPECT_EQ(mapped.inB.CollectionID(), b.Nodes().ID());
}

TEST(SetMapping, KeepsTheSequenceOnRequest) {
    Labelled const a({{"", {{1, 0}, {2, 1}, {3, 2}}}});
    Labelled const b({{"", {{1, 5}, {2, 9}, {3, 7}}}});
    KOVSimCSetID const set = a.Ordered({2, 0, 8, 1});
    EXPECT_EQ(MembersOf(MapNodes(a, b, set, true).inB), (Ints{7, 5, 9}));
    EXPECT_EQ(MembersOf(MapNodes(a, b, set, false).inB), (Ints{5, 7, 9}));
    EXPECT_EQ(MembersOf(MapNodes(a, b, set, true).missing), Ints{8});
}

TEST(SetMapping, OneDocumentMapsOntoItself) {
    Labelled const a({{"", {{1, 0}, {2, 1}}}, {"R", {{1, 9}}}});
    tool::MappedSet const mapped = MapNodes(a, a, a.Set({0, 5, 9}), false);
    EXPECT_EQ(MembersOf(mapped.inB), (Ints{0, 9}));
    EXPECT_EQ(MembersOf(mapped.missing), Ints{5});
    EXPECT_EQ(MembersOf(MapNodes(a, a, a.Ordered({9, 5, 0}), true).inB), (Ints{9, 0}));
}

TEST(SetMapping, NothingInCommonGivesAnEmptySet) {
    Labelled const a({{"L", {{1, 0}}}});
    for (Labelled const& b : {Labelled({{"R", {{1, 0}}}}), Labelled({})}) {
        tool::MappedSet const mapped = MapNodes(a, b, a.Set({0}), false);
        EXPECT_TRUE(mapped.inB.IsEmpty());
        EXPECT_EQ(MembersOf(mapped.missing), Ints{0});
    }
}

TEST(SetMapping, ADocumentWithoutAMeshIsRefused) {
    Labelled const a({{"L", {{1, 0}}}});
    KOVObjDocument const bare = KOVObjDocument::CreateInMemory(KOVObjDocument::Bare);
    EXPECT_THROW(tool::MapSet(a.document, bare, KOVObjLabelerNodes, a.Set({0}), false),
                 tool::Failure);
    EXPECT_THROW(tool::MapSet(bare, a.document, KOVObjLabelerNodes, a.Set({0}), false),
                 tool::Failure);
}

TEST(SetMapping, ASetOfAnotherCollectionIsRefused) {
    Labelled const a({{"L", {{1, 0}}}});
    Labelled const b({{"L", {{1, 0}}}});
    EXPECT_THROW(tool::MapSet(a.document, b.document, KOVObjLabelerElements, a.Set({0}), false),
                 tool::Failure);
    // A set of the second document is never given to the mapper.
    EXPECT_THROW(MapNodes(a, b, b.Set({0}), false), tool::Failure);
}

TEST(SetMapping, ASubModelFindsAllOfItselfInItsSource) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomModel model(seed);
        Ints elements = model.Some(model.Elements(), 40);
        if (elements.empty()) elements.push_back(0);
        std::set<int> nodes;
        for (int const element : elements) {
            for (int const node : model.connectivity[static_cast<std::size_t>(element)]) {
                if (node >= 0) nodes.insert(node);
            }
        }
        KOVObjDocument const cut = KOVObjDocument::CreateInMemory();
        KOVSimTransaction transaction(cut.ContextID());
        tool::WriteSubModel(
            model.document,
            tool::CollectionAt(model.Mesh().GetElementCollection())
                .CreateVolatileCSet(elements.data(), static_cast<int>(elements.size()), false),
            cut);
        transaction.Commit();
        for (auto const type : {KOVObjLabelerNodes, KOVObjLabelerElements}) {
            Ints const kept =
                type == KOVObjLabelerNodes ? Ints(nodes.begin(), nodes.end()) : elements;
            KOVObjMesh const mesh(cut.GetMesh());
            KOVSimCollection all =
                tool::CollectionAt(type == KOVObjLabelerNodes ? mesh.GetNodeCollection()
                                                              : mesh.GetElementCollection());
            // Backwards, so that the sequence shows.
            Ints order(kept.size());
            for (std::size_t i = 0; i < order.size(); ++i) {
                order[i] = static_cast<int>(order.size() - 1 - i);
            }
            KOVSimCSetID const set =
                all.CreateTempOrderedCSet(order.data(), static_cast<int>(order.size()));
            tool::MappedSet const mapped = tool::MapSet(cut, model.document, type, set, true);
            EXPECT_TRUE(mapped.missing.IsEmpty());
            EXPECT_EQ(MembersOf(mapped.inB), Ints(kept.rbegin(), kept.rend()));
            // And the other way: what is not in the part is missing.
            Over const over = type == KOVObjLabelerNodes ? Over::Nodes : Over::Elements;
            KOVSimCollection source = tool::CollectionAt(type == KOVObjLabelerNodes
                                                             ? model.Mesh().GetNodeCollection()
                                                             : model.Mesh().GetElementCollection());
            tool::MappedSet const back =
                tool::MapSet(model.document, cut, type,
                             source.CreateTempCSetStrided(0, model.Space(over), 1, 1), false);
            EXPECT_EQ(back.inB.Size(), all.Space());
            EXPECT_EQ(back.missing.Size(), model.Space(over) - all.Space());
            tool::LabelComparison const comparison = tool::CompareLabels(cut, model.document, type);
            EXPECT_EQ(comparison.total.inA, all.Space());
            EXPECT_EQ(comparison.total.common, all.Space());
            EXPECT_EQ(comparison.unlabelledA, 0);
        }
    }
}

// ------------------------------------------------------------------------------------- counts

TEST(LabelComparison, CountsByInstance) {
    Labelled const a({{"L", {{1, 0}, {2, 1}, {3, 2}}}, {"A", {{7, 3}}}}, 10);
    Labelled const b({{"L", {{2, 0}, {3, 1}, {9, 2}}}, {"B", {{7, 3}}}}, 5);
    tool::LabelComparison const found =
        tool::CompareLabels(a.document, b.document, KOVObjLabelerNodes);
    ASSERT_EQ(found.instances.size(), 3U);
    EXPECT_EQ(found.instances[0].name, "A");
    EXPECT_FALSE(found.instances[0].isInB);
    EXPECT_EQ(found.instances[1].name, "B");
    EXPECT_FALSE(found.instances[1].isInA);
    EXPECT_EQ(found.instances[2].counts.inA, 3);
    EXPECT_EQ(found.instances[2].counts.inB, 3);
    EXPECT_EQ(found.instances[2].counts.common, 2);
    EXPECT_EQ(found.total.inA, 10);
    EXPECT_EQ(found.total.inB, 5);
    EXPECT_EQ(found.total.common, 2);
    EXPECT_EQ(found.unlabelledA, 6);
    EXPECT_EQ(found.unlabelledB, 1);
    EXPECT_FALSE(found.Same());
}

TEST(LabelComparison, TheSameLabelsAreTheSame) {
    Labelled const a({{"L", {{1, 0}, {2, 1}}}}, 2);
    Labelled const b({{"L", {{1, 1}, {2, 0}}}}, 2);
    EXPECT_TRUE(tool::CompareLabels(a.document, b.document, KOVObjLabelerNodes).Same());
    EXPECT_TRUE(tool::CompareLabels(a.document, a.document, KOVObjLabelerNodes).Same());
}

TEST(LabelComparison, AnEmptyInstanceOnOneSideIsADifference) {
    Labelled const a({{"L", {{1, 0}}}, {"E", {}}}, 1);
    Labelled const b({{"L", {{1, 0}}}}, 1);
    tool::LabelComparison const found =
        tool::CompareLabels(a.document, b.document, KOVObjLabelerNodes);
    EXPECT_TRUE(found.total.Same());
    EXPECT_FALSE(found.Same());
}

TEST(LabelComparison, NodesWithoutLabelsAreNotTheSame) {
    Labelled const a({}, 3);
    EXPECT_FALSE(tool::CompareLabels(a.document, a.document, KOVObjLabelerNodes).Same());
    Labelled const none({}, 0);
    EXPECT_TRUE(tool::CompareLabels(none.document, none.document, KOVObjLabelerNodes).Same());
}

}  // namespace
}  // namespace kov::test
