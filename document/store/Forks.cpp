#include "document/store/Forks.h"

#include <pthread.h>

#include <mutex>

namespace kov::store {

std::atomic<unsigned> g_forks{0};

void WatchForks() {
    static std::once_flag once;
    std::call_once(once, [] {
        ::pthread_atfork(nullptr, nullptr, [] {
            g_forks.fetch_add(1, std::memory_order_relaxed);
            CloseLocksInChild();
        });
    });
}

}  // namespace kov::store
