#include "SectionParameters.h"

#include "Names.h"

namespace kov::tool {

SectionEntry& MakeSection(Translation& translation, DeckReader const& reader,
                          KeywordLine const& line, KeywordParameters const& parameters,
                          SectionEntry::Kind kind) {
    static_cast<void>(parameters.Required("elset"));
    SectionTable& table = translation.Sections();
    SectionEntry& section = table.sections.emplace_back();
    section.kind = kind;
    section.at = table.files.At(reader.Path(), line.line);
    section.scope = &translation.Current();
    section.elements = parameters.Scoped("elset");
    return section;
}

void TakeOrientation(Translation& translation, KeywordParameters const& parameters,
                     SectionEntry& section) {
    if (!parameters.Has("orientation")) return;
    section.orientation = translation.Sections().orientationNames.Number(
        *section.scope, parameters.Scoped("orientation"), section.at);
}

void TakeThicknessName(Translation& translation, KeywordParameters const& parameters,
                       char const* key, SectionEntry& section) {
    if (!parameters.Has(key)) return;
    section.thicknessName = translation.Sections().thicknessNames.Number(
        *section.scope, parameters.Scoped(key), section.at);
}

int TakeMaterial(Translation& translation, KeywordParameters const& parameters,
                 SectionEntry const& section) {
    return translation.Sections().materials.Mention(parameters.Required("material"), section.at);
}

void TakeComposite(Translation& translation, DeckReader const& reader, KeywordLine const& line,
                   KeywordParameters const& parameters, SectionEntry& section) {
    section.composite = parameters.Has("composite");
    section.symmetric = parameters.Has("symmetric");
    section.name = parameters.Value("layup");
    if (parameters.Has("stack direction")) {
        section.stackDirection = static_cast<unsigned char>(
            1 + WordOf(reader, line, parameters.Value("stack direction"),
                       {"1", "2", "3", "orientation"}, "STACK DIRECTION=1, 2, 3 or ORIENTATION"));
    }
    constexpr int kByOrientation = 4;
    if (section.stackDirection == kByOrientation && !parameters.Has("orientation")) {
        reader.FailAt(line.line, ShownKeyword(line) +
                                     " with STACK DIRECTION=ORIENTATION but without ORIENTATION; "
                                     "expected both");
    }
    if (section.composite && parameters.Has("material")) {
        reader.FailAt(line.line, ShownKeyword(line) +
                                     " with COMPOSITE and MATERIAL; expected the materials in the "
                                     "lines of the layers");
    }
    if (section.composite) return;
    for (char const* const key : {"SYMMETRIC", "LAYUP"}) {
        if (!parameters.Has(LowerCase(key).c_str())) continue;
        reader.FailAt(line.line, ShownKeyword(line) + " with " + key +
                                     " but without COMPOSITE; expected both or neither");
    }
    parameters.PassOver(translation, {"stack direction"});
    section.stackDirection = 0;
}

int WordOf(DeckReader const& reader, KeywordLine const& line, std::string const& value,
           std::initializer_list<char const*> words, char const* expected) {
    std::string word = LowerCase(value);
    std::erase(word, ' ');
    int number = 0;
    for (char const* const known : words) {
        if (word == known) return number;
        ++number;
    }
    reader.FailAt(line.line, "'" + Shown(value) + "' is not known; expected " + expected);
}

}  // namespace kov::tool
