// A recorder of what a process does to the files below a folder, and what a power cut may leave of
// it. It stands in the store's file seam. `Rebuild` makes the folder as it may be found after a cut
// behind the first `n` operations:
//
//  - data of a file is sure to be there up to its last sync; of what was written or cut since, a
//  random part is there, also
//    parts of single writes (in sectors of 512 bytes);
//  - entries of a folder are sure up to the folder's last sync; of what was created, renamed and
//  removed since, a random
//    number of the first ones has happened.
//
// Marks tell how far the script had come at an operation: `LastMark(n)` is what had been promised
// when the power went.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "document/store/FileCalls.h"

namespace kov::test {

class PowerLoss : public store::FileObserver {
  public:
    /// Records what happens below `root`. What stands there already is taken as synced.
    explicit PowerLoss(std::string root);
    ~PowerLoss() override;
    PowerLoss(PowerLoss const&) = delete;
    PowerLoss& operator=(PowerLoss const&) = delete;

    /// Puts itself into the seam and takes itself out.
    void Start();
    void Stop();

    /// From here on `value` is promised.
    void Mark(int value) { m_marks.emplace_back(m_operations.size(), value); }
    /// The last mark set at or before operation `n`; `none` if there is none.
    int LastMark(std::size_t n, int none) const;

    std::size_t Operations() const { return m_operations.size(); }
    /// What operation `i` was, for messages.
    std::string Describe(std::size_t i) const;
    /// Makes `target` (which is emptied) as the root may be found. The same seed makes the same.
    void Rebuild(std::size_t n, std::uint64_t seed, std::string const& target) const;

    int Before(store::FileCall const& call, std::size_t& allowed) override;
    void After(store::FileCall const& call) override;

  private:
    struct Operation {
        store::FileCall::Kind kind;
        std::string path;  // below the root, "" is the root
        std::string target;
        std::int64_t offset = 0;
        std::string data;
    };
    class Replay;

    bool Below(std::string const& path, std::string& relative) const;

    std::string m_root;
    std::vector<Operation> m_operations;
    std::vector<std::pair<std::size_t, int>> m_marks;
    std::map<std::string, std::string> m_files;  // what stood there at the start
    std::vector<std::string> m_folders;
};

}  // namespace kov::test
