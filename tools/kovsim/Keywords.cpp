#include "Keywords.h"

#include <algorithm>

#include "DataFields.h"
#include "KOVSrvKeywordParameterReader.h"
#include "Names.h"

namespace kov::tool {
namespace {

template <KeywordHandler Handler>
void Call(KOVString const&, KOVSrvKeywordParser::Parameters const&, KOVSrvKeywordParser&,
          void* userData) {
    auto const& call = *static_cast<KeywordCall const*>(userData);
    Handler(call.translation, call.reader, *call.line);
}

// One of the BehaviorKinds().
template <std::size_t Kind>
void CallBehavior(KOVString const&, KOVSrvKeywordParser::Parameters const&, KOVSrvKeywordParser&,
                  void* userData) {
    auto const& call = *static_cast<KeywordCall const*>(userData);
    ReadBehavior(call.translation, call.reader, *call.line, BehaviorKinds()[Kind]);
}

constexpr KeywordEntry kKeywords[] = {
    {"heading", &Call<ReadHeading>},
    {"node", &Call<ReadNodes>},
    {"element", &Call<ReadElements>},
    {"nset", &Call<ReadNodeSet>},
    {"elset", &Call<ReadElementSet>},
    {"include", &Call<ReadInclude>, true},
    {"surface", &Call<ReadSurface>},
    {"orientation", &Call<ReadOrientation>},
    {"part", &Call<ReadPart>},
    {"endpart", &Call<ReadEndPart>},
    {"assembly", &Call<ReadAssembly>},
    {"endassembly", &Call<ReadEndAssembly>},
    {"instance", &Call<ReadInstance>},
    {"endinstance", &Call<ReadEndInstance>},
    {"distributiontable", &Call<ReadDistributionTable>},
    {"distribution", &Call<ReadDistribution>},
    {"initialconditions", &Call<ReadInitialConditions>},
    {"material", &Call<ReadMaterial>, true},
    {"elastic", &CallBehavior<0>, true},
    {"plastic", &CallBehavior<1>, true},
    {"density", &CallBehavior<2>, true},
    {"expansion", &CallBehavior<3>, true},
    {"conductivity", &CallBehavior<4>, true},
    {"specificheat", &CallBehavior<5>, true},
    {"damping", &CallBehavior<6>, true},
    {"shellsection", &Call<ReadShellSection>},
    {"solidsection", &Call<ReadSolidSection>},
    {"membranesection", &Call<ReadMembraneSection>},
    {"beamsection", &Call<ReadBeamSection>},
};

// A key without the blanks that it is shown with.
std::string Joined(char const* key) {
    std::string joined(key);
    std::erase(joined, ' ');
    return joined;
}

std::string Trimmed(std::string text) {
    constexpr char kBlanks[] = " \t\r\n";
    text.erase(text.find_last_not_of(kBlanks) + 1);
    text.erase(0, text.find_first_not_of(kBlanks));
    return text;
}

}  // namespace

void UnknownKeyword(KOVString const&, KOVSrvKeywordParser::Parameters const&, KOVSrvKeywordParser&,
                    void*) {}
void AmbiguousKeyword(KOVString const&, KOVSrvKeywordParser::Parameters const&,
                      KOVSrvKeywordParser&, void*) {}

std::span<KeywordEntry const> KeywordTable() { return kKeywords; }

bool KeepsMaterial(KOVSrvKeywordCallback callback) {
    return std::any_of(std::begin(kKeywords), std::end(kKeywords), [callback](auto const& entry) {
        return entry.callback == callback && entry.keepsMaterial;
    });
}

std::string UpperCase(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

std::string ShownKeyword(KeywordLine const& line) {
    std::string shown = UpperCase(Shown(View(line.keyword)));
    // Blanks are no part of a keyword, but users write one here.
    for (char const* const words :
         {"END PART", "END ASSEMBLY", "END INSTANCE", "DISTRIBUTION TABLE", "SHELL SECTION",
          "SOLID SECTION", "MEMBRANE SECTION", "BEAM SECTION", "SPECIFIC HEAT",
          "INITIAL CONDITIONS"}) {
        if (shown == Joined(words)) return std::string("*") + words;
    }
    return "*" + shown;
}

KeywordParameters::KeywordParameters(DeckReader const& reader, KeywordLine const& line,
                                     std::span<char const* const> keys)
    : m_reader(reader), m_line(line) {
    std::vector<std::string> joined;
    for (char const* const key : keys) joined.push_back(Joined(key));
    std::vector<char const*> allowed;
    for (std::string const& key : joined) allowed.push_back(key.c_str());
    allowed.push_back(nullptr);
    KOVSrvKeywordParameterReader parameters(line.parameters, allowed.data());
    int index = 0;
    for (parameters.First(); !parameters.IsDone(); parameters.Next(), ++index) {
        std::string const given = Plain(line.parameters.ConstGet(index));
        std::string const found = Plain(parameters.CurrentKey());
        if (found.empty()) {
            std::string known;
            for (char const* const name : keys)
                known += (known.empty() ? "" : ", ") + UpperCase(name);
            std::string const& typed = line.typedParameters[static_cast<std::size_t>(index)];
            reader.FailAt(line.line, ShownKeyword(line) + " has no parameter '" +
                                         Shown(Trimmed(typed.substr(0, typed.find('=')))) +
                                         "'; expected " + (known.empty() ? "none" : known));
        }
        std::string const key =
            keys.begin()[std::find(joined.begin(), joined.end(), found) - joined.begin()];
        if (Find(key.c_str()) != nullptr) {
            reader.FailAt(line.line,
                          "parameter " + UpperCase(key) + " is given twice; expected it once");
        }
        std::string const typed = Plain(parameters.CurrentValueAsString());
        std::string value = typed;
        if (!Unquote(value)) {
            reader.FailAt(line.line,
                          "the quotes of parameter " + UpperCase(key) + " are not closed");
        }
        if (HasControl(value)) {
            reader.FailAt(line.line, "a control character in parameter " + UpperCase(key) +
                                         "; expected text without them");
        }
        m_values.push_back({key, value, typed, given.find('=') != std::string::npos});
    }
}

KeywordParameters::Given const* KeywordParameters::Find(char const* key) const {
    auto const found = std::find_if(m_values.begin(), m_values.end(),
                                    [key](auto const& value) { return value.key == key; });
    return found == m_values.end() ? nullptr : &*found;
}

std::string KeywordParameters::Value(char const* key) const {
    Given const* const given = Find(key);
    if (given == nullptr) return {};
    if (given->value.empty()) {
        m_reader.FailAt(m_line.line, "parameter " + UpperCase(key) + " has no value; expected " +
                                         UpperCase(key) + "=...");
    }
    return given->value;
}

ScopedName KeywordParameters::Scoped(char const* key) const {
    ScopedName name;
    name.text = Value(key);
    std::size_t at = 0;
    bool within = false;
    for (char const c : Find(key)->typed) {
        if (c == '"') {
            within = !within;
            name.quoted = true;
            continue;
        }
        if (c == '.' && !within) name.dots.push_back(at);
        ++at;
    }
    return name;
}

void KeywordParameters::RefuseValues(std::initializer_list<char const*> keys) const {
    for (char const* const key : keys) {
        Given const* const given = Find(key);
        if (given == nullptr || !given->hasValue) continue;
        m_reader.FailAt(m_line.line, "parameter " + UpperCase(key) + " has the value '" +
                                         Shown(given->value) + "'; expected " + UpperCase(key) +
                                         " alone");
    }
}

void KeywordParameters::PassOver(Translation& translation,
                                 std::initializer_list<char const*> keys) const {
    for (char const* const key : keys) {
        if (!Has(key)) continue;
        if (translation.IsStrict()) {
            m_reader.FailAt(m_line.line, "parameter " + UpperCase(key) + " of " +
                                             ShownKeyword(m_line) +
                                             " is not kept; expected kept ones only");
        }
        translation.Note(UpperCase(key) + " of " + ShownKeyword(m_line) + ", which was not kept");
    }
}

std::string KeywordParameters::Required(char const* key) const {
    if (Find(key) == nullptr) {
        m_reader.FailAt(m_line.line, ShownKeyword(m_line) + " without " + UpperCase(key) +
                                         "; expected " + ShownKeyword(m_line) + ", " +
                                         UpperCase(key) + "=...");
    }
    return Value(key);
}

void RefuseData(DeckReader& reader, KeywordLine const& line) {
    if (reader.NextData())
        reader.Fail("a data line behind " + ShownKeyword(line) + "; expected a keyword");
}

}  // namespace kov::tool
