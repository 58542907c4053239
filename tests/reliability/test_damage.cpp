// Damage: files of a closed document are cut, flipped, exchanged and taken away. Each time the
// document is refused, or reading throws, or all is read as it was written; never is a wrong number
// read, and nothing ends the process.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include "reliability/Runs.h"
#include "reliability/Session.h"
#include "reliability/Walk.h"
#include "support/FastFolder.h"

using namespace reliability;
using kov::test::FastFolder;
namespace fs = std::filesystem;

namespace {

using Files = std::map<std::string, std::string>;  // by path in the document's folder

constexpr int Stand = 7;
constexpr std::size_t PageBytes = 4096;

std::string ReadFile(fs::path const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

Files ReadFolder(std::string const& folder) {
    Files files;
    for (auto const& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            files[fs::relative(entry.path(), folder).string()] = ReadFile(entry.path());
    }
    return files;
}

/// What came of opening and reading.
struct Outcome {
    std::string refusal;                // the exception's text; empty: all was read, and right
    std::string wrong;                  // what may not happen
    std::vector<std::string> findings;  // of verify, where it could be opened
    int stand = -1;
};

class Damage : public testing::Test {
  protected:
    void SetUp() override {
        KOVObjDocument const document = KOVObjDocument::Create(m_path.c_str());
        for (int n = 1; n <= Stand; ++n) m_session.Write(document, n);
        WhileOpen();
        document.Close();
        m_sound = ReadFolder(m_path);
        ASSERT_EQ(m_sound.size(), 3u) << "catalogue, one segment, and the lock";
        ASSERT_EQ(Judge().refusal, "");
        ASSERT_TRUE(Judge().findings.empty());
    }
    virtual void WhileOpen() {}

    /// Makes the document's folder hold these files and nothing else.
    void Put(Files const& files) {
        if (fs::is_directory(m_path)) {
            for (auto const& entry : fs::recursive_directory_iterator(m_path)) {
                std::string const name = fs::relative(entry.path(), m_path).string();
                if (!entry.is_directory() && !files.count(name)) fs::remove(entry);
            }
        } else {
            fs::remove_all(m_path);
        }
        fs::create_directories(fs::path(m_path) / "bulk");
        for (auto const& [name, content] : files) {
            std::ofstream(fs::path(m_path) / name, std::ios::binary)
                .write(content.data(), static_cast<std::streamsize>(content.size()));
        }
    }

    /// Opens what stands there, reads everything, and verifies.
    Outcome Judge(KOVObjDocument::Access access = KOVObjDocument::ReadOnly) {
        Outcome outcome;
        KOVObjDocument document;
        auto const read = [&] {
            try {
                outcome.stand = m_session.Check(document);
                return std::string();
            } catch (KOVSimException const& e) {
                return std::string(*e.what() ? e.what() : "(no text)");
            } catch (std::exception const& e) {
                outcome.wrong = e.what();
                return std::string();
            }
        };
        outcome.refusal =
            TextThrown([&] { document = KOVObjDocument::Open(m_path.c_str(), access); });
        if (!outcome.refusal.empty()) {
            if (outcome.refusal.find("model.ksd") == std::string::npos)
                outcome.wrong = "the refusal names no document: " + outcome.refusal;
            return outcome;
        }
        outcome.refusal = read();
        // What was damaged at the first look is no better at the second.
        if (!outcome.refusal.empty() && read().empty() && outcome.wrong.empty())
            outcome.wrong = "refused at first, read at the second look: " + outcome.refusal;
        try {
            // Past the first refusal, along every road there is.
            if (++m_judged % 3 == 0) Walk(document);
            document.Verify([&](char const* finding) { outcome.findings.push_back(finding); });
        } catch (std::exception const& e) {
            outcome.wrong = std::string("walking or verifying throws: ") + e.what();
        }
        document.Close();
        return outcome;
    }

    /// Judges a case, in one of the two ways of opening. `mustBeSeen`: verify has to tell of it.
    Outcome Expect(Files const& files, std::string const& what, bool mustBeSeen) {
        Put(files);
        Outcome const outcome =
            Judge(++m_cases % 4 == 0 ? KOVObjDocument::ReadWrite : KOVObjDocument::ReadOnly);
        EXPECT_EQ(outcome.wrong, "") << what << "; " << SeedText();
        if (outcome.refusal.empty()) {
            ++m_read;
            EXPECT_EQ(outcome.stand, Stand) << what;
            if (mustBeSeen) {
                EXPECT_FALSE(outcome.findings.empty()) << what << ": nobody tells of it";
            }
        } else {
            m_texts.insert(outcome.refusal.substr(0, 60));
            EXPECT_TRUE(!mustBeSeen || !outcome.findings.empty() || outcome.stand < 0) << what;
        }
        return outcome;
    }

    void Report(char const* what) const {
        std::printf("%s: %d cases, %d of them could be read\n", what, m_cases, m_read);
    }

    std::string Segment() const { return m_sound.at("bulk/000001.seg"); }
    std::string Catalogue() const { return m_sound.at("catalog.sqlite"); }
    Files With(std::string const& name, std::string content) const {
        Files files = m_sound;
        files[name] = std::move(content);
        return files;
    }

    FastFolder m_folder;
    std::string m_path = m_folder / "model.ksd";
    Session m_session{Tiny};
    Files m_sound;
    Random m_random{21};
    int m_cases = 0;
    int m_judged = 0;
    int m_read = 0;
    std::set<std::string> m_texts;
};

TEST_F(Damage, OfACutFileIsToldOrDoesNotMatter) {
    for (auto const& [name, content] : m_sound) {
        std::set<std::size_t> lengths{0, 1, 15, 16, 63, 64, 65, 99, 100, 101, 511, 512, 4095, 4096};
        for (std::size_t page = 0; page * PageBytes < content.size();
             page += IsSoak() ? 1 : 1 + content.size() / PageBytes / 12)
            lengths.insert({page * PageBytes, page * PageBytes + 1 + m_random.Below(4094)});
        for (int i = 0; i < Count(30, 10, 2000) && !content.empty(); ++i)
            lengths.insert(m_random.Below(content.size()));
        if (!content.empty()) lengths.insert({content.size() - 1, content.size() - 8});
        for (std::size_t const length : lengths) {
            if (length >= content.size()) continue;
            Outcome const outcome = Expect(With(name, content.substr(0, length)),
                                           name + " cut to " + std::to_string(length), true);
            // What is not there cannot be verified, but it can be told at once.
            EXPECT_EQ(outcome.stand, -1) << name << " cut to " << length;
            if (HasFailure()) return;
        }
    }
    Report("cut");
}

TEST_F(Damage, OfAFlippedBitIsToldOrDoesNotMatter) {
    for (auto const& [name, content] : m_sound) {
        if (content.empty()) continue;
        bool const exhaustive = IsSoak();
        std::size_t const wanted =
            exhaustive ? content.size() : static_cast<std::size_t>(Count(350, 120, 0));
        for (std::size_t i = 0; i < wanted; ++i) {
            std::size_t const at =
                exhaustive ? i
                : i < wanted / 4
                    ? m_random.Below(std::min<std::size_t>(content.size(), 2 * PageBytes))
                    : m_random.Below(content.size());
            int const bit = m_random.Int(8);
            std::string flipped = content;
            flipped[at] = static_cast<char>(flipped[at] ^ (1 << bit));
            Expect(With(name, flipped),
                   name + ": bit " + std::to_string(bit) + " of byte " + std::to_string(at),
                   name == "catalog.sqlite");
            if (HasFailure()) return;
        }
    }
    Report("flipped");
}

TEST_F(Damage, OfOverwrittenStretchesIsToldOrDoesNotMatter) {
    for (int i = 0; i < Count(200, 60, 20000); ++i) {
        std::string const name = i % 2 ? "catalog.sqlite" : "bulk/000001.seg";
        std::string content = m_sound.at(name);
        std::size_t const first = m_random.Below(content.size());
        std::size_t const last =
            std::min(content.size(), first + 1 + m_random.Below(m_random.OneIn(3) ? 9000 : 70));
        std::string const before = content;
        int const how = m_random.Int(3);
        for (std::size_t at = first; at < last; ++at) {
            content[at] = how == 0   ? '\0'
                          : how == 1 ? static_cast<char>(m_random.Int(256))
                                     : before[m_random.Below(before.size())];
        }
        if (content == before) continue;
        Expect(With(name, content),
               name + ": bytes " + std::to_string(first) + " to " + std::to_string(last),
               i % 2 != 0);
        if (HasFailure()) return;
    }
    Report("overwritten");
}

TEST_F(Damage, OfExchangedPagesIsTold) {
    std::size_t const pages = Catalogue().size() / PageBytes;
    for (int i = 0; i < Count(60, 25, 2000); ++i) {
        std::size_t const a = m_random.Below(pages), b = m_random.Below(pages);
        std::string content = Catalogue();
        std::string const pageA = content.substr(a * PageBytes, PageBytes);
        std::string const pageB = content.substr(b * PageBytes, PageBytes);
        if (a == b || pageA == pageB) continue;
        content.replace(a * PageBytes, PageBytes, pageB);
        // Half of them: exchanged; the other half: one page twice.
        if (i % 2) content.replace(b * PageBytes, PageBytes, pageA);
        Expect(With("catalog.sqlite", content),
               "pages " + std::to_string(a + 1) + " and " + std::to_string(b + 1), true);
        if (HasFailure()) return;
    }
    std::size_t const sectors = Segment().size() / 512;
    for (int i = 0; i < Count(40, 15, 2000); ++i) {
        std::size_t const a = m_random.Below(sectors), b = m_random.Below(sectors);
        std::string content = Segment();
        std::string const sector = content.substr(a * 512, 512);
        content.replace(a * 512, 512, content.substr(b * 512, 512));
        content.replace(b * 512, 512, sector);
        Expect(With("bulk/000001.seg", content),
               "sectors " + std::to_string(a) + " and " + std::to_string(b), false);
        if (HasFailure()) return;
    }
    Report("exchanged");
}

TEST_F(Damage, OfAWholeFileIsTold) {
    auto const garbage = [&](std::size_t bytes) {
        std::string content(bytes, '\0');
        for (char& c : content) c = static_cast<char>(m_random.Int(256));
        return content;
    };
    for (int i = 0; i < Count(30, 15, 2000); ++i) {
        std::size_t const bytes = m_random.Below(3 * Catalogue().size());
        bool const magic = m_random.OneIn(2);
        std::string catalogue = garbage(bytes);
        if (magic) catalogue.replace(0, 16, std::string("SQLite format 3\0", 16));
        EXPECT_NE(Expect(With("catalog.sqlite", catalogue), "a catalogue of garbage", true).refusal,
                  "");
        std::string segment = garbage(Segment().size() + m_random.Below(100));
        if (magic) segment.replace(0, 64, Segment().substr(0, 64));
        EXPECT_NE(Expect(With("bulk/000001.seg", segment), "a segment of garbage", true).refusal,
                  "");
        if (HasFailure()) return;
    }
    for (auto const& [name, other] : m_sound) {
        if (name == "lock") continue;
        std::string const swapped = name == "catalog.sqlite" ? Segment() : Catalogue();
        EXPECT_NE(Expect(With(name, swapped), name + " from another file", true).refusal, "");
    }
}

TEST_F(Damage, OfTheFolderIsTold) {
    Files files = m_sound;
    files.erase("bulk/000001.seg");
    EXPECT_NE(Expect(files, "no segment", true).refusal, "");
    files = m_sound;
    files.erase("catalog.sqlite");
    EXPECT_NE(Expect(files, "no catalogue", true).refusal, "");
    files = m_sound;
    files.erase("lock");
    EXPECT_EQ(Expect(files, "no lock", false).refusal, "");
    EXPECT_EQ(Expect(With("bulk/000002.seg", Segment()), "an extra segment", false).refusal, "");
    EXPECT_EQ(Expect(With("bulk/000007.seg", "torso"), "the torso of a segment", false).refusal,
              "");
    EXPECT_EQ(Expect(With("bulk/notes.txt", "?"), "a file of another kind", false).refusal, "");
    EXPECT_EQ(Expect(With("lock", "some text"), "a lock with content", false).refusal, "");

    Put(m_sound);
    fs::remove_all(fs::path(m_path) / "bulk");
    EXPECT_NE(Judge().refusal, "");
    Put(m_sound);
    fs::remove(fs::path(m_path) / "catalog.sqlite");
    fs::create_directory(fs::path(m_path) / "catalog.sqlite");
    EXPECT_NE(Judge().refusal, "");
    EXPECT_EQ(Judge().wrong, "");
    fs::remove_all(m_path);
    EXPECT_NE(Judge().refusal, "");
    std::ofstream(m_path) << "a file instead of a folder";
    EXPECT_NE(Judge().refusal, "");
    EXPECT_NE(Judge(KOVObjDocument::ReadWrite).refusal, "");
    fs::remove(m_path);
    fs::create_directory(m_path);
    EXPECT_NE(Judge().refusal, "");
    EXPECT_NE(Judge(KOVObjDocument::ReadWrite).refusal, "");
}

TEST_F(Damage, OfAnotherDocumentsSegmentIsTold) {
    FastFolder folder;
    std::string const path = folder / "other.ksd";
    {
        Session session(Tiny);
        KOVObjDocument const other = KOVObjDocument::Create(path.c_str());
        for (int n = 1; n <= Stand; ++n) session.Write(other, n);
        other.Close();
    }
    // The same bytes but for the head: what it was made for stands there.
    std::string const segment = ReadFolder(path).at("bulk/000001.seg");
    EXPECT_EQ(segment.substr(64), Segment().substr(64));
    EXPECT_NE(Expect(With("bulk/000001.seg", segment), "another document's segment", true).refusal,
              "");
}

/// A document that a crash has left with its log.
class DamageOfLog : public Damage {
  protected:
    void WhileOpen() override { m_crashed = ReadFolder(m_path); }
    Files m_crashed;
};

TEST_F(DamageOfLog, OpensAtACommitAndTellsWhatIsMissing) {
    m_crashed.erase("catalog.sqlite-shm");
    std::string const name = "catalog.sqlite-wal";
    ASSERT_TRUE(m_crashed.count(name));
    std::string const log = m_crashed.at(name);
    ASSERT_GT(log.size(), 10 * PageBytes);
    int cut = 0;
    for (int i = 0; i < Count(150, 50, 20000); ++i) {
        Files files = m_crashed;
        std::size_t const at = m_random.Below(log.size());
        std::string what;
        if (i % 3 == 0) {
            files[name] = log.substr(0, at);
            what = "the log cut to " + std::to_string(at);
        } else {
            files[name][at] = static_cast<char>(files[name][at] ^ (1 << m_random.Int(8)));
            what = "byte " + std::to_string(at) + " of the log";
        }
        Put(files);
        Outcome const outcome = Judge(i % 2 ? KOVObjDocument::ReadOnly : KOVObjDocument::ReadWrite);
        ASSERT_EQ(outcome.wrong, "") << what;
        if (!outcome.refusal.empty()) continue;
        ASSERT_LE(outcome.stand, Stand) << what;
        if (outcome.stand == Stand) continue;
        ++cut;
        // Of a log cut between two commits nobody can know that it was longer.
        ASSERT_TRUE(i % 3 == 0 || !outcome.findings.empty()) << what << ": nobody tells of it";
    }
    EXPECT_GT(cut, 0);
}

}  // namespace
