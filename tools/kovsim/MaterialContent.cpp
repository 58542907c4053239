#include "MaterialContent.h"

#include <algorithm>
#include <limits>

#include "DistributionCopy.h"
#include "DocumentReader.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "Names.h"
#include "SetBlocks.h"
#include "TableField.h"

namespace kov::tool {
namespace {

// A distribution of a table: one drawer over the rows, and over columns where it has any.
class TableData {
  public:
    /// `width`: columns that are expected; -1 for any number; 0 for a part without columns.
    TableData(KOVSimPosition const& position, int width) {
        if (position.ID().Category() != KOVSimCategoryDistribution) Fail();
        m_distribution = position.GetDistribution();
        KOVSimDistribution const distribution(m_distribution);
        if (distribution.Range().Key() != KOVSimTypeKeyDouble) Fail();
        DrawerDescriptions drawers;
        distribution.QueryDrawers(drawers);
        if (drawers.Size() != 1) Fail();
        m_domain = drawers.ConstGet(0).compartment;
        if (m_domain.Size() != (width == 0 ? 1 : 2)) Fail();
        m_width = width == 0 ? 1 : m_domain.CSet(1).Size();
        if (width > 0 && m_width != width) Fail();
    }

    KOVSimCSet Rows() const { return m_domain.CSet(0); }
    int Width() const { return m_width; }

    /// `rows`: some of Rows(). Row-major, in their order.
    void Read(KOVSimCSet const& rows, std::vector<double>& values) const {
        values.resize(static_cast<std::size_t>(rows.Size()) * static_cast<std::size_t>(m_width));
        KOVSimTransfer read{KOVSimDistribution(m_distribution)};
        read.SetRead().SetBufferPadding(false).SetDim(0, rows);
        if (m_domain.Size() == 2) read.SetDim(1, m_domain.CSet(1));
        read.CheckView();
        read.SetBuffer(0, values.data(), values.size() * sizeof(double));
        read.ExecRead().RelinquishBuffers();
    }

  private:
    [[noreturn]] static void Fail() {
        throw DocumentFault("the table of a material is not one of rows and columns");
    }

    KOVSimDistributionID m_distribution;
    KOVSimOCompartment m_domain;
    int m_width = 0;
};

// All parts of a table, in the order of its columns.
std::vector<TableData> DataOf(BehaviorContent const& behavior) {
    std::vector<TableData> parts;
    KOVSimPosition const& at = behavior.position;
    for (TablePart const& part : behavior.table->parts) {
        parts.emplace_back(at.Follow(schema::MaterialTable_dependentData(), part.part),
                           part.length);
    }
    if (behavior.hasTemperature) {
        parts.emplace_back(at.Follow(schema::MaterialTable_temperatureData(), kBehaviorTemperature),
                           0);
    }
    if (behavior.fieldVariables > 0) {
        parts.emplace_back(at.Follow(schema::MaterialTable_fieldVariableData(), kBehaviorFields),
                           behavior.fieldVariables);
    }
    for (TableData const& part : parts) {
        if (part.Rows().Size() != behavior.rows)
            throw DocumentFault("the columns of a material's table differ in their rows");
    }
    return parts;
}

void ReadTemperatures(BehaviorContent& behavior, TableData const& part) {
    behavior.lowest = std::numeric_limits<double>::infinity();
    behavior.highest = -behavior.lowest;
    std::vector<double> values;
    ForSetBlocks(part.Rows(), RowsInBlock(1), [&](KOVSimCSet const& rows) {
        part.Read(rows, values);
        for (double const value : values) {
            behavior.lowest = std::min(behavior.lowest, value);
            behavior.highest = std::max(behavior.highest, value);
        }
    });
}

BehaviorContent ReadBehavior(std::string const& name, KOVSimPosition const& position) {
    BehaviorContent behavior;
    behavior.name = name;
    behavior.position = position;
    KOVSimDataRecord const record = position.GetDataRecord();
    KOVString type;
    record.GetString(kBehaviorType, type);
    behavior.type = Plain(type);
    behavior.kind = FindBehavior(name);
    if (behavior.kind == nullptr) return behavior;
    for (BehaviorNumber const& number : behavior.kind->numbers) {
        if (record.FieldKind(number.field) != 'd') continue;
        double value = 0;
        record.GetDouble(number.field, value);
        behavior.numbers.emplace_back(number.name, value);
    }
    behavior.table = FindTable(*behavior.kind, behavior.type);
    if (behavior.table == nullptr) return behavior;
    TablePart const& first = behavior.table->parts[0];
    KOVSimPosition const values =
        position.Follow(schema::MaterialTable_dependentData(), first.part);
    if (values.IsNull()) {
        behavior.table = nullptr;
        return behavior;
    }
    behavior.rows = TableData(values, first.length).Rows().Size();
    KOVSimPosition const temperature =
        position.Follow(schema::MaterialTable_temperatureData(), kBehaviorTemperature);
    behavior.hasTemperature = !temperature.IsNull() && behavior.rows > 0;
    if (behavior.hasTemperature) ReadTemperatures(behavior, TableData(temperature, 0));
    KOVSimPosition const fields =
        position.Follow(schema::MaterialTable_fieldVariableData(), kBehaviorFields);
    if (!fields.IsNull()) behavior.fieldVariables = TableData(fields, -1).Width();
    return behavior;
}

KOVSimMap MaterialMap(KOVObjDocument const& document) {
    return document.GetMaterialCollection().GetMap(schema::MaterialLib_materials());
}

}  // namespace

std::vector<std::string> BehaviorContent::Columns() const {
    std::vector<std::string> names;
    if (table == nullptr) return names;
    for (TableColumn const& column : table->columns) names.emplace_back(column.name);
    if (hasTemperature) names.emplace_back("temperature");
    for (int i = 1; i <= fieldVariables; ++i) names.push_back("field " + std::to_string(i));
    return names;
}

std::vector<std::string> MaterialNames(KOVObjDocument const& document) {
    std::vector<std::string> names;
    for (auto at = MaterialMap(document).Begin(); at.NotDone(); ++at) {
        names.push_back(Plain(at.Key()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

int CountBehaviors(KOVObjDocument const& document) {
    int count = 0;
    for (auto at = MaterialMap(document).Begin(); at.NotDone(); ++at) {
        count += at.Value().GetMap(schema::Material_behaviors()).Size();
    }
    return count;
}

MaterialContent LookAtMaterial(KOVObjDocument const& document, std::string const& name) {
    MaterialContent material;
    material.name = name;
    material.position = MaterialMap(document).Find(ToKOVString(name));
    KOVSimMap const behaviors = material.position.GetMap(schema::Material_behaviors());
    for (auto at = behaviors.Begin(); at.NotDone(); ++at) {
        material.behaviors.push_back(ReadBehavior(Plain(at.Key()), at.Value()));
    }
    std::sort(material.behaviors.begin(), material.behaviors.end(),
              [](auto const& a, auto const& b) { return a.name < b.name; });
    return material;
}

void ForEachRow(BehaviorContent const& behavior,
                std::function<void(std::vector<double> const&)> const& show) {
    if (behavior.table == nullptr || behavior.rows == 0) return;
    std::vector<TableData> const parts = DataOf(behavior);
    std::vector<std::vector<double>> values(parts.size());
    std::vector<double> row;
    int const columns = static_cast<int>(behavior.Columns().size());
    ForSetBlocks(parts[0].Rows(), RowsInBlock(columns), [&](KOVSimCSet const& rows) {
        for (std::size_t i = 0; i < parts.size(); ++i) parts[i].Read(rows, values[i]);
        for (int r = 0; r < rows.Size(); ++r) {
            row.clear();
            for (std::size_t i = 0; i < parts.size(); ++i) {
                auto const from = values[i].begin() + std::ptrdiff_t{r} * parts[i].Width();
                row.insert(row.end(), from, from + parts[i].Width());
            }
            show(row);
        }
    });
}

}  // namespace kov::tool
