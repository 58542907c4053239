#include "DocumentResults.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "AscendingSets.h"
#include "DocumentReader.h"
#include "JobRecords.h"
#include "KOVObjMeshedField.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDrawer.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "KOVSrvFieldServices.h"
#include "Names.h"
#include "SetBlocks.h"
#include "zdm_ComponentSymbols.h"

namespace kov::tool {
namespace {

constexpr int kAnyGrid = -1;

std::vector<KOVSimPosition> PositionsOf(KOVSimSet const& set) {
    std::vector<KOVSimPosition> positions;
    for (KOVSimSetiterator at = set.Begin(); at.NotDone(); ++at) positions.push_back(*at);
    return positions;
}

// "U" and "C_1" give "U1", "S" and "C_12_21" give "S12"; a scalar has the label of its field.
std::string LabelFromSymbol(std::string const& label, FieldComponent const& component) {
    if (component.symbol == zdm_Component_C_SCALAR || component.symbol < 0) return label;
    std::string const& name = component.name;
    if (name.rfind("C_", 0) != 0) return label + "_" + name;
    return label + name.substr(2, name.find('_', 2) - 2);
}

}  // namespace

std::string GridShown(SchemaType const& grid) {
    if (grid.type == schema::Grid_Node()) return "nodes";
    if (grid.type == schema::Grid_Element()) return "elements";
    if (grid.type == schema::Grid_IntegrationPoint()) return "integration points";
    return GridText(grid);
}

DocumentResults::DocumentResults(KOVObjDocument const& document)
    : m_document(document),
      m_nodes(KOVObjMesh(document.GetMesh()).GetNodeCollection().GetCollection()),
      m_elements(KOVObjMesh(document.GetMesh()).GetElementCollection().GetCollection()),
      m_components(document.GetComponentCollection().GetCollection()) {
    for (JobStep const& job : JobSteps(document)) {
        ResultStep& step = m_steps.emplace_back();
        step.position = job.step;
        step.name = job.name.empty() ? Plain(job.step.Name(-1)) : job.name;
        step.type = FindSchemaType(job.step.TypePosition());
        step.value = FrameValueOf(job.step);
        for (auto at = job.step.GetVector(schema::Task_frames()).Begin(); at.NotDone(); ++at) {
            step.frames.push_back(*at);
        }
    }
    KOVSimPosition const catalogue = document.Focus().GetPosition(schema::Focus_fieldTypes());
    for (KOVSimMapiterator at = catalogue.GetMap(schema::zdm_FieldTypeLib_fieldTypes()).Begin();
         at.NotDone(); ++at) {
        m_names.emplace(at.Value().ID(), Plain(at.Key()));
    }
}

FrameHead DocumentResults::ReadFrame(KOVSimPosition const& frame) {
    FrameHead head;
    KOVSimDataRecord const record = frame.GetDataRecord();
    record.GetInt(kFrameIncrement, head.increment);
    record.GetDouble(kFrameValue, head.value);
    head.totalTime = head.value;  // where none is told
    record.GetDouble(kFrameTotalTime, head.totalTime);
    head.text = Plain(record.ReturnString(kFrameText));
    return head;
}

FieldHead DocumentResults::Head(KOVSimPosition const& field) {
    FieldHead head;
    head.position = field;
    KOVSimPosition const type = field.GetPosition(schema::Field_fieldType());
    auto const known = m_names.find(type.ID());
    head.name = known != m_names.end() ? known->second : Plain(type.Name(-1));
    if (head.name.empty()) head.name = Plain(field.Name(-1));
    head.grid = KOVObjMeshedField(field).GetGridType();
    if (head.grid < 0) head.grid = KOVObjMeshedField(field).GetDistribution().TypePosition();
    auto const [at, isNew] = m_labels.try_emplace({head.name, head.grid});
    if (isNew && !head.name.empty()) {
        KOVString const name = ToKOVString(head.name);
        at->second = Plain(KOVSrvFieldServices::GetVariableLabel(name, head.grid));
        // On a grid that the map does not have, TEMP is TEMP rather than AVGTEMP, its mean.
        bool const isOwn = Plain(KOVSrvFieldServices::GetFieldType(name)) == head.name;
        if (at->second.empty() && !isOwn) {
            at->second = Plain(KOVSrvFieldServices::GetVariableLabel(name, kAnyGrid));
        }
        if (at->second.empty()) at->second = head.name;
    }
    head.label = at->second;
    return head;
}

std::vector<FieldHead> DocumentResults::FieldsOf(KOVSimPosition const& frame) {
    std::vector<FieldHead> heads;
    for (KOVSimPosition const& field : PositionsOf(frame.GetSet(schema::Frame_fields()))) {
        heads.push_back(Head(field));
    }
    return heads;
}

std::vector<FieldHead> DocumentResults::FieldsWithoutFrame(ResultStep const& step) {
    std::vector<FieldHead> heads;
    std::vector<KOVSimPosition> const all =
        PositionsOf(step.position.GetSet(schema::Task_fieldResults()));
    if (all.empty()) return heads;
    std::set<KOVSimDynamicID, ByIdentity> inFrames;
    for (KOVSimPosition const& frame : step.frames) {
        for (KOVSimPosition const& field : PositionsOf(frame.GetSet(schema::Frame_fields()))) {
            inFrames.insert(field.ID());
        }
    }
    for (KOVSimPosition const& field : all) {
        if (!inFrames.contains(field.ID())) heads.push_back(Head(field));
    }
    return heads;
}

std::int64_t DocumentResults::CountFields() const {
    std::int64_t count = 0;
    std::set<KOVSimDynamicID, ByIdentity> seen;
    for (ResultStep const& step : m_steps) {
        seen.clear();
        for (KOVSimPosition const& frame : step.frames) {
            for (KOVSimPosition const& field : PositionsOf(frame.GetSet(schema::Frame_fields()))) {
                seen.insert(field.ID());
            }
        }
        for (KOVSimPosition const& field :
             PositionsOf(step.position.GetSet(schema::Task_fieldResults()))) {
            seen.insert(field.ID());
        }
        count += static_cast<std::int64_t>(seen.size());
    }
    return count;
}

FieldContent DocumentResults::Look(FieldHead const& head) {
    FieldContent field;
    field.head = head;
    field.grid = FindSchemaType(head.grid);
    KOVSimPosition const type = head.position.GetPosition(schema::Field_fieldType());
    type.GetDataRecord().GetSymb(kFieldTypeAlgebraicType, field.algebraicType);
    for (KOVSimPosition const& serial :
         PositionsOf(head.position.GetSet(schema::Field_serialFields()))) {
        int point = 0;
        serial.GetDataRecord().GetInt(kSerialFieldPoint, point);
        for (KOVSimPosition const& drawer :
             PositionsOf(serial.GetSet(schema::SerialField_drawers()))) {
            if (field.fault.empty()) AddDrawer(field, drawer, point);
        }
    }
    if (!field.fault.empty()) field.drawers.clear();
    Settle(field);
    return field;
}

// Checks the shape of a drawer. Drawers without entries are left out.
void DocumentResults::AddDrawer(FieldContent& field, KOVSimPosition const& position, int point) {
    if (position.GetDrawer().IsNull()) {
        field.fault = "what a serial field has under its drawers is none";
        return;
    }
    KOVSimDrawer const made(position.GetDrawer());
    if (made.Description() == nullptr || made.DistributionID().IsNull()) {
        field.fault = "a drawer belongs to no distribution";
        return;
    }
    FieldDrawer drawer;
    drawer.distribution = KOVSimDistribution(made.DistributionID());
    drawer.id = made.ID();
    drawer.point = point;
    int const key = drawer.distribution.Range().Key();
    if (key != KOVSimTypeKeyDouble && key != KOVSimTypeKeyInt) {
        field.fault = "its values are no numbers";
        return;
    }
    int const dimensions = drawer.distribution.NumDimensions();
    KOVSimGrid::CollectionArray const& grid = drawer.distribution.Grid().Collections();
    bool const hasComponents = dimensions == 2 && grid.ConstGet(1) == m_components;
    if ((dimensions == 2 && !hasComponents) || grid.ConstGet(0) == m_components) {
        field.fault = "its values do not stand on items by components";
        return;
    }
    FieldItems const items = grid.ConstGet(0) == m_nodes      ? FieldItems::Nodes
                             : grid.ConstGet(0) == m_elements ? FieldItems::Elements
                                                              : FieldItems::Others;
    drawer.items = Ascending(made.Description()->compartment.CSet(0));
    if (hasComponents) drawer.columns = Ascending(made.Description()->compartment.CSet(1));
    if (drawer.items.IsEmpty() || (hasComponents && drawer.columns.IsEmpty())) return;
    bool const other = !field.drawers.empty() &&
                       drawer.items.CollectionID() != field.drawers[0].items.CollectionID();
    if (other) {
        field.fault = "its drawers stand on items of several sorts";
        return;
    }
    field.items = items;
    field.drawers.push_back(std::move(drawer));
}

FieldComponent const& DocumentResults::Component(FieldContent const& field, int member) {
    auto const [at, isNew] = m_parts[{field.head.name, field.head.grid}].try_emplace(member);
    FieldComponent& component = at->second;
    if (!isNew) return component;
    KOVSimPosition const symbol(m_document.GetRecord(m_components, member));
    component.symbol = symbol.GetSymbolPosition();
    component.name = Plain(symbol.GetSymbolName());
    KOVString const name = ToKOVString(field.head.name);
    for (int const grid : {field.head.grid, kAnyGrid}) {
        if (!component.label.empty() || component.symbol < 0) continue;
        component.label = Plain(KOVSrvFieldServices::GetComponentLabel(
            name, static_cast<zdm_ComponentSymbolsEnm>(component.symbol), grid));
    }
    if (component.label.empty()) component.label = LabelFromSymbol(field.head.label, component);
    return component;
}

// The components of all drawers, and which of them each drawer has.
void DocumentResults::Settle(FieldContent& field) {
    std::stable_sort(field.drawers.begin(), field.drawers.end(),
                     [](FieldDrawer const& a, FieldDrawer const& b) { return a.point < b.point; });
    std::set<int> members;
    bool plain = false;
    for (FieldDrawer const& drawer : field.drawers) {
        for (int const member : MembersOf(drawer.columns)) members.insert(member);
        plain = plain || drawer.columns.IsEmpty();
    }
    if (plain && !members.empty()) {
        field.fault = "some of its drawers have components, and others have none";
        field.drawers.clear();
        return;
    }
    if (plain) {
        field.components.push_back({zdm_Component_C_SCALAR, "C_SCALAR", field.head.label});
    }
    for (int const member : members) field.components.push_back(Component(field, member));
    std::set<int> points;
    for (FieldDrawer& drawer : field.drawers) {
        if (plain) drawer.places = {0};
        for (int const member : MembersOf(drawer.columns)) {
            drawer.places.push_back(
                static_cast<std::size_t>(std::distance(members.begin(), members.find(member))));
        }
        field.rows += drawer.items.Size();
        if (drawer.point > 0) points.insert(drawer.point);
    }
    field.points = static_cast<int>(points.size());
}

int FieldDrawer::ColumnOf(int place) const {
    if (place < 0) return -1;
    auto const at = std::find(places.begin(), places.end(), static_cast<std::size_t>(place));
    return at == places.end() ? -1 : static_cast<int>(at - places.begin());
}

void ReadRows(FieldDrawer const& drawer, KOVSimCSet const& items, std::vector<double>& values) {
    values.resize(static_cast<std::size_t>(items.Size()) * drawer.Width());
    KOVSimTransfer transfer(drawer.distribution);
    transfer.SetRead().SetBufferPadding(false).SetDrawer(drawer.id).SetDim(0, items);
    if (drawer.distribution.NumDimensions() == 2) transfer.SetDim(1, drawer.columns);
    if (drawer.distribution.Range().Key() != KOVSimTypeKeyDouble)
        transfer.SetBufferType(KOVSimTypeKeyDouble);
    transfer.CheckView();
    transfer.SetBuffer(0, values.data(), sizeof(double) * values.size());
    transfer.ExecRead().RelinquishBuffers();
}

void ForRows(FieldDrawer const& drawer,
             std::function<void(std::vector<int> const& items,
                                std::vector<double> const& values)> const& f) {
    std::vector<int> items;
    std::vector<double> values;
    ForSetWindows(drawer.items, kFieldBlock, [&](KOVSimCSet const& window) {
        ReadMembers(window, items);
        ReadRows(drawer, window, values);
        f(items, values);
    });
}

}  // namespace kov::tool
