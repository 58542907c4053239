// DocumentCopy: the walk over the links, and the content of each object.

#include "DocumentCopy.h"

#include <cstring>

#include "Interrupt.h"
#include "KOVSimContext.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"

namespace kov::tool {
namespace {

// Reads all values of a real field, whose count a record does not tell: values behind the stored
// ones stay as they were, so that they differ between two reads with different presets.
std::vector<double> RealField(KOVSimDataRecord const& record, int field) {
    for (std::size_t size = 16;; size *= 4) {
        std::vector<double> values(size, 1.0);
        std::vector<double> again(size, 2.0);
        record.GetDouble(field, values.data(), static_cast<int>(size));
        record.GetDouble(field, again.data(), static_cast<int>(size));
        std::size_t stored = 0;
        while (stored < size && std::memcmp(&values[stored], &again[stored], sizeof(double)) == 0) {
            ++stored;
        }
        if (stored == size) continue;
        values.resize(stored);
        return values;
    }
}

void CopyField(KOVSimDataRecord const& from, KOVSimDataRecord const& to, int field) {
    int number = 0;
    switch (from.FieldKind(field)) {
        case 'i':
            from.GetInt(field, number);
            to.SetInt(field, number);
            break;
        case 's':
            from.GetSymb(field, number);
            to.SetSymb(field, number);
            break;
        case 'd': {
            std::vector<double> const values = RealField(from, field);
            to.SetDouble(field, values.data(), static_cast<int>(values.size()));
            break;
        }
        case 't':
            to.SetString(field, from.ReturnString(field));
            break;
        case 'y': {
            KOVSimTypeID type = -1;
            from.GetTypeID(field, type);
            to.SetTypeID(field, type);
            break;
        }
        default:
            break;
    }
}

struct Association {
    int type;
    int member;
};

// Associations are found under the pair that they were made with; these are the pairs of the
// schema. The parts of a material's tables stand under numbers that the behaviours choose.
std::vector<Association> Associations(KOVSimPosition const& source) {
    std::vector<Association> all;
    if (source.IsA(schema::FocusRecord())) all.push_back({schema::FocusRecord(), 1});
    if (source.IsA(schema::SurfaceOutputRecord())) {
        all.push_back({schema::SurfaceOutputRecord(), 0});
    }
    if (source.IsA(schema::MaterialBehavior())) {
        for (int const type :
             {schema::MaterialTable_dependentData(), schema::MaterialTable_temperatureData(),
              schema::MaterialTable_fieldVariableData()}) {
            for (int member = 0; member < 32; ++member) all.push_back({type, member});
        }
    }
    return all;
}

}  // namespace

void CopyFields(KOVSimPosition const& source, KOVSimPosition const& target) {
    KOVString const name = source.Name(-1);
    if (name.GetLengthInByte() > 0) target.SetName(name);
    KOVSimDataRecord const from = source.GetDataRecord();
    for (int const field : from.Fields()) CopyField(from, target.GetDataRecord(), field);
}

void DocumentCopy::Run() {
    Adopt(m_from.Focus(), m_to.Focus());
    for (auto const& [source, target] : m_skeletonBulk) AdoptBulk(source, target);
    while (!m_queue.empty()) {
        ThrowIfInterrupted();
        auto const [source, target] = m_queue.front();
        m_queue.pop_front();
        CopyContent(source, target);
    }
    for (auto const& [dset, relation] : m_relations) {
        KOVSimContext(m_to.ContextID()).UpdateDSet(dset, relation);
    }
}

void DocumentCopy::Pair(KOVSimPosition const& source, KOVSimPosition const& target) {
    m_targets[source.ID()] = target.ID();
    m_queue.emplace_back(source.ID(), target.ID());
}

KOVSimPosition DocumentCopy::Known(KOVSimPosition const& source) const {
    auto const found = m_targets.find(source.ID());
    return found == m_targets.end() ? KOVSimPosition() : KOVSimPosition(found->second);
}

// Lets the skeleton of the new document stand for what has the same place in the source.
void DocumentCopy::Adopt(KOVSimPosition const& source, KOVSimPosition const& target) {
    if (source.IsNull() || target.IsNull()) return;
    int const category = source.ID().Category();
    if (category != target.ID().Category() || !Known(source).IsNull()) return;
    if (category == KOVSimCategoryDistribution || category == KOVSimCategoryDSet) {
        m_skeletonBulk.emplace_back(source, target);
        return;
    }
    if (category == KOVSimCategoryCollection) {
        if (KindOf(source) == Kind::LeftOut || source.TypePosition() != target.TypePosition())
            return;
        if (!SameSymbols(source, target)) return;
    } else if (category != KOVSimCategoryRecord) {
        return;
    }
    if (!m_taken.insert(target.ID()).second) return;
    Pair(source, target);
    if (category == KOVSimCategoryCollection) FillCollection(source, target);
    for (int const member : target.Members()) {
        Adopt(source.GetPosition(member), target.GetPosition(member));
    }
}

// Coordinates and connectivity, when the collections have found their counterparts.
void DocumentCopy::AdoptBulk(KOVSimPosition const& source, KOVSimPosition const& target) {
    if (!Known(source).IsNull() || !m_taken.insert(target.ID()).second) return;
    if (source.ID().Category() == KOVSimCategoryDSet) {
        KOVSimDistributionID const from = source.DSet().GetRelationalDistributionID();
        KOVSimDistributionID const to = target.DSet().GetRelationalDistributionID();
        if (from.IsNull() || to.IsNull()) return;
        AdoptBulk(from, to);
        if (Known(from).ID() != to.ID()) return;
        m_relations.emplace_back(target.GetDSet(), to);
        Pair(source, target);
        return;
    }
    KOVSimDistribution const from(source.GetDistribution());
    KOVSimDistribution const to(target.GetDistribution());
    if (from.NumDimensions() != to.NumDimensions() || from.Range().Key() != to.Range().Key())
        return;
    for (int i = 0; i < from.NumDimensions(); ++i) {
        KOVSimPosition const collection = Known(from.Grid().Collections().ConstGet(i));
        if (collection.ID() != to.Grid().Collections().ConstGet(i).ID()) return;
    }
    KOVSimCollectionID const entries = from.Range().Collection();
    if (!entries.IsNull() && Known(entries).ID() != to.Range().Collection().ID()) return;
    Pair(source, target);
    CopyDrawers(from, to);
}

// The object's counterpart, which is made if there is none; null if it is lost. `present` is what
// stands in its place already.
KOVSimPosition DocumentCopy::Translate(KOVSimPosition const& source,
                                       KOVSimPosition const& present) {
    if (source.IsNull()) return {};
    KOVSimPosition const known = Known(source);
    if (!known.IsNull()) return known;
    if (FateOf(source) == Fate::Lost) return {};
    if (source.ID().Category() == KOVSimCategoryRecord && !present.IsNull() &&
        present.ID().Category() == KOVSimCategoryRecord &&
        present.TypePosition() == source.TypePosition() && m_taken.insert(present.ID()).second) {
        Pair(source, present);
        return present;
    }
    return Make(source);
}

void DocumentCopy::CopyContent(KOVSimPosition const& source, KOVSimPosition const& target) {
    CopyFields(source, target);
    for (int const member : source.Members()) CopyLinks(source, target, member);
    for (Association const& association : Associations(source)) {
        KOVSimPosition const to = Translate(source.Follow(association.type, association.member));
        if (!to.IsNull()) target.Associate(association.type, association.member, to);
    }
}

void DocumentCopy::CopyLinks(KOVSimPosition const& source, KOVSimPosition const& target,
                             int member) {
    KOVSimPosition const present = target.GetPosition(member);
    KOVSimPosition const one = Translate(source.GetPosition(member), present);
    if (!one.IsNull() && one.ID() != present.ID()) target.SetPosition(member, one);
    KOVSimVector const vector = target.GetVector(member);
    for (auto at = source.GetVector(member).Begin(); at.NotDone(); ++at) {
        KOVSimPosition const to = Translate(*at);
        if (!to.IsNull()) vector.PushBack(to);
    }
    KOVSimSet const set = target.GetSet(member);
    for (auto at = source.GetSet(member).Begin(); at.NotDone(); ++at) {
        KOVSimPosition const to = Translate(*at);
        if (!to.IsNull()) set.Insert(to);
    }
    KOVSimMap const map = target.GetMap(member);
    int copied = 0;
    for (auto at = source.GetMap(member).Begin(); at.NotDone(); ++at) {
        if (++copied % 1000 == 0) ThrowIfInterrupted();
        KOVSimPosition const to = Translate(at.Value(), map.Find(at.Key()));
        if (!to.IsNull()) map.Insert(at.Key(), to);
    }
}

}  // namespace kov::tool
