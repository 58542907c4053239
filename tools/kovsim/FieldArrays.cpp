#include "FieldArrays.h"

#include <algorithm>
#include <limits>

#include "DocumentReader.h"
#include "KOVSimSchema.h"
#include "Names.h"
#include "SetBlocks.h"

namespace kov::tool {
namespace {

constexpr int kBlock = 100'000;
constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

bool AtPoints(FieldContent const& field) {
    return field.items == FieldItems::Elements &&
           field.grid.type == schema::Grid_IntegrationPoint();
}

// Why values cannot be shown at nodes or in cells; empty if they can.
std::string Refusal(FieldContent const& field) {
    if (!field.fault.empty()) return field.fault;
    if (field.items == FieldItems::None) return "has no values";
    if (field.items == FieldItems::Others) {
        return "stands neither on nodes nor on elements";
    }
    bool const several = std::any_of(
        field.drawers.begin(), field.drawers.end(),
        [&field](FieldDrawer const& drawer) { return drawer.point != field.drawers[0].point; });
    if (several && !AtPoints(field)) {
        return "has several values for one item (" + GridShown(field.grid) + ")";
    }
    return "";
}

}  // namespace

std::string ArrayNames::NameOf(FieldHead const& head) const {
    std::string label = head.label.empty() ? "field" : head.label;
    auto const at = m_grids.find(head.label);
    if (at == m_grids.end() || at->second.size() < 2) return label;
    SchemaType const grid = FindSchemaType(head.grid);
    if (head.grid == schema::Grid_Node()) return label + "_nodes";
    if (head.grid == schema::Grid_Element()) return label + "_elements";
    if (head.grid == schema::Grid_IntegrationPoint()) return label + "_integration_points";
    return label + "_" + (*grid.name != '\0' ? grid.name : "no_grid");
}

FieldArrays::FieldArrays(KOVObjDocument const& document, DocumentResults& results,
                         ArrayNames const& names, std::vector<FieldHead> const& heads)
    : m_document(document),
      m_nodes(SpaceAt(KOVObjMesh(document.GetMesh()).GetNodeCollection())),
      m_elements(SpaceAt(KOVObjMesh(document.GetMesh()).GetElementCollection())) {
    for (FieldHead const& head : heads) Take(results.Look(head), names.NameOf(head));
}

void FieldArrays::Take(FieldContent field, std::string const& name) {
    std::string const refusal = Refusal(field);
    if (!refusal.empty()) {
        m_notes.push_back(NameText(name) + " not carried: " + refusal);
        return;
    }
    auto carried = std::make_unique<Carried>();
    carried->form = FormOf(field);
    carried->name = name;
    carried->field = std::move(field);
    bool const cells = carried->field.items == FieldItems::Elements && !AtPoints(carried->field);
    carried->group = cells ? VtuGroup::CellData : VtuGroup::PointData;
    if (AtPoints(carried->field)) {
        carried->points = std::make_unique<PointsToNodes>(m_document, carried->field);
        if (!carried->points->Any()) {
            for (std::string const& note : carried->points->Notes()) {
                m_notes.push_back(NameText(name) + ": " + note);
            }
            return;
        }
    }
    m_carried.push_back(std::move(carried));
}

std::vector<std::string> FieldArrays::Names() const {
    std::vector<std::string> names;
    for (auto const& carried : m_carried) names.push_back(carried->name);
    return names;
}

std::vector<std::string> FieldArrays::NamesFromPoints() const {
    std::vector<std::string> names;
    for (auto const& carried : m_carried) {
        if (carried->points) names.push_back(carried->name);
    }
    return names;
}

std::vector<std::string> FieldArrays::Notes() const {
    std::vector<std::string> notes = m_notes;
    for (auto const& carried : m_carried) {
        if (!carried->points) continue;
        for (std::string const& note : carried->points->Notes()) {
            notes.push_back(NameText(carried->name) + ": " + note);
        }
    }
    return notes;
}

void FieldArrays::AddTo(VtuWriter& file) {
    for (auto const& each : m_carried) {
        Carried const& carried = *each;
        bool const isCell = carried.group == VtuGroup::CellData;
        int const space = isCell ? m_elements : m_nodes;
        auto const width = static_cast<int>(carried.form.columns.size());
        std::vector<std::string> labels;
        if (width > 1) {
            for (FieldForm::Column const& column : carried.form.columns) {
                labels.push_back(column.label);
            }
        }
        std::int64_t const bytes =
            std::int64_t{8} * static_cast<std::int64_t>(space) * std::int64_t{width};
        file.Add(
            carried.group, carried.name, "Float64", width, bytes,
            [this, &carried, space](VtuWriter& out) {
                carried.points ? WriteMeans(out, carried) : WriteRows(out, carried, space);
            },
            labels);
    }
    std::vector<std::string> const carriedOver = NamesFromPoints();
    if (!carriedOver.empty()) file.AddTexts("CarriedFromIntegrationPoints", carriedOver);
}

void FieldArrays::WriteRows(VtuWriter& out, Carried const& carried, int space) const {
    std::size_t const width = carried.form.columns.size();
    std::vector<double> rows;
    std::vector<double> values;
    std::vector<int> items;
    for (int first = 0; first < space; first += kBlock) {
        int const count = std::min(kBlock, space - first);
        rows.assign(static_cast<std::size_t>(count) * width, kNoValue);
        for (FieldDrawer const& drawer : carried.field.drawers) {
            KOVSimCSet const window = InWindow(drawer.items, first, count);
            if (window.IsEmpty()) continue;
            ReadMembers(window, items);
            ReadRows(drawer, window, values);
            for (std::size_t c = 0; c < width; ++c) {
                int const place = carried.form.columns[c].place;
                int const column = drawer.ColumnOf(place);
                if (place >= 0 && column < 0) continue;
                double const* const from = values.data() + std::max(column, 0);
                double* const to = rows.data() + c;
                for (std::size_t i = 0; i < items.size(); ++i) {
                    auto const row = static_cast<std::size_t>(items[i] - first);
                    to[row * width] = place < 0 ? 0.0 : from[i * drawer.Width()];
                }
            }
        }
        out.Append(rows.data(), rows.size() * sizeof(double));
    }
}

void FieldArrays::WriteMeans(VtuWriter& out, Carried const& carried) const {
    std::vector<double> const means = carried.points->Means(m_nodes);
    std::size_t const from = carried.field.components.size();
    std::size_t const width = carried.form.columns.size();
    std::vector<double> rows;
    for (int first = 0; first < m_nodes; first += kBlock) {
        auto const count = static_cast<std::size_t>(std::min(kBlock, m_nodes - first));
        rows.resize(count * width);
        for (std::size_t i = 0; i < count; ++i) {
            double const* const row = means.data() + (static_cast<std::size_t>(first) + i) * from;
            for (std::size_t c = 0; c < width; ++c) {
                int const place = carried.form.columns[c].place;
                // What the field lacks is 0 where the node has a value at all.
                bool const none = row[0] != row[0];
                rows[i * width + c] = place >= 0 ? row[place] : none ? kNoValue : 0.0;
            }
        }
        out.Append(rows.data(), rows.size() * sizeof(double));
    }
}

}  // namespace kov::tool
