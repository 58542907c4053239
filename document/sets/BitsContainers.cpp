#include "document/sets/BitsContainers.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <new>

#include "document/sets/BitsKernels.h"

namespace kov::sets {

namespace {

constexpr int kWords = kBitsetWords;
static_assert(kWords == BITSET_CONTAINER_SIZE_IN_WORDS);

array_container_t const& AsArray(void const* c) {
    return *static_cast<array_container_t const*>(c);
}
bitset_container_t const& AsBitset(void const* c) {
    return *static_cast<bitset_container_t const*>(c);
}
run_container_t const& AsRuns(void const* c) { return *static_cast<run_container_t const*>(c); }

template <class T>
T* Checked(T* made) {
    if (made == nullptr) throw std::bad_alloc();
    return made;
}

// Ones at [first, end) of a bitset.
void SetRange(uint64_t* words, int first, int end) {
    int const firstWord = first >> 6;
    int const lastWord = (end - 1) >> 6;
    uint64_t const firstMask = ~uint64_t{0} << (first & 63);
    uint64_t const lastMask = ~uint64_t{0} >> (63 - ((end - 1) & 63));
    if (firstWord == lastWord) {
        words[firstWord] |= firstMask & lastMask;
        return;
    }
    words[firstWord] |= firstMask;
    for (int w = firstWord + 1; w < lastWord; ++w) words[w] = ~uint64_t{0};
    words[lastWord] |= lastMask;
}

void CopyBitset(uint64_t const* words, int high, int first, int count, int* out) {
    if (count == 0) return;
    int skip = first;
    int w = first == 0 ? 0 : WordOfRank(words, skip);
    while (count > 0) {
        uint64_t word = words[w];
        int const base = high | (w << 6);
        for (; skip > 0; --skip) word &= word - 1;
        for (; word != 0 && count > 0; word &= word - 1, --count) {
            *out++ = base + std::countr_zero(word);
        }
        ++w;
    }
}

bool VisitBitsetRuns(uint64_t const* words, int high, RunBlock& block) {
    int w = 0;
    uint64_t word = words[0];
    while (true) {
        while (word == 0) {
            if (++w == kWords) return true;
            word = words[w];
        }
        int const first = (w << 6) + std::countr_zero(word);
        // Filling the zeros below the run leaves its end as the lowest zero.
        uint64_t filled = word | (word - 1);
        while (filled == ~uint64_t{0}) {
            if (++w == kWords) return block.Add(high | first, (high | 0xffff) + 1);
            filled = words[w];
        }
        int const end = (w << 6) + std::countr_one(filled);
        if (!block.Add(high | first, high + end)) return false;
        word = filled & (filled + 1);
    }
}

}  // namespace

void AppendMembers(roaring_array_t& array, int key, int const* members, size_t n) {
    auto const key16 = static_cast<uint16_t>(key);
    if (n > DEFAULT_MAX_SIZE) {
        bitset_container_t* c = Checked(bitset_container_create());
        for (size_t i = 0; i < n; ++i) {
            auto const low = static_cast<unsigned>(members[i]) & 0xffffU;
            c->array[low >> 6] |= uint64_t{1} << (low & 63U);
        }
        c->cardinality = static_cast<int32_t>(n);
        ra_append(&array, key16, c, BITSET_CONTAINER_TYPE_CODE);
        return;
    }
    array_container_t* c = Checked(array_container_create_given_capacity(static_cast<int32_t>(n)));
    for (size_t i = 0; i < n; ++i) c->array[i] = static_cast<uint16_t>(members[i]);
    c->cardinality = static_cast<int32_t>(n);
    ra_append(&array, key16, c, ARRAY_CONTAINER_TYPE_CODE);
}

void AppendRuns(roaring_array_t& array, int key, std::vector<Run> const& runs) {
    auto const key16 = static_cast<uint16_t>(key);
    int size = 0;
    for (Run const& run : runs) size += run.end - run.first;
    auto const count = static_cast<int32_t>(runs.size());
    if (count * 4 + 2 <= std::min(size * 2, 8 * kWords)) {
        run_container_t* c = Checked(run_container_create_given_capacity(count));
        for (int32_t i = 0; i < count; ++i) {
            Run const& run = runs[static_cast<size_t>(i)];
            c->runs[i] = {static_cast<uint16_t>(run.first),
                          static_cast<uint16_t>(run.end - run.first - 1)};
        }
        c->n_runs = count;
        ra_append(&array, key16, c, RUN_CONTAINER_TYPE_CODE);
    } else if (size <= DEFAULT_MAX_SIZE) {
        array_container_t* c = Checked(array_container_create_given_capacity(size));
        uint16_t* out = c->array;
        for (Run const& run : runs) {
            for (int low = run.first; low < run.end; ++low) *out++ = static_cast<uint16_t>(low);
        }
        c->cardinality = size;
        ra_append(&array, key16, c, ARRAY_CONTAINER_TYPE_CODE);
    } else {
        bitset_container_t* c = Checked(bitset_container_create());
        for (Run const& run : runs) SetRange(c->array, run.first, run.end);
        c->cardinality = size;
        ra_append(&array, key16, c, BITSET_CONTAINER_TYPE_CODE);
    }
}

int ContainerSize(roaring_array_t const& array, int32_t i) {
    void const* c = array.containers[i];
    switch (array.typecodes[i]) {
        case BITSET_CONTAINER_TYPE_CODE:
            return AsBitset(c).cardinality;
        case ARRAY_CONTAINER_TYPE_CODE:
            return AsArray(c).cardinality;
        default:
            break;
    }
    int size = 0;
    for (int32_t r = 0; r < AsRuns(c).n_runs; ++r) size += AsRuns(c).runs[r].length + 1;
    return size;
}

void CopyContainer(roaring_array_t const& array, int32_t i, int first, int count, int* out) {
    void const* c = array.containers[i];
    int const high = array.keys[i] << 16;
    switch (array.typecodes[i]) {
        case BITSET_CONTAINER_TYPE_CODE:
            CopyBitset(AsBitset(c).array, high, first, count, out);
            return;
        case ARRAY_CONTAINER_TYPE_CODE: {
            uint16_t const* values = AsArray(c).array + first;
            for (int k = 0; k < count; ++k) out[k] = high | values[k];
            return;
        }
        default:
            break;
    }
    for (rle16_t const* run = AsRuns(c).runs; count > 0; ++run) {
        int const length = run->length + 1;
        if (first >= length) {
            first -= length;
            continue;
        }
        int const take = std::min(count, length - first);
        int const value = (high | run->value) + first;
        for (int k = 0; k < take; ++k) out[k] = value + k;
        out += take;
        count -= take;
        first = 0;
    }
}

int RankInContainer(roaring_array_t const& array, int32_t i, int low) {
    void const* c = array.containers[i];
    switch (array.typecodes[i]) {
        case BITSET_CONTAINER_TYPE_CODE: {
            uint64_t const* words = AsBitset(c).array;
            int const w = low >> 6;
            if ((words[w] >> (low & 63) & 1U) == 0) return -1;
            uint64_t const below = words[w] & ((uint64_t{1} << (low & 63)) - 1);
            return CountOnes(words, w) + CountOnes(&below, 1);
        }
        case ARRAY_CONTAINER_TYPE_CODE: {
            uint16_t const* begin = AsArray(c).array;
            uint16_t const* end = begin + AsArray(c).cardinality;
            uint16_t const* at = std::lower_bound(begin, end, low);
            return at == end || *at != low ? -1 : static_cast<int>(at - begin);
        }
        default:
            break;
    }
    int rank = 0;
    for (int32_t r = 0; r < AsRuns(c).n_runs && AsRuns(c).runs[r].value <= low; ++r) {
        rle16_t const& run = AsRuns(c).runs[r];
        if (low - run.value <= run.length) return rank + low - run.value;
        rank += run.length + 1;
    }
    return -1;
}

bool VisitContainerRuns(roaring_array_t const& array, int32_t i, RunBlock& block) {
    void const* c = array.containers[i];
    int const high = array.keys[i] << 16;
    switch (array.typecodes[i]) {
        case BITSET_CONTAINER_TYPE_CODE:
            return VisitBitsetRuns(AsBitset(c).array, high, block);
        case ARRAY_CONTAINER_TYPE_CODE: {
            array_container_t const& values = AsArray(c);
            for (int32_t k = 0; k < values.cardinality; ++k) {
                int const member = high | values.array[k];
                if (!block.Add(member, member + 1)) return false;
            }
            return true;
        }
        default:
            break;
    }
    for (int32_t r = 0; r < AsRuns(c).n_runs; ++r) {
        int const first = high | AsRuns(c).runs[r].value;
        if (!block.Add(first, first + AsRuns(c).runs[r].length + 1)) return false;
    }
    return true;
}

size_t ContainerRuns(roaring_array_t const& array, int32_t i, int& previousEnd) {
    void const* c = array.containers[i];
    int const high = array.keys[i] << 16;
    size_t runs = 0;
    switch (array.typecodes[i]) {
        case BITSET_CONTAINER_TYPE_CODE: {
            uint64_t const* words = AsBitset(c).array;
            uint64_t carry = previousEnd == high ? 1 : 0;
            runs = static_cast<size_t>(CountStarts(words, carry));
            carry = words[kWords - 1] >> 63;
            previousEnd = carry != 0 ? high + 0x10000 : -1;
            return runs;
        }
        case ARRAY_CONTAINER_TYPE_CODE: {
            array_container_t const& values = AsArray(c);
            for (int32_t k = 0; k < values.cardinality; ++k) {
                int const member = high | values.array[k];
                runs += member != previousEnd ? 1 : 0;
                previousEnd = member + 1;
            }
            return runs;
        }
        default:
            break;
    }
    run_container_t const& all = AsRuns(c);
    for (int32_t r = 0; r < all.n_runs; ++r) {
        int const first = high | all.runs[r].value;
        runs += first != previousEnd ? 1 : 0;
        previousEnd = first + all.runs[r].length + 1;
    }
    return runs;
}

namespace {

void CombineBitsets(WordOp op, uint16_t key, uint64_t const* a, uint64_t const* b,
                    roaring_array_t& out) {
    // Dense results are made where they stay; the others are mostly sparse, and listed from here.
    uint64_t words[kWords];
    bool const dense = op == WordOp::Or;
    bitset_container_t* made = dense ? Checked(bitset_container_create()) : nullptr;
    int const size = CombineWords(op, a, b, dense ? made->array : words);
    if (!dense && size > DEFAULT_MAX_SIZE) {
        made = Checked(bitset_container_create());
        std::copy_n(words, kWords, made->array);
    }
    if (made != nullptr) {
        made->cardinality = size;
        ra_append(&out, key, made, BITSET_CONTAINER_TYPE_CODE);
        return;
    }
    if (size == 0) return;
    uint16_t ones[DEFAULT_MAX_SIZE + kListSlack];
    ListOnes(words, ones);
    array_container_t* list = Checked(array_container_create_given_capacity(size));
    std::copy_n(ones, size, list->array);
    list->cardinality = size;
    ra_append(&out, key, list, ARRAY_CONTAINER_TYPE_CODE);
}

void CombineContainers(WordOp op, roaring_array_t const& a, int32_t i, roaring_array_t const& b,
                       int32_t j, roaring_array_t& out) {
    void const* x = a.containers[i];
    void const* y = b.containers[j];
    uint8_t const tx = a.typecodes[i];
    uint8_t const ty = b.typecodes[j];
    if (tx == BITSET_CONTAINER_TYPE_CODE && ty == BITSET_CONTAINER_TYPE_CODE) {
        CombineBitsets(op, a.keys[i], AsBitset(x).array, AsBitset(y).array, out);
        return;
    }
    uint8_t type = 0;
    void* made = op == WordOp::And  ? container_and(x, tx, y, ty, &type)
                 : op == WordOp::Or ? container_or(x, tx, y, ty, &type)
                                    : container_andnot(x, tx, y, ty, &type);
    Checked(made);
    if (container_nonzero_cardinality(made, type)) {
        ra_append(&out, a.keys[i], made, type);
    } else {
        container_free(made, type);
    }
}

}  // namespace

void Combine(WordOp op, roaring_array_t const& a, roaring_array_t const& b, roaring_array_t& out) {
    bool const keepA = op != WordOp::And;
    bool const keepB = op == WordOp::Or;
    int32_t i = 0;
    int32_t j = 0;
    while (i < a.size && j < b.size) {
        if (a.keys[i] < b.keys[j]) {
            if (keepA) ra_append_copy(&out, &a, static_cast<uint16_t>(i), false);
            ++i;
        } else if (b.keys[j] < a.keys[i]) {
            if (keepB) ra_append_copy(&out, &b, static_cast<uint16_t>(j), false);
            ++j;
        } else {
            CombineContainers(op, a, i++, b, j++, out);
        }
    }
    if (keepA) ra_append_copy_range(&out, &a, i, a.size, false);
    if (keepB) ra_append_copy_range(&out, &b, j, b.size, false);
}

}  // namespace kov::sets
