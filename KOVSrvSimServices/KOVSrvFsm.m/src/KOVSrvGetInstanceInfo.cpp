#include "KOVSrvGetInstanceInfo.h"

#include "KOVObjLabeler.h"

bool KOVSrvGetInstanceInfo(KOVSimPosition const& focus, KOVSrvLabelerType type, int ordinal,
                           KOVString& instance, int& label) {
    KOVObjLabeler labeler(focus, type == 0 ? KOVObjLabelerNodes : KOVObjLabelerElements);
    labeler.Read();
    bool const found = labeler.GetOccurrenceForFlatMeshOrdinal(ordinal, instance);
    if (found) label = labeler.GetInstanceLabel(instance, ordinal);
    return found;
}
