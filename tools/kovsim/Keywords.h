// Keywords: the keyword classes that a deck may hold.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "DeckReader.h"
#include "MaterialBehaviors.h"
#include "References.h"
#include "Translation.h"

namespace kov::tool {

/// Reads one keyword: its parameters, and its data lines up to the next keyword.
using KeywordHandler = void (*)(Translation&, DeckReader&, KeywordLine const&);

/// One keyword class, as the parser is told of it.
struct KeywordEntry {
    char const* name;  ///< lower case, without blanks
    KOVSrvKeywordCallback callback;
    bool keepsMaterial = false;  ///< behind it a material's behaviours may still follow
};
std::span<KeywordEntry const> KeywordTable();
/// Whether behaviours of the material before it may follow the keyword of that callback.
bool KeepsMaterial(KOVSrvKeywordCallback callback);

/// Stand for keywords without a class of their own, and for those that fit several; never called.
void UnknownKeyword(KOVString const&, KOVSrvKeywordParser::Parameters const&, KOVSrvKeywordParser&,
                    void*);
void AmbiguousKeyword(KOVString const&, KOVSrvKeywordParser::Parameters const&,
                      KOVSrvKeywordParser&, void*);

/// What a callback finds behind the parser's user pointer.
struct KeywordCall {
    Translation& translation;
    DeckReader& reader;
    KeywordLine const* line;
};

/// The parameters of one keyword line, resolved against the allowed names, which may be
/// abbreviated. Unknown names, names given twice and quotes that are not closed are errors at the
/// keyword's line.
class KeywordParameters {
  public:
    /// `keys`: allowed names in lower case; blanks in them are shown in messages, and have no
    /// meaning.
    KeywordParameters(DeckReader const& reader, KeywordLine const& line,
                      std::initializer_list<char const*> keys)
        : KeywordParameters(reader, line, std::span(keys.begin(), keys.size())) {}
    KeywordParameters(DeckReader const& reader, KeywordLine const& line,
                      std::span<char const* const> keys);

    bool Has(char const* key) const { return Find(key) != nullptr; }
    /// The value without its quotes; empty if the parameter is absent. With the parameter there, a
    /// value is asked for.
    std::string Value(char const* key) const;
    /// The same for a parameter that has to be there.
    std::string Required(char const* key) const;
    /// The value as a name that may begin with an instance.
    ScopedName Scoped(char const* key) const;
    /// Throws if one of `keys` has a value: these say something by being there.
    void RefuseValues(std::initializer_list<char const*> keys) const;
    /// Notes those of `keys` that are given: they are known, and nothing is done with them. Where
    /// the deck is read strictly they are errors.
    void PassOver(Translation& translation, std::initializer_list<char const*> keys) const;

  private:
    struct Given {
        std::string key;
        std::string value;
        std::string typed;  ///< the value with its quotes
        bool hasValue;      ///< perhaps an empty one
    };

    Given const* Find(char const* key) const;

    DeckReader const& m_reader;
    KeywordLine const& m_line;
    std::vector<Given> m_values;
};

/// A to Z in the place of a to z.
std::string UpperCase(std::string text);

/// The keyword as users write it, for messages.
std::string ShownKeyword(KeywordLine const& line);

void ReadHeading(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadNodes(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadElements(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadNodeSet(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadElementSet(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadInclude(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadSurface(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadOrientation(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadDistributionTable(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadDistribution(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadMaterial(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadInitialConditions(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadBehavior(Translation& translation, DeckReader& reader, KeywordLine const& line,
                  BehaviorKind const& kind);
void ReadShellSection(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadSolidSection(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadMembraneSection(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadBeamSection(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadPart(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadEndPart(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadAssembly(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadEndAssembly(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadInstance(Translation& translation, DeckReader& reader, KeywordLine const& line);
void ReadEndInstance(Translation& translation, DeckReader& reader, KeywordLine const& line);

/// At the end of the deck: throws if an assembly or an instance is open.
void CheckEnds(Translation& translation);

/// Throws if a data line comes next.
void RefuseData(DeckReader& reader, KeywordLine const& line);

}  // namespace kov::tool
