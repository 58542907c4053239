// KOVSrvEltClassBuilderImpl: one way of grouping elements into classes, behind
// KOVSrvEltClassificationBuilder. Objects live on the stack of whoever builds; they are not deleted
// through this class.
#pragma once

#include "KOVExport.h"
#include "KOVSimPosition.h"
#include "mem.h"

class KOV_EXPORT KOVSrvEltClassBuilderImpl : public mem_AllocationOperators {
  public:
    /// Builds the classification of the mesh under `focus`, the root record, in a transaction of
    /// its own, and gives its position; null if there is nothing to classify.
    virtual KOVSimPosition BuildEltClassification(KOVSimPosition focus) = 0;

  protected:
    KOVSrvEltClassBuilderImpl() = default;
    KOVSrvEltClassBuilderImpl(KOVSrvEltClassBuilderImpl const&) = default;
    KOVSrvEltClassBuilderImpl& operator=(KOVSrvEltClassBuilderImpl const&) = default;
    ~KOVSrvEltClassBuilderImpl() = default;
};
