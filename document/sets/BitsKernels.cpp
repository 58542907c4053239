#include "document/sets/BitsKernels.h"

#include <bit>

// A loop's body is written once, inlined into a function for the processor that is built for and
// into one for processors with the instructions to count and find ones (all made since 2013).
#define KOV_INLINE inline __attribute__((always_inline))
#if defined(__x86_64__)
#define KOV_WITH_POPCNT __attribute__((target("popcnt,bmi,avx2")))
#define KOV_PICK(name, ...) (HasPopcnt() ? name##Popcnt(__VA_ARGS__) : name##Plain(__VA_ARGS__))
#else
#define KOV_WITH_POPCNT
#define KOV_PICK(name, ...) name##Plain(__VA_ARGS__)
#endif

namespace kov::sets {

namespace {

#if defined(__x86_64__)
bool HasPopcnt() {
    static bool const has = __builtin_cpu_supports("popcnt") && __builtin_cpu_supports("bmi") &&
                            __builtin_cpu_supports("avx2");
    return has;
}
#endif

template <WordOp op>
KOV_INLINE int CombineBody(uint64_t const* a, uint64_t const* b, uint64_t* out) {
    int ones = 0;
    for (int w = 0; w < kBitsetWords; ++w) {
        uint64_t const word = op == WordOp::And  ? a[w] & b[w]
                              : op == WordOp::Or ? a[w] | b[w]
                                                 : a[w] & ~b[w];
        out[w] = word;
        ones += __builtin_popcountll(word);
    }
    return ones;
}

KOV_INLINE int CombineAny(WordOp op, uint64_t const* a, uint64_t const* b, uint64_t* out) {
    switch (op) {
        case WordOp::And:
            return CombineBody<WordOp::And>(a, b, out);
        case WordOp::Or:
            return CombineBody<WordOp::Or>(a, b, out);
        default:
            return CombineBody<WordOp::AndNot>(a, b, out);
    }
}

KOV_INLINE int CountBody(uint64_t const* words, int n) {
    int ones = 0;
    for (int w = 0; w < n; ++w) ones += __builtin_popcountll(words[w]);
    return ones;
}

KOV_INLINE int StartsBody(uint64_t const* words, uint64_t carry) {
    int starts = 0;
    for (int w = 0; w < kBitsetWords; ++w) {
        starts += __builtin_popcountll(words[w] & ~(words[w] << 1 | carry));
        carry = words[w] >> 63;
    }
    return starts;
}

// Words of sparse results have none, one or two ones at random: writing four places each time and
// moving on by the count is three times as fast as a loop that ends where the ones do.
KOV_INLINE void ListBody(uint64_t const* words, uint16_t* out) {
    for (int w = 0; w < kBitsetWords; ++w) {
        uint64_t word = words[w];
        int const ones = __builtin_popcountll(word);
        for (int k = 0; k < kListSlack; ++k, word &= word - 1) {
            out[k] = static_cast<uint16_t>((w << 6) + std::countr_zero(word));
        }
        for (int k = kListSlack; word != 0; ++k, word &= word - 1) {
            out[k] = static_cast<uint16_t>((w << 6) + std::countr_zero(word));
        }
        out += ones;
    }
}

KOV_INLINE int RankBody(uint64_t const* words, int& rank) {
    for (int w = 0;; ++w) {
        int const ones = __builtin_popcountll(words[w]);
        if (rank < ones) return w;
        rank -= ones;
    }
}

int CombinePlain(WordOp op, uint64_t const* a, uint64_t const* b, uint64_t* out) {
    return CombineAny(op, a, b, out);
}
int CountPlain(uint64_t const* words, int n) { return CountBody(words, n); }
int StartsPlain(uint64_t const* words, uint64_t carry) { return StartsBody(words, carry); }
void ListPlain(uint64_t const* words, uint16_t* out) { ListBody(words, out); }
int RankPlain(uint64_t const* words, int& rank) { return RankBody(words, rank); }

#if defined(__x86_64__)
KOV_WITH_POPCNT int CombinePopcnt(WordOp op, uint64_t const* a, uint64_t const* b, uint64_t* out) {
    return CombineAny(op, a, b, out);
}
KOV_WITH_POPCNT int CountPopcnt(uint64_t const* words, int n) { return CountBody(words, n); }
KOV_WITH_POPCNT int StartsPopcnt(uint64_t const* words, uint64_t carry) {
    return StartsBody(words, carry);
}
KOV_WITH_POPCNT void ListPopcnt(uint64_t const* words, uint16_t* out) { ListBody(words, out); }
KOV_WITH_POPCNT int RankPopcnt(uint64_t const* words, int& rank) { return RankBody(words, rank); }
#endif

}  // namespace

int CombineWords(WordOp op, uint64_t const* a, uint64_t const* b, uint64_t* out) {
    return KOV_PICK(Combine, op, a, b, out);
}
int CountOnes(uint64_t const* words, int n) { return KOV_PICK(Count, words, n); }
int CountStarts(uint64_t const* words, uint64_t carry) { return KOV_PICK(Starts, words, carry); }
void ListOnes(uint64_t const* words, uint16_t* out) { KOV_PICK(List, words, out); }
int WordOfRank(uint64_t const* words, int& rank) { return KOV_PICK(Rank, words, rank); }

}  // namespace kov::sets
