// *ORIENTATION, NAME=name [, SYSTEM=RECTANGULAR|CYLINDRICAL|SPHERICAL|Z RECTANGULAR]
//               [, DEFINITION=COORDINATES|NODES]
//   ax, ay, az, bx, by, bz [, cx, cy, cz]        with NODES: node a, node b [, node c]
//   axis, degrees                                a further rotation, may be left out

#include <cmath>

#include "DataFields.h"
#include "Keywords.h"
#include "Names.h"
#include "References.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

constexpr char kPoints[] = "AX, AY, AZ, BX, BY, BZ, CX, CY, CZ";
constexpr char kNodes[] = "NODE A, NODE B, NODE C";
constexpr char kTurn[] = "AXIS, DEGREES";

// Two directions count as one when the sine of the angle between them is below this.
constexpr double kCollinear = 1e-10;

int ReadSystem(DeckReader const& reader, KeywordLine const& line,
               KeywordParameters const& parameters) {
    if (!parameters.Has("system")) return 0;
    std::string const given = parameters.Value("system");
    std::string system = LowerCase(given);
    std::erase(system, ' ');
    constexpr std::string_view kKnown[] = {"rectangular", "cylindrical", "spherical",
                                           "zrectangular"};
    for (int i = 0; i < 4; ++i) {
        if (system == kKnown[i]) return i;
    }
    reader.FailAt(line.line, "'" + Shown(given) +
                                 "' is no system; expected SYSTEM=RECTANGULAR, CYLINDRICAL, "
                                 "SPHERICAL or Z RECTANGULAR");
}

bool ReadDefinition(DeckReader const& reader, KeywordLine const& line,
                    KeywordParameters const& parameters) {
    if (!parameters.Has("definition")) return false;
    std::string const given = parameters.Value("definition");
    std::string const definition = LowerCase(given);
    if (definition != "coordinates" && definition != "nodes") {
        reader.FailAt(line.line, "'" + Shown(given) +
                                     "' is no definition that is known; expected "
                                     "DEFINITION=COORDINATES or NODES");
    }
    return definition == "nodes";
}

// The system needs two points in two places, or three that are not on one line.
void Check(DeckReader const& reader, int line, NamedOrientation const& orientation) {
    double const* const a = orientation.numbers;
    double const* const b = a + 3;
    double const* const c = a + 6;
    std::string const name = "orientation '" + Shown(orientation.name) + "'";
    double u[3];
    double v[3];
    bool const axis = orientation.system == 1 || orientation.system == 2;
    if (!(axis ? WithinRange(a, b) : WithinRange(c, a) && WithinRange(c, b))) {
        reader.FailAt(line, name +
                                ": its points are farther from each other than the largest number; "
                                "expected nearer ones");
    }
    if (axis) {
        if (Direction(a, b, u)) return;
        reader.FailAt(line, name + ": its points a and b stand in one place; expected two places");
    }
    bool const apart = Direction(c, a, u) && Direction(c, b, v);
    double const cross[3] = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
                             u[0] * v[1] - u[1] * v[0]};
    if (apart && std::hypot(cross[0], cross[1], cross[2]) > kCollinear) return;
    reader.FailAt(line, name +
                            ": its points a, b and c lie on one line; expected three that span a "
                            "plane");
}

void ReadPoints(DeckReader const& reader, double* points) {
    FieldScanner fields(reader.Line(), reader.LineEnd());
    int count = 0;
    while (!fields.AtEnd()) {
        double value = 0;
        Result const result = fields.ReadDouble(value);
        if (count == 9) {
            reader.Fail("'" + Shown(fields.Field()) + "' is one field too many; expected " +
                        kPoints);
        }
        if (result == Result::Wrong || result == Result::TooLarge) {
            FailNumber(reader, fields, result, "a coordinate");
        }
        points[count++] = value;
    }
    if (count != 6 && count != 9) {
        reader.Fail(std::to_string(count) + (count == 1 ? " number" : " numbers") +
                    "; expected 6 or 9, " + kPoints);
    }
}

void ReadTurn(DeckReader& reader, NamedOrientation& orientation) {
    FieldScanner fields(reader.Line(), reader.LineEnd());
    int axis = 0;
    Result const axisResult = fields.ReadInt(axis);
    if (axisResult != Result::Value || axis < 1 || axis > 3) {
        reader.Fail("'" + Shown(fields.Field()) + "' is no axis; expected 1, 2 or 3, as " + kTurn);
    }
    double degrees = 0;
    if (!fields.AtEnd()) {
        Result const result = fields.ReadDouble(degrees);
        if (result == Result::Wrong || result == Result::TooLarge) {
            FailNumber(reader, fields, result, "an angle in degrees");
        }
    }
    if (!fields.AtEnd()) reader.Fail(std::string("more than two fields; expected ") + kTurn);
    orientation.numbers[9] = axis;
    orientation.numbers[10] = degrees;
    if (reader.NextData()) {
        reader.Fail("a third data line; expected points and a rotation at most");
    }
}

// Nodes that are named as the points: their places are looked up when all nodes are known.
class NodePoints {
  public:
    NodePoints(Translation& translation, NamedOrientation& orientation)
        : m_translation(translation), m_orientation(orientation) {}

    void Read(DeckReader& reader) {
        static_cast<void>(reader.NextData());
        int ordinals[3] = {};
        int count = 0;
        int const line = reader.LineNumber();
        DeckPlace const place = reader.Place();
        FieldScanner fields(reader.Line(), reader.LineEnd());
        bool known = true;
        while (!fields.AtEnd()) {
            if (count == 3) reader.Fail(std::string("more than three nodes; expected ") + kNodes);
            ordinals[count] = ReadNode(reader, fields);
            known = known && ordinals[count] != LabelTable::None;
            ++count;
        }
        if (count < 2) {
            reader.Fail(std::to_string(count) + (count == 1 ? " node" : " nodes") +
                        "; expected two or three, " + kNodes);
        }
        if (known) {
            Take(ordinals, count);
            Check(reader, line, m_orientation);
            return;
        }
        m_translation.Defer(reader, place, nullptr,
                            [&orientation = m_orientation](Translation& again, DeckReader& from) {
                                NodePoints(again, orientation).Read(from);
                            });
    }

  private:
    int ReadNode(DeckReader const& reader, FieldScanner& fields) {
        Scope& scope = m_translation.Current();
        Scopes& scopes = m_translation.AllScopes();
        bool const second = m_translation.CurrentPass() == Translation::Pass::Second;
        int label = 0;
        Result const result = fields.ReadInt(label);
        if (result == Result::Wrong && m_translation.NamesInstances()) {
            ScopedName name;
            if (name.Read(fields) && !name.dots.empty()) {
                int const ordinal = FindScopedLabel(scopes, scope, kNodeEntity, name);
                if (ordinal == LabelTable::None && second) {
                    reader.Fail(UnknownNode(scopes, scope, name));
                }
                return ordinal;
            }
            fields.Again();
            static_cast<void>(fields.ReadInt(label));
        }
        if (result != Result::Value || label < 1) {
            FailLabel(reader, fields, result, "a node label", kNodes);
        }
        int const ordinal = scope.nodeLabels.Find(label);
        if (ordinal == LabelTable::None && second) {
            reader.Fail(UnknownLabel(scope, kNodeEntity,
                                     "orientation '" + Shown(m_orientation.name) + "'", label));
        }
        return ordinal;
    }

    // Nodes have their places in the assembly already; so has the origin, where c is left out.
    void Take(int const* ordinals, int count) {
        double* const numbers = m_orientation.numbers;
        for (int i = 0; i < count; ++i)
            m_translation.Model().ReadNodes(ordinals + i, 1, numbers + 3 * i);
        if (count < 3) static_cast<void>(m_translation.Current().placing.Apply(numbers + 6));
    }

    Translation& m_translation;
    NamedOrientation& m_orientation;
};

}  // namespace

void ReadOrientation(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"name", "system", "definition"});
    std::string const name = parameters.Required("name");
    int const system = ReadSystem(reader, line, parameters);
    bool const nodes = ReadDefinition(reader, line, parameters);
    NamedOrientation& orientation =
        translation.MakeOnce("orientation", &Scope::orientations, name, reader, line.line);
    orientation.system = system;
    if (!reader.NextData()) {
        reader.FailAt(line.line, ShownKeyword(line) + " without a data line; expected " +
                                     (nodes ? kNodes : kPoints));
    }
    if (nodes) {
        reader.TakeAgain();
        NodePoints(translation, orientation).Read(reader);
    } else {
        double* const points = orientation.numbers;
        int const points_line = reader.LineNumber();
        ReadPoints(reader, points);
        Check(reader, points_line, orientation);
        for (int i = 0; i < 3; ++i) {
            if (translation.Current().placing.Apply(points + 3 * i)) continue;
            reader.Fail(
                "a point lies beyond the range of numbers where its instance is placed; "
                "expected smaller coordinates");
        }
    }
    if (reader.NextData()) ReadTurn(reader, orientation);
}

}  // namespace kov::tool
