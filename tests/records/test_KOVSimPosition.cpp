#include "KOVSimPosition.h"

#include <climits>
#include <cmath>
#include <cstring>

#include "KOVSimContext.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDrawerDescription.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimSymbols.h"
#include "KOVSimVector.h"
#include "support/DocumentFixture.h"

namespace {

using kov::test::DocumentTest;
using kov::test::RefusalOf;
using ::testing::Test;

// ---- identities, without a document ----

TEST(Identities, DefaultBuiltOnesAreNull) {
    EXPECT_TRUE(KOVSimPosition().IsNull());
    EXPECT_TRUE(KOVSimDynamicID().IsNull());
    EXPECT_TRUE(KOVSimCSetID().IsNull());
    EXPECT_TRUE(KOVSimDistributionID().IsNull());
    KOVSimDrawerID const drawer;
    EXPECT_EQ(0, drawer.ID().category);
    EXPECT_TRUE(drawer.ContextID().IsNull());
    EXPECT_EQ(-1, drawer.Parent());
    EXPECT_EQ(-1, drawer.Minor());
    EXPECT_EQ(-1, drawer.TypeID());
}

TEST(Identities, WithoutANumberTheIdentityIsNullAndThePositionIsNot) {
    KOVSimDynamicDataID data;
    KOVSimDynamicID const id(KOVSimCategoryRecord, KOVSimContextID{7}, data, -1, 0);
    EXPECT_EQ(-1, id.data.minor);
    EXPECT_TRUE(id.IsNull());
    EXPECT_FALSE(KOVSimPosition(id).IsNull());
}

TEST(Identities, OnlySetsConvertToSets) {
    KOVSimDynamicID id;
    for (int category = 0; category < 20; ++category) {
        id.category = category;
        EXPECT_EQ(category == KOVSimCategoryCSet, KOVSimCSetID::CanBeConverted(id));
    }
}

TEST(Identities, TheCollectionOfASetIsMadeOfItsWords) {
    KOVSimDynamicDataID data;
    data.parent = 41;
    data.minor = 5;
    KOVSimCSetID const set(KOVSimDynamicID(KOVSimCategoryCSet, KOVSimContextID{3}, data, 77, 0));
    KOVSimCollectionID const collection = set.CollectionID();
    EXPECT_EQ(KOVSimCategoryCollection, collection.ID().category);
    EXPECT_EQ(41, collection.Minor());
    EXPECT_EQ(0, collection.Parent());
    EXPECT_EQ(77, collection.TypeID());
    EXPECT_TRUE(KOVSimCSetID().CollectionID().IsNull());
}

TEST(Identities, CompareIsATotalOrderThatTheTypeTakesNoPartIn) {
    KOVSimDynamicDataID data;
    data.parent = 0;
    data.minor = 4;
    KOVSimDynamicID const a(KOVSimCategoryRecord, KOVSimContextID{1}, data, 10, 0);
    KOVSimDynamicID b = a;
    b.type = 11;
    EXPECT_EQ(0, a.Compare(b));
    b.data.minor = 5;
    EXPECT_LT(a.Compare(b), 0);
    EXPECT_GT(b.Compare(a), 0);
    EXPECT_GT(KOVSimBtreeCompare(a, b), 0);
}

TEST(Identities, ReadingThroughTheNullPositionGivesNulls) {
    KOVSimPosition const null;
    EXPECT_TRUE(null.GetPosition(schema::Focus_model()).IsNull());
    EXPECT_TRUE(null.Focus().IsNull());
    EXPECT_TRUE(null.Parent(schema::Focus_model()).IsNull());
    EXPECT_TRUE(null.Follow(schema::FocusRecord(), 1).IsNull());
    EXPECT_EQ(0, null.GetVector(5).Size());
    EXPECT_FALSE(null.GetVector(5).Begin().NotDone());
    EXPECT_TRUE(null.GetSet(5).Empty());
    EXPECT_TRUE(null.GetMap(5).Find("x").IsNull());
    EXPECT_TRUE(null.ReferrersSet(5).Empty());
    EXPECT_TRUE(null.GetReferenceKey(5).IsEmpty());
    EXPECT_TRUE(null.Name(-1).IsEmpty());
    EXPECT_EQ(0, null.Members().Size());
    EXPECT_EQ(-1, null.TypePosition());
    EXPECT_FALSE(null.IsA(schema::FocusRecord()));
    EXPECT_TRUE(null.GetCollection().IsNull());
    EXPECT_TRUE(null.Doc().IsClosed());
    EXPECT_EQ(-1, null.GetSymbolPosition());
    int value = 17;
    null.DataRecord().GetInt(0, value);
    EXPECT_EQ(17, value);
}

TEST(Identities, WritingThroughTheNullPositionIsRefusedByName) {
    KOVSimPosition const null;
    EXPECT_EQ("cannot set the link Focus_model: the position is null",
              RefusalOf([&] { null.SetPosition(schema::Focus_model(), null); }).substr(0, 53));
    EXPECT_NE("", RefusalOf([&] { null.GetVector(schema::Section_layers()).PushBack(null); }));
    EXPECT_NE("", RefusalOf([&] { null.GetSet(schema::Section_layers()).Insert(null); }));
    EXPECT_NE("", RefusalOf([&] { null.GetMap(schema::Model_steps()).Insert("a", null); }));
    EXPECT_NE("", RefusalOf([&] { null.DataRecord().SetInt(0, 1); }));
    EXPECT_NE("", RefusalOf([&] { null.CreateDataRecord(schema::Mesh()); }));
    EXPECT_NE("", RefusalOf([&] { null.CreateTypedCollection(1, schema::Mesh()); }));
}

// ---- on documents ----

class Position : public DocumentTest {};
KOV_DOCUMENT_TESTS(Position);

TEST_P(Position, UnsetLinksAreNullAndUnsetContainersCanBeWalked) {
    KOVSimPosition const focus = Document().Focus();
    EXPECT_TRUE(focus.GetPosition(schema::Focus_jobStatus()).IsNull());
    EXPECT_TRUE(focus.GetMap(schema::Model_steps()).Find("none").IsNull());
    EXPECT_TRUE(focus.GetSet(schema::Focus_externalPlyIds()).Empty());
    EXPECT_FALSE(focus.GetSet(schema::Focus_externalPlyIds()).Begin().NotDone());
    EXPECT_TRUE(focus.GetSet(schema::Focus_externalPlyIds()).Begin().Done());
    EXPECT_EQ(0, focus.GetVector(schema::Section_layers()).Size());
    EXPECT_FALSE(focus.GetVector(schema::Section_layers()).Begin().NotDone());
}

TEST_P(Position, ALinkLeadsToItsTargetAndBack) {
    KOVSimPosition record;
    Write([&] {
        record = NewRecord(schema::JobStatus());
        Document().Focus().SetPosition(schema::Focus_jobStatus(), record);
    });
    Reopen();
    KOVSimPosition const found = Document().Focus().GetPosition(schema::Focus_jobStatus());
    EXPECT_EQ(Again(record).ID(), found.ID());
    EXPECT_EQ(schema::JobStatus(), found.TypePosition());
    EXPECT_EQ(Document().Focus().ID(), found.Parent(schema::Focus_jobStatus()).ID());
    EXPECT_EQ(schema::FocusRecord(), found.Parent(schema::Focus_jobStatus()).TypePosition());
    EXPECT_TRUE(found.Parent(schema::Focus_model()).IsNull());
    EXPECT_EQ(1, found.ReferrersSet(schema::Focus_jobStatus()).Size());
    EXPECT_EQ(Document().Focus().ID(), found.Focus().ID());
}

TEST_P(Position, ANullTargetTakesTheLinkAway) {
    KOVSimPosition record;
    Write([&] {
        record = NewRecord(schema::JobStatus());
        Document().Focus().SetPosition(schema::Focus_jobStatus(), record);
    });
    EXPECT_EQ(1, record.ReferrersSet(schema::Focus_jobStatus()).Size());
    Write([&] { Document().Focus().SetPosition(schema::Focus_jobStatus(), KOVSimPosition()); });
    EXPECT_EQ(0, record.ReferrersSet(schema::Focus_jobStatus()).Size());
    Reopen();
    EXPECT_TRUE(Document().Focus().GetPosition(schema::Focus_jobStatus()).IsNull());
    EXPECT_TRUE(Again(record).Parent(schema::Focus_jobStatus()).IsNull());
}

TEST_P(Position, AssociationsAreKeptApartFromLinks) {
    KOVSimPosition a;
    KOVSimPosition b;
    Write([&] {
        a = NewRecord(schema::SurfaceOutputRecord());
        b = NewRecord(schema::SurfaceOutputRecord());
        Document().Focus().Associate(schema::FocusRecord(), 1, a);
        Document().Focus().Associate(schema::FocusRecord(), 1, b);
        a.Associate(schema::SurfaceOutputRecord(), 0, b);
    });
    Reopen();
    EXPECT_EQ(Again(b).ID(), Document().Focus().Follow(schema::FocusRecord(), 1).ID());
    EXPECT_TRUE(Document().Focus().Follow(schema::FocusRecord(), 0).IsNull());
    EXPECT_TRUE(Document().Focus().GetPosition(1).IsNull());
    EXPECT_EQ(Again(b).ID(), Again(a).Follow(schema::SurfaceOutputRecord(), 0).ID());
    EXPECT_EQ(0, Again(a).Members().Size());
}

TEST_P(Position, MembersThatAreSetAreListedOnceAndAscending) {
    KOVSimPosition model;
    Write([&] {
        model = NewRecord(schema::Model());
        for (char const* name : {"a", "b", "c"}) {
            model.GetMap(schema::Model_steps()).Insert(name, NewRecord(schema::Step()));
        }
        model.SetPosition(schema::Model_mesh(), NewRecord(schema::Mesh()));
    });
    Reopen();
    KOVBasVector<int> const members = Again(model).Members();
    ASSERT_EQ(2, members.Size());
    EXPECT_EQ(schema::Model_mesh(), members[0]);
    EXPECT_EQ(schema::Model_steps(), members[1]);
}

TEST_P(Position, ContainersUnderOneMemberAreKeptApart) {
    int const member = schema::Model_fieldEntries();
    KOVSimPosition owner;
    KOVSimPosition target;
    Write([&] {
        owner = NewRecord(schema::Model());
        target = NewRecord(schema::FieldEntry());
        owner.SetPosition(member, target);
        owner.GetVector(member).PushBack(target);
        owner.GetMap(member).Insert("", target);
        owner.GetSet(member).Insert(target);
    });
    Reopen();
    owner = Again(owner);
    EXPECT_EQ(1, owner.GetVector(member).Size());
    EXPECT_EQ(1, owner.GetMap(member).Size());
    EXPECT_EQ(1, owner.GetSet(member).Size());
    EXPECT_FALSE(owner.GetMap(member).Find("").IsNull());
    EXPECT_EQ(4, Again(target).ReferrersSet(member).Size());
    Write([&] { owner.GetMap(member).Remove(""); });
    EXPECT_EQ(3, Again(target).ReferrersSet(member).Size());
}

TEST_P(Position, ObjectsKeepANameOfTheirOwn) {
    KOVSimPosition record;
    KOVSimPosition collection;
    Write([&] {
        record = NewRecord(schema::Step());
        record.SetName("Étape 1");
        collection = Document().Focus().CreateTypedCollection(3, schema::MaterialCollection());
        collection.CreateMember(2, schema::Material()).SetName("steel");
        Document().Focus().Context().GetRecord(collection.GetCollection(), 0);
    });
    EXPECT_TRUE(collection.Name(-1).IsEmpty());
    Reopen();
    EXPECT_EQ("Étape 1", Again(record).Name(-1));
    KOVSimPosition const member = Document().GetRecord(Again(collection).GetCollection(), 2);
    EXPECT_EQ("steel", member.Name(-1));
    EXPECT_TRUE(KOVSimPosition(Document().GetRecord(Again(collection).GetCollection(), 1))
                    .Name(-1)
                    .IsEmpty());
}

TEST_P(Position, TheNameUnderAMapIsItsKeyThere) {
    KOVSimPosition step;
    Write([&] {
        step = NewRecord(schema::Step());
        Document().GetModel().GetMap(schema::Model_steps()).Insert("Step-1", step);
    });
    Reopen();
    EXPECT_EQ("Step-1", Again(step).Name(schema::Model_steps()));
    EXPECT_EQ("Step-1", Again(step).GetReferenceKey(schema::Model_steps()));
    EXPECT_TRUE(Again(step).Name(schema::Model_plies()).IsEmpty());
    EXPECT_TRUE(Again(step).Name(-1).IsEmpty());
}

TEST_P(Position, AnObjectUnderTwoKeysHasTwoReferrers) {
    KOVSimPosition step;
    KOVSimMap const steps = Document().GetModel().GetMap(schema::Model_steps());
    Write([&] {
        step = NewRecord(schema::Step());
        steps.Insert("b", step);
        steps.Insert("a", step);
    });
    EXPECT_EQ(2, step.ReferrersSet(schema::Model_steps()).Size());
    EXPECT_EQ("a", step.GetReferenceKey(schema::Model_steps()));
    for (KOVSimSetiterator at = step.ReferrersSet(schema::Model_steps()).Begin(); at.NotDone();
         ++at) {
        EXPECT_EQ(Document().GetModel().ID(), (*at).ID());
    }
    Write([&] { steps.Remove("a"); });
    EXPECT_EQ("b", step.GetReferenceKey(schema::Model_steps()));
}

TEST_P(Position, TypesDeriveAsTheSchemaSays) {
    KOVSimPosition record;
    KOVSimPosition plain;
    Write([&] {
        record = NewRecord(schema::Step_Gen_StaticRiks());
        plain = NewRecord(-1);
    });
    Reopen();
    EXPECT_EQ(schema::Step_Gen_StaticRiks(), Again(record).TypePosition());
    EXPECT_TRUE(Again(record).IsA(schema::Step_Gen_StaticRiks()));
    EXPECT_TRUE(Again(record).IsA(schema::Step()));
    EXPECT_FALSE(Again(record).IsA(schema::Step_Lin()));
    EXPECT_EQ(-1, Again(plain).TypePosition());
    EXPECT_FALSE(Again(plain).IsA(-1));
}

TEST_P(Position, AnIdentityPutTogetherWithoutATypeStillHasOne) {
    KOVSimDynamicID id = Document().GetModel().ID();
    id.type = -1;
    EXPECT_EQ(schema::Model(), KOVSimPosition(id).TypePosition());
    id = Document().GetPointCollection().ID();
    KOVSimCollectionID const collection(id.context, id.data.minor, -1, 0);
    EXPECT_EQ(schema::PointCollection(), KOVSimPosition(collection).TypePosition());
    EXPECT_EQ(schema::PointCollection(),
              KOVSimPosition(Document().GetRecord(collection, 3)).TypePosition());
}

TEST_P(Position, WhatAPositionDenotesIsNullForOtherKinds) {
    KOVSimPosition const focus = Document().Focus();
    EXPECT_TRUE(focus.GetCollection().IsNull());
    EXPECT_TRUE(focus.GetCSet().IsNull());
    EXPECT_TRUE(focus.GetDSet().IsNull());
    EXPECT_TRUE(focus.GetDistribution().IsNull());
    EXPECT_TRUE(focus.GetDrawer().IsNull());
    EXPECT_TRUE(focus.GetFTable().IsNull());
    EXPECT_FALSE(Document().GetPointCollection().GetCollection().IsNull());
}

TEST_P(Position, RefusalsNameWhatWasAskedAndOfWhat) {
    KOVSimPosition const model = Document().GetModel();
    std::string const number = std::to_string(model.ID().data.minor);
    std::string const outside =
        RefusalOf([&] { model.SetPosition(schema::Model_mesh(), Document().GetMesh()); });
    EXPECT_NE(std::string::npos, outside.find("no transaction is open")) << outside;
    EXPECT_NE(std::string::npos, outside.find("Model_mesh")) << outside;
    Write([&] {
        EXPECT_EQ("cannot append to the vector Section_layers of record " + number +
                      " (Model): the target is null",
                  RefusalOf([&] {
                      model.GetVector(schema::Section_layers()).PushBack(KOVSimPosition());
                  }));
        EXPECT_EQ("cannot remove from the vector Section_layers of record " + number +
                      " (Model): index 0 is outside [0, 0)",
                  RefusalOf([&] { model.GetVector(schema::Section_layers()).Remove(0); }));
        EXPECT_EQ("cannot set the link of record " + number + " (Model): -1 is no member",
                  RefusalOf([&] { model.SetPosition(-1, Document().GetMesh()); }));
        EXPECT_EQ("cannot set a field of record " + number + " (Model): -3 is no field number",
                  RefusalOf([&] { model.DataRecord().SetInt(-3, 1); }));
        EXPECT_EQ("cannot create a member of record " + number + " (Model): it is no collection",
                  RefusalOf([&] { model.CreateMember(0, schema::Mesh()); }));
        EXPECT_EQ("cannot insert into the referrers Model_mesh of record " + number +
                      " (Model): referrers follow from the links of others",
                  RefusalOf([&] { model.ReferrersSet(schema::Model_mesh()).Insert(model); }));
    });
}

TEST_P(Position, LinksToOtherDocumentsAreRefused) {
    KOVObjDocument const other = KOVObjDocument::CreateInMemory();
    Write([&] {
        std::string const text = RefusalOf(
            [&] { Document().Focus().SetPosition(schema::Focus_jobStatus(), other.Focus()); });
        EXPECT_NE(std::string::npos, text.find("belongs to another document")) << text;
    });
}

TEST_P(Position, AnObjectOfADroppedTransactionIsRefused) {
    KOVSimPosition dropped;
    WriteAndDrop([&] {
        dropped = NewRecord(schema::Step());
        Document().Focus().SetPosition(schema::Focus_jobStatus(), dropped);
        EXPECT_FALSE(dropped.Parent(schema::Focus_jobStatus()).IsNull());
    });
    EXPECT_TRUE(Document().Focus().GetPosition(schema::Focus_jobStatus()).IsNull());
    EXPECT_NE("", RefusalOf([&] { dropped.GetPosition(schema::Focus_jobStatus()); }));
    EXPECT_NE("", RefusalOf([&] { dropped.TypePosition(); }));
    KOVSimPosition later;
    Write([&] {
        later = NewRecord(schema::Step());
        EXPECT_NE("", RefusalOf([&] {
                      Document().Focus().SetPosition(schema::Focus_jobStatus(), dropped);
                  }));
    });
    EXPECT_NE(dropped.ID(), later.ID());
}

TEST_P(Position, AnIdentityOfAClosedDocumentIsRefused) {
    KOVSimPosition const focus = Document().Focus();
    Document().Close();
    EXPECT_NE("", RefusalOf([&] { focus.GetPosition(schema::Focus_model()); }));
    EXPECT_NE("", RefusalOf([&] { focus.Doc(); }));
    EXPECT_NE("", RefusalOf([&] { focus.GetMap(schema::Model_steps()).Size(); }));
    EXPECT_TRUE(Document().IsClosed());
}

// ---- members and symbols ----

TEST_P(Position, AMemberKeepsItsIdentityWhenItBecomesARecord) {
    KOVSimPosition collection;
    Write([&] {
        collection = Document().Focus().CreateTypedCollection(2, schema::MaterialCollection());
        KOVSimPosition const made = collection.CreateMember(1, schema::Material());
        EXPECT_EQ(KOVSimCategoryMember, made.ID().category);
        KOVSimPosition const appended = collection.AppendMember(schema::BulkPly());
        EXPECT_EQ(2, appended.ID().data.minor);
        appended.DataRecord().SetInt(0, 42);
        Document().Focus().SetPosition(schema::Focus_jobStatus(), appended);
    });
    Reopen();
    collection = Again(collection);
    KOVSimPosition const linked = Document().Focus().GetPosition(schema::Focus_jobStatus());
    EXPECT_EQ(KOVSimCategoryMember, linked.ID().category);
    EXPECT_EQ(collection.ID().data.minor, linked.ID().data.parent);
    EXPECT_EQ(2, linked.ID().data.minor);
    EXPECT_EQ(schema::MaterialCollection(), linked.ID().type);
    EXPECT_EQ(Document().GetRecord(collection.GetCollection(), 2), linked.ID());
    EXPECT_EQ(schema::BulkPly(), linked.TypePosition());
    EXPECT_TRUE(linked.IsA(schema::BulkPly()));
    int value = 0;
    linked.DataRecord().GetInt(0, value);
    EXPECT_EQ(42, value);
    EXPECT_EQ(schema::Material(),
              KOVSimPosition(Document().GetRecord(collection.GetCollection(), 1)).TypePosition());
    EXPECT_EQ(schema::MaterialCollection(),
              KOVSimPosition(Document().GetRecord(collection.GetCollection(), 0)).TypePosition());
    EXPECT_EQ(Document().Focus().ID(), linked.Parent(schema::Focus_jobStatus()).ID());
}

TEST_P(Position, AMemberOutsideItsCollectionIsRefused) {
    Write([&] {
        KOVSimPosition const collection =
            Document().Focus().CreateTypedCollection(2, schema::MaterialCollection());
        std::string const text = RefusalOf([&] { collection.CreateMember(2, schema::Material()); });
        EXPECT_NE(std::string::npos, text.find("index 2 is outside [0, 2)")) << text;
        EXPECT_NE("", RefusalOf([&] { Document().GetRecord(collection.GetCollection(), -1); }));
        EXPECT_NE("", RefusalOf([&] { Document().GetRecord(collection.GetCollection(), 2); }));
        EXPECT_NE("", RefusalOf([&] {
                      Document().Focus().CreateTypedCollection(-1, schema::MaterialCollection());
                  }));
    });
}

TEST_P(Position, SymbolsKeepNumberNameAndType) {
    KOVSimPosition collection;
    Write([&] {
        collection = Document().Focus().CreateTypedCollection(1, schema::SymbolCollection());
        EXPECT_EQ(1, collection.AddSymbol("FORCE", 7, schema::DofSymbol()).ID().data.minor);
        collection.AddSymbol("MOMENT", 9, schema::ComponentSymbol());
    });
    Reopen();
    KOVSimCollectionID const id = Again(collection).GetCollection();
    KOVSimPosition const force = Document().GetSymbol(schema::DofSymbol(), "FORCE", id);
    EXPECT_EQ(7, force.GetSymbolPosition());
    EXPECT_EQ("FORCE", force.GetSymbolName());
    EXPECT_EQ(schema::DofSymbol(), force.TypePosition());
    EXPECT_EQ(1, Document().GetCMemberIndex(force));
    KOVSimPosition const none = Document().GetRecord(id, 0);
    EXPECT_EQ(-1, none.GetSymbolPosition());
    EXPECT_TRUE(none.GetSymbolName().IsEmpty());
    KOVSimSymbols const symbols(Document().ContextID());
    EXPECT_TRUE(symbols.IsMember(force.ID()));
    EXPECT_FALSE(symbols.IsMember(none.ID()));
    EXPECT_FALSE(symbols.IsMember(Document().Focus().ID()));
    EXPECT_EQ(7, symbols.Get(force.ID()));
    EXPECT_EQ(force.ID(), symbols.Get(schema::DofSymbol(), 7, id));
    EXPECT_EQ(force.ID(), symbols.Get(schema::Symbol(), 7, id));
    EXPECT_EQ(force.ID(), symbols.Get(-1, 7, id));
    EXPECT_TRUE(symbols.Get(schema::ComponentSymbol(), 7, id).IsNull());
    EXPECT_TRUE(symbols.Get(-1, 8, id).IsNull());
    std::string const text =
        RefusalOf([&] { Document().GetSymbol(schema::DofSymbol(), "MOMENT", id); });
    EXPECT_NE(std::string::npos, text.find("it has no symbol \"MOMENT\" of type DofSymbol"))
        << text;
}

TEST_P(Position, MembershipIsGivenForRecordsOfOneCollection) {
    Write([&] {
        KOVSimContext const context(Document().ContextID());
        KOVSimCollectionID const a =
            Document().Focus().CreateTypedCollection(5, schema::MaterialCollection());
        KOVSimCollectionID const b =
            Document().Focus().CreateTypedCollection(5, schema::MaterialCollection());
        KOVSimArray<KOVSimDynamicID, KOVSimArrayCopyClassPolicy<KOVSimDynamicID>> records(2);
        records.Get(0) = context.GetRecord(a, 3);
        records.Get(1) = context.GetRecord(a, 1);
        KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> indices;
        KOVSimCollectionID collection;
        context.GetCMembership(records, collection, indices);
        EXPECT_EQ(a, collection);
        ASSERT_EQ(2, indices.Size());
        EXPECT_EQ(3, indices.Get(0));
        EXPECT_EQ(1, indices.Get(1));
        KOVSimCollectionID expected = b;
        EXPECT_NE("", RefusalOf([&] { context.GetCMembership(records, expected, indices); }));
        EXPECT_EQ(b, expected);
        records.Get(1) = context.GetRecord(b, 1);
        KOVSimCollectionID any;
        EXPECT_NE("", RefusalOf([&] { context.GetCMembership(records, any, indices); }));
        records.Get(1) = Document().Focus().ID();
        EXPECT_NE("", RefusalOf([&] { context.GetCMembership(records, any, indices); }));
        EXPECT_EQ(-1, context.GetCMemberIndex(Document().Focus().ID()));
    });
}

}  // namespace
