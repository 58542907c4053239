#include <numeric>

#include "BulkFixture.h"

using Transfer = BulkFixture;
INSTANTIATE_TEST_SUITE_P(Documents, Transfer, testing::Values(Where::Memory, Where::Disk),
                         WhereName);

namespace {

std::vector<double> Counting(std::size_t n, double first = 0) {
    std::vector<double> values(n);
    std::iota(values.begin(), values.end(), first);
    return values;
}

template <class Body>
std::string RefusalOf(Body&& body) {
    try {
        body();
    } catch (KOVSimException const& refused) {
        return refused.what();
    }
    return "";
}

}  // namespace

TEST_P(Transfer, ANewDistributionHasNoDrawers) {
    Descriptions drawers(1, 0);
    Doubles().QueryDrawers(drawers);
    EXPECT_EQ(drawers.Size(), 0);
}

TEST_P(Transfer, RequiredBufferSizeIsTheProductOfTheSetsAndTheEntrySize) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDistribution const ints(Make({rows, columns}, KOVSimRangeType(KOVSimTypeKeyInt)));
    KOVSimDistribution const members(
        Make({rows, columns}, KOVSimRangeType(KOVSimTypeKeyMember, rows)));
    KOVSimDistribution const one(Make({rows}, KOVSimRangeType(KOVSimTypeKeyDouble)));
    for (KOVSimDistribution const& each : {Doubles(), ints, members}) {
        KOVSimTransfer read(each);
        read.SetRead()
            .SetBufferPadding(false)
            .SetDim(0, RowRange(0, 7))
            .SetDim(1, Columns({1, 2, 5}))
            .CheckView();
        EXPECT_EQ(read.RequiredBufferSize(0), 7 * 3 * (each.Range().Key() == 4 ? 8 : 4));
    }
    KOVSimTransfer read(one);
    read.SetRead().SetDim(0, RowRange(0, 7)).CheckView();
    EXPECT_EQ(read.RequiredBufferSize(0), 56);
}

TEST_P(Transfer, WhatIsWrittenReadsBackInAnyOrderOfMembers) {
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimDrawerID const drawer = MakeDrawer(RowRange(10, 20), Columns({0, 3, 5}), 0);
        Write(drawer, RowRange(10, 20), Columns({0, 3, 5}), Counting(60));
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(10, 20), Columns({0, 3, 5})), Counting(60));
    EXPECT_EQ(Read(Rows({29, 10, 12}), Columns({5, 0})), (std::vector<double>{59, 57, 2, 0, 8, 6}));
}

TEST_P(Transfer, AnOrderedSetPermutesTheWrite) {
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 4), Columns({1, 2}), 0);
        Write(drawer, Rows({3, 0, 2, 1}), Columns({2, 1}), Counting(8));
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(0, 4), Columns({1, 2})), (std::vector<double>{3, 2, 7, 6, 5, 4, 1, 0}));
}

TEST_P(Transfer, EntriesThatNoDrawerHoldsKeepWhatTheBufferHad) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDrawerID const drawer = MakeDrawer(RowRange(4, 2), Columns({1}), 0);
    Write(drawer, RowRange(4, 2), Columns({1}), {7, 8});
    EXPECT_EQ(Read(RowRange(3, 4), Columns({1, 2}), 99),
              (std::vector<double>{99, 99, 7, 99, 8, 99, 99, 99}));
}

TEST_P(Transfer, EntriesOfADrawerThatWereNeverWrittenReadAsZero) {
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 6), Columns({0, 1}), 0);
        Write(drawer, RowRange(2, 1), Columns({0}), {5});
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(0, 7), Columns({0, 1}), 9),
              (std::vector<double>{0, 0, 0, 0, 5, 0, 0, 0, 0, 0, 0, 0, 9, 9}));
}

TEST_P(Transfer, AutoExtendOverwritesMembersThatTheDrawerHas) {
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 4), Columns({0, 1}), 0);
        Write(drawer, RowRange(0, 4), Columns({0, 1}), Counting(8));
        Write(drawer, RowRange(1, 2), Columns({0, 1}), {-1, -2, -3, -4});
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(0, 4), Columns({0, 1})),
              (std::vector<double>{0, 1, -1, -2, -3, -4, 6, 7}));
    Descriptions drawers(1, 0);
    Doubles().QueryDrawers(drawers);
    ASSERT_EQ(drawers.Size(), 1);
    EXPECT_EQ(drawers.Get(0).compartment.CSet(0).Size(), 4);
}

TEST_P(Transfer, AutoExtendGrowsTheDrawerAcrossCommits) {
    KOVSimDrawerID drawer;
    {
        KOVSimTransaction transaction(document.ContextID());
        drawer = MakeDrawer(RowRange(0, 3), Columns({0, 1}), 0);
        Write(drawer, RowRange(0, 3), Columns({0, 1}), Counting(6));
        transaction.Commit();
    }
    Reopen();
    drawer = KOVSimDrawerID(Renew(drawer));
    {
        KOVSimTransaction transaction(document.ContextID());
        Write(drawer, Rows({100, 2, 50}), Columns({0, 1}), {1, 2, 3, 4, 5, 6});
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(Rows({0, 1, 2, 50, 100}), Columns({0, 1})),
              (std::vector<double>{0, 1, 2, 3, 3, 4, 5, 6, 1, 2}));
    Descriptions drawers(1, 0);
    Doubles().QueryDrawers(drawers);
    ASSERT_EQ(drawers.Size(), 1);
    EXPECT_TRUE(drawers.Get(0).compartment.CSet(0).SameMembers(Rows({0, 1, 2, 50, 100})));
    EXPECT_EQ(drawers.Get(0).extendableDim, 0);
    EXPECT_EQ(drawers.Get(0).DataSizeItems(0), 10);
    Chunks chunks(0, 0);
    drawers.Get(0).ChunkSizes(chunks);
    ASSERT_EQ(chunks.Size(), 2);
    EXPECT_EQ(chunks.Get(0), 16);
    EXPECT_EQ(chunks.Get(1), 4);
}

TEST_P(Transfer, MembersOutsideADimensionThatCannotGrowAreRefused) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 3), Columns({0, 1}), 0);
    EXPECT_THAT(RefusalOf([&] {
                    Write(drawer, RowRange(0, 3), Columns({0, 2}), Counting(6));
                }),
                testing::HasSubstr("dimension 1 of the drawer does not hold member 2"));
    KOVSimTransfer write(Doubles());
    write.SetWrite().SetDrawer(drawer).SetDim(0, RowRange(2, 2)).SetDim(1, Columns({0, 1}));
    EXPECT_THAT(RefusalOf([&] { write.CheckView(); }),
                testing::HasSubstr("dimension 0 of the drawer does not hold member 3"));
}

TEST_P(Transfer, AReadWithoutADrawerIsServedFromAllThatHoldTheView) {
    {
        KOVSimTransaction transaction(document.ContextID());
        Write(MakeDrawer(RowRange(0, 2), Columns({0, 1}), 0), RowRange(0, 2), Columns({0, 1}),
              {1, 2, 3, 4});
        Write(MakeDrawer(RowRange(2, 2), Columns({0, 1}), 0), RowRange(2, 2), Columns({0, 1}),
              {5, 6, 7, 8});
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(1, 2), Columns({0, 1})), (std::vector<double>{3, 4, 5, 6}));
    EXPECT_EQ(Read(Rows({3, 0}), Columns({1})), (std::vector<double>{8, 2}));
}

TEST_P(Transfer, OfOverlappingDrawersTheOneMadeLastServes) {
    KOVSimTransaction transaction(document.ContextID());
    Write(MakeDrawer(RowRange(0, 4), Columns({0}), 0), RowRange(0, 4), Columns({0}), {1, 2, 3, 4});
    Write(MakeDrawer(RowRange(1, 2), Columns({0}), 0), RowRange(1, 2), Columns({0}), {20, 30});
    EXPECT_EQ(Read(RowRange(0, 4), Columns({0})), (std::vector<double>{1, 20, 30, 4}));
}

TEST_P(Transfer, ASecondDimensionMayGrow) {
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimDrawerID const drawer = MakeDrawer(RowRange(3, 2), Columns({1, 2}), 1);
        Write(drawer, RowRange(3, 2), Columns({1, 2}), {1, 2, 3, 4});
        Write(drawer, RowRange(3, 2), Columns({7, 2}), {5, 6, 7, 8});
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(3, 2), Columns({1, 2, 7})), (std::vector<double>{1, 6, 5, 3, 8, 7}));
    EXPECT_EQ(Read(Rows({4}), Columns({7, 1})), (std::vector<double>{7, 3}));
}

TEST_P(Transfer, AnExtensionNamesTheNewMembersOfTheGrowingDimension) {
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 2), Columns({0, 1}), 0);
        Write(drawer, RowRange(0, 2), Columns({0, 1}), {1, 2, 3, 4});
        int const more[] = {9, 4};
        KOVSimCSetID const fresh = KOVSimCollection(rows).CreateTempOrderedCSet(more, 2);
        std::vector<double> const values{5, 6, 7, 8};
        KOVSimTransfer extend(Doubles());
        extend.SetWrite().SetDrawer(drawer).SetBufferPadding(false).SetDimExtension(fresh).SetDim(
            1, Columns({0, 1}));
        extend.CheckView();
        extend.SetBuffer(0, values.data(), 32).ExecWrite().RelinquishBuffers();
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(Rows({0, 1, 4, 9}), Columns({0, 1})),
              (std::vector<double>{1, 2, 3, 4, 7, 8, 5, 6}));
}

TEST_P(Transfer, MakingAndWritingGoInOneStep) {
    KOVSimDrawerID drawer;
    {
        KOVSimTransaction transaction(document.ContextID());
        std::vector<double> const values{1, 2, 3};
        KOVSimTransfer write(Doubles());
        write.SetWrite()
            .SetMakeNewDrawer()
            .SetBufferPadding(false)
            .SetDim(0, Rows({8, 2, 5}))
            .SetDim(1, Columns({4}));
        write.CheckView().SetBuffer(0, values.data(), 24).ExecWrite().RelinquishBuffers();
        drawer = write.DrawerID();
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(Rows({2, 5, 8}), Columns({4})), (std::vector<double>{2, 3, 1}));
    KOVSimDrawer const made(KOVSimDrawerID(Renew(drawer)));
    ASSERT_NE(made.Description(), nullptr);
    EXPECT_FALSE(made.Description()->IsChunked());
    EXPECT_EQ(made.Description()->extendableDim, -1);
}

TEST_P(Transfer, RelinquishingLeavesTheDataInTheCallersBuffer) {
    KOVSimTransaction transaction(document.ContextID());
    Write(MakeDrawer(RowRange(0, 1), Columns({0}), 0), RowRange(0, 1), Columns({0}), {3.5});
    double value = 0;
    KOVSimTransfer read(Doubles());
    read.SetRead()
        .SetDim(0, RowRange(0, 1))
        .SetDim(1, Columns({0}))
        .CheckView()
        .SetBuffer(0, &value, 8)
        .ExecRead();
    read.RelinquishBuffers();
    EXPECT_EQ(value, 3.5);
}

TEST_P(Transfer, AViewWithAnEmptySetIsAcceptedAndMovesNothing) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 0), Columns({0, 1}), 0);
    Write(drawer, RowRange(0, 0), Columns({0, 1}), {});
    EXPECT_TRUE(Read(RowRange(0, 0), Columns({0, 1})).empty());
    Write(drawer, RowRange(0, 1), Columns({0, 1}), {1, 2});
    EXPECT_EQ(Read(RowRange(0, 1), Columns({0, 1})), (std::vector<double>{1, 2}));
}

TEST_P(Transfer, AWriteThatIsNotCommittedLeavesNothing) {
    {
        KOVSimTransaction transaction(document.ContextID());
        Write(MakeDrawer(RowRange(0, 2), Columns({0, 1}), 0), RowRange(0, 2), Columns({0, 1}),
              {1, 2, 3, 4});
        transaction.Commit();
    }
    {
        KOVSimTransaction transaction(document.ContextID());
        Descriptions drawers(1, 0);
        Doubles().QueryDrawers(drawers);
        Write(drawers.Get(0).drawerID, RowRange(1, 5), Columns({0, 1}), Counting(10, 50));
        EXPECT_EQ(Read(RowRange(1, 1), Columns({0, 1})), (std::vector<double>{50, 51}));
    }
    EXPECT_EQ(Read(RowRange(0, 3), Columns({0, 1})), (std::vector<double>{1, 2, 3, 4, -1, -1}));
    Reopen();
    EXPECT_EQ(Read(RowRange(0, 3), Columns({0, 1})), (std::vector<double>{1, 2, 3, 4, -1, -1}));
}

TEST_P(Transfer, ADescriptionKeepsWhatTheDrawerHadWhenItWasTaken) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 2), Columns({0, 1}), 0);
    KOVSimPersistentDrawerDesc const before = Doubles().DrawerDescription(drawer);
    KOVSimCSet const set = before.compartment.CSet(0);
    Write(drawer, RowRange(2, 2), Columns({0, 1}), Counting(4));
    EXPECT_EQ(set.Size(), 2);
    EXPECT_EQ(before.compartment.CSet(0).Size(), 2);
    EXPECT_EQ(KOVSimCSet(set.ID()).Size(), 4)
        << "the set keeps its ID and answers the present members";
}

TEST_P(Transfer, IntegersAreReadIntoABufferOfDoublesOnRequest) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDistribution const ints(Make({rows, columns}, KOVSimRangeType(KOVSimTypeKeyInt)));
    std::vector<int> const values{4, -5};
    KOVSimTransfer write(ints);
    write.SetWrite()
        .SetMakeNewDrawer()
        .SetDim(0, RowRange(1, 2))
        .SetDim(1, Columns({0}))
        .CheckView();
    write.SetBuffer(0, values.data(), 8).ExecWrite().RelinquishBuffers();
    std::vector<double> out(4, 0.5);
    KOVSimTransfer read(ints);
    read.SetRead().SetBufferType(4).SetDim(0, RowRange(0, 4)).SetDim(1, Columns({0})).CheckView();
    ASSERT_EQ(read.RequiredBufferSize(0), 32);
    read.SetBuffer(0, out.data(), 32).ExecRead().RelinquishBuffers();
    EXPECT_EQ(out, (std::vector<double>{0.5, 4, -5, 0.5}));
}

TEST_P(Transfer, RefusalsNameWhatIsWrong) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 2), Columns({0, 1}), 0);
    auto refusal = [&](auto&& set) {
        return RefusalOf([&] {
            KOVSimTransfer transfer(Doubles());
            set(transfer);
            transfer.CheckView();
        });
    };
    EXPECT_THAT(refusal([](KOVSimTransfer& t) { t.SetRead(); }),
                testing::HasSubstr("dimension 0 of the view was not set"));
    EXPECT_THAT(refusal([&](KOVSimTransfer& t) {
                    t.SetRead().SetDim(0, Columns({0})).SetDim(1, Columns({0}));
                }),
                testing::HasSubstr("the set given for dimension 0 is of collection"));
    EXPECT_THAT(
        refusal([&](KOVSimTransfer& t) { t.SetDim(0, RowRange(0, 1)).SetDim(1, Columns({0})); }),
        testing::HasSubstr("neither reading nor writing nor making was asked for"));
    EXPECT_THAT(
        refusal([&](KOVSimTransfer& t) {
            t.SetWrite().SetDrawer(drawer).SetDim(0, Rows({1, 0, 1})).SetDim(1, Columns({0}));
        }),
        testing::HasSubstr("names a member twice"));
    EXPECT_THAT(refusal([&](KOVSimTransfer& t) { t.SetRead().SetBufferPadding(true); }),
                testing::HasSubstr("padding"));
    EXPECT_THAT(refusal([&](KOVSimTransfer& t) { t.SetRead().SetDim(2, RowRange(0, 1)); }),
                testing::HasSubstr("there is no dimension 2"));
    EXPECT_THAT(refusal([&](KOVSimTransfer& t) {
                    t.SetWrite().SetDim(0, RowRange(50, 1)).SetDim(1, Columns({0}));
                }),
                testing::HasSubstr("no single drawer holds the view"));
    EXPECT_THAT(RefusalOf([&] {
                    KOVSimTransfer read(Doubles());
                    read.SetRead().SetDim(0, RowRange(0, 1)).SetDim(1, Columns({0}));
                    read.RequiredBufferSize(0);
                }),
                testing::HasSubstr("CheckView must come before"));
    double small = 0;
    EXPECT_THAT(RefusalOf([&] {
                    KOVSimTransfer read(Doubles());
                    read.SetRead()
                        .SetDim(0, RowRange(0, 2))
                        .SetDim(1, Columns({0}))
                        .CheckView()
                        .SetBuffer(0, &small, 8);
                }),
                testing::HasSubstr("the buffer has 8 bytes, and the view takes 16"));
}

TEST_P(Transfer, WritingOutsideATransactionThrows) {
    EXPECT_THROW(MakeDrawer(RowRange(0, 2), Columns({0, 1}), 0), KOVSimException);
}

TEST_P(Transfer, ADistributionDoesNotKeepItsDocumentAlive) {
    KOVSimDistribution const distribution = Doubles();
    EXPECT_TRUE(distribution.IsPresent());
    document = KOVObjDocument();
    EXPECT_FALSE(distribution.IsPresent());
    Descriptions drawers(0, 0);
    EXPECT_THROW(distribution.QueryDrawers(drawers), KOVSimException);
}

TEST_P(Transfer, AFunctionTableKeepsItsLabelsAndEveryBit) {
    KOVSimFTableID id;
    std::vector<double> const data{
        0.0, -0.0, 1e308, 5e-324, std::numeric_limits<double>::quiet_NaN(), 6};
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVBasVector<KOVString> labels;
        labels.PushBack("table");
        KOVBasVector<KOVString> columnLabels;
        columnLabels.PushBack("a");
        columnLabels.PushBack("\xC3\xA9");
        columnLabels.PushBack("");
        id = document.Focus().CreateFTable(schema::FTable(), 2, labels, columnLabels, data.data(),
                                           6);
        transaction.Commit();
    }
    Reopen();
    KOVSimFTable const table(KOVSimFTableID(Renew(id)));
    EXPECT_EQ(table.RowCount(), 2);
    EXPECT_EQ(table.ColumnCount(), 3);
    EXPECT_STREQ(table.ColumnLabel(1).Text(), "\xC3\xA9");
    std::vector<double> out(6);
    table.GetData(out.data(), 6);
    EXPECT_EQ(std::memcmp(out.data(), data.data(), 48), 0);
    EXPECT_THROW(table.GetData(out.data(), 7), KOVSimException);
    EXPECT_THROW(table.ColumnLabel(3), KOVSimException);
}

TEST_P(Transfer, LabelsOfAFunctionTableKeepAnyBytes) {
    KOVString zero;
    zero.BuildFromUTF8("a\0b", 3);
    KOVString const odd("\xFF\xFE");
    KOVSimFTableID id;
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVBasVector<KOVString> labels, columnLabels;
        labels.PushBack(zero);
        columnLabels.PushBack(odd);
        columnLabels.PushBack(zero);
        std::vector<double> const data = Counting(2);
        id = document.Focus().CreateFTable(schema::FTable(), 1, labels, columnLabels, data.data(),
                                           2);
        transaction.Commit();
    }
    Reopen();
    KOVSimFTable const table(KOVSimFTableID(Renew(id)));
    ASSERT_EQ(table.ColumnCount(), 2);
    EXPECT_EQ(table.Label(0), zero);
    EXPECT_EQ(table.ColumnLabel(0), odd);
    EXPECT_EQ(table.ColumnLabel(1), zero);
    EXPECT_NE(table.ColumnLabel(1), "a");
}

TEST_P(Transfer, LabelsAreTheFirstColumnsOfAFunctionTableWithValuesForThemToo) {
    KOVSimFTableID id;
    std::vector<double> const data = Counting(6);
    KOVBasVector<KOVString> labels;
    labels.PushBack("first");
    KOVBasVector<KOVString> columnLabels;
    columnLabels.PushBack("second");
    columnLabels.PushBack("third");
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimPosition const focus = document.Focus();
        id = focus.CreateFTable(schema::FTable(), 2, labels, columnLabels, data.data(), 6);
        std::vector<double> const more = Counting(8);
        for (int const count : {5, 7, 8}) {
            EXPECT_EQ(RefusalOf([&] {
                          focus.CreateFTable(schema::FTable(), 2, labels, columnLabels, more.data(),
                                             count);
                      }),
                      "cannot create a function table: " + std::to_string(count) +
                          " values were given for 2 rows of 2 or 3 columns");
        }
        transaction.Commit();
    }
    Reopen();
    KOVSimFTable const table(KOVSimFTableID(Renew(id)));
    EXPECT_EQ(table.RowCount(), 2);
    ASSERT_EQ(table.ColumnCount(), 3);
    EXPECT_STREQ(table.ColumnLabel(0).Text(), "first");
    EXPECT_STREQ(table.ColumnLabel(1).Text(), "second");
    EXPECT_STREQ(table.ColumnLabel(2).Text(), "third");
    ASSERT_EQ(table.LabelCount(), 1);
    EXPECT_STREQ(table.Label(0).Text(), "first");
    std::vector<double> out(6);
    table.GetData(out.data(), 6);
    EXPECT_EQ(out, data);
}
