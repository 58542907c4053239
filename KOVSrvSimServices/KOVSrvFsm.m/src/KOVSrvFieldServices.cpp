#include "KOVSrvFieldServices.h"

#include <atomic>
#include <cstring>

#include "KOVObjModel.h"
#include "KOVSimCollection.h"
#include "KOVSimDistribution.h"
#include "KOVSimException.h"
#include "KOVSimGrid.h"
#include "KOVSimRangeType.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "KOVSimTransfer.h"
#include "KOVSrvVariableMap.h"

namespace {

constexpr char const* kUndefined = "UNDEFINED";
constexpr int kAnyGrid = -1;

// Where GetGridTypeFromVariableLabel goes on. Atomic for the sake of its value alone: walks at once
// get each other's grids, and no more harm than that.
std::atomic<int> nextRow{0};

// The first bytes settle it for most rows: a scan costs a tenth of one that compares all texts.
bool HasLabel(KOVSrvVariableMapEntry const& row, KOVString const& label) {
    return row.label && *row.label == *label.TextOrEmpty() && label.Compare(row.label) == 0;
}

bool SameText(KOVString const& a, char const* b) { return std::strcmp(a.TextOrEmpty(), b) == 0; }

bool IsOnGrid(KOVSrvVariableMapEntry const& row, int gridType) {
    return gridType == kAnyGrid || row.gridType == gridType;
}

// The first row that fits, or null.
template <class Fits>
KOVSrvVariableMapEntry const* FirstRow(Fits fits) {
    for (auto const* row = KOVSrvVariableMap::GetEntry(0); row->label; ++row) {
        if (fits(*row)) return row;
    }
    return nullptr;
}

KOVSrvVariableMapEntry const* FirstRowOf(KOVString const& label) {
    return FirstRow([&](auto const& row) { return HasLabel(row, label); });
}

KOVString LabelOf(KOVString const& fieldName, zdm_ComponentSymbolsEnm component, int gridType) {
    auto const* const row = FirstRow([&](auto const& each) {
        return each.component == component && IsOnGrid(each, gridType) &&
               SameText(fieldName, each.fieldName);
    });
    return row ? row->label : KOVString();
}

// One row of columns for each element.
KOVSimDistributionID CreateValues(KOVObjDocument const& document, KOVSimCSet const& elements,
                                  KOVSimCSet const& columns, double const* data) {
    KOVSimGrid::CollectionArray grid(2, 0);
    grid.Get(0) = elements.CollectionID();
    grid.Get(1) = columns.CollectionID();
    KOVSimDistributionID const distribution =
        document.CreateDistribution(KOVSimGrid(grid), KOVSimRangeType(KOVSimTypeKeyDouble), -1);
    KOVSimTransfer write{KOVSimDistribution(distribution)};
    write.SetWrite().SetMakeNewDrawer().SetBufferPadding(false);
    write.SetDim(0, elements).SetDim(1, columns).CheckView();
    auto const bytes = static_cast<unsigned long>(write.RequiredBufferSize(0));
    write.SetBuffer(0, data, bytes).ExecWrite().RelinquishBuffers();
    return distribution;
}

}  // namespace

int KOVSrvFieldServices::GetGridTypeFromVariableLabel(KOVString const& label, bool resume) {
    int at = resume ? nextRow.load(std::memory_order_relaxed) : 0;
    // Behind the closing row there is nothing to go on from.
    if (at > 0 && !KOVSrvVariableMap::GetEntry(at - 1)->label) return -1;
    for (auto const* row = KOVSrvVariableMap::GetEntry(at);; ++row) {
        ++at;
        if (row->label && !HasLabel(*row, label)) continue;
        nextRow.store(at, std::memory_order_relaxed);
        return row->label ? row->gridType : -1;
    }
}

zdm_ComponentSymbolsEnm KOVSrvFieldServices::GetComponent(KOVString const& label, bool second) {
    auto const* const row = FirstRowOf(label);
    if (!row) return zdm_Component_NONE;
    return second && HasLabel(row[1], label) ? row[1].component : row->component;
}

KOVString KOVSrvFieldServices::GetFieldType(KOVString const& label) {
    if (label.IsEmpty() || label == "NULL") return kUndefined;
    auto const* const row = FirstRowOf(label);
    return row ? row->fieldName : kUndefined;
}

KOVString KOVSrvFieldServices::GetVariableLabel(KOVString const& fieldName, int gridType) {
    if (SameText(fieldName, "") || SameText(fieldName, "NULL")) return kUndefined;
    return LabelOf(fieldName, zdm_Component_NONE, gridType);
}

KOVString KOVSrvFieldServices::GetComponentLabel(KOVString const& fieldName,
                                                 zdm_ComponentSymbolsEnm component, int gridType) {
    return LabelOf(fieldName, component, gridType);
}

KOVSrvFieldServices::Strings KOVSrvFieldServices::GetComponents(KOVString const& label) {
    Strings labels;
    auto const* const first = FirstRowOf(label);
    if (!first) return labels;
    for (auto const* row = KOVSrvVariableMap::GetEntry(0); row->label; ++row) {
        if (row->gridType != first->gridType || row->component == zdm_Component_NONE ||
            std::strcmp(row->fieldName, first->fieldName) != 0)
            continue;
        labels.SetSize(labels.Size() + 1);
        labels.Get(labels.Size() - 1) = row->label;
    }
    return labels;
}

KOVSimPosition KOVSrvFieldServices::GetFieldPosition(KOVSimSet const& entries,
                                                     KOVSimPosition const& owner, int member,
                                                     KOVString const& name) {
    for (KOVSimSetiterator at = entries.Begin(); at.NotDone(); ++at) {
        KOVSimPosition const entry = *at;
        if (!SameText(name, entry.DataRecord().ReturnString(0).TextOrEmpty())) continue;
        if (entry.GetPosition(schema::FieldEntry_owner()).ID().Equal(owner.ID()))
            return entry.GetPosition(schema::FieldEntry_field());
    }
    return owner.GetPosition(member);
}

bool KOVSrvFieldServices::GetUniformFieldValue(KOVSimPosition const& field, double* values,
                                               int count) {
    if (field.ID().IsNull()) return false;
    if (field.IsA(schema::Field_UniformScalar())) {
        field.DataRecord().GetDouble(0, values[0]);
        return true;
    }
    if (field.IsA(schema::Field_UniformArray()) || field.IsA(schema::Field_UniformValues())) {
        field.DataRecord().GetDouble(0, values, count);
        return true;
    }
    return false;
}

KOVSimPosition KOVSrvFieldServices::CreateFieldFTable(KOVObjDocument const& document,
                                                      Strings const& names, double* tableValues,
                                                      int valueCount, KOVSimCSet const& elements,
                                                      double* data, int) {
    int const n = names.Size();
    if (n == 0) KOVSimException::ThrowText("cannot create a table field: no column has a name");
    KOVSimTransaction transaction(document.ContextID());
    KOVSimPosition const field = document.CreateDataRecord(schema::Field_FTable()).Pos();

    KOVBasVector<KOVString> firstName;
    KOVBasVector<KOVString> otherNames;
    firstName.PushBack(names.ConstGet(0));
    // Without values, which tell that the first name has a column too, the others have to name all.
    for (int i = valueCount == 0 ? 0 : 1; i < n; ++i) otherNames.PushBack(names.ConstGet(i));
    field.SetPosition(schema::FieldFTable_table(),
                      document.GetModel().CreateFTable(schema::FTable(), valueCount / n, firstName,
                                                       otherNames, tableValues, valueCount));

    KOVSimCollection columns(document.Focus()
                                 .GetPosition(schema::Focus_sharedCollections())
                                 .GetPosition(schema::SharedCollections_fieldColumns())
                                 .GetCollection());
    KOVSimCSet const columnSet(columns.CreateCSetStrided(0, n, 1, 1));
    field.SetPosition(schema::FieldFTable_distribution(),
                      CreateValues(document, elements, columnSet, data));
    transaction.Commit();
    return field;
}
