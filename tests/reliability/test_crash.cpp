// Crashes: a process that writes the session is killed at random moments, and what it leaves is
// opened again. Each transaction whose commit was acknowledged is there whole, the one in flight
// whole or not at all, and nothing else.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "reliability/Process.h"
#include "reliability/Runs.h"
#include "reliability/Session.h"
#include "reliability/Squeeze.h"
#include "support/FastFolder.h"
#include "support/TempFolder.h"

using namespace reliability;
using kov::test::FastFolder;
using kov::test::TempFolder;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int LongestSession = 40;

KOVObjDocument OpenAt(std::string const& path, KOVObjDocument::Access access) {
    return KOVObjDocument::Open(path.c_str(), access);
}

void ExpectSound(KOVObjDocument const& document) {
    document.Verify([](char const* finding) { ADD_FAILURE() << "verify says: " << finding; });
}

/// Opens what was left, in either way first, and answers where it stands.
int Recovered(Session& session, std::string const& path, bool readerFirst) {
    int byReader = -1;
    if (readerFirst) {
        KOVObjDocument const reader = OpenAt(path, KOVObjDocument::ReadOnly);
        byReader = session.Check(reader);
        ExpectSound(reader);
        reader.Close();
    }
    KOVObjDocument const writer = OpenAt(path, KOVObjDocument::ReadWrite);
    int const n = session.Check(writer);
    ExpectSound(writer);
    EXPECT_EQ(readerFirst ? byReader : n, n) << "reader and writer see different commits";
    writer.Close();
    return n;
}

KillAtCall::Moment RandomMoment(Random& random) {
    return static_cast<KillAtCall::Moment>(random.Int(3));
}

int LastAcknowledged(std::vector<std::string> const& lines, int before) {
    for (std::string const& line : lines) {
        if (line.compare(0, 6, "error:") == 0) ADD_FAILURE() << line;
        if (line.compare(0, 4, "ack ") == 0) before = std::atoi(line.c_str() + 4);
    }
    return before;
}

void WriteOn(std::string const& path, Scale const& scale, int upTo, Say const& say) {
    Session session(scale);
    KOVObjDocument document = OpenAt(path, KOVObjDocument::ReadWrite);
    Squeeze(document, scale);
    for (int n = Session::Stand(document) + 1; n <= upTo; ++n) {
        session.Write(document, n);
        say("ack " + std::to_string(n));
        if (n % 13 != 0) continue;
        document.Close();
        document = OpenAt(path, KOVObjDocument::ReadWrite);
        Squeeze(document, scale);
    }
    document.Close();
}

/// Kills by the clock, somewhere in the course of a few transactions, or at a call on a file.
class Killer {
  public:
    explicit Killer(std::uint64_t salt) : m_random(salt) {}

    /// Answers whether it was killed, and adds what it said to `lines`.
    bool Run(std::string const& path, Scale const& scale, std::vector<std::string>& lines) {
        bool const byCall = m_random.OneIn(2);
        std::int64_t const call = m_random.Int(m_random.OneIn(3) ? 30 : 700);
        KillAtCall::Moment const moment = RandomMoment(m_random);
        Process child([&](Say const& say) {
            static KillAtCall killer(call, moment);
            if (byCall) kov::store::SetFileObserver(&killer);
            WriteOn(path, scale, LongestSession + 20, say);
        });
        if (!byCall) {
            int const wait = m_random.Int(4);
            auto last = Clock::now();
            std::string line;
            for (int i = 0; i < wait && child.ReadLine(line); ++i) {
                lines.push_back(line);
                m_step = (m_step * 3 + (Clock::now() - last)) / 4;
                last = Clock::now();
            }
            std::this_thread::sleep_for(m_step * m_random.Int(1500) / 1000);
            child.Kill();
        }
        int const status = child.Wait(lines);
        EXPECT_TRUE(status == -SIGKILL || status == 0) << "status " << status;
        return status == -SIGKILL;
    }
    Random& Chance() { return m_random; }

  private:
    Random m_random;
    Clock::duration m_step = std::chrono::milliseconds(5);  // about what a transaction takes
};

template <class Folder>
void KillOften(Scale const& scale, int kills, std::uint64_t salt) {
    Folder const folder;
    std::string const path = folder / "model.ksd";
    Session session(scale);
    Killer killer(salt);
    int acknowledged = 0;
    int inFlight = 0;
    for (int killed = 0; killed < kills;) {
        if (!fs::exists(path) || acknowledged > LongestSession) {
            fs::remove_all(path);
            KOVObjDocument::Create(path.c_str()).Close();
            acknowledged = 0;
        }
        std::vector<std::string> lines;
        killed += killer.Run(path, scale, lines);
        acknowledged = LastAcknowledged(lines, acknowledged);
        int const found = Recovered(session, path, killer.Chance().OneIn(2));
        ASSERT_TRUE(found == acknowledged || found == acknowledged + 1)
            << "kill " << killed << ": " << acknowledged << " were acknowledged, " << found
            << " are there; " << SeedText();
        ASSERT_FALSE(testing::Test::HasFailure()) << "kill " << killed << "; " << SeedText();
        inFlight += found > acknowledged;
        acknowledged = found;
    }
    std::printf("%d kills, %d of them behind a commit that was not acknowledged yet\n", kills,
                inFlight);
}

TEST(Crash, SmallTransactionsAreWholeOrNotThere) {
    KillOften<FastFolder>(Tiny, Count(130, 40, 3000), 1);
}

TEST(Crash, TransactionsWithLargeBlocksAreWholeOrNotThere) {
    KillOften<TempFolder>(Usual, Count(50, 10, 1000), 2);
}

TEST(Crash, TransactionsThatFillTheLogAreWholeOrNotThere) {
    KillOften<FastFolder>(Crowded, Count(40, 10, 1000), 4);
}

std::vector<std::string> NamesIn(fs::path const& folder) {
    std::vector<std::string> names;
    for (auto const& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

TEST(Crash, AKilledCreateLeavesADocumentOrNone) {
    FastFolder folder;
    std::string const path = folder / "model.ksd";
    Session session(Tiny);
    CountCalls counter;
    {
        Observing const observing(counter);
        KOVObjDocument::Create(path.c_str());
    }
    fs::remove_all(path);
    auto const calls = static_cast<int>(counter.count);
    int const kills = std::min(Count(60, 20, 3 * calls), 3 * calls);
    int there = 0;
    for (int i = 0; i < kills; ++i) {
        int const place = static_cast<int>(std::int64_t{i} * 3 * calls / kills);
        Process child([&](Say const&) {
            static KillAtCall killer(place / 3, static_cast<KillAtCall::Moment>(place % 3));
            kov::store::SetFileObserver(&killer);
            KOVObjDocument::Create(path.c_str());
        });
        std::vector<std::string> lines;
        int const status = child.Wait(lines);
        ASSERT_TRUE(status == -SIGKILL || status == 0) << (lines.empty() ? "" : lines[0]);
        if (fs::exists(path)) {
            ++there;
            ASSERT_EQ(Recovered(session, path, i % 2), 0) << "killed at call " << place / 3;
            fs::remove_all(path);
        }
        // The next one takes away what the killed one left.
        KOVObjDocument::Create(path.c_str()).Close();
        ASSERT_EQ(NamesIn(folder.Path()), std::vector<std::string>{"model.ksd"})
            << "killed at call " << place / 3;
        fs::remove_all(path);
    }
    EXPECT_GT(there, 0);
    EXPECT_LT(there, kills);
}

TEST(Crash, AKilledCloseLosesNothing) {
    FastFolder folder;
    std::string const path = folder / "model.ksd";
    Session session(Tiny);
    Random random(3);
    int const kills = Count(40, 15, 600);
    int acknowledged = 0, call = 0;
    KOVObjDocument::Create(path.c_str()).Close();
    for (int i = 0; i < kills; ++i) {
        if (acknowledged > LongestSession) {
            fs::remove_all(path);
            KOVObjDocument::Create(path.c_str()).Close();
            acknowledged = 0;
        }
        int const more = random.Int(3);
        KillAtCall::Moment const moment = RandomMoment(random);
        Process child([&](Say const& say) {
            Session writing(Tiny);
            KOVObjDocument const document = OpenAt(path, KOVObjDocument::ReadWrite);
            for (int n = acknowledged + 1; n <= acknowledged + more; ++n) {
                writing.Write(document, n);
                say("ack " + std::to_string(n));
            }
            static KillAtCall killer(call, moment);
            kov::store::SetFileObserver(&killer);
            document.Close();
        });
        std::vector<std::string> lines;
        int const status = child.Wait(lines);
        ASSERT_TRUE(status == -SIGKILL || status == 0) << status;
        // Beyond the last call of a Close it begins again with the first.
        call = status == 0 ? 0 : call + 1;
        acknowledged = LastAcknowledged(lines, acknowledged);
        ASSERT_EQ(Recovered(session, path, random.OneIn(2)), acknowledged)
            << "kill " << i << "; " << SeedText();
    }
}

TEST(Crash, AKilledCompactionLeavesTheSourceAndAWholeCopyOrNone) {
    FastFolder folder;
    std::string const path = folder / "model.ksd";
    std::string const copy = folder / "copy.ksd";
    Session session(Tiny);
    CountCalls counter;
    {
        KOVObjDocument const document = KOVObjDocument::Create(path.c_str());
        for (int n = 1; n <= 14; ++n) session.Write(document, n);
        Observing const observing(counter);
        document.WriteCompacted(copy.c_str());
    }
    fs::remove_all(copy);
    int const calls = static_cast<int>(counter.count);
    int const kills = std::min(Count(40, 15, 3 * calls), 3 * calls);
    for (int i = 0; i < kills; ++i) {
        int const place = static_cast<int>(std::int64_t{i} * 3 * calls / kills);
        Process child([&](Say const&) {
            KOVObjDocument const document =
                OpenAt(path, i % 2 ? KOVObjDocument::ReadOnly : KOVObjDocument::ReadWrite);
            static KillAtCall killer(place / 3, static_cast<KillAtCall::Moment>(place % 3));
            kov::store::SetFileObserver(&killer);
            document.WriteCompacted(copy.c_str());
        });
        std::vector<std::string> lines;
        int const status = child.Wait(lines);
        ASSERT_TRUE(status == -SIGKILL || status == 0) << (lines.empty() ? "" : lines[0]);
        ASSERT_EQ(Recovered(session, path, i % 2), 14) << "killed at call " << place / 3;
        if (!fs::exists(copy)) continue;
        ASSERT_EQ(Recovered(session, copy, i % 2), 14) << "killed at call " << place / 3;
        fs::remove_all(copy);
    }
    OpenAt(path, KOVObjDocument::ReadOnly).WriteCompacted(copy.c_str());
    std::vector<std::string> names = NamesIn(folder.Path());
    EXPECT_EQ(names.size(), 2u) << "a killed compaction's leavings are still there";
}

}  // namespace
