// *SHELL SECTION, ELSET=set, MATERIAL=name [, ORIENTATION=name] [, OFFSET=number|SPOS|SNEG]
//                 [, SHELL THICKNESS=distribution] [, SECTION INTEGRATION=SIMPSON|GAUSS]
//   thickness [, section points]
// *SOLID SECTION, ELSET=set, MATERIAL=name [, ORIENTATION=name]
//   area or thickness, may be left out
// *MEMBRANE SECTION, ELSET=set, MATERIAL=name [, ORIENTATION=name]
//                    [, MEMBRANE THICKNESS=distribution]
//   thickness
//
// *SHELL SECTION or *SOLID SECTION with COMPOSITE in the place of MATERIAL, and perhaps SYMMETRIC,
// LAYUP=name, STACK DIRECTION=1|2|3|ORIENTATION
//   thickness or distribution [, section points], material [, angle, orientation or distribution]
//   [, ply]

#include "DataFields.h"
#include "LayerLine.h"
#include "Names.h"
#include "SectionParameters.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

constexpr char kShellLine[] = "THICKNESS, SECTION POINTS";
constexpr char kSolidLine[] = "AREA OR THICKNESS";
constexpr char kMembraneLine[] = "THICKNESS";

double ReadOffset(DeckReader const& reader, KeywordLine const& line,
                  KeywordParameters const& parameters) {
    if (!parameters.Has("offset")) return 0;
    std::string const value = parameters.Value("offset");
    std::string const word = LowerCase(value);
    if (word == "spos") return 0.5;
    if (word == "sneg") return -0.5;
    double offset = 0;
    FieldScanner fields(value.c_str(), value.c_str() + value.size());
    if (fields.ReadDouble(offset) != Result::Value || !fields.AtEnd()) {
        reader.FailAt(line.line,
                      "'" + Shown(value) + "' is no offset; expected a number, SPOS or SNEG");
    }
    return offset;
}

// The one data line of a section without layers: a thickness, which may stand in a distribution.
double ReadThickness(Translation& translation, DeckReader& reader, KeywordLine const& line,
                     SectionEntry const& section, char const* form, FieldScanner& fields) {
    double const thickness = ReadPositive(reader, fields, "a thickness");
    if (section.thicknessName == MentionTable::kNone && thickness == 0) {
        reader.Fail(std::string("the thickness is missing; expected ") + form);
    }
    if (section.thicknessName != MentionTable::kNone && thickness > 0) {
        translation.Note("thicknesses of " + ShownKeyword(line) +
                         " beside a distribution, which holds in its place");
        return 0;
    }
    return thickness;
}

void RequireLine(DeckReader& reader, KeywordLine const& line, char const* form) {
    if (reader.NextData()) return;
    reader.FailAt(line.line, ShownKeyword(line) + " without a data line; expected " + form);
}

void ReadHomogeneousShell(Translation& translation, DeckReader& reader, KeywordLine const& line,
                          SectionEntry& section, int material) {
    LayerEntry layer;
    int points = section.gauss ? 3 : 5;
    layer.line = line.line;
    layer.material = material;
    if (section.thicknessName == MentionTable::kNone) {
        RequireLine(reader, line, kShellLine);
        reader.TakeAgain();
    }
    if (reader.NextData()) {
        FieldScanner fields(reader.Line(), reader.LineEnd());
        double const thickness =
            ReadThickness(translation, reader, line, section, kShellLine, fields);
        if (thickness > 0) layer.SetThickness(thickness);
        layer.line = reader.LineNumber();
        points = ReadPoints(reader, fields, points);
        RefuseFields(reader, fields, kShellLine);
        RefuseLine(reader, "one, as COMPOSITE is not given");
    }
    layer.SetAngle(0, points);
    SectionTable& table = translation.Sections();
    section.firstLayer = table.NextLayer();
    section.layerLines = 1;
    table.AddLayer(layer);
}

}  // namespace

void ReadShellSection(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(
        reader, line,
        {"elset", "material", "composite", "orientation", "offset", "shell thickness",
         "section integration", "symmetric", "layup", "stack direction", "controls", "density",
         "idealization", "nodal thickness", "poisson", "temperature", "thickness modulus", "zero"});
    parameters.RefuseValues({"composite", "symmetric", "nodal thickness"});
    parameters.PassOver(translation, {"controls", "density", "idealization", "nodal thickness",
                                      "poisson", "temperature", "thickness modulus", "zero"});
    SectionEntry& section =
        MakeSection(translation, reader, line, parameters, SectionEntry::Kind::Shell);
    TakeComposite(translation, reader, line, parameters, section);
    TakeOrientation(translation, parameters, section);
    TakeThicknessName(translation, parameters, "shell thickness", section);
    section.offset = ReadOffset(reader, line, parameters);
    if (parameters.Has("section integration")) {
        section.gauss = WordOf(reader, line, parameters.Value("section integration"),
                               {"simpson", "gauss"}, "SECTION INTEGRATION=SIMPSON or GAUSS") == 1;
    }
    if (section.composite) {
        LayerReader(translation, section, section.gauss ? 2 : 3).Read(reader);
        return;
    }
    int const material = TakeMaterial(translation, parameters, section);
    ReadHomogeneousShell(translation, reader, line, section, material);
}

void ReadSolidSection(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(
        reader, line,
        {"elset", "material", "composite", "orientation", "symmetric", "layup", "stack direction",
         "controls", "ref node"});
    parameters.RefuseValues({"composite", "symmetric"});
    parameters.PassOver(translation, {"controls", "ref node"});
    SectionEntry& section =
        MakeSection(translation, reader, line, parameters, SectionEntry::Kind::Solid);
    TakeComposite(translation, reader, line, parameters, section);
    TakeOrientation(translation, parameters, section);
    if (section.composite) {
        LayerReader(translation, section, 1).Read(reader);
        return;
    }
    section.material = TakeMaterial(translation, parameters, section);
    if (!reader.NextData()) return;
    FieldScanner fields(reader.Line(), reader.LineEnd());
    section.value = ReadPositive(reader, fields, "an area or thickness");
    RefuseFields(reader, fields, kSolidLine);
    RefuseLine(reader, "one at most, as COMPOSITE is not given");
}

void ReadMembraneSection(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line,
                                       {"elset", "material", "orientation", "membrane thickness",
                                        "controls", "density", "nodal thickness", "poisson"});
    parameters.RefuseValues({"nodal thickness"});
    parameters.PassOver(translation, {"controls", "density", "nodal thickness", "poisson"});
    SectionEntry& section =
        MakeSection(translation, reader, line, parameters, SectionEntry::Kind::Membrane);
    TakeOrientation(translation, parameters, section);
    TakeThicknessName(translation, parameters, "membrane thickness", section);
    section.material = TakeMaterial(translation, parameters, section);
    if (section.thicknessName == MentionTable::kNone) {
        RequireLine(reader, line, kMembraneLine);
        reader.TakeAgain();
    }
    if (!reader.NextData()) return;
    FieldScanner fields(reader.Line(), reader.LineEnd());
    section.value = ReadThickness(translation, reader, line, section, kMembraneLine, fields);
    RefuseFields(reader, fields, kMembraneLine);
    RefuseLine(reader, "one");
}

}  // namespace kov::tool
