// Internal invariants of the document layer: checked in debug builds only.
//
// Not one of the assertion forms of KOVAssert.h: those are contract with callers, stand in every
// build and have texts of their own. A broken invariant is a fault of this code. For the rooms of
// the document layer.
#pragma once

namespace kov::base {

/// Prints the invariant and its place, and aborts.
[[noreturn]] void InvariantBroken(char const* invariant, char const* file, int line);

}  // namespace kov::base

#ifdef NDEBUG
// Not evaluated, but still compiled, so that it cannot rot.
#define KOV_INVARIANT(...) static_cast<void>(sizeof((__VA_ARGS__) ? 1 : 0))
#else
#define KOV_INVARIANT(...) \
    ((__VA_ARGS__) ? void() : ::kov::base::InvariantBroken(#__VA_ARGS__, __FILE__, __LINE__))
#endif
