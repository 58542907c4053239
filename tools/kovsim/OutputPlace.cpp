#include "OutputPlace.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "Failure.h"

namespace kov::tool {
namespace {

namespace fs = std::filesystem;

// Places that live, for the exit handler: a failed check of a library ends the process by exit().
// Never destroyed, as the handler may run after static destructors.
std::vector<std::string>& LivingFolders() {
    static auto* folders = new std::vector<std::string>;
    return *folders;
}

void RemoveLivingFolders() {
    for (std::string const& folder : LivingFolders()) {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
}

std::string ErrorText(int error) { return std::generic_category().message(error); }

std::string Prefix(std::string const& name) { return "." + name + ".kovsim-"; }

// True if the open folder is still the one under that name.
bool IsSame(int descriptor, std::string const& path) {
    struct stat open = {};
    struct stat named = {};
    return fstat(descriptor, &open) == 0 && lstat(path.c_str(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

// The innermost document among a folder and those above it; empty without one. Links and `..` are
// followed first, as they are when the folder is written into.
fs::path DocumentAround(std::string const& name) {
    std::error_code error;
    fs::path folder = fs::canonical(name, error);
    if (error) return {};
    for (;; folder = folder.parent_path()) {
        if (fs::is_regular_file(folder / "catalog.sqlite", error)) return folder;
        if (!folder.has_relative_path()) return {};
    }
}

}  // namespace

void SyncFolder(std::string const& path) {
    int const descriptor = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    int const result = fsync(descriptor);
    int const error = errno;
    close(descriptor);
    // A file system that cannot sync folders says EINVAL.
    if (result != 0 && error != EINVAL) {
        throw Failure(path + ": cannot make its content lasting: " + ErrorText(error));
    }
}

OutputPlace::OutputPlace(std::string const& target) : m_target(target) {
    while (m_target.size() > 1 && m_target.back() == '/') m_target.pop_back();
    fs::path const path(m_target);
    m_name = path.filename().string();
    m_parent = path.has_parent_path() ? path.parent_path().string() : ".";
    if (m_name.empty() || m_name == "." || m_name == "..") {
        throw Failure("'" + target + "' cannot be the name of an output");
    }
    struct stat found = {};
    if (lstat(m_target.c_str(), &found) == 0) {
        throw Failure(m_target + ": exists already; remove it, or choose another name");
    }
    if (stat(m_parent.c_str(), &found) != 0 || !S_ISDIR(found.st_mode)) {
        throw Failure(m_target + ": there is no folder " + m_parent);
    }
    // A document is a folder of its own: nothing else is put into it.
    if (fs::path const document = DocumentAround(m_parent); !document.empty()) {
        throw Failure(m_target + ": lies inside the document " + document.string() +
                      "; expected a place outside of documents");
    }
    RemoveLeftovers();
    MakeLockedFolder();
    m_path = m_folder + "/" + m_name;
}

OutputPlace::~OutputPlace() { Remove(); }

void OutputPlace::RemoveLeftovers() const {
    std::error_code error;
    std::string const prefix = Prefix(m_name);
    for (fs::directory_iterator at(m_parent, error), end; !error && at != end;
         at.increment(error)) {
        std::string const name = at->path().filename().string();
        if (name.compare(0, prefix.size(), prefix) != 0 || name.size() != prefix.size() + 6)
            continue;
        int const descriptor =
            open(at->path().c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (descriptor < 0) continue;
        // Whoever holds the lock is at work in there.
        if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
            std::error_code ignored;
            fs::remove_all(at->path(), ignored);
        }
        close(descriptor);
    }
}

void OutputPlace::MakeLockedFolder() {
    static bool const registered = std::atexit(RemoveLivingFolders) == 0;
    static_cast<void>(registered);
    // Another run may take a fresh folder for a leftover until it is locked; then a new one is
    // made.
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string pattern = m_parent + "/" + Prefix(m_name) + "XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            throw Failure(m_target + ": cannot write into " + m_parent + ": " + ErrorText(errno));
        }
        int const descriptor =
            open(pattern.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (descriptor < 0) continue;
        if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 && IsSame(descriptor, pattern)) {
            m_folder = pattern;
            m_lock = descriptor;
            LivingFolders().push_back(m_folder);
            return;
        }
        close(descriptor);
    }
    throw Failure(m_target + ": cannot make a temporary folder in " + m_parent);
}

void OutputPlace::Publish() {
    if (renameat2(AT_FDCWD, m_path.c_str(), AT_FDCWD, m_target.c_str(), RENAME_NOREPLACE) != 0) {
        int error = errno;
        struct stat found = {};
        // Some file systems cannot rename without replacing: there the name is looked at once more.
        if (error == EINVAL && lstat(m_target.c_str(), &found) != 0) {
            error = rename(m_path.c_str(), m_target.c_str()) == 0 ? 0 : errno;
        }
        if (error == EEXIST || error == EINVAL) {
            throw Failure(m_target + ": was made by someone else meanwhile, and is left alone");
        }
        if (error != 0) throw Failure(m_target + ": cannot rename the output: " + ErrorText(error));
    }
    Remove();
    SyncFolder(m_parent);
}

void OutputPlace::Remove() noexcept {
    if (m_folder.empty()) return;
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
    std::erase(LivingFolders(), m_folder);
    m_folder.clear();
    if (m_lock >= 0) close(m_lock);
    m_lock = -1;
}

}  // namespace kov::tool
