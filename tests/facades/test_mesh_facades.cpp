// KOVObjMesh, KOVObjModel, KOVObjMeshedField, KOVObjElementClass, KOVObjElementClassification.
#include <string>
#include <utility>
#include <vector>

#include "KOVObjElementClass.h"
#include "KOVObjElementClassification.h"
#include "KOVObjMesh.h"
#include "KOVObjMeshedField.h"
#include "KOVObjModel.h"
#include "KOVSimCollection.h"
#include "KOVSimContext.h"
#include "KOVSimCtation.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimGrid.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransfer.h"
#include "support/DocumentFixture.h"

namespace {

using kov::test::DocumentTest;
using kov::test::RefusalOf;

class MeshFacades : public DocumentTest {};
KOV_DOCUMENT_TESTS(MeshFacades);

TEST_P(MeshFacades, EveryMeshSetterIsReadByItsGetter) {
    using Get = KOVSimPosition (KOVObjMesh::*)() const;
    using Set = void (KOVObjMesh::*)(KOVSimPosition const&) const;
    std::vector<std::pair<Get, Set>> const all = {
        {&KOVObjMesh::GetNodeCollection, &KOVObjMesh::SetNodeCollection},
        {&KOVObjMesh::GetElementCollection, &KOVObjMesh::SetElementCollection},
        {&KOVObjMesh::GetConnectivity, &KOVObjMesh::SetConnectivity},
        {&KOVObjMesh::GetCoordinates, &KOVObjMesh::SetCoordinates},
        {&KOVObjMesh::GetUserNodes, &KOVObjMesh::SetUserNodes},
        {&KOVObjMesh::GetElementSpecAssignment, &KOVObjMesh::SetElementSpecAssignment},
        {&KOVObjMesh::GetElementClassification, &KOVObjMesh::SetElementClassification},
        {&KOVObjMesh::GetElementClassCollection, &KOVObjMesh::SetElementClassCollection},
        {&KOVObjMesh::GetShapeFormulationLogicalSectionClassification,
         &KOVObjMesh::SetShapeFormulationLogicalSectionClassification},
    };
    std::vector<KOVSimPosition> targets;
    Write([&] {
        for (auto const& pair : all) {
            targets.push_back(NewRecord(schema::Mesh()));
            (KOVObjMesh(Document().GetMesh()).*pair.second)(targets.back());
        }
    });
    Reopen();
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(Again(targets[i]).ID(), (KOVObjMesh(Document().GetMesh()).*all[i].first)().ID())
            << i;
    }
    KOVSimPosition const mesh = KOVObjMesh(Document().GetMesh());
    EXPECT_EQ(Document().GetMesh().ID(), mesh.ID());
}

TEST_P(MeshFacades, AStepIsFoundByItsName) {
    Write([&] {
        Document()
            .GetModel()
            .GetMap(schema::Model_steps())
            .Insert("Load", NewRecord(schema::Step()));
    });
    Reopen();
    KOVObjModel const model(Document().GetModel());
    EXPECT_TRUE(model.GetStep("Load").IsA(schema::Step()));
    EXPECT_TRUE(model.GetStep("load").IsNull());
}

TEST_P(MeshFacades, AFieldFindsItsDistributionThroughTheDrawersOfItsFirstSerialField) {
    KOVSimPosition field;
    KOVSimPosition distribution;
    Write([&] {
        KOVSimCollection const points(Document().GetPointCollection().GetCollection());
        KOVSimGrid::CollectionArray grid(1);
        grid.Get(0) = points.ID();
        distribution = Document().Focus().CreateTypedDistribution(
            KOVSimGrid(grid), schema::Grid_Node(), KOVSimRangeType(KOVSimTypeKeyDouble));
        KOVSimTransfer make{KOVSimDistribution(distribution.GetDistribution())};
        make.SetMakeNewDrawer().SetBufferPadding(false).SetDim(
            0, points.CreateVolatileCSetStrided(0, 3, 1, 1));
        make.CheckView().ExecMake();
        field = NewRecord(schema::Field_Meshed());
        KOVSimPosition const serial = NewRecord(schema::SerialField());
        EXPECT_TRUE(KOVObjMeshedField(field).GetDistribution().IsNull());
        field.GetSet(schema::Field_serialFields()).Insert(serial);
        EXPECT_TRUE(KOVObjMeshedField(field).GetDistribution().IsNull());
        serial.GetSet(schema::SerialField_drawers()).Insert(make.DrawerID());
        EXPECT_EQ(-1, KOVObjMeshedField(field).GetGridType());
        field.DataRecord().SetTypeID(
            0, Document().Focus().Context().Schema().TypeID(schema::Grid_Node()));
    });
    Reopen();
    KOVObjMeshedField const again(Again(field));
    EXPECT_EQ(Again(distribution).ID(), again.GetDistribution().ID());
    EXPECT_EQ(schema::Grid_Node(), again.GetDistribution().TypePosition());
    EXPECT_EQ(schema::Grid_Node(), again.GetGridType());
    KOVSimPosition const coordinates = KOVObjMesh(Document().GetMesh()).GetCoordinates();
    Write([&] { again.SetDistribution(coordinates); });
    Reopen();
    EXPECT_EQ(KOVObjMesh(Document().GetMesh()).GetCoordinates().ID(),
              KOVObjMeshedField(Again(field)).GetDistribution().ID());
}

TEST_P(MeshFacades, ElementClassesTakeTheNextFreeMember) {
    std::vector<KOVSimPosition> classes;
    KOVSimPosition spec;
    Write([&] {
        KOVObjMesh mesh(Document().GetMesh());
        spec = Document().GetElementSpecCollection().AppendMember(schema::ElementSpec());
        KOVObjElementClass none;
        EXPECT_TRUE(KOVSimPosition(none).IsNull());
        std::string const text = RefusalOf([&] { none.Register(mesh, spec); });
        EXPECT_NE(std::string::npos, text.find("the mesh has no collection of element classes"))
            << text;
        KOVSimPosition const collection =
            Document().Focus().CreateTypedCollection(3, schema::ElementClassCollection());
        collection.CreateMember(1, schema::ElementClass());
        mesh.SetElementClassCollection(collection);
        for (int const expected : {2, 0}) {
            KOVObjElementClass made;
            made.Register(mesh, spec);
            classes.push_back(made);
            EXPECT_EQ(expected, classes.back().ID().data.minor);
            EXPECT_EQ(KOVSimCategoryMember, classes.back().ID().category);
        }
        EXPECT_NE("", RefusalOf([&] { none.Register(mesh, spec); }));
        KOVSimCollection points(Document().GetPointCollection().GetCollection());
        KOVObjElementClass(classes[0]).SetElementCSet(points.CreateCSetStrided(0, 7, 1, 1));
    });
    Reopen();
    KOVObjElementClass const again(Again(classes[0]));
    EXPECT_EQ(7, again.GetElementCSet().CSet().Size());
    EXPECT_TRUE(KOVObjElementClass(Again(classes[1])).GetElementCSet().IsNull());
    EXPECT_EQ(Again(spec).ID(),
              Again(classes[1]).GetPosition(schema::ElementClass_elementSpec()).ID());
    EXPECT_EQ(schema::ElementClass(), Again(classes[1]).TypePosition());
}

TEST_P(MeshFacades, AClassificationHoldsClassesAndTheirMembership) {
    KOVSimPosition record;
    Write([&] {
        record = NewRecord(schema::ElementClassification());
        KOVObjElementClassification const classification(record);
        KOVSimPosition const collection =
            Document().Focus().CreateTypedCollection(2, schema::ElementClassCollection());
        classification.AppendElementClass(collection.CreateMember(0, schema::ElementClass()));
        classification.AppendElementClass(collection.CreateMember(1, schema::ElementClass()));
        EXPECT_TRUE(classification.GetMembership().IsNull());
        classification.SetMembership(
            Document().Focus().CreateTypedDSet(KOVSimCtation(), schema::ElementClassMembership()));
    });
    Reopen();
    KOVObjElementClassification const again(Again(record));
    EXPECT_EQ(schema::ElementClassMembership(), again.GetMembership().TypePosition());
    KOVSimSetiterator each =
        Again(record).GetSet(schema::ElementClassification_elementClasses()).Begin();
    EXPECT_EQ(0, (*each).ID().data.minor);
    ++each;
    EXPECT_EQ(1, (*each).ID().data.minor);
}

}  // namespace
