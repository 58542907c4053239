// DocumentFolder: the names and the first looks at a document's folder: what is it, is it whole,
// who may write. Nothing here changes a document.
#pragma once

#include <cstdint>
#include <string>

#include "document/store/Registry.h"

namespace kov::store {

/// "KOVD", at byte 68 of catalog.sqlite: SQLite's application id. Do not change.
inline constexpr std::uint32_t ApplicationId = 0x4b4f5644;

struct DocumentFolder {
    explicit DocumentFolder(std::string where) : path(std::move(where)) {}
    std::string Catalogue() const { return path + "/catalog.sqlite"; }
    std::string Log() const { return path + "/catalog.sqlite-wal"; }
    std::string Bulk() const { return path + "/bulk"; }
    std::string Lock() const { return path + "/lock"; }
    std::string path;
};

/// `path` without slashes at its end. Throws if nothing is left.
std::string CleanPath(std::string const& path);
/// `path`, from the root of the file system: a document stays where it is when the process moves.
std::string AbsolutePath(std::string const& path);
/// The folder above, and the last name.
std::string ParentOf(std::string const& path);
std::string NameOf(std::string const& path);

/// The identity of the folder at `path`. Throws if there is none, or if it is no folder.
FolderIdentity IdentifyFolder(std::string const& path);
/// Throws unless the catalogue file is that of a document in a version that this program knows, and
/// whole. With a log left, only what the log cannot repair is looked at. `beingWritten`: a writer
/// may be changing the file at the moment.
void CheckCatalogueFile(DocumentFolder const& folder, bool beingWritten);
/// Size of the log; 0 where there is none.
std::int64_t LogBytes(DocumentFolder const& folder);
bool IsOnNetwork(std::string const& path);
/// Whether this process may write into the folder and its catalogue.
bool MayWrite(DocumentFolder const& folder);

/// A new folder beside `path` to build a document in: ".NAME.tmp-<process>-<n>". Removes what
/// killed makers of `path` left.
std::string MakeTemporaryFolder(std::string const& path);

}  // namespace kov::store
