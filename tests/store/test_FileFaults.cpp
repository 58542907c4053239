#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "KOVSimException.h"
#include "store/FailingCalls.h"
#include "store/Script.h"
#include "store/Throws.h"
#include "support/FastFolder.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;
using store::Context;
using testing::HasSubstr;
using Access = Context::Access;

// How far the scripted session has come: the transactions that are committed, and the one that is
// being committed.
struct Progress {
    bool created = false;
    int committed = 0;
    int committing = 0;
    std::string thrown;
};

void Commit(Context& context, Progress& progress, int i) {
    context.Begin();
    Script::Write(context, i);
    progress.committing = i;
    context.Commit();
    progress.committed = i;
    progress.committing = 0;
}

void Session(std::string const& path, Progress& progress) {
    try {
        auto context = Context::Create(path, Script::Fill);
        progress.created = true;
        context->Blocks().SetSegmentLimit(1000000);
        Commit(*context, progress, 1);
        Commit(*context, progress, 2);
        context->Begin();
        Script::Write(*context, 3);
        Script::Write(*context, 4);
        context->Rollback();
        Commit(*context, progress, 3);
        context->Close();
        context = Context::Open(path, Access::ReadOnly);
        Script::Check(*context);
        context->Close();
        context = Context::Open(path, Access::ReadWrite);
        Commit(*context, progress, 4);
        context->Begin();
        Script::Write(*context, 5);
        context->Rollback();
        Commit(*context, progress, 5);
        context->Close();
    } catch (KOVSimException const& e) {
        progress.thrown = e.what();
    }
}

/// What the session has left: nothing at all, or a document in a state that may be.
void Judge(std::string const& path, Progress const& progress) {
    if (!progress.created) {
        EXPECT_FALSE(fs::exists(path)) << "a document that was not made is there";
        auto const context = Context::Create(path, Script::Fill);
        EXPECT_EQ(Script::Check(*context), 0);
        return;
    }
    int state = -1;
    {
        auto const reader = Context::Open(path, Access::ReadOnly);
        state = Script::Check(*reader);
        EXPECT_TRUE(state == progress.committed || state == progress.committing)
            << "state " << state;
        EXPECT_EQ(Script::Findings(*reader), "");
    }
    auto const writer = Context::Open(path, Access::ReadWrite);
    EXPECT_EQ(Script::Check(*writer), state);
    Script::Commit(*writer, state + 1);
    EXPECT_EQ(Script::Check(*writer), state + 1);
    EXPECT_EQ(Script::Findings(*writer), "");
}

std::size_t CallsOfASession() {
    FastFolder folder;
    FailingCalls counter(0, FailingCalls::Fault::IoError);
    Progress progress;
    Session(folder / "a.ksd", progress);
    EXPECT_EQ(progress.thrown, "");
    EXPECT_EQ(progress.committed, 5);
    return counter.Calls();
}

void Sweep(FailingCalls::Fault fault) {
    std::size_t const calls = CallsOfASession();
    ASSERT_GT(calls, 100u);
    std::size_t failed = 0, silent = 0;
    for (std::size_t n = 1; n <= calls; ++n) {
        FastFolder folder;
        Progress progress;
        std::string what;
        {
            FailingCalls failing(n, fault);
            Session(folder / "a.ksd", progress);
            if (!failing.HasFailed()) continue;
            what = failing.What();
        }
        ++failed;
        SCOPED_TRACE(what + "; thrown: " + progress.thrown);
        if (progress.thrown.empty()) {
            // A call that only tidies up may fail unnoticed, and the session goes on to its end.
            EXPECT_EQ(progress.committed, 5);
            ++silent;
        } else {
            EXPECT_THAT(progress.thrown, HasSubstr("a.ksd"));
        }
        try {
            Judge(folder / "a.ksd", progress);
        } catch (std::exception const& e) {
            ADD_FAILURE() << e.what();
        }
    }
    EXPECT_GT(failed, 20u);
    EXPECT_LT(silent, failed);
}

TEST(FileFaults, AnyCallFailsWithAnIoError) { Sweep(FailingCalls::Fault::IoError); }
TEST(FileFaults, AnyCallFindsTheDiskFull) { Sweep(FailingCalls::Fault::NoSpace); }
TEST(FileFaults, AnyWriteFallsShort) { Sweep(FailingCalls::Fault::ShortWrite); }
TEST(FileFaults, TheDiskStaysFull) { Sweep(FailingCalls::Fault::FullFromHere); }

/// Lets the syncs of one file fail.
class FailingSync : public store::FileObserver {
  public:
    explicit FailingSync(std::string suffix) : m_suffix(std::move(suffix)) {
        store::SetFileObserver(this);
    }
    ~FailingSync() override { store::SetFileObserver(nullptr); }
    int Before(store::FileCall const& call, std::size_t&) override {
        bool const hit =
            call.kind == store::FileCall::Sync && call.path.size() > m_suffix.size() &&
            call.path.compare(call.path.size() - m_suffix.size(), m_suffix.size(), m_suffix) == 0;
        return hit ? EIO : 0;
    }
    void After(store::FileCall const&) override {}

  private:
    std::string m_suffix;
};

TEST(FileFaults, AFailedSyncStopsWritingUntilTheDocumentIsReopened) {
    for (char const* file : {".seg", "-wal"}) {
        SCOPED_TRACE(file);
        FastFolder folder;
        std::string const path = folder / "a.ksd";
        auto context = Context::Create(path, Script::Fill);
        Script::Commit(*context, 1);
        {
            FailingSync failing(file);
            EXPECT_THAT(Thrown([&] { Script::Commit(*context, 2); }),
                        HasSubstr("Input/output error"));
        }
        EXPECT_FALSE(context->InTransaction());
        EXPECT_EQ(Script::Check(*context), 1);
        EXPECT_THAT(Thrown([&] { context->Begin(); }), HasSubstr("an earlier commit has failed"));
        context->Close();
        context = Context::Open(path, Access::ReadWrite);
        int const state = Script::Check(*context);
        EXPECT_TRUE(state == 1 || (state == 2 && std::string(file) == "-wal")) << state;
        Script::Commit(*context, state + 1);
        EXPECT_EQ(Script::Findings(*context), "");
    }
}

TEST(FileFaults, AFullDiskDuringAnAppendCostsTheTransactionOnly) {
    FastFolder folder;
    auto const context = Context::Create(folder / "a.ksd", Script::Fill);
    Script::Commit(*context, 1);
    context->Begin();
    std::vector<char> const data(1000000);
    {
        FailingCalls failing(1, FailingCalls::Fault::ShortWrite);
        EXPECT_THAT(Thrown([&] { context->Blocks().Append(data.data(), data.size(), 8); }),
                    HasSubstr("No space left"));
    }
    EXPECT_THAT(Thrown([&] { context->Blocks().Append(data.data(), data.size(), 8); }),
                HasSubstr("failed before"));
    EXPECT_THAT(Thrown([&] { context->Commit(); }), HasSubstr("bulk numbers could not be written"));
    EXPECT_FALSE(context->InTransaction());
    Script::Commit(*context, 2);
    EXPECT_EQ(Script::Check(*context), 2);
    EXPECT_EQ(Script::Findings(*context), "");
}

TEST(FileFaults, AReadErrorIsAnExceptionAndPasses) {
    FastFolder folder;
    std::string const path = folder / "a.ksd";
    {
        auto const context = Context::Create(path, Script::Fill);
        for (int i = 1; i <= 4; ++i) Script::Commit(*context, i);
    }
    auto const context = Context::Open(path, Access::ReadOnly);
    for (std::size_t n = 1; n < 12; ++n) {
        SCOPED_TRACE(n);
        FailingCalls failing(n, FailingCalls::Fault::IoError);
        std::string const thrown = Thrown([&] { EXPECT_EQ(Script::Check(*context), 4); });
        if (failing.HasFailed()) {
            EXPECT_THAT(thrown, HasSubstr("Input/output error"));
        }
    }
    EXPECT_EQ(Script::Check(*context), 4);
}

}  // namespace
}  // namespace kov::test
