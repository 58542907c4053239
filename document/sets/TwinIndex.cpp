#include "document/sets/TwinIndex.h"

#include <algorithm>

namespace kov::sets {

void TwinIndex::Clear() {
    m_built = false;
    m_numbers.clear();
    m_growing.clear();
}

std::vector<int> TwinIndex::Candidates(int collection, std::uint64_t hash) const {
    std::vector<int> numbers;
    auto const found = m_numbers.equal_range(Key(collection, hash));
    for (auto at = found.first; at != found.second; ++at) numbers.push_back(at->second);
    auto const growing = m_growing.find(collection);
    if (growing != m_growing.end())
        numbers.insert(numbers.end(), growing->second.begin(), growing->second.end());
    std::sort(numbers.begin(), numbers.end(), [](int a, int b) {
        if ((a < 0) != (b < 0)) return b < 0;
        return a < 0 ? a > b : a < b;
    });
    return numbers;
}

}  // namespace kov::sets
