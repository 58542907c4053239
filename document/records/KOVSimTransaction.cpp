#include "KOVSimTransaction.h"

#include "KOVSimException.h"
#include "document/store/Context.h"

using kov::store::Context;

KOVSimTransaction::KOVSimTransaction(KOVSimContextID context) : m_context(context) {
    Context::Of(context).Begin();
    m_open = true;
}

KOVSimTransaction::~KOVSimTransaction() {
    if (!m_open) return;
    // Closing the document has dropped the transaction already.
    Context* const context = Context::Find(m_context);
    if (!context || !context->InTransaction()) return;
    try {
        context->Rollback();
    } catch (KOVBasException const&) {
        // Nothing can be told from here; the context refuses whatever it can no longer do.
    }
}

void KOVSimTransaction::Commit() {
    if (!m_open)
        KOVSimException::ThrowText("cannot commit: the transaction has been committed already");
    Context& context = Context::Of(m_context);
    // A commit that fails drops the transaction itself; the destructor must not drop a later one.
    m_open = false;
    context.Commit();
}
