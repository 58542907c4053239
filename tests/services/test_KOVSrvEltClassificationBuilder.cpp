#include <climits>
#include <vector>

#include "KOVSrvEltClassBuilderImplShape.h"
#include "services/ClassFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Class = ClassDocument::Class;

constexpr char const* kShapeSource = "KOVSrvEltClassBuilderImplShape";

class EltClassification : public testing::TestWithParam<Medium> {
  protected:
    ClassDocument mesh{GetParam(), 100, 1000};
};
INSTANTIATE_TEST_SUITE_P(Media, EltClassification, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(EltClassification, MeshWithoutAnAssignmentGivesNullAndIsLeftAlone) {
    auto const before = mesh.document.Statistics();
    EXPECT_TRUE(mesh.Build().IsNull());
    {
        // No second transaction is opened beside this one.
        auto const transaction = mesh.Write();
        EXPECT_TRUE(mesh.Build().IsNull());
    }
    auto const after = mesh.document.Statistics();
    EXPECT_EQ(after.records, before.records);
    EXPECT_EQ(after.collections, before.collections);
    EXPECT_EQ(after.commits, before.commits);
    mesh.Reopen(KOVObjDocument::ReadOnly);
    EXPECT_TRUE(mesh.Build().IsNull());
}

TEST_P(EltClassification, EmptyAssignmentGivesAClassificationWithoutClasses) {
    mesh.Assign(std::vector<KOVSimCompartment>());
    KOVSimPosition const built = mesh.Build();
    ASSERT_FALSE(built.IsNull());
    EXPECT_TRUE(built.IsA(schema::ElementClassification()));
    mesh.Reopen();
    KOVSimPosition const classification = mesh.Mesh().GetElementClassification();
    ASSERT_FALSE(classification.IsNull());
    EXPECT_EQ(mesh.ClassSpace(), 0);
    EXPECT_TRUE(mesh.Mesh().GetElementClassCollection().IsA(schema::ElementClassCollection()));
    EXPECT_THAT(mesh.SpecificationsOfClasses(classification), IsEmpty());
    KOVSimPosition const membership =
        classification.GetPosition(schema::ElementClassification_membership());
    ASSERT_FALSE(membership.IsNull());
    EXPECT_TRUE(membership.IsA(schema::ElementClassMembership()));
    EXPECT_EQ(KOVSimDSet(membership).GetCtation().Size(), 0);
}

TEST_P(EltClassification, SpecificationsOfOneShapeAreOneClassLinkedToTheFirst) {
    mesh.AddSpecifications({zdm_Shape_HEXAHEDRON_8, zdm_Shape_HEXAHEDRON_8});
    mesh.Assign({{1, {5, 6, 7}}, {0, {1, 6, 900}}});
    KOVSimPosition const built = mesh.Build();
    EXPECT_EQ(built.ID(), mesh.Mesh().GetElementClassification().ID());
    mesh.Reopen();
    KOVSimPosition const classification = mesh.Mesh().GetElementClassification();
    EXPECT_THAT(ClassDocument::Membership(classification),
                ElementsAre(Class{0, {1, 5, 6, 7, 900}}));
    EXPECT_THAT(mesh.SpecificationsOfClasses(classification), ElementsAre(1));
}

TEST_P(EltClassification, ClassesFollowTheCompartmentsAndTheMembershipFollowsTheShapes) {
    mesh.AddSpecifications({zdm_Shape_HEXAHEDRON_8, zdm_Shape_LINE_2, zdm_Shape_HEXAHEDRON_8});
    mesh.Assign({{2, {0, 1}}, {1, {2, 3}}, {0, {4}}});
    mesh.Build();
    mesh.Reopen();
    KOVSimPosition const classification = mesh.Mesh().GetElementClassification();
    EXPECT_THAT(mesh.SpecificationsOfClasses(classification), ElementsAre(2, 1));
    EXPECT_THAT(ClassDocument::Membership(classification),
                ElementsAre(Class{1, {2, 3}}, Class{0, {0, 1, 4}}));
}

TEST_P(EltClassification, ClassCollectionHasAMemberForEachCompartment) {
    mesh.AddSpecifications(std::vector<int>(5, zdm_Shape_TRIANGLE_3));
    mesh.Assign({{0, {0}}, {1, {1}}, {2, {2}}, {3, {3}}, {4, {4}}});
    mesh.Build();
    mesh.Reopen();
    EXPECT_EQ(mesh.ClassSpace(), 5);
    EXPECT_THAT(ClassDocument::Membership(mesh.Mesh().GetElementClassification()),
                ElementsAre(Class{0, {0, 1, 2, 3, 4}}));
}

TEST_P(EltClassification, AnElementSetThatStandsAloneIsKeptAsItIs) {
    mesh.AddSpecifications({zdm_Shape_POINT_1, zdm_Shape_WEDGE_6, zdm_Shape_WEDGE_6});
    mesh.Assign({{0, {7}}, {1, {8}}, {2, {9}}});
    KOVSimDSet const assignment(mesh.Mesh().GetElementSpecAssignment());
    auto const setsBefore = mesh.document.Statistics().sets;
    KOVSimDSet const membership(
        mesh.Build().GetPosition(schema::ElementClassification_membership()));
    EXPECT_EQ(membership.GetCtation().Compartments().ConstGet(0).CSet(1).ID(),
              assignment.GetCtation().Compartments().ConstGet(0).CSet(1).ID());
    EXPECT_NE(membership.GetCtation().Compartments().ConstGet(1).CSet(1).ID(),
              assignment.GetCtation().Compartments().ConstGet(1).CSet(1).ID());
    // One set for each of the two classes, and one for the union.
    EXPECT_EQ(mesh.document.Statistics().sets, setsBefore + 3);
}

TEST_P(EltClassification, EachFurtherCompartmentOfAShapeRegistersOneUnion) {
    mesh.AddSpecifications(std::vector<int>(4, zdm_Shape_TRIANGLE_3));
    mesh.Assign({{0, {0}}, {1, {1}}, {2, {2}}, {3, {3}}});
    auto const setsBefore = mesh.document.Statistics().sets;
    mesh.Build();
    mesh.Reopen();
    EXPECT_EQ(mesh.document.Statistics().sets, setsBefore + 1 + 3);
    EXPECT_NE(mesh.elements.SeekCSet(KOVSimCSet(mesh.Elements({0, 1, 2})), false).Minor(), -1);
}

TEST_P(EltClassification, SecondCallMakesASecondClassificationAndReplacesTheLinks) {
    mesh.AddSpecifications({zdm_Shape_LINE_2, zdm_Shape_LINE_3});
    mesh.Assign({{0, {1, 2}}, {1, {3}}});
    KOVSimPosition const first = mesh.Build();
    KOVSimPosition const firstCollection = mesh.Mesh().GetElementClassCollection();
    KOVSimPosition const second = mesh.Build();
    EXPECT_NE(first.ID(), second.ID());
    EXPECT_EQ(mesh.Mesh().GetElementClassification().ID(), second.ID());
    EXPECT_NE(mesh.Mesh().GetElementClassCollection().ID(), firstCollection.ID());
    EXPECT_EQ(ClassDocument::Membership(first), ClassDocument::Membership(second));
    EXPECT_THAT(mesh.SpecificationsOfClasses(first), ElementsAre(0, 1));
    EXPECT_THAT(mesh.SpecificationsOfClasses(second), ElementsAre(0, 1));
}

TEST_P(EltClassification, SpecificationWithoutAShapeIsRefusedAndNothingStays) {
    {
        auto const transaction = mesh.Write();
        mesh.NewSpecification(mesh.Shape(zdm_Shape_LINE_2));
        mesh.NewSpecification(KOVSimPosition());
        transaction->Commit();
    }
    mesh.Assign({{0, {1}}, {1, {2}}});
    auto const before = mesh.document.Statistics();
    EXPECT_THROW(mesh.Build(), KOVSimException);
    mesh.Reopen();
    EXPECT_EQ(mesh.document.Statistics().records, before.records);
    EXPECT_EQ(mesh.document.Statistics().collections, before.collections);
    EXPECT_TRUE(mesh.Mesh().GetElementClassification().IsNull());
    EXPECT_TRUE(mesh.Mesh().GetElementClassCollection().IsNull());
}

// The test of the place of the element specifications lets -1 pass: what stops is the compartment.
TEST_P(EltClassification, CompartmentWithoutSpecificationsIsTheStoresRefusal) {
    mesh.Assign({ClassDocument::Compartment({mesh.Nodes({0}), mesh.Elements({1})})});
    EXPECT_THROW(mesh.Build(), KOVSimException);
    EXPECT_TRUE(mesh.Mesh().GetElementClassification().IsNull());
}

TEST_P(EltClassification, OpenTransactionAndReadOnlyDocumentAreRefused) {
    mesh.AddSpecifications({zdm_Shape_LINE_2});
    mesh.Assign({{0, {1}}});
    {
        auto const transaction = mesh.Write();
        EXPECT_THROW(mesh.Build(), KOVSimException);
    }
    EXPECT_TRUE(mesh.Mesh().GetElementClassification().IsNull());
    mesh.Reopen(KOVObjDocument::ReadOnly);
    if (mesh.document.IsReadOnly()) {
        EXPECT_THROW(mesh.Build(), KOVSimException);
    }
}

TEST_P(EltClassification, BuilderOfShapesGivesTheSame) {
    mesh.AddSpecifications({zdm_Shape_LINE_2});
    mesh.Assign({{0, {1}}});
    KOVSrvEltClassBuilderImplShape shape;
    KOVSrvEltClassBuilderImpl& builder = shape;
    KOVSimPosition const built = builder.BuildEltClassification(mesh.document.Focus());
    mesh.Reopen();
    EXPECT_EQ(ClassDocument::Membership(mesh.Mesh().GetElementClassification()),
              (std::vector<Class>{{0, {1}}}));
    EXPECT_EQ(built.ID().data.minor, mesh.Mesh().GetElementClassification().ID().data.minor);
}

// Two thousand million elements: none of them is visited.
TEST_P(EltClassification, ElementsOfTheLargestMeshAreNotVisited) {
    constexpr int kTypes = 20, kCount = INT_MAX / kTypes;
    mesh.AddSpecifications(std::vector<int>(kTypes, zdm_Shape_TETRAHEDRON_4));
    std::vector<KOVSimCompartment> compartments;
    {
        auto const transaction = mesh.Write();
        mesh.elements.ExtendSpace(INT_MAX);
        transaction->Commit();
    }
    for (int type = 0; type < kTypes; ++type) {
        compartments.push_back(ClassDocument::Compartment(
            {mesh.Spec({type}), mesh.elements.CreateTempCSetStrided(type * kCount, kCount, 1, 1)}));
    }
    mesh.Assign(compartments);
    mesh.Build();
    mesh.Reopen();
    KOVSimDSet const membership(mesh.Mesh().GetElementClassification().GetPosition(
        schema::ElementClassification_membership()));
    ASSERT_EQ(membership.GetCtation().Size(), 1);
    KOVSimCSet const& elements = membership.GetCtation().Compartments().ConstGet(0).CSet(1);
    EXPECT_EQ(elements.Size(), kTypes * kCount);
    EXPECT_EQ(elements[elements.Size() - 1], kTypes * kCount - 1);
}

using EltClassificationDeath = testing::Test;

TEST(EltClassificationDeath, TypeThatIsNotByShapeIsRefused) {
    for (int type : {1, -1, 7}) {
        ExpectCheckedAssertion(
            "!\"Element Classification elaboration not yet implemented.\"",
            "KOVSrvEltClassificationBuilder", [&] {
                ClassDocument const mesh;
                KOVSrvEltClassificationBuilder(mesh.document.Focus())
                    .BuildEltClassification(static_cast<KOVSrvEltClassificationType>(type));
            });
    }
}

// `compartment` makes the one compartment of an assignment over two specifications.
template <class Compartment>
void ExpectRefusedAssignment(char const* condition, Compartment compartment) {
    ExpectCheckedAssertion(condition, kShapeSource, [&] {
        ClassDocument const mesh;
        mesh.AddSpecifications({zdm_Shape_LINE_2, zdm_Shape_LINE_2});
        mesh.Assign({compartment(mesh)});
        mesh.Build();
    });
}

KOVSimCompartment Of(std::initializer_list<KOVSimCSetID> const& sets) {
    return ClassDocument::Compartment(sets);
}

TEST(EltClassificationDeath, ElementsBeforeTheSpecificationAreRefused) {
    ExpectRefusedAssignment("eltColIndex != -1 && eltSpecColIndex != 1",
                            [](ClassDocument const& mesh) {
                                return Of({mesh.Elements({1}), mesh.Spec({0})});
                            });
}

TEST(EltClassificationDeath, CompartmentWithoutElementsIsRefused) {
    ExpectRefusedAssignment("eltColIndex != -1 && eltSpecColIndex != 1",
                            [](ClassDocument const& mesh) {
                                return Of({mesh.Spec({0}), mesh.Nodes({1})});
                            });
}

TEST(EltClassificationDeath, CompartmentOfThreeSetsIsRefused) {
    ExpectRefusedAssignment("eltSpecCompartement.Size() == 2", [](ClassDocument const& mesh) {
        return Of({mesh.Spec({0}), mesh.Elements({1}), mesh.Nodes({1})});
    });
}

TEST(EltClassificationDeath, CompartmentOfNoSpecificationIsRefused) {
    ExpectRefusedAssignment("specCSet.Size() == 1", [](ClassDocument const& mesh) {
        return Of({mesh.Spec({}), mesh.Elements({1})});
    });
}

TEST(EltClassificationDeath, CompartmentOfTwoSpecificationsIsRefused) {
    ExpectRefusedAssignment("specCSet.Size() == 1", [](ClassDocument const& mesh) {
        return Of({mesh.Spec({0, 1}), mesh.Elements({1})});
    });
}

TEST(EltClassificationDeath, NothingOfARefusedAssignmentIsCommitted) {
    ClassDocument mesh(Medium::Disk);
    mesh.AddSpecifications({zdm_Shape_LINE_2, zdm_Shape_LINE_3});
    mesh.Assign({Of({mesh.Spec({0}), mesh.Elements({1})}), Of({mesh.Spec({1}), mesh.Nodes({1})})});
    auto const before = mesh.document.Statistics();
    mesh.document.Close();
    ExpectCheckedAssertion("eltColIndex != -1 && eltSpecColIndex != 1", kShapeSource, [&] {
        mesh.Reopen();
        mesh.Build();
    });
    mesh.Reopen();
    EXPECT_EQ(mesh.document.Statistics().commits, before.commits);
    EXPECT_EQ(mesh.document.Statistics().records, before.records);
    EXPECT_TRUE(mesh.Mesh().GetElementClassification().IsNull());
}

}  // namespace
}  // namespace kov::test
