#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "store/Script.h"
#include "store/Throws.h"
#include "support/TempFolder.h"

namespace kov::test {
namespace {

using store::Context;
using store::Statement;
using testing::HasSubstr;

class Catalogue : public testing::Test {
  protected:
    std::shared_ptr<Context> context = Context::CreateInMemory(Script::Fill);
    store::Catalogue& catalogue = context->Cat();
};

TEST_F(Catalogue, ValuesComeBackAsTheyWereBound) {
    context->Begin();
    Statement insert(catalogue, "INSERT INTO fields VALUES(?, ?, ?, ?)");
    std::string const bytes("a\0b", 3);
    insert.Bind(INT64_MIN).Bind(1).BindText("i").Bind(INT64_MAX).Run();
    insert.Bind(2).Bind(2).BindText("b").BindBlob(bytes.data(), bytes.size()).Run();
    insert.Bind(3).Bind(3).BindText("e").BindBlob(nullptr, 0).Run();
    insert.Bind(4).Bind(4).BindText("n").BindNull().Run();
    insert.Bind(5).Bind(5).BindText("t").BindText({}).Run();
    Statement query(catalogue, "SELECT owner, kind, value FROM fields ORDER BY owner");
    ASSERT_TRUE(query.Step());
    EXPECT_EQ(query.Int(0), INT64_MIN);
    EXPECT_EQ(query.Int(2), INT64_MAX);
    EXPECT_EQ(query.KindOf(2), Statement::Kind::Integer);
    ASSERT_TRUE(query.Step());
    EXPECT_EQ(query.Blob(2), bytes);
    ASSERT_TRUE(query.Step());
    EXPECT_EQ(query.KindOf(2), Statement::Kind::Blob);
    EXPECT_EQ(query.Blob(2).size(), 0u);
    ASSERT_TRUE(query.Step());
    EXPECT_TRUE(query.IsNull(2));
    ASSERT_TRUE(query.Step());
    EXPECT_EQ(query.KindOf(2), Statement::Kind::Text);
    EXPECT_EQ(query.Text(2), "");
    EXPECT_FALSE(query.Step());
    EXPECT_FALSE(query.Step());
}

TEST_F(Catalogue, ANestedUseOfOneTextGoesItsOwnWay) {
    static char const sql[] = "SELECT number FROM objects WHERE number > ? ORDER BY number";
    std::vector<std::int64_t> seen;
    Statement outer(catalogue, sql);
    outer.Bind(0);
    while (outer.Step()) {
        Statement inner(catalogue, sql);
        inner.Bind(outer.Int(0));
        while (inner.Step()) seen.push_back(outer.Int(0) * 10 + inner.Int(0));
    }
    EXPECT_EQ(seen, (std::vector<std::int64_t>{12, 13, 23}));
}

TEST_F(Catalogue, ABoundTextOfAQueryMayGo) {
    Statement query(catalogue, "SELECT name FROM meta WHERE name IN (?, ?) ORDER BY name");
    {
        std::string first = "focus", second = "uuid";
        query.BindText(first).BindText(second);
        first.assign(5, 'x');
        second.assign(4, 'x');
    }
    ASSERT_TRUE(query.Step());
    EXPECT_EQ(query.Text(0), "focus");
    ASSERT_TRUE(query.Step());
    EXPECT_EQ(query.Text(0), "uuid");
}

TEST_F(Catalogue, WritingOutsideATransactionIsRefused) {
    Statement insert(catalogue, "INSERT INTO objects VALUES(77, 1, 1, NULL)");
    EXPECT_THAT(Thrown([&] { insert.Step(); }), HasSubstr("no transaction is open"));
}

TEST_F(Catalogue, AStatementOutlivesTheClosing) {
    Statement query(catalogue, "SELECT number FROM objects");
    ASSERT_TRUE(query.Step());
    context->Close();
    EXPECT_THAT(Thrown([&] { query.Step(); }), HasSubstr("closed"));
}

TEST_F(Catalogue, ManyStatementsAreKept) {
    std::vector<std::string> texts;
    for (int i = 0; i < 300; ++i) texts.push_back("SELECT " + std::to_string(i));
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 300; ++i) {
            Statement query(catalogue, texts[static_cast<std::size_t>(i)].c_str());
            ASSERT_TRUE(query.Step());
            EXPECT_EQ(query.Int(0), i);
        }
    }
}

TEST_F(Catalogue, ABrokenRuleOfATableIsAnException) {
    context->Begin();
    Statement insert(catalogue, "INSERT INTO objects VALUES(1, 1, 1, NULL)");
    EXPECT_THAT(Thrown([&] { insert.Run(); }), HasSubstr("UNIQUE constraint failed"));
}

TEST(CatalogueFile, OtherToolsReadIt) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    {
        auto const context = Context::Create(path, Script::Fill);
        for (int i = 1; i <= 9; ++i) Script::Commit(*context, i);
    }
    sqlite3* db = nullptr;
    ASSERT_EQ(
        sqlite3_open_v2((path + "/catalog.sqlite").c_str(), &db, SQLITE_OPEN_READONLY, "unix"),
        SQLITE_OK);
    auto const one = [&](char const* sql) {
        sqlite3_stmt* query = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(db, sql, -1, &query, nullptr), SQLITE_OK);
        EXPECT_EQ(sqlite3_step(query), SQLITE_ROW);
        std::string const text = reinterpret_cast<char const*>(sqlite3_column_text(query, 0));
        sqlite3_finalize(query);
        return text;
    };
    EXPECT_EQ(one("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(one("SELECT count(*) FROM links"), "270");
    EXPECT_EQ(one("PRAGMA application_id"), std::to_string(0x4b4f5644));
    EXPECT_EQ(one("PRAGMA journal_mode"), "wal");
    sqlite3_close(db);
}

}  // namespace
}  // namespace kov::test
