#include "KOVSrvLabelMapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <vector>

#include "KOVSimSchema.h"
#include "mem.h"
#include "services/LabelFixture.h"

bool operator==(KOVSrvLabelMapperQuad const& a, KOVSrvLabelMapperQuad const& b) {
    return a.primaryOrdinal == b.primaryOrdinal && a.secondaryOrdinal == b.secondaryOrdinal &&
           a.instanceIndex == b.instanceIndex && a.userLabel == b.userLabel;
}
std::ostream& operator<<(std::ostream& out, KOVSrvLabelMapperQuad const& quad) {
    return out << '{' << quad.primaryOrdinal << ", " << quad.secondaryOrdinal << ", "
               << quad.instanceIndex << ", " << quad.userLabel << '}';
}

namespace kov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Quad = KOVSrvLabelMapperQuad;
using Quads = std::vector<Quad>;

// Takes over the table that `make` gives, and frees it.
template <class Make>
Quads Table(Make make) {
    int count = -7;
    Quad* const table = make(count);
    EXPECT_GE(count, 0);
    std::unique_ptr<Quad, void (*)(void*)> const owned(table, mem_Free);
    EXPECT_NE(table, nullptr);
    return Quads(table, table + count);
}
std::vector<int> List(KOVSrvLabelMapper::Ordinals const& ordinals) {
    return std::vector<int>(ordinals.begin(), ordinals.end());
}

// Nodes: instance A has labels 1, 2, 3, 5 in both documents; 9 in the primary only, 8 in the
// secondary only; B has 1, 2 in both. Elements: A has 10, 20 in both.
class LabelMapper : public testing::TestWithParam<Medium> {
  protected:
    LabelMapper() {
        RecordNodes(primary, "A", {{1, 14}, {2, 13}, {3, 12}, {5, 10}, {9, 11}});
        RecordNodes(primary, "B", {{1, 2}, {2, 3}});
        RecordNodes(secondary, "A", {{1, 500}, {2, 501}, {3, 502}, {5, 503}, {8, 504}});
        RecordNodes(secondary, "B", {{1, 7}, {2, 6}});
        RecordElements(primary, "A", {{10, 0}, {20, 1}});
        RecordElements(secondary, "A", {{10, 41}, {20, 40}});
        primary.Reopen(KOVObjDocument::ReadOnly);
        secondary.Reopen(KOVObjDocument::ReadOnly);
        mapper = std::make_unique<KOVSrvLabelMapper>(primary.document.Focus(),
                                                     secondary.document.Focus());
    }
    KOVObjLabeler Labeler(MeshDocument const& mesh) const {
        KOVObjLabeler labeler(mesh.document, KOVObjLabelerNodes);
        labeler.Read();
        return labeler;
    }

    MeshDocument primary{GetParam()};
    MeshDocument secondary{GetParam()};
    std::unique_ptr<KOVSrvLabelMapper> mapper;
};
INSTANTIATE_TEST_SUITE_P(Media, LabelMapper, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(LabelMapper, LabelsOfAnInstanceComeAscendingWithTheirOrdinals) {
    Quads const quads =
        Table([&](int& count) { return mapper->ReadLabels(Labeler(primary), "A", count); });
    ASSERT_EQ(quads.size(), 5u);
    int const labels[] = {1, 2, 3, 5, 9};
    int const ordinals[] = {14, 13, 12, 10, 11};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(quads[i].primaryOrdinal, labels[i]);
        EXPECT_EQ(quads[i].secondaryOrdinal, ordinals[i]);
        EXPECT_EQ(quads[i].userLabel, labels[i]);
    }
}

TEST_P(LabelMapper, InvalidInstanceHasNoLabels) {
    EXPECT_THAT(Table([&](int& count) { return mapper->ReadLabels(Labeler(primary), "C", count); }),
                IsEmpty());
}

TEST_P(LabelMapper, InstanceKeepsTheLabelsOfBothSidesByLabel) {
    Quads const quads = Table([&](int& count) {
        return mapper->RemapInstanceBasedOnUserLabels(Labeler(primary), Labeler(secondary), "A", 17,
                                                      count);
    });
    EXPECT_THAT(quads, ElementsAre(Quad{14, 500, 17, 1}, Quad{13, 501, 17, 2}, Quad{12, 502, 17, 3},
                                   Quad{10, 503, 17, 5}));
}

TEST_P(LabelMapper, TableIsInOrderOfPrimaryOrdinals) {
    Quads const nodes = Table(
        [&](int& count) { return mapper->RemapBasedOnUserLabels(KOVObjLabelerNodes, count); });
    EXPECT_THAT(nodes, ElementsAre(Quad{2, 7, 1, 1}, Quad{3, 6, 1, 2}, Quad{10, 503, 0, 5},
                                   Quad{12, 502, 0, 3}, Quad{13, 501, 0, 2}, Quad{14, 500, 0, 1}));
    Quads const elements = Table(
        [&](int& count) { return mapper->RemapBasedOnUserLabels(KOVObjLabelerElements, count); });
    EXPECT_THAT(elements, ElementsAre(Quad{0, 41, 0, 10}, Quad{1, 40, 0, 20}));
}

TEST_P(LabelMapper, CommonSetsLieOnEachSidesCollection) {
    KOVSimCSet const nodes = mapper->GetCommonPrimaryNodeSet();
    EXPECT_THAT(Members(nodes), ElementsAre(2, 3, 10, 12, 13, 14));
    EXPECT_EQ(nodes.CollectionID(), primary.nodes.ID());
    EXPECT_TRUE(nodes.ID().IsNull()) << "volatile";
    KOVSimCSet const others = mapper->GetCommonSecondaryNodeSet();
    EXPECT_THAT(Members(others), ElementsAre(6, 7, 500, 501, 502, 503));
    EXPECT_EQ(others.CollectionID(), secondary.nodes.ID());
    EXPECT_THAT(Members(mapper->GetCommonPrimaryElementSet()), ElementsAre(0, 1));
    EXPECT_EQ(mapper->GetCommonPrimaryElementSet().CollectionID(), primary.elements.ID());
    EXPECT_THAT(Members(mapper->GetCommonSecondaryElementSet()), ElementsAre(40, 41));
    EXPECT_EQ(mapper->GetCommonSecondaryElementSet().CollectionID(), secondary.elements.ID());
}

TEST_P(LabelMapper, MembersWithoutARowAreLeftOut) {
    KOVSimCSetID const set = primary.Nodes({0, 2, 4, 11, 12, 14, 999});
    EXPECT_THAT(List(mapper->GetMappingFromPrimaryNodeSet(set)), ElementsAre(0, 3, 5));
    KOVSimCSet const mapped = mapper->GetSecondaryNodeSet(set, false);
    EXPECT_THAT(Members(mapped), ElementsAre(7, 502, 500));
    EXPECT_FALSE(mapped.IsAscending());
    EXPECT_EQ(mapped.CollectionID(), secondary.nodes.ID());
    EXPECT_THAT(Members(mapper->GetSecondaryNodeSet(set, true)), ElementsAre(7, 500, 502));
}

TEST_P(LabelMapper, ASetsOwnOrderIsKept) {
    KOVSimCSetID const set = MeshDocument::Ordered(primary.nodes, {14, 0, 3, 12, 2, 14, 11});
    EXPECT_THAT(List(mapper->GetMappingFromPrimaryNodeSet(set)), ElementsAre(5, 1, 3, 0, 5));
    EXPECT_THAT(Members(mapper->GetSecondaryNodeSet(set, false)), ElementsAre(500, 6, 502, 7, 500));
    EXPECT_THAT(Members(mapper->GetSecondaryNodeSet(set, true)), ElementsAre(6, 7, 500, 502));
}

TEST_P(LabelMapper, ElementSetsGoByTheTableOfElements) {
    KOVSimCSetID const set = primary.Elements({0, 1, 2});
    EXPECT_THAT(List(mapper->GetMappingFromPrimaryElementSet(set)), ElementsAre(0, 1));
    EXPECT_THAT(Members(mapper->GetSecondaryElementSet(set, false)), ElementsAre(41, 40));
    EXPECT_THAT(Members(mapper->GetSecondaryElementSet(set, true)), ElementsAre(40, 41));
    EXPECT_EQ(mapper->GetElementMappingOrdinalUserLabel(1), 20);
    EXPECT_EQ(mapper->GetElementMappingOrdinalInstanceName(1), "A");
}

TEST_P(LabelMapper, MappingOrdinalsLeadToLabelsAndInstances) {
    int const at = mapper->GetMappingFromPrimaryNodeSet(primary.Nodes({10})).ConstGet(0);
    EXPECT_EQ(mapper->GetNodeMappingOrdinalUserLabel(at), 5);
    EXPECT_EQ(mapper->GetNodeMappingOrdinalInstanceName(at), "A");
    EXPECT_EQ(mapper->GetNodeMappingOrdinalUserLabel(0), 1);
    EXPECT_EQ(mapper->GetNodeMappingOrdinalInstanceName(0), "B");
}

TEST_P(LabelMapper, EmptySetsOfAnyKindGiveEmptySets) {
    for (KOVSimCSetID const& set :
         {KOVSimCSetID(), primary.nodes.EmptyCSetID(), MeshDocument::Ordered(primary.nodes, {}),
          primary.Nodes({500, 501})}) {
        EXPECT_EQ(mapper->GetMappingFromPrimaryNodeSet(set).Size(), 0);
        for (bool const unordered : {false, true}) {
            KOVSimCSet const mapped = mapper->GetSecondaryNodeSet(set, unordered);
            EXPECT_TRUE(mapped.IsEmpty());
            EXPECT_EQ(mapped.CollectionID(), secondary.nodes.ID());
        }
    }
}

TEST_P(LabelMapper, MapSetKeepsRepeatedAndDescendingOrdinals) {
    Quad table[] = {{2, 9, 0, 1}, {4, 9, 0, 2}, {5, 3, 0, 3}, {8, 1, 0, 4}};
    KOVSimCSetID const set = primary.Nodes({1, 2, 3, 4, 5, 6, 7, 8, 9});
    EXPECT_THAT(Members(mapper->MapSet(table, 4, set, secondary.nodes.ID(), false)),
                ElementsAre(9, 9, 3, 1));
    EXPECT_THAT(Members(mapper->MapSet(table, 4, set, secondary.nodes.ID(), true)),
                ElementsAre(1, 3, 9));
    KOVSimCSetID const ordered = MeshDocument::Ordered(primary.nodes, {8, 3, 2, 8});
    EXPECT_THAT(Members(mapper->MapSet(table, 4, ordered, secondary.nodes.ID(), false)),
                ElementsAre(1, 9, 1));
}

TEST_P(LabelMapper, BuildingBlocksTakeTheTableThatIsGiven) {
    Quad table[] = {{2, 9, 0, 1}, {4, 7, 0, 2}, {5, 3, 0, 3}};
    EXPECT_THAT(List(mapper->GetMappingFromPrimarySet(table, 2, primary.Nodes({2, 4, 5}))),
                ElementsAre(0, 1));
    EXPECT_THAT(Members(mapper->GetCommonPrimarySet(table, 3, primary.nodes.ID())),
                ElementsAre(2, 4, 5));
    EXPECT_THAT(Members(mapper->GetCommonSecondarySet(table, 3, secondary.nodes.ID())),
                ElementsAre(3, 7, 9));
    EXPECT_TRUE(mapper->GetCommonPrimarySet(nullptr, 0, primary.nodes.ID()).IsEmpty());
    EXPECT_EQ(mapper->GetMappingFromPrimarySet(nullptr, 0, primary.Nodes({2})).Size(), 0);
}

TEST_P(LabelMapper, SecondaryOrdinalsBeyondTheCollectionAreRefused) {
    Quad table[] = {{2, 5000, 0, 1}};
    for (bool const unordered : {false, true}) {
        EXPECT_THROW(mapper->MapSet(table, 1, primary.Nodes({2}), secondary.nodes.ID(), unordered),
                     KOVSimException);
    }
}

TEST_P(LabelMapper, CollectionsAreFoundFromTheFocus) {
    EXPECT_EQ(mapper->GetCollection(primary.document.Focus(), schema::Mesh_nodes()),
              primary.nodes.ID());
    EXPECT_EQ(mapper->GetCollection(secondary.document.Focus(), schema::Mesh_elements()),
              secondary.elements.ID());
    EXPECT_TRUE(mapper->GetCollection(KOVSimPosition(), schema::Mesh_nodes()).IsNull());
}

TEST_P(LabelMapper, ComparisonLooksAtTheFirstIntOnly) {
    Quad const a{1, 9, 9, 9}, b{2, 0, 0, 0}, c{2, 5, 5, 5};
    EXPECT_EQ(KOVSrvLabelMapper::IntQuadCompare(&a, &b), -1);
    EXPECT_EQ(KOVSrvLabelMapper::IntQuadCompare(&b, &a), 1);
    EXPECT_EQ(KOVSrvLabelMapper::IntQuadCompare(&b, &c), 0);
    int const lowest = -2147483647 - 1;
    int const highest = 2147483647;
    EXPECT_EQ(KOVSrvLabelMapper::IntQuadCompare(&lowest, &highest), -1);
    EXPECT_EQ(KOVSrvLabelMapper::IntQuadCompare(&highest, &lowest), 1);
}

// A table that was made is not made again, and needs its documents no more than a set does.
TEST_P(LabelMapper, ATableStaysAsItWasMade) {
    primary.Reopen();
    secondary.Reopen();
    KOVSrvLabelMapper mapping(primary.document.Focus(), secondary.document.Focus());
    EXPECT_EQ(mapping.GetCommonPrimaryNodeSet().Size(), 6);
    RecordNodes(primary, "A", {{1, 14}});
    RecordNodes(primary, "C", {{1, 20}});
    RecordNodes(secondary, "C", {{1, 20}});
    EXPECT_EQ(mapping.GetCommonPrimaryNodeSet().Size(), 6);
    EXPECT_EQ(mapping.GetNodeMappingOrdinalInstanceName(0), "B");
    KOVSrvLabelMapper later(primary.document.Focus(), secondary.document.Focus());
    EXPECT_THAT(Members(later.GetCommonPrimaryNodeSet()), ElementsAre(2, 3, 14, 20));
    primary.document.Close();
    secondary.document.Close();
    EXPECT_EQ(mapping.GetNodeMappingOrdinalUserLabel(5), 1);
    EXPECT_EQ(mapping.GetNodeMappingOrdinalInstanceName(5), "A");
}

TEST_P(LabelMapper, NothingIsReadBeforeATableIsNeeded) {
    KOVSrvLabelMapper mapping(primary.document.Focus(), secondary.document.Focus());
    primary.document.Close();
    EXPECT_THROW(mapping.GetCommonPrimaryNodeSet(), KOVSimException);
    EXPECT_THROW(mapping.GetMappingFromPrimaryElementSet(KOVSimCSetID()), KOVSimException);
}

TEST_P(LabelMapper, ADocumentThatWasClosedIsRefused) {
    KOVSimCSetID const set = primary.Nodes({2});
    ASSERT_EQ(mapper->GetMappingFromPrimaryNodeSet(set).Size(), 1);
    secondary.document.Close();
    EXPECT_EQ(mapper->GetMappingFromPrimaryNodeSet(set).Size(), 1) << "the primary is open";
    EXPECT_THROW(mapper->GetSecondaryNodeSet(set, false), KOVSimException);
    EXPECT_THROW(mapper->GetCommonSecondaryNodeSet(), KOVSimException);
    primary.document.Close();
    EXPECT_THROW(mapper->GetMappingFromPrimaryNodeSet(set), KOVSimException);
    EXPECT_THROW(mapper->GetCommonPrimaryNodeSet(), KOVSimException);
}

TEST_P(LabelMapper, NullPositionsHaveNothingInCommon) {
    KOVSrvLabelMapper mapping(KOVSimPosition(), secondary.document.Focus());
    EXPECT_EQ(mapping.GetMappingFromPrimaryNodeSet(primary.Nodes({2})).Size(), 0);
    EXPECT_TRUE(mapping.GetCommonSecondaryNodeSet().IsEmpty());
    KOVSrvLabelMapper other(primary.document.Focus(), KOVSimPosition());
    EXPECT_TRUE(other.GetCommonPrimaryNodeSet().IsEmpty());
}

class LabelMapperPairs : public testing::TestWithParam<Medium> {
  protected:
    void Reopen() {
        primary.Reopen(KOVObjDocument::ReadOnly);
        secondary.Reopen(KOVObjDocument::ReadOnly);
    }
    MeshDocument primary{GetParam()};
    MeshDocument secondary{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Media, LabelMapperPairs, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(LabelMapperPairs, DisjointLabelsGiveAnEmptyTable) {
    RecordElements(primary, "A", {{1, 0}, {3, 1}, {5, 2}});
    RecordElements(secondary, "A", {{2, 0}, {4, 1}, {6, 2}});
    Reopen();
    KOVSrvLabelMapper mapper(primary.document.Focus(), secondary.document.Focus());
    EXPECT_THAT(Table([&](int& count) {
                    return mapper.RemapBasedOnUserLabels(KOVObjLabelerElements, count);
                }),
                IsEmpty());
    EXPECT_TRUE(mapper.GetCommonPrimaryElementSet().IsEmpty());
    EXPECT_TRUE(mapper.GetCommonSecondaryElementSet().IsEmpty());
    EXPECT_EQ(mapper.GetMappingFromPrimaryElementSet(primary.Elements({0, 1, 2})).Size(), 0);
    EXPECT_EQ(
        mapper.GetMappingFromPrimaryElementSet(MeshDocument::Ordered(primary.elements, {2, 0}))
            .Size(),
        0);
    EXPECT_TRUE(mapper.GetSecondaryElementSet(primary.Elements({1}), false).IsEmpty());
}

TEST_P(LabelMapperPairs, DocumentsWithoutLabelsHaveNothingInCommon) {
    Reopen();
    KOVSrvLabelMapper mapper(primary.document.Focus(), secondary.document.Focus());
    EXPECT_TRUE(mapper.GetCommonPrimaryNodeSet().IsEmpty());
    EXPECT_EQ(mapper.GetCommonPrimaryNodeSet().CollectionID(), primary.nodes.ID());
    EXPECT_TRUE(mapper.GetSecondaryNodeSet(primary.Nodes({1}), true).IsEmpty());
}

TEST_P(LabelMapperPairs, InstanceOfTheSecondaryAloneAddsNothing) {
    RecordNodes(primary, "B", {{1, 5}});
    RecordNodes(secondary, "A", {{1, 1}, {2, 2}});
    RecordNodes(secondary, "B", {{1, 3}});
    Reopen();
    KOVSrvLabelMapper mapper(primary.document.Focus(), secondary.document.Focus());
    EXPECT_THAT(Members(mapper.GetCommonSecondaryNodeSet()), ElementsAre(3));
    EXPECT_EQ(mapper.GetNodeMappingOrdinalInstanceName(0), "B");
}

TEST_P(LabelMapperPairs, InstanceOfThePrimaryAloneAddsNothing) {
    RecordNodes(primary, "A", {{1, 4}});
    RecordNodes(primary, "B", {{1, 5}});
    RecordNodes(primary, "empty", {});
    RecordNodes(secondary, "B", {{1, 3}});
    RecordNodes(secondary, "empty", {{1, 4}});
    Reopen();
    KOVSrvLabelMapper mapper(primary.document.Focus(), secondary.document.Focus());
    EXPECT_THAT(Members(mapper.GetCommonPrimaryNodeSet()), ElementsAre(5));
    EXPECT_EQ(mapper.GetNodeMappingOrdinalInstanceName(0), "B");
}

TEST_P(LabelMapperPairs, NodesAndElementsKeepTheirOwnInstances) {
    for (MeshDocument const* const mesh : {&primary, &secondary}) {
        RecordNodes(*mesh, "A", {{1, 0}});
        RecordNodes(*mesh, "C", {{1, 1}});
        RecordElements(*mesh, "B", {{1, 0}});
        RecordElements(*mesh, "C", {{1, 1}});
        RecordElements(*mesh, "D", {{1, 2}});
    }
    Reopen();
    KOVSrvLabelMapper mapper(primary.document.Focus(), secondary.document.Focus());
    EXPECT_EQ(mapper.GetCommonPrimaryNodeSet().Size(), 2);
    EXPECT_EQ(mapper.GetCommonPrimaryElementSet().Size(), 3);
    EXPECT_EQ(mapper.GetNodeMappingOrdinalInstanceName(0), "A");
    EXPECT_EQ(mapper.GetNodeMappingOrdinalInstanceName(1), "C");
    EXPECT_EQ(mapper.GetElementMappingOrdinalInstanceName(0), "B");
    EXPECT_EQ(mapper.GetElementMappingOrdinalInstanceName(1), "C");
    EXPECT_EQ(mapper.GetElementMappingOrdinalInstanceName(2), "D");
}

// Few ordinals in a wide range, and rows of two instances with one ordinal, go another way.
TEST_P(LabelMapperPairs, ScatteredOrdinalsAreSortedToo) {
    RecordNodes(primary, "A", {{1, 999}, {2, 0}, {3, 500}});
    RecordNodes(secondary, "A", {{1, 1}, {2, 2}, {3, 3}});
    Reopen();
    KOVSrvLabelMapper mapper(primary.document.Focus(), secondary.document.Focus());
    EXPECT_THAT(
        Table([&](int& count) { return mapper.RemapBasedOnUserLabels(KOVObjLabelerNodes, count); }),
        ElementsAre(Quad{0, 2, 0, 2}, Quad{500, 3, 0, 3}, Quad{999, 1, 0, 1}));
}

TEST_P(LabelMapperPairs, AnOrdinalOfTwoInstancesHasTwoRows) {
    RecordNodes(primary, "A", {{1, 6}, {2, 5}});
    RecordNodes(primary, "B", {{1, 5}, {2, 7}});
    RecordNodes(secondary, "A", {{1, 1}, {2, 2}});
    RecordNodes(secondary, "B", {{1, 3}, {2, 4}});
    Reopen();
    KOVSrvLabelMapper mapper(primary.document.Focus(), secondary.document.Focus());
    Quads const table =
        Table([&](int& count) { return mapper.RemapBasedOnUserLabels(KOVObjLabelerNodes, count); });
    ASSERT_EQ(table.size(), 4u);
    EXPECT_THAT(std::vector<Quad>(table.begin(), table.begin() + 2),
                testing::UnorderedElementsAre(Quad{5, 2, 0, 2}, Quad{5, 3, 1, 1}));
    EXPECT_EQ(table[2], (Quad{6, 1, 0, 1}));
    EXPECT_EQ(table[3], (Quad{7, 4, 1, 2}));
}

// Instances whose ordinals do not lie one behind the other.
TEST_P(LabelMapperPairs, InterleavedInstancesComeInOrderOfPrimaryOrdinals) {
    RecordNodes(primary, "A", {{1, 4}, {2, 2}, {3, 0}});
    RecordNodes(primary, "B", {{1, 1}, {2, 3}, {3, 5}});
    RecordNodes(secondary, "A", {{1, 10}, {2, 11}, {3, 12}});
    RecordNodes(secondary, "B", {{1, 13}, {2, 14}, {3, 15}});
    Reopen();
    KOVSrvLabelMapper mapper(primary.document.Focus(), secondary.document.Focus());
    EXPECT_THAT(
        Table([&](int& count) { return mapper.RemapBasedOnUserLabels(KOVObjLabelerNodes, count); }),
        ElementsAre(Quad{0, 12, 0, 3}, Quad{1, 13, 1, 1}, Quad{2, 11, 0, 2}, Quad{3, 14, 1, 2},
                    Quad{4, 10, 0, 1}, Quad{5, 15, 1, 3}));
}

TEST_P(LabelMapperPairs, ADocumentMayBeMappedOntoItself) {
    RecordNodes(primary, "A", {{1, 4}, {2, 2}});
    Reopen();
    KOVSrvLabelMapper mapper(primary.document.Focus(), primary.document.Focus());
    EXPECT_THAT(Members(mapper.GetCommonPrimaryNodeSet()), ElementsAre(2, 4));
    EXPECT_THAT(Members(mapper.GetCommonSecondaryNodeSet()), ElementsAre(2, 4));
}

// ---- assertions ----

constexpr char const* kSource = "KOVSrvLabelMapper";

struct TwoDocuments {
    TwoDocuments() {
        RecordNodes(primary, "A", {{1, 0}, {2, 1}});
        RecordNodes(secondary, "A", {{1, 0}, {2, 1}});
        RecordElements(primary, "A", {{1, 0}, {2, 1}});
        RecordElements(secondary, "A", {{1, 0}, {2, 1}});
    }
    MeshDocument primary, secondary;
    KOVSrvLabelMapper mapper{primary.document.Focus(), secondary.document.Focus()};
};

TEST(LabelMapperDeath, SetsOfTheSecondaryItselfAreRefused) {
    ExpectCheckedAssertion("primaryElementSet.CollectionID() != elementCol", kSource, [] {
        TwoDocuments two;
        two.mapper.GetSecondaryElementSet(two.secondary.Elements({0}), false);
    });
    ExpectCheckedAssertion("primaryNodeSet.CollectionID() != nodeCol", kSource, [] {
        TwoDocuments two;
        two.mapper.GetSecondaryNodeSet(two.secondary.Nodes({0}), true);
    });
}

TEST(LabelMapperDeath, SetOfADocumentThatIsMappedOntoItselfIsRefused) {
    ExpectCheckedAssertion("primaryNodeSet.CollectionID() != nodeCol", kSource, [] {
        TwoDocuments two;
        KOVSrvLabelMapper mapper(two.primary.document.Focus(), two.primary.document.Focus());
        mapper.GetSecondaryNodeSet(two.primary.Nodes({0}), true);
    });
}

TEST(LabelMapperDeath, MappingOrdinalsNeedATable) {
    ExpectCheckedAssertion("m_nodes != 0", kSource, [] {
        TwoDocuments two;
        two.mapper.GetNodeMappingOrdinalUserLabel(0);
    });
    ExpectCheckedAssertion("m_elements != 0", kSource, [] {
        TwoDocuments two;
        two.mapper.GetElementMappingOrdinalUserLabel(0);
    });
    ExpectCheckedAssertion("m_nodes != 0", kSource, [] {
        TwoDocuments two;
        two.mapper.GetCommonPrimaryElementSet();
        two.mapper.GetNodeMappingOrdinalInstanceName(0);
    });
    ExpectCheckedAssertion("m_elements != 0", kSource, [] {
        TwoDocuments two;
        two.mapper.GetCommonPrimaryNodeSet();
        two.mapper.GetElementMappingOrdinalInstanceName(0);
    });
}

TEST(LabelMapperDeath, MappingOrdinalsEndWithTheTable) {
    ExpectCheckedAssertion("mappingOrdinal < m_nnodes", kSource, [] {
        TwoDocuments two;
        two.mapper.GetCommonPrimaryNodeSet();
        two.mapper.GetNodeMappingOrdinalUserLabel(2);
    });
    ExpectCheckedAssertion("mappingOrdinal < m_nelements", kSource, [] {
        TwoDocuments two;
        two.mapper.GetCommonPrimaryElementSet();
        two.mapper.GetElementMappingOrdinalUserLabel(2);
    });
    ExpectCheckedAssertion("mappingOrdinal < m_nnodes", kSource, [] {
        TwoDocuments two;
        two.mapper.GetCommonPrimaryNodeSet();
        two.mapper.GetNodeMappingOrdinalInstanceName(2);
    });
    ExpectCheckedAssertion("mappingOrdinal < m_nelements", kSource, [] {
        TwoDocuments two;
        two.mapper.GetCommonPrimaryElementSet();
        two.mapper.GetElementMappingOrdinalInstanceName(2);
    });
}

// An empty table is a table.
TEST(LabelMapperDeath, EmptyTableHasNoMappingOrdinals) {
    ExpectCheckedAssertion("mappingOrdinal < m_nnodes", kSource, [] {
        MeshDocument primary, secondary;
        KOVSrvLabelMapper mapper(primary.document.Focus(), secondary.document.Focus());
        mapper.GetCommonPrimaryNodeSet();
        mapper.GetNodeMappingOrdinalUserLabel(0);
    });
}

TEST(LabelMapperDeath, NothingIsNotCompared) {
    static int const one = 1;
    ExpectCheckedAssertion("itemA != NULL", kSource,
                           [] { KOVSrvLabelMapper::IntQuadCompare(nullptr, &one); });
    ExpectCheckedAssertion("itemB != NULL", kSource,
                           [] { KOVSrvLabelMapper::IntQuadCompare(&one, nullptr); });
}

}  // namespace
}  // namespace kov::test
