#include "ElementClasses.h"

#include <bitset>
#include <vector>

#include "DocumentReader.h"
#include "KOVObjElementClass.h"
#include "KOVObjElementClassification.h"
#include "KOVObjMesh.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransaction.h"
#include "KOVSimVector.h"
#include "KOVSrvEltClassificationBuilder.h"

namespace kov::tool {
namespace {

template <class F>
void ForMembers(KOVSimCSet const& set, F&& f) {
    KOVSimCSetIterator at(set);
    for (at.First(); !at.IsDone(); at.Next()) f(static_cast<std::size_t>(at.CurrentValue()));
}

}  // namespace

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

void LinkSectionsToClasses(KOVObjDocument const& document) {
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimVector const assignments =
        document.GetModel().GetVector(schema::Model_sectionAssignments());
    if (!assignments.Begin().NotDone()) return;
    // The class of each element, one more than its number; 0 for none.
    std::vector<unsigned char> classOf(
        static_cast<std::size_t>(SpaceAt(mesh.GetElementCollection())), 0);
    std::vector<KOVSimSet> sections;
    KOVSimSet const classes =
        mesh.GetElementClassification().GetSet(schema::ElementClassification_elementClasses());
    for (auto at = classes.Begin(); at.NotDone() && sections.size() < 255; ++at) {
        sections.push_back((*at).GetSet(schema::ElementClass_sections()));
        auto const number = static_cast<unsigned char>(sections.size());
        ForMembers(KOVObjElementClass(*at).GetElementCSet(), [&](std::size_t element) {
            if (element < classOf.size()) classOf[element] = number;
        });
    }
    KOVSimTransaction transaction(document.ContextID());
    for (auto at = assignments.Begin(); at.NotDone(); ++at) {
        KOVSimCSet const elements((*at)
                                      .GetPosition(schema::SectionAssignment_region())
                                      .GetPosition(schema::Region_elementsCluster()));
        std::bitset<256> met;
        ForMembers(elements, [&](std::size_t element) {
            if (element < classOf.size()) met.set(classOf[element]);
        });
        for (std::size_t i = 0; i < sections.size(); ++i) {
            if (!met.test(i + 1)) continue;
            sections[i].Insert((*at).GetPosition(schema::SectionAssignment_section()));
        }
    }
    transaction.Commit();
}

int CountElementClasses(KOVObjDocument const& document) {
    KOVSimPosition const classification = KOVObjMesh(document.GetMesh()).GetElementClassification();
    return classification.GetSet(schema::ElementClassification_elementClasses()).Size();
}

}  // namespace kov::tool
