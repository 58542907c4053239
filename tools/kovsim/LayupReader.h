// LayupReader: the layups of a document's layered sections: shells, and composite solids.
//
// The layers of a shell section are read by KOVSrvShellSection, with one transfer for each kind of
// datum; what varies by element is read by LayerNumbers. The reader checks first what the services
// require of a document, so that one of any writer, or a damaged one, ends in a DocumentFault.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "LayerNumbers.h"
#include "Layup.h"
#include "MeshLabels.h"
#include "SectionContent.h"

namespace kov::tool {

class LayupReader {
  public:
    /// `values`: the numbers of each element are wanted, not only their range.
    LayupReader(KOVObjDocument const& document, bool values);

    /// The layup of the section that `name` means, written as in a deck or a key. No other section
    /// is read. Throws DocumentFault if there is none, if it has no layers, or if it is in no
    /// assignment.
    Layup OfSection(std::string const& name);
    /// The layup of the section that governs an element, with the element's own numbers. Throws
    /// DocumentFault if the element is not there, or has no section or one without layers.
    Layup OfElement(std::string const& instance, int label);
    /// Calls `f` with each layered section that is assigned, in the order of the assignments.
    void ForAll(std::function<void(Layup const&)> const& f);

  private:
    using Uses = std::vector<SectionUse>;

    Layup Read(KOVSimPosition const& section, SectionContent const& content,
               std::string const& name, Uses const& uses, SectionUse const* governing,
               std::optional<Layup::Element> const& element, KOVSimCSet const* ofElement);
    void ReadShell(Layup& layup, LayerSources& sources, KOVSimPosition const& section,
                   SectionContent const& content, Uses const& uses);
    void ReadSolid(Layup& layup, LayerSources& sources, KOVSimPosition const& section);
    void CheckStores();
    void CheckStore(int member, bool meshed, char const* called) const;
    [[noreturn]] void RefuseWithoutLayers(SectionContent const& content,
                                          std::string const& called) const;

    KOVObjDocument m_document;
    bool m_values;
    KOVSimCollectionID m_elements;
    ObjectNames m_names;
    std::optional<ShellField> m_thicknesses;
    std::optional<ShellField> m_angles;
};

}  // namespace kov::tool
