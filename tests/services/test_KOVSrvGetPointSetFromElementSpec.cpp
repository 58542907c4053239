#include <vector>

#include "KOVSrvGetPointSetFromElementSpec.h"
#include "services/ClassFixture.h"

namespace kov::test {
namespace {

class PointSet : public testing::TestWithParam<Medium> {
  protected:
    int NewSpecification(int shape, char const* name = "") const {
        auto const transaction = mesh.Write();
        int const index =
            mesh.NewSpecification(shape < 0 ? KOVSimPosition() : mesh.Shape(shape), name);
        transaction->Commit();
        return index;
    }
    KOVSimCSet Points(int specification) const {
        return KOVSrvGetPointSetFromElementSpec(mesh.Specification(specification));
    }
    // The number of points under a name, which are the first of the collection in any case.
    int Count(int shape, char const* name) {
        int const specification = NewSpecification(shape, name);
        mesh.Reopen();
        KOVSimCSet const points = Points(specification);
        EXPECT_EQ(Members(points), Range(0, points.Size())) << name;
        return points.Size();
    }

    ClassDocument mesh{GetParam(), 10, 10};
};
INSTANTIATE_TEST_SUITE_P(Media, PointSet, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(PointSet, EachShapeHasItsFirstPoints) {
    struct Row {
        std::vector<int> shapes;
        int points;
    };
    std::vector<Row> const table = {
        {{0}, 1},
        {{2, 6}, 2},
        {{7, 8, 16}, 3},
        {{11, 13, 43}, 4},
        {{12, 40}, 5},
        {{9, 17, 47}, 6},
        {{14, 38}, 8},
        {{10, 15, 31, 48}, 9},
        {{41, 42}, 10},
        {{28, 32, 34, 44}, 12},
        {{39}, 13},
        {{45}, 15},
        {{29, 33}, 18},
        {{35}, 20},
        {{30}, 24},
        {{37}, 27},
        {{1, 3, 4, 5, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 36, 46}, 0},
    };
    std::vector<int> wanted(49, -1);
    for (Row const& row : table) {
        for (int shape : row.shapes) {
            ASSERT_EQ(wanted[static_cast<std::size_t>(shape)], -1) << shape;
            wanted[static_cast<std::size_t>(shape)] = row.points;
            NewSpecification(shape);
        }
    }
    mesh.Reopen(KOVObjDocument::ReadOnly);
    ASSERT_EQ(mesh.Specifications().Space(), 49);
    for (int index = 0; index < mesh.Specifications().Space(); ++index) {
        int const shape =
            mesh.Specification(index).GetPosition(schema::ElementSpec_shape()).GetSymbolPosition();
        KOVSimCSet const points = Points(index);
        EXPECT_EQ(Members(points), Range(0, wanted[static_cast<std::size_t>(shape)])) << shape;
        EXPECT_TRUE(points.ID().IsNull()) << shape;
        EXPECT_EQ(points.CollectionID(), mesh.document.GetPointCollection().GetCollection());
    }
}

TEST_P(PointSet, AnyOtherShapeHasNone) {
    auto transaction = mesh.Write();
    KOVSimPosition const shapes = mesh.document.GetShapeCollection();
    int const beyond = mesh.NewSpecification(shapes.AddSymbol("NEW", 49, schema::Symbol()));
    int const far = mesh.NewSpecification(shapes.AddSymbol("FAR", 2000, schema::Symbol()));
    int const none = mesh.NewSpecification(mesh.document.GetMesh());
    transaction->Commit();
    transaction.reset();
    mesh.Reopen();
    for (int index : {beyond, far, none}) {
        EXPECT_TRUE(Points(index).IsEmpty());
        EXPECT_TRUE(Points(index).ID().IsNull());
    }
}

TEST_P(PointSet, PointsOfItsOwnGoBeforeShapeAndName) {
    int const specification = NewSpecification(zdm_Shape_QUADRILATERAL_4, "CAXA42");
    {
        auto const transaction = mesh.Write();
        KOVSimCollection points(mesh.document.GetPointCollection().GetCollection());
        int const members[] = {3, 90, 7};
        mesh.Specification(specification)
            .SetPosition(schema::ElementSpec_points(), points.CreateCSet(members, 3, false));
        transaction->Commit();
    }
    mesh.Reopen();
    KOVSimCSet const points = Points(specification);
    EXPECT_EQ(Members(points), (std::vector<int>{3, 7, 90}));
    EXPECT_FALSE(points.ID().IsNull());
}

TEST_P(PointSet, WithoutPointsAndShapeItIsTheEmptySetWithAnID) {
    int const specification = NewSpecification(-1, "CAXA42");
    mesh.Reopen();
    KOVSimCSet const points = Points(specification);
    EXPECT_TRUE(points.IsEmpty());
    EXPECT_EQ(points.ID(),
              KOVSimCollection(mesh.document.GetPointCollection().GetCollection()).EmptyCSetID());
    EXPECT_FALSE(points.ID().IsNull());
}

TEST_P(PointSet, ShapeWithoutAFixedCountHasAVolatileEmptySet) {
    int const specification = NewSpecification(zdm_Shape_POINT_CLOUD);
    mesh.Reopen();
    EXPECT_TRUE(Points(specification).IsEmpty());
    EXPECT_TRUE(Points(specification).ID().IsNull());
}

TEST_P(PointSet, TheLastDigitOfTheNameMultiplies) {
    constexpr int kShape = zdm_Shape_QUADRILATERAL_4;
    EXPECT_EQ(Count(kShape, "CAXA42"), 12);
    EXPECT_EQ(Count(kShape, "SAXA2"), 12);
    EXPECT_EQ(Count(kShape, "CAXA0"), 4);
    EXPECT_EQ(Count(kShape, "CAXA9"), 40);
    EXPECT_EQ(Count(kShape, "CAXA12"), 12);
    EXPECT_EQ(Count(kShape, "CAXA-3"), 16);
    EXPECT_EQ(Count(zdm_Shape_POINT_CLOUD, "CAXA42"), 0);
}

TEST_P(PointSet, NameThatEndsInNoDigitMultipliesByNothing) {
    constexpr int kShape = zdm_Shape_QUADRILATERAL_4;
    for (char const* name : {"CAXA", "CAXA4R", "CAXA2 ", "CAXA2-", "CAXA+"}) {
        EXPECT_EQ(Count(kShape, name), 4) << name;
    }
}

TEST_P(PointSet, TheMarkStandsBehindOneCharacterAndInThatCase) {
    constexpr int kShape = zdm_Shape_QUADRILATERAL_4;
    for (char const* name : {"AXA2", "AXAA2", "CCAXA2", "Caxa2", "CAXa2", "CAX2", "2", ""}) {
        EXPECT_EQ(Count(kShape, name), 4) << name;
    }
    // Characters are counted, not bytes.
    EXPECT_EQ(Count(kShape, "ÄAXA2"), 12);
}

// The name is the element specification's own, not the key that it stands under.
TEST_P(PointSet, TheKeyOfTheSpecificationIsNotItsName) {
    int const specification = NewSpecification(zdm_Shape_QUADRILATERAL_4, "S4");
    {
        auto const transaction = mesh.Write();
        mesh.document.GetElementSpecCollection()
            .GetMap(schema::ElementSpecLib_elementSpecs())
            .Insert("CAXA42", mesh.Specification(specification));
        transaction->Commit();
    }
    mesh.Reopen();
    EXPECT_EQ(Points(specification).Size(), 4);
}

TEST_P(PointSet, MorePointsThanTheDocumentHasAreTheStoresRefusal) {
    int const specification = NewSpecification(zdm_Shape_HEXAHEDRON_27, "CAXA9");
    EXPECT_THROW(Points(specification), KOVSimException);
    {
        auto const transaction = mesh.Write();
        KOVSimCollection(mesh.document.GetPointCollection().GetCollection()).ExtendSpace(270);
        transaction->Commit();
    }
    mesh.Reopen();
    EXPECT_EQ(Members(Points(specification)), Range(0, 270));
}

TEST_P(PointSet, LinkToWhatIsNoSetGivesTheEmptySetOfNoCollection) {
    int const specification = NewSpecification(zdm_Shape_QUADRILATERAL_4);
    {
        auto const transaction = mesh.Write();
        mesh.Specification(specification)
            .SetPosition(schema::ElementSpec_points(), mesh.document.GetMesh());
        transaction->Commit();
    }
    mesh.Reopen();
    EXPECT_TRUE(Points(specification).IsEmpty());
    EXPECT_TRUE(Points(specification).CollectionID().IsNull());
}

}  // namespace
}  // namespace kov::test
