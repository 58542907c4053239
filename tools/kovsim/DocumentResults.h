// DocumentResults: the results in a document: steps, frames, fields and their values.
//
// Documents may come from any writer: what is absent is answered by emptiness, and a field whose
// values cannot be read as rows of components says so in `fault`. Finding out about a field reads
// sets and records alone; values pass in blocks of rows, one transfer each, so that memory does not
// depend on the size of a field.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ByIdentity.h"
#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "KOVSimCollection.h"
#include "KOVSimDistribution.h"
#include "ResultRecords.h"
#include "SchemaTypes.h"

namespace kov::tool {

struct ResultStep {
    std::string name;
    KOVSimPosition position;
    SchemaType type;
    FrameValue value = FrameValue::Time;
    std::vector<KOVSimPosition> frames;  ///< in their order

    /// By its number, from 1.
    KOVSimPosition const& Frame(int number) const {
        return frames[static_cast<std::size_t>(number) - 1];
    }
};

struct FrameHead {
    int increment = 0;
    double value = 0.0;      ///< time within the step, frequency or load factor
    double totalTime = 0.0;  ///< from the start of the analysis
    std::string text;        ///< of the solver
};

/// What a field is called, and what it stands on.
struct FieldHead {
    KOVSimPosition position;
    std::string name;   ///< of its type in the catalogue, such as "U_D"; empty if it has none
    std::string label;  ///< of the variable, such as "U"; the name, where no variable has the field
    int grid = -1;      ///< type index of the grid; -1 if none is told
};

struct FieldComponent {
    int symbol = -1;    ///< number of the component symbol
    std::string name;   ///< of the symbol, such as "C_1"
    std::string label;  ///< of the variable, such as "U1"
};

enum class FieldItems { None, Nodes, Elements, Others };

/// A rectangle of values: rows for some items, columns for some components.
struct FieldDrawer {
    KOVSimDistribution distribution;
    KOVSimDrawerID id;
    int point = 0;       ///< number of the integration point; 0 where there is none
    KOVSimCSet items;    ///< ascending
    KOVSimCSet columns;  ///< ascending; without members where the field has no component dimension
    std::vector<std::size_t> places;  ///< of the columns among the components of the field

    std::size_t Width() const { return places.size(); }
    /// The column of a component of the field, told by its place there; -1 if there is none.
    int ColumnOf(int place) const;
};

struct FieldContent {
    FieldHead head;
    SchemaType grid;
    int algebraicType = -1;  ///< a zdm_AlgebraicTypeEnm; -1 if none is told
    FieldItems items = FieldItems::None;
    std::vector<FieldComponent> components;  ///< ascending by symbol
    std::vector<FieldDrawer> drawers;        ///< ascending by point, then as they were made
    std::int64_t rows = 0;                   ///< over all drawers
    int points = 0;                          ///< how many point numbers there are
    std::string fault;  ///< why its values cannot be read; empty if they can; then no drawers
};

/// "nodes", "elements", "integration points"; for other grids what they are laid out over.
std::string GridShown(SchemaType const& grid);

class DocumentResults {
  public:
    explicit DocumentResults(KOVObjDocument const& document);

    /// In their sequence.
    std::vector<ResultStep> const& Steps() const { return m_steps; }

    static FrameHead ReadFrame(KOVSimPosition const& frame);
    /// The fields of a frame, in the order in which they were made.
    std::vector<FieldHead> FieldsOf(KOVSimPosition const& frame);
    /// The fields of a step that are in none of its frames.
    std::vector<FieldHead> FieldsWithoutFrame(ResultStep const& step);
    /// How many fields all steps have.
    std::int64_t CountFields() const;

    FieldContent Look(FieldHead const& head);

  private:
    FieldHead Head(KOVSimPosition const& field);
    KOVSimPosition TypeOf(KOVSimPosition const& field) const;
    void AddDrawer(FieldContent& field, KOVSimPosition const& position, int point);
    void Settle(FieldContent& field);
    FieldComponent const& Component(FieldContent const& field, int member);

    KOVObjDocument m_document;
    KOVSimCollectionID m_nodes;
    KOVSimCollectionID m_elements;
    KOVSimCollectionID m_components;
    std::vector<ResultStep> m_steps;
    std::map<KOVSimDynamicID, std::string, ByIdentity> m_names;   ///< of field types
    std::map<std::pair<std::string, int>, std::string> m_labels;  ///< by name and grid
    std::map<std::pair<std::string, int>, std::map<int, FieldComponent>> m_parts;  ///< the same
};

/// Rows of a drawer to one block.
constexpr int kFieldBlock = 1 << 17;

/// Values of `items`, which are some of the drawer's, in ascending order: (items, columns),
/// row-major.
void ReadRows(FieldDrawer const& drawer, KOVSimCSet const& items, std::vector<double>& values);

/// Calls `f` for blocks of ascending items with their values as ReadRows gives them.
void ForRows(
    FieldDrawer const& drawer,
    std::function<void(std::vector<int> const& items, std::vector<double> const& values)> const& f);

}  // namespace kov::tool
