#include "store/PowerLoss.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <utility>

namespace kov::test {

using store::FileCall;
namespace fs = std::filesystem;

namespace {

constexpr std::size_t Sector = 512;

void Put(std::string& content, std::int64_t offset, char const* data, std::size_t bytes) {
    auto const end = static_cast<std::size_t>(offset) + bytes;
    if (content.size() < end) content.resize(end);
    std::copy(data, data + bytes, content.begin() + offset);
}

std::pair<std::string, std::string> Split(std::string const& path) {
    std::size_t const slash = path.rfind('/');
    return slash == std::string::npos ? std::pair{std::string(), path}
                                      : std::pair{path.substr(0, slash), path.substr(slash + 1)};
}

}  // namespace

/// The files as objects: names lead to them, so that a renamed folder or a removed file that is
/// still open goes on.
class PowerLoss::Replay {
  public:
    explicit Replay(PowerLoss const& log) {
        m_nodes.push_back({true});
        for (std::string const& folder : log.m_folders) Durable(folder, true);
        for (auto const& [path, content] : log.m_files)
            m_nodes[Durable(path, false)].durable = content;
    }

    void Do(Operation const& o) {
        switch (o.kind) {
            case FileCall::Create:
            case FileCall::MakeFolder: {
                std::size_t const node = m_nodes.size();
                m_nodes.push_back({o.kind == FileCall::MakeFolder});
                auto const [folder, name] = Split(o.path);
                Change(Find(folder), {name, node});
                break;
            }
            case FileCall::Remove: {
                auto const [folder, name] = Split(o.path);
                Change(Find(folder), {name, None});
                break;
            }
            case FileCall::Rename: {
                auto const [from, oldName] = Split(o.path);
                auto const [to, newName] = Split(o.target);
                if (from != to) throw std::runtime_error("a rename between folders");
                std::size_t const node = Find(o.path);
                // One change with two names.
                Node& folder = m_nodes[Find(from)];
                folder.live.erase(oldName);
                folder.live[newName] = node;
                folder.changes.push_back({newName, node, oldName});
                break;
            }
            case FileCall::Write:
            case FileCall::Truncate:
                m_nodes[Find(o.path)].writes.push_back(&o);
                break;
            case FileCall::Sync: {
                Node& file = m_nodes[Find(o.path)];
                for (Operation const* write : file.writes) Apply(file.durable, *write);
                file.writes.clear();
                break;
            }
            case FileCall::SyncFolder: {
                Node& folder = m_nodes[Find(o.path)];
                folder.durableEntries = folder.live;
                folder.changes.clear();
                break;
            }
            default:
                break;
        }
    }

    void Leave(std::string const& target, std::mt19937_64& random) {
        fs::remove_all(target);
        fs::create_directories(target);
        LeaveFolder(m_nodes[0], target, random);
    }

  private:
    static constexpr std::size_t None = static_cast<std::size_t>(-1);
    struct Entry {
        std::string name;
        std::size_t node;       // None: removed
        std::string oldName{};  // of a rename
    };
    struct Node {
        bool isFolder;
        std::string durable{};
        std::vector<Operation const*> writes{};  // not synced
        std::map<std::string, std::size_t> live{};
        std::map<std::string, std::size_t> durableEntries{};
        std::vector<Entry> changes{};  // not synced
    };

    std::size_t Durable(std::string const& path, bool isFolder) {
        std::size_t const node = m_nodes.size();
        m_nodes.push_back({isFolder});
        auto const [folder, name] = Split(path);
        Node& parent = m_nodes[Find(folder)];
        parent.live[name] = node;
        parent.durableEntries[name] = node;
        return node;
    }

    std::size_t Find(std::string const& path) const {
        std::size_t node = 0;
        std::size_t at = 0;
        while (at < path.size()) {
            std::size_t const end = std::min(path.find('/', at), path.size());
            auto const entry = m_nodes[node].live.find(path.substr(at, end - at));
            if (entry == m_nodes[node].live.end())
                throw std::runtime_error("no file " + path + " in the recording");
            node = entry->second;
            at = end + 1;
        }
        return node;
    }

    void Change(std::size_t folder, Entry entry) {
        Node& node = m_nodes[folder];
        Follow(node.live, entry);
        node.changes.push_back(std::move(entry));
    }

    static void Follow(std::map<std::string, std::size_t>& entries, Entry const& entry) {
        if (!entry.oldName.empty()) entries.erase(entry.oldName);
        if (entry.node == None) {
            entries.erase(entry.name);
        } else {
            entries[entry.name] = entry.node;
        }
    }

    static void Apply(std::string& content, Operation const& o) {
        if (o.kind == FileCall::Truncate) {
            content.resize(static_cast<std::size_t>(o.offset));
        } else {
            Put(content, o.offset, o.data.data(), o.data.size());
        }
    }

    static void ApplyPart(std::string& content, Operation const& o, std::mt19937_64& random) {
        switch (random() % 4) {
            case 0:
                return;
            case 1:
                if (o.kind == FileCall::Write) {
                    for (std::size_t at = 0; at < o.data.size(); at += Sector) {
                        if (random() % 2) continue;
                        Put(content, o.offset + static_cast<std::int64_t>(at), o.data.data() + at,
                            std::min(Sector, o.data.size() - at));
                    }
                    return;
                }
                [[fallthrough]];
            default:
                Apply(content, o);
        }
    }

    void LeaveFolder(Node const& folder, std::string const& target, std::mt19937_64& random) {
        auto entries = folder.durableEntries;
        std::size_t const done =
            folder.changes.empty() ? 0 : random() % (folder.changes.size() + 1);
        for (std::size_t i = 0; i < done; ++i) Follow(entries, folder.changes[i]);
        for (auto const& [name, number] : entries) {
            Node const& node = m_nodes[number];
            std::string const path = target + "/" + name;
            if (node.isFolder) {
                fs::create_directory(path);
                LeaveFolder(node, path, random);
                continue;
            }
            std::string content = node.durable;
            // Either all that was written has reached the disk, or nothing, or some of it.
            std::uint64_t const luck = random() % 4;
            for (Operation const* write : node.writes) {
                if (luck == 1) Apply(content, *write);
                if (luck >= 2) ApplyPart(content, *write, random);
            }
            std::ofstream(path, std::ios::binary)
                .write(content.data(), static_cast<std::streamsize>(content.size()));
        }
    }

    std::vector<Node> m_nodes;
};

PowerLoss::PowerLoss(std::string root) : m_root(std::move(root)) {
    for (auto const& entry : fs::recursive_directory_iterator(m_root)) {
        std::string const relative = fs::relative(entry.path(), m_root).string();
        if (entry.is_directory()) {
            m_folders.push_back(relative);
        } else {
            std::ifstream in(entry.path(), std::ios::binary);
            m_files[relative] = std::string(std::istreambuf_iterator<char>(in), {});
        }
    }
    std::sort(m_folders.begin(), m_folders.end());
}

PowerLoss::~PowerLoss() { Stop(); }

void PowerLoss::Start() { store::SetFileObserver(this); }

void PowerLoss::Stop() {
    if (store::CurrentFileObserver() == this) store::SetFileObserver(nullptr);
}

int PowerLoss::LastMark(std::size_t n, int none) const {
    int last = none;
    for (auto const& [at, value] : m_marks) {
        if (at <= n) last = value;
    }
    return last;
}

std::string PowerLoss::Describe(std::size_t i) const {
    static constexpr char const* Names[] = {"open",   "create", "make folder", "read",
                                            "write",  "sync",   "sync folder", "truncate",
                                            "rename", "remove", "lock"};
    Operation const& o = m_operations[i];
    return std::string(Names[o.kind]) + " " + o.path + " at " + std::to_string(o.offset) + ", " +
           std::to_string(o.data.size()) + " bytes";
}

bool PowerLoss::Below(std::string const& path, std::string& relative) const {
    if (path == m_root) {
        relative.clear();
        return true;
    }
    if (path.compare(0, m_root.size() + 1, m_root + "/") != 0) return false;
    relative = path.substr(m_root.size() + 1);
    return true;
}

int PowerLoss::Before(FileCall const&, std::size_t&) { return 0; }

void PowerLoss::After(FileCall const& call) {
    switch (call.kind) {
        case FileCall::Open:
        case FileCall::Read:
        case FileCall::Lock:
            return;
        default:
            break;
    }
    Operation o{call.kind, {}, {}, call.offset, {}};
    if (!Below(call.path, o.path)) return;
    if (call.target && !Below(*call.target, o.target))
        throw std::runtime_error("a rename out of the recorded folder");
    // The index of the log is never looked at after a cut; it is made anew.
    if (o.path.size() > 4 && o.path.compare(o.path.size() - 4, 4, "-shm") == 0) return;
    if (call.data) o.data.assign(static_cast<char const*>(call.data), call.bytes);
    m_operations.push_back(std::move(o));
}

void PowerLoss::Rebuild(std::size_t n, std::uint64_t seed, std::string const& target) const {
    Replay replay(*this);
    for (std::size_t i = 0; i < n; ++i) replay.Do(m_operations[i]);
    std::mt19937_64 random(seed);
    replay.Leave(target, random);
}

}  // namespace kov::test
