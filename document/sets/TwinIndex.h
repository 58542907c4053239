// TwinIndex: which registered sets may have given members: by collection and hash of the members.
// Whoever finds a candidate compares it. Private to SetStore.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace kov::sets {

class TwinIndex {
  public:
    bool IsBuilt() const { return m_built; }
    void SetBuilt() { m_built = true; }
    void Clear();

    void Add(int collection, std::uint64_t hash, int number) {
        m_numbers.emplace(Key(collection, hash), number);
    }
    void AddGrowing(int collection, int number) { m_growing[collection].push_back(number); }

    /// Numbers to compare: persistent ones ascending, growing ones among them, then temporary ones
    /// from -2 downward.
    std::vector<int> Candidates(int collection, std::uint64_t hash) const;

  private:
    static std::uint64_t Key(int collection, std::uint64_t hash) {
        return hash ^ (static_cast<std::uint64_t>(static_cast<std::uint32_t>(collection)) *
                       0x9e3779b97f4a7c15u);
    }

    bool m_built = false;
    std::unordered_multimap<std::uint64_t, int> m_numbers;
    std::unordered_map<int, std::vector<int>> m_growing;
};

}  // namespace kov::sets
