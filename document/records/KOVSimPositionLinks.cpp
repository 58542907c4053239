// KOVSimPosition: links, in both directions.
#include "KOVSimMap.h"
#include "KOVSimPosition.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "document/records/Identity.h"
#include "document/records/Links.h"
#include "document/records/ReverseLinks.h"
#include "document/store/Context.h"
#include "document/store/Reference.h"

using namespace kov;
using records::Asked;
using records::LinkKey;
using records::ReverseLinks;

namespace {

KOVSimPosition TargetOf(KOVSimDynamicID const& owner, std::int64_t member) {
    store::Context* const context = records::ToRead(owner);
    if (!context) return {};
    auto const target =
        records::FindLink(*context, store::ToReference(owner), member, LinkKey::One());
    return target ? KOVSimPosition(*target) : KOVSimPosition();
}

void SetTarget(KOVSimDynamicID const& owner, std::int64_t member, KOVSimPosition const& target,
               Asked const& asked) {
    store::Context& context = records::ToWrite(owner, asked);
    std::int64_t const reference = store::ToReference(owner);
    if (target.IsNull()) return records::DropLink(context, reference, member, LinkKey::One());
    records::RequireTarget(context, target.ID(), asked, owner);
    records::PutLink(context, reference, member, LinkKey::One(), target.ID());
}

}  // namespace

KOVSimPosition KOVSimPosition::GetPosition(int member) const { return TargetOf(m_id, member); }

void KOVSimPosition::SetPosition(int member, KOVSimPosition const& target) const {
    Asked const asked{"set the link", member};
    if (member < 0) records::Refuse(asked, m_id, std::to_string(member) + " is no member");
    SetTarget(m_id, member, target, asked);
}

KOVSimPosition KOVSimPosition::Follow(int type, int member) const {
    return type < 0 ? KOVSimPosition() : TargetOf(m_id, records::AssociationMember(type, member));
}

void KOVSimPosition::Associate(int type, int member, KOVSimPosition const& target) const {
    Asked const asked{"set the association with", type};
    if (type < 0) records::Refuse(asked, m_id, std::to_string(type) + " is no type");
    SetTarget(m_id, records::AssociationMember(type, member), target, asked);
}

KOVSimPosition KOVSimPosition::Parent(int member) const {
    store::Context* const context = records::ToRead(m_id);
    KOVSimPosition parent;
    if (!context) return parent;
    context->Part<ReverseLinks>().ForEach(member, store::ToReference(m_id),
                                          [&](ReverseLinks::Entry const& link) {
                                              parent = records::IdentityOf(*context, link.owner);
                                              return false;
                                          });
    return parent;
}

KOVSimSet KOVSimPosition::ReferrersSet(int member) const {
    return KOVSimSet::Referrers(*this, member);
}

KOVString KOVSimPosition::GetReferenceKey(int member) const {
    store::Context* const context = records::ToRead(m_id);
    KOVString key;
    if (!context) return key;
    context->Part<ReverseLinks>().ForEach(
        member, store::ToReference(m_id), [&](ReverseLinks::Entry const& link) {
            if (!link.HasTextKey()) return true;
            key.BuildFromUTF8(link.key.data() + 1, static_cast<int>(link.key.size() - 1));
            return false;
        });
    return key;
}

KOVBasVector<int> KOVSimPosition::Members() const {
    KOVBasVector<int> members;
    store::Context* const context = records::ToRead(m_id);
    if (!context) return members;
    // One seek for each member, however many links stand under it.
    store::Statement next(
        context->Cat(),
        "SELECT member FROM links WHERE owner=? AND member>? AND member<? ORDER BY member LIMIT 1");
    for (std::int64_t last = -1;; next.Rebind()) {
        next.Bind(store::ToReference(m_id)).Bind(last).Bind(records::FirstAssociation);
        if (!next.Step()) return members;
        last = next.Int(0);
        members.PushBack(static_cast<int>(last));
    }
}

KOVSimVector KOVSimPosition::GetVector(int member) const { return KOVSimVector(*this, member); }
KOVSimSet KOVSimPosition::GetSet(int member) const { return KOVSimSet(*this, member); }
KOVSimMap KOVSimPosition::GetMap(int member) const { return KOVSimMap(*this, member); }
