#include "KOVSrvEltClassBuilderImplShape.h"

#include "KOVAssert.h"
#include "KOVObjElementClass.h"
#include "KOVObjElementClassification.h"
#include "KOVObjMesh.h"
#include "KOVObjModel.h"
#include "KOVSimArray.h"
#include "KOVSimCollection.h"
#include "KOVSimCompartment.h"
#include "KOVSimContext.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"

namespace {

using Compartments = KOVSimCtation::Array;
using Records = KOVSimArray<KOVSimDynamicID, KOVSimArrayCopyClassPolicy<KOVSimDynamicID>>;
using Indices = KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>;

// The one specification of a compartment of the assignment.
int SpecificationOf(KOVSimCSet const& specCSet) {
    KOV_UTT_ASSERT(specCSet.Size() == 1);
    int spec = -1;
    specCSet.Members(&spec);
    return spec;
}

// The index of a record in `collection`, or in the collection that it is a member of.
Indices Membership(KOVSimContext const& context, KOVSimPosition const& record,
                   KOVSimCollectionID collection) {
    Records records(1, 0);
    records.Get(0) = record.ID();
    Indices indices;
    context.GetCMembership(records, collection, indices);
    return indices;
}

// A new class for the shape of an element specification, as a set of one member of the collection.
KOVSimCSetID NewClass(KOVObjMesh& mesh, KOVObjElementClassification const& classification,
                      KOVSimCollection& classCollection, KOVSimPosition const& specification) {
    KOVObjElementClass cls;
    cls.Register(mesh, specification);
    classification.AppendElementClass(cls);
    Indices const CMembers =
        Membership(specification.Context(), KOVSimPosition(cls), classCollection.ID());
    KOV_UTT_ASSERT(CMembers.Size() == 1);
    int const member = CMembers.ConstGet(0);
    return classCollection.CreateCSet(&member, 1, false);
}

// Without the holes that the shapes leave which no element has.
Compartments Compacted(Compartments const& classes, int classCount) {
    Compartments result(classCount, 0);
    int next = 0;
    for (KOVSimCompartment const& compartment : classes) {
        if (compartment.Size() > 0) result.Get(next++) = compartment;
    }
    return result;
}

}  // namespace

KOVSimPosition KOVSrvEltClassBuilderImplShape::BuildEltClassification(KOVSimPosition focus) {
    KOVObjModel const model(focus.GetPosition(schema::Focus_model()));
    KOVObjMesh mesh(model.GetMesh());
    KOVSimCollection const elements(mesh.GetElementCollection().GetCollection());
    KOVSimCollection const specifications(focus.GetPosition(schema::Focus_sharedCollections())
                                              .GetPosition(schema::FocusShared_elementSpecs())
                                              .GetCollection());
    KOVSimPosition const assignment = mesh.GetElementSpecAssignment();
    if (assignment.IsNull()) return {};
    Compartments const source = KOVSimDSet(assignment.GetDSet()).GetCtation().Compartments();

    KOVSimContext const context = focus.Context();
    KOVSimTransaction transaction(context.ID());
    KOVSimPosition const position = focus.CreateDataRecord(schema::ElementClassification()).Pos();
    KOVObjElementClassification const classification(position);
    mesh.SetElementClassification(position);
    KOVSimCollection classCollection(
        focus.CreateTypedCollection(source.Size(), schema::ElementClassCollection()));
    mesh.SetElementClassCollection(classCollection.ID());

    Compartments classes;  // by index of the shape
    int classCount = 0;
    for (KOVSimCompartment const& eltSpecCompartement : source) {
        int const eltSpecColIndex = eltSpecCompartement.Position(specifications.ID());
        int const eltColIndex = eltSpecCompartement.Position(elements.ID());
        KOV_UTT_ASSERT(eltColIndex != -1 && eltSpecColIndex != 1);
        KOV_UTT_ASSERT(eltSpecCompartement.Size() == 2);
        int const spec = SpecificationOf(eltSpecCompartement.CSet(eltSpecColIndex));
        KOVSimCSet const& elementCSet = eltSpecCompartement.CSet(eltColIndex);

        KOVSimPosition const specRecord = context.GetRecord(specifications.ID(), spec);
        KOVSimPosition const shape = specRecord.GetPosition(schema::ElementSpec_shape());
        int const shapeIndex = Membership(context, shape, KOVSimCollectionID()).ConstGet(0);
        KOVSimCompartment existing;
        if (shapeIndex < classes.Size()) existing = classes.ConstGet(shapeIndex);

        // The sets themselves, not their IDs, by which a large one would be read again.
        KOVBasVector<KOVSimCSet> sets;
        if (existing.Size() == 0) {
            sets.PushBack(NewClass(mesh, classification, classCollection, specRecord));
            sets.PushBack(elementCSet);
            ++classCount;
        } else {
            KOVSimCSet joined = existing.CSet(existing.Position(elements.ID())).Union(elementCSet);
            joined.RegisterWithCollection();
            sets.PushBack(existing.CSet(existing.Position(classCollection.ID())));
            sets.PushBack(joined);
        }
        if (classes.Size() <= shapeIndex) classes.SetSize(shapeIndex + 1);
        classes.Get(shapeIndex) = KOVSimCompartment(sets);
    }

    KOVSimDSetID const membership = position.CreateTypedDSet(
        KOVSimCtation(Compacted(classes, classCount)), schema::ElementClassMembership());
    classification.SetMembership(membership);
    transaction.Commit();
    return position;
}
