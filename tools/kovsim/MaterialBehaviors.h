// MaterialBehaviors: the behaviours of materials that decks give and documents hold: what their
// tables hold, in which order, and under which numbers in a document.
//
// Data only. One reader of decks, one writer and one reader of documents serve all behaviours; a
// new behaviour, or a new type of one, is a row here and a row in Keywords.cpp.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "KOVSrvFsmMaterialTable.h"

namespace kov::tool {

// What a behaviour has in a document. Persisted; do not change the numbers.
inline constexpr int kBehaviorType = 0;         ///< string field: upper case; empty for none
inline constexpr int kBehaviorTemperature = 0;  ///< under MaterialTable_temperatureData
inline constexpr int kBehaviorFields = 0;       ///< under MaterialTable_fieldVariableData

/// What numbers may stand in a column.
enum class ColumnRule : unsigned char { Any, AboveZero, FromZero, PoissonRatio };

/// One number of a row.
struct TableColumn {
    char const* name;
    ColumnRule rule;
};

/// Neighbouring columns that are one quantity, and one distribution in a document. The part is its
/// number under MaterialTable_dependentData: below 32, and never used for another quantity.
struct TablePart {
    int part;
    int length;
};

/// The table of a behaviour of some type.
struct BehaviorTable {
    char const* type;  ///< upper case; "" where the behaviour has one form only
    std::span<TablePart const> parts;
    std::span<TableColumn const> columns;
    /// The last column is what the others depend on: it begins with 0 and ascends wherever
    /// temperature and field variables are the same.
    bool curve = false;
    /// What is wrong with the numbers of a row as a whole; empty if nothing is. Null: not asked.
    std::string (*finding)(double const* values) = nullptr;

    std::string TypeKey() const;  ///< lower case without blanks
};

/// A number that stands in the keyword line, and in a real field of the document.
struct BehaviorNumber {
    char const* key;   ///< lower case, as in the keyword line
    char const* name;  ///< as it is shown
    int field;
    ColumnRule rule;
};

struct BehaviorKind {
    char const* keyword;                    ///< lower case, with blanks, as it is shown
    char const* name;                       ///< its key in a document
    char const* typeKey;                    ///< the parameter that gives the type; null for none
    std::span<BehaviorTable const> tables;  ///< none: parameters only. The first is the usual one
    std::span<BehaviorNumber const> numbers;
    std::span<char const* const> passed;   ///< parameters that are not kept
    std::span<char const* const> refused;  ///< with these the whole behaviour is not kept
    /// Neither is one of these types; upper case.
    std::span<char const* const> refusedTypes;
};

std::span<BehaviorKind const> BehaviorKinds();
/// The kind with that key in documents; null if there is none.
BehaviorKind const* FindBehavior(std::string_view name);
/// Its table for a type as documents have it; null if there is none.
BehaviorTable const* FindTable(BehaviorKind const& kind, std::string_view type);

/// The description of a table for KOVSrvFsmMaterialTable, with the arrays that it refers to.
class TableDescription {
  public:
    explicit TableDescription(BehaviorTable const& table);
    TableDescription(TableDescription const&) = delete;
    TableDescription& operator=(TableDescription const&) = delete;

    KOVSrvFsmMaterialTable& Table() { return m_table; }

  private:
    std::vector<int> m_types;
    std::vector<int> m_members;
    std::vector<int> m_lengths;
    KOVSrvFsmMaterialTable m_table;
};

}  // namespace kov::tool
