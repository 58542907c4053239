// SectionResolver: finds out, when a whole deck has been read, what the names in its sections stand
// for, and that no element is in two sections.
#pragma once

#include <vector>

#include "ElementBlocks.h"
#include "SectionTable.h"
#include "Translation.h"

namespace kov::tool {

class SectionResolver {
  public:
    SectionResolver(SectionTable& table, Scopes& scopes) : m_table(table), m_scopes(scopes) {}

    /// Fills in what the sections and their names stand for. Throws a DeckError at the line where
    /// something came first that is not defined, or of the section that takes an element a second
    /// time. `elements`: how many elements the mesh has. Gives the elements that have a section.
    ElementMarks Resolve(int elements);

  private:
    void ResolveMaterials();
    void ResolveOrientation(Mention& mention);
    void ResolveAngle(Mention& mention);
    void ResolveThickness(Mention& mention);
    [[noreturn]] void FailThickness(Mention const& mention);
    void ResolveSet(SectionEntry& section);
    void Take(SectionEntry& section, ElementMarks& marks);
    [[noreturn]] void FailTwice(SectionEntry const& section, int element);

    NamedOrientation const* FindOrientation(Mention const& mention);
    NamedDistribution const* FindDistribution(Mention const& mention);

    SectionTable& m_table;
    Scopes& m_scopes;
};

}  // namespace kov::tool
