// Memory, output and bit sets.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>

#include "KOVSimException.h"
#include "mem.h"
#include "omi_BlkBitVect.h"
#include "zio_ostream.h"

namespace {

// Out of the sight of the compiler, which would warn of such a size.
std::size_t TooMuch() {
    static std::size_t volatile size = SIZE_MAX / 2;
    return size;
}

struct Allocated : mem_AllocationOperators {
    int value = 7;
};

}  // namespace

TEST(mem, FreeTakesBackWhatAnyMemberGaveAndNull) {
    for (std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{100}, std::size_t{5} << 20}) {
        for (auto* allocate :
             {mem_OperatorNewThrow, mem_OperatorNewThrowBuiltin, mem_OperatorNewTinyThrow}) {
            void* const block = allocate(size);
            ASSERT_NE(block, nullptr);
            std::memset(block, 1, size);
            mem_Free(block);
        }
        void* const block = mem_Malloc(size);
        ASSERT_NE(block, nullptr);
        std::memset(block, 1, size);
        mem_Free(block);
    }
    mem_Free(nullptr);
}

TEST(mem, LargeBlocksAreAlignedToHugePages) {
    for (std::size_t size : {std::size_t{4} << 20, (std::size_t{9} << 20) + 12345}) {
        void* const block = mem_Malloc(size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % (std::size_t{2} << 20), 0U);
        mem_Free(block);
    }
}

TEST(mem, ExhaustionGivesNullOrThrows) {
    EXPECT_EQ(mem_Malloc(TooMuch()), nullptr);
    EXPECT_EQ(mem_Malloc(TooMuch() * 2 + 1), nullptr);
    EXPECT_THROW(mem_OperatorNewThrow(TooMuch()), std::bad_alloc);
    EXPECT_THROW(mem_OperatorNewThrowBuiltin(TooMuch()), std::bad_alloc);
    EXPECT_THROW(mem_OperatorNewTinyThrow(TooMuch()), std::bad_alloc);
}

TEST(mem, ObjectsAreAllocatedThroughTheFamily) {
    Allocated* const one = new Allocated;
    EXPECT_EQ(one->value, 7);
    delete one;
    Allocated* const several = new Allocated[3];
    EXPECT_EQ(several[2].value, 7);
    delete[] several;
    alignas(Allocated) unsigned char place[sizeof(Allocated)];
    Allocated* const placed = new (place) Allocated;
    placed->~Allocated();
    EXPECT_EQ(static_cast<void*>(placed), static_cast<void*>(place));
}

TEST(zio_cout, WritesTextNumbersAndCharactersInOrder) {
    testing::internal::CaptureStdout();
    zio_cout.print("n = ").print_int(INT_MIN).put(';').print(nullptr);
    zio_cout.put('\n').flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "n = -2147483648;\n");
}

TEST(omi_BlkBitVect, HoldsTheBitsThatWereSet) {
    omi_BlkBitVect set;
    EXPECT_FALSE(set.TestBit(0));
    for (int bit : {0, 63, 64, 1000}) set.SetBit(bit);
    for (int bit : {0, 63, 64, 1000}) EXPECT_TRUE(set.TestBit(bit));
    for (int bit : {1, 62, 65, 999, 1001, INT_MAX, -1, INT_MIN}) EXPECT_FALSE(set.TestBit(bit));
}

TEST(omi_BlkBitVect, ANegativeBitIsRefused) {
    omi_BlkBitVect set;
    EXPECT_THROW(set.SetBit(-1), KOVSimException);
    EXPECT_EQ(set.Compare(omi_BlkBitVect()), 0);
}

TEST(omi_BlkBitVect, IsOrderedAsABinaryNumber) {
    omi_BlkBitVect low;
    low.SetBit(3);
    omi_BlkBitVect high;
    high.SetBit(70);
    omi_BlkBitVect both(high);
    both.SetBit(3);
    EXPECT_LT(low.Compare(high), 0);
    EXPECT_GT(both.Compare(high), 0);
    EXPECT_LT(omi_BlkBitVect().Compare(low), 0);
    low.SetBit(70);
    EXPECT_EQ(low.Compare(both), 0);
}
