#include "KOVSimTypedIDs.h"

namespace {

KOVSimDynamicID CollectionWords(KOVSimContextID context, KOVSimIDMinor minor, KOVSimTypeID type) {
    KOVSimDynamicDataID data;
    data.parent = 0;
    data.minor = minor;
    return {KOVSimCategoryCollection, context, data, type, 0};
}

}  // namespace

KOVSimCollectionID::KOVSimCollectionID(KOVSimContextID context, KOVSimIDMinor minor,
                                       KOVSimTypeID type, int)
    : KOVSimTypedID(CollectionWords(context, minor, type)) {}

KOVSimCollectionID KOVSimCSetID::CollectionID() const {
    return IsNull() ? KOVSimCollectionID() : KOVSimCollectionID(ContextID(), Parent(), TypeID(), 0);
}
