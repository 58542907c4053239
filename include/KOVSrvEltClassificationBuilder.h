// KOVSrvEltClassificationBuilder: groups the elements of a document's mesh into element classes,
// and records the classes in the document.
//
// The mesh's assignment says which element specification each element has. All specifications of
// one shape make one class, which holds the union of their elements; further ways of grouping would
// be further values of KOVSrvEltClassificationType. What is written: a classification record with
// the classes, a collection of classes, and a dataset (classes, elements), all reached from the
// mesh. A plain value; nothing is kept between calls, and a second call makes a second
// classification and replaces the links of the mesh. Preconditions are checked assertions, which
// end the process.
#pragma once

#include "KOVExport.h"
#include "KOVSimPosition.h"

/// By what the elements are grouped. Only the values named here work.
enum KOVSrvEltClassificationType : int {
    KOVSrvEltClassificationByShape = 0,
};

class KOV_EXPORT KOVSrvEltClassificationBuilder {
  public:
    /// `focus`: the root record of the document.
    explicit KOVSrvEltClassificationBuilder(KOVSimPosition focus) : m_focus(focus) {}

    /// Builds the classification in a transaction of its own and commits it: none may be open on
    /// the document. Gives the position of the classification; null, with nothing written and no
    /// transaction opened, if the mesh has no assignment of element specifications.
    KOVSimPosition BuildEltClassification(KOVSrvEltClassificationType type) const;

  private:
    KOVSimPosition m_focus;
};
