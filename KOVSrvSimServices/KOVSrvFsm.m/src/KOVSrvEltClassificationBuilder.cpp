#include "KOVSrvEltClassificationBuilder.h"

#include "KOVAssert.h"
#include "KOVSrvEltClassBuilderImplShape.h"

KOVSimPosition KOVSrvEltClassificationBuilder::BuildEltClassification(
    KOVSrvEltClassificationType type) const {
    KOVSimPosition classification;
    if (type == KOVSrvEltClassificationByShape) {
        KOVSrvEltClassBuilderImplShape builder;
        classification = builder.BuildEltClassification(m_focus);
    } else {
        KOV_UTT_ASSERT(!"Element Classification elaboration not yet implemented.");
    }
    return classification;
}
