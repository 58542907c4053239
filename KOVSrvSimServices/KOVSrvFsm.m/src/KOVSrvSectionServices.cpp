#include "KOVSrvSectionServices.h"

#include "KOVAssert.h"
#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "KOVSimSchema.h"
#include "KOVSimVector.h"

namespace {

KOVSimVectoriterator AssignmentsBeside(KOVSimPosition const& elements) {
    KOVObjDocument const document{KOVSimDatabase(elements.Focus())};
    return document.GetModel().GetVector(schema::Model_sectionAssignments()).Begin();
}

// The element set of the assignment's region.
KOVSimPosition GovernedElements(KOVSimPosition const& assignment) {
    KOVSimPosition const region = assignment.GetPosition(schema::SectionAssignment_region());
    KOV_FATAL_ASSERT(!region.IsNull());
    KOVSimPosition const elsetPos = region.GetPosition(schema::Region_elementsCluster());
    KOV_FATAL_ASSERT(!elsetPos.IsNull());
    return elsetPos;
}

}  // namespace

KOVBasMap<KOVSimPosition, KOVSimPosition> KOVSrvSectionServices::GetSectionAssignments(
    KOVSimPosition elements) {
    KOVBasMap<KOVSimPosition, KOVSimPosition> governing;
    if (elements.IsNull()) return governing;
    KOVSimCSet remaining = elements.CSet();
    for (KOVSimVectoriterator at = AssignmentsBeside(elements); at.NotDone(); ++at) {
        KOVSimPosition const assignment = *at;
        KOVSimCSet common = GovernedElements(assignment).CSet().Intersection(remaining);
        if (common.IsEmpty()) continue;
        common.RegisterWithTempCollection();
        governing.InsertUnique(common.Pos(), assignment);
        remaining = remaining - common;
        remaining.RegisterWithTempCollection();
        if (remaining.IsEmpty()) break;
    }
    if (!remaining.IsEmpty()) governing.InsertUnique(remaining.Pos(), KOVSimPosition());
    return governing;
}

KOVSimPosition KOVSrvSectionServices::GetSectionAssignment(KOVSimPosition elements) {
    if (elements.IsNull()) return KOVSimPosition();
    KOVSimCSet const set = elements.CSet();
    for (KOVSimVectoriterator at = AssignmentsBeside(elements); at.NotDone(); ++at) {
        KOVSimPosition const assignment = *at;
        KOVSimPosition const governed = GovernedElements(assignment);
        if (governed.ID().Equal(elements.ID())) return assignment;
        if (governed.CSet().Intersection(set).Size() == set.Size()) return assignment;
    }
    return KOVSimPosition();
}
