#include "KOVSimDSet.h"

#include <string>
#include <vector>

#include "KOVSimCollection.h"
#include "KOVSimContext.h"
#include "KOVSimDistribution.h"
#include "KOVSimGrid.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "support/DocumentFixture.h"

namespace {

using kov::test::DocumentTest;
using kov::test::RefusalOf;
using Ints = std::vector<int>;
using SetIDs = KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>;

Ints MembersOf(KOVSimCSet const& set) {
    Ints members(static_cast<std::size_t>(set.Size()));
    set.Members(members.data());
    return members;
}

class DSets : public DocumentTest {
  protected:
    void SetUp() override {
        DocumentTest::SetUp();
        Write([&] {
            elements_ =
                Document().Focus().CreateTypedCollection(100, schema::MeshElementCollection());
            specs_ = Document().Focus().CreateTypedCollection(5, schema::ElementSpecCollection());
            nodes_ = Document().Focus().CreateTypedCollection(200, schema::MeshNodeCollection());
        });
    }
    KOVSimCollection Elements() const { return KOVSimCollection(Again(elements_).GetCollection()); }
    KOVSimCollection Specs() const { return KOVSimCollection(Again(specs_).GetCollection()); }
    KOVSimCollection Nodes() const { return KOVSimCollection(Again(nodes_).GetCollection()); }
    static KOVSimCSet Some(KOVSimCollection const& of, Ints const& members) {
        return of.CreateVolatileCSet(members.data(), static_cast<int>(members.size()), false);
    }
    static KOVSimCompartment Tuple(KOVSimCSetID const& a, KOVSimCSetID const& b) {
        SetIDs sets(2);
        sets.Get(0) = a;
        sets.Get(1) = b;
        return KOVSimCompartment(sets);
    }
    /// (0..9, spec 1), (20..29, spec 0), (10..14, spec 1)
    KOVSimDSetID Assignment() const {
        KOVSimCollection elements = Elements();
        KOVSimCollection specs = Specs();
        KOVSimCtation::Array compartments(3);
        compartments.Get(0) =
            Tuple(elements.CreateCSetStrided(0, 10, 1, 1), specs.CreateCSetStrided(1, 1, 1, 1));
        compartments.Get(1) =
            Tuple(elements.CreateCSetStrided(20, 10, 1, 1), specs.CreateCSetStrided(0, 1, 1, 1));
        compartments.Get(2) =
            Tuple(elements.CreateCSetStrided(10, 5, 1, 1), specs.CreateTempCSetStrided(1, 1, 1, 1));
        return Document().Focus().CreateTypedDSet(KOVSimCtation(compartments),
                                                  schema::ElementSpecAssignment());
    }
    /// Elements 0..2 with 2 nodes (two drawers of rows 0..1 and 2), entries of member indices, -1
    /// for none.
    KOVSimDSetID Connectivity() {
        KOVSimPosition const places =
            Document().Focus().CreateTypedCollection(4, schema::ConnectivityPositionCollection());
        KOVSimGrid::CollectionArray grid(2);
        grid.Get(0) = Elements().ID();
        grid.Get(1) = places.GetCollection();
        KOVSimDistributionID const id = Document().Focus().CreateTypedDistribution(
            KOVSimGrid(grid), schema::MeshConnectivityDistribution(),
            KOVSimRangeType(KOVSimTypeKeyMember, Nodes().ID()));
        KOVSimContext const context(Document().ContextID());
        KOVSimDSetID const dset = context.CreateDSet(id, schema::MeshConnectivity());
        EXPECT_TRUE(KOVSimDSet(dset).IsEmpty());
        EXPECT_FALSE(KOVSimDSet(dset).IsNull());
        KOVSimCollection const positions(places.GetCollection());
        WriteRows(id, Some(Elements(), {0, 1}), positions.CreateVolatileCSetStrided(0, 2, 1, 1),
                  {5, 6, 6, 7});
        WriteRows(id, Some(Elements(), {2}), positions.CreateVolatileCSetStrided(0, 3, 1, 1),
                  {7, -1, 100});
        context.UpdateDSet(dset, id);
        return dset;
    }
    static void WriteRows(KOVSimDistributionID const& id, KOVSimCSet const& rows,
                          KOVSimCSet const& columns, Ints const& entries) {
        KOVSimTransfer transfer{KOVSimDistribution(id)};
        transfer.SetWrite()
            .SetMakeNewDrawer()
            .SetBufferPadding(false)
            .SetDim(0, rows)
            .SetDim(1, columns)
            .CheckView();
        transfer.SetBuffer(0, static_cast<void const*>(entries.data()),
                           entries.size() * sizeof(int));
        transfer.ExecWrite().RelinquishBuffers();
    }

  private:
    KOVSimPosition elements_;
    KOVSimPosition specs_;
    KOVSimPosition nodes_;
};
KOV_DOCUMENT_TESTS(DSets);

TEST(DSet, ADefaultBuiltOneIsNullAndEmpty) {
    KOVSimDSet const none;
    EXPECT_TRUE(none.IsNull());
    EXPECT_TRUE(none.IsEmpty());
    EXPECT_TRUE(none.ID().IsNull());
    EXPECT_EQ(0, none.GetCtation().Size());
    EXPECT_TRUE(none.GetRelationalDistributionID().IsNull());
    EXPECT_TRUE(none.Select(KOVSimCSet()).IsNull());
    EXPECT_TRUE(none.Collect(KOVSimCollectionID()).IsEmpty());
    EXPECT_TRUE(KOVSimDSet(KOVSimDSetID()).IsNull());
    EXPECT_TRUE(KOVSimDSet(KOVSimPosition()).IsNull());
}

TEST_P(DSets, ACompartmentTellsWhereACollectionStands) {
    Write([&] {
        KOVSimCompartment const tuple =
            Tuple(Elements().CreateCSetStrided(0, 2, 1, 1), Specs().CreateCSetStrided(1, 1, 1, 1));
        EXPECT_EQ(2, tuple.Size());
        EXPECT_EQ(0, tuple.Position(Elements().ID()));
        EXPECT_EQ(1, tuple.Position(Specs().ID()));
        EXPECT_EQ(-1, tuple.Position(Nodes().ID()));
        EXPECT_EQ(-1, tuple.Position(KOVSimCollectionID()));
        EXPECT_EQ(-1, KOVSimCompartment().Position(Nodes().ID()));
        EXPECT_EQ(2, tuple.CSet(0).Size());
        EXPECT_NE("", RefusalOf([&] { tuple.CSet(2); }));
        EXPECT_NE("", RefusalOf([&] { tuple.CSet(-1); }));
        SetIDs ids(1);
        tuple.CSetIDs(ids);
        ASSERT_EQ(2, ids.Size());
        EXPECT_EQ(tuple.CSet(1).ID(), ids.Get(1));
    });
}

TEST_P(DSets, CompartmentsComeBackAsGivenAndInOrder) {
    KOVSimPosition position;
    Write([&] { position = Assignment(); });
    Reopen();
    KOVSimDSet const dset = Again(position).DSet();
    EXPECT_FALSE(dset.IsNull());
    EXPECT_FALSE(dset.IsEmpty());
    EXPECT_EQ(Again(position).GetDSet(), dset.ID());
    EXPECT_EQ(schema::ElementSpecAssignment(), Again(position).TypePosition());
    EXPECT_TRUE(dset.GetRelationalDistributionID().IsNull());
    ASSERT_EQ(3, dset.GetCtation().Size());
    KOVSimCompartment const& second = dset.GetCtation().Compartments().ConstGet(1);
    EXPECT_EQ(20, second.CSet(0)[0]);
    EXPECT_EQ((Ints{0}), MembersOf(second.CSet(1)));
    KOVSimCompartment const& third = dset.GetCtation().Compartments().ConstGet(2);
    EXPECT_GT(third.CSet(1).ID().Minor(), 0) << "temporary sets are stored with the dataset";
    EXPECT_EQ((Ints{1}), MembersOf(third.CSet(1)));
}

TEST_P(DSets, CollectGathersAllMembersOfACollection) {
    KOVSimPosition position;
    Write([&] { position = Assignment(); });
    Reopen();
    KOVSimDSet const dset = Again(position).DSet();
    EXPECT_EQ(25, dset.Collect(Elements().ID()).Size());
    EXPECT_EQ((Ints{0, 1}), MembersOf(dset.Collect(Specs().ID())));
    EXPECT_EQ(0, dset.Collect(Nodes().ID()).Size());
    EXPECT_EQ(Nodes().ID(), dset.Collect(Nodes().ID()).CollectionID());
}

TEST_P(DSets, SelectKeepsThePartThatTouchesTheMembers) {
    KOVSimPosition position;
    Write([&] { position = Assignment(); });
    Reopen();
    KOVSimDSet const dset = Again(position).DSet();
    KOVSimDSet const part = dset.Select(Some(Elements(), {8, 9, 25, 99}));
    ASSERT_EQ(2, part.GetCtation().Size());
    EXPECT_TRUE(part.ID().IsNull());
    EXPECT_EQ((Ints{8, 9, 25}), MembersOf(part.Collect(Elements().ID())));
    EXPECT_EQ((Ints{0, 1}), MembersOf(part.Collect(Specs().ID())));
    EXPECT_EQ((Ints{1}), MembersOf(part.Select(Some(Elements(), {9})).Collect(Specs().ID())));
    EXPECT_EQ(15, dset.Select(Some(Specs(), {1})).Collect(Elements().ID()).Size());
    EXPECT_TRUE(dset.Select(Some(Elements(), {99})).IsNull());
    EXPECT_TRUE(dset.Select(Some(Nodes(), {1})).IsNull());
    EXPECT_TRUE(dset.Select(KOVSimCSet()).IsNull());
}

TEST_P(DSets, ASelectionTakesNoTupleTwiceWhereACollectionStandsInTwoDomains) {
    Write([&] {
        KOVSimCSetID const low = Elements().CreateCSetStrided(0, 4, 1, 1);
        KOVSimCSetID const high = Elements().CreateCSetStrided(2, 4, 1, 1);
        KOVSimCtation::Array compartments(1);
        compartments.Get(0) = Tuple(low, high);
        KOVSimDSet const dset(Document().Focus().CreateTypedDSet(KOVSimCtation(compartments), -1));
        KOVSimDSet const part = dset.Select(Some(Elements(), {2, 3}));
        int tuples = 0;
        for (KOVSimCompartment const& each : part.GetCtation().Compartments()) {
            tuples += each.CSet(0).Size() * each.CSet(1).Size();
        }
        EXPECT_EQ(2 * 4 + 2 * 2, tuples);
    });
}

TEST_P(DSets, EmptyCompartmentsAndForeignSetsAreRefused) {
    Write([&] {
        KOVSimCtation::Array compartments(1);
        EXPECT_NE("", RefusalOf([&] {
                      Document().Focus().CreateTypedDSet(KOVSimCtation(compartments), -1);
                  }));
        KOVObjDocument const other = KOVObjDocument::CreateInMemory();
        KOVSimCSetID const foreign =
            KOVSimCollection(other.GetPointCollection().GetCollection()).EmptyCSetID();
        compartments.Get(0) = Tuple(Elements().EmptyCSetID(), foreign);
        EXPECT_NE("", RefusalOf([&] {
                      Document().Focus().CreateTypedDSet(KOVSimCtation(compartments), -1);
                  }));
        KOVSimDSet const empty(Document().Focus().CreateTypedDSet(KOVSimCtation(), -1));
        EXPECT_FALSE(empty.IsNull());
        EXPECT_TRUE(empty.IsEmpty());
    });
    EXPECT_NE("", RefusalOf([&] { Assignment(); }));
}

TEST_P(DSets, AVolatileSetOfACompartmentIsStored) {
    KOVSimPosition position;
    Write([&] {
        KOVSimDSet const whole(Assignment());
        position = Document().Focus().CreateTypedDSet(
            whole.Select(Some(Elements(), {3, 4})).GetCtation(), -1);
    });
    Reopen();
    EXPECT_EQ((Ints{3, 4}), MembersOf(Again(position).DSet().Collect(Elements().ID())));
}

TEST_P(DSets, ARelationalOneHasACompartmentForEachDrawer) {
    KOVSimPosition position;
    Write([&] { position = Connectivity(); });
    Reopen();
    KOVSimDSet const dset = Again(position).DSet();
    EXPECT_FALSE(dset.IsEmpty());
    EXPECT_FALSE(dset.GetRelationalDistributionID().IsNull());
    ASSERT_EQ(2, dset.GetCtation().Size());
    EXPECT_EQ((Ints{0, 1}), MembersOf(dset.GetCtation().Compartments().ConstGet(0).CSet(0)));
    EXPECT_EQ((Ints{0, 1, 2}), MembersOf(dset.Collect(Elements().ID())));
}

TEST_P(DSets, ARelationalOneCollectsWhatItsEntriesName) {
    KOVSimPosition position;
    Write([&] { position = Connectivity(); });
    Reopen();
    KOVSimDSet const dset = Again(position).DSet();
    EXPECT_EQ((Ints{5, 6, 7, 100}), MembersOf(dset.Collect(Nodes().ID())));
    EXPECT_EQ((Ints{6, 7}), MembersOf(dset.Select(Some(Elements(), {1})).Collect(Nodes().ID())));
    EXPECT_EQ(dset.GetRelationalDistributionID(),
              dset.Select(Some(Elements(), {1})).GetRelationalDistributionID());
    EXPECT_TRUE(dset.Select(Some(Elements(), {50})).IsNull());
}

TEST_P(DSets, ARelationalOneSelectsByWhatItsEntriesName) {
    KOVSimPosition position;
    Write([&] { position = Connectivity(); });
    Reopen();
    KOVSimDSet const dset = Again(position).DSet();
    KOVSimDSet const around = dset.Select(Some(Nodes(), {7}));
    EXPECT_EQ((Ints{1, 2}), MembersOf(around.Collect(Elements().ID())));
    EXPECT_EQ((Ints{7}), MembersOf(around.Collect(Nodes().ID())));
    EXPECT_EQ((Ints{2}),
              MembersOf(around.Select(Some(Elements(), {0, 2})).Collect(Elements().ID())));
    EXPECT_TRUE(around.Select(Some(Elements(), {0})).IsNull());
    EXPECT_TRUE(around.Select(Some(Nodes(), {5})).IsNull());
    EXPECT_TRUE(dset.Select(Some(Nodes(), {8})).IsNull());
}

TEST_P(DSets, UpdatingPutsADistributionBehindADataset) {
    KOVSimPosition position;
    Write([&] {
        position = Assignment();
        KOVSimDistributionID const relation =
            KOVSimDSet(Connectivity()).GetRelationalDistributionID();
        KOVSimDSet const before(position);
        EXPECT_EQ(3, before.GetCtation().Size());
        KOVSimContext(Document().ContextID()).UpdateDSet(position.GetDSet(), relation);
        EXPECT_EQ(3, before.GetCtation().Size());
        EXPECT_EQ(2, position.DSet().GetCtation().Size());
    });
    Reopen();
    EXPECT_EQ(2, Again(position).DSet().GetCtation().Size());
}

TEST_P(DSets, OnlyDistributionsOfMembersMakeARelation) {
    KOVSimContext const context(Document().ContextID());
    KOVSimDistributionID const coordinates =
        Document().GetMesh().GetPosition(schema::Mesh_coordinates()).GetDistribution();
    Write([&] {
        EXPECT_NE("", RefusalOf([&] { context.CreateDSet(coordinates, -1); }));
        EXPECT_NE("", RefusalOf([&] { context.CreateDSet(KOVSimDistributionID(), -1); }));
    });
    EXPECT_NE("", RefusalOf([&] { context.CreateDSet(coordinates, -1); }));
    EXPECT_NE("", RefusalOf([&] { KOVSimDSet{KOVSimDSetID(Document().Focus().ID())}; }));
}

TEST_P(DSets, TheSetOfAGrowingDrawerIsFoundAsATwin) {
    KOVSimCSetID grown;
    Write([&] {
        KOVSimGrid::CollectionArray grid(1);
        grid.Get(0) = Elements().ID();
        KOVSimDistribution const values(Document().Focus().CreateTypedDistribution(
            KOVSimGrid(grid), -1, KOVSimRangeType(KOVSimTypeKeyInt)));
        KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(1);
        chunks.Get(0) = 10;
        Ints const entries = {1, 2, 3};
        KOVSimTransfer make(values);
        make.SetWrite().SetMakeNewDrawerChunked(chunks).SetExtendableDim(0).SetBufferPadding(false);
        make.SetDim(0, Some(Elements(), {4, 5, 9})).CheckView();
        make.SetBuffer(0, static_cast<void const*>(entries.data()), 12)
            .ExecWrite()
            .RelinquishBuffers();
        grown = values.DrawerDescription(make.DrawerID()).compartment.CSet(0).ID();
        EXPECT_EQ(grown, Elements().SeekCSet(Some(Elements(), {4, 5, 9}), false));
        KOVSimCSet const before(grown);
        KOVSimTransfer append(values);
        append.SetWrite().SetAutoExtend().SetBufferPadding(false).SetDrawer(make.DrawerID());
        append.SetDim(0, Some(Elements(), {1, 2, 3})).CheckView();
        append.SetBuffer(0, static_cast<void const*>(entries.data()), 12)
            .ExecWrite()
            .RelinquishBuffers();
        EXPECT_EQ((Ints{4, 5, 9}), MembersOf(before));
        EXPECT_EQ((Ints{1, 2, 3, 4, 5, 9}), MembersOf(KOVSimCSet(grown)));
        EXPECT_TRUE(Elements().SeekCSet(Some(Elements(), {4, 5, 9}), false).IsNull());
    });
    Reopen();
    KOVSimCSetID const again = Again(KOVSimPosition(grown)).GetCSet();
    EXPECT_EQ((Ints{1, 2, 3, 4, 5, 9}), MembersOf(KOVSimCSet(again)));
    EXPECT_EQ(again, Elements().SeekCSet(Some(Elements(), {1, 2, 3, 4, 5, 9}), false));
}

TEST_P(DSets, ADatasetKeepsWhatADrawersGrowingSetHad) {
    KOVSimPosition position;
    Write([&] {
        KOVSimGrid::CollectionArray grid(1);
        grid.Get(0) = Elements().ID();
        KOVSimDistribution const values(Document().Focus().CreateTypedDistribution(
            KOVSimGrid(grid), -1, KOVSimRangeType(KOVSimTypeKeyInt)));
        KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(1);
        KOVSimTransfer make(values);
        make.SetMakeNewDrawerChunked(chunks).SetExtendableDim(0).SetBufferPadding(false);
        make.SetDim(0, Some(Elements(), {4})).CheckView().ExecMake();
        KOVSimCtation::Array compartments(1);
        compartments.Get(0) = values.DrawerDescription(make.DrawerID()).compartment;
        position = Document().Focus().CreateTypedDSet(KOVSimCtation(compartments), -1);
        int const entry = 1;
        KOVSimTransfer append(values);
        append.SetWrite().SetAutoExtend().SetBufferPadding(false).SetDrawer(make.DrawerID());
        append.SetDim(0, Some(Elements(), {7})).CheckView();
        append.SetBuffer(0, static_cast<void const*>(&entry), 4).ExecWrite().RelinquishBuffers();
        EXPECT_EQ(2, values.DrawerDescription(make.DrawerID()).compartment.CSet(0).Size());
        EXPECT_EQ((Ints{4}), MembersOf(position.DSet().Collect(Elements().ID())));
    });
    Reopen();
    EXPECT_EQ((Ints{4}), MembersOf(Again(position).DSet().Collect(Elements().ID())));
}

}  // namespace
