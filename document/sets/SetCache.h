// SetCache: the sets used last, within a bound of bytes; two are kept whatever their size, since
// sets are mostly used in pairs. Private to SetStore.
#pragma once

#include <cstddef>
#include <list>
#include <unordered_map>

#include "document/sets/IndexSet.h"

namespace kov::sets {

class SetCache {
  public:
    struct Entry {
        int number;
        int collection;
        IndexSetPtr members;
        std::size_t bytes;
    };

    explicit SetCache(std::size_t limit) : m_limit(limit) {}

    /// The entry of a set, now the one used last; null if it is not here. Valid until the next
    /// call.
    Entry const* Find(int number);
    void Put(int number, int collection, IndexSetPtr members);
    void Clear();
    std::size_t Bytes() const { return m_bytes; }

  private:
    std::size_t m_limit;
    std::size_t m_bytes = 0;
    std::list<Entry> m_entries;  // used last at the front
    std::unordered_map<int, std::list<Entry>::iterator> m_places;
};

}  // namespace kov::sets
