#include "KOVSimVector.h"

#include <string>

#include "document/records/Identity.h"
#include "document/records/Links.h"
#include "document/store/Context.h"
#include "document/store/Reference.h"

using namespace kov;
using records::Asked;
using records::Container;
using records::LinkKey;

KOVSimVectoriterator KOVSimVector::Begin() const {
    auto links = std::make_shared<std::vector<KOVSimPosition>>();
    if (store::Context* const context = records::ToRead(m_owner.ID())) {
        records::LinkScan scan(*context, store::ToReference(m_owner.ID()), m_member,
                               Container::Vector);
        while (scan.Next()) links->push_back(scan.Target());
    }
    return KOVSimVectoriterator(std::move(links));
}

int KOVSimVector::Size() const {
    store::Context* const context = records::ToRead(m_owner.ID());
    return context ? records::CountLinks(*context, store::ToReference(m_owner.ID()), m_member,
                                         Container::Vector)
                   : 0;
}

void KOVSimVector::PushBack(KOVSimPosition const& target) const {
    Asked const asked{"append to the vector", m_member};
    store::Context& context = records::ToWrite(m_owner.ID(), asked);
    if (m_member < 0)
        records::Refuse(asked, m_owner.ID(), std::to_string(m_member) + " is no member");
    records::RequireTarget(context, target.ID(), asked, m_owner.ID());
    std::int64_t const owner = store::ToReference(m_owner.ID());
    LinkKey const place = LinkKey::Place(records::LastPlace(context, owner, m_member) + 1);
    records::PutLink(context, owner, m_member, place, target.ID());
}

void KOVSimVector::Remove(int index) const {
    Asked const asked{"remove from the vector", m_member};
    store::Context& context = records::ToWrite(m_owner.ID(), asked);
    std::int64_t const owner = store::ToReference(m_owner.ID());
    std::int64_t const place = index < 0 ? 0 : records::PlaceAt(context, owner, m_member, index);
    if (place == 0) {
        int const size = records::CountLinks(context, owner, m_member, Container::Vector);
        records::Refuse(
            asked, m_owner.ID(),
            "index " + std::to_string(index) + " is outside [0, " + std::to_string(size) + ")");
    }
    records::DropLink(context, owner, m_member, LinkKey::Place(place));
}
