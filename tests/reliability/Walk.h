// Walk: reads whatever a document holds, by every reading operation, expecting nothing of it. What
// a document's own exceptions refuse is passed over and counted; everything else passes through.
// For documents that may be damaged in any way.
#pragma once

#include "KOVObjDocument.h"

namespace reliability {

struct Walked {
    int objects = 0;
    int refusals = 0;
};

/// Follows all links from the focus, and reads what they lead to. Long things are read in part.
Walked Walk(KOVObjDocument const& document);

}  // namespace reliability
