// DocumentCopy: what becomes of the source's objects, before anything is made.

#include "DocumentCopy.h"
#include "Interrupt.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimDrawer.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "Names.h"
#include "TableField.h"

namespace kov::tool {
namespace {

// Records that stand for a part of the mesh, and mean nothing without it.
bool Falls(KOVSimPosition const& source) {
    for (int const type :
         {schema::Region(), schema::Instance(), schema::Labels(), schema::SectionAssignment(),
          schema::ElementClass(), schema::Field(), schema::SerialField(), schema::OutputRequest(),
          schema::FieldEntry(), schema::Constraint(), schema::Orientation()}) {
        if (source.IsA(type)) return true;
    }
    return false;
}

}  // namespace

void DocumentCopy::Keep(KOVSimCollectionID const& collection, KOVSimCSet const& kept) {
    m_renumberings[collection.Minor()] = std::make_unique<Renumbering>(kept);
}

// Asked of every object, and found out once for each type.
DocumentCopy::Kind DocumentCopy::KindOf(KOVSimPosition const& source) {
    int const type = source.TypePosition();
    if (type < 0) return Kind::Plain;
    auto const found = m_kinds.find(type);
    if (found != m_kinds.end()) return found->second;
    Kind kind = Falls(source) ? Kind::Falls : Kind::Plain;
    if (source.IsA(schema::Mapper()) || source.IsA(schema::MeshDofCollection())) {
        kind = Kind::LeftOut;
    }
    return m_kinds[type] = kind;
}

Renumbering const& DocumentCopy::RenumberingOf(KOVSimCollectionID const& id) {
    static Renumbering const identity;
    auto const found = m_renumberings.find(id.Minor());
    if (found != m_renumberings.end()) return *found->second;
    if (id.IsNull() || !m_numbering.insert(id.Minor()).second) return identity;
    ThrowIfInterrupted();
    KOVSimCollection const collection(id);
    int const space = collection.Space();
    std::vector<int> kept;
    for (int i = 0; i < space && space <= kMostRecords; ++i) {
        if (FateOf(m_from.GetRecord(id, i)) != Fate::Lost) kept.push_back(i);
    }
    int const count = static_cast<int>(kept.size());
    auto renumbering = std::make_unique<Renumbering>();
    if (space <= kMostRecords && count < space) {
        *renumbering = Renumbering(collection.CreateVolatileCSet(kept.data(), count, false));
    }
    m_numbering.erase(id.Minor());
    return *(m_renumberings[id.Minor()] = std::move(renumbering));
}

DocumentCopy::Fate DocumentCopy::FateOfSet(KOVSimCSet const& set) {
    KOVSimCollectionID const collection = set.CollectionID();
    if (collection.IsNull()) return Fate::Untouched;
    if (KindOf(collection) == Kind::LeftOut) return Fate::Lost;
    Renumbering const& renumbering = RenumberingOf(collection);
    if (renumbering.IsIdentity() || set.IsEmpty()) return Fate::Untouched;
    return renumbering.Part(set).IsEmpty() ? Fate::Lost : Fate::Kept;
}

DocumentCopy::Fate DocumentCopy::FateOfDataset(KOVSimDSet const& dset) {
    KOVSimDistributionID const relation = dset.GetRelationalDistributionID();
    if (!relation.IsNull()) return FateOf(relation);
    Fate fate = Fate::Untouched;
    KOVSimCtation const& content = dset.GetCtation();
    for (KOVSimCompartment const& compartment : content.Compartments()) {
        Fate of = Fate::Untouched;
        for (int i = 0; i < compartment.Size() && of != Fate::Lost; ++i) {
            Fate const set = FateOfSet(compartment.CSet(i));
            if (set != Fate::Untouched) of = set;
        }
        if (of != Fate::Lost) return of;
        fate = Fate::Lost;
    }
    return fate;
}

DocumentCopy::Fate DocumentCopy::FateOfDistribution(KOVSimDistribution const& distribution) {
    std::vector<Renumbering const*> dimensions;
    bool cut = false;
    for (KOVSimCollectionID const& collection : distribution.Grid().Collections()) {
        if (KindOf(collection) == Kind::LeftOut) return Fate::Lost;
        dimensions.push_back(&RenumberingOf(collection));
        cut = cut || !dimensions.back()->IsIdentity();
    }
    KOVSimCollectionID const entries = distribution.Range().Collection();
    if (!entries.IsNull() && KindOf(entries) == Kind::LeftOut) return Fate::Lost;
    DrawerDescriptions drawers;
    distribution.QueryDrawers(drawers);
    if (!cut || drawers.Size() == 0) return Fate::Untouched;
    for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
        if (!PartOfDrawer(drawer, dimensions).empty()) return Fate::Kept;
    }
    return StandsBesideDefaults(distribution) ? Fate::Untouched : Fate::Lost;
}

bool DocumentCopy::StandsBesideDefaults(KOVSimDistribution const& distribution) const {
    KOVSimSet const fields =
        KOVSimPosition(distribution.ID()).ReferrersSet(schema::FieldFTable_distribution());
    for (auto at = fields.Begin(); at.NotDone(); ++at) {
        if (HasDefaults(*at)) return true;
    }
    return false;
}

DocumentCopy::Fate DocumentCopy::FateOfDrawer(KOVSimPosition const& source) {
    KOVSimDrawer const drawer(source);
    KOVSimDistribution const distribution(drawer.DistributionID());
    if (drawer.Description() == nullptr || FateOf(distribution.ID()) == Fate::Lost) {
        return Fate::Lost;
    }
    std::vector<Renumbering const*> dimensions;
    bool cut = false;
    for (KOVSimCollectionID const& collection : distribution.Grid().Collections()) {
        dimensions.push_back(&RenumberingOf(collection));
        cut = cut || !dimensions.back()->IsIdentity();
    }
    if (!cut) return Fate::Untouched;
    return PartOfDrawer(*drawer.Description(), dimensions).empty() ? Fate::Lost : Fate::Kept;
}

// An orientation belongs to an instance by its key alone. It goes with it, unless something else
// that may stay refers to it.
DocumentCopy::Fate DocumentCopy::FateOfOrientation(KOVSimPosition const& source) {
    for (int const member : {schema::Section_orientation(), schema::Layer_orientation(),
                             schema::AnalyticSurface_Revolution_orientation()}) {
        if (!source.ReferrersSet(member).Empty()) return Fate::Untouched;
    }
    KOVSimPosition const model = m_from.GetModel();
    if (!model.GetPosition(schema::Model_bulkShellLayers())
             .GetPosition(schema::BulkShellLayers_orientations())
             .IsNull()) {
        return Fate::Untouched;
    }
    KOVString const key = source.GetReferenceKey(schema::Model_orientationsByName());
    std::string_view const name = View(key);
    KOVSimMap const instances = model.GetMap(schema::Model_instances());
    // The longest name of an instance that fits: names may hold the joiner themselves.
    for (std::size_t at = name.rfind('_'); at != std::string_view::npos && at > 0;
         at = name.rfind('_', at - 1)) {
        KOVSimPosition const instance = instances.Find(ToKOVString(name.substr(0, at)));
        if (!instance.IsNull()) return FateOf(instance);
    }
    return Fate::Untouched;
}

DocumentCopy::Fate DocumentCopy::FateOfRecord(KOVSimPosition const& source) {
    if (source.IsA(schema::Orientation())) return FateOfOrientation(source);
    int kept = 0;
    int lost = 0;
    auto const count = [&](KOVSimPosition const& target) {
        if (target.IsNull()) return;
        Fate const fate = FateOf(target);
        if (fate == Fate::Kept) ++kept;
        if (fate == Fate::Lost) ++lost;
    };
    for (int const member : source.Members()) {
        count(source.GetPosition(member));
        for (auto at = source.GetVector(member).Begin(); at.NotDone(); ++at) count(*at);
        for (auto at = source.GetSet(member).Begin(); at.NotDone(); ++at) count(*at);
        for (auto at = source.GetMap(member).Begin(); at.NotDone(); ++at) count(at.Value());
    }
    // Half a constraint would hold something else.
    if (lost > 0 && source.IsA(schema::Constraint())) return Fate::Lost;
    if (kept > 0) return Fate::Kept;
    return lost > 0 ? Fate::Lost : Fate::Untouched;
}

DocumentCopy::Fate DocumentCopy::FateOf(KOVSimPosition const& source) {
    Kind const kind = KindOf(source);
    if (kind == Kind::LeftOut) return Fate::Lost;
    int const category = source.ID().Category();
    if (category == KOVSimCategoryMember) {
        auto const cut = m_renumberings.find(source.ID().data.parent);
        if (cut != m_renumberings.end() && !cut->second->IsIdentity()) {
            return cut->second->NewIndex(source.ID().data.minor) < 0 ? Fate::Lost : Fate::Kept;
        }
    }
    bool const isRecord = category == KOVSimCategoryMember || category == KOVSimCategoryRecord;
    if (isRecord && kind != Kind::Falls) return Fate::Untouched;
    auto const found = m_fates.find(source.ID());
    if (found != m_fates.end()) return found->second;
    // Links may lead back here, in which case they decide nothing.
    m_fates[source.ID()] = Fate::Untouched;
    Fate fate = Fate::Untouched;
    switch (category) {
        case KOVSimCategoryRecord:
        case KOVSimCategoryMember:
            fate = FateOfRecord(source);
            break;
        case KOVSimCategoryCSet:
            fate = FateOfSet(source.CSet());
            break;
        case KOVSimCategoryDSet:
            fate = FateOfDataset(source.DSet());
            break;
        case KOVSimCategoryDistribution:
            fate = FateOfDistribution(KOVSimDistribution(source.GetDistribution()));
            break;
        case KOVSimCategoryDrawer:
            fate = FateOfDrawer(source);
            break;
        default:
            break;
    }
    return m_fates[source.ID()] = fate;
}

}  // namespace kov::tool
