#include "document/sets/DSetContent.h"

#include "KOVSimException.h"
#include "document/records/Identity.h"
#include "document/sets/CompartmentCodec.h"
#include "document/sets/IndexSet.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

namespace kov::sets {

using store::Statement;

namespace {

KOVSimCompartment Decoded(KOVSimDSetID const& id, std::string_view bytes) {
    std::vector<CompartmentWord> words;
    if (!DecodeCompartment(bytes, words)) {
        records::Refuse({"read the compartments"}, id, "they are damaged");
    }
    KOVBasVector<KOVSimCSet> sets;
    for (CompartmentWord const& word : words) {
        KOVSimDynamicDataID data;
        data.parent = word.collection;
        data.minor = word.set;
        sets.PushBack(KOVSimCSet(
            KOVSimCSetID(KOVSimDynamicID(KOVSimCategoryCSet, id.ContextID(), data, word.type, 0))));
    }
    return KOVSimCompartment(sets);
}

KOVSimCtation StoredCompartments(store::Context& context, KOVSimDSetID const& id) {
    // Making sets of a compartment reads the catalogue too: the rows are fetched first.
    std::vector<std::string> rows;
    Statement select(context.Cat(), "SELECT sets FROM compartments WHERE dataset=? ORDER BY place");
    select.Bind(id.Minor());
    while (select.Step()) rows.emplace_back(select.Blob(0));
    KOVSimCtation::Array compartments(static_cast<int>(rows.size()));
    for (std::size_t i = 0; i < rows.size(); ++i)
        compartments.Get(static_cast<int>(i)) = Decoded(id, rows[i]);
    return KOVSimCtation(compartments);
}

KOVSimCtation DrawerCompartments(KOVSimDistribution const& relation) {
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
        drawers;
    relation.QueryDrawers(drawers);
    KOVSimCtation::Array compartments(drawers.Size());
    for (int i = 0; i < drawers.Size(); ++i) compartments.Get(i) = drawers.ConstGet(i).compartment;
    return KOVSimCtation(compartments);
}

}  // namespace

KOVSimIDMinor RelationOf(KOVSimDSetID const& id) {
    store::Context& context = *records::ToRead(id);
    Statement select(context.Cat(), "SELECT distribution FROM datasets WHERE number=?");
    select.Bind(id.Minor());
    if (!select.Step()) records::Refuse({"read the content"}, id, "there is no such dataset");
    return select.IsNull(0) ? 0 : static_cast<KOVSimIDMinor>(select.Int(0));
}

std::shared_ptr<KOVSimDSet::Content const> LoadContent(KOVSimDSetID const& id) {
    auto content = std::make_shared<KOVSimDSet::Content>();
    store::Context& context = *records::ToRead(id);
    if (KOVSimIDMinor const number = RelationOf(id)) {
        KOVSimDynamicDataID data;
        data.parent = 0;
        data.minor = number;
        KOVSimTypeID const type = records::TypeOfNumber(context, number);
        content->relation.emplace(KOVSimDistributionID(
            KOVSimDynamicID(KOVSimCategoryDistribution, id.ContextID(), data, type, 0)));
    }
    content->SetStored(id);
    return content;
}

KOVSimCtation SelectCompartments(KOVSimCtation const& ctation, KOVSimCSet const& set) {
    std::vector<KOVSimCompartment> selected;
    for (KOVSimCompartment const& compartment : ctation.Compartments()) {
        // Where a collection stands in several domains, what an earlier domain has selected is left
        // out of the later ones, so that no tuple is held twice. Most compartments of a dataset
        // have nothing in common with the set: their sets are copied when something is found.
        KOVBasVector<KOVSimCSet> sets;
        for (int i = 0; i < compartment.Size(); ++i) {
            KOVSimCSet const& whole = compartment.CSet(i);
            if (whole.CollectionID() != set.CollectionID()) continue;
            if (whole.IsEmpty()) break;
            if (!Intersects(*whole.Storage(), *set.Storage())) continue;
            for (int k = sets.Size(); k < compartment.Size(); ++k) {
                sets.PushBack(compartment.CSet(k));
            }
            sets[i] = whole.Intersection(set);
            if (sets[i].SameMembers(whole)) sets[i] = whole;
            selected.emplace_back(sets);
            sets[i] = whole - set;
            if (sets[i].IsEmpty()) break;
        }
    }
    KOVSimCtation::Array compartments(static_cast<int>(selected.size()));
    for (std::size_t i = 0; i < selected.size(); ++i)
        compartments.Get(static_cast<int>(i)) = selected[i];
    return KOVSimCtation(compartments);
}

}  // namespace kov::sets

KOVSimCtation const& KOVSimDSet::Content::Ctation() const {
    if (!m_ctation) {
        if (relation) {
            m_ctation = kov::sets::DrawerCompartments(*relation);
        } else if (kov::store::Context* const context = kov::records::ToRead(m_stored)) {
            m_ctation = kov::sets::StoredCompartments(*context, m_stored);
        } else {
            m_ctation.emplace();
        }
    }
    return *m_ctation;
}
