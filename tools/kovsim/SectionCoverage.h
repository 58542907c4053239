// SectionCoverage: which elements of the mesh each section assignment governs, which stand in
// several, and which in none.
#pragma once

#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "SectionContent.h"

namespace kov::tool {

struct AssignmentCoverage {
    std::string section;  ///< empty: without a name
    SectionContent content;
    std::string material;    ///< of a section of one material; empty: none, or several layers
    std::string elementSet;  ///< key of the set that it is given to, or name of its region
    int size = 0;            ///< elements of the region
    KOVSimCSet governed;
    KOVSimCSet lost;  ///< elements of the region that an assignment before it governs
};

/// Elements of one type.
struct TypedElements {
    std::string type;  ///< empty for elements without a type
    bool needsSection = true;
    KOVSimCSet elements;
};

struct SectionCoverage {
    std::vector<AssignmentCoverage> assignments;  ///< in the order that counts
    std::vector<TypedElements> uncovered;         ///< by element type, in the order of the types
    std::vector<TypedElements> inSeveral;         ///< the same of those that stand in several

    /// True if each element that needs a section stands in exactly one.
    bool IsComplete() const;
};

/// Throws DocumentFault for an assignment that is not complete.
SectionCoverage ReadSectionCoverage(KOVObjDocument const& document);

}  // namespace kov::tool
