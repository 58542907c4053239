#include "LayerLine.h"

#include "DataFields.h"
#include "Names.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

constexpr char kLayer[] = "THICKNESS, SECTION POINTS, MATERIAL, ANGLE OR ORIENTATION, PLY";
constexpr long kBreath = 1 << 14;

void CheckPositive(DeckReader const& reader, FieldScanner const& fields, double value,
                   char const* what) {
    if (value > 0) return;
    reader.Fail("'" + Shown(fields.Field()) + "' is no number above 0; expected " + what);
}

}  // namespace

double ReadPositive(DeckReader const& reader, FieldScanner& fields, char const* what) {
    double value = 0;
    if (fields.AtEnd()) return 0;
    Result const result = fields.ReadDouble(value);
    if (result == Result::Empty) return 0;
    if (result != Result::Value) FailNumber(reader, fields, result, what);
    CheckPositive(reader, fields, value, what);
    return value;
}

int ReadPoints(DeckReader const& reader, FieldScanner& fields, int none, char const* what) {
    if (fields.AtEnd()) return none;
    int points = 0;
    Result const result = fields.ReadInt(points);
    if (result == Result::Empty) return none;
    if (result != Result::Value || points < 1 || points > kMostSectionPoints) {
        reader.Fail("'" + Shown(fields.Field()) + "' is no number of " + what +
                    "; expected a whole number from 1 to " + std::to_string(kMostSectionPoints));
    }
    return points;
}

void RefuseFields(DeckReader const& reader, FieldScanner& fields, char const* form) {
    std::string text;
    while (!fields.AtEnd()) {
        static_cast<void>(fields.ReadText(text));
        if (fields.Field().empty()) continue;
        reader.Fail("'" + Shown(fields.Field()) + "' is one field too many; expected " + form);
    }
}

void RefuseLine(DeckReader& reader, char const* expected) {
    if (reader.NextData()) {
        reader.Fail(std::string("one data line too many; expected ") + expected);
    }
}

void LayerReader::Read(DeckReader& reader) {
    SectionTable& table = m_translation.Sections();
    m_section.firstLayer = table.NextLayer();
    for (long lines = 1; reader.NextData(); ++lines) {
        ReadLayer(reader);
        ++m_section.layerLines;
        if (lines % kBreath == 0) m_translation.Breathe(reader);
    }
    if (m_section.layerLines > 0) return;
    table.files.Fail(m_section.at, std::string(m_section.Words()) +
                                       " with COMPOSITE but without a layer; expected lines of " +
                                       kLayer);
}

DeckLine LayerReader::Here(DeckReader const& reader) const {
    return {m_section.at.file, reader.LineNumber()};
}

void LayerReader::ReadLayer(DeckReader const& reader) {
    FieldScanner fields(reader.Line(), reader.LineEnd());
    LayerEntry layer;
    layer.line = reader.LineNumber();
    ReadThickness(reader, fields, layer);
    int const points = ReadPoints(reader, fields, m_points);
    if (!fields.ReadText(m_text)) reader.Fail("the quotes of a material's name are not closed");
    if (m_text.empty()) {
        reader.Fail(std::string("the material of the layer is missing; expected ") + kLayer);
    }
    CheckText(reader, m_text, "a material's name");
    layer.material = m_translation.Sections().materials.Mention(m_text, Here(reader));
    ReadAngle(reader, fields, points, layer);
    layer.ply = ReadPly(reader, fields);
    RefuseFields(reader, fields, kLayer);
    m_translation.Sections().AddLayer(layer);
}

void LayerReader::ReadThickness(DeckReader const& reader, FieldScanner& fields, LayerEntry& layer) {
    double thickness = 0;
    Result const result = fields.ReadDouble(thickness);
    switch (result) {
        case Result::Value:
            CheckPositive(reader, fields, thickness, "a thickness");
            layer.SetThickness(thickness);
            return;
        case Result::Empty:
            reader.Fail(std::string("the thickness of the layer is missing; expected ") + kLayer);
        case Result::TooLarge:
            FailNumber(reader, fields, result, "a thickness");
        case Result::Wrong:
            break;
    }
    ScopedName const& name = ReadName(reader, fields);
    if (m_section.thicknessName != MentionTable::kNone) {
        reader.Fail("'" + Shown(name.text) +
                    "' is no number; expected the share that the layer has of the SHELL THICKNESS");
    }
    layer.SetThicknessName(m_translation.Sections().thicknessNames.Number(m_translation.Current(),
                                                                          name, Here(reader)));
}

void LayerReader::ReadAngle(DeckReader const& reader, FieldScanner& fields, int points,
                            LayerEntry& layer) {
    double degrees = 0;
    Result const result = fields.AtEnd() ? Result::Empty : fields.ReadDouble(degrees);
    if (result == Result::TooLarge) FailNumber(reader, fields, result, "an angle in degrees");
    if (result != Result::Wrong) {
        layer.SetAngle(degrees, points);
        return;
    }
    ScopedName const& name = ReadName(reader, fields);
    layer.SetAngleName(
        m_translation.Sections().angleNames.Number(m_translation.Current(), name, Here(reader)),
        points);
}

ScopedName const& LayerReader::ReadName(DeckReader const& reader, FieldScanner& fields) {
    if (!m_name.Read(fields)) reader.Fail("the quotes of a name are not closed");
    CheckText(reader, m_name.text, "a name");
    return m_name;
}

void LayerReader::CheckText(DeckReader const& reader, std::string const& text,
                            char const* whose) const {
    if (!HasControl(text)) return;
    reader.Fail(std::string("a control character in ") + whose + "; expected text without them");
}

int LayerReader::ReadPly(DeckReader const& reader, FieldScanner& fields) {
    if (fields.AtEnd()) return -1;
    if (!fields.ReadText(m_text)) reader.Fail("the quotes of a ply's name are not closed");
    if (m_text.empty()) return -1;
    CheckText(reader, m_text, "a ply's name");
    return m_translation.MentionPly(m_text, reader);
}

}  // namespace kov::tool
