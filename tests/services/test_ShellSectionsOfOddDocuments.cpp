// What the readers of shell layers make of documents of odd layouts.
#include <limits>

#include "KOVSrvShellSectionPoints.h"
#include "services/OddShellFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;

INSTANTIATE_TEST_SUITE_P(Media, OddShells, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(OddShells, AModelThatKnowsNothingOfLayersHasNoDatum) {
    ShellDocument plain(GetParam(), 10, 100);
    {
        auto const transaction = plain.Write();
        KOVSimDataRecord const shell = plain.document.CreateDataRecord(schema::Section_Shell());
        shell.SetInt(0, 3);
        plain.Assign(shell.Pos(), {1, 2});
        transaction->Commit();
    }
    plain.Reopen();
    KOVSrvShellSection section(plain.Assignment(0));
    ExpectNoDatum(section, 3);
    EXPECT_THAT(Members(section.GetElementSet()), ElementsAre(1, 2));
    EXPECT_TRUE(section.GetSectionSet().CollectionID().IsNull());
    EXPECT_TRUE(section.GetLayerSet().CollectionID().IsNull());
    section.UpdateThicknesses();
    section.UpdateRotationAngles();
    ExpectNoDatum(section, 3);
}

TEST_P(OddShells, StoresOfAModelWithoutTheCollectionOfSectionsOrOfLayersAreNotRead) {
    Bulk().AppendMaterial(0, 0, 1);
    Bulk().AppendOrientation(0, 0, 1);
    Bulk().AppendPly(0, 0, 1);
    Bulk().AppendNumSectionPoints(0, 0, 1);
    Bulk().AppendConstThickness(0, 0, 1);
    Bulk().AppendConstAngle(0, 0, 1);
    mesh.WriteBulk();
    for (int collection : {schema::Model_bulkSections(), schema::Model_bulkLayerSlots()}) {
        KOVSimPosition const linked = mesh.Model().GetPosition(collection);
        InTransaction([&] { mesh.Model().SetPosition(collection, KOVSimPosition()); });
        ExpectNoDatum(Section(), 2);
        InTransaction([&] { mesh.Model().SetPosition(collection, linked); });
    }
    EXPECT_THAT(List(Section().GetConstThicknesses()), ElementsAre(1, kNone));
    EXPECT_THAT(List(Section().GetThicknessVariation()), ElementsAre(Constant, None));
}

// Every bulk member leads to what `make` gives.
TEST_P(OddShells, MembersThatLeadToObjectsOfAnotherKindAreAbsent) {
    mesh.WriteBulk();
    std::function<KOVSimPosition()> const makers[] = {
        [&] { return Record(schema::Region()); }, [&] { return mesh.Slots(); },
        [&] { return mesh.ElementSet({1}); }, [&] { return mesh.Assignment(0); },
        [&] { return FieldOf(Record(schema::Region())); }};
    for (auto const& make : makers) {
        InTransaction([&] { LinkAll(make()); });
        mesh.Reopen();
        KOVSrvShellSection section = Section();
        ExpectNoDatum(section, 2);
        KOVSrvShellSectionPoints points(mesh.document);
        points.UpdateMap();
        EXPECT_EQ(points.GetNumSectionPoints(mesh.document.GetRecord(Sections().ID(), 0), 0), 0);
    }
}

TEST_P(OddShells, StoresOverOtherGridsAndOfOtherTypesAreRefused) {
    mesh.WriteBulk();
    KOVSimRangeType const ints(KOVSimTypeKeyInt), reals(KOVSimTypeKeyDouble);
    std::string const cut = "the buffer has ", grid = "the set given for dimension ",
                      flat = "there is no dimension 1";
    struct Odd {
        KOVSimDistributionID store;
        std::string refusal;
    };
    std::function<Odd()> const makers[] = {
        [&] {
            return Odd{Store(Slots(), Sections(), reals, {0}, {0}), cut};
        },
        [&] {
            return Odd{Store(Slots(), Sections(), reals, {0, 1}, {0}), cut};
        },
        [&] {
            return Odd{Store(Slots(), Sections(), reals, {}, {}), cut};
        },
        [&] {
            return Odd{Store(Sections(), Slots(), ints, {0}, {0}), grid};
        },
        [&] {
            return Odd{Store(Slots(), mesh.elements, ints, {0}, {0}), grid};
        },
        [&] {
            return Odd{Store(mesh.nodes, mesh.nodes, ints, {9}, {9}), grid};
        },
        [&] {
            return Odd{FlatStore(ints, {0}), flat};
        },
        [&] {
            return Odd{FlatStore(reals, {0, 1}), flat};
        }};
    for (auto const& make : makers) {
        std::string refusal;
        InTransaction([&] {
            Odd const odd = make();
            for (int member : kIntegers) Link(member, odd.store);
            refusal = odd.refusal;
        });
        mesh.Reopen();
        KOVSrvShellSection section = Section();
        for (auto const& ask : AllOf(section)) {
            EXPECT_THAT(OutcomeOf(ask), testing::HasSubstr(refusal));
        }
        // Not tried again.
        ExpectNoDatum(section, 2);
    }
}

TEST_P(OddShells, ConstantsOverOtherGridsAndOfOtherTypesAreRefused) {
    mesh.WriteBulk();
    KOVSimRangeType const ints(KOVSimTypeKeyInt), reals(KOVSimTypeKeyDouble);
    std::function<KOVSimDistributionID()> const makers[] = {
        [&] { return Store(Slots(), Sections(), ints, {0}, {0}); },
        [&] { return Store(Sections(), Slots(), reals, {0}, {0}); },
        [&] { return Store(Slots(), mesh.elements, reals, {0}, {0}); },
        [&] { return FlatStore(reals, {0}); }};
    KOVSrvShellSection section = Section();
    for (auto const& make : makers) {
        InTransaction([&] {
            Link(schema::BulkShellLayers_constThicknesses(), FieldOf(make()));
            Link(schema::BulkShellLayers_constAngles(), FieldOf(make()));
        });
        EXPECT_THROW(Section(), KOVSimException);
        EXPECT_THROW(section.UpdateThicknesses(), KOVSimException);
        EXPECT_THROW(section.UpdateRotationAngles(), KOVSimException);
        ExpectNoDatum(section, 2);
    }
}

TEST_P(OddShells, DistributedValuesOverOtherGridsAreRefusedWhereTheirLayerIsOneOfTheSection) {
    mesh.WriteBulk();
    KOVSimRangeType const reals(KOVSimTypeKeyDouble);
    std::function<KOVSimDistributionID(int)> const makers[] = {
        [&](int layer) { return Store(Slots(), Sections(), reals, {layer}, {0}); },
        [&](int layer) { return Store(Slots(), mesh.nodes, reals, {layer}, {0}); },
        [&](int layer) { return FlatStore(reals, {layer}); }};
    for (auto const& make : makers) {
        for (int layer : {1, 2}) {
            InTransaction(
                [&] { Link(schema::BulkShellLayers_distThicknesses(), FieldOf(make(layer))); });
            if (layer == 1) {
                EXPECT_THROW(Section(), KOVSimException);
            } else {
                ExpectNoDatum(Section(), 2);
            }
        }
    }
}

// A read of the section as a whole asks for no drawer of one layer; the counts of all sections do.
TEST_P(OddShells, DrawersOfSeveralLayersServeASectionAsAnyOther) {
    mesh.WriteBulk();
    InTransaction([&] {
        KOVSimDistributionID const store =
            mesh.NewDistribution(Slots(), Sections(), KOVSimRangeType(KOVSimTypeKeyInt));
        MeshDocument::NewDrawer<int>(store, MeshDocument::Set(Slots(), {0, 1, 4}),
                                     MeshDocument::Set(Sections(), {0, 7}), {3, 9, 5, 9, 7, 9});
        for (int member : kIntegers) Link(member, store);
    });
    mesh.Reopen();
    KOVSrvShellSection const section = Section();
    EXPECT_THAT(List(section.GetSectionPoints()), ElementsAre(3, 5));
    EXPECT_EQ(mesh.document.GetCMemberIndex(section.GetPlies()[1]), 5);
}

TEST_P(OddShells, MembersOutsideTheirCollectionAreRefusedAndCountsAreNot) {
    mesh.WriteBulk();
    InTransaction([&] {
        KOVSimDistributionID const store =
            mesh.NewDistribution(Slots(), Sections(), KOVSimRangeType(KOVSimTypeKeyInt));
        MeshDocument::NewDrawer<int>(store, MeshDocument::Set(Slots(), {0, 1}),
                                     MeshDocument::Set(Sections(), {0}), {0x7fffffff, -2});
        for (int member : kIntegers) Link(member, store);
    });
    mesh.Reopen();
    KOVSrvShellSection const section = Section();
    EXPECT_THROW(section.GetMaterials(), KOVSimException);
    EXPECT_THROW(section.GetOrientations(), KOVSimException);
    EXPECT_THROW(section.GetPlies(), KOVSimException);
    EXPECT_THAT(List(section.GetSectionPoints()), ElementsAre(0x7fffffff, -2));
    EXPECT_EQ(section.GetPlies().Size(), 2);
}

TEST_P(OddShells, LayerCountsThatFitNothingAreRefused) {
    InTransaction([&] {
        mesh.Assign(1, -1, {1});
        mesh.Assign(2, std::numeric_limits<int>::min(), {1});
        mesh.Assign(3, std::numeric_limits<int>::max(), {1});
        mesh.Assign(4, 6, {1});
    });
    mesh.Reopen();
    for (int assignment : {1, 2, 3, 4}) EXPECT_THROW(Section(assignment), KOVSimException);
}

TEST_P(OddShells, LayerCountsThatAreNoIntegersAreNone) {
    InTransaction([&] {
        KOVSimPosition const text = Record(schema::Section_Shell());
        text.DataRecord().SetString(0, "3");
        mesh.Assign(text, {1});
        KOVSimPosition const real = Record(schema::Section_Shell());
        real.DataRecord().SetDouble(0, 3.0);
        mesh.Assign(real, {1});
        mesh.Assign(Record(schema::Section_Shell()), {1});
        mesh.Assign(KOVSimPosition(), {1});
        mesh.Assign(mesh.Slots(), {1});
    });
    mesh.Reopen();
    for (int assignment : {1, 2, 3, 4, 5}) ExpectNoDatum(Section(assignment), 0);
}

TEST_P(OddShells, AnAssignmentWithoutRegionOrElementsHasTheLayersOfItsSection) {
    Bulk().AppendConstThickness(1, 0, 2);
    mesh.WriteBulk();
    InTransaction([&] {
        KOVSimPosition const section = mesh.document.GetRecord(Sections().ID(), 0);
        auto const assign = [&](KOVSimPosition const& region) {
            KOVSimPosition const made = Record(schema::SectionAssignment());
            made.SetPosition(schema::SectionAssignment_section(), section);
            made.SetPosition(schema::SectionAssignment_region(), region);
            mesh.Model().GetVector(schema::Model_sectionAssignments()).PushBack(made);
        };
        assign(KOVSimPosition());
        assign(Record(schema::Region()));
        KOVSimPosition const region = Record(schema::Region());
        region.SetPosition(schema::Region_elementsCluster(), Record(schema::Region()));
        assign(region);
    });
    mesh.Reopen();
    for (int assignment : {1, 2, 3}) {
        KOVSrvShellSection const section = Section(assignment);
        EXPECT_THAT(List(section.GetConstThicknesses()), ElementsAre(kNone, 2));
        EXPECT_TRUE(section.GetElementSet().IsEmpty());
    }
}

TEST_P(OddShells, CountsOfMoreSectionsThanOneTransferMovesAreRefused) {
    int const most = std::numeric_limits<int>::max();
    mesh.WriteBulk();
    InTransaction([&] {
        Sections().ExtendSpace(most);
        KOVSimDistributionID const store =
            mesh.NewDistribution(Slots(), Sections(), KOVSimRangeType(KOVSimTypeKeyInt));
        KOVSimTransfer make{KOVSimDistribution(store)};
        Ints chunks(2, 0);
        chunks.Get(0) = 1;
        chunks.Get(1) = 1000;
        make.SetMakeNewDrawerChunked(chunks).SetExtendableDim(1);
        make.SetDim(0, MeshDocument::Set(Slots(), {1}));
        make.SetDim(1, MeshDocument::Set(Sections(), {0})).CheckView().ExecMake();
        // Grows without any entry being moved.
        KOVSimTransfer grow{KOVSimDistribution(store)};
        grow.SetWrite().SetAutoExtend().SetDrawer(make.DrawerID());
        grow.SetDim(0, MeshDocument::Set(Slots(), {}));
        grow.SetDim(1, Sections().CreateTempCSetStrided(0, most, 1, 1)).CheckView().ExecWrite();
        LinkAll(store);
    });
    mesh.Reopen();
    KOVSrvShellSectionPoints points(mesh.document);
    EXPECT_THROW(points.UpdateMap(), KOVSimException);
}

TEST_P(OddShells, OfASectionInAnotherCollectionTheIndexCounts) {
    Bulk().AppendNumSectionPoints(1, 7, 9);
    mesh.WriteBulk();
    InTransaction([&] {
        KOVSimPosition const others =
            mesh.Model().CreateTypedCollection(20, schema::Section_Shell());
        for (int index : {7, 8}) {
            KOVSimPosition const section = others.CreateMember(index, schema::Section_Shell());
            section.DataRecord().SetInt(0, 2);
            mesh.Assign(section, {1});
        }
    });
    mesh.Reopen();
    EXPECT_THAT(List(Section(1).GetSectionPoints()), ElementsAre(-1, 9));
    // There are 8 sections.
    EXPECT_THROW(Section(2), KOVSimException);
}

TEST_P(OddShells, NothingIsANullAssignment) {
    KOVSrvShellSection section{KOVSimPosition()};
    ExpectNoDatum(section, 0);
    section.UpdateThicknesses();
    section.UpdateRotationAngles();
    ExpectNoDatum(section, 0);
}

TEST_P(OddShells, ASectionOfNoLayersMayBeUpdated) {
    InTransaction([&] { mesh.Assign(5, 0, {1}); });
    Bulk().AppendConstThickness(0, 0, 1);
    Bulk().AppendConstAngle(0, 0, 1);
    mesh.WriteBulk();
    KOVSrvShellSection section = Section(1);
    section.UpdateThicknesses();
    section.UpdateRotationAngles();
    ExpectNoDatum(section, 0);
}

TEST_P(OddShells, AClosedDocumentIsRefused) {
    Bulk().AppendPly(0, 0, 1);
    mesh.WriteBulk();
    KOVSimPosition const assignment = mesh.Assignment(0);
    KOVSrvShellSection section(assignment);
    KOVSrvShellSectionPoints points(mesh.document);
    mesh.document.Close();
    EXPECT_THROW(KOVSrvShellSection{assignment}, KOVSimException);
    for (auto const& ask : AllOf(section)) {
        EXPECT_NE(OutcomeOf(ask), kRead);
        EXPECT_EQ(OutcomeOf(ask), kRead);
    }
    EXPECT_THROW(section.UpdateThicknesses(), KOVSimException);
    EXPECT_THROW(section.UpdateRotationAngles(), KOVSimException);
    EXPECT_THROW(points.UpdateMap(), KOVSimException);
    EXPECT_THROW(points.GetNumSectionPoints(assignment, 0), KOVSimException);
    ExpectNoDatum(section, 2);
}

}  // namespace
}  // namespace kov::test
