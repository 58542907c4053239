// *ELASTIC, *PLASTIC, *DENSITY, *EXPANSION, *CONDUCTIVITY, *SPECIFIC HEAT [, DEPENDENCIES=n]
//   values, temperature, field variables      8 on a line, and the rest on further lines
// *DAMPING, ALPHA=, BETA=, COMPOSITE=, STRUCTURAL=
//
// A behaviour belongs to the material whose keyword comes before it; keywords that are not known
// may stand between them. The temperature may be left out if all rows leave it out. What the
// columns are stands in MaterialBehaviors.

#include <algorithm>
#include <charconv>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "BehaviorWriter.h"
#include "DataFields.h"
#include "Keywords.h"
#include "MaterialBehaviors.h"
#include "Names.h"
#include "ObjectContent.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

constexpr std::size_t kOnLine = 8;
constexpr int kMostFieldVariables = 1000;
constexpr std::size_t kFieldsNamed = 3;  // in messages
constexpr long kMostFindings = 10;

// What is wrong with a number; empty if nothing is. `name`: what it is.
std::string Fault(double value, ColumnRule rule, std::string const& name) {
    switch (rule) {
        case ColumnRule::AboveZero:
            return value > 0 ? "" : " is no number above 0; expected " + name;
        case ColumnRule::FromZero:
            return value >= 0 ? "" : " is below 0; expected " + name + " from 0 upward";
        case ColumnRule::PoissonRatio:
            return value > -1 && value <= 0.5
                       ? ""
                       : " is out of range; expected " + name + " above -1 and up to 0.5";
        case ColumnRule::Any:
            break;
    }
    return "";
}

// A type as it is compared: types are shown with blanks, which mean nothing.
std::string TypeWord(std::string_view type) {
    std::string word = LowerCase(type);
    std::erase(word, ' ');
    return word;
}

// The rows of one table.
class RowReader {
  public:
    /// `find`: takes the line and what was found wrong with the numbers of a row.
    RowReader(DeckReader& reader, BehaviorTable const& table, int fieldVariables,
              BehaviorWriter& writer, std::function<void(int, std::string const&)> find)
        : m_reader(reader),
          m_table(table),
          m_writer(writer),
          m_find(std::move(find)),
          m_fieldVariables(fieldVariables) {
        m_dependents = table.columns.size();
        m_width = m_dependents + 1 + static_cast<std::size_t>(fieldVariables);
    }

    /// Up to the next keyword, with the first line at hand.
    void Read() {
        do {
            int const line = m_reader.LineNumber();
            ReadRow();
            if (m_before.empty()) {
                m_hasTemperature = m_rowHasTemperature;
                m_firstLine = line;
                m_writer.SetShape(m_hasTemperature, m_fieldVariables);
            } else {
                CheckTemperature(line);
            }
            CheckOrder(line);
            if (m_table.finding != nullptr) {
                std::string const finding = m_table.finding(m_row.data());
                if (!finding.empty()) m_find(line, finding);
            }
            m_writer.AddRow(m_row);
            std::swap(m_row, m_before);
        } while (m_reader.NextData());
        m_writer.Finish();
    }

    std::string Expected() const {
        std::size_t const shown = std::min(m_width, m_dependents + 1 + kFieldsNamed);
        std::string names;
        for (std::size_t i = 0; i < shown; ++i) names += (i > 0 ? ", " : "") + Name(i);
        return shown == m_width ? names : names + ", ... " + Name(m_width - 1);
    }

  private:
    std::string Name(std::size_t i) const {
        if (i < m_dependents) return m_table.columns[i].name;
        if (i == m_dependents) return "temperature";
        return "field variable " + std::to_string(i - m_dependents);
    }

    void ReadRow() {
        m_row.clear();
        m_rowHasTemperature = false;
        for (std::size_t first = 0; first < m_width; first += kOnLine) {
            if (first > 0) {
                int const line = m_reader.LineNumber();
                if (!m_reader.NextData()) FailMissing(line, first);
            }
            FieldScanner fields(m_reader.Line(), m_reader.LineEnd());
            std::size_t const end = std::min(first + kOnLine, m_width);
            for (std::size_t i = first; i < end; ++i) ReadValue(fields, i);
            if (!fields.AtEnd()) {
                m_reader.Fail("more than " + CountText(static_cast<long>(end - first), "value") +
                              " on the line; expected " + Expected());
            }
        }
    }

    void ReadValue(FieldScanner& fields, std::size_t i) {
        double value = 0;
        Result const result = fields.AtEnd() ? Result::Empty : fields.ReadDouble(value);
        if (result == Result::Value) [[likely]] {
            ColumnRule const rule = i < m_dependents ? m_table.columns[i].rule : ColumnRule::Any;
            if (rule != ColumnRule::Any) {
                std::string const fault = Fault(value, rule, m_table.columns[i].name);
                if (!fault.empty()) m_reader.Fail("'" + Shown(fields.Field()) + "'" + fault);
            }
            if (i == m_dependents) m_rowHasTemperature = true;
            m_row.push_back(value);
        } else if (result != Result::Empty) {
            FailNumber(m_reader, fields, result, Name(i).c_str());
        } else if (i != m_dependents) {
            FailMissing(m_reader.LineNumber(), i);
        }
    }

    [[noreturn]] void FailMissing(int line, std::size_t i) const {
        m_reader.FailAt(line, Name(i) + " is missing; expected " + Expected());
    }

    void CheckTemperature(int line) const {
        if (m_rowHasTemperature == m_hasTemperature) return;
        m_reader.FailAt(line, std::string(m_hasTemperature ? "no temperature" : "a temperature") +
                                  ", unlike the row at line " + std::to_string(m_firstLine) +
                                  "; expected temperatures in all rows or in none");
    }

    // Of neighbouring rows with the same field variables.
    void CheckOrder(int line) const {
        std::size_t const fields = m_dependents + (m_hasTemperature ? 1 : 0);
        bool const sameFields =
            !m_before.empty() &&
            std::equal(m_row.begin() + static_cast<std::ptrdiff_t>(fields), m_row.end(),
                       m_before.begin() + static_cast<std::ptrdiff_t>(fields));
        bool same = sameFields;
        if (sameFields && m_hasTemperature) {
            double const now = m_row[m_dependents];
            double const before = m_before[m_dependents];
            same = now == before;
            if (now < before || (same && !m_table.curve)) {
                m_reader.FailAt(line, "temperature " + NumberText(now) + " behind " +
                                          NumberText(before) + "; expected ascending temperatures");
            }
        }
        if (m_table.curve) {
            CheckCurve(line, same);
        } else if (same) {
            m_reader.FailAt(line, m_fieldVariables == 0
                                      ? "a second row without temperature; expected a temperature "
                                        "in each row"
                                      : "a second row with the same field variables; expected "
                                        "rows that differ");
        }
    }

    void CheckCurve(int line, bool goesOn) const {
        double const now = m_row[m_dependents - 1];
        std::string const name = m_table.columns.back().name;
        if (!goesOn && now != 0) {
            m_reader.FailAt(
                line, name + " " + NumberText(now) + " at the beginning of a curve; expected 0");
        }
        if (goesOn && now <= m_before[m_dependents - 1]) {
            m_reader.FailAt(line, name + " " + NumberText(now) + " behind " +
                                      NumberText(m_before[m_dependents - 1]) +
                                      "; expected ascending numbers");
        }
    }

    DeckReader& m_reader;
    BehaviorTable const& m_table;
    BehaviorWriter& m_writer;
    std::function<void(int, std::string const&)> m_find;
    int m_fieldVariables;
    std::size_t m_dependents;
    std::size_t m_width;  ///< of a row with temperature
    std::vector<double> m_row;
    std::vector<double> m_before;
    bool m_rowHasTemperature = false;
    bool m_hasTemperature = false;
    int m_firstLine = 0;
};

// The parameters of one behaviour.
class Parameters {
  public:
    Parameters(Translation& translation, DeckReader const& reader, KeywordLine const& line,
               BehaviorKind const& kind)
        : m_translation(translation),
          m_reader(reader),
          m_line(line),
          m_kind(kind),
          m_given(reader, line, Keys(kind)) {}

    /// False if the behaviour is one that is not kept.
    bool IsKept() const {
        for (char const* const key : m_kind.refused) {
            if (m_given.Has(key)) return Leave(key, "");
        }
        if (m_kind.typeKey != nullptr && m_given.Has(m_kind.typeKey)) {
            std::string const wanted = TypeWord(m_given.Value(m_kind.typeKey));
            for (char const* const type : m_kind.refusedTypes) {
                if (TypeWord(type) == wanted) return Leave(m_kind.typeKey, type);
            }
        }
        for (char const* const key : m_kind.passed) m_given.PassOver(m_translation, {key});
        return true;
    }

    BehaviorTable const* Table() const {
        if (m_kind.tables.empty()) return nullptr;
        if (m_kind.typeKey == nullptr || !m_given.Has(m_kind.typeKey)) return &m_kind.tables[0];
        std::string const value = m_given.Value(m_kind.typeKey);
        std::string const wanted = TypeWord(value);
        BehaviorTable const* found = nullptr;
        bool several = false;
        std::string known;
        std::size_t left = m_kind.tables.size();
        for (BehaviorTable const& table : m_kind.tables) {
            std::string const key = table.TypeKey();
            if (key == wanted) return &table;
            if (key.rfind(wanted, 0) == 0) {
                several = found != nullptr;
                found = &table;
            }
            --left;
            known += std::string(known.empty() ? "" : left == 0 ? " or " : ", ") + table.type;
        }
        if (found != nullptr && !several && wanted.size() >= 3) return found;
        m_reader.FailAt(m_line.line, "'" + Shown(value) + "' is not known; expected " +
                                         UpperCase(m_kind.typeKey) + "=" + known);
    }

    int FieldVariables() const {
        if (m_kind.tables.empty() || !m_given.Has("dependencies")) return 0;
        std::string const value = m_given.Value("dependencies");
        int count = 0;
        auto const [end, error] = std::from_chars(value.data(), value.data() + value.size(), count);
        if (error != std::errc() || end != value.data() + value.size() || count < 1 ||
            count > kMostFieldVariables) {
            m_reader.FailAt(m_line.line, "'" + Shown(value) +
                                             "' is no number of field variables; expected a whole "
                                             "number from 1 to " +
                                             std::to_string(kMostFieldVariables));
        }
        return count;
    }

    void SetNumbers(BehaviorWriter& writer) const {
        bool any = false;
        std::string known;
        for (BehaviorNumber const& number : m_kind.numbers) {
            known += (known.empty() ? "" : ", ") + UpperCase(number.key);
            if (!m_given.Has(number.key)) continue;
            writer.SetNumber(number, Number(number));
            any = true;
        }
        if (any || !m_kind.tables.empty()) return;
        m_reader.FailAt(m_line.line,
                        ShownKeyword(m_line) + " without a parameter; expected any of " + known);
    }

  private:
    static std::vector<char const*> Keys(BehaviorKind const& kind) {
        std::vector<char const*> keys;
        if (kind.typeKey != nullptr) keys.push_back(kind.typeKey);
        if (!kind.tables.empty()) keys.push_back("dependencies");
        for (BehaviorNumber const& number : kind.numbers) keys.push_back(number.key);
        keys.insert(keys.end(), kind.passed.begin(), kind.passed.end());
        keys.insert(keys.end(), kind.refused.begin(), kind.refused.end());
        return keys;
    }

    // Of a behaviour that is not kept, for a parameter or its value.
    bool Leave(char const* key, std::string const& type) const {
        if (m_translation.IsStrict()) m_given.PassOver(m_translation, {key});
        m_translation.Note(ShownKeyword(m_line) + " with " + UpperCase(key) +
                           (type.empty() ? "" : "=" + type) + ", which was not kept");
        return false;
    }

    double Number(BehaviorNumber const& number) const {
        std::string const value = m_given.Value(number.key);
        FieldScanner fields(value.c_str(), value.c_str() + value.size());
        double read = 0;
        Result const result = fields.ReadDouble(read);
        bool const isNumber = result == Result::Value && fields.AtEnd();
        std::string const fault =
            isNumber ? Fault(read, number.rule, UpperCase(number.key))
                     : (result == Result::TooLarge ? " is too large a number; expected "
                                                   : " is no number; expected ") +
                           UpperCase(number.key);
        if (!fault.empty()) m_reader.FailAt(m_line.line, "'" + Shown(value) + "'" + fault);
        return read;
    }

    Translation& m_translation;
    DeckReader const& m_reader;
    KeywordLine const& m_line;
    BehaviorKind const& m_kind;
    KeywordParameters m_given;
};

}  // namespace

void ReadBehavior(Translation& translation, DeckReader& reader, KeywordLine const& line,
                  BehaviorKind const& kind) {
    MaterialAtHand const& place = translation.Material();
    if (place.number == MaterialTable::kNone) {
        reader.FailAt(line.line, ShownKeyword(line) +
                                     " outside of a material; expected it behind a *MATERIAL");
    }
    // What a part holds was read for its first instance.
    if (place.again) {
        static_cast<void>(reader.SkipToKeyword());
        return;
    }
    Parameters const parameters(translation, reader, line, kind);
    if (!parameters.IsKept()) {
        static_cast<void>(reader.SkipToKeyword());
        return;
    }
    SectionTable& table = translation.Sections();
    NamedMaterial& material = table.materials[place.number];
    DeckLine const here = table.files.At(reader.Path(), line.line);
    for (NamedBehavior const& other : material.behaviors) {
        if (other.kind != &kind) continue;
        reader.FailAt(line.line, "material '" + Shown(material.name) + "' has a second " +
                                     ShownKeyword(line) + ", first at " +
                                     table.files.Shown(other.at, here) + "; expected one");
    }
    BehaviorTable const* const form = parameters.Table();
    int const fieldVariables = parameters.FieldVariables();
    BehaviorWriter writer(translation.Model().Document(), translation.Model().Transaction(), kind,
                          form);
    material.behaviors.push_back({&kind, here, writer.Position().ID()});
    parameters.SetNumbers(writer);
    if (form == nullptr) return RefuseData(reader, line);
    auto const find = [&](int at, std::string const& text) {
        UnstableRows& unstable = translation.Summary().unstable;
        if (++unstable.rows > kMostFindings) return;
        unstable.first.push_back({reader.Path(), at, material.name, text});
    };
    RowReader rows(reader, *form, fieldVariables, writer, find);
    if (!reader.NextData()) {
        reader.FailAt(line.line,
                      ShownKeyword(line) + " without a data line; expected " + rows.Expected());
    }
    rows.Read();
}

}  // namespace kov::tool
