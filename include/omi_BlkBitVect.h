// A set of non-negative numbers as bits in 64-bit blocks; grows as bits are set.
//
// Blocks above the highest set bit are never kept, so that equal sets are equal block by block.
#pragma once

#include <cstdint>

#include "KOVBasVector.h"
#include "KOVExport.h"

class KOV_EXPORT omi_BlkBitVect {
  public:
    /// Puts `bit` into the set. Throws KOVSimException if it is negative.
    void SetBit(int bit);
    /// Whether `bit` is in the set; false for a negative one.
    bool TestBit(int bit) const;

    /// A total order: that of the two sets read as binary numbers. Negative, 0 or positive as this
    /// set stands before, with or behind `other`.
    int Compare(omi_BlkBitVect const& other) const;

  private:
    KOVBasVector<std::uint64_t> m_blocks;
};
