// *NODE, NSET=name, SYSTEM=R|C|S
//   label, x, y, z [, three direction cosines of a normal]
//
// Coordinates left out are 0. With SYSTEM=C they are a radius, an angle in degrees and a height;
// with S a radius, a longitude and a latitude in degrees.

#include <cmath>
#include <numbers>

#include "DataFields.h"
#include "Keywords.h"
#include "Names.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

constexpr char kForm[] = "LABEL, X, Y, Z";
constexpr long kBreath = 1 << 16;

void ToRectangular(char system, double* xyz) {
    double const degree = std::numbers::pi / 180.0;
    double const a = xyz[1] * degree;
    double const radius = xyz[0];
    if (system == 'c') {
        xyz[0] = radius * std::cos(a);
        xyz[1] = radius * std::sin(a);
    } else if (system == 's') {
        double const b = xyz[2] * degree;
        xyz[0] = radius * std::cos(b) * std::cos(a);
        xyz[1] = radius * std::cos(b) * std::sin(a);
        xyz[2] = radius * std::sin(b);
    }
}

char ReadSystem(DeckReader const& reader, KeywordLine const& line,
                KeywordParameters const& parameters) {
    if (!parameters.Has("system")) return 'r';
    std::string const given = parameters.Value("system");
    std::string const system = LowerCase(given);
    if (system != "r" && system != "c" && system != "s") {
        reader.FailAt(line.line,
                      "'" + Shown(given) + "' is no coordinate system; expected SYSTEM=R, C or S");
    }
    return system.front();
}

// Behind the coordinates: direction cosines of a normal, which the document does not keep.
void PassNormal(Translation& translation, DeckReader const& reader, FieldScanner& fields) {
    for (int i = 0; !fields.AtEnd(); ++i) {
        double cosine = 0;
        Result const result = fields.ReadDouble(cosine);
        if (i == 3) {
            reader.Fail("'" + Shown(fields.Field()) + "' is one field too many; expected " + kForm);
        }
        if (result == Result::Wrong || result == Result::TooLarge) {
            FailNumber(reader, fields, result, "a direction cosine");
        }
    }
    translation.Note("nodes with a normal, which was not kept");
}

[[noreturn]] void FailPlaced(DeckReader const& reader, Scope const& scope, int label) {
    reader.Fail(ShownLabel(scope, kNodeEntity, label) +
                " lies beyond the range of numbers where its instance is placed; expected smaller "
                "coordinates");
}

}  // namespace

void ReadNodes(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"nset", "system"});
    char const system = ReadSystem(reader, line, parameters);
    NamedSet* const set =
        parameters.Has("nset")
            ? &translation.MakeSet(kNodeEntity, parameters.Value("nset"), false, reader, line.line)
            : nullptr;

    ModelWriter& model = translation.Model();
    LabelTable& labels = translation.Current().nodeLabels;
    Placing const* const placing =
        translation.Current().placing.MovesNothing() ? nullptr : &translation.Current().placing;
    int const first = model.NodeCount();
    for (long lines = 1; reader.NextData(); ++lines) {
        FieldScanner fields(reader.Line(), reader.LineEnd());
        int const label = ReadLabel(reader, fields, "a node label", kForm);
        double xyz[3] = {0, 0, 0};
        for (double& coordinate : xyz) {
            Result const result = fields.ReadDouble(coordinate);
            if (result == Result::Wrong || result == Result::TooLarge) {
                FailNumber(reader, fields, result, "a coordinate");
            }
        }
        if (!fields.AtEnd()) PassNormal(translation, reader, fields);
        if (system != 'r') ToRectangular(system, xyz);
        if (placing != nullptr && !placing->Apply(xyz))
            FailPlaced(reader, translation.Current(), label);

        if (labels.Insert(label, model.NodeCount())) {
            model.AddNode(xyz);
        } else {
            int const ordinal = labels.Find(label);
            translation.Repeats().Add(model, reader.Path(), reader.LineNumber(), label, ordinal,
                                      xyz);
            ++translation.Summary().repeatedNodes;
            if (ordinal < first) translation.AddNodes(set, ordinal, 1, 1);
        }
        if (lines % kBreath == 0) translation.Breathe(reader);
    }
    int const count = model.NodeCount() - first;
    if (count > 0) translation.AddNodes(set, first, count, 1);
}

}  // namespace kov::tool
