// Documents with element specifications, and assignments of them to elements.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "KOVSrvEltClassificationBuilder.h"
#include "services/MeshFixture.h"
#include "zdm_ShapeSymbols.h"

namespace kov::test {

class ClassDocument : public MeshDocument {
  public:
    using MeshDocument::MeshDocument;
    using Sets = KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>;
    using Compartments = KOVSimCtation::Array;

    KOVSimCollection Specifications() const {
        return KOVSimCollection(document.GetElementSpecCollection().GetCollection());
    }
    KOVSimPosition Shape(int symbol) const {
        KOVSimCollectionID const shapes = document.GetShapeCollection().GetCollection();
        return document.GetRecord(shapes, symbol);
    }
    KOVSimPosition Specification(int index) const {
        return document.GetRecord(Specifications().ID(), index);
    }
    /// A new specification with a name of its own; gives its index. In a transaction.
    int NewSpecification(KOVSimPosition const& shape, char const* name = "") const {
        KOVSimPosition const made =
            document.GetElementSpecCollection().AppendMember(schema::ElementSpec());
        made.SetName(name);
        made.SetPosition(schema::ElementSpec_shape(), shape);
        return document.GetCMemberIndex(made);
    }
    /// Adds one specification for each shape in a transaction; their indices follow one another.
    void AddSpecifications(std::vector<int> const& shapes) const {
        auto const transaction = Write();
        for (int shape : shapes) NewSpecification(Shape(shape));
        transaction->Commit();
    }
    KOVSimCSetID Spec(std::vector<int> const& indices) const {
        return Set(Specifications(), indices);
    }
    static KOVSimCompartment Compartment(std::initializer_list<KOVSimCSetID> const& ids) {
        Sets sets(static_cast<int>(ids.size()));
        int at = 0;
        for (KOVSimCSetID const& id : ids) sets.Get(at++) = id;
        return KOVSimCompartment(sets);
    }
    /// Gives the mesh these compartments as its assignment.
    void Assign(std::vector<KOVSimCompartment> const& given) const {
        Compartments compartments(static_cast<int>(given.size()));
        for (std::size_t i = 0; i < given.size(); ++i) {
            compartments.Get(static_cast<int>(i)) = given[i];
        }
        auto const transaction = Write();
        Mesh().SetElementSpecAssignment(document.GetMesh().CreateTypedDSet(
            KOVSimCtation(compartments), schema::ElementSpecAssignment()));
        transaction->Commit();
    }
    /// The same of pairs (specification, its elements).
    void Assign(std::vector<std::pair<int, std::vector<int>>> const& given) const {
        std::vector<KOVSimCompartment> compartments;
        for (auto const& [spec, members] : given) {
            compartments.push_back(Compartment({Spec({spec}), Elements(members)}));
        }
        Assign(compartments);
    }

    KOVSimPosition Build() const {
        return KOVSrvEltClassificationBuilder(document.Focus())
            .BuildEltClassification(KOVSrvEltClassificationByShape);
    }

    /// One class as it stands in the document.
    struct Class {
        int member;
        std::vector<int> elements;
        bool operator==(Class const& other) const {
            return member == other.member && elements == other.elements;
        }
    };
    /// The compartments of a classification's membership, in order.
    static std::vector<Class> Membership(KOVSimPosition const& classification) {
        std::vector<Class> classes;
        KOVSimDSet const membership(
            classification.GetPosition(schema::ElementClassification_membership()));
        for (KOVSimCompartment const& compartment : membership.GetCtation().Compartments()) {
            EXPECT_EQ(compartment.Size(), 2);
            std::vector<int> const members = Members(compartment.CSet(0));
            EXPECT_EQ(members.size(), 1U);
            classes.push_back({members.at(0), Members(compartment.CSet(1))});
        }
        return classes;
    }
    /// The specifications of a classification's classes in the order of the classes' members.
    std::vector<int> SpecificationsOfClasses(KOVSimPosition const& classification) const {
        std::vector<int> indices;
        KOVSimSet const classes =
            classification.GetSet(schema::ElementClassification_elementClasses());
        int member = 0;
        for (KOVSimSetiterator at = classes.Begin(); at.NotDone(); ++at) {
            EXPECT_EQ(document.GetCMemberIndex(*at), member++);
            indices.push_back(
                document.GetCMemberIndex((*at).GetPosition(schema::ElementClass_elementSpec())));
        }
        return indices;
    }
    int ClassSpace() const {
        return KOVSimCollection(Mesh().GetElementClassCollection().GetCollection()).Space();
    }
};

}  // namespace kov::test
