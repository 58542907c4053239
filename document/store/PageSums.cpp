#include "document/store/PageSums.h"

// Where the library brings its dispatcher, the vector instructions of the processor at hand are
// used: 50 GB/s in the cache instead of 18 with those that every x86-64 processor has.
#if defined(__x86_64__) && __has_include(<xxh_x86dispatch.h>)
#include <xxh_x86dispatch.h>
#else
#define XXH_INLINE_ALL
#include <xxhash.h>
#endif

namespace kov::store {

std::uint64_t Sum(void const* data, std::size_t bytes) { return XXH3_64bits(data, bytes); }

std::uint64_t SeededSum(void const* data, std::size_t bytes, std::uint64_t seed) {
    return XXH3_64bits_withSeed(data, bytes, seed);
}

}  // namespace kov::store
