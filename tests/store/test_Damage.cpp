#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "document/store/CatalogueVfs.h"
#include "store/Child.h"
#include "store/Script.h"
#include "store/Throws.h"
#include "support/TempFolder.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;
using store::Context;
using testing::AllOf;
using testing::HasSubstr;
using Access = Context::Access;

void Flip(std::string const& file, std::int64_t offset, int bit = 0) {
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    stream.seekg(offset);
    char c;
    stream.get(c);
    stream.seekp(offset);
    stream.put(static_cast<char>(c ^ (1 << bit)));
}

class Damage : public testing::Test {
  protected:
    void SetUp() override {
        auto const context = Context::Create(path, Script::Fill);
        for (int i = 1; i <= 4; ++i) Script::Commit(*context, i);
    }
    std::string Outcome() {
        return Thrown([&] {
            auto const context = Context::Open(path, Access::ReadOnly);
            int const count = Script::Check(*context);
            if (count != 4) throw std::runtime_error("wrong state " + std::to_string(count));
        });
    }
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    std::string const catalogue = path + "/catalog.sqlite";
    std::string const segment = path + "/bulk/000001.seg";
};

TEST_F(Damage, ADamagedPageOfASegmentNamesItsPlace) {
    Flip(segment, 64 + 100 * 8 + 70000);
    EXPECT_THAT(Outcome(), AllOf(HasSubstr("000001.seg"), HasSubstr("page 1 of the block at byte"),
                                 HasSubstr("distribution 3"), HasSubstr("drawer 5")));
    auto const context = Context::Open(path, Access::ReadOnly);
    EXPECT_THAT(Script::Findings(*context),
                AllOf(HasSubstr("drawer 5, block of row"), HasSubstr("page 1")));
}

TEST_F(Damage, ADamagedSegmentHeaderIsRefused) {
    for (int offset = 0; offset < 64; offset += 3) {
        Flip(segment, offset, offset % 8);
        EXPECT_THAT(Outcome(), HasSubstr("000001.seg")) << offset;
        EXPECT_THAT(Script::Findings(*Context::Open(path, Access::ReadOnly)),
                    HasSubstr("000001.seg"))
            << offset;
        Flip(segment, offset, offset % 8);
    }
    EXPECT_EQ(Outcome(), "nothing thrown");
}

TEST_F(Damage, ADamagedPageOfTheCatalogueIsNamed) {
    auto const pages =
        static_cast<std::int64_t>(fs::file_size(catalogue)) / store::CataloguePageBytes;
    ASSERT_GT(pages, 5);
    for (std::int64_t page = 1; page <= pages; ++page) {
        std::int64_t const at = (page - 1) * store::CataloguePageBytes + 1000;
        Flip(catalogue, at);
        std::string const named = "page " + std::to_string(page) + " of catalog.sqlite is damaged";
        std::string findings;
        std::string const thrown = Thrown([&] {
            auto const context = Context::Open(path, Access::ReadOnly);
            findings = Script::Findings(*context);
        });
        EXPECT_TRUE(findings.find(named) != std::string::npos ||
                    thrown.find(named) != std::string::npos)
            << page << ": " << thrown << findings;
        Flip(catalogue, at);
    }
    EXPECT_EQ(Outcome(), "nothing thrown");
}

TEST_F(Damage, APageInAWrongPlaceIsFound) {
    std::string content;
    {
        std::ifstream in(catalogue, std::ios::binary);
        content.assign(std::istreambuf_iterator<char>(in), {});
    }
    std::swap_ranges(content.begin() + store::CataloguePageBytes * 2,
                     content.begin() + store::CataloguePageBytes * 3,
                     content.begin() + store::CataloguePageBytes * 5);
    std::ofstream(catalogue, std::ios::binary) << content;
    EXPECT_THAT(Script::Findings(*Context::Open(path, Access::ReadOnly)),
                AllOf(HasSubstr("page 3 of catalog.sqlite is damaged"),
                      HasSubstr("page 6 of catalog.sqlite is damaged")));
}

TEST_F(Damage, FlippedBitsAreRefusedOrHarmless) {
    std::uint64_t const seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    for (std::string const& file : {catalogue, segment}) {
        auto const size = fs::file_size(file);
        for (int i = 0; i < 400; ++i) {
            // Headers and the first page as often as the rest.
            auto const offset = static_cast<std::int64_t>(random() % (i % 2 ? size : 8192));
            int const bit = static_cast<int>(random() % 8);
            Flip(file, offset, bit);
            try {
                Outcome();
            } catch (std::exception const& e) {
                ADD_FAILURE() << file << " byte " << offset << " bit " << bit << ": " << e.what();
            }
            Flip(file, offset, bit);
        }
    }
    EXPECT_EQ(Outcome(), "nothing thrown");
}

TEST_F(Damage, FlippedBitsUnderAWriterAreRefusedOrHarmless) {
    std::uint64_t const seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    fs::copy(path, folder / "whole.ksd", fs::copy_options::recursive);
    for (int i = 0; i < 60; ++i) {
        fs::remove_all(path);
        fs::copy(folder / "whole.ksd", path, fs::copy_options::recursive);
        auto const offset = static_cast<std::int64_t>(random() % fs::file_size(catalogue));
        Flip(catalogue, offset, static_cast<int>(random() % 8));
        bool written = false;
        Thrown([&] {
            auto const context = Context::Open(path, Access::ReadWrite);
            Script::Commit(*context, 5);
            written = true;
        });
        if (!written) continue;
        try {
            Thrown([&] { EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadOnly)), 5); });
        } catch (std::exception const& e) {
            ADD_FAILURE() << "byte " << offset << ": " << e.what();
        }
    }
}

KOV_CHILD(DieWithALog) {
    auto const context = Context::Open(arguments[0], Access::ReadWrite);
    for (int i = 5; i <= 8; ++i) Script::Commit(*context, i);
    _exit(0);
}

class LogDamage : public Damage {
  protected:
    void SetUp() override {
        Damage::SetUp();
        ASSERT_EQ(Child("DieWithALog", {path}).Wait(), 0);
        ASSERT_GT(fs::file_size(log), 10000u);
    }
    int State(Access access, std::string& findings) {
        auto const context = Context::Open(path, access);
        int const count = Script::Check(*context);
        findings = Script::Findings(*context);
        return count;
    }
    std::string const log = catalogue + "-wal";
};

TEST_F(LogDamage, ALogThatIsWholeIsRecovered) {
    std::string findings;
    EXPECT_EQ(State(Access::ReadOnly, findings), 8);
    EXPECT_EQ(findings, "");
    EXPECT_EQ(State(Access::ReadWrite, findings), 8);
    EXPECT_EQ(findings, "");
    EXPECT_FALSE(fs::exists(log));
}

TEST_F(LogDamage, ADamagedLogOpensAtTheLastWholeCommitAndSaysSo) {
    auto const size = static_cast<std::int64_t>(fs::file_size(log));
    std::set<int> states;
    fs::copy(path, folder / "whole.ksd", fs::copy_options::recursive);
    for (std::int64_t offset = 5; offset < size; offset += 3001) {
        fs::remove_all(path);
        fs::copy(folder / "whole.ksd", path, fs::copy_options::recursive);
        Flip(log, offset);
        std::string findings;
        int const state = State(offset % 2 ? Access::ReadOnly : Access::ReadWrite, findings);
        EXPECT_GE(state, 4);
        EXPECT_LT(state, 8);
        EXPECT_THAT(findings, HasSubstr("log of an earlier session is damaged and was cut"))
            << offset;
        states.insert(state);
    }
    EXPECT_GE(states.size(), 3u);
}

TEST_F(LogDamage, ALogCutShortOpensAtTheLastWholeCommit) {
    auto const size = fs::file_size(log);
    fs::copy(path, folder / "whole.ksd", fs::copy_options::recursive);
    for (std::uintmax_t length = 0; length < size; length += 2503) {
        fs::remove_all(path);
        fs::copy(folder / "whole.ksd", path, fs::copy_options::recursive);
        fs::resize_file(log, length);
        std::string findings;
        int const state = State(Access::ReadWrite, findings);
        EXPECT_GE(state, 4);
        EXPECT_LT(state, 8);
    }
}

TEST_F(LogDamage, AGarbledIndexOfTheLogIsMadeAnew) {
    std::uint64_t const seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    for (std::size_t const bytes : {1u, 100u, 32768u, 100000u}) {
        std::string noise(bytes, '\0');
        for (char& c : noise) c = static_cast<char>(random());
        std::ofstream(catalogue + "-shm", std::ios::binary) << noise;
        std::string findings;
        EXPECT_EQ(State(Access::ReadOnly, findings), 8) << bytes;
        EXPECT_EQ(findings, "");
    }
}

TEST_F(LogDamage, ACatalogueCutShortUnderALogIsRefusedOrRight) {
    auto const size = fs::file_size(catalogue);
    fs::copy(path, folder / "whole.ksd", fs::copy_options::recursive);
    std::set<std::string> texts;
    for (std::uintmax_t length = 0; length <= size; length += 1024) {
        fs::remove_all(path);
        fs::copy(folder / "whole.ksd", path, fs::copy_options::recursive);
        fs::resize_file(catalogue, length);
        try {
            std::string const thrown = Thrown([&] {
                auto const context =
                    Context::Open(path, length % 2048 ? Access::ReadOnly : Access::ReadWrite);
                EXPECT_EQ(Script::Check(*context), 8) << length;
            });
            if (thrown != "nothing thrown") {
                EXPECT_THAT(thrown, testing::AnyOf(HasSubstr("cut short"), HasSubstr("damaged")))
                    << length;
            }
        } catch (std::exception const& e) {
            ADD_FAILURE() << length << ": " << e.what();
        }
    }
}

KOV_CHILD(DieInATransaction) {
    auto const context = Context::Open(arguments[0], Access::ReadWrite);
    Script::Commit(*context, 5);
    context->Begin();
    store::Statement field(context->Cat(), "INSERT INTO fields VALUES(9, ?, 't', ?)");
    std::string const text(3000, 't');
    for (int i = 0; i < 20000; ++i)
        field.Bind(i).BindText(text).Run();  // more than the cache holds
    if (arguments[1] == "drop") {
        context->Rollback();
        Script::Commit(*context, 6);
    }
    _exit(0);
}

TEST_F(Damage, TheLogOfAKilledTransactionIsNotCalledDamaged) {
    for (char const* how : {"die", "drop"}) {
        SCOPED_TRACE(how);
        fs::copy(path, folder / "whole.ksd", fs::copy_options::recursive);
        ASSERT_EQ(Child("DieInATransaction", {folder / "whole.ksd", how}).Wait(), 0);
        ASSERT_GT(fs::file_size(folder / "whole.ksd/catalog.sqlite-wal"), 20000000u);
        auto const context = Context::Open(folder / "whole.ksd", Access::ReadOnly);
        EXPECT_EQ(Script::Check(*context), how[1] == 'i' ? 5 : 6);
        EXPECT_EQ(Script::Findings(*context), "");
        context->Close();
        fs::remove_all(folder / "whole.ksd");
    }
}

}  // namespace
}  // namespace kov::test
