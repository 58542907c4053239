#include "omi_BlkBitVect.h"

void omi_BlkBitVect::SetBit(int bit) {
    if (bit < 0) KOVSimException::ThrowText("omi_BlkBitVect::SetBit: the bit is negative");
    if (bit / 64 >= m_blocks.Size()) m_blocks.Resize(bit / 64 + 1);
    m_blocks[bit / 64] |= std::uint64_t{1} << (bit % 64);
}

bool omi_BlkBitVect::TestBit(int bit) const {
    return bit >= 0 && bit / 64 < m_blocks.Size() && (m_blocks[bit / 64] >> (bit % 64) & 1U) != 0;
}

int omi_BlkBitVect::Compare(omi_BlkBitVect const& other) const {
    if (m_blocks.Size() != other.m_blocks.Size()) {
        return m_blocks.Size() < other.m_blocks.Size() ? -1 : 1;
    }
    for (int i = m_blocks.Size() - 1; i >= 0; --i) {
        if (m_blocks[i] != other.m_blocks[i]) return m_blocks[i] < other.m_blocks[i] ? -1 : 1;
    }
    return 0;
}
