#include "KOVSimMap.h"

#include <string>
#include <string_view>

#include "document/records/Identity.h"
#include "document/records/Links.h"
#include "document/store/Context.h"
#include "document/store/Reference.h"

using namespace kov;
using records::Asked;
using records::Container;
using records::LinkKey;

namespace {

LinkKey KeyOf(KOVString const& text) {
    return LinkKey::Text({text.TextOrEmpty(), static_cast<std::size_t>(text.GetLengthInByte())});
}

}  // namespace

KOVSimMapiterator KOVSimMap::Begin() const {
    auto entries = std::make_shared<KOVSimMapiterator::Entries>();
    if (store::Context* const context = records::ToRead(m_owner.ID())) {
        records::LinkScan scan(*context, store::ToReference(m_owner.ID()), m_member,
                               Container::Map);
        while (scan.Next()) {
            std::string_view const text = scan.TextKey();
            KOVString key;
            key.BuildFromUTF8(text.data(), static_cast<int>(text.size()));
            entries->emplace_back(std::move(key), scan.Target());
        }
    }
    return KOVSimMapiterator(std::move(entries));
}

int KOVSimMap::Size() const {
    store::Context* const context = records::ToRead(m_owner.ID());
    return context ? records::CountLinks(*context, store::ToReference(m_owner.ID()), m_member,
                                         Container::Map)
                   : 0;
}

KOVSimPosition KOVSimMap::Find(KOVString const& key) const {
    store::Context* const context = records::ToRead(m_owner.ID());
    if (!context) return {};
    auto const target =
        records::FindLink(*context, store::ToReference(m_owner.ID()), m_member, KeyOf(key));
    return target ? KOVSimPosition(*target) : KOVSimPosition();
}

void KOVSimMap::Insert(KOVString const& key, KOVSimPosition const& target) const {
    Asked const asked{"insert into the map", m_member};
    store::Context& context = records::ToWrite(m_owner.ID(), asked);
    if (m_member < 0)
        records::Refuse(asked, m_owner.ID(), std::to_string(m_member) + " is no member");
    records::RequireTarget(context, target.ID(), asked, m_owner.ID());
    records::PutLink(context, store::ToReference(m_owner.ID()), m_member, KeyOf(key), target.ID());
}

void KOVSimMap::Remove(KOVString const& key) const {
    store::Context& context = records::ToWrite(m_owner.ID(), {"remove from the map", m_member});
    records::DropLink(context, store::ToReference(m_owner.ID()), m_member, KeyOf(key));
}
