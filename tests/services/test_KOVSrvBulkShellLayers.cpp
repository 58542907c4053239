// What the bulk shell layers hold before anything is written, and the records that they find or
// make.
#include <vector>

#include "KOVSrvFsm.h"
#include "services/ShellFixture.h"

namespace kov::test {
namespace {

class BulkShellLayers : public testing::Test {
  protected:
    ~BulkShellLayers() override { EndBulk(); }
    KOVSimPosition Some(int number) {
        return KOVSimDynamicID(KOVSimCategoryRecord, KOVSimContextID{1}, {0, 0, number}, 0, 0);
    }
    KOVSrvBulkShellLayers& bulk = Bulk();
};

TEST_F(BulkShellLayers, PairsOfALayerKeepTheOrderOfCallsAndStandTwiceIfGivenTwice) {
    bulk.AppendDistThickness(2, Some(7), Some(8));
    bulk.AppendDistThickness(2, Some(5), Some(6));
    bulk.AppendDistThickness(2, Some(7), Some(8));
    bulk.AppendDistAngle(2, Some(5), Some(8));
    bulk.AppendDistAngle(2, Some(5), Some(8));
    auto const& thicknesses = *(bulk.*BulkFields::DistThicknesses()).Find(2);
    ASSERT_EQ(thicknesses.Size(), 3);
    int const sets[] = {7, 5, 7}, fields[] = {8, 6, 8};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(thicknesses[i].first.ID(), Some(sets[i]).ID());
        EXPECT_EQ(thicknesses[i].second.ID(), Some(fields[i]).ID());
    }
    EXPECT_EQ((bulk.*BulkFields::DistAngles()).Find(2)->Size(), 2);
}

TEST_F(BulkShellLayers, NullPositionsAreTaken) {
    bulk.AppendDistAngle(0, KOVSimPosition(), Some(1));
    bulk.AppendDistAngle(0, Some(1), KOVSimPosition());
    bulk.AppendDistThickness(0, KOVSimPosition(), KOVSimPosition());
    EXPECT_EQ((bulk.*BulkFields::DistAngles()).Find(0)->Size(), 2);
    EXPECT_EQ((bulk.*BulkFields::DistThicknesses()).Find(0)->Size(), 1);
}

TEST_F(BulkShellLayers, AFreshObjectIsEnabledAndEmptyAndBoundToNothing) {
    EXPECT_TRUE(bulk.*BulkFields::Enabled());
    EXPECT_EQ(LayersHeld(), kNothingHeld);
    EXPECT_TRUE((bulk.*BulkFields::Document()).IsClosed());
    for (auto member : {BulkFields::BulkRecord(), BulkFields::LayerSlots(), BulkFields::Sections(),
                        BulkFields::MaterialCollection(), BulkFields::OrientationCollection(),
                        BulkFields::PlyCollection()}) {
        EXPECT_TRUE((bulk.*member).IsNull());
    }
}

TEST_F(BulkShellLayers, InstanceIsOneObjectUntilItIsEndedAndAFreshOneThen) {
    using Base = omi_SingletonBase<KOVSrvBulkShellLayers>;
    EXPECT_EQ(&bulk, Base::Instance());
    EXPECT_EQ(&bulk, omi_Singleton<KOVSrvBulkShellLayers>::Instance());
    bulk.AppendPly(0, 0, 0);
    EndBulk();
    EXPECT_EQ(Base::Instance(), nullptr);
    EXPECT_EQ(LayersHeld(), kNothingHeld);
    EXPECT_NE(Base::Instance(), nullptr);
}

TEST_F(BulkShellLayers, EndsWhenTheModuleGoesDownForTheLastTime) {
    using Base = omi_SingletonBase<KOVSrvBulkShellLayers>;
    bulk.AppendPly(0, 0, 0);
    int count = 10;
    KOVSrvFsm_initialize(count);
    KOVSrvFsm_initialize(count);
    KOVSrvFsm_finalize(count);
    EXPECT_EQ(count, 11);
    EXPECT_EQ(Base::Instance(), &bulk);
    EXPECT_EQ(LayersHeld()[2], 1);
    KOVSrvFsm_finalize(count);
    EXPECT_EQ(count, 10);
    EXPECT_EQ(Base::Instance(), nullptr);
    EXPECT_EQ(LayersHeld(), kNothingHeld);
}

TEST_F(BulkShellLayers, TheModuleGoesDownWithoutAnObjectToo) {
    EndBulk();
    int count = 0;
    KOVSrvFsm_initialize(count);
    KOVSrvFsm_finalize(count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(omi_SingletonBase<KOVSrvBulkShellLayers>::Instance(), nullptr);
}

class BulkShellLayersInitialize : public testing::TestWithParam<Medium> {
  protected:
    ~BulkShellLayersInitialize() override { EndBulk(); }
    void Initialize() {
        Bulk().*BulkFields::Document() = mesh.document;
        auto const transaction = mesh.Write();
        Bulk().Initialize();
        transaction->Commit();
    }
    std::vector<std::int64_t> Objects() const {
        KOVObjDocumentStatistics const sizes = mesh.document.Statistics();
        return {sizes.records, sizes.collections, sizes.sets, sizes.distributions, sizes.links};
    }
    ShellDocument mesh{GetParam(), 10, 100};
};
INSTANTIATE_TEST_SUITE_P(Media, BulkShellLayersInitialize,
                         testing::Values(Medium::Memory, Medium::Disk), MediumName);

TEST_P(BulkShellLayersInitialize, MakesWhatIsMissing) {
    Initialize();
    EXPECT_EQ((Bulk().*BulkFields::BulkRecord()).ID(), mesh.BulkRecord().ID());
    EXPECT_EQ((Bulk().*BulkFields::Sections()).ID(), mesh.Sections().ID());
    EXPECT_EQ((Bulk().*BulkFields::LayerSlots()).ID(), mesh.Slots().ID());
    EXPECT_EQ((Bulk().*BulkFields::PlyCollection()).ID(), mesh.Plies().ID());
    EXPECT_EQ((Bulk().*BulkFields::MaterialCollection()).ID(),
              mesh.document.GetMaterialCollection().ID());
    mesh.Reopen();
    EXPECT_TRUE(mesh.BulkRecord().IsA(schema::BulkShellLayers()));
    EXPECT_EQ(mesh.Sections().TypePosition(), schema::BulkSection());
    EXPECT_EQ(mesh.Slots().TypePosition(), schema::BulkLayerSlot());
    EXPECT_EQ(mesh.Plies().TypePosition(), schema::BulkPly());
    for (KOVSimPosition const& made : {mesh.Sections(), mesh.Slots(), mesh.Plies()}) {
        EXPECT_EQ(KOVSimCollection(made.GetCollection()).Space(), 1);
    }
}

TEST_P(BulkShellLayersInitialize, MakesNoOrientations) {
    Initialize();
    EXPECT_TRUE((Bulk().*BulkFields::OrientationCollection()).IsNull());
    EXPECT_TRUE(mesh.Orientations().IsNull());
}

TEST_P(BulkShellLayersInitialize, MakesNothingWhereAllIsThere) {
    auto transaction = mesh.Write();
    mesh.AddCollections();
    mesh.Model().SetPosition(schema::Model_bulkShellLayers(),
                             mesh.document.CreateDataRecord(schema::BulkShellLayers()).Pos());
    transaction->Commit();
    transaction.reset();
    mesh.Reopen();
    std::vector<std::int64_t> const before = Objects();
    Initialize();
    EXPECT_EQ(Objects(), before);
    EXPECT_EQ((Bulk().*BulkFields::OrientationCollection()).ID(), mesh.Orientations().ID());
    EXPECT_EQ(KOVSimCollection(mesh.Slots().GetCollection()).Space(), 5);
    Initialize();
    EXPECT_EQ(Objects(), before);
}

TEST_P(BulkShellLayersInitialize, DoesNothingWhenNotEnabled) {
    Bulk().*BulkFields::Enabled() = false;
    std::vector<std::int64_t> const before = Objects();
    Initialize();
    EXPECT_EQ(Objects(), before);
    EXPECT_TRUE((Bulk().*BulkFields::BulkRecord()).IsNull());
}

}  // namespace
}  // namespace kov::test
