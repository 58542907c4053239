// Drawers whose rows in the catalogue hold what no writer would have put there, and writes that
// fail half-way. Whatever it is, it ends in an exception.
#include <functional>

#include "BulkFixture.h"
#include "document/bulk/DrawerStore.h"
#include "document/sets/SetStore.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

using DamagedDrawers = BulkFixture;
INSTANTIATE_TEST_SUITE_P(Documents, DamagedDrawers, testing::Values(Where::Memory, Where::Disk),
                         WhereName);

namespace {

std::string RefusalOf(std::function<void()> const& body) {
    try {
        body();
    } catch (KOVSimException const& refused) {
        return refused.what();
    }
    return "";
}

}  // namespace

TEST_P(DamagedDrawers, AnyNumberInAnyColumnIsRefusedOrHarmless) {
    KOVSimDrawerID growing;
    {
        KOVSimTransaction transaction(document.ContextID());
        growing = MakeDrawer(RowRange(0, 4), Columns({0, 1}), 0);
        Write(growing, Rows({0, 2, 9}), Columns({0, 1}), {1, 2, 3, 4, 5, 6});
        KOVSimDrawerID const fixed = MakeDrawer(RowRange(20, 4), Columns({0, 1}), -1);
        Write(fixed, RowRange(21, 2), Columns({0, 1}), {1, 2, 3, 4});
        transaction.Commit();
    }
    kov::store::Context& context = kov::store::Context::Of(document.ContextID());
    struct Column {
        char const* table;
        char const* name;
    };
    constexpr Column kColumnsToDamage[] = {
        {"drawers", "distribution"}, {"drawers", "growing"},    {"drawers", "chunk0"},
        {"drawers", "chunk1"},       {"drawers", "set0"},       {"drawers", "set1"},
        {"drawers", "row_bytes"},    {"drawers", "rows"},       {"drawers", "unwritten"},
        {"drawers", "number"},       {"distributions", "key"},  {"distributions", "range"},
        {"distributions", "dim0"},   {"distributions", "dim1"}, {"extents", "drawer"},
        {"extents", "first_row"},    {"extents", "runs"},       {"collections", "space"},
        {"sets", "collection"},      {"sets", "size"},          {"sets", "members"},
    };
    char const* const values[] = {"-1",
                                  "0",
                                  "1",
                                  "7",
                                  "-2147483648",
                                  "2147483647",
                                  "2147483648",
                                  "4294967297",
                                  "9223372036854775807",
                                  "-9223372036854775808",
                                  "null",
                                  "'text'",
                                  "x''",
                                  "x'ffffffffffffffffffff'",
                                  "zeroblob(40)",
                                  "randomblob(30)"};
    int refused = 0;
    for (Column const& column : kColumnsToDamage)
        for (char const* value : values) {
            std::string const what = std::string(column.table) + "." + column.name + " = " + value;
            if (what == "distributions.key = 7") continue;  // another, sound distribution
            SCOPED_TRACE(what);
            context.Begin();
            try {
                context.Cat().Execute((std::string("UPDATE OR IGNORE ") + column.table + " SET " +
                                       column.name + " = " + value)
                                          .c_str());
            } catch (KOVSimException const&) {
                context.Rollback();
                continue;
            }
            // What was known before is forgotten, as in a process that opens the document.
            kov::bulk::DrawerStore::Of(context).AfterRefresh();
            kov::sets::SetStore::Of(context).AfterRefresh();
            auto look = [&](std::function<void()> const& body) {
                if (!RefusalOf(body).empty()) ++refused;
            };
            look([&] { Read(RowRange(0, 30), Columns({0, 1})); });
            look([&] { Read(Rows({9, 2, 2}), Columns({1})); });
            look([&] {
                Descriptions drawers;
                Doubles().QueryDrawers(drawers);
            });
            look([&] { Write(growing, Rows({3, 2, 50}), Columns({1, 0}), {1, 2, 3, 4, 5, 6}); });
            look([&] { KOVSimCollection(rows).SeekCSet(RowRange(0, 3), false); });
            look([&] { document.Verify([](char const*) {}); });
            context.Rollback();
        }
    EXPECT_GT(refused, 100);
    EXPECT_EQ(Read(Rows({0, 2, 9}), Columns({0, 1})), (std::vector<double>{1, 2, 3, 4, 5, 6}));
}

TEST_P(DamagedDrawers, DrawersThatOwnEachOthersSetsAreRefused) {
    KOVSimTransaction transaction(document.ContextID());
    KOVSimDrawerID const first = MakeDrawer(RowRange(0, 4), Columns({0, 1}), 0);
    KOVSimDrawerID const second = MakeDrawer(RowRange(0, 4), Columns({0, 1}), 0);
    kov::store::Context& context = kov::store::Context::Of(document.ContextID());
    kov::bulk::DrawerStore& drawers = kov::bulk::DrawerStore::Of(context);
    int const sets[] = {drawers.Get(first.Minor()).Info().sets[0],
                        drawers.Get(second.Minor()).Info().sets[0]};
    for (bool const own : {true, false}) {
        for (int i = 0; i < 2; ++i) {
            kov::store::Statement update(context.Cat(),
                                         "UPDATE drawers SET set1 = ? WHERE number = ?");
            update.Bind(sets[own ? i : 1 - i]).Bind(i == 0 ? first.Minor() : second.Minor()).Run();
        }
        drawers.AfterRefresh();
        kov::sets::SetStore::Of(context).AfterRefresh();
        EXPECT_THAT(RefusalOf([&] { drawers.Get(first.Minor()); }),
                    testing::HasSubstr("its description is damaged"));
        EXPECT_THAT(RefusalOf([&] { drawers.Get(second.Minor()); }),
                    testing::HasSubstr("its description is damaged"));
    }
}

TEST_P(DamagedDrawers, AWriteThatFailsHalfWayCanOnlyBeDropped) {
    KOVSimDrawerID drawer;
    constexpr int kHeld = 4000;
    std::vector<double> const before(2 * kHeld, 1.5);
    {
        KOVSimTransaction transaction(document.ContextID());
        drawer = MakeDrawer(RowRange(0, kHeld), Columns({0, 1}), 0);
        Write(drawer, RowRange(0, kHeld), Columns({0, 1}), before);
        transaction.Commit();
    }
    kov::store::Context& context = kov::store::Context::Of(document.ContextID());
    {
        KOVSimTransaction transaction(document.ContextID());
        // The overwritten rows are read back from blocks that are not there any more, after new
        // members have been taken up.
        context.Cat().Execute("UPDATE blocks SET segment = 77");
        std::vector<int> members;
        for (int i = 0; i < 400; ++i) members.push_back(i * 10);
        members.push_back(kHeld + 5);
        kov::bulk::DrawerStore::Of(context).AfterRefresh();
        EXPECT_THAT(RefusalOf([&] {
                        Write(drawer, Rows(members), Columns({0, 1}),
                              std::vector<double>(members.size() * 2, 3));
                    }),
                    testing::HasSubstr("segment 77"));
        std::string const torn = "a write to it has failed half-way";
        EXPECT_THAT(RefusalOf([&] { Read(RowRange(0, 2), Columns({0})); }),
                    testing::HasSubstr(torn));
        EXPECT_THAT(RefusalOf([&] {
                        Write(drawer, RowRange(0, 1), Columns({0, 1}), {1, 2});
                    }),
                    testing::HasSubstr(torn));
        EXPECT_THAT(RefusalOf([&] { transaction.Commit(); }), testing::HasSubstr(torn));
    }
    EXPECT_EQ(Read(RowRange(0, kHeld), Columns({0, 1})), before);
    {
        KOVSimTransaction transaction(document.ContextID());
        Write(drawer, RowRange(kHeld, 1), Columns({0, 1}), {8, 9});
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(0, kHeld), Columns({0, 1})), before);
    EXPECT_EQ(Read(RowRange(kHeld, 2), Columns({0, 1})), (std::vector<double>{8, 9, -1, -1}));
}

// The gathered rows are joined with the small block in front of them at the commit, which cannot be
// read.
TEST_P(DamagedDrawers, ACommitThatCannotSaveADrawerDropsTheTransaction) {
    KOVSimDrawerID drawer;
    {
        KOVSimTransaction transaction(document.ContextID());
        drawer = MakeDrawer(RowRange(0, 10), Columns({0, 1}), 0);
        Write(drawer, RowRange(0, 10), Columns({0, 1}), std::vector<double>(20, 1.5));
        transaction.Commit();
    }
    kov::store::Context& context = kov::store::Context::Of(document.ContextID());
    KOVSimDrawerID other;
    {
        KOVSimTransaction transaction(document.ContextID());
        context.Cat().Execute("UPDATE blocks SET offset = offset + 8");
        kov::bulk::DrawerStore::Of(context).AfterRefresh();
        other = MakeDrawer(RowRange(100, 10), Columns({0, 1}), 0);
        Write(other, RowRange(100, 10), Columns({0, 1}), std::vector<double>(20, 4));
        Write(drawer, RowRange(10, 20), Columns({0, 1}), std::vector<double>(40, 2.5));
        EXPECT_NE(RefusalOf([&] { transaction.Commit(); }), "");
    }
    EXPECT_EQ(Read(RowRange(9, 2), Columns({0, 1})), (std::vector<double>{1.5, 1.5, -1, -1}));
    EXPECT_EQ(Read(RowRange(100, 1), Columns({0, 1})), (std::vector<double>{-1, -1}));
    EXPECT_THROW(KOVSimDrawer{other}, KOVSimException);
    {
        KOVSimTransaction transaction(document.ContextID());
        Write(drawer, RowRange(10, 20), Columns({0, 1}), std::vector<double>(40, 2.5));
        transaction.Commit();
    }
    Reopen();
    EXPECT_EQ(Read(RowRange(9, 2), Columns({0, 1})), (std::vector<double>{1.5, 1.5, 2.5, 2.5}));
    EXPECT_TRUE(document.Verify([](char const* fault) { ADD_FAILURE() << fault; }));
}
