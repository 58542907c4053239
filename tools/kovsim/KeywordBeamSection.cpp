// *BEAM SECTION, ELSET=set, MATERIAL=name, SECTION=profile [, ORIENTATION=name]
//   dimensions of the profile
//   n1x, n1y, n1z                            direction of the first axis, may be left out
//   integration points, ...                  may be left out

#include <algorithm>
#include <iterator>

#include "DataFields.h"
#include "LayerLine.h"
#include "Names.h"
#include "SectionParameters.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

constexpr char kDimensions[] = "the dimensions of the profile";
constexpr char kDirection[] = "N1X, N1Y, N1Z";

double ReadNumber(DeckReader const& reader, FieldScanner& fields, char const* what) {
    double value = 0;
    Result const result = fields.ReadDouble(value);
    if (result == Result::Wrong || result == Result::TooLarge) {
        FailNumber(reader, fields, result, what);
    }
    return value;
}

// So many dimensions of a profile are lengths above 0, where that is certain: behind them, and for
// other profiles, there are offsets and coordinates too.
std::size_t Lengths(std::string const& profile) {
    constexpr char const* kAll[] = {"RECT", "CIRC", "PIPE", "BOX", "HEX"};
    if (std::find(std::begin(kAll), std::end(kAll), profile) != std::end(kAll)) return SIZE_MAX;
    return profile == "TRAPEZOID" ? 3 : 0;
}

void ReadDimensions(DeckReader const& reader, FieldScanner& fields, std::string const& profile,
                    BeamProfile& beam) {
    constexpr char kOne[] = "a dimension of the profile";
    std::vector<double>& all = beam.dimensions;
    std::size_t const lengths = Lengths(profile);
    bool missing = false;
    while (!fields.AtEnd()) {
        double const value = all.size() < lengths ? ReadPositive(reader, fields, kOne)
                                                  : ReadNumber(reader, fields, kOne);
        if (fields.Field().empty()) {
            missing = true;
        } else if (missing) {
            break;
        } else {
            all.push_back(value);
        }
    }
    if (!missing || (!all.empty() && fields.Field().empty())) return;
    reader.Fail("dimension " + std::to_string(all.size() + 1) +
                " of the profile is missing; expected a number");
}

void ReadIntegrationPoints(DeckReader const& reader, FieldScanner& fields, BeamProfile& beam) {
    bool missing = false;
    while (!fields.AtEnd()) {
        int const points = ReadPoints(reader, fields, 0, "integration points");
        if (points > 0 && missing) {
            reader.Fail(
                "number " + std::to_string(beam.points.size() + 1) +
                " of the integration points is missing; expected a whole number from 1 to " +
                std::to_string(kMostSectionPoints));
        }
        missing = points == 0;
        if (!missing) beam.points.push_back(points);
    }
}

// Fields that are left out are 0; a line without any gives no direction.
void ReadDirection(DeckReader const& reader, FieldScanner& fields, BeamProfile& beam) {
    double direction[3] = {};
    bool any = false;
    for (int i = 0; i < 3 && !fields.AtEnd(); ++i) {
        direction[i] = ReadNumber(reader, fields, "a number of the direction");
        any = any || !fields.Field().empty();
    }
    RefuseFields(reader, fields, kDirection);
    if (!any) return;
    if (direction[0] == 0 && direction[1] == 0 && direction[2] == 0) {
        reader.Fail(std::string("the direction is 0; expected ") + kDirection);
    }
    beam.direction.assign(direction, direction + 3);
}

void ReadLines(DeckReader& reader, KeywordLine const& line, std::string const& profile,
               BeamProfile& beam) {
    if (!reader.NextData()) {
        reader.FailAt(line.line,
                      ShownKeyword(line) + " without a data line; expected " + kDimensions);
    }
    FieldScanner dimensions(reader.Line(), reader.LineEnd());
    ReadDimensions(reader, dimensions, profile, beam);
    if (!reader.NextData()) return;
    FieldScanner direction(reader.Line(), reader.LineEnd());
    ReadDirection(reader, direction, beam);
    if (!reader.NextData()) return;
    FieldScanner points(reader.Line(), reader.LineEnd());
    ReadIntegrationPoints(reader, points, beam);
    RefuseLine(reader, "dimensions, a direction and integration points at most");
}

}  // namespace

void ReadBeamSection(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(
        reader, line,
        {"elset", "material", "section", "orientation", "controls", "density", "lumped", "poisson",
         "rotary inertia", "temperature"});
    parameters.PassOver(
        translation, {"controls", "density", "lumped", "poisson", "rotary inertia", "temperature"});
    SectionEntry& section =
        MakeSection(translation, reader, line, parameters, SectionEntry::Kind::Beam);
    section.material = TakeMaterial(translation, parameters, section);
    section.name = UpperCase(parameters.Required("section"));
    TakeOrientation(translation, parameters, section);
    section.beam = std::make_unique<BeamProfile>();
    ReadLines(reader, line, section.name, *section.beam);
}

}  // namespace kov::tool
