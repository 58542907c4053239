#include "KOVSimDSet.h"

#include "document/records/Identity.h"
#include "document/sets/DSetContent.h"

using namespace kov;

namespace {

std::shared_ptr<KOVSimDSet::Content const> NoContent() {
    static auto const none = std::make_shared<KOVSimDSet::Content const>();
    return none;
}

bool StandsIn(KOVSimCtation const& ctation, KOVSimCollectionID const& collection) {
    for (KOVSimCompartment const& compartment : ctation.Compartments()) {
        if (compartment.Position(collection) >= 0) return true;
    }
    return false;
}

}  // namespace

KOVSimDSet::KOVSimDSet() = default;

KOVSimDSet::KOVSimDSet(KOVSimDSetID const& id) {
    if (!records::ToRead(id)) return;
    m_content = sets::LoadContent(id);
    m_id = id;
}

KOVSimDSet::KOVSimDSet(KOVSimPosition const& position) : KOVSimDSet(position.GetDSet()) {}

bool KOVSimDSet::IsNull() const { return !m_content; }

bool KOVSimDSet::IsEmpty() const {
    if (!m_content) return true;
    if (!m_content->relation) return m_content->Ctation().Size() == 0;
    for (KOVSimCompartment const& drawer : m_content->Ctation().Compartments()) {
        bool empty = false;
        for (int i = 0; i < drawer.Size(); ++i) empty = empty || drawer.CSet(i).IsEmpty();
        if (!empty) return false;
    }
    return true;
}

KOVSimCtation const& KOVSimDSet::GetCtation() const {
    return m_content ? m_content->Ctation() : NoContent()->Ctation();
}

KOVSimDistributionID KOVSimDSet::GetRelationalDistributionID() const {
    return m_content && m_content->relation ? m_content->relation->ID() : KOVSimDistributionID();
}

KOVSimDSet KOVSimDSet::Select(KOVSimCSet const& set) const {
    KOVSimDSet result;
    if (!m_content || set.CollectionID().IsNull()) return result;
    bool const ofGrid = StandsIn(m_content->Ctation(), set.CollectionID());
    bool const ofRange =
        m_content->relation && m_content->relation->Range().Collection() == set.CollectionID();
    if (!ofGrid && !ofRange) return result;
    auto selected = std::make_shared<Content>();
    selected->relation = m_content->relation;
    selected->range = m_content->range;
    selected->confined = m_content->confined;
    if (ofGrid) {
        selected->SetCtation(sets::SelectCompartments(m_content->Ctation(), set));
    } else {
        selected->SetCtation(m_content->Ctation());
        selected->range = selected->confined ? selected->range.Intersection(set) : set;
        selected->confined = true;
    }
    if (selected->confined) selected->SetCtation(sets::ConfinePieces(*selected));
    result.m_content = std::move(selected);
    return result.IsEmpty() ? KOVSimDSet() : result;
}

KOVSimCSet KOVSimDSet::Collect(KOVSimCollectionID const& collection) const {
    KOVSimCSet all(collection);
    if (!m_content) return all;
    for (KOVSimCompartment const& compartment : m_content->Ctation().Compartments()) {
        for (int i = 0; i < compartment.Size(); ++i) {
            if (compartment.CSet(i).CollectionID() == collection)
                all = all.Union(compartment.CSet(i));
        }
    }
    if (m_content->relation && m_content->relation->Range().Collection() == collection &&
        !collection.IsNull()) {
        all = all.Union(sets::CollectRange(*m_content));
    }
    return all;
}
