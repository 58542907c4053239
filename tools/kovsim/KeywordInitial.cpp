// *INITIAL CONDITIONS, TYPE=TEMPERATURE, HARDENING, STRESS or PLASTIC STRAIN
// *INITIAL CONDITIONS, TYPE=FIELD [, VARIABLE=n]
//   label or name of a set, value, ...
// *INITIAL CONDITIONS, TYPE=VELOCITY
//   label or name of a node set, degree of freedom, value
//
// What may be given stands in ConditionKinds. On assembly level nodes and elements of an instance
// are `instance.label` and `instance.set`. Sets may be defined further on: a set stands for all
// members that it has in the whole deck. A node or element has one value of a kind; it may be given
// again if it is the same.

#include <algorithm>
#include <charconv>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "AscendingSets.h"
#include "ConditionTable.h"
#include "DataFields.h"
#include "Interrupt.h"
#include "Keywords.h"
#include "Names.h"
#include "ObjectContent.h"
#include "OrdinalRows.h"

namespace kov::tool {
namespace {

using Number = ConditionKind::Number;
using Result = FieldScanner::Result;

constexpr long kBreath = 1 << 16;
constexpr int kMostDofs = 6;
constexpr int kMostVariables = 1000;

// Values by label on their way into the document: those of one kind and number.
struct LabelRows {
    ConditionEntry* entry;
    OrdinalRows rows;
};

// One keyword.
struct Block {
    ConditionKind const* kind;
    int variable;
    Scope* scope;
    DeckPlace data;
    int columns = 0;      ///< values of a line with a label; 0 before the first
    int columnsLine = 0;  ///< that line
    std::map<int, LabelRows> rows;
};

class ConditionReader {
  public:
    ConditionReader(Translation& translation, std::shared_ptr<Block> block)
        : m_translation(translation),
          m_block(std::move(block)),
          m_entity(m_block->kind->ofElements ? kElementEntity : kNodeEntity) {}

    void Read(DeckReader& reader) {
        for (long lines = 1; reader.NextData(); ++lines) {
            if (!ReadLine(reader)) {
                DeferFrom(reader);
                break;
            }
            if (lines % kBreath == 0) m_translation.Breathe(reader);
        }
        for (auto& [number, of] : m_block->rows) Write(reader, of);
    }

  private:
    bool IsSecond() const { return m_translation.CurrentPass() == Translation::Pass::Second; }
    ConditionKind const& Kind() const { return *m_block->kind; }

    void DeferFrom(DeckReader& reader) {
        m_translation.Defer(reader, reader.Place(), nullptr,
                            [block = m_block](Translation& again, DeckReader& from) {
                                ConditionReader(again, block).Read(from);
                            });
        static_cast<void>(reader.SkipToKeyword());
    }

    std::string Form() const {
        std::string const of = m_entity.name;
        return UpperCase(of) + " OR " + UpperCase(of) + " SET" +
               (Kind().number == Number::Dof ? ", DEGREE OF FREEDOM, VALUE"
                : Kind().most == 1           ? ", VALUE"
                                             : ", VALUE, ...");
    }

    // False if the line names a label that is not known yet in the first pass.
    bool ReadLine(DeckReader const& reader) {
        FieldScanner fields(reader.Line(), reader.LineEnd());
        int label = 0;
        int ordinal = LabelTable::None;
        Result const result = fields.ReadInt(label);
        if (result == Result::Value && label > 0) [[likely]] {
            Scope& scope = m_translation.Current();
            ordinal = (scope.*m_entity.labels).Find(label);
            if (ordinal == LabelTable::None && !IsSecond()) return false;
            if (ordinal == LabelTable::None) {
                reader.Fail(
                    UnknownLabel(scope, m_entity, "an initial " + std::string(Kind().type), label));
            }
        } else if (result == Result::Wrong) {
            if (!m_name.Read(fields)) reader.Fail("the quotes of a set's name are not closed");
            ordinal = FindReference(m_translation.AllScopes(), m_translation.Current(), m_entity,
                                    m_name, reader, reader.LineNumber())
                          .ordinal;
        } else {
            FailLabel(reader, fields, result, m_entity.label, Form().c_str());
        }
        int const number = ReadNumber(reader, fields);
        ReadValues(reader, fields);
        ordinal == LabelTable::None ? AddUniform(reader, number) : AddRow(reader, number, ordinal);
        return true;
    }

    int ReadNumber(DeckReader const& reader, FieldScanner& fields) const {
        if (Kind().number != Number::Dof) return m_block->variable;
        int number = 0;
        Result const result = fields.AtEnd() ? Result::Empty : fields.ReadInt(number);
        if (result == Result::Value && number >= 1 && number <= kMostDofs) return number;
        if (result == Result::Empty) {
            reader.Fail("a degree of freedom is missing; expected " + Form());
        }
        reader.Fail("'" + Shown(fields.Field()) +
                    "' is no degree of freedom; expected a whole number from 1 to " +
                    std::to_string(kMostDofs));
    }

    void ReadValues(DeckReader const& reader, FieldScanner& fields) {
        m_values.clear();
        do {
            double value = 0;
            Result const result = fields.AtEnd() ? Result::Empty : fields.ReadDouble(value);
            if (result == Result::Empty) {
                reader.Fail((Kind().most == 1
                                 ? "a value is"
                                 : "value " + std::to_string(m_values.size() + 1) + " is") +
                            std::string(" missing; expected ") + Form());
            }
            if (result != Result::Value) FailNumber(reader, fields, result, "a value");
            if (static_cast<int>(m_values.size()) == Kind().most) {
                reader.Fail("more than " + CountText(Kind().most, "value") + "; expected " +
                            Form());
            }
            m_values.push_back(value);
        } while (!fields.AtEnd());
    }

    ConditionEntry& MakeEntry(DeckReader const& reader, int number, int line) {
        ConditionEntry& entry = m_translation.Conditions().emplace_back();
        entry.kind = m_block->kind;
        entry.number = number;
        entry.at = m_translation.Sections().files.At(reader.Path(), line);
        entry.scope = m_block->scope;
        entry.columns = static_cast<int>(m_values.size());
        return entry;
    }

    void AddUniform(DeckReader const& reader, int number) {
        ConditionEntry& entry = MakeEntry(reader, number, reader.LineNumber());
        entry.name = m_name;
        entry.values = m_values;
    }

    void AddRow(DeckReader const& reader, int number, int ordinal) {
        int const columns = static_cast<int>(m_values.size());
        if (m_block->columns == 0) {
            m_block->columns = columns;
            m_block->columnsLine = reader.LineNumber();
        } else if (columns != m_block->columns) {
            reader.Fail(CountText(columns, "value") + ", unlike line " +
                        std::to_string(m_block->columnsLine) + " with " +
                        std::to_string(m_block->columns) +
                        "; expected the same count in all lines with labels");
        }
        auto const [at, isNew] =
            m_block->rows.try_emplace(number, LabelRows{nullptr, OrdinalRows(columns)});
        LabelRows& of = at->second;
        if (isNew) {
            of.entry = &MakeEntry(reader, number, reader.LineNumber());
            of.entry->data = m_block->data;
            of.entry->field = MakeTableField(m_translation.Model().Document(), columns,
                                             m_translation.Model().Collection(m_entity).ID());
        }
        of.rows.Add(ordinal, reader.LineNumber(), m_values.data());
        if (of.rows.IsFull()) Write(reader, of);
    }

    // ---- writing ----

    void Write(DeckReader const& reader, LabelRows& of) {
        if (of.rows.Size() == 0) return;
        ThrowIfInterrupted();
        of.rows.Sort();
        DropRepeated(reader, of);
        if (of.rows.Size() > 0) {
            ConditionEntry& entry = *of.entry;
            KOVSimCSet const block = Members(of);
            WriteRows(entry.field, block, entry.columns, of.rows.Values());
            entry.members = entry.members.IsEmpty() ? block : entry.members.Union(block);
        }
        of.rows.Clear();
    }

    KOVSimCSet Members(LabelRows const& of) {
        return SetOf(m_translation.Model().Collection(m_entity), of.rows.Ordinals());
    }

    // Leaves rows out whose ordinal has the same values already. Throws where they differ.
    void DropRepeated(DeckReader const& reader, LabelRows& of) {
        ConditionEntry const& entry = *of.entry;
        OrdinalRows& rows = of.rows;
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < rows.Size(); ++i) {
            if (i == 0 || rows.Ordinals()[i] != rows.Ordinals()[i - 1]) {
                places.push_back(i);
            } else if (!Same(of, i, rows.Values(places.back()))) {
                FailTwice(reader, of, i, rows.Line(places.back()));
            }
        }
        if (places.size() < rows.Size()) rows.Keep(places);
        if (entry.members.IsEmpty()) return;
        KOVSimCSet const again = Members(of).Intersection(entry.members);
        if (again.IsEmpty()) return;
        std::vector<double> before;
        ReadConditionValues(entry, again, before);
        places.clear();
        double const* value = before.data();
        for (std::size_t i = 0; i < rows.Size(); ++i) {
            int const ordinal = rows.Ordinals()[i];
            if (!again.Contains(ordinal)) {
                places.push_back(i);
                continue;
            }
            if (!Same(of, i, value)) {
                FailTwice(reader, of, i,
                          FindConditionLine(m_translation.Files(), m_translation.Sections().files,
                                            m_translation.AllScopes(), entry, ordinal));
            }
            value += entry.columns;
        }
        rows.Keep(places);
    }

    static bool Same(LabelRows const& of, std::size_t row, double const* values) {
        return std::equal(values, values + of.entry->columns, of.rows.Values(row));
    }

    [[noreturn]] void FailTwice(DeckReader const& reader, LabelRows const& of, std::size_t row,
                                int first) const {
        reader.FailAt(
            of.rows.Line(row),
            "a second initial " + ConditionText(Kind(), of.entry->number) + " of " +
                ShownOrdinal(m_translation.AllScopes(), m_entity, of.rows.Ordinals()[row]) +
                (first > 0 ? ", which differs from that of line " + std::to_string(first)
                           : std::string()) +
                "; expected one");
    }

    Translation& m_translation;
    std::shared_ptr<Block> m_block;
    Entity const& m_entity;
    ScopedName m_name;
    std::vector<double> m_values;
};

int ReadVariable(KeywordParameters const& parameters, DeckReader const& reader, int line) {
    if (!parameters.Has("variable")) return 1;
    std::string const value = parameters.Value("variable");
    int number = 0;
    auto const [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error == std::errc() && end == value.data() + value.size() && number >= 1 &&
        number <= kMostVariables) {
        return number;
    }
    reader.FailAt(line, "'" + Shown(value) +
                            "' is no field variable; expected a whole number from 1 to " +
                            std::to_string(kMostVariables));
}

}  // namespace

void ReadInitialConditions(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    // With these the values do not stand in the deck, or mean something else.
    constexpr char const* kRefused[] = {
        "file",           "user",           "geostatic",      "rebar", "input",
        "section points", "average nodal",  "step",           "inc",   "midside",
        "interpolate",    "driving elsets", "output variable"};
    std::vector<char const*> keys = {"type", "variable"};
    keys.insert(keys.end(), std::begin(kRefused), std::end(kRefused));
    KeywordParameters const parameters(reader, line, keys);
    std::string const type = parameters.Required("type");
    ConditionKind const* const kind = FindConditionKind(type);
    std::string passed;
    if (kind == nullptr && IsConditionPassed(type)) passed = "TYPE=" + UpperCase(type);
    if (kind == nullptr && passed.empty()) {
        std::string known;
        for (ConditionKind const& each : ConditionKinds()) {
            known += (known.empty() ? "" : ", ") + std::string(each.type);
        }
        reader.FailAt(line.line, "'" + Shown(type) + "' is not known; expected TYPE=" + known);
    }
    for (char const* const key : kRefused) {
        if (passed.empty() && parameters.Has(key)) passed = UpperCase(key);
    }
    if (!passed.empty()) {
        if (translation.IsStrict()) {
            reader.FailAt(line.line, "*INITIAL CONDITIONS with " + Shown(passed) +
                                         " is not kept; expected kept ones only");
        }
        translation.Note("*INITIAL CONDITIONS with " + Shown(passed) + ", which was not kept");
        static_cast<void>(reader.SkipToKeyword());
        return;
    }
    auto block = std::make_shared<Block>();
    block->kind = kind;
    block->variable =
        kind->number == Number::Variable ? ReadVariable(parameters, reader, line.line) : 0;
    block->scope = &translation.Current();
    if (!reader.NextData()) {
        reader.FailAt(line.line, ShownKeyword(line) + " without a data line; expected one");
    }
    block->data = reader.Place();
    reader.TakeAgain();
    ConditionReader(translation, block).Read(reader);
}

}  // namespace kov::tool
