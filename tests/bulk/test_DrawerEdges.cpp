// Views and writes at the edges of what a drawer can hold.
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <numeric>

#include "BulkFixture.h"

using DrawerEdges = BulkFixture;
INSTANTIATE_TEST_SUITE_P(Documents, DrawerEdges, testing::Values(Where::Memory, Where::Disk),
                         WhereName);

namespace {

std::vector<double> Counting(std::size_t n, double first) {
    std::vector<double> values(n);
    std::iota(values.begin(), values.end(), first);
    return values;
}

std::vector<int> MembersOf(KOVSimCSet const& set) {
    std::vector<int> members(static_cast<std::size_t>(set.Size()));
    set.OrderedMembers(members.data());
    return members;
}

}  // namespace

TEST_P(DrawerEdges, AWriteOfNoColumnsToAFixedDrawerMovesNothing) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 4), Columns({0, 1}), -1);
    Write(drawer, RowRange(0, 4), Columns({0, 1}), Counting(8, 1));
    Write(drawer, RowRange(1, 2), Columns({}), {});
    Write(drawer, Rows({3, 0}), Columns({}), {});
    EXPECT_EQ(Read(RowRange(0, 4), Columns({0, 1})), Counting(8, 1));
}

TEST_P(DrawerEdges, AWriteOfNoColumnsToAGrowingDrawerAddsMembersThatReadAsZero) {
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 2), Columns({0, 1}), 0);
        Write(drawer, RowRange(0, 2), Columns({0, 1}), Counting(4, 1));
        Write(drawer, RowRange(1, 3), Columns({}), {});
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(0, 5), Columns({0, 1}), 9),
              (std::vector<double>{1, 2, 3, 4, 0, 0, 0, 0, 9, 9}));
}

TEST_P(DrawerEdges, ADrawerWithoutColumnsHoldsMembersAndNoEntries) {
    KOVSimDrawerID drawer;
    {
        KOVSimTransaction transaction(document.ContextID());
        drawer = MakeDrawer(RowRange(2, 3), Columns({}), 0);
        Write(drawer, Rows({9, 3}), Columns({}), {});
        transaction.Commit();
    }
    Reopen();
    drawer = KOVSimDrawerID(Renew(drawer));
    KOVSimPersistentDrawerDesc const description = Doubles().DrawerDescription(drawer);
    EXPECT_TRUE(description.compartment.CSet(0).SameMembers(Rows({2, 3, 4, 9})));
    EXPECT_EQ(description.DataSizeItems(0), 0);
    EXPECT_EQ(Read(RowRange(2, 2), Columns({0}), 5), (std::vector<double>{5, 5}));
}

TEST_P(DrawerEdges, AViewOfTwoGibibytesIsRefusedWhateverItsShape) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimCollectionID const vast =
        document.Focus().CreateTypedCollection(INT_MAX, schema::MeshNodeCollection());
    KOVSimDistribution const square(Make({vast, vast}, KOVSimRangeType(KOVSimTypeKeyDouble)));
    KOVSimCollection const members(vast);
    auto fits = [&](int n0, int n1) {
        KOVSimTransfer read(square);
        read.SetRead()
            .SetDim(0, members.CreateVolatileCSetStrided(0, n0, 1, 1))
            .SetDim(1, members.CreateVolatileCSetStrided(0, n1, 1, 1));
        try {
            read.CheckView();
        } catch (KOVSimException const& refused) {
            EXPECT_THAT(refused.what(), testing::HasSubstr("less than 2 GiB"));
            return false;
        }
        EXPECT_EQ(read.RequiredBufferSize(0), n0 * n1 * 8);
        return true;
    };
    EXPECT_TRUE(fits((1 << 28) - 1, 1));
    EXPECT_TRUE(fits(1, (1 << 28) - 1));
    EXPECT_FALSE(fits(1 << 28, 1));
    // Sizes whose product wraps in 64 bits, to numbers of either sign.
    EXPECT_FALSE(fits(INT_MAX, INT_MAX));
    EXPECT_FALSE(fits(1 << 30, 1 << 30));
    EXPECT_FALSE(fits((1 << 30) + 1, 1 << 30));
    EXPECT_FALSE(fits(1 << 30, (1 << 30) + (1 << 29)));
}

TEST_P(DrawerEdges, TheHighestMemberOfTheLargestCollectionIsAMemberLikeAnyOther) {
    KOVSimDistributionID id;
    KOVSimCollectionID vast;
    {
        KOVSimTransaction transaction(document.ContextID());
        vast = document.Focus().CreateTypedCollection(INT_MAX, schema::MeshNodeCollection());
        id = Make({vast}, KOVSimRangeType(KOVSimTypeKeyInt));
        KOVSimTransfer write((KOVSimDistribution(id)));
        int const values[] = {5, 6};
        Chunks chunk(1, 0);
        chunk.Get(0) = 10;
        write.SetWrite()
            .SetMakeNewDrawerChunked(chunk)
            .SetExtendableDim(0)
            .SetDim(0, KOVSimCollection(vast).CreateVolatileCSetStrided(INT_MAX - 2, 2, 1, 1))
            .CheckView()
            .SetBuffer(0, values, 8)
            .ExecWrite()
            .RelinquishBuffers();
        transaction.Commit();
    }
    Reopen();
    int out[3] = {-1, -1, -1};
    KOVSimCollectionID const again(Renew(vast));
    int const wanted[] = {INT_MAX - 1, 0, INT_MAX - 2};
    KOVSimTransfer read(KOVSimDistribution(KOVSimDistributionID(Renew(id))));
    read.SetRead()
        .SetDim(0, KOVSimCollection(again).CreateVolatileOrderedCSet(wanted, 3))
        .CheckView()
        .SetBuffer(0, out, 12)
        .ExecRead()
        .RelinquishBuffers();
    EXPECT_THAT(out, testing::ElementsAre(6, -1, 5));
}

TEST_P(DrawerEdges, AViewMayReadAMemberSeveralTimes) {
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 3000), Columns({0, 1}), 0);
        Write(drawer, RowRange(0, 3000), Columns({0, 1}), Counting(6000, 0));
        transaction.Commit();
    }
    Reopen();
    std::vector<int> wanted;
    std::vector<double> expected;
    for (int i = 0; i < 9000; ++i) wanted.push_back(i * 7 % 3000);
    for (int i = 0; i < 3000; ++i) wanted.push_back(i);
    for (int i = 0; i < 3000; ++i) wanted.push_back(i);
    for (int member : wanted)
        for (int column : {1, 0, 1}) expected.push_back(2 * member + column);
    EXPECT_EQ(Read(Rows(wanted), Columns({1, 0, 1})), expected);
    std::vector<double> whole;
    for (int member : wanted)
        for (int column : {0, 1}) whole.push_back(2 * member + column);
    EXPECT_EQ(Read(Rows(wanted), Columns({0, 1})), whole);
}

TEST_P(DrawerEdges, SetsTakenBeforeADrawerGrowsKeepTheirMembersInEveryForm) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 1), Columns({0}), 0);
    std::vector<int> members{0};
    // Singles, runs, and scattered members: the set passes through all its forms meanwhile.
    for (int step = 0; step < 60; ++step) {
        KOVSimCSet const before = Doubles().DrawerDescription(drawer).compartment.CSet(0);
        KOVSimCSet const copy = before;
        std::vector<int> more;
        if (step < 20)
            more = {2 + step * 3};
        else if (step < 40)
            for (int i = 0; i < 30; ++i) more.push_back(100 + (step - 20) * 40 + i);
        else
            for (int i = 0; i < 150; ++i) more.push_back(1000 + ((step - 40) * 150 + i) * 4 / 3);
        Write(drawer, Rows(more), Columns({0}), Counting(more.size(), step));
        ASSERT_EQ(MembersOf(before), members) << step;
        ASSERT_EQ(MembersOf(copy), members) << step;
        for (int member : more) members.push_back(member);
        std::sort(members.begin(), members.end());
        members.erase(std::unique(members.begin(), members.end()), members.end());
        ASSERT_EQ(MembersOf(KOVSimCSet(before.ID())), members) << step;
    }
}

TEST_P(DrawerEdges, AGrowingDrawersOwnSetMayNameTheViewThatExtendsIt) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDrawerID const drawer = MakeDrawer(Rows({1, 5, 9}), Columns({0}), 0);
    KOVSimCSetID const own = Doubles().DrawerDescription(drawer).compartment.CSet(0).ID();
    KOVSimTransfer write(Doubles());
    std::vector<double> const values{1, 2, 3};
    write.SetWrite().SetAutoExtend().SetDrawer(drawer).SetDim(0, own).SetDim(1, Columns({0}));
    write.CheckView();
    Write(drawer, Rows({3, 7}), Columns({0}), {10, 20});
    write.SetBuffer(0, values.data(), 24).ExecWrite().RelinquishBuffers();
    EXPECT_EQ(Read(Rows({1, 3, 5, 7, 9}), Columns({0})), (std::vector<double>{1, 10, 2, 20, 3}));
    EXPECT_EQ(KOVSimCSet(own).Size(), 5);
}

TEST_P(DrawerEdges, ASetRegisteredInTheMiddleIsNotTheDrawersOwn) {
    KOVSimCSetID set;
    {
        KOVSimTransaction transaction(document.ContextID());
        set = KOVSimCollection(rows).CreateCSetStrided(0, 2, 1, 1);
        KOVSimDrawerID const drawer = MakeDrawer(KOVSimCSet(set), Columns({0}), 0);
        Write(drawer, KOVSimCSet(set), Columns({0}), {1, 2});
        KOVSimCSet more = RowRange(2, 2);
        KOVSimCSetID const registered = more.RegisterWithCollection();
        Write(drawer, KOVSimCSet(registered), Columns({0}), {3, 4});
        Write(drawer, RowRange(4, 1), Columns({0}), {5});
        EXPECT_EQ(KOVSimCSet(registered).Size(), 2);
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(KOVSimCSet(KOVSimCSetID(Renew(set))).Size(), 2) << "the caller's set never changes";
    EXPECT_EQ(Read(RowRange(0, 5), Columns({0})), (std::vector<double>{1, 2, 3, 4, 5}));
}

TEST_P(DrawerEdges, ADrawerOfADroppedTransactionIsRefusedEverywhere) {
    KOVSimDrawerID drawer;
    {
        KOVSimTransaction transaction(document.ContextID());
        drawer = MakeDrawer(RowRange(0, 2), Columns({0}), 0);
        Write(drawer, RowRange(0, 2), Columns({0}), {1, 2});
    }
    EXPECT_THROW(Doubles().DrawerDescription(drawer), KOVSimException);
    EXPECT_THROW(KOVSimDrawer{drawer}, KOVSimException);
    KOVSimTransfer read(Doubles());
    read.SetRead().SetDrawer(drawer).SetDim(0, RowRange(0, 2)).SetDim(1, Columns({0}));
    EXPECT_THROW(read.CheckView(), KOVSimException);
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDrawerID const next = MakeDrawer(RowRange(0, 2), Columns({0}), 0);
    EXPECT_NE(next.Minor(), drawer.Minor());
    EXPECT_THROW(Write(drawer, RowRange(0, 2), Columns({0}), {1, 2}), KOVSimException);
}

TEST_P(DrawerEdges, ATransferCheckedBeforeARollbackWritesIntoTheNextTransaction) {
    KOVSimDrawerID drawer;
    {
        KOVSimTransaction transaction(document.ContextID());
        drawer = MakeDrawer(RowRange(0, 2), Columns({0}), 0);
        Write(drawer, RowRange(0, 2), Columns({0}), {1, 2});
        transaction.Commit();
    }
    std::vector<double> const values{30, 40};
    KOVSimTransfer write(Doubles());
    write.SetWrite()
        .SetAutoExtend()
        .SetDrawer(drawer)
        .SetDim(0, RowRange(1, 2))
        .SetDim(1, Columns({0}));
    {
        KOVSimTransaction dropped(document.ContextID());
        write.CheckView();
        Write(drawer, RowRange(1, 4), Columns({0}), Counting(4, 90));
    }
    write.SetBuffer(0, values.data(), 16);
    EXPECT_THROW(write.ExecWrite(), KOVSimException);
    {
        KOVSimTransaction transaction(document.ContextID());
        write.ExecWrite().RelinquishBuffers();
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(0, 4), Columns({0})), (std::vector<double>{1, 30, 40, -1}));
}

TEST_P(DrawerEdges, MembersBeyondASpaceThatWasTakenBackAreRefusedAtTheWrite) {
    KOVSimDrawerID drawer;
    {
        KOVSimTransaction transaction(document.ContextID());
        drawer = MakeDrawer(RowRange(0, 2), Columns({0}), 0);
        transaction.Commit();
    }
    std::vector<double> const values{30, 40};
    KOVSimTransfer write(Doubles());
    {
        KOVSimTransaction dropped(document.ContextID());
        KOVSimCollection(rows).ExtendSpace(kRows + 2);
        write.SetWrite()
            .SetAutoExtend()
            .SetDrawer(drawer)
            .SetDim(0, RowRange(kRows, 2))
            .SetDim(1, Columns({0}))
            .CheckView()
            .SetBuffer(0, values.data(), 16);
    }
    KOVSimTransaction transaction(document.ContextID());
    EXPECT_THROW(write.ExecWrite(), KOVSimException);
    EXPECT_EQ(Doubles().DrawerDescription(drawer).compartment.CSet(0).Size(), 2);
}

TEST_P(DrawerEdges, LargeWritesBehindSmallOnesDoNotGatherInMemory) {
    constexpr int kMany = 3000000;
    std::vector<double> expected;
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimCollection(rows).ExtendSpace(kMany);
        KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 0), Columns({0}), 0);
        int at = 0;
        for (int size : {1, 1000000, 3, 131071, 131072, 131073, 2, 400000, 70000, 70000}) {
            Write(drawer, RowRange(at, size), Columns({0}),
                  Counting(static_cast<std::size_t>(size), 7.0 * at));
            for (int i = 0; i < size; ++i) expected.push_back(7 * at + i);
            at += size;
        }
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(0, static_cast<int>(expected.size())), Columns({0})), expected);
}

// The process that reads is this one; the writer is a child, which must have nothing open at the
// fork.
TEST(DrawerRefresh, AReaderSeesADrawerGrowOnlyAfterARefresh) {
    kov::test::TempFolder const folder;
    std::string const path = folder / "model.ksd";
    int go[2];
    int done[2];
    ASSERT_EQ(pipe(go), 0);
    ASSERT_EQ(pipe(done), 0);
    char word = 0;
    constexpr int kFirst = 200000;
    pid_t const child = fork();
    auto range = [](KOVObjDocument const& document, int first, int count) {
        return KOVSimCollection(KOVObjMesh(document.GetMesh()).GetNodeCollection().GetCollection())
            .CreateVolatileCSetStrided(first, count, 1, 1);
    };
    auto components = [](KOVObjDocument const& document) {
        int const used[] = {0, 12, 20};
        return KOVSimCollection(document.GetComponentCollection().GetCollection())
            .CreateVolatileCSet(used, 3, false);
    };
    auto coordinates = [](KOVObjDocument const& document) {
        return KOVSimDistribution(
            KOVObjMesh(document.GetMesh()).GetCoordinates().GetDistribution());
    };
    ASSERT_EQ(close(child == 0 ? go[1] : go[0]), 0);
    ASSERT_EQ(close(child == 0 ? done[0] : done[1]), 0);
    if (child == 0) {
        int status = 1;
        try {
            KOVObjDocument const document = KOVObjDocument::Create(path.c_str());
            KOVSimDrawerID drawer;
            int first = 0;
            for (int count : {kFirst, 5, kFirst}) {
                KOVSimTransaction transaction(document.ContextID());
                KOVSimCollection(KOVObjMesh(document.GetMesh()).GetNodeCollection().GetCollection())
                    .ExtendSpace(first + count);
                std::vector<double> const values =
                    Counting(static_cast<std::size_t>(count) * 3, first * 3);
                KOVSimTransfer append(coordinates(document));
                append.SetWrite()
                    .SetDim(0, range(document, first, count))
                    .SetDim(1, components(document));
                if (drawer.IsNull()) {
                    KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(2, 0);
                    append.SetMakeNewDrawerChunked(chunks).SetExtendableDim(0);
                } else {
                    append.SetDrawer(drawer).SetAutoExtend();
                }
                append.CheckView()
                    .SetBuffer(0, values.data(), values.size() * sizeof(double))
                    .ExecWrite()
                    .RelinquishBuffers();
                drawer = append.DrawerID();
                first += count;
                transaction.Commit();
                if (::write(done[1], "d", 1) != 1 || ::read(go[0], &word, 1) != 1) break;
                status = 0;
            }
            document.Close();
        } catch (std::exception const& e) {
            fprintf(stderr, "writer: %s\n", e.what());
            status = 2;
        }
        _exit(status);
    }
    ASSERT_EQ(read(done[0], &word, 1), 1);
    KOVObjDocument const document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
    auto look = [&](int first, int count) {
        std::vector<double> values(static_cast<std::size_t>(count) * 3, -1);
        KOVSimTransfer transfer(coordinates(document));
        transfer.SetRead()
            .SetDim(0, range(document, first, count))
            .SetDim(1, components(document))
            .CheckView();
        transfer.SetBuffer(0, values.data(), values.size() * sizeof(double))
            .ExecRead()
            .RelinquishBuffers();
        return values;
    };
    EXPECT_EQ(look(kFirst - 10, 10), Counting(30, (kFirst - 10) * 3));
    KOVSimCSet const own = [&] {
        KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
            drawers;
        coordinates(document).QueryDrawers(drawers);
        return drawers.Get(0).compartment.CSet(0);
    }();
    EXPECT_EQ(own.Size(), kFirst);
    int known = kFirst;
    for (int count : {5, kFirst}) {
        ASSERT_EQ(write(go[1], "g", 1), 1);
        ASSERT_EQ(read(done[0], &word, 1), 1);
        EXPECT_EQ(KOVSimCSet(own.ID()).Size(), known) << "before the refresh";
        EXPECT_THROW(range(document, known, count), KOVSimException);
        EXPECT_EQ(look(known - 10, 10), Counting(30, (known - 10) * 3));
        EXPECT_TRUE(document.Refresh());
        EXPECT_FALSE(document.Refresh());
        known += count;
        EXPECT_EQ(KOVSimCSet(own.ID()).Size(), known);
        EXPECT_EQ(look(0, known), Counting(static_cast<std::size_t>(known) * 3, 0));
        EXPECT_EQ(own.Size(), kFirst) << "a set object keeps what it had";
    }
    ASSERT_EQ(write(go[1], "g", 1), 1);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    document.Close();
}
