#include "document/schema/SchemaTable.h"

#include <algorithm>

#include "document/schema/PairIndex.h"

namespace kov::schema {

namespace {

// The index of each row by its name, for the base types. A namespace of its own keeps these names
// apart from the functions of the same names.
namespace index_of {
constexpr int none = -1;
#define KOV_SCHEMA_TYPE(fragment, member, name, base, text) \
    constexpr int name = IndexOfPair(fragment, member);
#define KOV_SCHEMA_MEMBER(fragment, member, name, kind, text)
#include "KOVSimSchemaTable.inc"
}  // namespace index_of

constexpr Entry kEntries[] = {
#define KOV_SCHEMA_TYPE(fragment, member, name, base, text) \
    {IndexOfPair(fragment, member), {fragment, member}, Kind::Type, #name, index_of::base, text},
#define KOV_SCHEMA_MEMBER(fragment, member, name, kind, text) \
    {IndexOfPair(fragment, member), {fragment, member}, Kind::kind, #name, -1, text},
#include "KOVSimSchemaTable.inc"
};

constexpr bool RowsAscendAndAreUnique() {
    for (Entry const* row = std::begin(kEntries) + 1; row != std::end(kEntries); ++row) {
        if (!(row[-1].index < row->index)) return false;
    }
    return kEntries[0].index >= kPairRadix;
}
static_assert(RowsAscendAndAreUnique(), "a pair is out of order, given twice, or out of range");

constexpr Entry const* FindRow(int index) noexcept {
    Entry const* const row =
        std::lower_bound(std::begin(kEntries), std::end(kEntries), index,
                         [](Entry const& entry, int wanted) { return entry.index < wanted; });
    return row != std::end(kEntries) && row->index == index ? row : nullptr;
}

constexpr bool EveryBaseChainEnds() {
    for (Entry const& entry : kEntries) {
        Entry const* row = &entry;
        for (int steps = 0; row->base != -1; ++steps) {
            row = FindRow(row->base);
            if (row == nullptr || row->kind != Kind::Type || steps == 16) return false;
        }
    }
    return true;
}
static_assert(EveryBaseChainEnds(), "a type derives from itself, or from what is no type");

}  // namespace

std::span<Entry const> Entries() noexcept { return kEntries; }

Entry const* Find(int index) noexcept { return FindRow(index); }

bool IsType(int index) noexcept { return KindOf(index) == Kind::Type; }

char const* NameOf(int index) noexcept {
    Entry const* const row = FindRow(index);
    return row != nullptr ? row->name : nullptr;
}

Kind KindOf(int index) noexcept {
    Entry const* const row = FindRow(index);
    return row != nullptr ? row->kind : Kind::Unknown;
}

int BaseOf(int typeIndex) noexcept {
    Entry const* const row = FindRow(typeIndex);
    return row != nullptr ? row->base : -1;
}

bool DerivesFrom(int type, int base) noexcept {
    while (type >= 0) {
        if (type == base) return true;
        type = BaseOf(type);
    }
    return false;
}

Pair PairOf(int index) noexcept {
    return IsIndex(index) ? Pair{FragmentOf(index), MemberOf(index)} : Pair{};
}

}  // namespace kov::schema
