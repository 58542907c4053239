// Faults: the n-th file call of a scripted session fails, for every n (a sample of them in a plain
// run). Whatever fails is an exception with a text for the user, and the document opens afterwards
// at the last commit that was reported done, or at the one whose commit reported the error.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "KOVSimTransaction.h"
#include "reliability/Faults.h"
#include "reliability/Process.h"
#include "reliability/Runs.h"
#include "reliability/Session.h"
#include "reliability/Squeeze.h"
#include "support/FastFolder.h"

using namespace reliability;
using kov::test::FastFolder;
namespace fs = std::filesystem;

namespace {

KOVObjDocument OpenAt(std::string const& path, KOVObjDocument::Access access) {
    return KOVObjDocument::Open(path.c_str(), access);
}

/// A user knows from it which document is meant.
void ExpectClear(std::string const& text, std::string const& folder) {
    EXPECT_NE(text, "(an exception without a text)");
    EXPECT_NE(text.find(folder), std::string::npos) << "names no file: " << text;
}

/// What a run of the script came to.
struct Outcome {
    int done = 0;          // last transaction whose commit was reported done
    int reported = -1;     // transaction whose commit reported an error
    bool refused = false;  // the context refused to go on after it
    std::string text;      // what stopped the script; empty if nothing did
};

/// Opens the document, writes `count` transactions, closes, and reads all of it again.
Outcome RunScript(Session& session, std::string const& path, Scale const& scale, int start,
                  int count, FaultyDisk const& disk) {
    Outcome outcome;
    outcome.done = start;
    outcome.text = TextThrown([&] {
        KOVObjDocument const writer = OpenAt(path, KOVObjDocument::ReadWrite);
        Squeeze(writer, scale);
        for (int n = start + 1; n <= start + count; ++n) {
            KOVSimTransaction transaction(writer.ContextID());
            session.WriteOpen(writer, n);
            std::string const text = TextThrown([&] { transaction.Commit(); });
            if (text.empty()) {
                outcome.done = n;
                continue;
            }
            outcome.reported = n;
            outcome.refused =
                !TextThrown([&] { KOVSimTransaction another(writer.ContextID()); }).empty();
            if (disk.HasFailedSync()) {
                EXPECT_TRUE(outcome.refused) << "goes on after a failed sync; " << disk.What();
            }
            writer.Close();
            throw KOVSimException(text.c_str());
        }
        writer.Close();
        KOVObjDocument const reader = OpenAt(path, KOVObjDocument::ReadOnly);
        EXPECT_EQ(session.Check(reader), outcome.done) << disk.What();
        reader.Close();
    });
    return outcome;
}

void CopyDocument(std::string const& from, std::string const& to) {
    fs::remove_all(to);
    fs::copy(from, to, fs::copy_options::recursive);
}

/// Calls places evenly spread over [0, all).
std::vector<std::int64_t> Places(std::int64_t all, int wanted) {
    std::vector<std::int64_t> places;
    std::int64_t const count = std::min<std::int64_t>(all, wanted);
    for (std::int64_t i = 0; i < count; ++i) places.push_back(i * all / count);
    return places;
}

class Faults : public testing::TestWithParam<int> {
  protected:
    /// Opens a document that stands at `start` and writes `more` transactions, once for each of so
    /// many places at which a call fails.
    void RunFaults(Scale const& scale, int start, int more, int places);
    Fault::Kind Kind() const { return static_cast<Fault::Kind>(GetParam()); }
    FastFolder folder;
    std::string path = folder / "model.ksd";
    Session session{Tiny};
};

void Faults::RunFaults(Scale const& scale, int start, int more, int places) {
    Session script(scale);
    std::string const original = folder / "original.ksd";
    {
        KOVObjDocument const document = KOVObjDocument::Create(original.c_str());
        for (int n = 1; n <= start; ++n) script.Write(document, n);
    }
    CopyDocument(original, path);
    FaultyDisk counting({Kind(), INT64_MAX});
    {
        Observing const observing(counting);
        ASSERT_EQ(RunScript(script, path, scale, start, more, counting).text, "");
    }
    ASSERT_GT(counting.Calls(), 0);
    int stopped = 0, reportedThere = 0;
    for (std::int64_t const n : Places(counting.Calls(), places)) {
        SCOPED_TRACE("call " + std::to_string(n) + " of " + std::to_string(counting.Calls()));
        CopyDocument(original, path);
        FaultyDisk disk({Kind(), n});
        Outcome outcome;
        {
            Observing const observing(disk);
            outcome = RunScript(script, path, scale, start, more, disk);
        }
        SCOPED_TRACE(disk.What());
        if (!outcome.text.empty()) {
            ++stopped;
            ExpectClear(outcome.text, "model.ksd");
        }
        int found = -1;
        ASSERT_EQ(TextThrown([&] {
                      KOVObjDocument const after = OpenAt(
                          path, n % 2 ? KOVObjDocument::ReadWrite : KOVObjDocument::ReadOnly);
                      found = script.Check(after);
                      after.Verify([&](char const* finding) {
                          // A commit that has failed may lie in the log as a torso.
                          bool const cut = std::string(finding).find("log") != std::string::npos;
                          if (!cut || outcome.reported < 0)
                              ADD_FAILURE() << "verify says: " << finding;
                      });
                      after.Close();
                  }),
                  "")
            << "the document cannot be read any more; it said: " << outcome.text;
        EXPECT_TRUE(found == outcome.done || found == outcome.reported)
            << outcome.done << " were done, " << outcome.reported << " reported an error, " << found
            << " are there; it said: " << outcome.text;
        reportedThere += found == outcome.reported;
        ASSERT_EQ(TextThrown([&] {
                      KOVObjDocument const again = OpenAt(path, KOVObjDocument::ReadWrite);
                      script.Write(again, found + 1);
                      EXPECT_EQ(script.Check(again), found + 1);
                      again.Close();
                  }),
                  "");
        if (HasFatalFailure()) break;
    }
    std::printf(
        "%s: %d of %lld calls stopped the script, %d commits there that reported an error\n",
        NameOf(Kind()), stopped, static_cast<long long>(counting.Calls()), reportedThere);
    EXPECT_GT(stopped, 0);
}

TEST_P(Faults, LeaveTheLastCommitOrTheOneThatReportedThem) {
    RunFaults(Tiny, 9, 4, Count(80, 30, 100000));
}

TEST_P(Faults, OfALongLogLeaveTheSame) { RunFaults(Crowded, 1, 5, Count(25, 8, 2000)); }

TEST_P(Faults, OfCreateLeaveNothingBehind) {
    FaultyDisk counting({Kind(), INT64_MAX});
    {
        Observing const observing(counting);
        KOVObjDocument::Create(path.c_str()).Close();
    }
    fs::remove_all(path);
    int stopped = 0;
    for (std::int64_t const n : Places(counting.Calls(), Count(40, 20, 100000))) {
        SCOPED_TRACE("call " + std::to_string(n) + " of " + std::to_string(counting.Calls()));
        FaultyDisk disk({Kind(), n});
        std::string text;
        {
            Observing const observing(disk);
            text = TextThrown([&] { KOVObjDocument::Create(path.c_str()).Close(); });
        }
        SCOPED_TRACE(disk.What());
        if (text.empty()) {
            KOVObjDocument const document = OpenAt(path, KOVObjDocument::ReadOnly);
            EXPECT_EQ(session.Check(document), 0);
            document.Close();
            fs::remove_all(path);
            continue;
        }
        ++stopped;
        ExpectClear(text, "model.ksd");
        for (auto const& entry : fs::directory_iterator(folder.Path()))
            ADD_FAILURE() << "left behind: " << entry.path().filename() << "; it said: " << text;
        for (auto const& entry : fs::directory_iterator(folder.Path())) fs::remove_all(entry);
    }
    EXPECT_GT(stopped, 0);
}

TEST_P(Faults, OfACompactionLeaveTheSourceAlone) {
    std::string const copy = folder / "copy.ksd";
    KOVObjDocument const document = KOVObjDocument::Create(path.c_str());
    for (int n = 1; n <= 8; ++n) session.Write(document, n);
    FaultyDisk counting({Kind(), INT64_MAX});
    {
        Observing const observing(counting);
        document.WriteCompacted(copy.c_str());
    }
    fs::remove_all(copy);
    for (std::int64_t const n : Places(counting.Calls(), Count(20, 10, 100000))) {
        SCOPED_TRACE("call " + std::to_string(n) + " of " + std::to_string(counting.Calls()));
        FaultyDisk disk({Kind(), n});
        std::string text;
        {
            Observing const observing(disk);
            text = TextThrown([&] { document.WriteCompacted(copy.c_str()); });
        }
        SCOPED_TRACE(disk.What());
        EXPECT_EQ(session.Check(document), 8);
        EXPECT_EQ(fs::exists(copy), text.empty()) << text;
        if (!text.empty()) {
            ExpectClear(text, ".ksd");
        } else {
            KOVObjDocument const made = OpenAt(copy, KOVObjDocument::ReadOnly);
            EXPECT_EQ(session.Check(made), 8);
            made.Close();
            fs::remove_all(copy);
        }
        for (auto const& entry : fs::directory_iterator(folder.Path())) {
            if (entry.path() == path) continue;
            ADD_FAILURE() << "left behind: " << entry.path().filename();
            fs::remove_all(entry);
        }
    }
    session.Write(document, 9);
    EXPECT_EQ(session.Check(document), 9);
}

std::string KindName(testing::TestParamInfo<int> const& info) {
    static char const* const names[] = {"AnyCall",  "FullOnce", "ShortOnce",
                                        "SyncOnce", "FullFrom", "DeadFrom"};
    return names[info.param];
}
INSTANTIATE_TEST_SUITE_P(Kinds, Faults, testing::Range(0, static_cast<int>(Fault::Kinds)),
                         KindName);

}  // namespace
