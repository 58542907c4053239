#include "KOVSimTypeSchemaSnapshot.h"

#include <gtest/gtest.h>

#include "KOVSimSchema.h"

namespace {

TEST(TypeSchemaSnapshot, TypeIdOfAnIndexIsTheSameForEverySnapshot) {
    KOVSimTypeSchemaSnapshot const one;
    KOVSimTypeSchemaSnapshot const other;
    EXPECT_EQ(one.TypeID(schema::Field_Meshed()), schema::Field_Meshed());
    EXPECT_EQ(other.TypeID(schema::Field_Meshed()), schema::Field_Meshed());
}

TEST(TypeSchemaSnapshot, TypeThatTheSchemaDoesNotNameKeepsItsIndex) {
    KOVSimTypeSchemaSnapshot const snapshot;
    EXPECT_EQ(snapshot.TypeID(77), 77);
    EXPECT_EQ(snapshot.TypeID(zdm_CoreFragmentTypeIndex(3000, 7)),
              zdm_CoreFragmentTypeIndex(3000, 7));
}

TEST(TypeSchemaSnapshot, NoTypeHasNoTypeId) {
    EXPECT_EQ(KOVSimTypeSchemaSnapshot().TypeID(-1), -1);
    EXPECT_EQ(KOVSimTypeSchemaSnapshot().TypeID(-7), -1);
}

TEST(TypeSchemaSnapshot, NamesTypes) {
    EXPECT_STREQ(KOVSimTypeSchemaSnapshot().TypeName(schema::FieldTypePrimary()).Text(),
                 "FieldTypePrimary");
    EXPECT_STREQ(KOVSimTypeSchemaSnapshot().TypeName(schema::Model()).Text(), "Model");
}

TEST(TypeSchemaSnapshot, NameOfAnUnknownTypeIsTheEmptyState) {
    KOVSimTypeSchemaSnapshot const snapshot;
    EXPECT_EQ(snapshot.TypeName(-1).Text(), nullptr);
    EXPECT_EQ(snapshot.TypeName(zdm_CoreFragmentTypeIndex(3000, 7)).Text(), nullptr);
}

TEST(TypeSchemaSnapshot, MemberHasNoTypeName) {
    EXPECT_EQ(KOVSimTypeSchemaSnapshot().TypeName(schema::Task_modes()).Text(), nullptr);
}

}  // namespace
