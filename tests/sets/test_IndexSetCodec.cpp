#include <climits>
#include <string>

#include "document/sets/IndexSet.h"
#include "tests/sets/SetSamples.h"

namespace kov::sets::testing {
namespace {

std::string Bytes(IndexSetPtr const& set) {
    std::string bytes;
    Encode(*set, bytes);
    return bytes;
}

IndexSetPtr Back(std::string const& bytes, std::string* error = nullptr) {
    return Decode(bytes.data(), bytes.size(), error);
}

std::string Fault(std::string const& bytes) {
    std::string error;
    EXPECT_EQ(Back(bytes, &error), nullptr);
    return error;
}

// What is accepted is a set like any other, and goes out and in again.
void ExpectRefusedOrValid(std::string const& bytes) {
    std::string error;
    IndexSetPtr const set = Back(bytes, &error);
    if (set == nullptr) {
        EXPECT_FALSE(error.empty());
        return;
    }
    ASSERT_NO_THROW(set->CheckInvariants());
    IndexSetPtr const again = Back(Bytes(set));
    ASSERT_NE(again, nullptr);
    EXPECT_TRUE(again->SameMembers(*set));
}

std::string Hex(std::string const& bytes) {
    std::string hex;
    for (char const c : bytes) {
        char two[4];
        std::snprintf(two, sizeof two, "%02x ", static_cast<unsigned char>(c));
        hex += two;
    }
    if (!hex.empty()) hex.pop_back();
    return hex;
}

TEST(IndexSetCodec, TheBytesAreFixed) {
    int const gaps[] = {1, 2, 9};
    int const order[] = {7, 3};
    EXPECT_EQ(Hex(Bytes(IndexSet::Empty())), "01 00 00 01");
    EXPECT_EQ(Hex(Bytes(IndexSet::Range(5, 3))), "01 05 03 01");
    EXPECT_EQ(Hex(Bytes(IndexSet::Range(0, INT_MAX))), "01 00 ff ff ff ff 07 01");
    EXPECT_EQ(Hex(Bytes(IndexSet::FromMembers(gaps, 3))), "02 02 01 01 05 00");
    EXPECT_EQ(Hex(Bytes(IndexSet::FromOrdered(order, 2))), "03 02 07 00 00 00 03 00 00 00");
}

TEST(IndexSetCodec, EveryKindOfSetComesBack) {
    RecordProperty("seed", static_cast<int>(Seed()));
    Random random(Seed());
    for (int kind = 0; kind < kKinds; ++kind) {
        for (int round = 0; round < 6; ++round) {
            SCOPED_TRACE("KOV_SEED=" + std::to_string(Seed()) + " kind " + std::to_string(kind));
            int const base = round == 0 ? INT_MAX - 300000 : Pick(random, 0, 1 << 22);
            Sample const sample = RandomSample(random, static_cast<Kind>(kind), base);
            std::string const bytes = Bytes(sample.set);
            std::string error;
            IndexSetPtr const back = Back(bytes, &error);
            ASSERT_NE(back, nullptr) << error;
            ASSERT_NO_THROW(back->CheckInvariants());
            EXPECT_EQ(back->IsAscending(), sample.set->IsAscending());
            EXPECT_EQ(Stored(*back), sample.stored);
            EXPECT_EQ(back->Hash(), sample.set->Hash());
            EXPECT_EQ(Bytes(back), bytes);
        }
    }
}

TEST(IndexSetCodec, HugeContiguousSetsTakeAFewBytes) {
    EXPECT_LE(Bytes(IndexSet::Range(1, INT_MAX - 1)).size(), 8U);
    sets::Run const runs[] = {{0, 1000000000}, {1000000001, INT_MAX}};
    EXPECT_LE(Bytes(IndexSet::FromRuns(runs, 2)).size(), 16U);
}

TEST(IndexSetCodec, EncodingAppends) {
    std::string bytes = "before";
    Encode(*IndexSet::Range(5, 3), bytes);
    EXPECT_EQ(bytes, "before" + Bytes(IndexSet::Range(5, 3)));
}

TEST(IndexSetCodec, EveryTruncationIsRefused) {
    Random random(Seed());
    for (int round = 0; round < 200; ++round) {
        std::vector<int> const members = RandomMembers(random, Pick(random, 1, 30), 0, 100000);
        IndexSetPtr const set = round % 2 == 0
                                    ? IndexSet::FromMembers(members.data(), members.size())
                                    : IndexSet::FromOrdered(members.data(), members.size());
        std::string const bytes = Bytes(set);
        for (size_t n = 0; n < bytes.size(); ++n) {
            std::string error;
            EXPECT_EQ(Decode(bytes.data(), n, &error), nullptr) << Hex(bytes) << " cut at " << n;
            EXPECT_FALSE(error.empty());
        }
        EXPECT_EQ(Back(bytes + '\0'), nullptr);
    }
}

TEST(IndexSetCodec, EveryFlippedBitIsRefusedOrGivesAValidSet) {
    Random random(Seed());
    for (int round = 0; round < 60; ++round) {
        std::vector<int> const members = RandomMembers(random, Pick(random, 1, 30), 0, 100000);
        IndexSetPtr const set = round % 2 == 0
                                    ? IndexSet::FromMembers(members.data(), members.size())
                                    : IndexSet::FromOrdered(members.data(), members.size());
        std::string const bytes = Bytes(set);
        for (size_t bit = 0; bit < bytes.size() * 8; ++bit) {
            std::string flipped = bytes;
            flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << (bit % 8)));
            ExpectRefusedOrValid(flipped);
        }
    }
}

TEST(IndexSetCodec, RandomBytesAreRefusedOrGiveAValidSet) {
    RecordProperty("seed", static_cast<int>(Seed()));
    Random random(Seed());
    for (int round = 0; round < 20000; ++round) {
        std::string bytes(1, static_cast<char>(Pick(random, 0, 4)));
        int const n = Pick(random, 0, 40);
        int const top = Pick(random, 1, 255);
        for (int i = 0; i < n; ++i) bytes += static_cast<char>(Pick(random, 0, top));
        ExpectRefusedOrValid(bytes);
    }
}

TEST(IndexSetCodec, TheFirstFaultIsNamed) {
    using namespace std::string_literals;
    EXPECT_EQ(Fault(""), "index set, byte 0: there are no bytes");
    EXPECT_EQ(Fault("\x09"s), "index set, byte 1: the kind is none of 1, 2, 3");
    EXPECT_EQ(Fault("\x01\x05"s), "index set, byte 2: the bytes end within a number");
    EXPECT_EQ(Fault("\x01\x05\x03\x00"s), "index set, byte 4: the stride does not fit the count");
    EXPECT_EQ(Fault("\x01\x85\x00\x03\x01"s),
              "index set, byte 3: a number is longer than it needs to be");
    EXPECT_EQ(Fault("\x01\xff\xff\xff\xff\x07\x01\x01"s),
              "index set, byte 8: a member is above the highest index");
    EXPECT_EQ(Fault("\x01\xff\xff\xff\xff\x1f\x01\x01"s),
              "index set, byte 6: a number is above 32 bits");
    EXPECT_EQ(Fault("\x02\x00"s), "index set, byte 2: there are no runs");
    EXPECT_EQ(Fault("\x02\xff\xff\xff\xff\x0f"s),
              "index set, byte 6: the bytes are too few for the number of runs");
    EXPECT_EQ(Fault("\x03\x02\x07\x00\x00\x00"s),
              "index set, byte 2: the bytes do not fit the number of entries");
}

TEST(IndexSetCodec, AProgressionWrittenAsRunsIsReadAsAProgression) {
    using namespace std::string_literals;
    IndexSetPtr const set = Back("\x02\x03\x01\x00\x01\x00\x01\x00"s);
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set->GetForm(), Form::Progression);
    EXPECT_EQ(Stored(*set), (std::vector<int>{1, 4, 7}));
}

}  // namespace
}  // namespace kov::sets::testing
