#include "document/store/VerifiedPages.h"

#include <algorithm>
#include <utility>

namespace kov::store {

void VerifiedPages::Grow() {
    std::vector<Slot> const old =
        std::exchange(m_slots, std::vector<Slot>(std::max<std::size_t>(64, m_slots.size() * 2)));
    for (Slot const& slot : old) {
        if (slot.offset) Find(slot.offset) = slot;
    }
}

void VerifiedPages::ForgetFrom(std::int64_t offset) {
    std::vector<Slot> const old = std::exchange(m_slots, std::vector<Slot>(m_slots.size()));
    m_used = 0;
    for (Slot const& slot : old) {
        if (slot.offset == 0 || slot.offset >= offset) continue;
        Find(slot.offset) = slot;
        ++m_used;
    }
}

}  // namespace kov::store
