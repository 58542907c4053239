// The operations of the field services on fields of a document.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "KOVSimFTable.h"
#include "KOVSrvFieldServices.h"
#include "services/MeshFixture.h"

namespace kov::test {
namespace {

using Fields = KOVSrvFieldServices;
using testing::ElementsAre;
using testing::HasSubstr;

class FieldsOfDocument : public OnEachMedium {
  protected:
    KOVObjDocument const& Document() const { return mesh.document; }
    KOVSimPosition NewRecord(int type) const { return Document().CreateDataRecord(type).Pos(); }
    template <class Work>
    void Write(Work work) {
        auto const transaction = mesh.Write();
        work();
        transaction->Commit();
    }
    /// The same object in the document as it is open now.
    KOVSimPosition Again(KOVSimPosition const& position) const {
        KOVSimDynamicID id = position.ID();
        id.context = Document().ContextID();
        return id;
    }
    template <class Work>
    static std::string RefusalOf(Work work) {
        try {
            work();
        } catch (KOVSimException const& refusal) {
            return refusal.what();
        }
        return {};
    }
};
INSTANTIATE_TEST_SUITE_P(Documents, FieldsOfDocument, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

int const kMember = schema::BulkShellLayers_constAngles();

// ---- fields that have been replaced ----

// Entries are linked from the model. The owner's own field stands under kMember.
class FieldPositions : public FieldsOfDocument {
  protected:
    FieldPositions() {
        Write([&] {
            m_owner = NewRecord(schema::BulkShellLayers());
            m_other = NewRecord(schema::BulkShellLayers());
            m_own = NewRecord(schema::Field_Meshed());
            m_owner.SetPosition(kMember, m_own);
        });
    }
    KOVSimSet Entries() const {
        return KOVSimPosition(Document().GetModel()).GetSet(schema::Model_fieldEntries());
    }
    KOVSimPosition Owner() const { return Again(m_owner); }
    KOVSimPosition Other() const { return Again(m_other); }
    KOVSimPosition Own() const { return Again(m_own); }
    /// A new entry for an owner, and the field that it gives.
    KOVSimPosition AddEntry(char const* name, KOVSimPosition const& owner) {
        KOVSimPosition const field = NewRecord(schema::Field_Meshed());
        KOVSimPosition const entry = NewRecord(schema::FieldEntry());
        if (name) entry.DataRecord().SetString(0, name);
        entry.SetPosition(schema::FieldEntry_owner(), owner);
        entry.SetPosition(schema::FieldEntry_field(), field);
        Entries().Insert(entry);
        return field;
    }
    KOVSimPosition Find(char const* name) const {
        return Fields::GetFieldPosition(Entries(), Owner(), kMember, name);
    }

  private:
    KOVSimPosition m_owner, m_other, m_own;
};
INSTANTIATE_TEST_SUITE_P(Documents, FieldPositions, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(FieldPositions, EmptySetGivesTheMemberOfTheOwner) {
    EXPECT_EQ(Find("STH").ID(), Own().ID());
    EXPECT_EQ(Fields::GetFieldPosition(KOVSimSet(), Owner(), kMember, "STH").ID(), Own().ID());
}

TEST_P(FieldPositions, EmptySetAndUnsetMemberGiveANullPosition) {
    EXPECT_TRUE(Fields::GetFieldPosition(Entries(), Other(), kMember, "STH").IsNull());
}

TEST_P(FieldPositions, EntryOfThatNameAndOwnerGivesItsField) {
    KOVSimPosition field;
    Write([&] {
        AddEntry("ANGLE", Owner());
        AddEntry("STH", Other());
        field = AddEntry("STH", Owner());
    });
    mesh.Reopen(KOVObjDocument::ReadOnly);
    EXPECT_EQ(Find("STH").ID(), Again(field).ID());
}

TEST_P(FieldPositions, EntryOfAnotherOwnerOrNameIsPassedOver) {
    Write([&] {
        AddEntry("STH", Other());
        AddEntry("ANGLE", Owner());
        AddEntry("sth", Owner());
        AddEntry("STH ", Owner());
        AddEntry(nullptr, Owner());
        AddEntry("STH", KOVSimPosition());
    });
    mesh.Reopen(KOVObjDocument::ReadOnly);
    EXPECT_EQ(Find("STH").ID(), Own().ID());
}

TEST_P(FieldPositions, FirstEntryThatFitsWins) {
    std::vector<KOVSimPosition> fields;
    Write([&] {
        for (int i = 0; i < 3; ++i) fields.push_back(AddEntry("STH", Owner()));
    });
    mesh.Reopen();
    for (int left = 3; left > 0; --left) {
        KOVSimPosition const first = *Entries().Begin();
        EXPECT_EQ(Find("STH").ID(), first.GetPosition(schema::FieldEntry_field()).ID());
        Write([&] { Entries().Remove(first); });
    }
    EXPECT_EQ(Find("STH").ID(), Own().ID());
}

TEST_P(FieldPositions, EntryWithoutAFieldGivesANullPosition) {
    Write([&] {
        KOVSimPosition const entry = NewRecord(schema::FieldEntry());
        entry.DataRecord().SetString(0, "STH");
        entry.SetPosition(schema::FieldEntry_owner(), Owner());
        Entries().Insert(entry);
    });
    EXPECT_TRUE(Find("STH").IsNull());
    EXPECT_EQ(Find("ANGLE").ID(), Own().ID());
}

TEST_P(FieldPositions, EntryWithoutANameHasTheEmptyOne) {
    KOVSimPosition field;
    Write([&] { field = AddEntry(nullptr, Owner()); });
    EXPECT_EQ(Find("").ID(), field.ID());
    EXPECT_EQ(Find("STH").ID(), Own().ID());
}

TEST_P(FieldPositions, ReferrersOfTheOwnerMayBeTheEntries) {
    KOVSimPosition field;
    Write([&] {
        AddEntry("ANGLE", Owner());
        field = AddEntry("STH", Owner());
    });
    KOVSimSet const referrers = Owner().ReferrersSet(schema::FieldEntry_owner());
    EXPECT_EQ(Fields::GetFieldPosition(referrers, Owner(), kMember, "STH").ID(), field.ID());
}

TEST_P(FieldPositions, NullOwnerHasNoField) {
    Write([&] { AddEntry("STH", Owner()); });
    EXPECT_TRUE(Fields::GetFieldPosition(Entries(), KOVSimPosition(), kMember, "STH").IsNull());
}

// ---- uniform fields ----

TEST_P(FieldsOfDocument, UniformScalarGivesOneValueWhateverTheCount) {
    KOVSimPosition field;
    Write([&] {
        field = NewRecord(schema::Field_UniformScalar());
        field.DataRecord().SetDouble(0, 2.5);
    });
    mesh.Reopen(KOVObjDocument::ReadOnly);
    for (int count : {-1, 0, 1, 3}) {
        std::vector<double> values{7, 8, 9};
        EXPECT_TRUE(Fields::GetUniformFieldValue(Again(field), values.data(), count));
        EXPECT_THAT(values, ElementsAre(2.5, 8, 9)) << count;
    }
}

TEST_P(FieldsOfDocument, UniformValuesAndArraysGiveAsManyAsAreAskedFor) {
    for (int const type : {schema::Field_UniformValues(), schema::Field_UniformArray()}) {
        KOVSimPosition field;
        std::vector<double> const stored{1, -0.0, 3};
        Write([&] {
            field = NewRecord(type);
            field.DataRecord().SetDouble(0, stored.data(), 3);
        });
        mesh.Reopen();
        std::vector<double> values(4, 7);
        EXPECT_TRUE(Fields::GetUniformFieldValue(Again(field), values.data(), 2));
        EXPECT_THAT(values, ElementsAre(1, 0, 7, 7));
        EXPECT_TRUE(std::signbit(values[1]));
        EXPECT_TRUE(Fields::GetUniformFieldValue(Again(field), values.data(), 3));
        EXPECT_THAT(values, ElementsAre(1, 0, 3, 7));
    }
}

TEST_P(FieldsOfDocument, ValuesBehindTheStoredOnesStayAsTheyWere) {
    std::vector<double> values{7, 8, 9};
    Write([&] {
        KOVSimPosition const field = NewRecord(schema::Field_UniformArray());
        EXPECT_TRUE(Fields::GetUniformFieldValue(field, values.data(), 3));
        EXPECT_THAT(values, ElementsAre(7, 8, 9));
        field.DataRecord().SetDouble(0, 1);
        EXPECT_TRUE(Fields::GetUniformFieldValue(field, values.data(), 0));
        EXPECT_THAT(values, ElementsAre(7, 8, 9));
        EXPECT_TRUE(Fields::GetUniformFieldValue(field, values.data(), 3));
        EXPECT_THAT(values, ElementsAre(1, 8, 9));
    });
}

TEST_P(FieldsOfDocument, OtherTypesHaveNoUniformValue) {
    Write([&] {
        for (int const type : {schema::Field_Meshed(), schema::Field_FTable(), schema::Field(),
                               schema::Field_Uniform(), schema::FieldEntry()}) {
            KOVSimPosition const field = NewRecord(type);
            field.DataRecord().SetDouble(0, 2.5);
            double value = 7;
            EXPECT_FALSE(Fields::GetUniformFieldValue(field, &value, 1)) << type;
            EXPECT_EQ(value, 7);
        }
    });
    double value = 7;
    EXPECT_FALSE(Fields::GetUniformFieldValue(mesh.Coordinates(), &value, 1));
    EXPECT_EQ(value, 7);
}

TEST_P(FieldsOfDocument, NullPositionHasNoUniformValue) {
    double value = 7;
    EXPECT_FALSE(Fields::GetUniformFieldValue(KOVSimPosition(), &value, 1));
    KOVSimPosition field;
    Write([&] { field = NewRecord(schema::Field_UniformScalar()); });
    KOVSimDynamicID id = field.ID();
    id.data.minor = -1;
    EXPECT_FALSE(Fields::GetUniformFieldValue(id, &value, 1));
    id = field.ID();
    id.context = {};
    EXPECT_FALSE(Fields::GetUniformFieldValue(id, &value, 1));
    EXPECT_EQ(value, 7);
}

TEST_P(FieldsOfDocument, ClosedDocumentsAreRefused) {
    KOVSimPosition field;
    Write([&] {
        field = NewRecord(schema::Field_UniformScalar());
        field.DataRecord().SetDouble(0, 2.5);
    });
    KOVObjDocument document = Document();
    document.Close();
    double value = 7;
    EXPECT_THAT(RefusalOf([&] { Fields::GetUniformFieldValue(field, &value, 1); }),
                HasSubstr("closed"));
    EXPECT_THAT(RefusalOf([&] { Fields::GetFieldPosition(KOVSimSet(), field, kMember, "STH"); }),
                HasSubstr("closed"));
    EXPECT_EQ(value, 7);
}

// ---- table fields ----

class TableFields : public FieldsOfDocument {
  protected:
    static Fields::Strings Names(std::vector<char const*> const& names) {
        Fields::Strings strings(static_cast<int>(names.size()));
        int i = 0;
        for (char const* name : names) strings.Get(i++) = name;
        return strings;
    }
    /// n values that tell one place from another.
    static std::vector<double> Counting(int n, double first = 100) {
        std::vector<double> values(static_cast<std::size_t>(n));
        for (double& value : values) value = first++;
        return values;
    }
    KOVSimPosition Create(std::vector<char const*> const& names, std::vector<double> table,
                          KOVSimCSet const& elements, std::vector<double> data) const {
        return Fields::CreateFieldFTable(Document(), Names(names), table.data(),
                                         static_cast<int>(table.size()), elements, data.data(), 0);
    }
    static KOVSimFTable Table(KOVSimPosition const& field) {
        return KOVSimFTable(field.GetPosition(schema::FieldFTable_table()).GetFTable());
    }
    static KOVSimDistribution Distribution(KOVSimPosition const& field) {
        return KOVSimDistribution(
            field.GetPosition(schema::FieldFTable_distribution()).GetDistribution());
    }
    static std::vector<std::string> Labels(KOVSimFTable const& table) {
        std::vector<std::string> labels;
        for (int i = 0; i < table.ColumnCount(); ++i)
            labels.emplace_back(table.ColumnLabel(i).TextOrEmpty());
        return labels;
    }
    static std::vector<double> Values(KOVSimFTable const& table) {
        std::vector<double> values(
            static_cast<std::size_t>(table.RowCount() * table.ColumnCount()));
        table.GetData(values.data(), static_cast<int>(values.size()));
        return values;
    }
    KOVSimCollection Columns() const {
        return KOVSimCollection(Document()
                                    .Focus()
                                    .GetPosition(schema::Focus_sharedCollections())
                                    .GetPosition(schema::SharedCollections_fieldColumns())
                                    .GetCollection());
    }
    /// elements x columns, row by row.
    std::vector<double> Read(KOVSimPosition const& field, std::vector<int> const& elements,
                             std::vector<int> const& columns) const {
        KOVSimTransfer read{Distribution(field)};
        read.SetRead().SetBufferPadding(false);
        read.SetDim(0, mesh.Ordered(mesh.elements, elements));
        read.SetDim(1, mesh.Ordered(Columns(), columns)).CheckView();
        std::vector<double> values(elements.size() * columns.size(), -1);
        read.SetBuffer(0, values.data(), values.size() * sizeof(double)).ExecRead();
        read.RelinquishBuffers();
        return values;
    }
    /// The text of a refusal that has left the document as it was, and open for writing.
    template <class Work>
    std::string CleanRefusalOf(Work work) {
        auto const before = Document().Statistics();
        std::string const text = RefusalOf(work);
        auto const after = Document().Statistics();
        EXPECT_EQ(after.records, before.records);
        EXPECT_EQ(after.distributions, before.distributions);
        EXPECT_EQ(after.tables, before.tables);
        EXPECT_EQ(after.sets, before.sets);
        EXPECT_EQ(after.links, before.links);
        EXPECT_EQ(after.commits, before.commits);
        EXPECT_FALSE(Create({"A"}, {0}, mesh.Elements({0}), {1}).IsNull());
        return text;
    }
    void ExpectSound() const {
        std::string findings;
        EXPECT_TRUE(Document().Verify([&](char const* text) { findings += text; })) << findings;
    }
};
INSTANTIATE_TEST_SUITE_P(Documents, TableFields, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(TableFields, FieldHasATableAndADistribution) {
    KOVSimPosition field =
        Create({"A", "B", "C"}, {1, 2, 3, 4, 5, 6}, mesh.Elements({3, 5, 900}), Counting(9));
    mesh.Reopen(KOVObjDocument::ReadOnly);
    field = Again(field);
    EXPECT_EQ(field.TypePosition(), schema::Field_FTable());
    EXPECT_EQ(field.GetPosition(schema::FieldFTable_table()).TypePosition(), schema::FTable());
    KOVSimFTable const table = Table(field);
    EXPECT_EQ(table.RowCount(), 2);
    EXPECT_THAT(Labels(table), ElementsAre("A", "B", "C"));
    EXPECT_THAT(Values(table), ElementsAre(1, 2, 3, 4, 5, 6));
    ASSERT_EQ(table.LabelCount(), 1);
    EXPECT_STREQ(table.Label(0).Text(), "A");

    KOVSimDistribution const distribution = Distribution(field);
    EXPECT_EQ(distribution.Range().Key(), 4);
    ASSERT_EQ(distribution.NumDimensions(), 2);
    EXPECT_EQ(distribution.Grid().Collections().ConstGet(0), mesh.elements.ID());
    EXPECT_EQ(distribution.Grid().Collections().ConstGet(1), Columns().ID());
    EXPECT_EQ(KOVSimPosition(distribution.ID()).TypePosition(), -1);
    Descriptions const drawers = mesh.Drawers(distribution);
    ASSERT_EQ(drawers.Size(), 1);
    EXPECT_FALSE(drawers.ConstGet(0).IsChunked());
    EXPECT_THAT(Members(drawers.ConstGet(0).compartment.CSet(0)), ElementsAre(3, 5, 900));
    EXPECT_THAT(Members(drawers.ConstGet(0).compartment.CSet(1)), ElementsAre(0, 1, 2));
    EXPECT_EQ(Read(field, {3, 5, 900}, {0, 1, 2}), Counting(9));
    ExpectSound();
}

TEST_P(TableFields, ColumnsAreTheFirstFieldColumns) {
    Create({"A", "B"}, {0, 0}, mesh.Elements({0}), {1, 2});
    std::vector<int> const columns{0, 1};
    EXPECT_FALSE(
        Columns().SeekCSet(Columns().CreateVolatileCSet(columns.data(), 2, false), false).IsNull());
}

TEST_P(TableFields, OneNameMakesOneColumn) {
    KOVSimPosition const field = Create({"STH"}, {0.5}, mesh.Elements({1, 2}), {10, 20});
    EXPECT_EQ(Table(field).RowCount(), 1);
    EXPECT_THAT(Labels(Table(field)), ElementsAre("STH"));
    EXPECT_THAT(Values(Table(field)), ElementsAre(0.5));
    EXPECT_THAT(Read(field, {1, 2}, {0}), ElementsAre(10, 20));
}

TEST_P(TableFields, NamesMayBeEmptyAndEqual) {
    KOVSimPosition const field = Create({"", "A", "A", ""}, {1, 2, 3, 4}, mesh.Elements({}), {});
    EXPECT_THAT(Labels(Table(field)), ElementsAre("", "A", "A", ""));
}

TEST_P(TableFields, DataFollowTheOrderOfTheSet) {
    KOVSimPosition const field = Create({"A", "B"}, {0, 0}, mesh.Ordered(mesh.elements, {9, 4, 7}),
                                        {90, 91, 40, 41, 70, 71});
    mesh.Reopen();
    EXPECT_THAT(Read(Again(field), {4, 7, 9}, {0, 1}), ElementsAre(40, 41, 70, 71, 90, 91));
    EXPECT_THAT(Read(Again(field), {7, 9}, {1, 0}), ElementsAre(71, 70, 91, 90));
}

TEST_P(TableFields, SetMayBeVolatile) {
    std::vector<int> const members{8, 2};
    KOVSimPosition const field =
        Create({"A"}, {0}, mesh.elements.CreateVolatileOrderedCSet(members.data(), 2), {80, 20});
    mesh.Reopen();
    EXPECT_THAT(Read(Again(field), {2, 8}, {0}), ElementsAre(20, 80));
}

TEST_P(TableFields, EmptySetMakesAFieldWithoutValues) {
    KOVSimPosition const field = Create({"A", "B"}, {5, 6}, mesh.Elements({}), {});
    EXPECT_THAT(Values(Table(field)), ElementsAre(5, 6));
    EXPECT_FALSE(Distribution(field).ID().IsNull());
    EXPECT_THAT(Read(field, {0, 1}, {0}), ElementsAre(-1, -1));
    ExpectSound();
}

TEST_P(TableFields, TableMayHaveNoRows) {
    for (std::vector<char const*> const& names :
         {std::vector<char const*>{"A"}, std::vector<char const*>{"A", "B", "C"}}) {
        int const n = static_cast<int>(names.size());
        KOVSimPosition field = Create(names, {}, mesh.Elements({1}), Counting(n));
        mesh.Reopen();
        field = Again(field);
        EXPECT_EQ(Table(field).RowCount(), 0);
        EXPECT_EQ(Labels(Table(field)), std::vector<std::string>(names.begin(), names.end()));
        EXPECT_EQ(Table(field).LabelCount(), 1);
        EXPECT_EQ(Read(field, {1}, Range(0, n)), Counting(n));
    }
}

TEST_P(TableFields, ValuesKeepEveryBit) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    KOVSimPosition const field =
        Create({"A"}, {nan}, mesh.Elements({0, 1, 2}), {-0.0, nan, 5e-324});
    mesh.Reopen();
    EXPECT_TRUE(std::isnan(Values(Table(Again(field)))[0]));
    std::vector<double> const values = Read(Again(field), {0, 1, 2}, {0});
    EXPECT_TRUE(std::signbit(values[0]));
    EXPECT_TRUE(std::isnan(values[1]));
    EXPECT_EQ(values[2], 5e-324);
}

TEST_P(TableFields, LastArgumentHasNoMeaning) {
    for (int ignored : {-1, 0, 1, 1000000}) {
        std::vector<double> table{1}, data{10};
        KOVSimPosition const field = Fields::CreateFieldFTable(
            Document(), Names({"A"}), table.data(), 1, mesh.Elements({4}), data.data(), ignored);
        EXPECT_THAT(Read(field, {4}, {0}), ElementsAre(10)) << ignored;
    }
}

TEST_P(TableFields, EachFieldStandsForItself) {
    KOVSimPosition const first = Create({"A"}, {1}, mesh.Elements({4}), {10});
    KOVSimPosition const second = Create({"A", "B"}, {1, 2}, mesh.Elements({4}), {20, 21});
    EXPECT_NE(first.ID(), second.ID());
    EXPECT_THAT(Read(first, {4}, {0}), ElementsAre(10));
    EXPECT_THAT(Read(second, {4}, {0, 1}), ElementsAre(20, 21));
    EXPECT_EQ(Document().Statistics().tables, 2);
}

TEST_P(TableFields, ElementSetMayBeOfAnyCollection) {
    KOVSimPosition const field = Create({"A"}, {0}, mesh.Nodes({1, 3}), {10, 30});
    EXPECT_EQ(Distribution(field).Grid().Collections().ConstGet(0), mesh.nodes.ID());
}

TEST_P(TableFields, AsManyNamesAsThereAreFieldColumnsAreTaken) {
    int const most = Columns().Space();
    std::vector<char const*> names(static_cast<std::size_t>(most), "N");
    KOVSimPosition const field = Create(names, Counting(most), mesh.Elements({0}), Counting(most));
    EXPECT_EQ(Table(field).ColumnCount(), most);
    names.push_back("N");
    EXPECT_NE(CleanRefusalOf([&] {
                  Create(names, Counting(most + 1), mesh.Elements({0}), Counting(most + 1));
              }),
              "");
}

TEST_P(TableFields, NoNamesAreRefused) {
    EXPECT_EQ(CleanRefusalOf([&] { Create({}, {1}, mesh.Elements({0}), {}); }),
              "cannot create a table field: no column has a name");
}

TEST_P(TableFields, ValuesThatFillNoWholeRowAreRefused) {
    for (int count : {1, 2, 4, 5, 7}) {
        EXPECT_THAT(CleanRefusalOf([&] {
                        Create({"A", "B", "C"}, Counting(count), mesh.Elements({0}), {1, 2, 3});
                    }),
                    HasSubstr("cannot create a function table: " + std::to_string(count) +
                              " values were given for " + std::to_string(count / 3) +
                              " rows of 2 or 3 columns"));
    }
}

TEST_P(TableFields, NegativeCountIsRefused) {
    std::vector<double> table{1, 2}, data{1, 2};
    EXPECT_THAT(CleanRefusalOf([&] {
                    Fields::CreateFieldFTable(Document(), Names({"A", "B"}), table.data(), -2,
                                              mesh.Elements({0}), data.data(), 0);
                }),
                HasSubstr("cannot create a function table"));
}

TEST_P(TableFields, NullDataAreRefused) {
    std::vector<double> table{1};
    EXPECT_NE(CleanRefusalOf([&] {
                  Fields::CreateFieldFTable(Document(), Names({"A"}), table.data(), 1,
                                            mesh.Elements({0}), nullptr, 0);
              }),
              "");
    EXPECT_NE(CleanRefusalOf([&] {
                  Fields::CreateFieldFTable(Document(), Names({"A"}), nullptr, 1,
                                            mesh.Elements({0}), table.data(), 0);
              }),
              "");
}

TEST_P(TableFields, SetWithoutACollectionIsRefused) {
    EXPECT_THAT(CleanRefusalOf([&] { Create({"A"}, {1}, KOVSimCSet(), {}); }),
                HasSubstr("the collection of dimension 0 is null"));
}

TEST_P(TableFields, SetOfAnotherDocumentIsRefused) {
    MeshDocument const other;
    EXPECT_THAT(CleanRefusalOf([&] { Create({"A"}, {1}, other.Elements({0}), {10}); }),
                HasSubstr("belongs to another document"));
}

TEST_P(TableFields, OpenTransactionIsRefusedAndGoesOn) {
    auto const transaction = mesh.Write();
    KOVSimPosition const record = NewRecord(schema::FieldEntry());
    EXPECT_THAT(RefusalOf([&] { Create({"A"}, {1}, mesh.Elements({0}), {10}); }),
                HasSubstr("transaction"));
    transaction->Commit();
    mesh.Reopen();
    EXPECT_EQ(Again(record).TypePosition(), schema::FieldEntry());
}

TEST_P(TableFields, ClosedAndReadOnlyDocumentsAreRefused) {
    KOVSimCSet const set = mesh.Elements({0});
    if (GetParam() == Medium::Disk) {
        mesh.Reopen(KOVObjDocument::ReadOnly);
        EXPECT_THAT(RefusalOf([&] { Create({"A"}, {1}, mesh.Elements({0}), {10}); }),
                    HasSubstr("it is open for reading only"));
    }
    KOVObjDocument const document = Document();
    document.Close();
    std::vector<double> table{1}, data{1};
    EXPECT_NE(RefusalOf([&] {
                  Fields::CreateFieldFTable(document, Names({"A"}), table.data(), 1, set,
                                            data.data(), 0);
              }),
              "");
}

}  // namespace
}  // namespace kov::test
