#include <cmath>
#include <limits>
#include <vector>

#include "services/ShellFixture.h"

namespace kov::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNone = -std::numeric_limits<double>::max();
constexpr auto None = KOVSrvShellSection::VariationNone;
constexpr auto Constant = KOVSrvShellSection::VariationConstant;
constexpr auto Distributed = KOVSrvShellSection::VariationDistributed;

template <class T>
std::vector<T> List(KOVBasVector<T> const& vector) {
    return {vector.begin(), vector.end()};
}

// Section 0 has 3 layers on the elements 0 to 9, section 4 has 5 on 20 to 24, section 6 has none.
class ShellSection : public testing::TestWithParam<Medium> {
  protected:
    ShellSection() {
        InTransaction([&] {
            mesh.AddCollections();
            mesh.Assign(0, 3, Range(0, 10));
            mesh.Assign(4, 5, Range(20, 5));
            mesh.Assign(6, 0, Range(30, 5));
        });
    }
    ~ShellSection() override { EndBulk(); }
    template <class Work>
    void InTransaction(Work work) {
        auto const transaction = mesh.Write();
        work();
        transaction->Commit();
    }
    void Write() {
        mesh.WriteBulk();
        mesh.Reopen();
    }
    void AppendField(int layer, std::vector<int> const& members) {
        InTransaction([&] {
            Bulk().AppendDistThickness(
                layer, mesh.ElementSet(members),
                mesh.NewField(members, std::vector<double>(members.size(), 0.5)));
        });
    }
    KOVSrvShellSection Section(int assignment = 0) const {
        return KOVSrvShellSection(mesh.Assignment(assignment));
    }
    // The indices of members; -1 for null positions.
    std::vector<int> Indices(KOVBasVector<KOVSimPosition> const& records) const {
        std::vector<int> indices;
        for (KOVSimPosition const& record : records) {
            indices.push_back(record.IsNull() ? -1 : mesh.document.GetCMemberIndex(record));
        }
        return indices;
    }
    // The distribution of thicknesses by element, made by hand.
    KOVSimDistributionID LinkDistThicknesses() {
        KOVSimDistributionID const made =
            mesh.NewDistribution(KOVSimCollection(mesh.Slots().GetCollection()), mesh.elements,
                                 KOVSimRangeType(KOVSimTypeKeyDouble));
        KOVSimPosition const field = mesh.document.CreateDataRecord(schema::Field_Meshed()).Pos();
        KOVObjMeshedField(field).SetDistribution(made);
        mesh.BulkRecord().SetPosition(schema::BulkShellLayers_distThicknesses(), field);
        return made;
    }

    ShellDocument mesh{GetParam(), 10, 100};
};
INSTANTIATE_TEST_SUITE_P(Media, ShellSection, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(ShellSection, LayersComeBackByNumber) {
    for (int layer = 0; layer < 3; ++layer) {
        Bulk().AppendMaterial(layer, 0, 2 + layer);
        Bulk().AppendOrientation(layer, 0, 3 + layer);
        Bulk().AppendPly(layer, 0, 9 - layer);
        Bulk().AppendNumSectionPoints(layer, 0, 3 + 2 * layer);
        Bulk().AppendConstThickness(layer, 0, 0.25 * layer);
        Bulk().AppendConstAngle(layer, 0, 45 * layer);
    }
    Write();
    KOVSrvShellSection const section = Section();
    EXPECT_EQ(section.GetNumLayers(), 3);
    EXPECT_THAT(Indices(section.GetMaterials()), ElementsAre(2, 3, 4));
    EXPECT_THAT(Indices(section.GetOrientations()), ElementsAre(3, 4, 5));
    EXPECT_THAT(Indices(section.GetPlies()), ElementsAre(9, 8, 7));
    EXPECT_THAT(List(section.GetSectionPoints()), ElementsAre(3, 5, 7));
    EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(0, 0.25, 0.5));
    EXPECT_THAT(List(section.GetConstRotationAngles()), ElementsAre(0, 45, 90));
    EXPECT_THAT(List(section.GetThicknessVariation()), ElementsAre(Constant, Constant, Constant));
    EXPECT_THAT(List(section.GetRotationAngleVariation()),
                ElementsAre(Constant, Constant, Constant));
}

TEST_P(ShellSection, RecordsAreMembersOfTheirCollections) {
    Bulk().AppendMaterial(1, 0, 2);
    Bulk().AppendOrientation(1, 0, 2);
    Bulk().AppendPly(1, 0, 2);
    Write();
    KOVSrvShellSection const section = Section();
    auto const member = [&](KOVSimPosition const& collection) {
        return mesh.document.GetRecord(collection.GetCollection(), 2);
    };
    EXPECT_EQ(section.GetMaterials()[1].ID(), member(mesh.document.GetMaterialCollection()));
    EXPECT_EQ(section.GetOrientations()[1].ID(), member(mesh.Orientations()));
    EXPECT_EQ(section.GetPlies()[1].ID(), member(mesh.Plies()));
}

TEST_P(ShellSection, SetsTellWhereTheSectionStands) {
    Write();
    KOVSrvShellSection const section = Section(1);
    EXPECT_THAT(Members(section.GetSectionSet()), ElementsAre(4));
    EXPECT_EQ(section.GetSectionSet().CollectionID(), mesh.Sections().GetCollection());
    EXPECT_THAT(Members(section.GetLayerSet()), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_EQ(section.GetLayerSet().CollectionID(), mesh.Slots().GetCollection());
    EXPECT_EQ(Members(section.GetElementSet()), Range(20, 5));
    EXPECT_LT(section.GetSectionSet().ID().Minor(), -1);
    EXPECT_LT(section.GetLayerSet().ID().Minor(), -1);
}

TEST_P(ShellSection, LayersWithoutADatumHaveNone) {
    Bulk().AppendMaterial(1, 0, 2);
    Bulk().AppendOrientation(1, 4, 2);
    Bulk().AppendPly(2, 0, 2);
    Bulk().AppendNumSectionPoints(0, 0, 3);
    Bulk().AppendNumSectionPoints(1, 4, 3);
    Bulk().AppendConstThickness(1, 0, 0.5);
    Bulk().AppendConstAngle(2, 4, 0.5);
    Write();
    KOVSrvShellSection const section = Section();
    EXPECT_THAT(Indices(section.GetMaterials()), ElementsAre(-1, 2, -1));
    EXPECT_THAT(Indices(section.GetOrientations()), ElementsAre(-1, -1, -1));
    EXPECT_THAT(Indices(section.GetPlies()), ElementsAre(-1, -1, 2));
    EXPECT_THAT(List(section.GetSectionPoints()), ElementsAre(3, -1, -1));
    EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(kNone, 0.5, kNone));
    EXPECT_THAT(List(section.GetThicknessVariation()), ElementsAre(None, Constant, None));
    EXPECT_THAT(List(section.GetConstRotationAngles()), ElementsAre(kNone, kNone, kNone));
    EXPECT_THAT(List(section.GetRotationAngleVariation()), ElementsAre(None, None, None));
}

TEST_P(ShellSection, ASectionOfNoLayersIsEmptyAndTouchesNoDocument) {
    Bulk().AppendMaterial(0, 6, 2);
    Bulk().AppendConstThickness(0, 6, 2);
    Write();
    KOVSrvShellSection const section = Section(2);
    EXPECT_EQ(Members(section.GetElementSet()), Range(30, 5));
    mesh.document.Close();
    EXPECT_EQ(section.GetNumLayers(), 0);
    EXPECT_THAT(List(section.GetMaterials()), IsEmpty());
    EXPECT_THAT(List(section.GetOrientations()), IsEmpty());
    EXPECT_THAT(List(section.GetPlies()), IsEmpty());
    EXPECT_THAT(List(section.GetSectionPoints()), IsEmpty());
    EXPECT_THAT(List(section.GetConstThicknesses()), IsEmpty());
    EXPECT_THAT(List(section.GetConstRotationAngles()), IsEmpty());
    EXPECT_THAT(List(section.GetThicknessVariation()), IsEmpty());
    EXPECT_TRUE(section.GetSectionSet().ID().IsNull());
    EXPECT_TRUE(section.GetLayerSet().CollectionID().IsNull());
}

TEST_P(ShellSection, AModelWithoutBulkRecordHasNoDatum) {
    mesh.Reopen();
    KOVSrvShellSection const section = Section();
    EXPECT_THAT(Indices(section.GetMaterials()), ElementsAre(-1, -1, -1));
    EXPECT_THAT(Indices(section.GetOrientations()), ElementsAre(-1, -1, -1));
    EXPECT_THAT(Indices(section.GetPlies()), ElementsAre(-1, -1, -1));
    EXPECT_THAT(List(section.GetSectionPoints()), ElementsAre(-1, -1, -1));
    EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(kNone, kNone, kNone));
    EXPECT_THAT(List(section.GetConstRotationAngles()), ElementsAre(kNone, kNone, kNone));
    EXPECT_THAT(List(section.GetThicknessVariation()), ElementsAre(None, None, None));
    EXPECT_THAT(List(section.GetRotationAngleVariation()), ElementsAre(None, None, None));
}

TEST_P(ShellSection, ABulkRecordWithoutMembersHasNoDatum) {
    Write();
    KOVSrvShellSection const section = Section();
    EXPECT_THAT(Indices(section.GetPlies()), ElementsAre(-1, -1, -1));
    EXPECT_THAT(List(section.GetSectionPoints()), ElementsAre(-1, -1, -1));
    EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(kNone, kNone, kNone));
}

TEST_P(ShellSection, StoresWithoutDrawersHaveNoDatum) {
    Write();
    InTransaction([&] {
        KOVSimCollection const slots(mesh.Slots().GetCollection());
        KOVSimCollection const sections(mesh.Sections().GetCollection());
        mesh.BulkRecord().SetPosition(
            schema::BulkShellLayers_plies(),
            mesh.NewDistribution(slots, sections, KOVSimRangeType(KOVSimTypeKeyInt)));
        KOVSimPosition const field = mesh.document.CreateDataRecord(schema::Field_Meshed()).Pos();
        KOVObjMeshedField(field).SetDistribution(
            mesh.NewDistribution(slots, sections, KOVSimRangeType(KOVSimTypeKeyDouble)));
        mesh.BulkRecord().SetPosition(schema::BulkShellLayers_constAngles(), field);
    });
    KOVSrvShellSection const section = Section();
    EXPECT_THAT(Indices(section.GetPlies()), ElementsAre(-1, -1, -1));
    EXPECT_THAT(List(section.GetConstRotationAngles()), ElementsAre(kNone, kNone, kNone));
}

TEST_P(ShellSection, RecordsWithoutTheirCollectionAreNull) {
    Bulk().AppendOrientation(0, 0, 2);
    Bulk().AppendPly(0, 0, 2);
    Write();
    InTransaction([&] {
        mesh.Model().SetPosition(schema::Model_orientations(), KOVSimPosition());
        mesh.Model().SetPosition(schema::Model_bulkPlies(), KOVSimPosition());
    });
    KOVSrvShellSection const section = Section();
    EXPECT_THAT(Indices(section.GetOrientations()), ElementsAre(-1, -1, -1));
    EXPECT_THAT(Indices(section.GetPlies()), ElementsAre(-1, -1, -1));
}

TEST_P(ShellSection, ALayerWithValuesOnAllElementsIsDistributed) {
    AppendField(0, Range(0, 10));
    AppendField(1, Range(0, 9));
    AppendField(2, Range(0, 50));
    Write();
    KOVSrvShellSection const section = Section();
    EXPECT_THAT(List(section.GetThicknessVariation()), ElementsAre(Distributed, None, Distributed));
    EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(kNone, kNone, kNone));
    EXPECT_THAT(List(section.GetRotationAngleVariation()), ElementsAre(None, None, None));
}

TEST_P(ShellSection, DistributedAnglesAreTheAnglesAlone) {
    InTransaction([&] {
        Bulk().AppendDistAngle(1, mesh.ElementSet(Range(0, 10)),
                               mesh.NewField(Range(0, 10), std::vector<double>(10, 30)));
    });
    Bulk().AppendConstAngle(2, 0, 15);
    Write();
    KOVSrvShellSection const section = Section();
    EXPECT_THAT(List(section.GetRotationAngleVariation()),
                ElementsAre(None, Distributed, Constant));
    EXPECT_THAT(List(section.GetConstRotationAngles()), ElementsAre(kNone, kNone, 15));
    EXPECT_THAT(List(section.GetThicknessVariation()), ElementsAre(None, None, None));
}

TEST_P(ShellSection, ALayerWithBothKindsOfValuesIsConstant) {
    AppendField(0, Range(0, 10));
    AppendField(1, Range(0, 10));
    Bulk().AppendConstThickness(1, 0, 0.75);
    Write();
    KOVSrvShellSection const section = Section();
    EXPECT_THAT(List(section.GetThicknessVariation()), ElementsAre(Distributed, Constant, None));
    EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(kNone, 0.75, kNone));
}

TEST_P(ShellSection, DrawersOfLayersThatTheSectionDoesNotHaveAreSkipped) {
    for (int layer = 0; layer < 5; ++layer) {
        AppendField(layer, Range(0, 30));
        Bulk().AppendMaterial(layer, 4, layer);
    }
    Write();
    EXPECT_THAT(List(Section().GetThicknessVariation()),
                ElementsAre(Distributed, Distributed, Distributed));
    EXPECT_EQ(Section(1).GetThicknessVariation().Size(), 5);
    EXPECT_THAT(List(Section(1).GetThicknessVariation()), Each(Distributed));
    EXPECT_THAT(Indices(Section(1).GetMaterials()), ElementsAre(0, 1, 2, 3, 4));
}

TEST_P(ShellSection, AFieldOfDistributedValuesWithoutDrawersHidesTheConstants) {
    Bulk().AppendConstThickness(1, 0, 0.75);
    Bulk().AppendConstAngle(1, 0, 15);
    Write();
    InTransaction([&] { LinkDistThicknesses(); });
    mesh.Reopen();
    KOVSrvShellSection const section = Section();
    EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(kNone, kNone, kNone));
    EXPECT_THAT(List(section.GetThicknessVariation()), ElementsAre(None, None, None));
    EXPECT_THAT(List(section.GetConstRotationAngles()), ElementsAre(kNone, 15, kNone));
}

TEST_P(ShellSection, ASectionWithoutElementsIsCoveredByEveryDrawer) {
    InTransaction([&] { mesh.Assign(1, 3, {}); });
    AppendField(1, {50});
    Write();
    EXPECT_THAT(List(Section(3).GetThicknessVariation()), ElementsAre(None, Distributed, None));
}

TEST_P(ShellSection, NotANumberIsAValueAndTheSentinelIsNone) {
    Bulk().AppendConstThickness(0, 0, std::numeric_limits<double>::quiet_NaN());
    Bulk().AppendConstThickness(1, 0, kNone);
    Bulk().AppendConstThickness(2, 0, -std::numeric_limits<double>::infinity());
    Write();
    EXPECT_THAT(List(Section().GetThicknessVariation()), ElementsAre(Constant, None, Constant));
    EXPECT_TRUE(std::isnan(Section().GetConstThicknesses()[0]));
}

TEST_P(ShellSection, SectionPointsAreGivenAsTheyAreStored) {
    Bulk().AppendNumSectionPoints(0, 0, -1);
    Bulk().AppendNumSectionPoints(1, 0, -5);
    Bulk().AppendNumSectionPoints(2, 0, 0);
    Write();
    EXPECT_THAT(List(Section().GetSectionPoints()), ElementsAre(-1, -5, 0));
}

TEST_P(ShellSection, ASecondRequestReadsNothing) {
    Bulk().AppendMaterial(0, 0, 1);
    Bulk().AppendNumSectionPoints(0, 0, 1);
    Write();
    KOVSrvShellSection const section = Section();
    auto const* const materials = &section.GetMaterials();
    KOVSimPosition const* const entries = materials->Data();
    EXPECT_THAT(List(section.GetSectionPoints()), ElementsAre(1, -1, -1));
    EXPECT_THAT(Indices(section.GetPlies()), ElementsAre(-1, -1, -1));
    Bulk().AppendMaterial(0, 0, 2);
    Bulk().AppendPly(0, 0, 2);
    Bulk().AppendNumSectionPoints(0, 0, 2);
    mesh.WriteBulk();
    EXPECT_EQ(&section.GetMaterials(), materials);
    EXPECT_EQ(section.GetMaterials().Data(), entries);
    EXPECT_THAT(Indices(section.GetMaterials()), ElementsAre(1, -1, -1));
    EXPECT_THAT(List(section.GetSectionPoints()), ElementsAre(1, -1, -1));
    EXPECT_THAT(Indices(section.GetPlies()), ElementsAre(-1, -1, -1));
    EXPECT_THAT(Indices(Section().GetMaterials()), ElementsAre(2, -1, -1));
}

TEST_P(ShellSection, AReadThatFailsIsNotTriedAgain) {
    Bulk().AppendMaterial(1, 0, 10);
    Write();
    KOVSrvShellSection const section = Section();
    EXPECT_THROW(section.GetMaterials(), KOVSimException);
    EXPECT_THAT(Indices(section.GetMaterials()), ElementsAre(-1, -1, -1));
}

TEST_P(ShellSection, ConstantsAreReadWhenTheObjectIsBuiltAndOnUpdate) {
    Bulk().AppendConstThickness(0, 0, 1);
    Bulk().AppendConstAngle(0, 0, 10);
    Write();
    KOVSrvShellSection section = Section();
    Bulk().AppendConstThickness(1, 0, 2);
    Bulk().AppendConstAngle(1, 0, 20);
    mesh.WriteBulk();
    EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(1, kNone, kNone));
    auto const* const thicknesses = &section.GetConstThicknesses();
    section.UpdateThicknesses();
    EXPECT_EQ(&section.GetConstThicknesses(), thicknesses);
    EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(kNone, 2, kNone));
    EXPECT_THAT(List(section.GetThicknessVariation()), ElementsAre(None, Constant, None));
    EXPECT_THAT(List(section.GetConstRotationAngles()), ElementsAre(10, kNone, kNone));
    section.UpdateRotationAngles();
    EXPECT_THAT(List(section.GetConstRotationAngles()), ElementsAre(kNone, 20, kNone));
    EXPECT_THAT(List(section.GetRotationAngleVariation()), ElementsAre(None, Constant, None));
}

TEST_P(ShellSection, ADrawerOfDistributedValuesHoldsExactlyOneLayer) {
    Bulk().AppendConstThickness(0, 0, 1);
    Write();
    KOVSrvShellSection section = Section();
    for (std::vector<int> const& layers : {std::vector<int>{0, 1}, std::vector<int>{}}) {
        InTransaction([&] {
            KOVSimDistributionID const store = LinkDistThicknesses();
            KOVSimCollection const slots(mesh.Slots().GetCollection());
            MeshDocument::NewDrawer(store, MeshDocument::Set(slots, {1}),
                                    mesh.Elements(Range(0, 10)), std::vector<double>(10, 1));
            MeshDocument::NewDrawer(store, MeshDocument::Set(slots, layers), mesh.Elements({1}),
                                    std::vector<double>(layers.size(), 1));
        });
        ExpectThrownAssertion("layer.Size() == 1", "KOVSrvShellSection", [&] { Section(); });
        ExpectThrownAssertion("layer.Size() == 1", "KOVSrvShellSection",
                              [&] { section.UpdateThicknesses(); });
        // As far as it got.
        EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(kNone, kNone, kNone));
        EXPECT_THAT(List(section.GetThicknessVariation()), ElementsAre(None, Distributed, None));
    }
}

TEST_P(ShellSection, ASectionOutsideTheBulkSectionsIsRefused) {
    InTransaction([&] {
        KOVSimDataRecord const shell = mesh.document.CreateDataRecord(schema::Section_Shell());
        shell.SetInt(0, 1);
        mesh.Assign(shell.Pos(), {1});
    });
    EXPECT_THROW(Section(3), KOVSimException);
}

TEST_P(ShellSection, MoreLayersThanSlotsAreRefused) {
    InTransaction([&] { mesh.Assign(7, 6, {1}); });
    EXPECT_THROW(Section(3), KOVSimException);
}

TEST_P(ShellSection, IsReadFromADocumentThatIsOpenForReadingOnly) {
    Bulk().AppendMaterial(1, 0, 3);
    mesh.WriteBulk();
    mesh.Reopen(KOVObjDocument::ReadOnly);
    EXPECT_THAT(Indices(Section().GetMaterials()), ElementsAre(-1, 3, -1));
}

TEST_P(ShellSection, ACopyIsItsOwn) {
    Bulk().AppendMaterial(1, 0, 3);
    Write();
    KOVSrvShellSection const section = Section();
    KOVSrvShellSection copy = section;
    EXPECT_THAT(Indices(copy.GetMaterials()), ElementsAre(-1, 3, -1));
    copy = Section(1);
    EXPECT_EQ(copy.GetNumLayers(), 5);
    EXPECT_EQ(Indices(copy.GetMaterials()).size(), 5U);
    EXPECT_THAT(Indices(section.GetMaterials()), ElementsAre(-1, 3, -1));
}

}  // namespace
}  // namespace kov::test
