#include "KOVObjModel.h"

#include "KOVSimMap.h"
#include "KOVSimSchema.h"

KOVSimPosition KOVObjModel::GetMesh() const { return m_model.GetPosition(schema::Model_mesh()); }

void KOVObjModel::SetMesh(KOVSimPosition const& mesh) const {
    m_model.SetPosition(schema::Model_mesh(), mesh);
}

KOVSimPosition KOVObjModel::GetStep(KOVString const& name) const {
    return m_model.GetMap(schema::Model_steps()).Find(name);
}
