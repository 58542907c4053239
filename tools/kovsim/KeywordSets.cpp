// *NSET, NSET=name [, GENERATE]          *ELSET, ELSET=name [, GENERATE]
//   label or name of a set, ...            with GENERATE: first, last [, increment]
//
// A set may be built by several keywords. A set that is named as a member gives the members that it
// has at that point; one that is defined only further on gives all its members.

#include "DataFields.h"
#include "Keywords.h"
#include "Names.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

// What differs between sets of nodes and sets of elements.
struct SetKind {
    char const* entity;  ///< "node"
    char const* label;   ///< "a node label"
    SetTable& (Translation::*sets)();
    LabelTable& (Translation::*labels)();
    void (Translation::*add)(NamedSet*, int, int, int);
    void (Translation::*join)(NamedSet&, NamedSet const&);
};

constexpr SetKind kNodes = {"node",
                            "a node label",
                            &Translation::NodeSets,
                            &Translation::NodeLabels,
                            &Translation::AddNodes,
                            &Translation::JoinNodeSet};
constexpr SetKind kElements = {"element",
                               "an element label",
                               &Translation::ElementSets,
                               &Translation::ElementLabels,
                               &Translation::AddElements,
                               &Translation::JoinElementSet};

class MemberReader {
  public:
    MemberReader(Translation& translation, SetKind const& kind, NamedSet& set, bool generate)
        : m_translation(translation), m_kind(kind), m_set(set), m_generate(generate) {}

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
                          [&kind = m_kind, &set = m_set, generate = m_generate](Translation& again,
                                                                                DeckReader& from) {
                              MemberReader(again, kind, set, generate).Read(from);
                          });
        reader.SkipToKeyword();
    }

    [[noreturn]] void FailUnknown(DeckReader const& reader, int label) const {
        reader.Fail(std::string(m_kind.entity) + " set '" + Shown(m_set.name) + "' names " +
                    m_kind.entity + " " + std::to_string(label) +
                    ", which is not defined; expected " + m_kind.entity + "s of the deck");
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
        int const unknown = (m_translation.*m_kind.labels)().ForRange(
            first, last, increment, [this, increment](int ordinal, int count) {
                (m_translation.*m_kind.add)(&m_set, ordinal, count, count == 1 ? 1 : increment);
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
            int const ordinal = (m_translation.*m_kind.labels)().Find(label);
            if (ordinal == LabelTable::None) return Unknown(reader, label);
            (m_translation.*m_kind.add)(&m_set, ordinal, 1, 1);
        }
        return true;
    }

    bool AddSet(DeckReader const& reader, FieldScanner& fields) {
        fields.Again();
        if (!fields.ReadText(m_name)) reader.Fail("the quotes of a set's name are not closed");
        NamedSet* const other = (m_translation.*m_kind.sets)().Find(m_name);
        if (other == nullptr || (!other->deferred.empty() && !IsSecond())) {
            if (!IsSecond()) return false;
            reader.Fail("'" + Shown(m_name) + "' is neither " + m_kind.label +
                        " nor the name of a set; expected " + m_kind.entity + "s or " +
                        m_kind.entity + " sets of the deck");
        }
        if (other == &m_set) return true;
        if (other->resolving || !other->deferred.empty()) m_translation.Resolve(*other, reader);
        (m_translation.*m_kind.join)(m_set, *other);
        return true;
    }

    Translation& m_translation;
    SetKind const& m_kind;
    NamedSet& m_set;
    bool m_generate;
    std::string m_name;
};

void ReadSet(Translation& translation, DeckReader& reader, KeywordLine const& line,
             SetKind const& kind, char const* nameKey) {
    KeywordParameters const parameters(reader, line, {nameKey, "generate", "internal", "unsorted"});
    std::string const name = parameters.Required(nameKey);
    if (parameters.Has("unsorted")) {
        ++translation.Summary().notes["UNSORTED sets, whose order was not kept"];
    }
    NamedSet& set = (translation.*kind.sets)().FindOrMake(name);
    MemberReader(translation, kind, set, parameters.Has("generate")).Read(reader);
}

}  // namespace

void ReadNodeSet(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    ReadSet(translation, reader, line, kNodes, "nset");
}

void ReadElementSet(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    ReadSet(translation, reader, line, kElements, "elset");
}

}  // namespace kov::tool
