// *NSET, NSET=name [, GENERATE] [, INSTANCE=name] [, INTERNAL]
// *ELSET, ELSET=name [, GENERATE] [, INSTANCE=name] [, INTERNAL]
//   label or name of a set, ...
//   with GENERATE: first, last [, increment]
//
// *NSET, NSET=name, ELSET=name                 the nodes of the elements of a set
//
// On assembly level members of an instance are `instance.label` and `instance.set`, or plain ones
// with INSTANCE.
//
// A set may be built by several keywords. A set that is named as a member gives the members that it
// has at that point; one that is defined only further on gives all its members.

#include "DataFields.h"
#include "Keywords.h"
#include "Names.h"
#include "References.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

class MemberReader {
  public:
    /// `from`: the scope whose labels and sets the members are.
    MemberReader(Translation& translation, Entity const& kind, NamedSet& set, Scope& from,
                 bool generate)
        : m_translation(translation),
          m_kind(kind),
          m_set(set),
          m_from(from),
          m_generate(generate) {}

    void Read(DeckReader& reader) {
        for (long lines = 1; reader.NextData(); ++lines) {
            bool const known = m_generate ? ReadRange(reader) : ReadList(reader);
            if (!known) {
                DeferFrom(reader);
                return;
            }
            if (lines % (1 << 14) == 0) m_translation.Breathe(reader);
        }
    }

  private:
    bool IsSecond() const { return m_translation.CurrentPass() == Translation::Pass::Second; }

    void DeferFrom(DeckReader& reader) {
        Translation& translation = m_translation;
        translation.Defer(reader, reader.Place(), &m_set,
                          [&kind = m_kind, &set = m_set, &scope = m_from, generate = m_generate](
                              Translation& again, DeckReader& from) {
                              MemberReader(again, kind, set, scope, generate).Read(from);
                          });
        reader.SkipToKeyword();
    }

    [[noreturn]] void FailUnknown(DeckReader const& reader, int label) const {
        reader.Fail(UnknownLabel(
            m_from, m_kind, std::string(m_kind.name) + " set '" + Shown(m_set.name) + "'", label));
    }

    // All of these answer false if something is not known yet in the first pass.
    bool Unknown(DeckReader const& reader, int label) const {
        if (IsSecond()) FailUnknown(reader, label);
        return false;
    }

    bool ReadRange(DeckReader const& reader) {
        constexpr char form[] = "FIRST, LAST, INCREMENT";
        FieldScanner fields(reader.Line(), reader.LineEnd());
        int const first = ReadLabel(reader, fields, m_kind.label, form);
        int const last = ReadLabel(reader, fields, m_kind.label, form);
        int increment = 1;
        if (!fields.AtEnd()) increment = ReadLabel(reader, fields, "an increment", form);
        if (!fields.AtEnd())
            reader.Fail(std::string("more than three fields with GENERATE; expected ") + form);
        if (last < first) {
            reader.Fail("the range ends at " + std::to_string(last) + ", before it begins at " +
                        std::to_string(first) + "; expected " + form);
        }
        // A run of labels gives ordinals that go up by the increment too; single ones stand for
        // themselves.
        int const unknown =
            (m_from.*m_kind.labels)
                .ForRange(first, last, increment, [this, increment](int ordinal, int count) {
                    m_translation.Add(m_kind, m_set, ordinal, count, count == 1 ? 1 : increment);
                });
        return unknown == 0 || Unknown(reader, unknown);
    }

    bool ReadList(DeckReader const& reader) {
        FieldScanner fields(reader.Line(), reader.LineEnd());
        while (!fields.AtEnd()) {
            int label = 0;
            Result const result = fields.ReadInt(label);
            if (result == Result::Empty) continue;
            if (result == Result::Wrong) {
                if (!AddSet(reader, fields)) return false;
                continue;
            }
            if (result == Result::TooLarge || label < 1) {
                FailLabel(reader, fields, result, m_kind.label, "labels or names of sets");
            }
            int const ordinal = (m_from.*m_kind.labels).Find(label);
            if (ordinal == LabelTable::None) return Unknown(reader, label);
            m_translation.Add(m_kind, m_set, ordinal, 1, 1);
        }
        return true;
    }

    bool AddSet(DeckReader const& reader, FieldScanner& fields) {
        if (!m_name.Read(fields)) reader.Fail("the quotes of a set's name are not closed");
        Reference const found = FindReference(m_translation.AllScopes(), m_from, m_kind, m_name,
                                              reader, reader.LineNumber());
        if (found.ordinal != LabelTable::None) {
            m_translation.Add(m_kind, m_set, found.ordinal, 1, 1);
            return true;
        }
        NamedSet* const other = found.set;
        if (other == nullptr || (!other->deferred.empty() && !IsSecond())) {
            if (!IsSecond()) return false;
            reader.Fail(
                UnknownReference(m_translation.AllScopes(), m_from, m_kind, m_name, &m_set));
        }
        if (other == &m_set) return true;
        if (other->resolving || !other->deferred.empty()) m_translation.Resolve(*other, reader);
        m_translation.Join(m_kind, m_set, *other);
        return true;
    }

    Translation& m_translation;
    Entity const& m_kind;
    NamedSet& m_set;
    Scope& m_from;
    bool m_generate;
    ScopedName m_name;
};

// The scope that INSTANCE= names; the current one without it.
Scope& MemberScope(Translation& translation, DeckReader const& reader, KeywordLine const& line,
                   KeywordParameters const& parameters) {
    Scope& current = translation.Current();
    if (!parameters.Has("instance")) return current;
    std::string const name = parameters.Value("instance");
    if (!current.IsRoot()) {
        reader.FailAt(line.line, "INSTANCE=" + Shown(name) + " within instance '" +
                                     Shown(current.name) + "'; expected it on assembly level");
    }
    Scope* const instance = translation.AllScopes().FindInstance(name);
    if (instance == nullptr) {
        reader.FailAt(line.line, UnknownInstance(translation.AllScopes(), name));
    }
    return *instance;
}

// *NSET, ELSET=: the nodes of the elements of a set, once all elements have their nodes.
void AddNodesOfElements(Translation& translation, DeckReader& reader, int line, NamedSet& set,
                        Scope& from, ScopedName const& name) {
    Scopes& scopes = translation.AllScopes();
    NamedSet* const elements = FindReference(scopes, from, kElementEntity, name, reader, line).set;
    if (elements == nullptr) {
        reader.FailAt(line, UnknownSet(scopes, from, kElementEntity, name));
    }
    if (!elements->deferred.empty()) translation.Resolve(*elements, reader);
    translation.Model().ForNodesOf(elements->members, [&](int const* nodes, int count) {
        for (int i = 0; i < count;) {
            int const first = i++;
            while (i < count && nodes[i] == nodes[i - 1] + 1) ++i;
            translation.Add(kNodeEntity, set, nodes[first], i - first, 1);
        }
    });
}

void ReadSet(Translation& translation, DeckReader& reader, Entity const& kind,
             KeywordParameters const& parameters, NamedSet& set, Scope& from) {
    if (parameters.Has("unsorted")) {
        translation.Note("UNSORTED sets, whose order was not kept");
    }
    MemberReader(translation, kind, set, from, parameters.Has("generate")).Read(reader);
}

}  // namespace

void ReadNodeSet(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(
        reader, line, {"nset", "elset", "generate", "instance", "internal", "unsorted"});
    parameters.RefuseValues({"generate", "internal", "unsorted"});
    std::string const name = parameters.Required("nset");
    Scope& from = MemberScope(translation, reader, line, parameters);
    NamedSet& set =
        translation.MakeSet(kNodeEntity, name, parameters.Has("internal"), reader, line.line);
    if (!parameters.Has("elset")) {
        ReadSet(translation, reader, kNodeEntity, parameters, set, from);
        return;
    }
    ScopedName const elements = parameters.Scoped("elset");
    if (parameters.Has("generate")) {
        reader.FailAt(line.line, "*NSET with ELSET and GENERATE; expected one of them");
    }
    RefuseData(reader, line);
    translation.Defer(
        reader, reader.Place(), &set,
        [&set, &from, elements, line = line.line](Translation& again, DeckReader& place) {
            AddNodesOfElements(again, place, line, set, from, elements);
        });
}

void ReadElementSet(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line,
                                       {"elset", "generate", "instance", "internal", "unsorted"});
    parameters.RefuseValues({"generate", "internal", "unsorted"});
    std::string const name = parameters.Required("elset");
    Scope& from = MemberScope(translation, reader, line, parameters);
    NamedSet& set =
        translation.MakeSet(kElementEntity, name, parameters.Has("internal"), reader, line.line);
    ReadSet(translation, reader, kElementEntity, parameters, set, from);
}

}  // namespace kov::tool
