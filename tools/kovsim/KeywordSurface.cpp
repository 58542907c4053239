// *SURFACE, NAME=name [, TYPE=ELEMENT] [, INTERNAL]
//   label or name of a set [, face]
// *SURFACE, NAME=name, TYPE=NODE [, INTERNAL]
//   label or name of a set [, area]
//
// Without a face whole elements are meant. On assembly level `instance.label` and `instance.set`
// stand for members of an instance.

#include "DataFields.h"
#include "Faces.h"
#include "Keywords.h"
#include "Names.h"
#include "References.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

constexpr char kElementForm[] = "LABEL OR SET, FACE";
constexpr char kNodeForm[] = "LABEL OR SET";

class SurfaceReader {
  public:
    SurfaceReader(Translation& translation, NamedSurface& surface)
        : m_translation(translation),
          m_surface(surface),
          m_entity(surface.ofNodes ? kNodeEntity : kElementEntity) {}

    void Read(DeckReader& reader) {
        for (long lines = 1; reader.NextData(); ++lines) {
            if (!ReadLine(reader)) {
                m_translation.Defer(reader, reader.Place(), nullptr,
                                    [&surface = m_surface](Translation& again, DeckReader& from) {
                                        SurfaceReader(again, surface).Read(from);
                                    });
                reader.SkipToKeyword();
                return;
            }
            if (lines % (1 << 14) == 0) m_translation.Breathe(reader);
        }
    }

  private:
    bool IsSecond() const { return m_translation.CurrentPass() == Translation::Pass::Second; }

    // False if something is not known yet in the first pass.
    bool ReadLine(DeckReader const& reader) {
        FieldScanner fields(reader.Line(), reader.LineEnd());
        Reference member;
        int label = 0;
        Result const result = fields.ReadInt(label);
        if (result == Result::Wrong) {
            if (!FindNamed(reader, fields, member)) return false;
        } else if (result != Result::Value || label < 1) {
            FailLabel(reader, fields, result, m_entity.label, "labels or names of sets");
        } else {
            member.ordinal = (m_translation.Current().*m_entity.labels).Find(label);
            if (member.ordinal == LabelTable::None) {
                if (!IsSecond()) return false;
                reader.Fail(UnknownLabel(m_translation.Current(), m_entity, Who(), label));
            }
        }
        int const face = m_surface.ofNodes ? ReadArea(reader, fields) : ReadFace(reader, fields);
        if (!fields.AtEnd()) {
            static_cast<void>(fields.ReadText(m_text));
            reader.Fail("'" + Shown(fields.Field()) + "' is one field too many; expected " +
                        (m_surface.ofNodes ? kNodeForm : kElementForm));
        }
        Add(reader, member, face);
        return true;
    }

    std::string Who() const { return "surface '" + Shown(m_surface.name) + "'"; }

    bool FindNamed(DeckReader const& reader, FieldScanner& fields, Reference& member) {
        if (!m_name.Read(fields)) reader.Fail("the quotes of a set's name are not closed");
        Scope& scope = m_translation.Current();
        member = FindReference(m_translation.AllScopes(), scope, m_entity, m_name, reader,
                               reader.LineNumber());
        if (member.ordinal != LabelTable::None) return true;
        if (member.set == nullptr || (!member.set->deferred.empty() && !IsSecond())) {
            if (!IsSecond()) return false;
            reader.Fail(
                UnknownReference(m_translation.AllScopes(), scope, m_entity, m_name, nullptr));
        }
        if (!member.set->deferred.empty()) m_translation.Resolve(*member.set, reader);
        return true;
    }

    // Surfaces of nodes may tell the area of each node, which the document does not keep.
    int ReadArea(DeckReader const& reader, FieldScanner& fields) {
        double area = 0;
        if (fields.AtEnd()) return -1;
        Result const result = fields.ReadDouble(area);
        if (result == Result::Wrong || result == Result::TooLarge) {
            FailNumber(reader, fields, result, "an area");
        }
        if (result == Result::Value) {
            m_translation.Note("areas of nodes of surfaces, which were not kept");
        }
        return -1;
    }

    int ReadFace(DeckReader const& reader, FieldScanner& fields) {
        if (fields.AtEnd()) return -1;
        if (!fields.ReadText(m_text)) reader.Fail("the quotes of a face are not closed");
        if (m_text.empty()) return -1;
        int const face = FindFace(m_text);
        if (face < 0) {
            reader.Fail("'" + Shown(m_text) +
                        "' is no face; expected S1 to S6, SPOS, SNEG or E1 to E4");
        }
        return face;
    }

    void Add(DeckReader const& reader, Reference const& member, int face) {
        Scopes& scopes = m_translation.AllScopes();
        SetTable& sets = m_surface.ofNodes ? scopes.SurfaceNodes() : scopes.SurfaceElements();
        if (face >= 0) CheckFace(reader, member, face);
        NamedSet& to = m_surface.Members(face, sets);
        auto const collection = [this]() -> KOVSimCollection const& {
            return m_translation.Model().Collection(m_entity);
        };
        if (member.set != nullptr) {
            sets.Join(to, *member.set, collection);
        } else {
            sets.Add(to, member.ordinal, 1, 1, collection);
        }
    }

    // All elements of the line have the face.
    void CheckFace(DeckReader const& reader, Reference const& member, int face) {
        ModelWriter const& model = m_translation.Model();
        auto const lacks = [face](ElementType const& type) { return !HasFace(type, face); };
        if (!model.AnyType(lacks)) return;
        int wrong = -1;
        if (member.set == nullptr) {
            wrong = model.FirstElement({member.ordinal, 1, 1}, lacks);
        } else {
            member.set->members.ForRuns([&](int first, int count, int stride) {
                if (wrong < 0) wrong = model.FirstElement({first, count, stride}, lacks);
            });
        }
        if (wrong >= 0) FailFace(reader, wrong, face);
    }

    [[noreturn]] void FailFace(DeckReader const& reader, int ordinal, int face) {
        Scope const& scope = m_translation.AllScopes().OfElement(ordinal);
        ElementType const& type = m_translation.Model().TypeOf(ordinal);
        reader.Fail(Who() + ": element " + std::to_string(scope.elementLabels.LabelOf(ordinal)) +
                    (scope.IsRoot() ? "" : " of instance '" + Shown(scope.name) + "'") +
                    " of type " + std::string(type.name) + " has no " + FaceName(face) +
                    "; expected " + FacesOf(type));
    }

    Translation& m_translation;
    NamedSurface& m_surface;
    Entity const& m_entity;
    ScopedName m_name;
    std::string m_text;
};

}  // namespace

void ReadSurface(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"name", "type", "internal"});
    parameters.RefuseValues({"internal"});
    std::string const name = parameters.Required("name");
    std::string const given = parameters.Has("type") ? parameters.Value("type") : "element";
    std::string const type = LowerCase(given);
    if (type != "element" && type != "node") {
        reader.FailAt(line.line, "'" + Shown(given) +
                                     "' is no type of surface that is known; expected TYPE=ELEMENT "
                                     "or TYPE=NODE");
    }
    NamedSurface& surface =
        translation.MakeOnce("surface", &Scope::surfaces, name, reader, line.line);
    surface.ofNodes = type == "node";
    SurfaceReader(translation, surface).Read(reader);
}

}  // namespace kov::tool
