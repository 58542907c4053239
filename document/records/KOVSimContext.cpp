// KOVSimContext: members by index and indices of members. Datasets are in document/sets,
// distributions in document/bulk.
#include "KOVSimContext.h"

#include <string>

#include "document/records/CollectionSpaces.h"
#include "document/records/Identity.h"
#include "document/records/Members.h"

using namespace kov;
using records::Asked;

KOVSimTypeSchemaSnapshot KOVSimContext::Schema() const { return {}; }

KOVSimDynamicID KOVSimContext::GetRecord(KOVSimCollectionID const& collection, int index) const {
    Asked const asked{"get a member"};
    store::Context* const context = records::ToRead(collection);
    if (!context) records::Refuse(asked, "the collection is null");
    int const space = context->Part<records::CollectionSpaces>().Space(collection.Minor());
    if (index < 0 || index >= space) {
        records::Refuse(
            asked, collection,
            "index " + std::to_string(index) + " is outside [0, " + std::to_string(space) + ")");
    }
    return records::MemberIdentity(collection, index);
}

int KOVSimContext::GetCMemberIndex(KOVSimDynamicID const& record) const {
    return record.category == KOVSimCategoryMember ? record.data.minor : -1;
}

void KOVSimContext::GetCMembership(
    KOVSimArray<KOVSimDynamicID, KOVSimArrayCopyClassPolicy<KOVSimDynamicID>> const& members,
    KOVSimCollectionID& collection,
    KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>& indices) const {
    Asked const asked{"get the membership"};
    KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> found(members.Size(), 0);
    KOVSimCollectionID common = collection;
    for (int i = 0; i < members.Size(); ++i) {
        KOVSimDynamicID const& record = members.ConstGet(i);
        if (record.IsNull() || record.category != KOVSimCategoryMember) {
            records::Refuse(asked, record, "it is no member of a collection");
        }
        KOVSimCollectionID const owner(record.context, record.data.parent, record.type, 0);
        if (common.IsNull()) common = owner;
        if (!(owner == common)) {
            records::Refuse(asked, record, "it is no member of " + records::Describe(common));
        }
        found.Get(i) = record.data.minor;
    }
    collection = common;
    indices.Swap(found);
}
