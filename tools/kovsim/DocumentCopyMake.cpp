// DocumentCopy: the counterparts of the source's objects, by kind.

#include <algorithm>

#include "DocumentCopy.h"
#include "Failure.h"
#include "Interrupt.h"
#include "KOVSimContext.h"
#include "KOVSimCtation.h"
#include "KOVSimFTable.h"
#include "KOVSimSchema.h"
#include "KOVSrvCopyDistribution.h"

namespace kov::tool {
namespace {

using CSetIDs = KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>;

// Drawers up to so many, each of at most one block, are copied whole.
constexpr int kMostWholeDrawers = 32;

bool IsPlainMember(KOVSimPosition const& member, int type) {
    return member.TypePosition() == type && member.Members().Size() == 0 &&
           member.GetDataRecord().Fields().Size() == 0 && member.Name(-1).GetLengthInByte() == 0;
}

// Whether two drawers have an entry in common.
bool Overlap(KOVSimPersistentDrawerDesc const& a, KOVSimPersistentDrawerDesc const& b) {
    for (int i = 0; i < a.compartment.Size(); ++i) {
        if (a.compartment.CSet(i).Intersection(b.compartment.CSet(i)).IsEmpty()) return false;
    }
    return true;
}

bool AnyOverlap(DrawerDescriptions const& drawers) {
    for (int a = 0; a < drawers.Size(); ++a) {
        for (int b = 0; b < a; ++b) {
            if (Overlap(drawers.ConstGet(a), drawers.ConstGet(b))) return true;
        }
    }
    return false;
}

}  // namespace

KOVSimPosition DocumentCopy::Make(KOVSimPosition const& source) {
    switch (source.ID().Category()) {
        case KOVSimCategoryRecord: {
            KOVSimPosition const target = m_to.CreateDataRecord(source.TypePosition()).Pos();
            Pair(source, target);
            return target;
        }
        case KOVSimCategoryCollection:
            return MakeCollection(source);
        case KOVSimCategoryCSet:
            return MakeSet(source);
        case KOVSimCategoryDSet:
            return MakeDataset(source);
        case KOVSimCategoryDistribution:
            return MakeDistribution(source);
        case KOVSimCategoryDrawer: {
            // Its distribution brings all of its drawers along.
            KOVSimDynamicID id = source.ID();
            id.category = KOVSimCategoryDistribution;
            id.data.minor = id.data.parent;
            id.data.parent = 0;
            Translate(id);
            return Known(source);
        }
        case KOVSimCategoryFTable:
            return MakeTable(source);
        case KOVSimCategoryMember:
            return MakeMember(source);
        default:
            return {};
    }
}

bool DocumentCopy::SameSymbols(KOVSimPosition const& source, KOVSimPosition const& target) const {
    KOVSimCollectionID const from = source.GetCollection();
    KOVSimCollectionID const to = target.GetCollection();
    int const both = std::min(KOVSimCollection(from).Space(), KOVSimCollection(to).Space());
    for (int i = 0; i < both; ++i) {
        KOVSimPosition const a = m_from.GetRecord(from, i);
        KOVSimPosition const b = m_to.GetRecord(to, i);
        if (a.GetSymbolPosition() != b.GetSymbolPosition()) return false;
        if (a.GetSymbolPosition() >= 0 && !(a.GetSymbolName() == b.GetSymbolName())) return false;
    }
    return true;
}

KOVSimPosition DocumentCopy::MakeCollection(KOVSimPosition const& source) {
    KOVSimPosition const target = m_to.Focus().CreateTypedCollection(0, source.TypePosition());
    Pair(source, target);
    FillCollection(source, target);
    return target;
}

// Makes the members that are still absent, symbols at once, as they can be appended only; records
// are queued.
void DocumentCopy::FillCollection(KOVSimPosition const& source, KOVSimPosition const& target) {
    KOVSimCollectionID const from = source.GetCollection();
    KOVSimCollectionID const to = target.GetCollection();
    Renumbering const& renumbering = RenumberingOf(from);
    KOVSimCollection collection(to);
    int const space = KOVSimCollection(from).Space();
    int const wanted = renumbering.IsIdentity() ? space : renumbering.Kept().Size();
    if (wanted > kMostRecords || source.IsA(schema::MeshNodeCollection()) ||
        source.IsA(schema::MeshElementCollection())) {
        if (collection.Space() < wanted) collection.ExtendSpace(wanted);
        return;
    }
    int const present = collection.Space();
    std::vector<std::pair<int, KOVSimDynamicID>> records;
    for (int i = 0, at = -1; i < space; ++i) {
        if (renumbering.NewIndex(i) < 0) continue;
        ++at;
        KOVSimPosition const member = m_from.GetRecord(from, i);
        if (member.GetSymbolPosition() < 0) {
            if (!IsPlainMember(member, source.TypePosition()))
                records.emplace_back(at, member.ID());
            continue;
        }
        if (at >= present) {
            if (collection.Space() < at) collection.ExtendSpace(at);
            target.AddSymbol(member.GetSymbolName(), member.GetSymbolPosition(),
                             member.TypePosition());
        }
        Pair(member, m_to.GetRecord(to, at));
    }
    if (collection.Space() < wanted) collection.ExtendSpace(wanted);
    for (auto const& [at, id] : records) {
        int const type = KOVSimPosition(id).TypePosition();
        KOVSimPosition const member = type == source.TypePosition() || type < 0
                                          ? KOVSimPosition(m_to.GetRecord(to, at))
                                          : target.CreateMember(at, type);
        Pair(id, member);
    }
}

KOVSimPosition DocumentCopy::MakeMember(KOVSimPosition const& source) {
    KOVSimDynamicID const& id = source.ID();
    KOVSimPosition const collection =
        Translate(KOVSimCollectionID(id.context, id.data.parent, id.type, 0));
    // The collection may have brought its members along.
    KOVSimPosition const known = Known(source);
    if (collection.IsNull() || !known.IsNull()) return known;
    KOVSimCollectionID const from(id.context, id.data.parent, id.type, 0);
    int const index = RenumberingOf(from).NewIndex(id.data.minor);
    if (index < 0) return {};
    KOVSimPosition const target = m_to.GetRecord(collection.GetCollection(), index);
    Pair(source, target);
    return target;
}

KOVSimPosition DocumentCopy::MakeSet(KOVSimPosition const& source) {
    KOVSimCSet const set = source.CSet();
    KOVSimPosition const collection = Translate(set.CollectionID());
    if (collection.IsNull()) return {};
    KOVSimCollection const target(collection.GetCollection());
    KOVSimPosition made;
    if (source.ID().data.minor == 0) {
        made = target.EmptyCSetID();
    } else {
        KOVSimCSet mapped = RenumberingOf(set.CollectionID()).Map(set, target);
        made = mapped.RegisterWithCollection();
    }
    Pair(source, made);
    return made;
}

KOVSimPosition DocumentCopy::MakeDataset(KOVSimPosition const& source) {
    KOVSimDSet const dset = source.DSet();
    int const type = source.TypePosition();
    KOVSimDistributionID const relation = dset.GetRelationalDistributionID();
    if (!relation.IsNull()) {
        KOVSimDistributionID const to = Translate(relation).GetDistribution();
        if (to.IsNull()) return {};
        KOVSimDSetID const made = KOVSimContext(m_to.ContextID()).CreateDSet(to, type);
        m_relations.emplace_back(made, to);
        Pair(source, made);
        return made;
    }
    std::vector<KOVSimCompartment> kept;
    for (KOVSimCompartment const& compartment : dset.GetCtation().Compartments()) {
        CSetIDs sets(compartment.Size());
        bool lost = false;
        for (int i = 0; i < compartment.Size() && !lost; ++i) {
            KOVSimCSet const set = compartment.CSet(i);
            lost = FateOfSet(set) == Fate::Lost;
            if (lost) continue;
            if (!set.ID().IsNull()) {
                sets.Get(i) = Translate(set.ID()).GetCSet();
            } else {
                KOVSimCollection const target(Translate(set.CollectionID()).GetCollection());
                sets.Get(i) =
                    RenumberingOf(set.CollectionID()).Map(set, target).RegisterWithCollection();
            }
            lost = sets.Get(i).IsNull();
        }
        if (!lost) kept.emplace_back(sets);
    }
    KOVSimCtation::Array compartments(static_cast<int>(kept.size()));
    for (std::size_t i = 0; i < kept.size(); ++i) compartments.Get(static_cast<int>(i)) = kept[i];
    KOVSimPosition const made = m_to.Focus().CreateTypedDSet(KOVSimCtation(compartments), type);
    Pair(source, made);
    return made;
}

KOVSimPosition DocumentCopy::MakeTable(KOVSimPosition const& source) {
    KOVSimFTable const table(source.GetFTable());
    KOVBasVector<KOVString> labels;
    KOVBasVector<KOVString> columns;
    for (int i = 0; i < table.LabelCount(); ++i) labels.PushBack(table.Label(i));
    for (int i = 0; i < table.ColumnCount(); ++i) columns.PushBack(table.ColumnLabel(i));
    std::int64_t const count = std::int64_t{table.RowCount()} * table.ColumnCount();
    std::vector<double> values(static_cast<std::size_t>(count));
    table.GetData(values.data(), static_cast<int>(count));
    KOVSimPosition const made =
        m_to.Focus().CreateFTable(source.TypePosition(), table.RowCount(), labels, columns,
                                  values.data(), static_cast<int>(count));
    Pair(source, made);
    return made;
}

KOVSimPosition DocumentCopy::MakeDistribution(KOVSimPosition const& source) {
    KOVSimDistribution const from(source.GetDistribution());
    KOVSimGrid::CollectionArray grid(from.NumDimensions());
    for (int i = 0; i < from.NumDimensions(); ++i) {
        grid.Get(i) = Translate(from.Grid().Collections().ConstGet(i)).GetCollection();
        if (grid.Get(i).IsNull()) return {};
    }
    KOVSimRangeType range(from.Range().Key());
    KOVSimCollectionID const entries = from.Range().Collection();
    if (!entries.IsNull()) {
        KOVSimCollectionID const to = Translate(entries).GetCollection();
        if (to.IsNull()) return {};
        range = KOVSimRangeType(from.Range().Key(), to);
    }
    // Collections may lead back here by their links.
    KOVSimDistributionID const made =
        m_to.Focus().CreateTypedDistribution(KOVSimGrid(grid), source.TypePosition(), range);
    Pair(source, made);
    CopyDrawers(from, KOVSimDistribution(made));
    return made;
}

// Drawers of which all goes into the copy, if they are small and of a kind that is copied as it is.
bool DocumentCopy::CopyWholeDrawers(KOVSimDistribution const& from, KOVSimDistribution const& to,
                                    DrawerDescriptions const& drawers) {
    if (!from.Range().Collection().IsNull() &&
        !RenumberingOf(from.Range().Collection()).IsIdentity()) {
        return false;
    }
    // Of overlapping drawers the copier sees what the last of them has.
    if (drawers.Size() > kMostWholeDrawers || AnyOverlap(drawers)) return false;
    int const dimensions = from.NumDimensions();
    for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
        if (drawer.IsChunked() != (drawer.extendableDim >= 0)) return false;
        if (drawer.DataSizeItems(0) > m_block) return false;
        for (int i = 0; i < dimensions; ++i) {
            KOVSimCSet const& set = drawer.compartment.CSet(i);
            Renumbering const& renumbering = RenumberingOf(set.CollectionID());
            if (set.IsEmpty() || renumbering.Part(set).Size() != set.Size()) return false;
        }
    }
    // What is paired are the members that the drawers have, one set for each dimension.
    CSetIDs read(dimensions);
    CSetIDs written(dimensions);
    for (int i = 0; i < dimensions; ++i) {
        KOVSimCollectionID const collection = from.Grid().Collections().ConstGet(i);
        KOVSimCSet all(collection);
        for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
            all = all.Union(drawer.compartment.CSet(i));
        }
        KOVSimCSet mapped = RenumberingOf(collection)
                                .Map(all, KOVSimCollection(to.Grid().Collections().ConstGet(i)));
        read.Get(i) = all.RegisterWithTempCollection();
        written.Get(i) = mapped.RegisterWithTempCollection();
    }
    KOVSrvCopyDistribution(to.ID(), from.ID(), written, read, KOVSrvDistributionTransform());
    return true;
}

void DocumentCopy::CopyDrawers(KOVSimDistribution const& from, KOVSimDistribution const& to) {
    ThrowIfInterrupted();
    DrawerDescriptions drawers;
    from.QueryDrawers(drawers);
    if (drawers.Size() == 0) return;
    if (CopyWholeDrawers(from, to, drawers)) {
        DrawerDescriptions made;
        to.QueryDrawers(made);
        for (int i = 0; i < std::min(drawers.Size(), made.Size()); ++i) {
            Pair(drawers.ConstGet(i).drawerID, made.ConstGet(i).drawerID);
        }
    } else {
        std::vector<Renumbering const*> dimensions;
        for (KOVSimCollectionID const& collection : from.Grid().Collections()) {
            dimensions.push_back(&RenumberingOf(collection));
        }
        static Renumbering const identity;
        KOVSimCollectionID const entries = from.Range().Collection();
        DistributionCopy copy(from, to, dimensions,
                              entries.IsNull() ? identity : RenumberingOf(entries), m_block);
        bool any = false;
        for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
            KOVSimDrawerID const made = copy.Copy(drawer);
            if (made.IsNull()) continue;
            Pair(drawer.drawerID, made);
            any = true;
        }
        // A table field is read through its first drawer, also where its defaults are all it has.
        if (!any && StandsBesideDefaults(from)) copy.MakeEmpty(drawers.ConstGet(0));
    }
    if (m_progress) {
        for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
            int const entry = from.Range().Key() == KOVSimTypeKeyDouble ? 8 : 4;
            m_bytes += static_cast<double>(drawer.DataSizeItems(0)) * entry;
        }
        m_progress(m_bytes);
    }
}

}  // namespace kov::tool
