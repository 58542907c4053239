// KOVSimTransaction: a write scope on one document, opened on the stack. One at a time for each
// document: a second is refused. What was written becomes lasting at `Commit()`; a transaction that
// ends without it leaves nothing behind.
//
//     closed --construct--> open --Commit()--> committed --destroy--> closed
//                             \--destroy--> undone: everything since the construction is dropped
#pragma once

#include "KOVExport.h"
#include "KOVSimDynamicID.h"

class KOV_EXPORT KOVSimTransaction {
  public:
    /// Opens a transaction. Throws if the document is closed or read-only, if a transaction is open
    /// on it already, and if a failed commit has stopped writing to it.
    explicit KOVSimTransaction(KOVSimContextID context);
    /// Drops the changes of an uncommitted transaction.
    ~KOVSimTransaction();
    KOVSimTransaction(KOVSimTransaction const&) = delete;
    KOVSimTransaction& operator=(KOVSimTransaction const&) = delete;

    /// Makes the changes lasting: when it has returned they survive a killed process and a power
    /// cut. Throws if that failed; the document then refuses further writing until it is reopened,
    /// and holds the commit whole or not at all.
    void Commit();
    KOVSimContextID ContextID() const { return m_context; }

  private:
    KOVSimContextID m_context;
    bool m_open = false;
};
