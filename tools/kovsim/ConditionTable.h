// ConditionTable: the initial conditions of a deck while it is read. A line that names a set is an
// entry with one value for all its members; it is kept as it was typed, as the set is known in full
// at the end of the deck alone. The lines of one keyword that name labels are an entry together,
// whose values go to the document as they come.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "ConditionKinds.h"
#include "DeckReader.h"
#include "References.h"
#include "Scope.h"
#include "SectionTable.h"
#include "TableField.h"

namespace kov::tool {

struct ConditionEntry {
    ConditionKind const* kind = nullptr;
    int number = 0;              ///< variable or degree of freedom; 0 where the kind has none
    DeckLine at;                 ///< its line; of labels the first
    Scope* scope = nullptr;      ///< where it stands
    int columns = 1;             ///< values of a node or element
    ScopedName name;             ///< of the set, or of a single node or element
    std::vector<double> values;  ///< for all its members; none for labels

    // Of labels alone.
    TableField field;
    KOVSimCSet members;  ///< those with a value
    DeckPlace data;      ///< in front of the first data line of the keyword

    bool IsUniform() const { return !values.empty(); }
    Entity const& Of() const { return kind->ofElements ? kElementEntity : kNodeEntity; }
};

/// In the order of the deck.
using ConditionTable = std::deque<ConditionEntry>;

/// The line of the first data line of a keyword that gives an ordinal a value by its label; 0 if
/// the file cannot be read again.
int FindConditionLine(DeckFiles& files, FileNames const& names, Scopes& scopes,
                      ConditionEntry const& entry, int ordinal);

/// "node 7 of instance 'I'", for messages.
std::string ShownOrdinal(Scopes const& scopes, Entity const& entity, int ordinal);

/// The values of some members of an entry, row by row.
void ReadConditionValues(ConditionEntry const& entry, KOVSimCSet const& members,
                         std::vector<double>& values);

}  // namespace kov::tool
