#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "document/store/Statistics.h"
#include "store/Script.h"
#include "store/Throws.h"
#include "support/TempFolder.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;
using store::Context;
using testing::HasSubstr;
using Access = Context::Access;

std::size_t EntriesOf(fs::path const& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

TEST(Context, WhatWasCommittedIsThereAfterReopening) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    {
        auto const context = Context::Create(path, Script::Fill);
        for (int i = 1; i <= 5; ++i) Script::Commit(*context, i);
        EXPECT_EQ(Script::Check(*context), 5);
    }
    for (Access const access : {Access::ReadOnly, Access::ReadWrite}) {
        auto const context = Context::Open(path, access);
        EXPECT_EQ(Script::Check(*context), 5);
        EXPECT_EQ(Script::Findings(*context), "");
        EXPECT_EQ(context->Focus(), 1);
    }
}

TEST(Context, InMemoryIsTheSame) {
    auto const context = Context::CreateInMemory(Script::Fill);
    for (int i = 1; i <= 5; ++i) Script::Commit(*context, i);
    context->Begin();
    Script::Write(*context, 6);
    context->Rollback();
    EXPECT_EQ(Script::Check(*context), 5);
    EXPECT_EQ(Script::Findings(*context), "");
    EXPECT_EQ(context->Path(), "");
    EXPECT_FALSE(context->Refresh());
}

TEST(Context, ADroppedTransactionLeavesNothing) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto context = Context::Create(path, Script::Fill);
    Script::Commit(*context, 1);
    auto const size = fs::file_size(path + "/bulk/000001.seg");
    context->Begin();
    Script::Write(*context, 2);
    Script::Write(*context, 3);
    context->Rollback();
    EXPECT_EQ(Script::Check(*context), 1);
    EXPECT_EQ(fs::file_size(path + "/bulk/000001.seg"), size);
    Script::Commit(*context, 2);
    EXPECT_EQ(Script::Check(*context), 2);
    context->Close();
    context = Context::Open(path, Access::ReadOnly);
    EXPECT_EQ(Script::Check(*context), 2);
    EXPECT_EQ(Script::Findings(*context), "");
}

TEST(Context, ATransactionReadsItsOwnWrites) {
    TempFolder folder;
    auto const context = Context::Create(folder / "a.ksd", Script::Fill);
    context->Begin();
    for (int i = 1; i <= 6; ++i) {
        Script::Write(*context, i);
        EXPECT_EQ(Script::Check(*context), i);
    }
    context->Commit();
    EXPECT_EQ(Script::Check(*context), 6);
}

TEST(Context, TheFirstSegmentOfADroppedTransactionGoes) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto const context = Context::Create(path, Script::Fill);
    context->Begin();
    Script::Write(*context, 2);
    context->Rollback();
    EXPECT_EQ(EntriesOf(path + "/bulk"), 0u);
    Script::Commit(*context, 1);
    EXPECT_EQ(Script::Check(*context), 1);
}

TEST(Context, ClosingDropsAnOpenTransaction) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto context = Context::Create(path, Script::Fill);
    context->Begin();
    Script::Write(*context, 1);
    context->Close();
    context = Context::Open(path, Access::ReadOnly);
    EXPECT_EQ(Script::Check(*context), 0);
}

TEST(Context, ACleanCloseLeavesNoLog) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto const context = Context::Create(path, Script::Fill);
    Script::Commit(*context, 1);
    EXPECT_TRUE(fs::exists(path + "/catalog.sqlite-wal"));
    context->Close();
    EXPECT_FALSE(fs::exists(path + "/catalog.sqlite-wal"));
    EXPECT_FALSE(fs::exists(path + "/catalog.sqlite-shm"));
}

TEST(Context, NumbersOfADroppedTransactionThrowAndAreNotGivenAgain) {
    auto const context = Context::CreateInMemory(Script::Fill);
    context->Begin();
    KOVSimIDMinor const dropped = context->NewNumber();
    context->RequireNumber(dropped);
    context->Rollback();
    EXPECT_THAT(Thrown([&] { context->RequireNumber(dropped); }),
                HasSubstr("a transaction that was dropped"));
    context->Begin();
    KOVSimIDMinor const kept = context->NewNumber();
    context->Commit();
    EXPECT_GT(kept, dropped);
    context->RequireNumber(kept);
    context->RequireNumber(1);
    EXPECT_THAT(Thrown([&] { context->RequireNumber(kept + 1); }), HasSubstr("there is no object"));
    EXPECT_THAT(Thrown([&] { context->RequireNumber(0); }), HasSubstr("there is no object"));
    EXPECT_THAT(Thrown([&] { context->RequireNumber(-1); }), HasSubstr("there is no object"));
}

TEST(Context, SeveralDroppedRangesAreTold) {
    auto const context = Context::CreateInMemory(Script::Fill);
    std::vector<KOVSimIDMinor> kept, dropped;
    for (int i = 0; i < 40; ++i) {
        context->Begin();
        auto& numbers = i % 3 ? dropped : kept;
        for (int k = 0; k < 3; ++k) numbers.push_back(context->NewNumber());
        if (i % 3) context->Rollback();
        if (!(i % 3)) context->Commit();
    }
    for (KOVSimIDMinor const number : kept) context->RequireNumber(number);
    for (KOVSimIDMinor const number : dropped)
        EXPECT_NE(Thrown([&] { context->RequireNumber(number); }), "nothing thrown");
}

TEST(Context, NumbersGoOnAfterReopening) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    KOVSimIDMinor last = 0;
    {
        auto const context = Context::Create(path, Script::Fill);
        context->Begin();
        last = context->NewNumber();
        context->Commit();
    }
    auto const context = Context::Open(path, Access::ReadWrite);
    context->RequireNumber(last);
    context->Begin();
    EXPECT_EQ(context->NewNumber(), last + 1);
}

TEST(Context, TemporaryNumbersGoDownwardFromMinusTwo) {
    auto const context = Context::CreateInMemory(Script::Fill);
    EXPECT_EQ(context->NewTemporaryNumber(), -2);
    EXPECT_EQ(context->NewTemporaryNumber(), -3);
    context->RequireNumber(-3);
    EXPECT_NE(Thrown([&] { context->RequireNumber(-4); }), "nothing thrown");
}

TEST(Context, ASecondTransactionIsRefused) {
    auto const context = Context::CreateInMemory(Script::Fill);
    context->Begin();
    EXPECT_THAT(Thrown([&] { context->Begin(); }), HasSubstr("one is open already"));
    EXPECT_THAT(Thrown([&] { context->Refresh(); }), HasSubstr("a transaction is open"));
    context->Rollback();
    EXPECT_THAT(Thrown([&] { context->Commit(); }), HasSubstr("no transaction is open"));
    EXPECT_THAT(
        Thrown([&] { context->RequireTransaction("insert a link"); }),
        HasSubstr("cannot insert a link in the document in memory: no transaction is open"));
}

TEST(Context, AReaderCannotOpenATransaction) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    Context::Create(path, Script::Fill)->Close();
    auto const context = Context::Open(path, Access::ReadOnly);
    EXPECT_THAT(Thrown([&] { context->Begin(); }), HasSubstr("open for reading only"));
    EXPECT_THAT(Thrown([&] { context->NewNumber(); }), HasSubstr("open for reading only"));
}

TEST(Context, HandlesGoStale) {
    auto context = Context::CreateInMemory(Script::Fill);
    KOVSimContextID const id = context->ID();
    EXPECT_EQ(&Context::Of(id), context.get());
    context->Close();
    EXPECT_EQ(Context::Find(id), nullptr);
    EXPECT_THAT(Thrown([&] { Context::Of(id); }), HasSubstr("is closed"));
    EXPECT_THAT(Thrown([&] { context->Begin(); }), HasSubstr("is closed"));
    EXPECT_THAT(Thrown([&] { context->Cat(); }), HasSubstr("is closed"));
    EXPECT_THAT(Thrown([&] { Context::Of({}); }), HasSubstr("no document"));
    EXPECT_THAT(Thrown([&] { Context::Of({~std::uintptr_t{0}}); }),
                HasSubstr("no document of this process"));
    auto const next = Context::CreateInMemory(Script::Fill);
    EXPECT_NE(next->ID(), id);
    EXPECT_EQ(Context::Find(id), nullptr);
}

TEST(Context, ManyDocumentsAtOnce) {
    std::vector<std::shared_ptr<Context>> contexts;
    for (int i = 0; i < 600; ++i) contexts.push_back(Context::CreateInMemory({}));
    for (auto const& context : contexts) EXPECT_EQ(&Context::Of(context->ID()), context.get());
}

TEST(Context, CreateRefusesWhatExists) {
    TempFolder folder;
    std::ofstream(folder / "file") << "x";
    fs::create_directory(folder / "empty");
    fs::create_symlink("nowhere", folder / "link");
    Context::Create(folder / "a.ksd", Script::Fill)->Close();
    for (char const* name : {"file", "empty", "link", "a.ksd"}) {
        EXPECT_THAT(Thrown([&] { Context::Create(folder / name, Script::Fill); }),
                    HasSubstr("it exists already"))
            << name;
    }
    EXPECT_TRUE(fs::is_empty(folder / "empty"));
    EXPECT_EQ(EntriesOf(folder.Path()), 4u);
}

TEST(Context, CreateInAMissingFolderIsRefused) {
    TempFolder folder;
    EXPECT_THAT(Thrown([&] { Context::Create(folder / "no/a.ksd", Script::Fill); }),
                HasSubstr("No such file"));
    EXPECT_THAT(Thrown([&] { Context::Create("", Script::Fill); }), HasSubstr("needs a path"));
}

TEST(Context, AFillThatThrowsLeavesNothing) {
    TempFolder folder;
    auto const fill = [](Context& context) {
        Script::Fill(context);
        throw std::runtime_error("enough");
    };
    EXPECT_THROW(Context::Create(folder / "a.ksd", fill), std::runtime_error);
    EXPECT_EQ(EntriesOf(folder.Path()), 0u);
    EXPECT_THROW(Context::CreateInMemory(fill), std::runtime_error);
}

TEST(Context, WhatAKilledMakerLeftGoesAtTheNextCreate) {
    TempFolder folder;
    // No process has this number.
    std::string const left = folder / ".a.ksd.tmp-99999999-1";
    fs::create_directories(left + "/bulk");
    std::ofstream(left + "/catalog.sqlite") << "half";
    std::string const other = folder / ".b.ksd.tmp-99999999-1";
    fs::create_directories(other);
    std::string const foreign = folder / ".a.ksd.tmp-note";
    std::ofstream(foreign) << "x";
    auto const context = Context::Create(folder / "a.ksd", Script::Fill);
    EXPECT_FALSE(fs::exists(left));
    EXPECT_TRUE(fs::exists(other));
    EXPECT_TRUE(fs::exists(foreign));
}

TEST(Context, TheWorkOfALivingMakerStays) {
    TempFolder folder;
    bool inner = false;
    auto const context = Context::Create(folder / "a.ksd", [&](Context& made) {
        Script::Fill(made);
        // The same name, while the first is at work.
        Context::Create(folder / "a.ksd", Script::Fill)->Close();
        inner = true;
        fs::rename(folder / "a.ksd", folder / "b.ksd");
    });
    EXPECT_TRUE(inner);
    EXPECT_EQ(Script::Check(*context), 0);
}

TEST(Context, TheOneWhoIsLaterWithTheSameNameIsRefused) {
    TempFolder folder;
    auto const create = [&] {
        Context::Create(folder / "a.ksd", [&](Context& made) {
            Script::Fill(made);
            Context::Create(folder / "a.ksd", Script::Fill)->Close();
        });
    };
    EXPECT_THAT(Thrown(create), HasSubstr("it exists already"));
    EXPECT_EQ(EntriesOf(folder.Path()), 1u);
    EXPECT_EQ(Script::Check(*Context::Open(folder / "a.ksd", Access::ReadOnly)), 0);
}

TEST(Context, AnOpenPathSharesItsContext) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto const context = Context::Create(path, Script::Fill);
    fs::create_directory_symlink(path, folder / "link.ksd");
    EXPECT_EQ(Context::Open(path, Access::ReadWrite), context);
    EXPECT_EQ(Context::Open(path + "///", Access::ReadWrite), context);
    EXPECT_EQ(Context::Open(folder / "link.ksd", Access::ReadWrite), context);
    EXPECT_THAT(Thrown([&] { Context::Open(path, Access::ReadOnly); }),
                HasSubstr("this process has it open for writing"));
    context->Close();
    auto const reader = Context::Open(path, Access::ReadOnly);
    EXPECT_NE(reader, context);
    EXPECT_THAT(Thrown([&] { Context::Open(path, Access::ReadWrite); }),
                HasSubstr("this process has it open for reading"));
}

class CountingPart : public store::ContextPart {
  public:
    explicit CountingPart(Context&) {}
    void BeforeCommit() override { ++before; }
    void AfterRollback() override { ++dropped; }
    void Verify(std::function<void(std::string const&)> const& finding) override {
        finding("a part's word");
    }
    int before = 0, dropped = 0;
};

TEST(Context, PartsAreMadeOnceAndCalled) {
    auto const context = Context::CreateInMemory(Script::Fill);
    auto& part = context->Part<CountingPart>();
    EXPECT_EQ(&context->Part<CountingPart>(), &part);
    context->Begin();
    context->Commit();
    EXPECT_GE(part.before, 1);
    context->Begin();
    context->Rollback();
    EXPECT_EQ(part.dropped, 1);
    EXPECT_EQ(Script::Findings(*context), "a part's word\n");
}

class ThrowingPart : public store::ContextPart {
  public:
    explicit ThrowingPart(Context&) {}
    void BeforeCommit() override {
        if (armed) throw std::runtime_error("not now");
    }
    bool armed = false;
};

TEST(Context, APartThatCannotWriteDropsTheTransaction) {
    auto const context = Context::CreateInMemory(Script::Fill);
    auto& part = context->Part<ThrowingPart>();
    part.armed = true;
    context->Begin();
    Script::Write(*context, 1);
    EXPECT_THROW(context->Commit(), std::runtime_error);
    EXPECT_FALSE(context->InTransaction());
    part.armed = false;
    EXPECT_EQ(Script::Check(*context), 0);
    Script::Commit(*context, 1);
    EXPECT_EQ(Script::Check(*context), 1);
}

TEST(Context, ACompactedCopyHoldsTheSame) {
    TempFolder folder;
    auto const context = Context::Create(folder / "a.ksd", Script::Fill);
    for (int i = 1; i <= 7; ++i) Script::Commit(*context, i);
    // Rows that nothing refers to.
    context->Begin();
    std::vector<char> const waste(3000000);
    context->Blocks().Append(waste.data(), waste.size(), 8);
    context->Commit();
    store::Statistics const before = store::GatherStatistics(*context);
    EXPECT_EQ(before.supersededBytes, 3000000);
    context->WriteCompacted(folder / "b.ksd");
    auto const copy = Context::Open(folder / "b.ksd", Access::ReadWrite);
    EXPECT_EQ(Script::Check(*copy), 7);
    EXPECT_EQ(Script::Findings(*copy), "");
    store::Statistics const after = store::GatherStatistics(*copy);
    EXPECT_EQ(after.supersededBytes, 0);
    EXPECT_EQ(after.liveBulkBytes, before.liveBulkBytes);
    EXPECT_LT(after.blocks, before.blocks);
    Script::Commit(*copy, 8);
    EXPECT_EQ(Script::Check(*copy), 8);
    EXPECT_EQ(Script::Check(*context), 7);
    EXPECT_THAT(Thrown([&] { context->WriteCompacted(folder / "b.ksd"); }),
                HasSubstr("it exists already"));
}

TEST(Context, AReaderCopiesTheCommitThatItStandsOn) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    {
        auto const context = Context::Create(path, Script::Fill);
        for (int i = 1; i <= 4; ++i) Script::Commit(*context, i);
    }
    auto const reader = Context::Open(path, Access::ReadOnly);
    reader->WriteCompacted(folder / "b.ksd");
    EXPECT_EQ(Script::Check(*Context::Open(folder / "b.ksd", Access::ReadOnly)), 4);
    EXPECT_EQ(Script::Check(*reader), 4);
    EXPECT_FALSE(reader->Refresh());
    auto const writer = Context::Open(folder / "b.ksd", Access::ReadWrite);
    writer->Begin();
    EXPECT_THAT(Thrown([&] { writer->WriteCompacted(folder / "c.ksd"); }),
                HasSubstr("a transaction is open"));
    EXPECT_THAT(Thrown([&] { reader->WriteCompacted(path); }), HasSubstr("it exists already"));
}

TEST(Context, ACopyOfADamagedBlockIsRefusedAndLeavesNothing) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    {
        auto const context = Context::Create(path, Script::Fill);
        for (int i = 1; i <= 4; ++i) Script::Commit(*context, i);
    }
    {
        std::fstream segment(path + "/bulk/000001.seg",
                             std::ios::in | std::ios::out | std::ios::binary);
        segment.seekp(500000);
        segment.put('!');
    }
    auto const reader = Context::Open(path, Access::ReadOnly);
    EXPECT_THAT(Thrown([&] { reader->WriteCompacted(folder / "b.ksd"); }),
                HasSubstr("000001.seg is damaged"));
    EXPECT_EQ(EntriesOf(folder.Path()), 1u);
}

TEST(Context, ADocumentInMemoryCanBeWrittenToDisk) {
    TempFolder folder;
    auto const context = Context::CreateInMemory(Script::Fill);
    for (int i = 1; i <= 3; ++i) Script::Commit(*context, i);
    context->WriteCompacted(folder / "a.ksd");
    auto const copy = Context::Open(folder / "a.ksd", Access::ReadOnly);
    EXPECT_EQ(Script::Check(*copy), 3);
    EXPECT_EQ(Script::Findings(*copy), "");
}

TEST(Context, ACopyOfADocumentWithManyDroppedPagesIsSmall) {
    TempFolder folder;
    auto const context = Context::Create(folder / "a.ksd", Script::Fill);
    context->Begin();
    store::Statement field(context->Cat(), "INSERT INTO fields VALUES(9, ?, 't', ?)");
    std::string const text(2000, 't');
    for (int i = 0; i < 3000; ++i) field.Bind(i).BindText(text).Run();
    context->Commit();
    context->Begin();
    store::Statement(context->Cat(), "DELETE FROM fields").Run();
    context->Commit();
    context->WriteCompacted(folder / "b.ksd");
    EXPECT_LT(fs::file_size(folder / "b.ksd/catalog.sqlite"), 300000u);
    EXPECT_EQ(Script::Findings(*Context::Open(folder / "b.ksd", Access::ReadOnly)), "");
    EXPECT_EQ(Script::Findings(*context), "");
}

}  // namespace
}  // namespace kov::test
