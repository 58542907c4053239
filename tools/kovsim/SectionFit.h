// SectionFit: sections that are given to elements of another kind, such as a shell section to
// solids. A deck may well hold them, so these are findings and no errors.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ElementBlocks.h"
#include "Scope.h"
#include "SectionTable.h"

namespace kov::tool {

/// A section with the elements to which its kind does not fit.
struct Misfit {
    std::string path;  ///< of the file with the section's keyword
    int line = 0;
    SectionEntry::Kind kind = SectionEntry::Kind::Shell;
    std::string set;   ///< as its name was typed first
    long count = 0;    ///< over all instances of a part
    std::string type;  ///< of the first such element
    int label = 0;     ///< of the first
    std::string instance;
};

struct Misfits {
    std::vector<Misfit> first;  ///< in the order of the deck
    long sections = 0;          ///< keywords of sections that do not fit
    long elements = 0;
};

/// Whether a section of that kind may be given to elements of the family.
bool Fits(SectionEntry::Kind kind, Family family) noexcept;

/// "shell" and the like: what the elements of a section of that kind are.
char const* FittingElement(SectionEntry::Kind kind) noexcept;

/// The sections of the table that do not fit: the first `most` of them, and how many there are in
/// all. The sets of the sections are known by now. `elements`: of the mesh.
Misfits FindMisfits(SectionTable const& table, ElementBlocks const& blocks, int elements,
                    Scopes const& scopes, std::size_t most);

}  // namespace kov::tool
