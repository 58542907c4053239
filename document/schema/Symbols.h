// Symbols: the symbol collections of a new document, as constant tables indexed by position.
//
// A document holds its symbols as collection members; these tables are what the maker of the
// skeleton writes there. Whoever reads a document asks the document, whose symbols may be others.
#pragma once

#include <span>

#include "KOVSimSchema.h"

namespace kov::schema {

using namespace ::schema;

/// One symbol. Its number is its position in the table.
struct SymbolEntry {
    char const* name;
};

/// One shape of elements. Its number is its position in the table.
struct ShapeEntry {
    char const* name;
    int points;     ///< number of points; 0 where the element specification brings its own
    int dimension;  ///< of the shape itself: 0 point, 1 line, 2 face, 3 volume
};

/// The 38 component symbols: zdm_ComponentSymbolsEnm.
std::span<SymbolEntry const> ComponentSymbols() noexcept;

/// The 14 degree-of-freedom symbols: zdm_DofSymbolsEnm.
std::span<SymbolEntry const> DofSymbols() noexcept;

/// The 49 shapes: zdm_ShapeSymbolsEnm.
std::span<ShapeEntry const> ShapeSymbols() noexcept;

}  // namespace kov::schema
