#include "KOVSrvSetMapperFactory.h"

#include "KOVAssert.h"
#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimException.h"
#include "KOVSimSchema.h"

namespace {

KOVSimPosition Model(KOVSimPosition const& position) {
    return KOVObjDocument(position.Doc()).GetModel();
}

// The collection is named by its number alone, and has a type where the set is one.
KOVSimPosition CollectionOf(KOVSimCSet const& set) {
    KOVSimCSetID const id = set.ID();
    return KOVSimCollectionID(id.ContextID(), id.Parent(), id.TypeID(), 0);
}

KOVSimCMemberMap Mapper(KOVSimPosition const& position, int link) {
    KOVSimPosition const record = Model(position.Focus()).GetPosition(link);
    KOVSimCSet const permutation = record.GetPosition(schema::Mapper_permutation()).CSet();
    KOVSimCSet const base = record.GetPosition(schema::Mapper_base()).CSet();
    return KOVSimCMemberMap::Create(permutation, base);
}

KOVSimCSetID Permutation(KOVSimPosition const& position, int link) {
    KOVSimPosition const record = Model(position.Focus()).GetPosition(link);
    return record.GetPosition(schema::Mapper_permutation()).GetCSet();
}

KOVSimCSetID ActiveOrdinals(KOVSimPosition const& position, int link) {
    KOVSimPosition const model = position.Focus().GetPosition(schema::Focus_model());
    return model.GetPosition(schema::Model_mesh()).GetPosition(link).GetCSet();
}

}  // namespace

void KOVSrvSetMapperFactory::PersistMapper(KOVSimPosition const& permutation,
                                           KOVSimPosition const& base) {
    if (base.IsNull()) {
        KOVSimException::ThrowText("cannot persist a mapper: the position of the base set is null");
    }
    if (permutation.IsNull()) {
        KOVSimException::ThrowText(
            "cannot persist a mapper: the position of the permuted set is null");
    }
    KOVSimPosition const record = base.CreateDataRecord(schema::Mapper()).Pos();
    KOVSimPosition const collection = CollectionOf(KOVSimCSet(base));
    record.SetPosition(schema::Mapper_base(), KOVSimPosition(base.ID()));
    record.SetPosition(schema::Mapper_permutation(), KOVSimPosition(permutation.ID()));

    int const type = collection.TypePosition();
    int link = -1;
    if (type == schema::MeshNodeCollection()) {
        link = schema::Model_nodeMapper();
    } else if (type == schema::MeshElementCollection()) {
        link = schema::Model_elementMapper();
    } else if (type == schema::MeshDofCollection()) {
        link = schema::Model_dofMapper();
    } else {
        KOV_UTT_ASSERT(0);
    }
    Model(base).SetPosition(link, record);
}

KOVSimCMemberMap KOVSrvSetMapperFactory::NodeMapper(KOVSimPosition position) {
    return Mapper(position, schema::Model_nodeMapper());
}
KOVSimCMemberMap KOVSrvSetMapperFactory::ElementMapper(KOVSimPosition position) {
    return Mapper(position, schema::Model_elementMapper());
}
KOVSimCMemberMap KOVSrvSetMapperFactory::DofMapper(KOVSimPosition position) {
    return Mapper(position, schema::Model_dofMapper());
}

KOVSimCSetID KOVSrvSetMapperFactory::GetPermutationNodes(KOVSimPosition position) {
    return Permutation(position, schema::Model_nodeMapper());
}
KOVSimCSetID KOVSrvSetMapperFactory::GetPermutationElements(KOVSimPosition position) {
    return Permutation(position, schema::Model_elementMapper());
}

KOVSimCSetID KOVSrvSetMapperFactory::GetActiveNodalOrdinals(KOVSimPosition position) {
    return ActiveOrdinals(position, schema::Mesh_activeNodes());
}
KOVSimCSetID KOVSrvSetMapperFactory::GetActiveElementOrdinals(KOVSimPosition position) {
    return ActiveOrdinals(position, schema::Mesh_activeElements());
}
