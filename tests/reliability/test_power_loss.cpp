// Power cuts: what a recorded session did to its files is taken back to any point, together with a
// random part of what was not synced then. Each such folder opens at the last commit that had been
// acknowledged, or at the one that was under way, whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "KOVSimTransaction.h"
#include "reliability/Runs.h"
#include "reliability/Session.h"
#include "reliability/Squeeze.h"
#include "store/PowerLoss.h"
#include "support/FastFolder.h"

using namespace reliability;
using kov::test::FastFolder;
using kov::test::PowerLoss;
namespace fs = std::filesystem;

namespace {

KOVObjDocument OpenAt(std::string const& path, KOVObjDocument::Access access) {
    return KOVObjDocument::Open(path.c_str(), access);
}

/// Writes transactions up to `last`, one dropped among them, and marks each that is acknowledged.
void WriteOn(Session& session, KOVObjDocument const& document, int last, PowerLoss& recorder) {
    for (int n = Session::Stand(document) + 1; n <= last; ++n) {
        if (n % 4 == 2) {
            KOVSimTransaction dropped(document.ContextID());
            session.WriteOpen(document, n);
        }
        session.Write(document, n);
        recorder.Mark(n);
    }
}

struct Left {
    int stand = -1;     // -1: there is no document
    std::string wrong;  // empty if it is as it has to be
};

/// Opens what a cut has left. `promised`: where it has to stand, or one further; -1 if not even the
/// making of the document was acknowledged.
Left Recover(Session& session, std::string const& path, int promised, Random& random) {
    Left left;
    if (promised < 0 && !fs::exists(path)) return left;
    try {
        KOVObjDocument const document =
            OpenAt(path, random.OneIn(2) ? KOVObjDocument::ReadOnly : KOVObjDocument::ReadWrite);
        left.stand = session.Check(document);
        document.Verify([&](char const* finding) {
            // What was under way may lie in the log as a torso, and is told.
            if (std::string(finding).find("log") == std::string::npos)
                left.wrong += std::string("verify says: ") + finding + "\n";
        });
        document.Close();
    } catch (std::exception const& e) {
        left.wrong = e.what();
        return left;
    }
    if (left.stand < promised || left.stand > promised + 1) {
        left.wrong += "it stands at " + std::to_string(left.stand) + ", promised were " +
                      std::to_string(promised);
    }
    return left;
}

int Recovered(Session& session, std::string const& path, int promised, Random& random) {
    Left const left = Recover(session, path, promised, random);
    EXPECT_EQ(left.wrong, "");
    return left.stand;
}

class PowerCut : public testing::Test {
  protected:
    /// Takes `cuts` cuts through the recording.
    void Cut(PowerLoss const& recorder, Scale const& scale, int cuts, std::uint64_t salt) {
        Session session(scale);
        Random random(salt);
        FastFolder target;
        std::string const left = target / "left";
        int further = 0;
        for (int i = 0; i < cuts; ++i) {
            std::size_t const n = random.Below(recorder.Operations() + 1);
            std::uint64_t const seed = random.Below(UINT64_MAX);
            SCOPED_TRACE("cut " + std::to_string(i) + " behind " +
                         (n ? recorder.Describe(n - 1) : "nothing") + ", part " +
                         std::to_string(seed) + "; " + SeedText());
            recorder.Rebuild(n, seed, left);
            int const promised = recorder.LastMark(n, -1);
            int const found = Recovered(session, left + "/model.ksd", promised, random);
            further += found > promised;
            if (found >= 0 && i % 5 == 0) CutAgain(session, left, found, random);
            if (HasFailure()) return;
        }
        std::printf("%d cuts through %zu operations, %d found one commit more than was promised\n",
                    cuts, recorder.Operations(), further);
    }

    /// Goes on with what a cut has left, and cuts that: recovery itself, and what follows it.
    void CutAgain(Session& session, std::string const& left, int stand, Random& random) {
        PowerLoss recorder(left);
        recorder.Mark(stand);
        recorder.Start();
        {
            KOVObjDocument const document = OpenAt(left + "/model.ksd", KOVObjDocument::ReadWrite);
            WriteOn(session, document, stand + 2, recorder);
            document.Close();
        }
        recorder.Stop();
        FastFolder target;
        for (int i = 0; i < 3; ++i) {
            std::size_t const n = random.Below(recorder.Operations() + 1);
            std::uint64_t const seed = random.Below(UINT64_MAX);
            SCOPED_TRACE("then behind " + (n ? recorder.Describe(n - 1) : "nothing") + ", part " +
                         std::to_string(seed));
            recorder.Rebuild(n, seed, target / "left");
            Recovered(session, target / "left/model.ksd", recorder.LastMark(n, stand), random);
        }
    }
};

TEST_F(PowerCut, LeavesWhatWasAcknowledged) {
    FastFolder folder;
    std::string const path = folder / "model.ksd";
    PowerLoss recorder(folder.Path().string());
    Session session(Tiny);
    recorder.Start();
    KOVObjDocument document = KOVObjDocument::Create(path.c_str());
    recorder.Mark(0);
    WriteOn(session, document, 9, recorder);
    document.Close();
    document = OpenAt(path, KOVObjDocument::ReadWrite);
    WriteOn(session, document, 14, recorder);
    document.Close();
    recorder.Stop();
    Cut(recorder, Tiny, Count(300, 120, 20000), 11);
}

TEST_F(PowerCut, LeavesLargeBlocksWhole) {
    FastFolder folder;
    std::string const path = folder / "model.ksd";
    PowerLoss recorder(folder.Path().string());
    Session session(Usual);
    recorder.Start();
    KOVObjDocument const document = KOVObjDocument::Create(path.c_str());
    recorder.Mark(0);
    WriteOn(session, document, 6, recorder);
    document.Close();
    recorder.Stop();
    Cut(recorder, Usual, Count(40, 12, 2000), 12);
}

TEST_F(PowerCut, LeavesALogThatWasMovedWhole) {
    FastFolder folder;
    std::string const path = folder / "model.ksd";
    PowerLoss recorder(folder.Path().string());
    Session session(Crowded);
    recorder.Start();
    KOVObjDocument const document = KOVObjDocument::Create(path.c_str());
    recorder.Mark(0);
    Squeeze(document, Crowded);
    WriteOn(session, document, 6, recorder);
    document.Close();
    recorder.Stop();
    Cut(recorder, Crowded, Count(30, 8, 3000), 15);
}

/// A recorder for a store that leaves out the syncs of some files.
class Forgetful : public PowerLoss {
  public:
    Forgetful(std::string const& root, std::string suffix)
        : PowerLoss(root), m_suffix(std::move(suffix)) {}
    void After(kov::store::FileCall const& call) override {
        std::size_t const from = call.path.size() - std::min(call.path.size(), m_suffix.size());
        bool const forgotten = call.path.compare(from, std::string::npos, m_suffix) == 0;
        if (call.kind == kov::store::FileCall::Sync && forgotten) return;
        PowerLoss::After(call);
    }

  private:
    std::string m_suffix;
};

// Would these tests see it, if the store forgot to sync?
TEST_F(PowerCut, IsNoticedWhereASyncIsMissing) {
    for (char const* const suffix : {".seg", "-wal", ".sqlite"}) {
        FastFolder folder, target;
        Forgetful recorder(folder.Path().string(), suffix);
        Session session(Tiny);
        recorder.Start();
        KOVObjDocument const document = KOVObjDocument::Create((folder / "model.ksd").c_str());
        recorder.Mark(0);
        WriteOn(session, document, 6, recorder);
        document.Close();
        recorder.Stop();
        Random random(14);
        int wrong = 0;
        for (int i = 0; i < 60; ++i) {
            std::size_t const n = random.Below(recorder.Operations() + 1);
            recorder.Rebuild(n, random.Below(UINT64_MAX), target / "left");
            wrong += !Recover(session, target / "left/model.ksd", recorder.LastMark(n, -1), random)
                          .wrong.empty();
        }
        EXPECT_GT(wrong, 3) << "without syncs of *" << suffix;
    }
}

TEST_F(PowerCut, LeavesACompactedCopyWholeOrNotThere) {
    FastFolder folder;
    Session session(Tiny);
    std::string const source = folder / "source.ksd";
    KOVObjDocument const document = KOVObjDocument::Create(source.c_str());
    for (int n = 1; n <= 9; ++n) session.Write(document, n);
    PowerLoss recorder(folder.Path().string());
    recorder.Start();
    document.WriteCompacted((folder / "model.ksd").c_str());
    recorder.Mark(9);
    document.Close();
    recorder.Stop();
    Random random(13);
    FastFolder target;
    for (int i = 0; i < Count(60, 25, 3000); ++i) {
        std::size_t const n = random.Below(recorder.Operations() + 1);
        SCOPED_TRACE("cut " + std::to_string(i) + " behind " +
                     (n ? recorder.Describe(n - 1) : "nothing") + "; " + SeedText());
        recorder.Rebuild(n, random.Below(UINT64_MAX), target / "left");
        EXPECT_EQ(Recovered(session, target / "left/source.ksd", 9, random), 9);
        std::string const copy = target / "left/model.ksd";
        bool const promised = recorder.LastMark(n, -1) == 9;
        EXPECT_TRUE(fs::exists(copy) || !promised);
        if (fs::exists(copy)) {
            EXPECT_EQ(Recovered(session, copy, 9, random), 9);
        }
        if (HasFailure()) return;
    }
}

}  // namespace
