// *PART, NAME=part ... *END PART
// *ASSEMBLY, NAME=assembly ... *END ASSEMBLY
// *INSTANCE, NAME=instance, PART=part ... *END INSTANCE
//   x, y, z                                the translation
//   ax, ay, az, bx, by, bz, degrees        the rotation about the axis from a to b
//
// What an instance has in addition to its part stands before *END INSTANCE.

#include <algorithm>

#include "DataFields.h"
#include "Failure.h"
#include "Keywords.h"
#include "Names.h"
#include "Nearest.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

// The keywords that no part may hold.
constexpr std::string_view kOutsideParts[] = {"part", "assembly", "endassembly", "instance",
                                              "endinstance"};

bool IsOutsideParts(std::string_view keyword) {
    return std::find(std::begin(kOutsideParts), std::end(kOutsideParts), keyword) !=
           std::end(kOutsideParts);
}

void RefuseInPart(Part const* part, DeckReader const& reader, KeywordLine const& line) {
    if (part == nullptr) return;
    reader.FailAt(line.line, ShownKeyword(line) + " within part '" + Shown(part->name) +
                                 "', which begins at " + reader.At(part->path, part->line) +
                                 "; expected *END PART");
}

void RefuseInInstance(Translation& translation, DeckReader const& reader, KeywordLine const& line) {
    Scope const* const instance = translation.Parts().instance;
    if (instance == nullptr) return;
    reader.FailAt(line.line, ShownKeyword(line) + " within instance '" + Shown(instance->name) +
                                 "', which begins at " + reader.At(instance->path, instance->line) +
                                 "; expected *END INSTANCE");
}

// The real numbers of a data line, `count` at most; a field without text is 0. Answers how many
// fields there are.
int ReadNumbers(DeckReader const& reader, int count, char const* what, char const* form,
                double* values) {
    FieldScanner fields(reader.Line(), reader.LineEnd());
    int read = 0;
    while (!fields.AtEnd()) {
        double value = 0;
        Result const result = fields.ReadDouble(value);
        if (read == count) {
            reader.Fail("'" + Shown(fields.Field()) + "' is one field too many; expected " + form);
        }
        if (result == Result::Wrong || result == Result::TooLarge) {
            FailNumber(reader, fields, result, what);
        }
        values[read++] = value;
    }
    return read;
}

Placing ReadPlacing(DeckReader& reader) {
    if (!reader.NextData()) return {};
    double translation[3] = {};
    ReadNumbers(reader, 3, "a translation", "X, Y, Z", translation);
    Placing placing = Placing::Translated(translation);
    if (!reader.NextData()) return placing;
    double turn[7];
    constexpr char form[] = "AX, AY, AZ, BX, BY, BZ, DEGREES";
    int const read = ReadNumbers(reader, 7, "a rotation", form, turn);
    if (read < 7) {
        reader.Fail(std::to_string(read) + (read == 1 ? " field" : " fields") + "; expected " +
                    form);
    }
    if (!WithinRange(turn, turn + 3)) {
        reader.Fail(
            "the axis of the rotation is longer than the largest number; expected points that are "
            "nearer to each other");
    }
    double direction[3];
    if (!Direction(turn, turn + 3, direction)) {
        reader.Fail("the axis of the rotation has no length; expected two points in two places");
    }
    placing = Placing::Rotated(translation, turn, turn + 3, turn[6]);
    if (!placing.IsFinite()) {
        reader.Fail("the rotation leads beyond the range of numbers; expected smaller numbers");
    }
    if (reader.NextData()) {
        reader.Fail("a third data line; expected a translation and a rotation at most");
    }
    return placing;
}

template <class Names>
std::string Hint(std::string const& wanted, Names const& all) {
    NearestSearch search(wanted);
    for (auto const& named : all) search.Look(named.name);
    return NearestHint(search.Names());
}

}  // namespace

void ReadPart(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"name"});
    std::string const name = parameters.Required("name");
    Assembly& assembly = translation.Parts();
    RefuseInPart(translation.CurrentPart(), reader, line);
    RefuseInInstance(translation, reader, line);
    if (assembly.open) {
        reader.FailAt(line.line, "*PART within the assembly, which begins at " +
                                     reader.At(assembly.path, assembly.line) +
                                     "; expected it in front");
    }
    if (reader.Size() < 0) {
        reader.FailAt(line.line,
                      "a deck with parts; expected a regular file, as parts are read "
                      "once for each instance");
    }
    Part*& known = assembly.byName[LowerCase(name)];
    if (known != nullptr) {
        reader.FailAt(line.line, "part '" + Shown(name) + "' is defined a second time, first at " +
                                     reader.At(known->path, known->line) +
                                     "; expected each name once");
    }
    RefuseData(reader, line);
    known = &assembly.parts.emplace_back();
    known->name = name;
    known->path = reader.Path();
    known->line = line.line;
    for (bool first = true; reader.SkipToKeyword(); first = false) {
        if (first) known->body = reader.Place();
        KeywordLine inside;
        reader.TakeKeyword(inside, &UnknownKeyword);
        std::string const keyword = Plain(inside.keyword);
        if (keyword == "endpart") {
            KeywordParameters const none(reader, inside, {});
            RefuseData(reader, inside);
            return;
        }
        if (IsOutsideParts(keyword)) RefuseInPart(known, reader, inside);
        translation.Breathe(reader);
    }
    reader.FailAt(line.line,
                  "part '" + Shown(name) + "' does not end in this file; expected *END PART");
}

void ReadEndPart(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {});
    if (!translation.EndPart(reader)) {
        reader.FailAt(line.line, "*END PART without *PART in this file; expected *PART in front");
    }
}

void ReadAssembly(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"name"});
    if (parameters.Has("name")) parameters.Value("name");
    RefuseInPart(translation.CurrentPart(), reader, line);
    RefuseInInstance(translation, reader, line);
    Assembly& assembly = translation.Parts();
    if (assembly.line != 0) {
        reader.FailAt(line.line, "a second *ASSEMBLY, the first is at " +
                                     reader.At(assembly.path, assembly.line) + "; expected one");
    }
    assembly.path = reader.Path();
    assembly.line = line.line;
    assembly.open = true;
    RefuseData(reader, line);
}

void ReadEndAssembly(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {});
    RefuseInPart(translation.CurrentPart(), reader, line);
    RefuseInInstance(translation, reader, line);
    Assembly& assembly = translation.Parts();
    if (!assembly.open) {
        reader.FailAt(line.line, "*END ASSEMBLY without *ASSEMBLY; expected *ASSEMBLY in front");
    }
    assembly.open = false;
    RefuseData(reader, line);
}

void ReadInstance(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"name", "part"});
    RefuseInPart(translation.CurrentPart(), reader, line);
    RefuseInInstance(translation, reader, line);
    Assembly& assembly = translation.Parts();
    if (!assembly.open) {
        reader.FailAt(line.line, "*INSTANCE outside an assembly; expected *ASSEMBLY in front");
    }
    std::string const name = parameters.Required("name");
    std::string const partName = parameters.Required("part");
    auto const found = assembly.byName.find(LowerCase(partName));
    if (found == assembly.byName.end()) {
        reader.FailAt(line.line, "part '" + Shown(partName) + "' of instance '" + Shown(name) +
                                     "' is not defined; expected a part that stands in front" +
                                     Hint(partName, assembly.parts));
    }
    Scopes& scopes = translation.AllScopes();
    if (Scope const* const other = scopes.FindInstance(name)) {
        reader.FailAt(line.line, "instance '" + Shown(name) + "' is defined a second time, first " +
                                     "at " + reader.At(other->path, other->line) +
                                     "; expected each name once");
    }
    ModelWriter const& model = translation.Model();
    Scope& scope = scopes.MakeInstance(name);
    scope.part = found->second;
    scope.path = reader.Path();
    scope.line = line.line;
    scope.placing = ReadPlacing(reader);
    scope.firstNode = model.NodeCount();
    scope.firstElement = model.ElementCount();
    scope.nodes = scope.elements = -1;
    assembly.instance = &scope;
    translation.Enter(scope);
    translation.ReadPart(*found->second);
}

void ReadEndInstance(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {});
    RefuseInPart(translation.CurrentPart(), reader, line);
    Assembly& assembly = translation.Parts();
    if (assembly.instance == nullptr) {
        reader.FailAt(line.line, "*END INSTANCE without *INSTANCE; expected *INSTANCE in front");
    }
    Scope& scope = *assembly.instance;
    scope.nodes = translation.Model().NodeCount() - scope.firstNode;
    scope.elements = translation.Model().ElementCount() - scope.firstElement;
    assembly.instance = nullptr;
    translation.Enter(translation.AllScopes().Root());
    RefuseData(reader, line);
}

void CheckEnds(Translation& translation) {
    Assembly const& assembly = translation.Parts();
    if (assembly.instance != nullptr) {
        throw DeckError(assembly.instance->path, assembly.instance->line,
                        "instance '" + Shown(assembly.instance->name) +
                            "' does not end; expected *END INSTANCE");
    }
    if (assembly.open) {
        throw DeckError(assembly.path, assembly.line,
                        "the assembly does not end; expected *END ASSEMBLY");
    }
}

}  // namespace kov::tool
