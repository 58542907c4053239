#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "store/Script.h"
#include "store/Throws.h"
#include "support/TempFolder.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;
using store::Context;
using testing::AllOf;
using testing::AnyOf;
using testing::HasSubstr;
using Access = Context::Access;

class Opening : public testing::Test {
  protected:
    void Make() {
        auto const context = Context::Create(path, Script::Fill);
        for (int i = 1; i <= 4; ++i) Script::Commit(*context, i);
    }
    std::string Refusal(Access access = Access::ReadOnly) {
        return Thrown([&] { Script::Check(*Context::Open(path, access)); });
    }
    void Run(char const* sql) {
        sqlite3* db = nullptr;
        ASSERT_EQ(
            sqlite3_open_v2((path + "/catalog.sqlite").c_str(), &db, SQLITE_OPEN_READWRITE, "kov"),
            SQLITE_OK);
        char* error = nullptr;
        EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, &error), SQLITE_OK)
            << (error ? error : "");
        sqlite3_close(db);
    }
    TempFolder folder;
    std::string const path = folder / "a.ksd";
};

TEST_F(Opening, AMissingPathIsRefused) {
    EXPECT_THAT(Refusal(), AllOf(HasSubstr("a.ksd"), HasSubstr("No such file")));
}

TEST_F(Opening, AFileIsNoDocument) {
    std::ofstream(path) << "text";
    EXPECT_THAT(Refusal(), HasSubstr("it is not a document, which is a folder"));
}

TEST_F(Opening, AFolderWithoutCatalogueIsNoDocument) {
    fs::create_directory(path);
    EXPECT_THAT(Refusal(), HasSubstr("it is not a document: it has no catalog.sqlite"));
    EXPECT_THAT(Refusal(Access::ReadWrite),
                HasSubstr("it is not a document: it has no catalog.sqlite"));
    EXPECT_TRUE(fs::is_empty(path));
}

TEST_F(Opening, ATextFileIsNoCatalogue) {
    fs::create_directory(path);
    std::ofstream(path + "/catalog.sqlite") << std::string(10000, 'x');
    EXPECT_THAT(Refusal(), HasSubstr("it is not a document: catalog.sqlite is no catalogue"));
}

TEST_F(Opening, ADatabaseOfAnotherProgramIsNoCatalogue) {
    fs::create_directory(path);
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open((path + "/catalog.sqlite").c_str(), &db), SQLITE_OK);
    sqlite3_exec(db, "CREATE TABLE t(x)", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    EXPECT_THAT(Refusal(), AnyOf(HasSubstr("not a document"),
                                 HasSubstr("page 1 of catalog.sqlite is damaged")));
}

TEST_F(Opening, ANewerVersionIsRefusedWithItsNumber) {
    Make();
    Run("PRAGMA user_version=7");
    EXPECT_THAT(Refusal(), AllOf(HasSubstr("format version 7"), HasSubstr("newer program")));
    EXPECT_THAT(Refusal(Access::ReadWrite), HasSubstr("newer program"));
}

TEST_F(Opening, AForeignApplicationIsRefused) {
    Make();
    Run("PRAGMA application_id=5");
    EXPECT_THAT(Refusal(), HasSubstr("belongs to another program"));
}

TEST_F(Opening, ACatalogueCutShortIsRefusedAtEveryLength) {
    Make();
    std::string const file = path + "/catalog.sqlite";
    auto const size = fs::file_size(file);
    fs::copy_file(file, folder / "whole");
    for (std::uintmax_t length = 0; length < size; length += length < 9000 ? 97 : 1511) {
        fs::copy_file(folder / "whole", file, fs::copy_options::overwrite_existing);
        fs::resize_file(file, length);
        for (Access const access : {Access::ReadOnly, Access::ReadWrite}) {
            EXPECT_THAT(Refusal(access), AnyOf(HasSubstr("cut short"), HasSubstr("no catalogue")))
                << length;
        }
    }
    fs::copy_file(folder / "whole", file, fs::copy_options::overwrite_existing);
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadOnly)), 4);
}

TEST_F(Opening, ASegmentCutShortIsRefusedAtEveryLength) {
    Make();
    std::string const file = path + "/bulk/000001.seg";
    auto const size = fs::file_size(file);
    for (std::uintmax_t const length :
         {size - 1, size / 2, std::uintmax_t{64}, std::uintmax_t{63}, std::uintmax_t{0}}) {
        fs::resize_file(file, length);
        for (Access const access : {Access::ReadOnly, Access::ReadWrite}) {
            EXPECT_THAT(Refusal(access), AllOf(HasSubstr("000001.seg"), HasSubstr("cut short")))
                << length;
        }
    }
    fs::remove(file);
    EXPECT_THAT(Refusal(), AllOf(HasSubstr("000001.seg"), HasSubstr("No such file")));
}

TEST_F(Opening, AWriterCutsWhatNoCommitKnows) {
    Make();
    std::string const file = path + "/bulk/000001.seg";
    auto const size = fs::file_size(file);
    std::ofstream(file, std::ios::app) << "of a killed writer";
    std::ofstream(path + "/bulk/000002.seg") << "of a killed writer";
    std::ofstream(path + "/bulk/readme") << "of the user";
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadOnly)), 4);
    EXPECT_EQ(fs::file_size(file), size + 18);
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadWrite)), 4);
    EXPECT_EQ(fs::file_size(file), size);
    EXPECT_FALSE(fs::exists(path + "/bulk/000002.seg"));
    EXPECT_TRUE(fs::exists(path + "/bulk/readme"));
}

TEST_F(Opening, ASegmentOfAnotherDocumentIsRefused) {
    Make();
    std::string const other = folder / "b.ksd";
    {
        auto const context = Context::Create(other, Script::Fill);
        for (int i = 1; i <= 4; ++i) Script::Commit(*context, i);
    }
    fs::copy_file(other + "/bulk/000001.seg", path + "/bulk/000001.seg",
                  fs::copy_options::overwrite_existing);
    EXPECT_THAT(Refusal(), HasSubstr("belongs to another document"));
}

TEST_F(Opening, ASegmentCutWhileItIsOpenIsAnException) {
    Make();
    auto const context = Context::Open(path, Access::ReadOnly);
    EXPECT_EQ(Script::Check(*context), 4);
    fs::resize_file(path + "/bulk/000001.seg", 100000);
    EXPECT_THAT(Thrown([&] { Script::Check(*context); }),
                AllOf(HasSubstr("cut short"), HasSubstr("000001.seg")));
}

TEST_F(Opening, NamesWithStrangeLettersAreNames) {
    for (char const* name : {"a?b=c#d%20.ksd", "with space.ksd", "\xc3\xa4\xe6\xbc\xa2.ksd",
                             "file:x.ksd", ":memory:", "-x"}) {
        std::string const strange = folder / name;
        {
            auto const context = Context::Create(strange, Script::Fill);
            Script::Commit(*context, 1);
        }
        EXPECT_TRUE(fs::exists(strange + "/catalog.sqlite"));
        EXPECT_EQ(Script::Check(*Context::Open(strange, Access::ReadOnly)), 1) << name;
    }
}

TEST_F(Opening, AReaderLeavesTheFolderAsItWas) {
    Make();
    auto const names = [&] {
        std::set<std::string> found;
        for (auto const& entry : fs::recursive_directory_iterator(path))
            found.insert(entry.path().string());
        return found;
    };
    auto const before = names();
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadOnly)), 4);
    EXPECT_EQ(names(), before);
}

TEST_F(Opening, AnOpenDocumentStaysWhereItIsWhenTheProcessMoves) {
    fs::path const before = fs::current_path();
    fs::current_path(folder.Path());
    auto context = Context::Create("a.ksd", Script::Fill);
    fs::current_path("/");
    Script::Commit(*context, 1);
    EXPECT_EQ(Script::Findings(*context), "");
    context->Close();
    fs::current_path(folder.Path());
    context = Context::Open("a.ksd", Access::ReadWrite);
    fs::current_path("/");
    Script::Commit(*context, 2);
    EXPECT_EQ(Script::Check(*context), 2);
    EXPECT_EQ(Script::Findings(*context), "");
    fs::current_path(before);
}

TEST_F(Opening, AMissingLockIsMadeByAWriter) {
    Make();
    fs::remove(path + "/lock");
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadOnly)), 4);
    EXPECT_FALSE(fs::exists(path + "/lock"));
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadWrite)), 4);
    EXPECT_TRUE(fs::exists(path + "/lock"));
}

TEST_F(Opening, RelativePathsWork) {
    fs::path const before = fs::current_path();
    fs::current_path(folder.Path());
    for (char const* name : {"a.ksd", "file:a", ":memory:"}) {
        Context::Create(name, Script::Fill)->Close();
        EXPECT_EQ(Script::Check(*Context::Open(name, Access::ReadWrite)), 0);
        EXPECT_TRUE(fs::exists(folder / name));
    }
    fs::current_path(before);
}

}  // namespace
}  // namespace kov::test
