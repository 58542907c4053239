// SchemaTable: what the schema says about an index: kind, name, base type.
//
// The rows of KOVSimSchemaTable.inc as one constexpr array, ascending by index, so that a look-up
// is a binary search over constant data: no initialisation, no lock, usable at load time. Whoever
// holds an index from a document may ask; indices that the table does not have are legal
// everywhere, since callers make types of their own from any pair.
#pragma once

#include <span>

#include "KOVSimSchema.h"

namespace kov::schema {

// Within namespace kov the name `schema` means this room: the names of pairs are found here too.
using namespace ::schema;

/// What an index stands for.
enum class Kind {
    Unknown,       ///< not in the table
    Type,          ///< a record, collection, distribution, DSet, function table or symbol type
    Link,          ///< a link to one object
    Links,         ///< a vector, set or map of links
    Collection,    ///< a link to one collection
    Distribution,  ///< a link to one distribution
    Attribute,     ///< a value
};

/// The two numbers of a pair.
struct Pair {
    int fragment = -1;
    int member = -1;
    friend bool operator==(Pair const&, Pair const&) = default;
};

/// One row of the table.
struct Entry {
    int index;         ///< as zdm_CoreFragmentTypeIndex gives it
    Pair pair;         ///< the numbers that `index` is made of
    Kind kind;         ///< never Unknown
    char const* name;  ///< as in KOVSimSchema.h
    int base;          ///< for types, the index of the base type; -1 for none
    char const* text;  ///< what it holds
};

/// All rows, ascending by index.
std::span<Entry const> Entries() noexcept;

/// The row of an index; null if the table has none.
Entry const* Find(int index) noexcept;

/// True if the table names a type with this index.
bool IsType(int index) noexcept;

/// The name of a type or member; null if the table has none.
char const* NameOf(int index) noexcept;

/// Unknown for an index that the table does not have.
Kind KindOf(int index) noexcept;

/// The base type of a type; -1 if it has none, is no type, or is not in the table.
int BaseOf(int typeIndex) noexcept;

/// True if `type` is `base` or derives from it. A type that the table does not have derives from
/// itself only; a negative index derives from nothing.
bool DerivesFrom(int type, int base) noexcept;

/// The pair that zdm_CoreFragmentTypeIndex made an index of, whether or not the table has it;
/// (-1, -1) for a number that is no index.
Pair PairOf(int index) noexcept;

}  // namespace kov::schema
