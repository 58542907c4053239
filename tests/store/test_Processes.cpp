#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "store/Child.h"
#include "store/Script.h"
#include "store/Throws.h"
#include "support/TempFolder.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;
using store::Context;
using testing::HasSubstr;
using Access = Context::Access;

// Opens the document of argument 0 as argument 1 says, and answers one command a line.
KOV_CHILD(Follow) {
    std::string const kind = arguments.size() > 2 ? arguments[2] : "";
    if (kind == "full") {
        // No file may grow, as on a disk without room.
        rlimit const none{0, 0};
        if (::signal(SIGXFSZ, SIG_IGN) == SIG_ERR || ::setrlimit(RLIMIT_FSIZE, &none) != 0)
            return 97;
    } else if (!kind.empty()) {
        // Someone else: no right to write what the parent owns.
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) return 96;
    }
    std::shared_ptr<Context> context;
    Say(Thrown([&] {
        context = Context::Open(arguments[0],
                                arguments[1] == "write" ? Access::ReadWrite : Access::ReadOnly);
    }));
    for (;;) {
        std::string const command = Hear();
        if (command.empty()) return 0;
        if (command == "check") Say(Thrown([&] { Say(std::to_string(Script::Check(*context))); }));
        if (command == "refresh") Say(context->Refresh() ? "changed" : "same");
        if (command == "verify") Say("<" + Script::Findings(*context) + ">");
        if (command == "close") {
            context->Close();
            Say("closed");
        }
    }
}

std::string Ask(Child& child, std::string const& command) {
    child.WriteLine(command);
    std::string const answer = child.ReadLine();
    if (command == "check") child.ReadLine();
    return answer;
}

TEST(Processes, AReaderStandsOnItsCommitUntilItRefreshes) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto const context = Context::Create(path, Script::Fill);
    Script::Commit(*context, 1);
    Child reader("Follow", {path, "read"});
    ASSERT_EQ(reader.ReadLine(), "nothing thrown");
    EXPECT_EQ(Ask(reader, "check"), "1");
    for (int i = 2; i <= 9; ++i) Script::Commit(*context, i);
    EXPECT_EQ(Ask(reader, "check"), "1");
    EXPECT_EQ(Ask(reader, "refresh"), "changed");
    EXPECT_EQ(Ask(reader, "check"), "9");
    EXPECT_EQ(Ask(reader, "refresh"), "same");
    context->Begin();
    Script::Write(*context, 10);
    EXPECT_EQ(Ask(reader, "refresh"), "same");
    EXPECT_EQ(Ask(reader, "check"), "9");
    EXPECT_EQ(Ask(reader, "verify"), "<>");
    context->Commit();
    context->Close();
    EXPECT_EQ(Ask(reader, "check"), "9");
    EXPECT_EQ(Ask(reader, "refresh"), "changed");
    EXPECT_EQ(Ask(reader, "check"), "10");
    EXPECT_EQ(reader.Wait(), 0);
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadWrite)), 10);
    EXPECT_FALSE(fs::exists(path + "/catalog.sqlite-wal"));
}

TEST(Processes, ASecondWriterIsRefusedAtOnce) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto const context = Context::Create(path, Script::Fill);
    EXPECT_THAT(Child("Follow", {path, "write"}).ReadLine(),
                HasSubstr("another writer has it open"));
    context->Close();
    Child writer("Follow", {path, "write"});
    EXPECT_EQ(writer.ReadLine(), "nothing thrown");
    EXPECT_THAT(Thrown([&] { Context::Open(path, Access::ReadWrite); }),
                HasSubstr("another writer has it open"));
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadOnly)), 0);
    writer.Kill();
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadWrite)), 0);
}

KOV_CHILD(DieWhileCreating) {
    Context::Create(arguments[0], [](Context& context) {
        Script::Fill(context);
        Script::Write(context, 4);
        ::kill(::getpid(), SIGKILL);
    });
    return 0;
}

TEST(Processes, WhatAMakerLeftThatWasKilledGoesAtTheNextCreate) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    EXPECT_EQ(Child("DieWhileCreating", {path}).Wait(), -SIGKILL);
    EXPECT_FALSE(fs::exists(path));
    EXPECT_FALSE(fs::is_empty(folder.Path()));
    Context::Create(path, Script::Fill)->Close();
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
}

TEST(Processes, ThreadsWithDocumentsOfTheirOwnDoNotDisturbEachOther) {
    TempFolder folder;
    std::vector<std::thread> threads;
    std::atomic<int> whole{0};
    for (int t = 0; t < 6; ++t) {
        threads.emplace_back([&, t] {
            std::string const path = folder.Path() / (std::to_string(t) + ".ksd");
            auto context =
                t % 2 ? Context::Create(path, Script::Fill) : Context::CreateInMemory(Script::Fill);
            for (int i = 1; i <= 5; ++i) {
                Script::Commit(*context, i);
                if (Script::Check(*context) == i) ++whole;
                if (t % 2 == 0) continue;
                context->Close();
                context = Context::Open(path, Access::ReadWrite);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(whole, 30);
}

class Foreign : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "only root can become someone else";
        base = fs::temp_directory_path() / ("kov-foreign-" + std::to_string(::getpid()));
        fs::remove_all(base);
        fs::create_directory(base);
        fs::permissions(base, fs::perms(0755));
        path = (base / "a.ksd").string();
        context = Context::Create(path, Script::Fill);
        Script::Commit(*context, 1);
    }
    void TearDown() override {
        context.reset();
        fs::remove_all(base);
    }
    fs::path base;
    std::string path;
    std::shared_ptr<Context> context;
};

TEST_F(Foreign, WithoutTheRightToWriteACleanDocumentIsRead) {
    context->Close();
    Child reader("Follow", {path, "read", "foreign"});
    ASSERT_EQ(reader.ReadLine(), "nothing thrown");
    EXPECT_EQ(Ask(reader, "check"), "1");
    EXPECT_EQ(Ask(reader, "verify"), "<>");
    EXPECT_EQ(Ask(reader, "refresh"), "same");
    // Nobody may write under it.
    EXPECT_THAT(Thrown([&] { Context::Open(path, Access::ReadWrite); }),
                HasSubstr("a reader without the right to write has it open"));
    EXPECT_EQ(Ask(reader, "close"), "closed");
    Context::Open(path, Access::ReadWrite)->Close();
}

TEST(Processes, OnADiskWithoutRoomACleanDocumentIsRead) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto const context = Context::Create(path, Script::Fill);
    Script::Commit(*context, 1);
    {
        // Beside a writer, in whose index there is room.
        Child reader("Follow", {path, "read", "full"});
        ASSERT_EQ(reader.ReadLine(), "nothing thrown");
        EXPECT_EQ(Ask(reader, "check"), "1");
    }
    context->Close();
    {
        Child reader("Follow", {path, "read", "full"});
        ASSERT_EQ(reader.ReadLine(), "nothing thrown");
        EXPECT_EQ(Ask(reader, "check"), "1");
        EXPECT_EQ(Ask(reader, "verify"), "<>");
        EXPECT_THAT(Thrown([&] { Context::Open(path, Access::ReadWrite); }),
                    HasSubstr("has it open"));
    }
    Context::Open(path, Access::ReadWrite)->Close();
    EXPECT_FALSE(fs::exists(path + "/catalog.sqlite-wal"));
    std::ofstream(path + "/catalog.sqlite-wal") << "x";
    EXPECT_THAT(Child("Follow", {path, "read", "full"}).ReadLine(),
                HasSubstr("it is on a disk without room, and a log is left"));
}

TEST_F(Foreign, WithoutTheRightToWriteADocumentThatIsWrittenIsRefused) {
    EXPECT_THAT(Child("Follow", {path, "read", "foreign"}).ReadLine(),
                HasSubstr("is being written by another"));
}

TEST_F(Foreign, WithoutTheRightToWriteALeftLogIsRefused) {
    context->Close();
    {
        Child writer("Follow", {path, "write"});
        ASSERT_EQ(writer.ReadLine(), "nothing thrown");
        writer.Kill();
    }
    {
        std::ofstream log(path + "/catalog.sqlite-wal");
        log << "x";
    }
    EXPECT_THAT(Child("Follow", {path, "read", "foreign"}).ReadLine(), HasSubstr("a log is left"));
    Context::Open(path, Access::ReadWrite)->Close();
    EXPECT_EQ(Child("Follow", {path, "read", "foreign"}).ReadLine(), "nothing thrown");
}

TEST_F(Foreign, WithoutTheRightToWriteWritingIsRefused) {
    context->Close();
    EXPECT_THAT(Child("Follow", {path, "write", "foreign"}).ReadLine(),
                HasSubstr("Permission denied"));
}

/// Runs `body` in a forked child and answers its exit status: 0 if it returned true.
template <class F>
int InFork(F const& body) {
    pid_t const child = ::fork();
    if (child == 0) {
        bool right = false;
        try {
            right = body();
        } catch (std::exception const& e) {
            fprintf(stderr, "in the child: %s\n", e.what());
        }
        ::_exit(right ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

TEST(Forks, AChildCannotUseTheParentsContext) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto context = Context::Create(path, Script::Fill);
    Script::Commit(*context, 1);
    context->Begin();
    Script::Write(*context, 2);
    auto const forked = [](auto const& call) {
        return Thrown(call).find("forked") != std::string::npos;
    };
    EXPECT_EQ(0, InFork([&] {
                  bool right = Context::Find(context->ID()) == nullptr;
                  right = right && forked([&] { Context::Of(context->ID()); });
                  right = right && forked([&] { context->Begin(); });
                  right = right && forked([&] { context->Commit(); });
                  right = right && forked([&] { context->Refresh(); });
                  right = right && forked([&] { Context::Open(path, Access::ReadOnly); });
                  right = right && forked([&] { Context::Open(path, Access::ReadWrite); });
                  context->Rollback();
                  context->Close();
                  context.reset();
                  return right;
              }));
    context->Commit();
    EXPECT_EQ(Script::Check(*context), 2);
    // The child has let go of nothing.
    EXPECT_THAT(Child("Follow", {path, "write"}).ReadLine(),
                HasSubstr("another writer has it open"));
    context->Close();
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadWrite)), 2);
}

TEST(Forks, AChildThatLivesOnHoldsNoLock) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    auto context = Context::Create(path, Script::Fill);
    int gate[2];
    ASSERT_EQ(::pipe(gate), 0);
    pid_t const child = ::fork();
    if (child == 0) {
        char c;
        ::close(gate[1]);
        ::_exit(::read(gate[0], &c, 1) == 0 ? 0 : 1);
    }
    ::close(gate[0]);
    context->Close();
    EXPECT_EQ(Child("Follow", {path, "write"}).ReadLine(), "nothing thrown");
    ::close(gate[1]);
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

KOV_CHILD(ForkAndWait) {
    auto const context = Context::Open(arguments[0], Access::ReadWrite);
    pid_t const child = ::fork();
    if (child == 0) {
        Say(std::to_string(::getpid()));
        ::sleep(20);
        ::_exit(0);
    }
    ::sleep(20);
    return 0;
}

TEST(Forks, AKilledWriterLeavesNoLockInItsChildren) {
    TempFolder folder;
    std::string const path = folder / "a.ksd";
    Context::Create(path, Script::Fill)->Close();
    Child writer("ForkAndWait", {path});
    std::string const orphan = writer.ReadLine();
    writer.Kill();
    EXPECT_EQ(Script::Check(*Context::Open(path, Access::ReadWrite)), 0);
    ::kill(static_cast<pid_t>(std::stol(orphan)), SIGKILL);
}

}  // namespace
}  // namespace kov::test
