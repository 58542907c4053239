#include "KOVSrvFsmMaterialTable.h"

#include <climits>
#include <cstddef>
#include <vector>

#include "KOVAssert.h"
#include "KOVSimCollection.h"
#include "KOVSimContext.h"
#include "KOVSimDistribution.h"
#include "KOVSimException.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "TableRows.h"

using kov::fsm::Doubles;
using kov::fsm::NewDoubles;

namespace {

using Drawers =
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;
using Chunks = KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>;

Drawers DrawersOf(KOVSimPosition const& distribution) {
    Drawers drawers;
    KOVSimDistribution(distribution.GetDistribution()).QueryDrawers(drawers);
    return drawers;
}

/// The drawer of one part of a table.
KOVSimPersistentDrawerDesc DrawerOf(KOVSimPosition const& distribution) {
    Drawers const drawers = DrawersOf(distribution);
    if (drawers.Size() == 0) {
        KOVSimException::ThrowText(
            distribution.IsNull() ? "KOVSrvFsmMaterialTable: the table has no such columns"
                                  : "KOVSrvFsmMaterialTable: a part of the table has no drawer");
    }
    return drawers.ConstGet(0);
}

std::size_t NumberOfValues(int rowCount, int width) {
    return static_cast<std::size_t>(rowCount) * static_cast<std::size_t>(width);
}

/// The columns [column, column + width) of the caller's rows, row-major.
Doubles Block(double const** rows, int rowCount, int column, int width) {
    Doubles block = NewDoubles(NumberOfValues(rowCount, width));
    double* to = block.get();
    for (int row = 0; row < rowCount; ++row) {
        double const* const from = rows[row] + column;
        for (int k = 0; k < width; ++k) *to++ = from[k];
    }
    return block;
}

/// One table under making: all its distributions stand over the same rows.
struct Saving {
    KOVSimContext context;
    KOVSimCollectionID rowCollection;
    KOVSimCSet rowSet;
    double const** rows;
    bool extendable;

    KOVSimDistributionID Create(int type, KOVSimCollectionID const* columns) const {
        KOVSimGrid::CollectionArray collections(columns ? 2 : 1, 0);
        collections.Get(0) = rowCollection;
        if (columns) collections.Get(1) = *columns;
        return context.CreateDistribution(KOVSimGrid(collections),
                                          KOVSimRangeType(KOVSimTypeKeyDouble),
                                          context.Schema().TypeID(type));
    }
    /// Makes the one drawer of a distribution of the columns [column, column + width) of the rows.
    /// `columnSet`: null for a distribution over the rows alone.
    void Write(KOVSimDistributionID const& distribution, KOVSimCSet const* columnSet, int column,
               int width) const {
        KOVSimTransfer write{KOVSimDistribution(distribution)};
        write.SetWrite().SetBufferPadding(false);
        if (extendable) {
            Chunks chunks(columnSet ? 2 : 1, 0);
            chunks.Get(0) = rowSet.Size();
            if (columnSet) chunks.Get(1) = width;
            write.SetMakeNewDrawerChunked(chunks).SetExtendableDim(0);
        } else {
            write.SetMakeNewDrawer();
        }
        write.SetDim(0, rowSet);
        if (columnSet) write.SetDim(1, *columnSet);
        write.CheckView();
        Doubles const block = Block(rows, rowSet.Size(), column, width);
        write.SetBuffer(0, block.get(), NumberOfValues(rowSet.Size(), width) * sizeof(double));
        write.ExecWrite().RelinquishBuffers();
    }
};

/// Adds the columns [column, column + width) of new rows to a distribution's drawer.
void Extend(KOVSimPosition const& distribution, KOVSimCSetID const& newRows, double const** rows,
            int rowCount, int column, int width) {
    KOVSimDrawerID const drawer = DrawerOf(distribution).drawerID;
    Doubles const block = Block(rows, rowCount, column, width);
    KOVSimTransfer write{KOVSimDistribution(distribution.GetDistribution())};
    write.SetWrite().SetBufferPadding(false).SetDrawer(drawer).SetDimExtension(newRows);
    write.CheckView();
    write.SetBuffer(0, block.get(), NumberOfValues(rowCount, width) * sizeof(double));
    write.ExecWrite().RelinquishBuffers();
}

/// Reads `rowCount` values for each of `width` columns over the domain of a drawer.
Doubles Read(KOVSimPosition const& distribution, KOVSimOCompartment const& domain, int rowCount,
             int width) {
    KOVSimTransfer read{KOVSimDistribution(distribution.GetDistribution())};
    read.SetRead().SetBufferPadding(false).SetDim(0, domain.CSet(0));
    if (domain.Size() == 2) read.SetDim(1, domain.CSet(1));
    read.CheckView();
    Doubles block = NewDoubles(NumberOfValues(rowCount, width));
    read.SetBuffer(0, block.get(), NumberOfValues(rowCount, width) * sizeof(double));
    read.ExecRead().RelinquishBuffers();
    return block;
}

}  // namespace

KOVSrvFsmMaterialTable::KOVSrvFsmMaterialTable(int const* dependentTypes,
                                               int const* dependentMembers,
                                               int const* dependentLengths, bool hasTemperature,
                                               int temperatureType, int temperatureMember,
                                               int fieldVariableType, int fieldVariableMember)
    : m_dependentTypes(dependentTypes),
      m_dependentMembers(dependentMembers),
      m_dependentLengths(dependentLengths),
      m_temperatureType(temperatureType),
      m_temperatureMember(temperatureMember),
      m_fieldVariableType(fieldVariableType),
      m_fieldVariableMember(fieldVariableMember),
      m_hasTemperature(hasTemperature) {
    while (dependentTypes[m_numberOfDependent] != -1) ++m_numberOfDependent;
}

KOVSrvFsmMaterialTable::~KOVSrvFsmMaterialTable() {
    m_dependentTypes = nullptr;
    m_dependentMembers = nullptr;
    m_dependentLengths = nullptr;
}

bool KOVSrvFsmMaterialTable::IsConfigured() const {
    return m_dependentTypes && m_dependentMembers && m_dependentLengths;
}

KOVSimPosition KOVSrvFsmMaterialTable::Dependent(KOVSimPosition const& behaviour,
                                                 int dependent) const {
    // A description without dependents need not have a first entry in all three arrays.
    if (dependent >= m_numberOfDependent) return KOVSimPosition();
    return behaviour.Follow(m_dependentTypes[dependent], m_dependentMembers[dependent]);
}

KOVSimCSet KOVSrvFsmMaterialTable::ExtendCollection(KOVSimCollectionID collection, int size) {
    KOVSimCollection extended(collection);
    if (extended.Space() < size) extended.ExtendSpace(size);
    return extended.CreateCSetStrided(0, size, 1, 1);
}

bool KOVSrvFsmMaterialTable::IsTemperatureDependent(KOVSimPosition const& behaviour) const {
    if (!m_hasTemperature) return false;
    return !behaviour.Follow(m_temperatureType, m_temperatureMember).IsNull();
}

int KOVSrvFsmMaterialTable::NumberFieldVariables(KOVSimPosition const& behaviour) const {
    if (m_fieldVariableType == 0) return 0;
    KOVSimPosition const fields = behaviour.Follow(m_fieldVariableType, m_fieldVariableMember);
    if (fields.IsNull()) return 0;
    KOVSimOCompartment const domain = DrawerOf(fields).compartment;
    KOV_UTT_ASSERT(domain.Size() == 2);
    return domain.CSet(1).Size();
}

KOVSimCSet KOVSrvFsmMaterialTable::Save(KOVSimTransaction&, KOVSimPosition& behaviour,
                                        KOVSimCollectionID const& rowCollection,
                                        KOVSimCollectionID const& dependentColumns,
                                        KOVSimCollectionID const& fieldVariableColumns,
                                        double const** rows, int rowCount, bool withTemperature,
                                        int fieldVariableCount, bool extendable) {
    if (!IsConfigured() || rowCount == 0) return KOVSimCSet();
    KOVSimCSet rowSet = ExtendCollection(rowCollection, rowCount);
    Saving const table{behaviour.Context(), rowCollection, rowSet, rows, extendable};

    int column = 0;
    std::vector<KOVSimDistributionID> dependents(static_cast<std::size_t>(m_numberOfDependent));
    for (int d = 0; d < m_numberOfDependent; ++d) {
        int const length = m_dependentLengths[d];
        KOVSimDistributionID& distribution = dependents[static_cast<std::size_t>(d)];
        distribution = table.Create(schema::MaterialTable_dependentData(), &dependentColumns);
        KOVSimCSet const columnSet = ExtendCollection(dependentColumns, length);
        table.Write(distribution, &columnSet, column, length);
        column += length;
    }
    for (int d = 0; d < m_numberOfDependent; ++d) {
        behaviour.Associate(m_dependentTypes[d], m_dependentMembers[d],
                            dependents[static_cast<std::size_t>(d)]);
    }
    if (m_hasTemperature && withTemperature) {
        KOVSimDistributionID const distribution =
            table.Create(schema::MaterialTable_temperatureData(), nullptr);
        table.Write(distribution, nullptr, column, 1);
        ++column;
        behaviour.Associate(m_temperatureType, m_temperatureMember, distribution);
    }
    if (fieldVariableCount > 0) {
        KOVSimCSet const fieldSet = ExtendCollection(fieldVariableColumns, fieldVariableCount);
        KOVSimDistributionID const distribution =
            table.Create(schema::MaterialTable_fieldVariableData(), &fieldVariableColumns);
        table.Write(distribution, &fieldSet, column, fieldVariableCount);
        behaviour.Associate(m_fieldVariableType, m_fieldVariableMember, distribution);
    }
    return rowSet;
}

KOVSimCSet KOVSrvFsmMaterialTable::Append(KOVSimTransaction&, KOVSimPosition& behaviour,
                                          KOVSimCollectionID rowCollection, KOVSimCollectionID,
                                          KOVSimCollectionID, double const** rows, int rowCount,
                                          bool withTemperature, int fieldVariableCount) {
    if (!IsConfigured()) return KOVSimCSet();
    Drawers const ddesc = DrawersOf(Dependent(behaviour, 0));
    KOV_UTT_ASSERT(ddesc.Size() == 1);
    int const oldSize = ddesc.ConstGet(0).compartment.CSet(0).Size();
    if (rowCount > INT_MAX - oldSize) {
        KOVSimException::ThrowText(
            "KOVSrvFsmMaterialTable::Append: a table holds at most 2147483647 rows");
    }
    ExtendCollection(rowCollection, oldSize + rowCount);
    KOVSimCSetID const newRows =
        KOVSimCollection(rowCollection).CreateCSetStrided(oldSize, rowCount, 1, 1);

    int column = 0;
    for (int d = 0; d < m_numberOfDependent; ++d) {
        int const length = m_dependentLengths[d];
        Extend(Dependent(behaviour, d), newRows, rows, rowCount, column, length);
        column += length;
    }
    if (m_hasTemperature && withTemperature) {
        Extend(behaviour.Follow(m_temperatureType, m_temperatureMember), newRows, rows, rowCount,
               column, 1);
        ++column;
    }
    if (fieldVariableCount > 0) {
        Extend(behaviour.Follow(m_fieldVariableType, m_fieldVariableMember), newRows, rows,
               rowCount, column, fieldVariableCount);
    }
    return newRows;
}

void KOVSrvFsmMaterialTable::FillPointer(KOVSimPosition const& behaviour, double**& rows,
                                         int& rowCount, int& columnCount, bool& hasTemperature,
                                         int& fieldVariableCount) const {
    if (!IsConfigured()) {
        rowCount = columnCount = fieldVariableCount = 0;
        hasTemperature = false;
        return;
    }
    hasTemperature = IsTemperatureDependent(behaviour);
    KOVSimPosition const d1 = Dependent(behaviour, 0);
    KOV_UTT_ASSERT(d1.IsNull() == false);
    rowCount = DrawerOf(d1).compartment.CSet(0).Size();
    fieldVariableCount = NumberFieldVariables(behaviour);
    columnCount = fieldVariableCount + (hasTemperature ? 1 : 0);
    for (int d = 0; d < m_numberOfDependent; ++d) {
        if (!Dependent(behaviour, d).IsNull()) columnCount += m_dependentLengths[d];
    }
    kov::fsm::TableRows filled(rowCount, columnCount);

    int column = 0;
    for (int d = 0; d < m_numberOfDependent; ++d) {
        KOVSimPosition const dependent = Dependent(behaviour, d);
        if (dependent.IsNull()) continue;
        KOVSimOCompartment const domain = DrawerOf(dependent).compartment;
        int const ndomain = domain.Size();
        KOV_UTT_ASSERT(ndomain == 2 || ndomain == 1);
        int const length = m_dependentLengths[d];
        filled.SetColumns(column, length, Read(dependent, domain, rowCount, length).get());
        column += length;
    }
    if (hasTemperature) {
        KOVSimPosition const temperature = behaviour.Follow(m_temperatureType, m_temperatureMember);
        KOVSimOCompartment const domain = DrawerOf(temperature).compartment;
        KOV_UTT_ASSERT(domain.Size() == 1);
        filled.SetColumns(column, 1, Read(temperature, domain, rowCount, 1).get());
        ++column;
    }
    if (fieldVariableCount > 0) {
        KOVSimPosition const fields = behaviour.Follow(m_fieldVariableType, m_fieldVariableMember);
        KOVSimOCompartment const domain = DrawerOf(fields).compartment;
        KOV_UTT_ASSERT(domain.Size() == 2);
        filled.SetColumns(column, fieldVariableCount,
                          Read(fields, domain, rowCount, fieldVariableCount).get());
    }
    rows = filled.Release();
}
