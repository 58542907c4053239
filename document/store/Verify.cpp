// Verification: the catalogue as SQLite sees it, the pages of its file, the segments, every page of
// every block, and the rules that tie the tables to each other. Each fault is told and the next is
// looked for; a part that cannot be read at all is one.
#include <algorithm>
#include <chrono>
#include <exception>
#include <thread>
#include <tuple>

#include "document/store/BlockRow.h"
#include "document/store/CatalogueRules.h"
#include "document/store/CatalogueVfs.h"
#include "document/store/ContextOpened.h"
#include "document/store/LogScan.h"

namespace kov::store {

namespace {

using Finding = std::function<void(std::string const&)>;

constexpr int TornReadAttempts = 20;
// SQLite locks by this byte and keeps its page empty.
constexpr std::int64_t LockPage = (std::int64_t{1} << 30) / CataloguePageBytes + 1;

template <class F>
void Guarded(Finding const& finding, F const& look) {
    try {
        look();
    } catch (std::exception const& e) {
        finding(e.what());
    }
}

void CheckIntegrity(Catalogue& catalogue, Finding const& finding) {
    Statement check(catalogue, "PRAGMA integrity_check(100)");
    while (check.Step()) {
        std::string const text(check.Text(0));
        if (text != "ok") finding("the catalogue is damaged: " + text);
    }
}

bool IsSoundInFile(Catalogue& catalogue, std::int64_t number) {
    alignas(8) char page[CataloguePageBytes];
    return ReadRawPage(catalogue.Handle(), number, page) == 0 && IsSoundCataloguePage(page, number);
}

/// The pages as they stand in the file, those included that nothing refers to. Of a page that the
/// log replaces the file may hold anything. `beingWritten`: by another process.
void SweepPages(Catalogue& catalogue, DocumentFolder const& folder, bool beingWritten,
                Finding const& finding) {
    std::int64_t const bytes = RawFileBytes(catalogue.Handle());
    if (bytes < 0) return;
    std::vector<std::int64_t> unsound;
    for (std::int64_t number = 1; number <= bytes / CataloguePageBytes; ++number) {
        if (number != LockPage && !IsSoundInFile(catalogue, number)) unsound.push_back(number);
    }
    if (!unsound.empty()) {
        auto const replaced = PagesInLog(folder.Log());
        std::erase_if(unsound, [&](std::int64_t number) { return replaced.count(number) > 0; });
    }
    // A writer may have been putting pages there at that moment.
    for (int attempt = 0; beingWritten && !unsound.empty() && attempt < TornReadAttempts;
         ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        std::erase_if(unsound,
                      [&](std::int64_t number) { return IsSoundInFile(catalogue, number); });
    }
    for (std::int64_t const number : unsound) {
        finding("page " + std::to_string(number) +
                " of catalog.sqlite is damaged: its checksum does not fit");
    }
    if (bytes % CataloguePageBytes != 0 && LogBytes(folder) == 0) {
        finding("catalog.sqlite ends inside a page");
    }
}

using Place = std::tuple<int, std::int64_t, std::int64_t>;  // segment, offset, bytes

void CheckOverlaps(std::vector<Place>& places, Finding const& finding) {
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    for (std::size_t i = 1; i < places.size(); ++i) {
        auto const& [segment, offset, bytes] = places[i - 1];
        if (std::get<0>(places[i]) == segment && std::get<1>(places[i]) < offset + bytes) {
            finding("blocks at bytes " + std::to_string(offset) + " and " +
                    std::to_string(std::get<1>(places[i])) + " of segment " +
                    std::to_string(segment) + " overlap");
        }
    }
}

void CheckBlocks(Catalogue& catalogue, BlockStore& blocks, Finding const& finding) {
    Statement rows(catalogue, BlockRow::Query);
    std::vector<Place> places;
    BlockRow before;
    while (rows.Step()) {
        BlockRow const row = BlockRow::Of(rows);
        std::string const name = "distribution " + std::to_string(row.distribution) + ", drawer " +
                                 std::to_string(row.drawer) + ", block of row " +
                                 std::to_string(row.firstRow) + ": ";
        if (std::string const wrong = row.Fault(); !wrong.empty()) {
            finding(name + wrong);
            continue;
        }
        if (row.drawer == before.drawer && row.firstRow < before.firstRow + before.rows) {
            finding(name + "its rows overlap those of the block before");
        }
        places.emplace_back(row.block.segment, row.block.offset, row.block.bytes);
        // Pieces of one stored block lie near each other; it is read once for a run of them.
        bool const again = row.block.segment == before.block.segment &&
                           row.block.offset == before.block.offset &&
                           row.block.sums == before.block.sums;
        if (!again) {
            if (std::string const wrong = blocks.Check(row.block); !wrong.empty())
                finding(name + wrong);
        }
        before = row;
    }
    CheckOverlaps(places, finding);
}

}  // namespace

void Context::Verify(Finding const& finding) {
    RequireUsable();
    Opened& opened = *m_opened;
    Catalogue& catalogue = *m_catalogue;
    if (m_inTransaction) {
        for (std::size_t i = 0; i < m_partsInOrder.size(); ++i) m_partsInOrder[i]->BeforeCommit();
    }
    if (!opened.cutLog.empty()) finding(opened.cutLog);
    Guarded(finding, [&] { CheckIntegrity(catalogue, finding); });
    bool const beingWritten = IsReadOnly() && WriterLock::IsWritten(opened.folder.Lock());
    Guarded(finding, [&] { SweepPages(catalogue, opened.folder, beingWritten, finding); });
    opened.blocks->CheckSegments(finding);
    Guarded(finding, [&] { CheckBlocks(catalogue, *opened.blocks, finding); });
    Guarded(finding, [&] { CheckCatalogueRules(catalogue, finding); });
    for (std::size_t i = 0; i < m_partsInOrder.size(); ++i) {
        Guarded(finding, [&] { m_partsInOrder[i]->Verify(finding); });
    }
}

}  // namespace kov::store
