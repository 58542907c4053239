// VerifiedPages: which pages of a segment's blocks have been checked since the document was opened.
// A table from the offset at which 64 pages of a block begin to their 64 bits: 16 bytes for each 4
// MiB or smaller block that was touched, and one look-up for each stretch that is read. Private to
// BlockStore.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kov::store {

class VerifiedPages {
  public:
    /// The bits of the 64 pages that begin at `offset` (> 0) of the segment. Valid until the next
    /// call.
    std::uint64_t& Bits(std::int64_t offset) {
        if (m_slots.empty() || m_used * 2 >= m_slots.size()) Grow();
        Slot& slot = Find(offset);
        if (slot.offset == 0) {
            slot.offset = offset;
            ++m_used;
        }
        return slot.bits;
    }
    /// Forgets everything from `offset` on.
    void ForgetFrom(std::int64_t offset);

  private:
    struct Slot {
        std::int64_t offset = 0;
        std::uint64_t bits = 0;
    };
    Slot& Find(std::int64_t offset) {
        std::size_t const mask = m_slots.size() - 1;
        auto place = static_cast<std::size_t>(
                         (static_cast<std::uint64_t>(offset) * 0x9E3779B97F4A7C15u) >> 32) &
                     mask;
        while (m_slots[place].offset != 0 && m_slots[place].offset != offset)
            place = (place + 1) & mask;
        return m_slots[place];
    }
    void Grow();

    std::vector<Slot> m_slots;
    std::size_t m_used = 0;
};

}  // namespace kov::store
