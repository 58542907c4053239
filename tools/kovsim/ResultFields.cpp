#include "ResultFields.h"

#include <algorithm>
#include <numeric>

#include "AscendingSets.h"
#include "Interrupt.h"
#include "KOVObjMeshedField.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransfer.h"
#include "Names.h"
#include "ResultRecords.h"

namespace kov::tool {
namespace {

// The persistent set of these members; one for all who ask.
KOVSimCSetID SharedSet(KOVSimCollection& collection, KOVSimCSet set) {
    KOVSimCSetID const stored = collection.SeekCSet(set, false);
    if (!stored.IsNull() && stored.Minor() > 0) return stored;
    return set.RegisterWithCollection();
}

std::string Item(ResultPlace place, int label) {
    return (place == ResultPlace::Node ? "node " : "element ") + std::to_string(label);
}

}  // namespace

ResultFieldWriter::ResultFieldWriter(KOVObjDocument const& document, MadeFrame const& frame,
                                     ResultField const& field, ResultLabels& labels,
                                     std::size_t values)
    : m_document(document),
      m_frame(frame),
      m_field(field),
      m_labels(labels),
      m_most(values),
      m_targets(TargetsOf(field)),
      m_seen(static_cast<std::size_t>(labels.Space()), false) {
    KOVObjMesh const mesh(document.GetMesh());
    m_collection = CollectionAt(field.place == ResultPlace::Node ? mesh.GetNodeCollection()
                                                                 : mesh.GetElementCollection());
    if (field.place == ResultPlace::IntegrationPoint) m_groups = ElementGroups(document);
}

void ResultFieldWriter::Add(ResultBlock const& block, std::string const& where) {
    std::size_t const columns = m_field.components.size();
    bool const points = m_field.place == ResultPlace::IntegrationPoint;
    if (columns == 0 || block.points < 1 || (!points && block.points != 1) ||
        block.values.size() !=
            block.labels.size() * static_cast<std::size_t>(block.points) * columns) {
        throw Failure(where + ": the values of field '" + Shown(m_field.label) +
                      "' are no rows of components");
    }
    if (block.points != m_points) Flush();
    m_points = block.points;
    Place(block, where);
}

void ResultFieldWriter::Place(ResultBlock const& block, std::string const& where) {
    std::size_t const width = static_cast<std::size_t>(m_points) * m_field.components.size();
    double const* row = block.values.data();
    for (int const label : block.labels) {
        double const* const values = row;
        row += width;
        ++m_unknown.rows;
        int const ordinal = m_labels.Find(label);
        if (ordinal < 0) {
            if (m_unknown.count++ == 0) m_unknown.where = where;
            if (m_unknown.first.size() < UnknownLabels::kFirst) m_unknown.first.push_back(label);
            continue;
        }
        if (m_seen[static_cast<std::size_t>(ordinal)]) {
            throw Failure(where + ": " + Item(m_field.place, label) + " stands twice in field '" +
                          Shown(m_field.label) + "'");
        }
        m_seen[static_cast<std::size_t>(ordinal)] = true;
        if (!m_ordinals.empty() && ordinal < m_ordinals.back()) m_ascends = false;
        m_ordinals.push_back(ordinal);
        m_values.insert(m_values.end(), values, row);
        if (m_values.size() >= m_most) Flush();
    }
}

void ResultFieldWriter::Finish() { Flush(); }

void ResultFieldWriter::Flush() {
    ThrowIfInterrupted();
    if (m_ordinals.empty()) return;
    if (!m_ascends) Sort();
    MakeFields();
    KOVSimCSet rest = SetOf(m_collection, m_ordinals);
    for (ElementGroup const& group : m_groups) {
        KOVSimCSet const items = group.elements.Intersection(rest);
        if (items.IsEmpty()) continue;
        std::vector<std::size_t> const rows = RowsOf(items);
        WriteGroup(items, rows.size() == m_ordinals.size() ? nullptr : &rows);
        rest = rest - items;
    }
    if (!rest.IsEmpty()) {
        std::vector<std::size_t> const rows = RowsOf(rest);
        WriteGroup(rest, rows.size() == m_ordinals.size() ? nullptr : &rows);
    }
    m_rows += static_cast<long long>(m_ordinals.size()) * m_points;
    m_ordinals.clear();
    m_values.clear();
    m_ascends = true;
}

void ResultFieldWriter::Sort() {
    std::vector<std::size_t> order(m_ordinals.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [this](std::size_t a, std::size_t b) { return m_ordinals[a] < m_ordinals[b]; });
    std::size_t const width = static_cast<std::size_t>(m_points) * m_field.components.size();
    std::vector<int> ordinals;
    std::vector<double> values;
    ordinals.reserve(order.size());
    values.reserve(m_values.size());
    for (std::size_t const row : order) {
        auto const from = m_values.begin() + static_cast<std::ptrdiff_t>(row * width);
        ordinals.push_back(m_ordinals[row]);
        values.insert(values.end(), from, from + static_cast<std::ptrdiff_t>(width));
    }
    m_ordinals.swap(ordinals);
    m_values.swap(values);
}

// The places of members, all of which are among the rows gathered.
std::vector<std::size_t> ResultFieldWriter::RowsOf(KOVSimCSet const& items) const {
    std::vector<int> const members = MembersOf(items);
    std::vector<std::size_t> rows;
    rows.reserve(members.size());
    std::size_t at = 0;
    for (int const member : members) {
        while (m_ordinals[at] != member) ++at;
        rows.push_back(at);
    }
    return rows;
}

// `rows`: those of the items; null for all.
void ResultFieldWriter::WriteGroup(KOVSimCSet const& items, std::vector<std::size_t> const* rows) {
    std::size_t const width = m_field.components.size();
    std::size_t const count = rows == nullptr ? m_ordinals.size() : rows->size();
    auto const points = static_cast<std::size_t>(m_points);
    bool const atPoints = m_field.place == ResultPlace::IntegrationPoint;
    for (std::size_t t = 0; t < m_targets.size(); ++t) {
        std::vector<std::size_t> const& columns = m_targets[t].columns;
        for (std::size_t point = 0; point < points; ++point) {
            m_out.resize(count * columns.size());
            double* out = m_out.data();
            for (std::size_t i = 0; i < count; ++i) {
                std::size_t const row = rows == nullptr ? i : (*rows)[i];
                double const* const in = m_values.data() + (row * points + point) * width;
                for (std::size_t const column : columns) *out++ = in[column];
            }
            Field& field = m_fields[t];
            KOVSimTransfer write{KOVSimDistribution(field.distribution)};
            write.SetWrite().SetMakeNewDrawer().SetBufferPadding(false);
            write.SetDim(0, items).SetDim(1, field.components).CheckView();
            write.SetBuffer(0, static_cast<void const*>(m_out.data()),
                            m_out.size() * sizeof(double));
            write.ExecWrite().RelinquishBuffers();
            KOVSimPosition const serial = Serial(field, atPoints ? static_cast<int>(point) + 1 : 0);
            serial.GetSet(schema::SerialField_drawers()).Insert(KOVSimPosition(write.DrawerID()));
        }
    }
}

KOVSimPosition ResultFieldWriter::Serial(Field& field, int point) {
    auto const at = static_cast<std::size_t>(point);
    if (field.serials.size() <= at) field.serials.resize(at + 1);
    KOVSimPosition& serial = field.serials[at];
    if (!serial.IsNull()) return serial;
    KOVSimDataRecord const record = m_document.CreateDataRecord(schema::SerialField());
    record.SetInt(kSerialFieldPoint, point);
    serial = record.Pos();
    serial.SetPosition(schema::SerialField_components(), KOVSimPosition(field.components));
    field.field.GetSet(schema::Field_serialFields()).Insert(serial);
    return serial;
}

// The type under the target's name in the catalogue; a new one if there is none.
KOVSimPosition ResultFieldWriter::FieldType(ResultTarget const& target) const {
    KOVSimPosition catalogue = m_document.Focus().GetPosition(schema::Focus_fieldTypes());
    if (catalogue.IsNull()) {
        catalogue = m_document.CreateDataRecord(schema::FieldTypeLib()).Pos();
        m_document.Focus().SetPosition(schema::Focus_fieldTypes(), catalogue);
    }
    KOVSimMap const types = catalogue.GetMap(schema::zdm_FieldTypeLib_fieldTypes());
    KOVString const name = ToKOVString(target.name);
    KOVSimPosition const there = types.Find(name);
    if (!there.IsNull()) {
        int type = -1;
        there.GetDataRecord().GetSymb(kFieldTypeAlgebraicType, type);
        if (type == target.algebraicType) return there;
        throw ResultFault("field type '" + Shown(target.name) +
                          "' of the document is another quantity: its algebraic type is " +
                          std::to_string(type) + ", not " + std::to_string(target.algebraicType));
    }
    KOVSimDataRecord const made = m_document.CreateDataRecord(
        target.known ? schema::FieldTypePrimary() : schema::FieldType_unchecked());
    made.SetSymb(kFieldTypeAlgebraicType, target.algebraicType);
    types.Insert(name, made.Pos());
    return made.Pos();
}

void ResultFieldWriter::MakeFields() {
    if (!m_fields.empty()) return;
    KOVSimCollection components = CollectionAt(m_document.GetComponentCollection());
    if (!components.IsPresent() || components.Space() <= zdm_Algebraic_VECTOR) {
        throw DocumentFault("it has no component symbols");
    }
    KOVSimGrid::CollectionArray grid(2);
    grid.Get(0) = m_collection.ID();
    grid.Get(1) = components.ID();
    for (ResultTarget const& target : m_targets) {
        if (target.symbols.back() >= components.Space()) {
            throw DocumentFault("it does not have all component symbols");
        }
        Field& made = m_fields.emplace_back();
        KOVSimDataRecord const record = m_document.CreateDataRecord(schema::Field_Meshed());
        record.SetTypeID(kFieldGridType, target.grid);
        made.field = record.Pos();
        made.field.SetPosition(schema::Field_fieldType(), FieldType(target));
        made.distribution = made.field.CreateTypedDistribution(
            KOVSimGrid(grid), target.grid, KOVSimRangeType(KOVSimTypeKeyDouble));
        KOVObjMeshedField(made.field).SetDistribution(KOVSimPosition(made.distribution));
        made.components = SharedSet(components, SetOf(components, target.symbols));
        m_frame.frame.GetSet(schema::Frame_fields()).Insert(made.field);
        m_frame.step.GetSet(schema::Task_fieldResults()).Insert(made.field);
    }
}

}  // namespace kov::tool
