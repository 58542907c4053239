#include "KOVSrvGetDofNumberFromDofRecord.h"

#include "KOVSimSchema.h"
#include "services/NamesFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct Row {
    int number;
    char const* name;
    int position;
};
constexpr Row kDofs[] = {
    {1, "DISPLACEMENT_1", 2},   {2, "DISPLACEMENT_2", 3},    {3, "DISPLACEMENT_3", 4},
    {4, "ROTATION_ANGLE_1", 9}, {5, "ROTATION_ANGLE_2", 10}, {6, "ROTATION_ANGLE_3", 11},
};
constexpr Row kComponents[] = {{1, "C_1", 0}, {2, "C_2", 12}, {3, "C_3", 20}};

class DofRecords : public NamesTest {
  protected:
    void SetUp() override {
        NamesTest::SetUp();
        Reopen();
    }
    KOVSimPosition Dofs() const { return Document().GetDofTypeCollection(); }
    KOVSimPosition Components() const { return Document().GetComponentCollection(); }
    KOVSimPosition Member(KOVSimPosition const& collection, int index) const {
        return Document().GetRecord(collection.GetCollection(), index);
    }
    static int Space(KOVSimPosition const& collection) {
        return KOVSimCollection(collection.GetCollection()).Space();
    }
};
KOV_DOCUMENT_TESTS(DofRecords);

TEST_P(DofRecords, EachNumberedDofGivesItsNumber) {
    for (Row const& row : kDofs) {
        EXPECT_EQ(KOVSrvGetDofNumberFromDofRecord(Member(Dofs(), row.position)), row.number);
    }
}

TEST_P(DofRecords, EveryOtherDofGivesMinusOne) {
    EXPECT_EQ(KOVSrvGetDofNumberFromDofRecord(Member(Dofs(), 5)), -1);
    int without = 0;
    for (int i = 0; i < Space(Dofs()); ++i) {
        without += KOVSrvGetDofNumberFromDofRecord(Member(Dofs(), i)) == -1;
    }
    EXPECT_EQ(without, Space(Dofs()) - 6);
}

TEST_P(DofRecords, WhatIsNoSymbolGivesMinusOne) {
    EXPECT_EQ(KOVSrvGetDofNumberFromDofRecord(KOVSimPosition()), -1);
    EXPECT_EQ(KOVSrvGetDofNumberFromDofRecord(Document().GetModel()), -1);
}

// The number of the symbol counts, not the index of the member, and not its name.
TEST_P(DofRecords, PositionOfTheSymbolDecides) {
    Write([&] {
        KOVSimPosition const other =
            Document().Focus().CreateTypedCollection(0, schema::DofTypeCollection());
        other.AddSymbol("DISPLACEMENT_1", 11, schema::DofSymbol());
        Document().SetDofTypeCollection(other);
    });
    Reopen();
    EXPECT_EQ(KOVSrvGetDofNumberFromDofRecord(Member(Dofs(), 0)), 6);
}

TEST_P(DofRecords, NumberGivesTheRecordOfItsDof) {
    for (Row const& row : kDofs) {
        KOVSimPosition const record = KOVSrvGetDofRecordFromDofNumber(Document(), row.number);
        EXPECT_EQ(record.ID(), Member(Dofs(), row.position).ID());
        EXPECT_EQ(record.GetSymbolName(), row.name);
        EXPECT_EQ(KOVSrvGetDofNumberFromDofRecord(record), row.number);
    }
}

TEST_P(DofRecords, OtherNumbersAskForTheEmptyName) {
    for (int number : {0, 7, -1, 1000}) {
        EXPECT_THAT(RefusalOf([&] { KOVSrvGetDofRecordFromDofNumber(Document(), number); }),
                    HasSubstr("it has no symbol \"\""));
    }
    Write([&] { Dofs().AddSymbol("", 77, schema::DofSymbol()); });
    Reopen();
    for (int number : {0, 7}) {
        EXPECT_EQ(KOVSrvGetDofRecordFromDofNumber(Document(), number).GetSymbolPosition(), 77);
    }
}

TEST_P(DofRecords, DofIsSoughtByNameAndType) {
    Write([&] {
        KOVSimPosition const other =
            Document().Focus().CreateTypedCollection(0, schema::DofTypeCollection());
        other.AddSymbol("DISPLACEMENT_2", 40, schema::ComponentSymbol());
        other.AddSymbol("DISPLACEMENT_2", 50, schema::DofSymbol());
        Document().SetDofTypeCollection(other);
    });
    Reopen();
    EXPECT_EQ(KOVSrvGetDofRecordFromDofNumber(Document(), 2).GetSymbolPosition(), 50);
    EXPECT_THAT(RefusalOf([&] { KOVSrvGetDofRecordFromDofNumber(Document(), 1); }),
                HasSubstr("it has no symbol \"DISPLACEMENT_1\""));
}

TEST_P(DofRecords, EachComponentGivesItsNumber) {
    for (Row const& row : kComponents) {
        EXPECT_EQ(KOVSrvGetComponentNumberFromComponentRecord(Member(Components(), row.position)),
                  row.number);
    }
}

TEST_P(DofRecords, EveryOtherComponentCountsAsTheFirst) {
    for (int i = 0; i < Space(Components()); ++i) {
        int const expected = i == 12 ? 2 : i == 20 ? 3 : 1;
        EXPECT_EQ(KOVSrvGetComponentNumberFromComponentRecord(Member(Components(), i)), expected);
    }
    EXPECT_EQ(KOVSrvGetComponentNumberFromComponentRecord(KOVSimPosition()), 1);
    EXPECT_EQ(KOVSrvGetComponentNumberFromComponentRecord(Document().GetModel()), 1);
}

TEST_P(DofRecords, NameOfTheComponentDecides) {
    Write([&] {
        KOVSimPosition const other =
            Document().Focus().CreateTypedCollection(0, schema::ComponentCollection());
        other.AddSymbol("C_3", 12, schema::ComponentSymbol());
        other.AddSymbol("c_2", 12, schema::ComponentSymbol());
        Document().SetComponentCollection(other);
    });
    Reopen();
    EXPECT_EQ(KOVSrvGetComponentNumberFromComponentRecord(Member(Components(), 0)), 3);
    EXPECT_EQ(KOVSrvGetComponentNumberFromComponentRecord(Member(Components(), 1)), 1);
}

TEST_P(DofRecords, NumberGivesTheRecordOfItsComponent) {
    for (Row const& row : kComponents) {
        KOVSimPosition const record = KOVSrvGetComponentRecordFromDofNumber(Document(), row.number);
        EXPECT_EQ(record.ID(), Member(Components(), row.position).ID());
        EXPECT_EQ(record.GetSymbolName(), row.name);
    }
}

TEST_P(DofRecords, OtherNumbersHaveNoComponent) {
    for (int number : {4, 0, -1, 6}) {
        EXPECT_TRUE(KOVSrvGetComponentRecordFromDofNumber(Document(), number).IsNull());
    }
}

// The set holds the number where one would expect the index.
TEST_P(DofRecords, ComponentSetHoldsTheNumberOfTheComponent) {
    Reopen(KOVObjDocument::ReadOnly);
    for (Row const& row : kComponents) {
        KOVSimPosition const position = KOVSrvGetComponentCSetFromComponentRecord(
            Document(), Member(Components(), row.position));
        ASSERT_FALSE(position.IsNull());
        KOVSimCSetID const id = position.GetCSet();
        EXPECT_LT(id.Minor(), 0) << "it is temporary";
        EXPECT_EQ(id.CollectionID(), Components().GetCollection());
        EXPECT_THAT(MembersOf(KOVSimCSet(id)), ElementsAre(row.number));
    }
}

TEST_P(DofRecords, ComponentWithoutANumberHasNoSet) {
    for (KOVSimPosition const& record :
         {Member(Components(), 1), Member(Components(), 34), KOVSimPosition()}) {
        EXPECT_THAT(
            RefusalOf([&] { KOVSrvGetComponentCSetFromComponentRecord(Document(), record); }),
            HasSubstr("-1"));
    }
}

TEST_P(DofRecords, HandleWithoutADocumentIsRefused) {
    KOVObjDocument const none;
    EXPECT_THAT(RefusalOf([&] { KOVSrvGetDofRecordFromDofNumber(none, 1); }),
                HasSubstr("the collection is null"));
    EXPECT_THAT(RefusalOf([&] { KOVSrvGetComponentRecordFromDofNumber(none, 1); }),
                HasSubstr("the collection is null"));
    EXPECT_TRUE(KOVSrvGetComponentRecordFromDofNumber(none, 4).IsNull());
    KOVSimPosition const record = Member(Components(), 0);
    EXPECT_NE(RefusalOf([&] { KOVSrvGetComponentCSetFromComponentRecord(none, record); }), "");
}

}  // namespace
}  // namespace kov::test
