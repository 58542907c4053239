#include "KOVSimDatabase.h"

#include "KOVSimPosition.h"
#include "document/store/Context.h"

KOVSimDatabase::KOVSimDatabase(KOVSimPosition const& position) {
    if (!position.IsNull())
        m_context = kov::store::Context::Of(position.ID().context).shared_from_this();
}

bool KOVSimDatabase::IsClosed() const {
    // Asked of the register of open contexts, which answers in a forked child too.
    return !m_context || m_context->IsClosed() ||
           kov::store::Context::Find(m_context->ID()) == nullptr;
}

KOVSimContextID KOVSimDatabase::ContextID() const {
    return IsClosed() ? KOVSimContextID() : m_context->ID();
}
