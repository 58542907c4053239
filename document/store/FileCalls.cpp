#include "document/store/FileCalls.h"

#include <cerrno>

#include "document/store/Files.h"

namespace kov::store {

namespace {
FileObserver* g_observer = nullptr;
}

void SetFileObserver(FileObserver* observer) { g_observer = observer; }
FileObserver* CurrentFileObserver() { return g_observer; }

int AskObserver(FileCall const& call, std::size_t& allowed) {
    if (!g_observer) return 0;
    int const error = g_observer->Before(call, allowed);
    return error == 0 && allowed < call.bytes ? ENOSPC : error;
}

void TellObserver(FileCall const& call) {
    if (g_observer) g_observer->After(call);
}

}  // namespace kov::store
