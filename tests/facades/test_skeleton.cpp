// What a new document holds, entry by entry.
#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVObjMesh.h"
#include "KOVObjModel.h"
#include "KOVSimCollection.h"
#include "KOVSimDSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "support/DocumentFixture.h"
#include "zdm_AlgebraicTypes.h"
#include "zdm_ComponentSymbols.h"
#include "zdm_ShapeSymbols.h"

namespace {

using kov::test::DocumentTest;
using kov::test::RefusalOf;

class Skeleton : public DocumentTest {
  protected:
    void SetUp() override {
        DocumentTest::SetUp();
        Reopen();
    }
    static int Space(KOVSimPosition const& collection) {
        return KOVSimCollection(collection.GetCollection()).Space();
    }
    KOVSimPosition Symbol(KOVSimPosition const& collection, int index) const {
        return Document().GetRecord(collection.GetCollection(), index);
    }
    KOVObjMesh Mesh() const { return Document().GetMesh(); }
};
KOV_DOCUMENT_TESTS(Skeleton);

TEST_P(Skeleton, TheFocusLeadsToAModelWithAnEmptyNameAndAMesh) {
    KOVSimPosition const focus = Document().Focus();
    EXPECT_EQ(schema::FocusRecord(), focus.TypePosition());
    EXPECT_EQ(Document().GetModel().ID(), focus.GetPosition(schema::Focus_model()).ID());
    EXPECT_EQ(Document().GetMesh().ID(),
              Document().GetModel().GetPosition(schema::Model_mesh()).ID());
    EXPECT_EQ(Document().GetMesh().ID(), KOVObjModel(Document().GetModel()).GetMesh().ID());
    EXPECT_EQ(schema::Model(), Document().GetModel().TypePosition());
    EXPECT_EQ(schema::Mesh(), Document().GetMesh().TypePosition());
    EXPECT_EQ('t', Document().GetModel().DataRecord().FieldKind(0));
    EXPECT_TRUE(Document().GetModel().DataRecord().ReturnString(0).IsEmpty());
}

TEST_P(Skeleton, NodesAndElementsHaveNoMembers) {
    EXPECT_EQ(0, Space(Mesh().GetNodeCollection()));
    EXPECT_EQ(0, Space(Mesh().GetElementCollection()));
    EXPECT_EQ(schema::MeshNodeCollection(), Mesh().GetNodeCollection().TypePosition());
    EXPECT_EQ(schema::MeshElementCollection(), Mesh().GetElementCollection().TypePosition());
}

TEST_P(Skeleton, CoordinatesStandOverNodesAndComponentsWithoutADrawer) {
    KOVSimDistribution const coordinates(Mesh().GetCoordinates().GetDistribution());
    ASSERT_EQ(2, coordinates.NumDimensions());
    EXPECT_EQ(Mesh().GetNodeCollection().GetCollection(),
              coordinates.Grid().Collections().ConstGet(0));
    EXPECT_EQ(Document().GetComponentCollection().GetCollection(),
              coordinates.Grid().Collections().ConstGet(1));
    EXPECT_EQ(KOVSimTypeKeyDouble, coordinates.Range().Key());
    KOVSimArray<KOVSimDrawerID, KOVSimArrayCopyClassPolicy<KOVSimDrawerID>> drawers;
    coordinates.DrawerIDArray(drawers);
    EXPECT_EQ(0, drawers.Size());
}

TEST_P(Skeleton, ConnectivityIsADatasetOverAnEmptyRelation) {
    KOVSimDSet const dset = Mesh().GetConnectivity().DSet();
    EXPECT_FALSE(dset.IsNull());
    EXPECT_TRUE(dset.IsEmpty());
    KOVSimDistribution const relation(dset.GetRelationalDistributionID());
    ASSERT_EQ(2, relation.NumDimensions());
    EXPECT_EQ(Mesh().GetElementCollection().GetCollection(),
              relation.Grid().Collections().ConstGet(0));
    EXPECT_EQ(128, KOVSimCollection(relation.Grid().Collections().ConstGet(1)).Space());
    EXPECT_EQ(KOVSimTypeKeyMember, relation.Range().Key());
    EXPECT_EQ(Mesh().GetNodeCollection().GetCollection(), relation.Range().Collection());
    EXPECT_EQ(schema::MeshConnectivityDistribution(),
              KOVSimPosition(dset.GetRelationalDistributionID()).TypePosition());
}

TEST_P(Skeleton, ComponentsFillTheirPositions) {
    KOVSimPosition const components = Document().GetComponentCollection();
    ASSERT_EQ(38, Space(components));
    EXPECT_EQ("C_1", Symbol(components, 0).GetSymbolName());
    EXPECT_EQ("C_2", Symbol(components, 12).GetSymbolName());
    EXPECT_EQ("C_3", Symbol(components, 20).GetSymbolName());
    EXPECT_EQ(zdm_Component_C_SCALAR, Symbol(components, 34).GetSymbolPosition());
    for (int i = 0; i < 38; ++i) {
        EXPECT_EQ(i, Symbol(components, i).GetSymbolPosition());
        EXPECT_FALSE(Symbol(components, i).GetSymbolName().IsEmpty());
        EXPECT_EQ(schema::ComponentSymbol(), Symbol(components, i).TypePosition());
    }
    EXPECT_EQ(Symbol(components, 12).ID(),
              Document().GetSymbol(schema::ComponentSymbol(), "C_2", components.GetCollection()));
}

TEST_P(Skeleton, DegreesOfFreedomStandAtTheirPositions) {
    KOVSimPosition const dofs = Document().GetDofTypeCollection();
    char const* const names[] = {"DISPLACEMENT_1",   "DISPLACEMENT_2",   "DISPLACEMENT_3",
                                 "ROTATION_ANGLE_1", "ROTATION_ANGLE_2", "ROTATION_ANGLE_3"};
    int const places[] = {2, 3, 4, 9, 10, 11};
    for (int i = 0; i < 6; ++i) {
        KOVSimPosition const dof =
            Document().GetSymbol(schema::DofSymbol(), names[i], dofs.GetCollection());
        EXPECT_EQ(places[i], dof.ID().data.minor);
        EXPECT_EQ(places[i], dof.GetSymbolPosition());
    }
}

TEST_P(Skeleton, ShapesFillTheirPositions) {
    KOVSimPosition const shapes = Document().GetShapeCollection();
    ASSERT_EQ(49, Space(shapes));
    EXPECT_EQ("HEXAHEDRON_8", Symbol(shapes, zdm_Shape_HEXAHEDRON_8).GetSymbolName());
    for (int i = 0; i < 49; ++i) {
        EXPECT_EQ(i, Symbol(shapes, i).GetSymbolPosition());
        EXPECT_FALSE(Symbol(shapes, i).GetSymbolName().IsEmpty());
        EXPECT_TRUE(Symbol(shapes, i).IsA(schema::ShapeSymbol()));
    }
}

TEST_P(Skeleton, SharedCollectionsAreThere) {
    KOVSimPosition const shared = Document().Focus().GetPosition(schema::Focus_sharedCollections());
    KOVSimPosition const specs = Document().GetElementSpecCollection();
    EXPECT_EQ(specs.ID(), shared.GetPosition(schema::FocusShared_elementSpecs()).ID());
    EXPECT_EQ(0, Space(specs));
    EXPECT_EQ(0, specs.GetMap(schema::ElementSpecLib_elementSpecs()).Size());
    EXPECT_EQ(0, Space(shared.GetPosition(schema::SharedCollections_sectionLayers())));
    EXPECT_EQ(64, Space(shared.GetPosition(schema::SharedCollections_fieldColumns())));
    EXPECT_EQ(0, Space(Document().GetMaterialCollection()));
    EXPECT_GE(Space(Document().GetPointCollection()), 128);
}

TEST_P(Skeleton, FieldTypesHaveAngleAndThickness) {
    KOVSimPosition const catalogue = Document().Focus().GetPosition(schema::Focus_fieldTypes());
    KOVSimMap const types = catalogue.GetMap(schema::zdm_FieldTypeLib_fieldTypes());
    for (char const* const name : {"ANGLE", "STH"}) {
        KOVSimPosition const type = types.Find(name);
        ASSERT_FALSE(type.IsNull());
        EXPECT_TRUE(type.IsA(schema::FieldTypePrimary()));
        EXPECT_EQ(name, type.Name(schema::zdm_FieldTypeLib_fieldTypes()));
        int algebraic = -1;
        type.DataRecord().GetSymb(0, algebraic);
        EXPECT_EQ(zdm_Algebraic_SCALAR, algebraic);
    }
}

TEST_P(Skeleton, EverythingElseIsAbsent) {
    KOVSimPosition const model = Document().GetModel();
    EXPECT_TRUE(Document().GetResults().IsNull());
    EXPECT_TRUE(model.GetPosition(schema::Model_bulkShellLayers()).IsNull());
    EXPECT_TRUE(model.GetPosition(schema::Model_orientations()).IsNull());
    EXPECT_EQ(0, model.GetVector(schema::Model_sectionAssignments()).Size());
    EXPECT_EQ(0, model.GetMap(schema::Model_steps()).Size());
    EXPECT_TRUE(KOVObjModel(model).GetStep("Step-1").IsNull());
    EXPECT_TRUE(Mesh().GetUserNodes().IsNull());
    EXPECT_TRUE(Mesh().GetElementSpecAssignment().IsNull());
    EXPECT_TRUE(Mesh().GetElementClassification().IsNull());
    EXPECT_TRUE(Mesh().GetElementClassCollection().IsNull());
    EXPECT_TRUE(Mesh().GetShapeFormulationLogicalSectionClassification().IsNull());
}

TEST_P(Skeleton, ItIsSound) {
    std::string findings;
    EXPECT_TRUE(Document().Verify([&](char const* finding) {
        findings += std::string(finding) + "\n";
    })) << findings;
}

TEST(BareDocument, HasAFocusAndNothingElse) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory(KOVObjDocument::Bare);
    EXPECT_EQ(schema::FocusRecord(), document.Focus().TypePosition());
    EXPECT_EQ(0, document.Focus().Members().Size());
    EXPECT_TRUE(document.GetModel().IsNull());
    EXPECT_TRUE(document.GetMesh().IsNull());
    EXPECT_TRUE(document.GetElementSpecCollection().IsNull());
    KOVObjDocumentStatistics const sizes = document.Statistics();
    EXPECT_EQ(1, sizes.records);
    EXPECT_EQ(0, sizes.collections);
    EXPECT_EQ(0, sizes.links);
    EXPECT_EQ(0, sizes.bulkBytes);
    KOVSimTransaction transaction(document.ContextID());
    EXPECT_NE("", RefusalOf([&] { document.SetMesh(document.Focus()); }));
    document.SetElementSpecCollection(
        document.Focus().CreateTypedCollection(0, schema::ElementSpecCollection()));
    EXPECT_FALSE(document.GetElementSpecCollection().IsNull());
}

}  // namespace
