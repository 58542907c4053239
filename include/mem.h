// The allocation family of the system: every object and every bulk buffer comes from here.
//
// All members of the family hand out blocks of one kind, so that mem_Free takes back whatever any
// of them gave. Large blocks are aligned to huge pages and advised so: filling fresh memory is
// otherwise bound by the page faults of 4 KiB pages and not by the memory itself.
//
// Callable from any thread.
#pragma once

#include <cstddef>
#include <new>

#include "KOVExport.h"

/// A block of `size` bytes, aligned for every plain type, contents undefined. A size of 0 gives a
/// block that may be freed and not be used. Null when memory is exhausted. The caller frees the
/// block with mem_Free.
KOV_EXPORT void* mem_Malloc(std::size_t size) noexcept;

/// Frees a block of any member of the family. Null is accepted and does nothing.
KOV_EXPORT void mem_Free(void* pointer) noexcept;

/// As mem_Malloc, for objects of classes; throws std::bad_alloc when memory is exhausted.
KOV_EXPORT void* mem_OperatorNewThrow(std::size_t size);

/// As mem_OperatorNewThrow, for arrays of plain numbers and pointers.
KOV_EXPORT void* mem_OperatorNewThrowBuiltin(std::size_t size);

/// As mem_OperatorNewThrow, for many small blocks; any size is served.
KOV_EXPORT void* mem_OperatorNewTinyThrow(std::size_t size);

/// Empty base of classes whose `new` and `delete` go through the family.
class mem_AllocationOperators {
  public:
    static void* operator new(std::size_t size) { return mem_OperatorNewThrow(size); }
    static void* operator new[](std::size_t size) { return mem_OperatorNewThrow(size); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void* operator new[](std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* pointer) noexcept { mem_Free(pointer); }
    static void operator delete[](void* pointer) noexcept { mem_Free(pointer); }
    static void operator delete(void*, void*) noexcept {}
    static void operator delete[](void*, void*) noexcept {}
};
