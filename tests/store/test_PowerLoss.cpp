#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <random>
#include <set>

#include "store/PowerLoss.h"
#include "store/Script.h"
#include "store/Throws.h"
#include "support/FastFolder.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;
using store::Context;
using Access = Context::Access;

TEST(PowerLoss, WhatWasSyncedIsAlwaysThere) {
    FastFolder folder, target;
    std::string const root = folder.Path().string();
    PowerLoss recorder(root);
    std::string const path = root + "/f";
    store::FileObserver& seam = recorder;
    std::string const sure(3000, 's'), unsure(3000, 'u');
    seam.After({store::FileCall::Create, path});
    seam.After({store::FileCall::Write, path, nullptr, 0, sure.data(), sure.size()});
    seam.After({store::FileCall::Sync, path});
    seam.After({store::FileCall::SyncFolder, root});
    seam.After({store::FileCall::Write, path, nullptr, 3000, unsure.data(), unsure.size()});
    std::set<std::uintmax_t> sizes;
    for (std::uint64_t seed = 0; seed < 100; ++seed) {
        recorder.Rebuild(5, seed, target / "r");
        ASSERT_GE(fs::file_size(target / "r/f"), 3000u);
        sizes.insert(fs::file_size(target / "r/f"));
        recorder.Rebuild(3, seed, target / "r");
        sizes.insert(fs::exists(target / "r/f"));
    }
    EXPECT_TRUE(sizes.count(3000) && sizes.count(6000) && sizes.count(0) && sizes.count(1));
    EXPECT_GT(sizes.size(), 4u);
}

// A session, recorded; marks are transactions whose commit has returned.
void Record(PowerLoss& recorder, std::string const& path) {
    recorder.Start();
    auto context = Context::Create(path, Script::Fill);
    recorder.Mark(0);
    context->Blocks().SetSegmentLimit(1000000);
    int done = 0;
    auto const commit = [&] {
        Script::Commit(*context, ++done);
        recorder.Mark(done);
    };
    commit();
    commit();
    context->Begin();
    Script::Write(*context, 9);
    context->Rollback();
    commit();
    context->Close();
    context = Context::Open(path, Access::ReadWrite);
    context->Blocks().SetSegmentLimit(1000000);
    context->Cat().SetLongLog(400);
    commit();
    context->Begin();
    // Enough for the log to be written before the commit, and to be moved into the catalogue behind
    // it.
    store::Statement field(context->Cat(), "INSERT INTO fields VALUES(9, ?, 't', ?)");
    std::string const text(3900, 't');
    for (int i = 0; i < 1200; ++i) field.Bind(i).BindText(text).Run();
    context->Commit();
    commit();
    commit();
    context->Close();
    recorder.Stop();
}

void CheckRebuilt(PowerLoss const& recorder, std::size_t n, std::uint64_t seed,
                  std::string const& target) {
    recorder.Rebuild(n, seed, target);
    std::string const path = target + "/a.ksd";
    int const promised = recorder.LastMark(n, -1);
    if (!fs::exists(path)) {
        EXPECT_EQ(promised, -1) << "the document has gone";
        return;
    }
    try {
        int state = -1;
        {
            auto const context = Context::Open(path, n % 2 ? Access::ReadOnly : Access::ReadWrite);
            state = Script::Check(*context);
            EXPECT_GE(state, promised);
            EXPECT_LE(state, std::max(promised, 0) + 1);
        }
        auto const context = Context::Open(path, Access::ReadWrite);
        EXPECT_EQ(Script::Check(*context), state);
        Script::Commit(*context, state + 1);
        // A commit that was under way may be told as a log that was cut.
        EXPECT_THAT(
            Script::Findings(*context),
            testing::AnyOf("", testing::MatchesRegex("the log of an earlier session[^\n]*\n")));
    } catch (std::exception const& e) {
        ADD_FAILURE() << e.what();
    }
}

TEST(PowerLoss, ACutAtAnyPointLeavesTheLastPromisedCommitOrALaterOne) {
    FastFolder folder, target;
    PowerLoss recorder(folder.Path().string());
    Record(recorder, folder / "a.ksd");
    ASSERT_GT(recorder.Operations(), 500u);
    char const* const wish = std::getenv("KOV_POWER_SEED");
    std::uint64_t const base = wish ? std::strtoull(wish, nullptr, 10) : std::random_device{}();
    // Sampled, long runs of writes more thinly than the rest; a soak cuts at each operation.
    std::size_t rebuilt = 0;
    for (std::size_t n = 0; n <= recorder.Operations(); ++n) {
        bool const between = n > 1 && n + 1 < recorder.Operations() &&
                             recorder.Describe(n - 1).compare(0, 5, "write") == 0 &&
                             recorder.Describe(n).compare(0, 5, "write") == 0;
        std::size_t const every = std::getenv("KOV_SOAK") ? (between ? 4 : 1) : between ? 30 : 3;
        if ((n * 2654435761u + base) % every != 0) continue;
        std::uint64_t const seed = base + n;
        SCOPED_TRACE("operation " + std::to_string(n) + " of " +
                     std::to_string(recorder.Operations()) + " (" +
                     (n ? recorder.Describe(n - 1) : "none") + "), seed " + std::to_string(base));
        CheckRebuilt(recorder, n, seed, target / "r");
        ++rebuilt;
        if (testing::Test::HasFailure()) break;
    }
    EXPECT_GT(rebuilt, 100u);
}

}  // namespace
}  // namespace kov::test
