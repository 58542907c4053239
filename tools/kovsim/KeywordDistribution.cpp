// *DISTRIBUTION TABLE, NAME=table
//   word, word, ...                     what the numbers of an element are, such as LENGTH
//
// *DISTRIBUTION, NAME=name, LOCATION=ELEMENT, TABLE=table
//   , default value, ...                may be left out
//   label or name of an element set, value, ...
//
// Each element has one value at most. On assembly level elements of an instance are
// `instance.label` and `instance.set`. The table and the sets may be defined further on: a set
// stands for all members that it has in the whole deck, so that lines with sets wait for its end.

#include <algorithm>
#include <cstddef>
#include <vector>

#include "DataFields.h"
#include "Interrupt.h"
#include "KOVSimCSetIterator.h"
#include "Keywords.h"
#include "Names.h"
#include "Nearest.h"
#include "OrdinalRows.h"
#include "References.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

constexpr char kForm[] = "ELEMENT OR ELEMENT SET, VALUE, ...";
constexpr char kWords[] = "words such as LENGTH, ANGLE or COORD3D";
constexpr long kBreath = 1 << 16;

int HighestOf(KOVSimCSet const& elements) { return static_cast<int>(elements.Bounds() >> 32); }
int LowestOf(KOVSimCSet const& elements) { return static_cast<int>(elements.Bounds()); }

// Of the rows that give an element a further value that comes first in the deck.
struct Twice {
    int line = 0;
    int ordinal = 0;
    int first = 0;  // line of the first value; 0 if it is in `before`
};

// `before`: elements that had a value already. The rows are sorted, and there is one such row.
Twice FindTwice(OrdinalRows const& rows, KOVSimCSet const& before) {
    Twice found;
    std::vector<int> const& ordinals = rows.Ordinals();
    for (std::size_t i = 0; i < ordinals.size(); ++i) {
        bool const again = i > 0 && ordinals[i] == ordinals[i - 1];
        if (!again && !before.Contains(ordinals[i])) continue;
        if (found.line == 0 || rows.Line(i) < found.line) {
            found = {rows.Line(i), ordinals[i], again ? rows.Line(i - 1) : 0};
        }
    }
    return found;
}

class ValueReader {
  public:
    ValueReader(Translation& translation, NamedDistribution& distribution)
        : m_translation(translation),
          m_distribution(distribution),
          m_columns(static_cast<int>(distribution.defaults.size())),
          m_rows(m_columns),
          m_row(distribution.defaults.size()) {}

    void Read(DeckReader& reader) {
        for (long lines = 1; reader.NextData(); ++lines) {
            if (!ReadLine(reader)) {
                Write(reader);
                DeferFrom(reader);
                return;
            }
            if (lines % kBreath == 0) m_translation.Breathe(reader);
        }
        Write(reader);
        SetDefaults(m_distribution, m_distribution.words, m_distribution.HasDefault(),
                    m_distribution.defaults);
    }

  private:
    bool IsSecond() const { return m_translation.CurrentPass() == Translation::Pass::Second; }
    std::string Shown() const { return "distribution '" + tool::Shown(m_distribution.name) + "'"; }

    void DeferFrom(DeckReader& reader) {
        m_translation.Defer(reader, reader.Place(), nullptr,
                            [&distribution = m_distribution](Translation& again, DeckReader& from) {
                                ValueReader(again, distribution).Read(from);
                            });
        reader.SkipToKeyword();
    }

    // False if the line names something that is not known yet in the first pass.
    bool ReadLine(DeckReader const& reader) {
        FieldScanner fields(reader.Line(), reader.LineEnd());
        int label = 0;
        Result const result = fields.ReadInt(label);
        if (result == Result::Value && label > 0) [[likely]] {
            Scope& scope = m_translation.Current();
            int const ordinal = scope.elementLabels.Find(label);
            if (ordinal == LabelTable::None) {
                if (!IsSecond()) return false;
                reader.Fail(UnknownLabel(scope, kElementEntity, Shown(), label));
            }
            ReadValues(reader, fields, m_row.data());
            Add(reader, ordinal);
            return true;
        }
        if (result == Result::Wrong) return ReadNamed(reader, fields);
        if (result != Result::Empty) FailLabel(reader, fields, result, "an element label", kForm);
        if (m_distribution.HasDefault()) {
            reader.Fail(Shown() + " has a second line of default values, first at line " +
                        std::to_string(m_distribution.defaultLine) + "; expected one");
        }
        ReadValues(reader, fields, m_distribution.defaults.data());
        m_distribution.defaultLine = reader.LineNumber();
        return true;
    }

    // An element or a set by name.
    bool ReadNamed(DeckReader const& reader, FieldScanner& fields) {
        Reference const found = Named(reader, fields);
        if (found.ordinal == LabelTable::None && !IsSecond()) {
            if (reader.Size() < 0) {
                reader.Fail(
                    Shown() +
                    " names a set, whose members are known at the end of the deck; expected a "
                    "regular file, which can be read twice");
            }
            return false;
        }
        if (found.ordinal == LabelTable::None && found.set == nullptr) {
            reader.Fail(UnknownReference(m_translation.AllScopes(), m_translation.Current(),
                                         kElementEntity, m_name, nullptr));
        }
        ReadValues(reader, fields, m_row.data());
        if (found.set == nullptr) {
            Add(reader, found.ordinal);
            return true;
        }
        if (!found.set->deferred.empty()) m_translation.Resolve(*found.set, reader);
        KOVSimCSet const members = Members(*found.set);
        KOVSimCSetIterator at(members);
        for (at.First(); !at.IsDone(); at.Next()) Add(reader, at.CurrentValue());
        return true;
    }

    Reference Named(DeckReader const& reader, FieldScanner& fields) {
        if (!m_name.Read(fields)) reader.Fail("the quotes of a set's name are not closed");
        return FindReference(m_translation.AllScopes(), m_translation.Current(), kElementEntity,
                             m_name, reader, reader.LineNumber());
    }
    KOVSimCSet Members(NamedSet const& set) {
        return set.members.All(m_translation.Model().ElementCollection());
    }

    void ReadValues(DeckReader const& reader, FieldScanner& fields, double* values) const {
        for (int i = 0; i < m_columns; ++i) {
            if (fields.AtEnd()) FailCount(reader, std::to_string(i), i == 1);
            Result const result = fields.ReadDouble(values[i]);
            if (result == Result::Value) [[likely]]
                continue;
            if (result == Result::Empty) {
                reader.Fail("value " + std::to_string(i + 1) + " is missing; expected " +
                            Expected());
            }
            FailNumber(reader, fields, result, "a value");
        }
        if (!fields.AtEnd())
            FailCount(reader, "more than " + std::to_string(m_columns), m_columns == 1);
    }
    [[noreturn]] void FailCount(DeckReader const& reader, std::string const& count,
                                bool one) const {
        reader.Fail(count + (one ? " value" : " values") + "; expected " + Expected());
    }
    std::string Expected() const {
        return std::to_string(m_columns) + " for " + tool::Shown(m_distribution.words);
    }

    void Add(DeckReader const& reader, int ordinal) {
        m_rows.Add(ordinal, reader.LineNumber(), m_row.data());
        if (m_rows.IsFull()) Write(reader);
    }

    void Write(DeckReader const& reader) {
        if (m_rows.Size() == 0) return;
        ThrowIfInterrupted();
        m_rows.Sort();
        NamedDistribution& distribution = m_distribution;
        int const count = static_cast<int>(m_rows.Size());
        KOVSimCSet const block = m_translation.Model().ElementCollection().CreateVolatileCSet(
            m_rows.Ordinals().data(), count, false);
        KOVSimCSet const& before = distribution.elements;
        bool const behind = before.IsEmpty() || LowestOf(block) > HighestOf(before);
        if (block.Size() != count || (!behind && !before.Intersection(block).IsEmpty())) {
            FailTwice(reader, FindTwice(m_rows, before));
        }
        WriteRows(distribution, block, m_columns, m_rows.Values());
        double lowest = before.IsEmpty() ? *m_rows.Values() : distribution.lowest;
        for (std::size_t i = 0; i < m_rows.Size(); ++i) {
            lowest = std::min(lowest, *m_rows.Values(i));
        }
        distribution.lowest = lowest;
        distribution.elements = before.IsEmpty() ? block : before.Union(block);
        m_rows.Clear();
    }

    [[noreturn]] void FailTwice(DeckReader const& reader, Twice const& twice) {
        Scope const& scope = m_translation.AllScopes().OfElement(twice.ordinal);
        int const first = twice.first > 0 ? twice.first : FindLine(reader, twice.ordinal);
        reader.FailAt(
            twice.line,
            ShownLabel(scope, kElementEntity, scope.elementLabels.LabelOf(twice.ordinal)) +
                " has a second value in " + Shown() +
                (first > 0 ? ", first at line " + std::to_string(first) : "") + "; expected one");
    }

    // The first line that gives an element a value; 0 if the file cannot be read again.
    int FindLine(DeckReader const& reader, int ordinal) {
        if (reader.Size() < 0) return 0;
        DeckReader again(m_translation.Files(), reader.Path(), m_distribution.data, nullptr);
        while (again.NextData()) {
            FieldScanner fields(again.Line(), again.LineEnd());
            int label = 0;
            Result const result = fields.ReadInt(label);
            Reference found;
            if (result == Result::Value) {
                found.ordinal = m_translation.Current().elementLabels.Find(label);
            } else if (result == Result::Wrong) {
                found = Named(again, fields);
            }
            bool const within = found.set != nullptr && Members(*found.set).Contains(ordinal);
            if (found.ordinal == ordinal || within) return again.LineNumber();
        }
        return 0;
    }

    Translation& m_translation;
    NamedDistribution& m_distribution;
    int m_columns;
    OrdinalRows m_rows;
    std::vector<double> m_row;
    ScopedName m_name;
};

// A table of the scope itself or, for an instance, of the deck.
NamedDistributionTable const* FindTable(Translation& translation, std::string const& name) {
    NamedDistributionTable const* const own = translation.Current().distributionTables.Find(name);
    return own != nullptr ? own : translation.AllScopes().Root().distributionTables.Find(name);
}

std::string UnknownTable(Translation& translation, std::string const& name) {
    NearestSearch search(name);
    for (Scope const* const scope : {&translation.Current(), &translation.AllScopes().Root()}) {
        for (NamedDistributionTable const& table : scope->distributionTables.All()) {
            search.Look(table.name);
        }
    }
    return "'" + Shown(name) + "' is no distribution table; expected a *DISTRIBUTION TABLE of " +
           (translation.Current().IsRoot()
                ? "the deck"
                : "instance '" + Shown(translation.Current().name) + "' or the deck") +
           NearestHint(search.Names());
}

// The values from the line at hand on, once their table is known.
void ReadDistributionData(Translation& translation, DeckReader& reader,
                          NamedDistribution& distribution, std::string const& tableName) {
    NamedDistributionTable const* const table = FindTable(translation, tableName);
    if (table == nullptr) {
        if (translation.CurrentPass() == Translation::Pass::Second) {
            reader.FailAt(distribution.line, UnknownTable(translation, tableName));
        }
        translation.Defer(reader, reader.Place(), nullptr,
                          [&distribution, tableName](Translation& again, DeckReader& from) {
                              static_cast<void>(from.NextData());
                              ReadDistributionData(again, from, distribution, tableName);
                          });
        reader.SkipToKeyword();
        return;
    }
    static_cast<TableField&>(distribution) =
        MakeTableField(translation.Model().Document(), table->columns);
    distribution.words = table->words;
    distribution.defaults.assign(static_cast<std::size_t>(table->columns), 0.0);
    reader.TakeAgain();
    ValueReader(translation, distribution).Read(reader);
}

// One word in upper case.
std::string ReadWord(DeckReader const& reader, FieldScanner& fields) {
    std::string word;
    bool const closed = fields.ReadText(word);
    for (char& c : word) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    auto const letter = [](char c) { return c >= 'A' && c <= 'Z'; };
    bool const plain =
        word.empty() || (letter(word.front()) && std::all_of(word.begin(), word.end(), [&](char c) {
                             return letter(c) || (c >= '0' && c <= '9') || c == '_';
                         }));
    if (!closed || !plain) {
        reader.Fail("'" + Shown(fields.Field()) + "' is no quantity; expected " + kWords);
    }
    return word;
}

}  // namespace

void ReadDistributionTable(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"name"});
    NamedDistributionTable& table =
        translation.MakeFirst("distribution table", &Scope::distributionTables,
                              parameters.Required("name"), reader, line.line);
    int const most = MostFieldColumns(translation.Model().Document());
    while (reader.NextData()) {
        FieldScanner fields(reader.Line(), reader.LineEnd());
        while (!fields.AtEnd()) {
            std::string const word = ReadWord(reader, fields);
            if (word.empty()) continue;
            table.columns += static_cast<int>(ColumnWords(word).size());
            if (table.columns > most) {
                reader.Fail("more than " + std::to_string(most) +
                            " numbers for an element; expected fewer");
            }
            table.words += (table.words.empty() ? "" : " ") + word;
        }
    }
    if (table.columns == 0) {
        reader.FailAt(line.line, ShownKeyword(line) + " without a data line; expected " + kWords);
    }
}

void ReadDistribution(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"name", "location", "table"});
    std::string const name = parameters.Required("name");
    if (LowerCase(parameters.Required("location")) != "element") {
        translation.MakeFirst("distribution", &Scope::distributionsElsewhere, name, reader,
                              line.line);
        translation.Note("distributions at another location than ELEMENT, not kept");
        return;
    }
    std::string const table = parameters.Required("table");
    NamedDistribution& distribution =
        translation.MakeOnce("distribution", &Scope::distributions, name, reader, line.line);
    if (!reader.NextData()) {
        reader.FailAt(line.line, ShownKeyword(line) + " without a data line; expected " + kForm);
    }
    distribution.data = reader.Place();
    ReadDistributionData(translation, reader, distribution, table);
}

}  // namespace kov::tool
