#include "KOVSrvGetReferenceKey.h"

#include "KOVSimSet.h"

bool KOVSrvGetReferenceKey(KOVSimPosition const& position, int member, KOVString& key) {
    if (position.ReferrersSet(member).Size() != 1) return false;
    key = position.GetReferenceKey(member);
    return true;
}
