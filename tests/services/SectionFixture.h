// A document whose model assigns sections to elements, and what the section services make of it in
// plain terms: assignments are told by their place in the model's vector.
#pragma once

#include <map>
#include <utility>
#include <vector>

#include "KOVSrvSectionServices.h"
#include "services/MeshFixture.h"

namespace kov::test {

/// The place of no assignment.
constexpr int kNobody = -1;

class SectionDocument : public MeshDocument {
  public:
    using MeshDocument::MeshDocument;

    KOVSimVector Assignments() const {
        return document.GetModel().GetVector(schema::Model_sectionAssignments());
    }
    KOVSimPosition Assignment(int place) const {
        KOVSimVectoriterator at = Assignments().Begin();
        while (place-- > 0) ++at;
        return *at;
    }
    /// The place of an assignment in the vector; kNobody for a null position.
    int PlaceOf(KOVSimPosition const& assignment) const {
        if (assignment.IsNull()) return kNobody;
        int place = 0;
        for (KOVSimVectoriterator at = Assignments().Begin(); at.NotDone(); ++at, ++place) {
            if ((*at).ID().Equal(assignment.ID())) return place;
        }
        ADD_FAILURE() << "no assignment of the model was given";
        return -2;
    }

    /// A persistent set of elements. In a transaction, as the four that follow.
    KOVSimPosition NewElementSet(std::vector<int> const& members) {
        return elements.CreateCSet(members.data(), static_cast<int>(members.size()), false);
    }
    KOVSimPosition NewRegion(KOVSimPosition const& elementSet) const {
        KOVSimPosition const region = document.CreateDataRecord(schema::Region()).Pos();
        region.SetPosition(schema::Region_elementsCluster(), elementSet);
        return region;
    }
    /// A null `region` or `elementSet` is left out.
    void AssignRegion(KOVSimPosition const& region) const {
        KOVSimPosition const made = document.CreateDataRecord(schema::SectionAssignment()).Pos();
        made.SetPosition(schema::SectionAssignment_region(), region);
        Assignments().PushBack(made);
    }
    void Assign(KOVSimPosition const& elementSet) const { AssignRegion(NewRegion(elementSet)); }
    void Assign(std::vector<int> const& members) { Assign(NewElementSet(members)); }

    /// Members of the pieces by the place of the assignment that governs them.
    using Governed = std::map<int, std::vector<int>>;
    Governed Ask(KOVSimPosition const& elementSet) const {
        Governed governed;
        for (auto const& [key, value] : KOVSrvSectionServices::GetSectionAssignments(elementSet)) {
            EXPECT_FALSE(key.CSet().ID().IsNull());
            bool const fresh = governed.emplace(PlaceOf(value), Members(key.CSet())).second;
            EXPECT_TRUE(fresh) << "two pieces have one assignment";
        }
        return governed;
    }
    int AskWhole(KOVSimPosition const& elementSet) const {
        return PlaceOf(KOVSrvSectionServices::GetSectionAssignment(elementSet));
    }
};

}  // namespace kov::test
