#include "ElementClasses.h"

#include "KOVObjElementClass.h"
#include "KOVObjElementClassification.h"
#include "KOVObjMesh.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransaction.h"
#include "KOVSrvEltClassificationBuilder.h"

namespace kov::tool {

int ClassifyElements(KOVObjDocument const& document) {
    KOVObjElementClassification const classification(
        KOVSrvEltClassificationBuilder(document.Focus())
            .BuildEltClassification(KOVSrvEltClassificationByShape));
    KOVSimDSet const membership(classification.GetMembership());
    if (membership.IsNull()) return 0;
    KOVSimCollectionID const elements =
        KOVObjMesh(document.GetMesh()).GetElementCollection().GetCollection();
    KOVSimTransaction transaction(document.ContextID());
    int classes = 0;
    for (KOVSimCompartment const& compartment : membership.GetCtation().Compartments()) {
        int const elementsAt = compartment.Position(elements);
        if (elementsAt < 0) continue;
        KOVSimCSet const& members = compartment.CSet(1 - elementsAt);
        for (int i = 0; i < members.Size(); ++i) {
            KOVSimPosition const elementClass(
                document.GetRecord(members.CollectionID(), members[i]));
            KOVObjElementClass(elementClass).SetElementCSet(compartment.CSet(elementsAt).Pos());
            ++classes;
        }
    }
    transaction.Commit();
    return classes;
}

int CountElementClasses(KOVObjDocument const& document) {
    KOVSimPosition const classification = KOVObjMesh(document.GetMesh()).GetElementClassification();
    return classification.GetSet(schema::ElementClassification_elementClasses()).Size();
}

}  // namespace kov::tool
