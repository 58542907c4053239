// The names of sets and surfaces, and the keys from which they come.
#include "KOVSrvGetNameFromID.h"

#include <gtest/gtest.h>

#include <string>

#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSrvGetReferenceKey.h"
#include "services/MeshFixture.h"

namespace kov::test {
namespace {

class NameFromID : public OnEachMedium {
  protected:
    KOVSimCSetID NewSet(KOVSimCollection collection, int member) const {
        return collection.CreateCSet(&member, 1, false);
    }
    KOVSimMap Map(int member) const { return mesh.document.GetModel().GetMap(member); }
    KOVSimPosition Focus() const { return mesh.document.Focus(); }
    KOVSimDynamicID Again(KOVSimDynamicID id) const {
        id.context = mesh.document.ContextID();
        return id;
    }
    KOVString ElementSetName(KOVSimCSetID const& id) const {
        return KOVSrvGetElementSetNameFromCSetID(Focus(), KOVSimCSetID(Again(id)));
    }
    KOVString NodeSetName(KOVSimCSetID const& id) const {
        return KOVSrvGetNodeSetNameFromCSetID(Focus(), KOVSimCSetID(Again(id)));
    }
    bool Key(KOVSimDynamicID const& id, int member, KOVString& key) const {
        return KOVSrvGetReferenceKey(Again(id), member, key);
    }
};
INSTANTIATE_TEST_SUITE_P(Media, NameFromID, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(NameFromID, ASetsKeyIsItsName) {
    auto const transaction = mesh.Write();
    KOVSimCSetID const elements = NewSet(mesh.elements, 3);
    KOVSimCSetID const nodes = NewSet(mesh.nodes, 4);
    Map(schema::Model_elementSets()).Insert("WING", elements);
    Map(schema::Model_nodeSets()).Insert("TIP", nodes);
    transaction->Commit();
    mesh.Reopen(KOVObjDocument::ReadOnly);
    EXPECT_EQ(ElementSetName(elements), "WING");
    EXPECT_EQ(NodeSetName(nodes), "TIP");
    EXPECT_EQ(NodeSetName(elements), "") << "no node set";
    EXPECT_EQ(ElementSetName(nodes), "") << "no element set";
    KOVString key;
    EXPECT_TRUE(Key(elements, schema::Model_elementSets(), key));
    EXPECT_EQ(key, "WING");
}

TEST_P(NameFromID, ASetOfTheSecondMapIsFoundThere) {
    auto const transaction = mesh.Write();
    KOVSimCSetID const elements = NewSet(mesh.elements, 3);
    KOVSimCSetID const nodes = NewSet(mesh.nodes, 4);
    Map(schema::Model_otherElementSets()).Insert("_WING", elements);
    Map(schema::Model_otherNodeSets()).Insert("_TIP", nodes);
    transaction->Commit();
    mesh.Reopen(KOVObjDocument::ReadOnly);
    KOVString key("before");
    EXPECT_FALSE(Key(elements, schema::Model_elementSets(), key));
    EXPECT_FALSE(Key(nodes, schema::Model_nodeSets(), key));
    EXPECT_EQ(key, "before");
    EXPECT_TRUE(Key(elements, schema::Model_otherElementSets(), key));
    EXPECT_EQ(key, "_WING");
    EXPECT_EQ(ElementSetName(elements), "_WING");
    EXPECT_EQ(NodeSetName(nodes), "_TIP");
}

TEST_P(NameFromID, OfBothMapsTheFirstNames) {
    auto const transaction = mesh.Write();
    KOVSimCSetID const nodes = NewSet(mesh.nodes, 4);
    Map(schema::Model_nodeSets()).Insert("TIP", nodes);
    Map(schema::Model_otherNodeSets()).Insert("_TIP", nodes);
    transaction->Commit();
    mesh.Reopen();
    EXPECT_EQ(NodeSetName(nodes), "TIP");
}

TEST_P(NameFromID, TwoReferrersLeaveASetWithoutAName) {
    auto const transaction = mesh.Write();
    KOVSimCSetID const nodes = NewSet(mesh.nodes, 4);
    KOVSimCSetID const elements = NewSet(mesh.elements, 4);
    Map(schema::Model_nodeSets()).Insert("ONE", nodes);
    Map(schema::Model_nodeSets()).Insert("TWO", nodes);
    Map(schema::Model_elementSets()).Insert("ONE", elements);
    KOVSimPosition const other = mesh.document.CreateDataRecord(schema::Labels()).Pos();
    other.GetMap(schema::Model_elementSets()).Insert("ONE", elements);
    transaction->Commit();
    mesh.Reopen();
    KOVString key("before");
    EXPECT_FALSE(Key(nodes, schema::Model_nodeSets(), key));
    EXPECT_FALSE(Key(elements, schema::Model_elementSets(), key));
    EXPECT_EQ(key, "before");
    EXPECT_EQ(NodeSetName(nodes), "");
    EXPECT_EQ(ElementSetName(elements), "");
}

TEST_P(NameFromID, TwoReferrersInTheFirstMapLeaveTheNameToTheSecond) {
    auto const transaction = mesh.Write();
    KOVSimCSetID const nodes = NewSet(mesh.nodes, 4);
    Map(schema::Model_nodeSets()).Insert("ONE", nodes);
    Map(schema::Model_nodeSets()).Insert("TWO", nodes);
    Map(schema::Model_otherNodeSets()).Insert("THREE", nodes);
    transaction->Commit();
    mesh.Reopen();
    EXPECT_EQ(NodeSetName(nodes), "THREE");
}

TEST_P(NameFromID, NameGoesWithTheEntry) {
    auto transaction = mesh.Write();
    KOVSimCSetID const nodes = NewSet(mesh.nodes, 4);
    Map(schema::Model_nodeSets()).Insert("ONE", nodes);
    Map(schema::Model_nodeSets()).Insert("TWO", nodes);
    transaction->Commit();
    transaction = mesh.Write();
    Map(schema::Model_nodeSets()).Remove("ONE");
    EXPECT_EQ(NodeSetName(nodes), "TWO");
    transaction.reset();
    EXPECT_EQ(NodeSetName(nodes), "") << "the transaction was dropped";
}

TEST_P(NameFromID, ThePositionGivenTakesNoPart) {
    auto const transaction = mesh.Write();
    KOVSimCSetID const nodes = NewSet(mesh.nodes, 4);
    Map(schema::Model_nodeSets()).Insert("TIP", nodes);
    transaction->Commit();
    EXPECT_EQ(KOVSrvGetNodeSetNameFromCSetID(KOVSimPosition(), nodes), "TIP");
    MeshDocument const other;
    EXPECT_EQ(KOVSrvGetNodeSetNameFromCSetID(other.document.Focus(), nodes), "TIP");
}

TEST_P(NameFromID, NullAndTemporarySetsHaveNoName) {
    EXPECT_EQ(KOVSrvGetNodeSetNameFromCSetID(Focus(), KOVSimCSetID()), "");
    EXPECT_EQ(KOVSrvGetElementSetNameFromCSetID(Focus(), KOVSimCSetID()), "");
    EXPECT_EQ(KOVSrvGetNodeSetNameFromCSetID(Focus(), mesh.Nodes({1, 2})), "");
    EXPECT_EQ(KOVSrvGetNodeSetNameFromCSetID(Focus(), mesh.nodes.EmptyCSetID()), "");
    EXPECT_EQ(KOVSrvGetSurfaceNameFromID(Focus(), KOVSimDynamicID()), "");
    KOVString key("before");
    EXPECT_FALSE(KOVSrvGetReferenceKey(KOVSimPosition(), schema::Model_nodeSets(), key));
    EXPECT_EQ(key, "before");
}

TEST_P(NameFromID, ASurfacesOwnNameIsItsName) {
    auto const transaction = mesh.Write();
    KOVSimPosition const named = mesh.document.CreateDataRecord(schema::Surface()).Pos();
    named.SetName("TOP");
    KOVSimPosition const keyed = mesh.document.CreateDataRecord(schema::Surface()).Pos();
    Map(schema::Model_regions()).Insert("BOTTOM", keyed);
    transaction->Commit();
    mesh.Reopen(KOVObjDocument::ReadOnly);
    EXPECT_EQ(KOVSrvGetSurfaceNameFromID(Focus(), Again(named.ID())), "TOP");
    EXPECT_EQ(KOVSrvGetSurfaceNameFromID(KOVSimPosition(), Again(named.ID())), "TOP");
    EXPECT_EQ(KOVSrvGetSurfaceNameFromID(Focus(), Again(keyed.ID())), "") << "a key is no name";
}

TEST_P(NameFromID, ADocumentThatWasClosedIsRefused) {
    auto const transaction = mesh.Write();
    KOVSimCSetID const nodes = NewSet(mesh.nodes, 4);
    transaction->Commit();
    mesh.document.Close();
    KOVString key;
    EXPECT_THROW(KOVSrvGetNodeSetNameFromCSetID(KOVSimPosition(), nodes), KOVSimException);
    EXPECT_THROW(KOVSrvGetElementSetNameFromCSetID(KOVSimPosition(), nodes), KOVSimException);
    EXPECT_THROW(KOVSrvGetSurfaceNameFromID(KOVSimPosition(), nodes), KOVSimException);
    EXPECT_THROW(KOVSrvGetReferenceKey(nodes, schema::Model_nodeSets(), key), KOVSimException);
}

}  // namespace
}  // namespace kov::test
