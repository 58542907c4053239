// SectionWriter: puts the materials, plies and sections of a deck into the document of its model,
// and the layers of composite solids. Layers of shells come behind it, see ShellLayers.h.
#pragma once

#include "Distributions.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "ModelWriter.h"
#include "SectionTable.h"

namespace kov::tool {

class SectionWriter {
  public:
    /// `table` is resolved, and the sets, orientations and distributions of the scopes are in the
    /// document; their labels are not yet taken out of them.
    SectionWriter(ModelWriter& model, Distributions const& distributions, SectionTable& table);

    /// Writes everything in the transaction of the model. Throws a DeckError at the line of a
    /// section or layer whose distribution lacks a value.
    void Write();

  private:
    void WriteMaterials();
    void WritePlies();
    void MakeShellCollections();
    void Check(SectionEntry const& section) const;
    void WriteSection(SectionEntry& section);
    KOVSimPosition MakeRecord(SectionEntry& section);
    void WriteFields(SectionEntry const& section, KOVSimDataRecord const& record);
    void WriteLinks(SectionEntry const& section, KOVSimPosition const& position);
    void WriteAssignment(SectionEntry const& section, std::string const& key,
                         KOVSimPosition const& position);
    void WriteSolidLayers(SectionEntry const& section, KOVSimPosition const& position);
    void WriteSolidLayer(LayerEntry const& layer, KOVSimPosition const& position);
    KOVSimPosition Material(int number) const;
    KOVSimPosition Orientation(NamedOrientation const& orientation) const;

    ModelWriter& m_model;
    Distributions const& m_distributions;
    SectionTable& m_table;
    KOVSimPosition m_top;
    KOVSimPosition m_regionMembers;
    KOVSimPosition m_shells;
    KOVSimPosition m_plies;
    KOVSimMap m_regions;
    KOVSimMap m_names;
    KOVSimSet m_external;
    KOVSimVector m_assignments;
    int m_shellCount = 0;
};

}  // namespace kov::tool
