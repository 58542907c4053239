// One writer and eight readers in processes of their own. Each reader checks the whole document
// after each refresh: it never sees a state that was not committed, never goes back, and sees at
// least what was acknowledged before it looked.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <new>
#include <thread>
#include <vector>

#include "KOVSimTransaction.h"
#include "reliability/Process.h"
#include "reliability/Runs.h"
#include "reliability/Session.h"
#include "support/TempFolder.h"

using namespace reliability;
using kov::test::TempFolder;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int Readers = 8;

/// What the processes tell each other, in memory that they share.
struct Board {
    std::atomic<int> begun{0};      // the writer has called Commit of this transaction
    std::atomic<int> committed{0};  // and it has returned
    std::atomic<bool> stop{false};
};

class SharedBoard {
  public:
    SharedBoard() {
        void* const memory = ::mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE,
                                    MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) throw std::bad_alloc();
        m_board = new (memory) Board;
    }
    ~SharedBoard() { ::munmap(m_board, sizeof(Board)); }
    SharedBoard(SharedBoard const&) = delete;
    SharedBoard& operator=(SharedBoard const&) = delete;
    Board& operator*() const { return *m_board; }
    Board* operator->() const { return m_board; }

  private:
    Board* m_board;
};

void WriteUntilStopped(std::string const& path, Board& board, int most, Say const& say) {
    Session session(Tiny);
    KOVObjDocument document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadWrite);
    int n = 0;
    while (!board.stop && n < most) {
        ++n;
        {
            KOVSimTransaction transaction(document.ContextID());
            session.WriteOpen(document, n);
            board.begun = n;
            transaction.Commit();
        }
        board.committed = n;
        if (n % 25 == 0) {
            // A clean close takes the log away, if no reader is left, and a new one begins.
            document.Close();
            document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadWrite);
        }
        // Checks take the longer, the more there is; leave the readers the time for them.
        std::this_thread::sleep_for(std::chrono::microseconds(n * 200));
    }
    document.Close();
    say("wrote " + std::to_string(n));
}

void ReadUntilStopped(std::string const& path, Board& board, int reader, Say const& say) {
    Session session(Tiny);
    Random random(100 + static_cast<std::uint64_t>(reader));
    int checks = 0, different = 0, last = 0;
    KOVObjDocument document;
    while (!board.stop) {
        int const least = board.committed;
        if (document.IsClosed()) {
            document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
        } else {
            bool const changed = document.Refresh();
            if (changed && Session::Stand(document) == last)
                throw Mismatch("a refresh tells of a change that is none");
            if (!changed && Session::Stand(document) != last)
                throw Mismatch("a refresh that changed nothing has moved the document");
        }
        int const n = session.Check(document);
        int const most = board.begun;
        if (n < least || n > most || n < last) {
            throw Mismatch("at " + std::to_string(n) + ", before at " + std::to_string(last) +
                           ", acknowledged " + std::to_string(least) + ", begun " +
                           std::to_string(most));
        }
        // Whatever the writer does meanwhile, this reader stays where it is.
        if (random.OneIn(3) && session.Check(document) != n)
            throw Mismatch("a reader has moved without a refresh");
        if (random.OneIn(10)) {
            document.Verify([](char const* finding) {
                throw Mismatch(std::string("verify says: ") + finding);
            });
        }
        ++checks;
        different += n != last;
        last = n;
        if (random.OneIn(12)) document.Close();
    }
    if (!document.IsClosed()) document.Close();
    say("checked " + std::to_string(checks) + " times, " + std::to_string(different) + " states");
}

void RunTogether(std::string const& path, std::chrono::milliseconds time) {
    KOVObjDocument::Create(path.c_str()).Close();
    SharedBoard board;
    std::vector<std::unique_ptr<Process>> processes;
    processes.push_back(std::make_unique<Process>(
        [&](Say const& say) { WriteUntilStopped(path, *board, IsSoak() ? 400 : 150, say); }));
    for (int i = 0; i < Readers; ++i) {
        processes.push_back(std::make_unique<Process>(
            [&, i](Say const& say) { ReadUntilStopped(path, *board, i, say); }));
    }
    std::this_thread::sleep_for(time);
    board->stop = true;
    for (auto const& process : processes) {
        std::vector<std::string> lines;
        int const status = process->Wait(lines);
        EXPECT_EQ(status, 0);
        for (std::string const& line : lines) {
            EXPECT_NE(line.compare(0, 6, "error:"), 0) << line << "; " << SeedText();
            std::printf("%s\n", line.c_str());
        }
    }
    Session session(Tiny);
    KOVObjDocument const document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadWrite);
    EXPECT_EQ(session.Check(document), board->committed);
    EXPECT_GT(board->committed, 3);
    document.Close();
}

TEST(Readers, NeverSeeWhatWasNotCommitted) {
    TempFolder folder;
    auto const time = std::chrono::seconds(IsSoak() ? 60 : 6);
    RunTogether(folder / "model.ksd", time);
}

TEST(Readers, SeeCommitsWhileWritersAreKilled) {
    TempFolder folder;
    std::string const path = folder / "model.ksd";
    KOVObjDocument::Create(path.c_str()).Close();
    SharedBoard board;
    std::vector<std::unique_ptr<Process>> readers;
    for (int i = 0; i < 3; ++i) {
        readers.push_back(std::make_unique<Process>(
            [&, i](Say const& say) { ReadUntilStopped(path, *board, 20 + i, say); }));
    }
    Random random(31);
    Session session(Tiny);
    for (int i = 0; i < Count(25, 8, 500) && board->committed < 60; ++i) {
        int const before = board->committed;
        std::int64_t const call = random.Int(300);
        auto const moment = static_cast<KillAtCall::Moment>(random.Int(3));
        Process writer([&](Say const&) {
            Session writing(Tiny);
            static KillAtCall killer(call, moment);
            kov::store::SetFileObserver(&killer);
            KOVObjDocument const document =
                KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadWrite);
            for (int n = Session::Stand(document) + 1;; ++n) {
                KOVSimTransaction transaction(document.ContextID());
                writing.WriteOpen(document, n);
                board->begun = n;
                transaction.Commit();
                board->committed = n;
            }
        });
        std::vector<std::string> lines;
        EXPECT_EQ(writer.Wait(lines), -SIGKILL);
        for (std::string const& line : lines) ADD_FAILURE() << line;
        KOVObjDocument const document =
            KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadWrite);
        int const found = session.Check(document);
        EXPECT_TRUE(found >= board->committed && found <= board->begun)
            << found << " after " << before;
        board->committed = found;
        document.Close();
        if (HasFailure()) break;
    }
    board->stop = true;
    for (auto const& process : readers) {
        std::vector<std::string> lines;
        EXPECT_EQ(process->Wait(lines), 0);
        for (std::string const& line : lines)
            EXPECT_NE(line.compare(0, 6, "error:"), 0) << line << "; " << SeedText();
    }
}

}  // namespace
