// Making datasets and bringing them up to date: operations of KOVSimPosition and KOVSimContext that
// concern sets.
#include <string>
#include <vector>

#include "KOVSimContext.h"
#include "KOVSimDSet.h"
#include "KOVSimDistribution.h"
#include "document/records/Identity.h"
#include "document/sets/CompartmentCodec.h"
#include "document/sets/DSetContent.h"
#include "document/sets/SetStore.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

using namespace kov;
using records::Asked;
using store::Statement;

namespace {

/// A dataset's row of objects and of datasets. `distribution`: 0 for none.
KOVSimDSetID NewDataset(store::Context& context, KOVSimTypeID type, KOVSimIDMinor distribution) {
    KOVSimDSetID const id(records::NewObject(context, KOVSimCategoryDSet, type));
    Statement insert(context.Cat(), "INSERT INTO datasets(number,distribution) VALUES(?,?)");
    insert.Bind(id.Minor());
    (distribution ? insert.Bind(distribution) : insert.BindNull()).Run();
    return id;
}

void RequireRelational(store::Context& context, KOVSimDistributionID const& distribution,
                       Asked const& asked) {
    if (distribution.IsNull()) records::Refuse(asked, "the distribution is null");
    if (distribution.ContextID() != context.ID()) {
        records::Refuse(asked, distribution, "the distribution belongs to another document");
    }
    if (KOVSimDistribution(distribution).Range().Key() != KOVSimTypeKeyMember) {
        records::Refuse(asked, distribution, "its entries are no members of a collection");
    }
}

}  // namespace

KOVSimCSet KOVSimPosition::CSet() const { return KOVSimCSet(*this); }

KOVSimDSet KOVSimPosition::DSet() const { return KOVSimDSet(*this); }

KOVSimDSetID KOVSimPosition::CreateTypedDSet(KOVSimCtation const& ctation, int type) const {
    Asked const asked{"create a dataset"};
    if (IsNull()) records::Refuse(asked, "the position is null");
    store::Context& context = store::Context::Of(m_id.context);
    records::RequireTransaction(context, asked);
    KOVSimDSetID const id = NewDataset(context, records::TypeNumber(type), 0);
    sets::SetStore& registered = sets::SetStore::Of(context);
    Statement insert(context.Cat(), "INSERT INTO compartments(dataset,place,sets) VALUES(?,?,?)");
    for (int place = 0; place < ctation.Size(); ++place) {
        KOVSimCompartment const& compartment = ctation.Compartments().ConstGet(place);
        std::string const which = "compartment " + std::to_string(place);
        if (compartment.Size() == 0) records::Refuse(asked, which + " is empty");
        std::vector<sets::CompartmentWord> words;
        for (int i = 0; i < compartment.Size(); ++i) {
            KOVSimCSet set = compartment.CSet(i);
            if (set.CollectionID().IsNull() || set.CollectionID().ContextID() != context.ID()) {
                records::Refuse(
                    asked, which + " has a set that is tied to no collection of this document");
            }
            // A dataset outlives volatile and temporary sets, and keeps what a drawer's set has
            // now: it holds persistent sets of the same members.
            if (set.ID().Minor() < 0 || registered.IsGrowing(set.ID().Minor())) {
                set = KOVSimCSet(set.CollectionID(), set.Storage());
            }
            KOVSimCSetID const stored = set.RegisterWithCollection();
            words.push_back({stored.Parent(), stored.Minor(), stored.TypeID()});
        }
        std::string bytes;
        sets::EncodeCompartment(words, bytes);
        insert.Bind(id.Minor()).Bind(place).BindBlob(bytes.data(), bytes.size()).Run();
    }
    return id;
}

KOVSimDSetID KOVSimContext::CreateDSet(KOVSimDistributionID const& distribution,
                                       KOVSimTypeID type) const {
    Asked const asked{"create a dataset"};
    store::Context& context = store::Context::Of(m_id);
    records::RequireTransaction(context, asked);
    RequireRelational(context, distribution, asked);
    return NewDataset(context, type < 0 ? -1 : type, distribution.Minor());
}

void KOVSimContext::UpdateDSet(KOVSimDSetID const& dset,
                               KOVSimDistributionID const& distribution) const {
    Asked const asked{"update a dataset"};
    store::Context& context = records::ToWrite(dset, asked);
    RequireRelational(context, distribution, asked);
    // Its view is read from the distribution whenever it is asked for; only a change of the
    // distribution is written.
    if (sets::RelationOf(dset) == distribution.Minor()) return;
    Statement update(context.Cat(), "UPDATE datasets SET distribution=? WHERE number=?");
    update.Bind(distribution.Minor()).Bind(dset.Minor()).Run();
    Statement drop(context.Cat(), "DELETE FROM compartments WHERE dataset=?");
    drop.Bind(dset.Minor()).Run();
}
