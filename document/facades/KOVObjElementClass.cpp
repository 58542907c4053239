#include "KOVObjElementClass.h"

#include "KOVSimCollection.h"
#include "KOVSimSchema.h"
#include "document/records/Identity.h"
#include "document/records/Members.h"
#include "document/store/Context.h"

using namespace kov;

void KOVObjElementClass::Register(KOVObjMesh& mesh, KOVSimPosition const& specification) {
    records::Asked const asked{"register an element class"};
    KOVSimPosition const collection = mesh.GetElementClassCollection();
    if (collection.GetCollection().IsNull()) {
        records::Refuse(asked, KOVSimPosition(mesh).ID(),
                        "the mesh has no collection of element classes");
    }
    store::Context& context = records::ToWrite(collection.ID(), asked);
    int const index = records::FreeMember(context, collection.ID());
    if (index < 0) records::Refuse(asked, collection.ID(), "the collection has no free member");
    KOVSimPosition const made = collection.CreateMember(index, ::schema::ElementClass());
    made.SetPosition(::schema::ElementClass_elementSpec(), specification);
    m_class = made;
}

KOVSimPosition KOVObjElementClass::GetElementCSet() const {
    return m_class.GetPosition(::schema::ElementClass_elements());
}

void KOVObjElementClass::SetElementCSet(KOVSimPosition const& set) const {
    m_class.SetPosition(::schema::ElementClass_elements(), set);
}
