#include "KOVSimTransaction.h"

#include <stdexcept>

#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimSchema.h"
#include "support/DocumentFixture.h"

namespace {

using kov::test::DocumentTest;
using kov::test::RefusalOf;

class Transaction : public DocumentTest {};
KOV_DOCUMENT_TESTS(Transaction);

TEST_P(Transaction, ACommittedChangeIsThereAfterReopening) {
    Write([&] { Document().SetResults(NewRecord(schema::Results())); });
    Reopen();
    EXPECT_EQ(schema::Results(), Document().GetResults().TypePosition());
}

TEST_P(Transaction, AnExceptionDropsTheChanges) {
    try {
        KOVSimTransaction transaction(Document().ContextID());
        Document().SetResults(NewRecord(schema::Results()));
        throw std::runtime_error("passing");
    } catch (std::runtime_error const&) {
    }
    EXPECT_TRUE(Document().GetResults().IsNull());
    Reopen();
    EXPECT_TRUE(Document().GetResults().IsNull());
}

TEST_P(Transaction, ASecondOneIsRefusedAndTheFirstGoesOn) {
    KOVSimTransaction transaction(Document().ContextID());
    EXPECT_EQ(Document().ContextID(), transaction.ContextID());
    EXPECT_NE("", RefusalOf([&] { KOVSimTransaction second(Document().ContextID()); }));
    Document().SetResults(NewRecord(schema::Results()));
    transaction.Commit();
    EXPECT_FALSE(Document().GetResults().IsNull());
}

TEST_P(Transaction, CommittingTwiceIsRefused) {
    KOVSimTransaction transaction(Document().ContextID());
    transaction.Commit();
    EXPECT_NE("", RefusalOf([&] { transaction.Commit(); }));
    KOVSimTransaction next(Document().ContextID());
    next.Commit();
}

TEST_P(Transaction, ClosingDropsWhatIsOpen) {
    {
        KOVSimTransaction transaction(Document().ContextID());
        Document().SetResults(NewRecord(schema::Results()));
        Document().Close();
        EXPECT_NE("", RefusalOf([&] { transaction.Commit(); }));
    }
    if (!OnDisk()) return;
    Reopen();
    EXPECT_TRUE(Document().GetResults().IsNull());
}

TEST_P(Transaction, OneOnAClosedDocumentIsRefused) {
    KOVSimContextID const context = Document().ContextID();
    Document().Close();
    EXPECT_NE("", RefusalOf([&] { KOVSimTransaction transaction(context); }));
    EXPECT_NE("", RefusalOf([&] { KOVSimTransaction transaction{KOVSimContextID()}; }));
}

TEST_P(Transaction, CreatingOutsideOneIsRefused) {
    EXPECT_NE("", RefusalOf([&] { Document().CreateDataRecord(schema::Results()); }));
    EXPECT_NE("",
              RefusalOf([&] { Document().Focus().CreateTypedCollection(1, schema::Results()); }));
    EXPECT_NE("",
              RefusalOf([&] { Document().GetPointCollection().AppendMember(schema::Results()); }));
    EXPECT_NE("", RefusalOf([&] {
                  Document().GetPointCollection().AddSymbol("a", 1, schema::Symbol());
              }));
}

TEST(Handles, ATransactionOnAReadOnlyDocumentIsRefused) {
    kov::test::TempFolder const folder;
    KOVString const path((folder / "model.ksd").c_str());
    KOVObjDocument::Create(path).Close();
    KOVObjDocument const document = KOVObjDocument::Open(path, KOVObjDocument::ReadOnly);
    EXPECT_TRUE(document.IsReadOnly());
    EXPECT_NE("", RefusalOf([&] { KOVSimTransaction transaction(document.ContextID()); }));
}

TEST(Handles, ADefaultBuiltDocumentIsClosed) {
    EXPECT_TRUE(KOVObjDocument().IsClosed());
    EXPECT_TRUE(KOVObjDocument().ContextID().IsNull());
    EXPECT_TRUE(KOVObjDocument().Focus().IsNull());
    EXPECT_TRUE(KOVObjDocument().GetMesh().IsNull());
    KOVObjDocument().Close();
    EXPECT_NE("", RefusalOf([] { KOVObjDocument().Refresh(); }));
    EXPECT_NE("", RefusalOf([] { KOVObjDocument().CreateDataRecord(4096); }));
}

TEST(Handles, TheLastHandleClosesTheDatabase) {
    KOVSimContextID context;
    KOVSimPosition focus;
    {
        KOVObjDocument const document = KOVObjDocument::CreateInMemory();
        context = document.ContextID();
        focus = document.Focus();
        KOVSimDatabase const share = focus.Doc();
        EXPECT_FALSE(KOVObjDocument(share).IsClosed());
    }
    EXPECT_NE("", RefusalOf([&] { focus.GetPosition(schema::Focus_model()); }));
}

TEST(Handles, ADistributionDoesNotKeepTheDatabaseAlive) {
    KOVSimDistribution coordinates;
    KOVSimPosition focus;
    {
        KOVObjDocument const document = KOVObjDocument::CreateInMemory();
        focus = document.Focus();
        coordinates = KOVSimDistribution(
            document.GetMesh().GetPosition(schema::Mesh_coordinates()).GetDistribution());
        EXPECT_TRUE(coordinates.IsPresent());
    }
    EXPECT_FALSE(coordinates.IsPresent());
    EXPECT_NE("", RefusalOf([&] { focus.Doc(); }));
}

}  // namespace
