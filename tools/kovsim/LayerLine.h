// LayerLine: the data lines of sections, field by field: thicknesses, section points, layers.
#pragma once

#include <string>

#include "DeckReader.h"
#include "FieldScanner.h"
#include "SectionTable.h"
#include "Translation.h"

namespace kov::tool {

/// A layer or a section has at most so many section points.
inline constexpr int kMostSectionPoints = 1000;

/// A thickness or area, above 0. `what`: "a thickness" or the like. 0 if the field is empty.
double ReadPositive(DeckReader const& reader, FieldScanner& fields, char const* what);

/// A number of section points, from 1; `none` if the field is empty. `what`: how messages call the
/// points.
int ReadPoints(DeckReader const& reader, FieldScanner& fields, int none,
               char const* what = "section points");

/// Throws if something stands in a further field of the line. `form`: what a line holds.
void RefuseFields(DeckReader const& reader, FieldScanner& fields, char const* form);

/// Throws if a further data line comes. `expected`: what lines a section has.
void RefuseLine(DeckReader& reader, char const* expected);

/// Reads the lines of a composite section up to the next keyword: one for each layer.
class LayerReader {
  public:
    /// `points`: section points of a layer whose line has none.
    LayerReader(Translation& translation, SectionEntry& section, int points)
        : m_translation(translation), m_section(section), m_points(points) {}

    void Read(DeckReader& reader);

  private:
    void ReadLayer(DeckReader const& reader);
    void ReadThickness(DeckReader const& reader, FieldScanner& fields, LayerEntry& layer);
    void ReadAngle(DeckReader const& reader, FieldScanner& fields, int points, LayerEntry& layer);
    int ReadPly(DeckReader const& reader, FieldScanner& fields);
    ScopedName const& ReadName(DeckReader const& reader, FieldScanner& fields);
    void CheckText(DeckReader const& reader, std::string const& text, char const* whose) const;
    DeckLine Here(DeckReader const& reader) const;

    Translation& m_translation;
    SectionEntry& m_section;
    int m_points;
    ScopedName m_name;
    std::string m_text;
};

}  // namespace kov::tool
