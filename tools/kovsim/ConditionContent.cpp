#include "ConditionContent.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "DistributionCopy.h"
#include "DocumentReader.h"
#include "KOVSimDataRecord.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSrvFieldServices.h"
#include "Names.h"
#include "SetBlocks.h"

namespace kov::tool {
namespace {

NamedCondition NameOf(KOVSimPosition const& entry) {
    return ReadConditionName(Plain(entry.GetDataRecord().ReturnString(kConditionName)));
}

[[noreturn]] void Fail(ConditionContent const& condition, std::string const& text) {
    throw DocumentFault("the initial " + ConditionText(*condition.kind, condition.number) + " " +
                        text);
}

// Its key among the sets of the model.
std::string KeyOf(KOVSimPosition const& set, bool elements) {
    int const maps[][2] = {{schema::Model_nodeSets(), schema::Model_otherNodeSets()},
                           {schema::Model_elementSets(), schema::Model_otherElementSets()}};
    for (int const map : maps[elements ? 1 : 0]) {
        std::string name = Plain(set.Name(map));
        if (!name.empty()) return name;
    }
    return "";
}

void ReadUniform(ConditionContent& condition, KOVSimPosition const& field) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    condition.uniform = true;
    condition.values.assign(static_cast<std::size_t>(condition.columns), kNone);
    KOVSrvFieldServices::GetUniformFieldValue(field, condition.values.data(), condition.columns);
    bool const missing = std::any_of(condition.values.begin(), condition.values.end(),
                                     [](double value) { return value != value; });
    if (missing) Fail(condition, "has fewer values than it says");
}

void ReadTable(ConditionContent& condition, KOVSimPosition const& field) {
    condition.field.field = field;
    condition.field.values =
        field.GetPosition(schema::FieldFTable_distribution()).GetDistribution();
    if (condition.field.values.IsNull()) Fail(condition, "has no values");
    KOVSimDistribution const distribution(condition.field.values);
    DrawerDescriptions drawers;
    distribution.QueryDrawers(drawers);
    bool const right =
        distribution.NumDimensions() == 2 && distribution.Range().Key() == KOVSimTypeKeyDouble &&
        drawers.Size() == 1 &&
        distribution.Grid().Collections().ConstGet(0) == condition.region.CollectionID();
    if (!right) Fail(condition, "has values that are no table");
    KOVSimPersistentDrawerDesc const& drawer = drawers.ConstGet(0);
    condition.field.drawer = drawer.drawerID;
    if (drawer.compartment.CSet(1).Size() != condition.columns ||
        !(condition.region - drawer.compartment.CSet(0)).IsEmpty()) {
        Fail(condition, "has members without a value");
    }
}

ConditionContent Read(KOVSimPosition const& entry, NamedCondition const& name,
                      KOVObjMesh const& mesh) {
    ConditionContent condition;
    condition.kind = name.kind;
    condition.number = name.number;
    KOVSimPosition const owner = entry.GetPosition(schema::FieldEntry_owner());
    KOVSimCollectionID const members =
        (name.kind->ofElements ? mesh.GetElementCollection() : mesh.GetNodeCollection())
            .GetCollection();
    if (owner.IsNull() || !KOVSimCSetID::CanBeConverted(owner.ID()) ||
        KOVSimCSet(owner).CollectionID() != members) {
        Fail(condition, std::string("is given to no set of ") +
                            (name.kind->ofElements ? "elements" : "nodes"));
    }
    condition.region = KOVSimCSet(owner);
    condition.set = KeyOf(owner, name.kind->ofElements);
    entry.GetDataRecord().GetInt(kConditionValues, condition.columns);
    if (condition.columns < 1 || condition.columns > kMostConditionValues) {
        Fail(condition, "has " + std::to_string(condition.columns) + " values");
    }
    KOVSimPosition const field = entry.GetPosition(schema::FieldEntry_field());
    if (field.IsNull()) Fail(condition, "has no field");
    field.IsA(schema::Field_Uniform()) ? ReadUniform(condition, field)
                                       : ReadTable(condition, field);
    return condition;
}

template <class Visit>
void ForEntries(KOVObjDocument const& document, Visit&& visit) {
    long done = 0;
    KOVSimSet const entries = document.GetModel().GetSet(schema::Model_fieldEntries());
    for (auto at = entries.Begin(); at.NotDone(); ++at) {
        if (++done % 1000 == 0) ThrowIfInterrupted();
        KOVSimPosition const entry = *at;
        NamedCondition const name = NameOf(entry);
        if (name.kind != nullptr) visit(entry, name);
    }
}

}  // namespace

std::vector<ConditionContent> InitialConditions(KOVObjDocument const& document) {
    KOVObjMesh const mesh(document.GetMesh());
    std::vector<ConditionContent> conditions;
    ForEntries(document, [&](KOVSimPosition const& entry, NamedCondition const& name) {
        conditions.push_back(Read(entry, name, mesh));
    });
    return conditions;
}

int CountInitialConditions(KOVObjDocument const& document) {
    int count = 0;
    ForEntries(document, [&count](KOVSimPosition const&, NamedCondition const&) { ++count; });
    return count;
}

void ForConditionRows(
    ConditionContent const& condition,
    std::function<void(KOVSimCSet const&, std::vector<double> const&)> const& show) {
    std::vector<double> values;
    ForSetBlocks(condition.region, RowsInBlock(condition.columns), [&](KOVSimCSet const& block) {
        values.resize(static_cast<std::size_t>(block.Size()) *
                      static_cast<std::size_t>(condition.columns));
        ReadRows(condition.field, block, condition.columns, values.data());
        show(block, values);
    });
}

std::vector<std::pair<double, double>> ConditionRanges(ConditionContent const& condition) {
    std::vector<std::pair<double, double>> ranges;
    if (condition.uniform) {
        for (double const value : condition.values) ranges.emplace_back(value, value);
        return ranges;
    }
    if (condition.region.IsEmpty()) return ranges;
    double const most = std::numeric_limits<double>::infinity();
    ranges.assign(static_cast<std::size_t>(condition.columns), {most, -most});
    ForConditionRows(condition, [&](KOVSimCSet const&, std::vector<double> const& values) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            auto& [least, greatest] = ranges[i % ranges.size()];
            least = std::min(least, values[i]);
            greatest = std::max(greatest, values[i]);
        }
    });
    return ranges;
}

}  // namespace kov::tool
