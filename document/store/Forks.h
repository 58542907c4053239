// Forks: tells whether this process is a fork of the one that made something. A context of the
// parent must not be touched in the child: its locks and its catalogue's connection belong to the
// parent.
#pragma once

#include <atomic>

namespace kov::store {

/// Goes up by one in each child that is forked.
extern std::atomic<unsigned> g_forks;

inline unsigned ForkGeneration() { return g_forks.load(std::memory_order_relaxed); }
/// Puts the handler in, once.
void WatchForks();
/// Closes the descriptors of inherited locks without unlocking. Runs in the child, between fork and
/// anything else.
void CloseLocksInChild();

}  // namespace kov::store
