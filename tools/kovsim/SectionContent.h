// SectionContent: what the sections of a model are, and which elements they are assigned to, read
// from a document of any writer.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ByIdentity.h"
#include "KOVObjDocument.h"
#include "KOVSimTypedIDs.h"

namespace kov::tool {

/// The names of objects, each looked up once: many layers name few materials.
class ObjectNames {
  public:
    /// The object's own name, or else its key in the map `map` of the model; empty for an object
    /// without a name and for a null position.
    std::string const& Of(KOVSimPosition const& object, int map);

  private:
    std::map<KOVSimDynamicID, std::string, ByIdentity> m_names;
};

enum class SectionKind { Shell, Solid, Membrane, Beam, Surface, Other };

/// The word for a kind: shell, solid, membrane, beam, surface, section.
char const* KindWord(SectionKind kind) noexcept;

struct SectionContent {
    SectionKind kind = SectionKind::Other;
    bool composite = false;
    int layers = 0;           ///< of shells and of composites
    std::string profile;      ///< of beams; empty where it is not given
    std::string layup;        ///< name of the layup of a composite; empty: none
    std::string material;     ///< of a section without layers; empty: none
    std::string orientation;  ///< empty: none
    double offset = 0;
    bool gauss = false;
    int stackDirection = 0;  ///< 1 to 3, 4 by the orientation; 0 where it is not given

    /// "composite shell", "homogeneous solid", "beam".
    std::string KindText() const;
    /// True for shells with a layer at least, and composite solids.
    bool IsLayered() const;
};

SectionContent ReadSection(KOVSimPosition const& section, ObjectNames& names);

/// One assignment: a section, and the region with the elements that it is given to.
struct SectionUse {
    KOVSimPosition assignment;
    KOVSimPosition section;
    KOVSimPosition region;
    KOVSimPosition elements;  ///< a set of the mesh's elements
};

/// What an assignment ties together. Throws DocumentFault, which calls it `called`, where a part of
/// it is missing or no set of the mesh's elements.
SectionUse ReadUse(KOVSimPosition const& assignment, KOVSimCollectionID const& elements,
                   std::string const& called);
/// All assignments of the model in their order, which counts; throws as ReadUse does.
std::vector<SectionUse> AllUses(KOVObjDocument const& document);
/// Those of the model's assignments that use a section, found without a look at the others.
std::vector<SectionUse> UsesOf(KOVObjDocument const& document, KOVSimPosition const& section,
                               std::string const& name);

}  // namespace kov::tool
