#include "KOVSrvGetNameFromID.h"

#include "KOVSimSchema.h"
#include "KOVSrvGetReferenceKey.h"

namespace {

KOVString NameInMaps(KOVSimCSetID const& id, int member, int otherMember) {
    KOVSimPosition const set(id);
    KOVString name;
    if (!KOVSrvGetReferenceKey(set, member, name)) KOVSrvGetReferenceKey(set, otherMember, name);
    return name;
}

}  // namespace

KOVString KOVSrvGetElementSetNameFromCSetID(KOVSimPosition const&, KOVSimCSetID const& id) {
    return NameInMaps(id, schema::Model_elementSets(), schema::Model_otherElementSets());
}

KOVString KOVSrvGetNodeSetNameFromCSetID(KOVSimPosition const&, KOVSimCSetID const& id) {
    return NameInMaps(id, schema::Model_nodeSets(), schema::Model_otherNodeSets());
}

KOVString KOVSrvGetSurfaceNameFromID(KOVSimPosition const&, KOVSimDynamicID const& id) {
    return KOVSimPosition(id).Name(-1);
}
