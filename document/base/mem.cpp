#include "mem.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr std::size_t kHugePage = std::size_t{2} << 20;
// From here on a block is aligned and advised. Measured: filling 1 GiB of fresh memory takes 0.1 s
// to 0.2 s instead of 0.5 s, once the host of a virtual machine has its own memory at hand, and 5
// MiB 0.2 ms instead of 2.2 ms.
constexpr std::size_t kLargeBlock = std::size_t{4} << 20;

void* LargeBlock(std::size_t size) noexcept {
    // Whole huge pages: a tail of small ones would cost as much as all the rest.
    std::size_t const rounded = (size + kHugePage - 1) / kHugePage * kHugePage;
    void* block = nullptr;
    if (rounded < size || posix_memalign(&block, kHugePage, rounded) != 0) return nullptr;
    // An advice only: where huge pages are not to be had the block is as good as any.
    (void)madvise(block, rounded, MADV_HUGEPAGE);
    return block;
}

void* OrThrow(void* block) {
    if (!block) throw std::bad_alloc();
    return block;
}

}  // namespace

void* mem_Malloc(std::size_t size) noexcept {
    if (size >= kLargeBlock) return LargeBlock(size);
    return std::malloc(std::max<std::size_t>(size, 1));
}

void mem_Free(void* pointer) noexcept { std::free(pointer); }

void* mem_OperatorNewThrow(std::size_t size) { return OrThrow(mem_Malloc(size)); }

void* mem_OperatorNewThrowBuiltin(std::size_t size) { return OrThrow(mem_Malloc(size)); }

void* mem_OperatorNewTinyThrow(std::size_t size) { return OrThrow(mem_Malloc(size)); }
