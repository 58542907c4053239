// Any bytes: refused with a fault that is named, or a set that keeps its rules, reads the same in
// every way, and is stored and read again unchanged.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "document/sets/IndexSet.h"

namespace {

void Require(bool holds, char const* what) {
    if (holds) return;
    std::fprintf(stderr, "fuzz_indexset: %s\n", what);
    std::abort();
}

// Members are read out one by one only where they are few: runs may describe billions.
void CheckMembers(kov::sets::IndexSetPtr const& set) {
    if (set->Size() > 100000) return;
    std::vector<int> stored(static_cast<size_t>(set->Size()));
    set->CopyStored(stored.data());
    for (int i = 0; i < set->Size(); i += 1 + set->Size() / 50) {
        int const member = stored[static_cast<size_t>(i)];
        Require(set->At(i) == member && set->Contains(member), "a member is not found");
        Require(set->At(set->LocationOf(member)) == member, "a location is wrong");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    using namespace kov::sets;
    // The first byte tells where the input is cut into two sets.
    if (size == 0) return 0;
    size_t const cut = 1 + data[0] % size;
    std::string error;
    IndexSetPtr const a = Decode(data + 1, cut - 1, &error);
    Require(a != nullptr || !error.empty(), "a refusal without a fault");
    if (a == nullptr) return 0;
    a->CheckInvariants();
    CheckMembers(a);
    std::string bytes;
    Encode(*a, bytes);
    IndexSetPtr const again = Decode(bytes.data(), bytes.size(), nullptr);
    Require(again != nullptr && again->SameMembers(*a), "a set changes when it is stored");

    IndexSetPtr const b = Decode(data + cut, size - cut, nullptr);
    if (b == nullptr || a->GetForm() == Form::Progression || b->GetForm() == Form::Progression) {
        return 0;
    }
    IndexSetPtr const sum = Union(a, b);
    IndexSetPtr const common = Intersection(a, b);
    sum->CheckInvariants();
    common->CheckInvariants();
    Require(IsSubset(*common, *sum), "the common members are not in the union");
    Require(Union(Difference(a, b), common)->SameMembers(*a), "difference and intersection differ");
    return 0;
}
