// The session itself: what it writes is what it finds, on disk and in memory, and it notices what
// is not as it was written.
#include <gtest/gtest.h>

#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "reliability/Runs.h"
#include "reliability/Session.h"
#include "support/TempFolder.h"

using namespace reliability;
using kov::test::TempFolder;

namespace {

TEST(SessionModel, WhatIsWrittenIsFoundInMemory) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    Session session(Tiny);
    EXPECT_EQ(session.Check(document), 0);
    for (int n = 1; n <= 30; ++n) {
        session.Write(document, n);
        ASSERT_EQ(session.Check(document), n);
    }
    EXPECT_TRUE(document.Verify([](char const* finding) { ADD_FAILURE() << finding; }));
}

TEST(SessionModel, WhatIsWrittenIsFoundByALaterOpening) {
    TempFolder folder;
    std::string const path = folder / "model.ksd";
    Session session(Usual);
    KOVObjDocument::Create(path.c_str());
    for (int n = 1; n <= 24; ++n) {
        KOVObjDocument const writer = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadWrite);
        session.Write(writer, n);
        if (n % 2) writer.Close();
    }
    KOVObjDocument const reader = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
    EXPECT_EQ(session.Check(reader), 24);
    EXPECT_TRUE(reader.Verify([](char const* finding) { ADD_FAILURE() << finding; }));
}

TEST(SessionModel, ADroppedTransactionLeavesNothing) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    Session session(Tiny);
    for (int n = 1; n <= 12; ++n) {
        {
            KOVSimTransaction dropped(document.ContextID());
            session.WriteOpen(document, n);
        }
        ASSERT_EQ(session.Check(document), n - 1);
        session.Write(document, n);
        ASSERT_EQ(session.Check(document), n);
    }
}

TEST(SessionModel, ACompactedCopyHoldsTheSame) {
    TempFolder folder;
    Session session(Tiny);
    KOVObjDocument const document = KOVObjDocument::Create((folder / "a.ksd").c_str());
    for (int n = 1; n <= 20; ++n) session.Write(document, n);
    document.WriteCompacted((folder / "b.ksd").c_str());
    KOVObjDocument const copy =
        KOVObjDocument::Open((folder / "b.ksd").c_str(), KOVObjDocument::ReadOnly);
    EXPECT_EQ(session.Check(copy), 20);
    EXPECT_TRUE(copy.Verify([](char const* finding) { ADD_FAILURE() << finding; }));
    EXPECT_LE(copy.Statistics().bulkBytes, document.Statistics().bulkBytes);
}

// The checker has to see each of these, or it would let a half transaction pass.
class Noticed : public testing::TestWithParam<int> {};

TEST_P(Noticed, IsWhatDiffers) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    Session session(Tiny);
    for (int n = 1; n <= 10; ++n) session.Write(document, n);
    ASSERT_EQ(session.Check(document), 10);
    KOVSimTransaction transaction(document.ContextID());
    KOVSimPosition const root = RootOf(document);
    KOVSimPosition const step = root.GetMap(schema::Model_regions()).Find("7");
    switch (GetParam()) {
        case 0:
            step.GetDataRecord().SetDouble(1, 1.5);
            break;
        case 1:
            step.SetName("another");
            break;
        case 2:
            root.GetMap(schema::Model_nodeSets()).Remove("random 3");
            break;
        case 3:
            root.GetDataRecord().SetInt(0, 9);
            break;
        case 4:
            root.GetDataRecord().SetInt(0, 11);
            break;
        case 5:
            document.CreateDataRecord(schema::Step_Gen_Static());
            break;
        default:
            document.Focus().CreateTypedCollection(1, schema::MaterialCollection());
            break;
    }
    transaction.Commit();
    EXPECT_THROW(session.Check(document), Mismatch);
}
INSTANTIATE_TEST_SUITE_P(Differences, Noticed, testing::Range(0, 7));

}  // namespace
