#define XXH_INLINE_ALL
#include "document/store/PageSums.h"

#include <xxhash.h>

namespace kov::store {

std::uint64_t Sum(void const* data, std::size_t bytes) { return XXH3_64bits(data, bytes); }

std::uint64_t SeededSum(void const* data, std::size_t bytes, std::uint64_t seed) {
    return XXH3_64bits_withSeed(data, bytes, seed);
}

}  // namespace kov::store
