// SectionParameters: the parameters that the keywords of sections share.
#pragma once

#include <initializer_list>

#include "Keywords.h"
#include "SectionTable.h"

namespace kov::tool {

/// A new section of the current scope, with its element set, at the end of the table.
SectionEntry& MakeSection(Translation& translation, DeckReader const& reader,
                          KeywordLine const& line, KeywordParameters const& parameters,
                          SectionEntry::Kind kind);

/// ORIENTATION=, where it is given.
void TakeOrientation(Translation& translation, KeywordParameters const& parameters,
                     SectionEntry& section);

/// A distribution over the whole section, where `key` is given.
void TakeThicknessName(Translation& translation, KeywordParameters const& parameters,
                       char const* key, SectionEntry& section);

/// MATERIAL=, which has to be there.
int TakeMaterial(Translation& translation, KeywordParameters const& parameters,
                 SectionEntry const& section);

/// COMPOSITE, and what goes with it: SYMMETRIC, LAYUP, STACK DIRECTION.
void TakeComposite(Translation& translation, DeckReader const& reader, KeywordLine const& line,
                   KeywordParameters const& parameters, SectionEntry& section);

/// The place of a value among `words`, which are lower case and without blanks. Throws if it is
/// none of them. `expected`: how these are written.
int WordOf(DeckReader const& reader, KeywordLine const& line, std::string const& value,
           std::initializer_list<char const*> words, char const* expected);

}  // namespace kov::tool
