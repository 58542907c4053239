#include "KOVObjDocument.h"

#include <filesystem>
#include <string>
#include <vector>

#include "KOVSimCollection.h"
#include "KOVSimDistribution.h"
#include "KOVSimGrid.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "support/DocumentFixture.h"

namespace {

using kov::test::DocumentTest;
using kov::test::RefusalOf;
using kov::test::TempFolder;

class Documents : public DocumentTest {};
KOV_DOCUMENT_TESTS(Documents);

TEST_P(Documents, EverySetterIsReadByItsGetter) {
    using Get = KOVSimPosition (KOVObjDocument::*)() const;
    using Set = void (KOVObjDocument::*)(KOVSimPosition const&) const;
    std::vector<std::pair<Get, Set>> const all = {
        {&KOVObjDocument::GetModel, &KOVObjDocument::SetModel},
        {&KOVObjDocument::GetMesh, &KOVObjDocument::SetMesh},
        {&KOVObjDocument::GetResults, &KOVObjDocument::SetResults},
        {&KOVObjDocument::GetComponentCollection, &KOVObjDocument::SetComponentCollection},
        {&KOVObjDocument::GetDofTypeCollection, &KOVObjDocument::SetDofTypeCollection},
        {&KOVObjDocument::GetShapeCollection, &KOVObjDocument::SetShapeCollection},
        {&KOVObjDocument::GetElementSpecCollection, &KOVObjDocument::SetElementSpecCollection},
        {&KOVObjDocument::GetMaterialCollection, &KOVObjDocument::SetMaterialCollection},
        {&KOVObjDocument::GetPointCollection, &KOVObjDocument::SetPointCollection},
    };
    std::vector<KOVSimPosition> targets;
    Write([&] {
        for (auto const& pair : all) {
            targets.push_back(Document().CreateDataRecord(schema::Model()).Pos());
            (Document().*pair.second)(targets.back());
        }
    });
    Reopen();
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(Again(targets[i]).ID(), (Document().*all[i].first)().ID()) << i;
    }
}

TEST_P(Documents, ADistributionOfNoParticularTypeMayBeMade) {
    KOVSimPosition position;
    Write([&] {
        KOVSimGrid::CollectionArray grid(1);
        grid.Get(0) = Document().GetPointCollection().GetCollection();
        position = Document().CreateDistribution(KOVSimGrid(grid),
                                                 KOVSimRangeType(KOVSimTypeKeyDouble), -1);
    });
    Reopen();
    EXPECT_EQ(-1, Again(position).TypePosition());
    EXPECT_EQ(1, KOVSimDistribution(Again(position).GetDistribution()).NumDimensions());
}

TEST_P(Documents, ClosingIsForAllHandlesAndMayBeRepeated) {
    KOVObjDocument const other = KOVObjDocument(Document().Focus().Doc());
    EXPECT_FALSE(other.IsClosed());
    Document().Close();
    EXPECT_TRUE(other.IsClosed());
    other.Close();
    EXPECT_TRUE(other.ContextID().IsNull());
    EXPECT_NE("", RefusalOf([&] { other.Focus(); }));
    EXPECT_NE("", RefusalOf([&] { other.Statistics(); }));
    EXPECT_NE("", RefusalOf([&] { other.Verify(nullptr); }));
}

TEST_P(Documents, StatisticsCountWhatIsThere) {
    KOVObjDocumentStatistics const before = Document().Statistics();
    EXPECT_GT(before.catalogueBytes, 0);
    EXPECT_EQ(2, before.distributions);
    EXPECT_EQ(1, before.datasets);
    EXPECT_EQ(0, before.drawers);
    EXPECT_EQ(0, before.tables);
    Write([&] {
        KOVSimCollection points(Document().GetPointCollection().GetCollection());
        points.CreateCSetStrided(0, 5, 1, 1);
        KOVSimGrid::CollectionArray grid(1);
        grid.Get(0) = points.ID();
        KOVSimDistribution const values(Document().CreateDistribution(
            KOVSimGrid(grid), KOVSimRangeType(KOVSimTypeKeyDouble), -1));
        std::vector<double> const data(100, 1.5);
        KOVSimTransfer transfer(values);
        transfer.SetWrite().SetMakeNewDrawer().SetBufferPadding(false);
        transfer.SetDim(0, points.CreateVolatileCSetStrided(0, 100, 1, 1)).CheckView();
        transfer.SetBuffer(0, static_cast<void const*>(data.data()), 800)
            .ExecWrite()
            .RelinquishBuffers();
        Document().GetModel().GetMap(schema::Model_steps()).Insert("s", Document().GetMesh());
    });
    KOVObjDocumentStatistics const after = Document().Statistics();
    EXPECT_EQ(before.commits + 1, after.commits);
    EXPECT_EQ(before.links + 1, after.links);
    EXPECT_EQ(before.sets + 2, after.sets);
    EXPECT_EQ(1, after.drawers);
    EXPECT_EQ(1, after.blocks);
    EXPECT_EQ(1, after.segments);
    EXPECT_EQ(800, after.liveBulkBytes);
    EXPECT_EQ(864, after.bulkBytes);
    EXPECT_EQ(0, after.supersededBytes);
    EXPECT_EQ(before.records, after.records);
}

TEST(DocumentFiles, CreateRefusesAPathThatExists) {
    TempFolder const folder;
    KOVString const path((folder / "model.ksd").c_str());
    KOVObjDocument::Create(path).Close();
    std::string const text = RefusalOf([&] { KOVObjDocument::Create(path); });
    EXPECT_NE(std::string::npos, text.find("model.ksd")) << text;
    std::filesystem::create_directory(folder / "taken.ksd");
    EXPECT_NE("", RefusalOf([&] { KOVObjDocument::Create((folder / "taken.ksd").c_str()); }));
}

TEST(DocumentFiles, OpenRefusesWhatIsNoDocument) {
    TempFolder const folder;
    EXPECT_NE("", RefusalOf([&] {
                  KOVObjDocument::Open((folder / "none.ksd").c_str(), KOVObjDocument::ReadOnly);
              }));
    EXPECT_NE("", RefusalOf([&] { KOVObjDocument::Open("", KOVObjDocument::ReadWrite); }));
}

TEST(DocumentFiles, APathThatIsOpenSharesItsContextOrIsRefused) {
    TempFolder const folder;
    KOVString const path((folder / "model.ksd").c_str());
    KOVObjDocument const first = KOVObjDocument::Create(path);
    EXPECT_EQ(first.ContextID(), KOVObjDocument::Open(path, KOVObjDocument::ReadWrite).ContextID());
    EXPECT_NE("", RefusalOf([&] { KOVObjDocument::Open(path, KOVObjDocument::ReadOnly); }));
    EXPECT_FALSE(first.IsReadOnly());
    EXPECT_FALSE(first.Refresh());
    first.Close();
    EXPECT_TRUE(KOVObjDocument::Open(path, KOVObjDocument::ReadOnly).IsReadOnly());
}

TEST(DocumentFiles, RefreshIsRefusedWhileATransactionIsOpen) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    EXPECT_TRUE(document.Path().IsEmpty());
    KOVSimTransaction transaction(document.ContextID());
    EXPECT_NE("", RefusalOf([&] { document.Refresh(); }));
}

TEST(DocumentFiles, ACompactedCopyHoldsTheSame) {
    TempFolder const folder;
    KOVString const path((folder / "model.ksd").c_str());
    KOVString const copy((folder / "copy.ksd").c_str());
    KOVObjDocument const document = KOVObjDocument::Create(path);
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimPosition const step = document.CreateDataRecord(schema::Step()).Pos();
        document.GetModel().GetMap(schema::Model_steps()).Insert("one", step);
        KOVSimCollection points(document.GetPointCollection().GetCollection());
        document.SetResults(points.CreateCSetStrided(3, 4, 1, 1));
        transaction.Commit();
    }
    document.WriteCompacted(copy);
    EXPECT_NE("", RefusalOf([&] { document.WriteCompacted(copy); }));
    KOVObjDocument const second = KOVObjDocument::Open(copy, KOVObjDocument::ReadOnly);
    EXPECT_EQ(document.GetModel().GetMap(schema::Model_steps()).Find("one").ID().data.minor,
              second.GetModel().GetMap(schema::Model_steps()).Find("one").ID().data.minor);
    EXPECT_EQ(4, KOVSimCSet(second.GetResults()).Size());
    EXPECT_TRUE(second.Verify([](char const* finding) { ADD_FAILURE() << finding; }));
}

}  // namespace
