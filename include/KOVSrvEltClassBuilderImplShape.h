// KOVSrvEltClassBuilderImplShape: element classes by shape. All element specifications with one
// shape make one class.
//
// Classes are appended to the classification in the order in which their shapes are first met, and
// a class remembers the first specification of its shape only. The compartments of the dataset
// (classes, elements) ascend by the shape's index instead. The collection of classes has one member
// for each compartment of the assignment, however few classes there are. No element is visited:
// the cost is that of the unions of element sets.
#pragma once

#include "KOVExport.h"
#include "KOVSrvEltClassBuilderImpl.h"

class KOV_EXPORT KOVSrvEltClassBuilderImplShape final : public KOVSrvEltClassBuilderImpl {
  public:
    /// As KOVSrvEltClassificationBuilder::BuildEltClassification. Each compartment of the
    /// assignment is (one element specification, its elements), in this order. Throws
    /// KOVSimException if a specification has no shape.
    KOVSimPosition BuildEltClassification(KOVSimPosition focus) override;
};
