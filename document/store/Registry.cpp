#include "document/store/Registry.h"

#include <atomic>
#include <vector>

#include "document/store/Errors.h"
#include "document/store/Forks.h"

namespace kov::store {

namespace {

struct Slot {
    std::atomic<std::uintptr_t> id{0};
    std::atomic<Context*> context{nullptr};
};

constexpr std::uintptr_t SlotBits = 16;
constexpr std::size_t ChunkSlots = 256;
constexpr std::size_t Chunks = (std::size_t{1} << SlotBits) / ChunkSlots;

std::atomic<Slot*> g_chunks[Chunks];  // never freed: a stale handle may be looked up at any time
std::mutex g_mutex;
std::uintptr_t g_serial = 0;
std::size_t g_slots = 0;
std::vector<std::size_t> g_free;

Slot* SlotOf(std::uintptr_t id) {
    std::size_t const number = id & ((std::uintptr_t{1} << SlotBits) - 1);
    Slot* const chunk = g_chunks[number / ChunkSlots].load(std::memory_order_acquire);
    return chunk ? &chunk[number % ChunkSlots] : nullptr;
}

struct OpenFolder {
    FolderIdentity folder;
    std::weak_ptr<Context> context;
    unsigned forks;
};
std::vector<OpenFolder>& OpenFolders() {
    static auto* const folders =
        new std::vector<OpenFolder>;  // outlives contexts in static storage
    return *folders;
}

}  // namespace

KOVSimContextID Register(Context* context) {
    WatchForks();
    std::lock_guard const lock(g_mutex);
    std::size_t number;
    if (g_free.empty()) {
        number = g_slots;
        if (number == Chunks * ChunkSlots) Fail("cannot open another document: too many are open");
        if (number % ChunkSlots == 0)
            g_chunks[number / ChunkSlots].store(new Slot[ChunkSlots], std::memory_order_release);
        ++g_slots;
    } else {
        number = g_free.back();
        g_free.pop_back();
    }
    KOVSimContextID const id{++g_serial << SlotBits | number};
    Slot* const slot = SlotOf(id.value);
    slot->context.store(context, std::memory_order_relaxed);
    slot->id.store(id.value, std::memory_order_release);
    return id;
}

void Unregister(KOVSimContextID id) {
    if (id.IsNull()) return;
    std::lock_guard const lock(g_mutex);
    Slot* const slot = SlotOf(id.value);
    if (!slot || slot->id.load(std::memory_order_relaxed) != id.value) return;
    slot->id.store(0, std::memory_order_release);
    slot->context.store(nullptr, std::memory_order_relaxed);
    g_free.push_back(id.value & ((std::uintptr_t{1} << SlotBits) - 1));
}

Context* Registered(KOVSimContextID id) {
    Slot const* const slot = SlotOf(id.value);
    if (!slot || slot->id.load(std::memory_order_acquire) != id.value || id.value == 0)
        return nullptr;
    return slot->context.load(std::memory_order_relaxed);
}

bool WasRegistered(KOVSimContextID id) {
    std::lock_guard const lock(g_mutex);
    std::uintptr_t const serial = id.value >> SlotBits;
    return serial >= 1 && serial <= g_serial;
}

std::recursive_mutex& OpenMutex() {
    static auto* const mutex = new std::recursive_mutex;
    return *mutex;
}

void Announce(FolderIdentity const& folder, std::weak_ptr<Context> context, unsigned forks) {
    std::lock_guard const lock(OpenMutex());
    OpenFolders().push_back({folder, std::move(context), forks});
}

void Withdraw(FolderIdentity const& folder) {
    std::lock_guard const lock(OpenMutex());
    std::erase_if(OpenFolders(), [&](OpenFolder const& open) {
        return open.folder == folder && open.forks == ForkGeneration();
    });
}

Sharing FindShared(FolderIdentity const& folder, std::shared_ptr<Context>& context) {
    for (OpenFolder const& open : OpenFolders()) {
        if (open.folder != folder) continue;
        if (open.forks != ForkGeneration()) return Sharing::OfParent;
        context = open.context.lock();
        if (context) return Sharing::Open;
    }
    return Sharing::None;
}

}  // namespace kov::store
