#include "KOVObjMeshedField.h"

#include "KOVSimDataRecord.h"
#include "KOVSimDrawer.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"

namespace {

/// The field of a meshed field's record that keeps its grid type.
constexpr int GridTypeField = 0;

}  // namespace

KOVSimPosition KOVObjMeshedField::GetDistribution() const {
    KOVSimPosition const set = m_field.GetPosition(schema::Field_distribution());
    if (!set.IsNull()) return set;
    KOVSimSetiterator const serial = m_field.GetSet(schema::Field_serialFields()).Begin();
    if (serial.Done()) return {};
    KOVSimSetiterator const drawer = (*serial).GetSet(schema::SerialField_drawers()).Begin();
    if (drawer.Done() || (*drawer).GetDrawer().IsNull()) return {};
    return KOVSimDrawer((*drawer).GetDrawer()).DistributionID();
}

void KOVObjMeshedField::SetDistribution(KOVSimPosition const& distribution) const {
    m_field.SetPosition(schema::Field_distribution(), distribution);
}

int KOVObjMeshedField::GetGridType() const {
    // Type numbers of a document equal type indices.
    KOVSimTypeID type = -1;
    m_field.GetDataRecord().GetTypeID(GridTypeField, type);
    return type;
}
