// CatalogueVfs: SQLite's file methods as the catalogue uses them, over SQLite's own VFS for this
// system. It sets a checksum in the reserved bytes of each page as it reaches catalog.sqlite, and
// verifies it whenever a page is read from there; and it puts the observer of FileCalls.h in front
// of every file call. Frames in the log have SQLite's own checksums.
//
// A page of the catalogue file: bytes [0, CataloguePageBytes - 8) as SQLite wrote them, then
// XXH3-64 of these, seeded with the page's number (from 1), little-endian. Other SQLite tools take
// the last 8 bytes for reserved space and leave them.
//
// Private to Catalogue.
#pragma once

#include <cstdint>
#include <string>

struct sqlite3;

namespace kov::store {

// 8 KiB: 100,000 named sets cost 2.5 us each with their commit, and 2.9 with pages of 4 KiB.
inline constexpr int CataloguePageBytes = 8192;
inline constexpr int CatalogueReservedBytes = 8;
inline constexpr char CatalogueVfsName[] = "kov";

/// Registers the VFS with SQLite, once for the process; not as the default.
void RegisterCatalogueVfs();

/// What went wrong last in the files of a catalogue on this thread, for texts. Zero where nothing
/// did.
struct CatalogueFault {
    std::int64_t damagedPage = 0;  ///< its checksum does not fit
    std::int64_t missingPage = 0;  ///< it lies behind the end of the file
    int error = 0;                 ///< errno of a call that failed
    std::string path;              ///< of the file on which it failed
};
/// The last fault, which is forgotten.
CatalogueFault TakeCatalogueFault();

/// Whether the last bytes of a page hold its checksum.
bool IsSoundCataloguePage(void const* page, std::int64_t number);

/// The page as it stands in the catalogue file, unchecked, through the connection's own descriptor
/// (a descriptor of one's own would let go of the connection's locks when it closes). Answers
/// SQLite's result code.
int ReadRawPage(sqlite3* db, std::int64_t number, void* page);
/// The size of the catalogue file; -1 where there is none.
std::int64_t RawFileBytes(sqlite3* db);

}  // namespace kov::store
