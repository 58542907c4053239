#include "KOVObjElementClassification.h"

#include "KOVSimSchema.h"
#include "KOVSimSet.h"

void KOVObjElementClassification::AppendElementClass(KOVSimPosition const& elementClass) const {
    m_classification.GetSet(schema::ElementClassification_elementClasses()).Insert(elementClass);
}

KOVSimPosition KOVObjElementClassification::GetMembership() const {
    return m_classification.GetPosition(schema::ElementClassification_membership());
}

void KOVObjElementClassification::SetMembership(KOVSimPosition const& dset) const {
    m_classification.SetPosition(schema::ElementClassification_membership(), dset);
}
