// What the writer of shell layers makes of documents and fields of odd layouts.
#include "KOVSrvShellSectionPoints.h"
#include "services/OddShellFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;

class OddWrites : public OddShells {
  protected:
    // The write leaves no trace; `refusal` is part of the text.
    void ExpectRefused(char const* refusal) {
        KOVObjDocumentStatistics const before = mesh.document.Statistics();
        EXPECT_THAT(OutcomeOf([&] { mesh.WriteBulk(); }), testing::HasSubstr(refusal));
        KOVObjDocumentStatistics const after = mesh.document.Statistics();
        EXPECT_EQ(after.commits, before.commits);
        EXPECT_EQ(after.records, before.records);
        EXPECT_EQ(after.distributions, before.distributions);
        EndBulk();
    }
    // A table field over that distribution.
    KOVSimPosition FieldOver(KOVSimPosition const& distribution) const {
        KOVSimPosition const field = mesh.NewTableField(5);
        field.SetPosition(schema::FieldFTable_distribution(), distribution);
        return field;
    }
    KOVSimPosition FieldWithTable(KOVSimPosition const& table) const {
        KOVSimPosition const field = mesh.NewField({1}, {10});
        field.SetPosition(schema::FieldFTable_table(), table);
        return field;
    }
};
INSTANTIATE_TEST_SUITE_P(Media, OddWrites, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(OddWrites, AModelWithoutCollectionsGetsThemAndOneLayerOfOneSection) {
    ShellDocument plain(GetParam(), 10, 100);
    {
        auto const transaction = plain.Write();
        plain.Assign(plain.document.CreateDataRecord(schema::Section_Shell()).Pos(), {1, 2});
        transaction->Commit();
    }
    KOVSrvBulkShellLayers& bulk = Bulk();
    bulk.AppendNumSectionPoints(0, 0, 5);
    plain.WriteBulk();
    plain.Reopen();
    EXPECT_TRUE(plain.BulkRecord().IsA(schema::BulkShellLayers()));
    EXPECT_EQ(KOVSimCollection(plain.Plies().GetCollection()).Space(), 1);
    EXPECT_THAT(plain.StoredRows(schema::BulkShellLayers_sectionPoints()),
                ElementsAre(Row{{0}, {0}, {5}}));
    KOVSrvShellSectionPoints const points(plain.document);
    EXPECT_EQ(points.GetNumSectionPoints(
                  plain.document.GetRecord(plain.Sections().GetCollection(), 0), 0),
              5);
    for (int member :
         {schema::BulkShellLayers_materials(), schema::BulkShellLayers_constThicknesses(),
          schema::BulkShellLayers_distAngles()}) {
        EXPECT_TRUE(plain.BulkMember(member).IsNull());
    }
}

TEST_P(OddWrites, CollectionsThatAreObjectsOfAnotherKindAreRefused) {
    for (int member : {schema::Model_bulkSections(), schema::Model_bulkLayerSlots(),
                       schema::Model_bulkPlies(), schema::Model_orientations()}) {
        KOVSimPosition const linked = mesh.Model().GetPosition(member);
        InTransaction([&] { mesh.Model().SetPosition(member, Record(schema::Region())); });
        Bulk().AppendMaterial(0, 0, 1);
        Bulk().AppendOrientation(0, 0, 1);
        Bulk().AppendPly(0, 0, 1);
        ExpectRefused("cannot create a distribution: the collection of ");
        InTransaction([&] { mesh.Model().SetPosition(member, linked); });
    }
}

TEST_P(OddWrites, SetsOfOtherMembersThanElementsAreRefused) {
    InTransaction([&] {
        Bulk().AppendDistAngle(0, mesh.nodes.CreateCSet(std::vector{1}.data(), 1, false),
                               mesh.NewField({1}, {10}));
    });
    ExpectRefused("the set given for dimension 0 is of collection ");
}

TEST_P(OddWrites, PairsOfObjectsThatAreNoSetOrNoFieldGiveNothing) {
    InTransaction([&] {
        KOVSimPosition const set = mesh.ElementSet({1}), field = mesh.NewField({1}, {10});
        Bulk().AppendDistAngle(0, Record(schema::Region()), field);
        Bulk().AppendDistAngle(1, set, mesh.Slots());
        Bulk().AppendDistAngle(2, field, set);
    });
    mesh.WriteBulk();
    mesh.Reopen();
    EXPECT_EQ(mesh.StoredRows(schema::BulkShellLayers_distAngles()),
              (Rows{Row{{0}, {}, {}}, Row{{1}, {}, {}}, Row{{2}, {}, {}}}));
}

TEST_P(OddWrites, TableFieldsOfOtherFormsAreRefused) {
    struct Odd {
        KOVSimPosition field;
        char const* refusal;
    };
    KOVSimRangeType const reals(KOVSimTypeKeyDouble);
    KOVBasVector<KOVString> const none(0);
    std::function<Odd()> const makers[] = {
        [&] {
            return Odd{FieldOver(Record(schema::Region())), "index 0 is outside [0, 0)"};
        },
        [&] {
            return Odd{FieldOver(mesh.Slots()), "index 0 is outside [0, 0)"};
        },
        [&] {
            return Odd{FieldOver(FlatStore(reals, {1})), "index 1 is outside [0, 1)"};
        },
        [&] {
            return Odd{FieldOver(Store(Slots(), mesh.elements, reals, {1}, {0})),
                       "the set given for dimension 0 is of collection "};
        },
        [&] {
            return Odd{FieldWithTable(Record(schema::Region())),
                       "cannot read 1 values of a function table of 0"};
        },
        [&] {
            return Odd{FieldWithTable(
                           mesh.Model().CreateFTable(schema::FTable(), 0, none, none, nullptr, 0)),
                       "cannot read 1 values of a function table of 0"};
        }};
    for (auto const& make : makers) {
        Odd odd;
        InTransaction([&] {
            odd = make();
            Bulk().AppendConstAngle(0, 0, 1);
            Bulk().AppendDistAngle(0, mesh.ElementSet({1, 2}), odd.field);
        });
        ExpectRefused(odd.refusal);
    }
}

TEST_P(OddWrites, IntegersOfATableFieldAreTakenAsNumbers) {
    InTransaction([&] {
        KOVSimCollection const columns(mesh.FieldColumns().GetCollection());
        KOVSimDistributionID const integers =
            mesh.NewDistribution(mesh.elements, columns, KOVSimRangeType(KOVSimTypeKeyInt));
        MeshDocument::NewDrawer<int>(integers, mesh.Elements({1, 3}),
                                     MeshDocument::Set(columns, {0}), {7, -9});
        Bulk().AppendDistThickness(0, mesh.ElementSet({1, 2, 3}), FieldOver(integers));
    });
    mesh.WriteBulk();
    mesh.Reopen();
    EXPECT_EQ(mesh.StoredRows(schema::BulkShellLayers_distThicknesses()),
              (Rows{Row{{0}, {1, 2, 3}, {7, 5, -9}}}));
}

TEST_P(OddWrites, ANullPositionWritesNothingAndKeepsAll) {
    Bulk().AppendMaterial(0, 0, 1);
    Bulk().WriteBulkDistributions(KOVSimPosition());
    EXPECT_TRUE((Bulk().*BulkFields::Document()).IsClosed());
    EXPECT_EQ(LayersHeld()[0], 1);
    mesh.WriteBulk();
    mesh.Reopen();
    EXPECT_EQ(mesh.StoredRows(schema::BulkShellLayers_materials()), (Rows{Row{{0}, {0}, {1}}}));
}

TEST_P(OddWrites, AWriteWithinATransactionOfTheCallersIsRefusedAndKeepsAll) {
    Bulk().AppendMaterial(0, 0, 1);
    {
        auto const transaction = mesh.Write();
        EXPECT_THROW(mesh.WriteBulk(), KOVSimException);
    }
    EXPECT_EQ(LayersHeld()[0], 1);
    EXPECT_TRUE(mesh.BulkRecord().IsNull());
}

// Documents in memory are never open for reading only.
class OddWritesOnDisk : public OddWrites {};
INSTANTIATE_TEST_SUITE_P(Media, OddWritesOnDisk, testing::Values(Medium::Disk), MediumName);

TEST_P(OddWritesOnDisk, ADocumentThatIsOpenForReadingOnlyIsRefusedAndKeepsAll) {
    Bulk().AppendMaterial(0, 0, 1);
    mesh.Reopen(KOVObjDocument::ReadOnly);
    EXPECT_THROW(mesh.WriteBulk(), KOVSimException);
    EXPECT_EQ(LayersHeld()[0], 1);
}

TEST_P(OddWrites, StepsWithoutADocumentAreRefused) {
    KOVSrvBulkShellLayers& bulk = Bulk();
    EXPECT_THROW(bulk.Initialize(), KOVSimException);
    bulk.AppendMaterial(0, 0, 1);
    EXPECT_THROW(bulk.WriteMaterialDistribution(), KOVSimException);
    bulk.AppendConstAngle(0, 0, 1);
    EXPECT_THROW(bulk.WriteConstAngleDistribution(), KOVSimException);
    bulk.AppendDistAngle(0, KOVSimPosition(), KOVSimPosition());
    EXPECT_THROW(bulk.WriteDistAngleDistribution(), KOVSimException);
    EXPECT_EQ(LayersHeld(), (std::vector<int>{1, 0, 0, 0, 0, 1, 0, 1}));
}

TEST_P(OddWrites, FieldsOfNullPositionsGiveNothing) {
    KOVSimPosition set, field;
    InTransaction([&] {
        set = mesh.ElementSet({1});
        field = mesh.NewField({1}, {10});
    });
    KOVBasMap<int, double> values;
    Bulk().ReadFieldData(KOVSimPosition(), field, values);
    Bulk().ReadFieldData(set, KOVSimPosition(), values);
    EXPECT_EQ(values.Size(), 0);
    mesh.document.Close();
    EXPECT_THROW(Bulk().ReadFieldData(set, field, values), KOVSimException);
}

}  // namespace
}  // namespace kov::test
