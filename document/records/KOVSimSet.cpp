#include "KOVSimSet.h"

#include <string>

#include "document/records/Identity.h"
#include "document/records/Links.h"
#include "document/records/ReverseLinks.h"
#include "document/store/Context.h"
#include "document/store/Reference.h"

using namespace kov;
using records::Asked;
using records::Container;
using records::LinkKey;
using records::ReverseLinks;

KOVSimSet KOVSimSet::Referrers(KOVSimPosition const& target, int member) {
    KOVSimSet set(target, member);
    set.m_referrers = true;
    return set;
}

KOVSimSetiterator KOVSimSet::Begin() const {
    auto links = std::make_shared<std::vector<KOVSimPosition>>();
    store::Context* const context = records::ToRead(m_owner.ID());
    if (!context) return KOVSimSetiterator(std::move(links));
    std::int64_t const reference = store::ToReference(m_owner.ID());
    if (m_referrers) {
        std::int64_t last = 0;
        context->Part<ReverseLinks>().ForEach(
            m_member, reference, [&](ReverseLinks::Entry const& link) {
                // One owner's links are neighbours: its type is looked up once.
                if (links->empty() || link.owner != last)
                    links->push_back(records::IdentityOf(*context, link.owner));
                else
                    links->push_back(KOVSimPosition(links->back()));
                last = link.owner;
                return true;
            });
    } else {
        records::LinkScan scan(*context, reference, m_member, Container::Set);
        while (scan.Next()) links->push_back(scan.Target());
    }
    return KOVSimSetiterator(std::move(links));
}

int KOVSimSet::Size() const {
    store::Context* const context = records::ToRead(m_owner.ID());
    if (!context) return 0;
    std::int64_t const reference = store::ToReference(m_owner.ID());
    if (!m_referrers) return records::CountLinks(*context, reference, m_member, Container::Set);
    int size = 0;
    context->Part<ReverseLinks>().ForEach(m_member, reference, [&](ReverseLinks::Entry const&) {
        ++size;
        return true;
    });
    return size;
}

void KOVSimSet::Insert(KOVSimPosition const& target) const {
    Asked const asked{m_referrers ? "insert into the referrers" : "insert into the set", m_member};
    store::Context& context = records::ToWrite(m_owner.ID(), asked);
    if (m_referrers)
        records::Refuse(asked, m_owner.ID(), "referrers follow from the links of others");
    if (m_member < 0)
        records::Refuse(asked, m_owner.ID(), std::to_string(m_member) + " is no member");
    records::RequireTarget(context, target.ID(), asked, m_owner.ID());
    LinkKey const key = LinkKey::OfSet(store::ToReference(target.ID()));
    records::PutLink(context, store::ToReference(m_owner.ID()), m_member, key, target.ID());
}

void KOVSimSet::Remove(KOVSimPosition const& target) const {
    Asked const asked{m_referrers ? "remove from the referrers" : "remove from the set", m_member};
    store::Context& context = records::ToWrite(m_owner.ID(), asked);
    if (m_referrers)
        records::Refuse(asked, m_owner.ID(), "referrers follow from the links of others");
    if (target.IsNull() || target.ID().context != m_owner.ID().context) return;
    LinkKey const key = LinkKey::OfSet(store::ToReference(target.ID()));
    records::DropLink(context, store::ToReference(m_owner.ID()), m_member, key);
}
