// The allocation of the omi_ tables: the mem_ family.
#pragma once

#include <cstddef>

#include "mem.h"

struct KOVBasOmiDefaultAllocator {
    static void* Allocate(std::size_t size) { return mem_OperatorNewThrow(size); }
    static void Free(void* pointer) noexcept { mem_Free(pointer); }
};
