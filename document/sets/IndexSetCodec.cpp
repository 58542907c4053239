// The stored form of index sets. Do not change: it stands in documents.
//
//   offset  size  meaning
//   0       1     kind: 1 progression, 2 runs, 3 ordered
//   1       ...   body
//
// Numbers are varints unless told otherwise: 7 bits a byte, lowest first, the top bit set on all
// bytes but the last, no longer than needed; at most 5 bytes.
//
//   progression  first, count, stride. The empty set is 0, 0, 1; a lone member has stride 1.
//   runs         the number of runs; then for each a pair: how many members are absent between the
//                run before and this one (for the first: below it), less 1 for all but the first,
//                because runs never touch; and its length less 1.
//   ordered      the number of entries, then each as 4 bytes, little-endian.
//
// For example {5, 6, 7} is 01 05 03 01; {1, 2, 9} is 02 02 01 01 05 00; (7, 3) in this order is
// 03 02 07 00 00 00 03 00 00 00. Each ascending set has exactly one stored form; Decode accepts
// runs that happen to be a progression all the same.

#include <algorithm>
#include <cstring>
#include <vector>

#include "document/sets/IndexSet.h"
#include "document/sets/SetAccess.h"

namespace kov::sets {

namespace {

enum Kind : unsigned char { kProgression = 1, kRuns = 2, kOrdered = 3 };

constexpr size_t kLongestVarint = 5;

// Gathers bytes on the stack: strings grow byte by byte at several times the cost.
class Writer {
  public:
    explicit Writer(std::string& out) : out_(out) {}
    ~Writer() { Flush(); }
    Writer(Writer const&) = delete;
    Writer& operator=(Writer const&) = delete;

    void Byte(unsigned value) { buffer_[used_++] = static_cast<char>(value); }
    void Varint(uint32_t value) {
        Room();
        for (; value >= 0x80; value >>= 7) Byte(value | 0x80U);
        Byte(value);
    }
    void Fixed(uint32_t value) {
        Room();
        for (unsigned shift = 0; shift < 32; shift += 8) Byte(value >> shift & 0xffU);
    }

  private:
    void Room() {
        if (used_ + kLongestVarint > sizeof buffer_) Flush();
    }
    void Flush() {
        out_.append(buffer_, used_);
        used_ = 0;
    }

    std::string& out_;
    size_t used_ = 0;
    char buffer_[1024];
};

uint32_t U(int value) { return static_cast<uint32_t>(value); }

class Reader {
  public:
    Reader(unsigned char const* bytes, size_t n) : at_(bytes), begin_(bytes), end_(bytes + n) {}

    size_t Left() const { return static_cast<size_t>(end_ - at_); }
    unsigned char const* At() const { return at_; }
    std::string const& Fault() const { return fault_; }
    void Skip() { ++at_; }

    bool Fail(char const* what) {
        if (fault_.empty()) {
            fault_ = "index set, byte " + std::to_string(at_ - begin_) + ": " + what;
        }
        return false;
    }
    bool Varint(uint32_t& value) {
        value = 0;
        for (unsigned shift = 0; shift < 35; shift += 7) {
            if (at_ == end_) return Fail("the bytes end within a number");
            uint32_t const byte = *at_++;
            if (shift == 28 && byte > 0x0f) return Fail("a number is above 32 bits");
            value |= (byte & 0x7fU) << shift;
            if (byte < 0x80) {
                return byte != 0 || shift == 0 || Fail("a number is longer than it needs to be");
            }
        }
        return Fail("a number is above 32 bits");
    }
    uint32_t Fixed() {
        uint32_t value = 0;
        for (unsigned shift = 0; shift < 32; shift += 8) value |= uint32_t{*at_++} << shift;
        return value;
    }

  private:
    unsigned char const* at_;
    unsigned char const* begin_;
    unsigned char const* end_;
    std::string fault_;
};

constexpr int64_t kEnd = int64_t{kHighestMember} + 1;

IndexSetPtr ReadProgression(Reader& in) {
    uint32_t first = 0;
    uint32_t count = 0;
    uint32_t stride = 0;
    if (!in.Varint(first) || !in.Varint(count) || !in.Varint(stride)) return nullptr;
    if (in.Left() != 0) {
        in.Fail("bytes follow the progression");
        return nullptr;
    }
    if (count == 0) {
        if (first == 0 && stride == 1) return IndexSet::Empty();
        in.Fail("an empty progression has a first member or a stride");
        return nullptr;
    }
    bool const lone = count == 1;
    if (stride == 0 || (lone && stride != 1)) {
        in.Fail("the stride does not fit the count");
        return nullptr;
    }
    // Both factors are below 2^32, so that the product stays within 64 bits unsigned.
    uint64_t const span = uint64_t{count - 1} * stride;
    if (first >= kEnd || span >= static_cast<uint64_t>(kEnd - first)) {
        in.Fail("a member is above the highest index");
        return nullptr;
    }
    return IndexSet::Strided(static_cast<int>(first), static_cast<int>(count),
                             static_cast<int>(stride));
}

IndexSetPtr ReadRuns(Reader& in) {
    uint32_t count = 0;
    if (!in.Varint(count)) return nullptr;
    if (count == 0 || count > in.Left() / 2) {
        in.Fail(count == 0 ? "there are no runs" : "the bytes are too few for the number of runs");
        return nullptr;
    }
    // Sets of single members are the usual content here; they go to a list straight away.
    std::vector<Run> runs(count);
    int64_t next = 0;
    bool single = true;
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t gap = 0;
        uint32_t length = 0;
        if (!in.Varint(gap) || !in.Varint(length)) return nullptr;
        int64_t const first = next + gap;
        int64_t const end = first + length + 1;
        if (end > kEnd) {
            in.Fail("a member is above the highest index");
            return nullptr;
        }
        runs[i] = {static_cast<int>(first), static_cast<int>(end)};
        single = single && length == 0;
        next = end + 1;
    }
    if (in.Left() != 0) {
        in.Fail("bytes follow the last run");
        return nullptr;
    }
    if (!single) return IndexSet::FromRuns(runs.data(), runs.size());
    std::vector<int> members(count);
    std::transform(runs.begin(), runs.end(), members.begin(), [](Run const& r) { return r.first; });
    return SetAccess::FromAscending(std::move(members));
}

IndexSetPtr ReadOrdered(Reader& in) {
    uint32_t count = 0;
    if (!in.Varint(count)) return nullptr;
    if (count == 0 || in.Left() / 4 != count || in.Left() % 4 != 0) {
        in.Fail("the bytes do not fit the number of entries");
        return nullptr;
    }
    if (count > U(kHighestMember)) {
        in.Fail("the entries are more than can be counted");
        return nullptr;
    }
    std::vector<int> members(count);
    for (int& member : members) {
        uint32_t const value = in.Fixed();
        if (value > U(kHighestMember)) {
            in.Fail("a member is above the highest index");
            return nullptr;
        }
        member = static_cast<int>(value);
    }
    return IndexSet::FromOrdered(members.data(), members.size());
}

IndexSetPtr Read(Reader& in, unsigned char kind) {
    switch (kind) {
        case kProgression:
            return ReadProgression(in);
        case kRuns:
            return ReadRuns(in);
        case kOrdered:
            return ReadOrdered(in);
        default:
            in.Fail("the kind is none of 1, 2, 3");
            return nullptr;
    }
}

}  // namespace

void Encode(IndexSet const& set, std::string& out) {
    Writer writer(out);
    if (set.GetForm() == Form::Progression) {
        writer.Byte(kProgression);
        writer.Varint(U(set.Lowest()));
        writer.Varint(U(set.Size()));
        writer.Varint(U(set.Stride()));
        return;
    }
    if (!set.IsAscending()) {
        writer.Byte(kOrdered);
        writer.Varint(U(set.Size()));
        for (int const member : SetAccess::List(set)) writer.Fixed(U(member));
        return;
    }
    writer.Byte(kRuns);
    writer.Varint(static_cast<uint32_t>(set.CountRuns()));
    uint32_t next = 0;
    set.ForEachRun([&](int first, int count) {
        writer.Varint(U(first) - next);
        writer.Varint(U(count - 1));
        next = U(first) + U(count) + 1;
    });
}

IndexSetPtr Decode(void const* bytes, size_t n, std::string* error) {
    auto const* begin = static_cast<unsigned char const*>(bytes);
    if (n == 0) {
        if (error != nullptr) *error = "index set, byte 0: there are no bytes";
        return nullptr;
    }
    Reader in(begin, n);
    in.Skip();
    IndexSetPtr set = Read(in, begin[0]);
    if (set == nullptr && error != nullptr) *error = in.Fault();
    return set;
}

}  // namespace kov::sets
