// PairIndex: how a pair becomes an index and back. Persisted in every document: do not change.
//
//   index = (fragment + 1) * 4096 + member        0 <= fragment, member <= 4095
//
// The first 4096 numbers stay free, so that 0, -1 and the small numbers that callers count with are
// never the index of anything.
#pragma once

namespace kov::schema {

constexpr int kPairRadix = 4096;

constexpr bool IsPair(int fragment, int member) noexcept {
    return fragment >= 0 && fragment < kPairRadix && member >= 0 && member < kPairRadix;
}

/// The index of a pair; -1 outside the range.
constexpr int IndexOfPair(int fragment, int member) noexcept {
    return IsPair(fragment, member) ? (fragment + 1) * kPairRadix + member : -1;
}

constexpr bool IsIndex(int index) noexcept {
    return index >= kPairRadix && index < (kPairRadix + 1) * kPairRadix;
}

constexpr int FragmentOf(int index) noexcept { return index / kPairRadix - 1; }
constexpr int MemberOf(int index) noexcept { return index % kPairRadix; }

}  // namespace kov::schema
